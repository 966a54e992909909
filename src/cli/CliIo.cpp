#include "cli/CliIo.h"

#include "platform/AtomicFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <cstdio>

namespace CliIo {

void printOut(const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
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
