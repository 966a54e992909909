#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QString>
#include <optional>

// The tool's input and output: JSON files in, documents and JSON out.
namespace CliIo {

// Writes to stdout and checks that every byte went out. The first failure (a full disk, a closed
// pipe) is reported on stderr as one line; later writes are skipped, since the output is already
// incomplete.
void printOut(const QByteArray &bytes);
// False once a write to stdout failed: the run must not end with success.
bool outputIsComplete();
void printError(const QString &text);

// The parsed contents of a JSON file; on failure `error` names the file and the problem.
std::optional<QJsonValue> readJsonFile(const QString &path, QString *error);

// A document goes to stdout byte for byte, or, with an output path, into that file atomically.
// Returns the exit status, reporting a failed write.
int emitDocument(const QByteArray &document, const QString &outputPath);

// JSON results are printed indented, with a final line feed.
void printJson(const QJsonValue &value);

} // namespace CliIo
