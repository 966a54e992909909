#include "cli/CliIo.h"

#include "platform/AtomicFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace CliIo {

namespace {

// Standard output is one per process, and so is its failure.
bool outputFailed = false;

} // namespace

void printOut(const QByteArray &bytes)
{
    if (outputFailed)
        return;
    errno = 0;
    if (std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout) == size_t(bytes.size()) && std::fflush(stdout) == 0)
        return;
    outputFailed = true;
    const int reason = errno;
    printError(QStringLiteral("standard output: %1\n")
                   .arg(reason != 0 ? QString::fromLocal8Bit(std::strerror(reason)) : QStringLiteral("write failed")));
}

bool outputIsComplete()
{
    return !outputFailed;
}

void printError(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stderr);
    std::fflush(stderr);
}

std::optional<QJsonValue> readJsonFile(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        *error = QStringLiteral("%1: not valid JSON (%2 at offset %3)")
                     .arg(path, parseError.errorString())
                     .arg(parseError.offset);
        return std::nullopt;
    }
    if (document.isArray())
        return QJsonValue(document.array());
    return QJsonValue(document.object());
}

int emitDocument(const QByteArray &document, const QString &outputPath)
{
    if (outputPath.isEmpty()) {
        printOut(document);
        return 0;
    }
    QString error;
    if (writeFileAtomically(outputPath, document, &error))
        return 0;
    printError(QStringLiteral("%1: %2\n").arg(outputPath, error));
    return 1;
}

void printJson(const QJsonValue &value)
{
    const QJsonDocument document = value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    printOut(document.toJson(QJsonDocument::Indented));
}

} // namespace CliIo
