#pragma once

#include <QByteArray>
#include <QString>

// Replaces `path` with `bytes` in one step: readers see the old file or the new one, never half.
// On failure the old file is untouched and `error` (when given) holds the reason.
bool writeFileAtomically(const QString &path, const QByteArray &bytes, QString *error = nullptr);
