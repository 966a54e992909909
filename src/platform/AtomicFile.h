#pragma once

#include <QByteArray>
#include <QString>

// Replaces `path` with `bytes` in one step: readers see the old file or the new one, never half.
// A target that exists and is neither a regular file nor a folder (a device, a pipe, a terminal,
// through links too) is written directly instead, since it cannot be replaced, only written to.
// On failure the old file is untouched and `error` (when given) holds the system's reason.
bool writeFileAtomically(const QString &path, const QByteArray &bytes, QString *error = nullptr);
