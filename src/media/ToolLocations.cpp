#include "media/ToolLocations.h"

#include <QDir>
#include <QFileInfo>

namespace {

std::optional<QString> firstExisting(const QStringList &candidates)
{
    for (const QString &path : candidates) {
        if (QFileInfo::exists(path))
            return path;
    }
    return std::nullopt;
}

QStringList toolPaths(const QString &tool)
{
#if defined(Q_OS_WIN)
    return {QStringLiteral("C:/Program Files/ffmpeg/bin/%1.exe").arg(tool),
            QStringLiteral("C:/ffmpeg/bin/%1.exe").arg(tool)};
#else
    // Homebrew on Apple silicon, then on Intel and hand-built installs, then the system's own
    // (Debian's ffmpeg package installs there).
    return {QStringLiteral("/opt/homebrew/bin/") + tool,
            QStringLiteral("/usr/local/bin/") + tool,
            QStringLiteral("/usr/bin/") + tool};
#endif
}

} // namespace

ToolLocations ToolLocations::platformDefault()
{
    return {toolPaths(QStringLiteral("ffprobe")),
            QStringLiteral("ffprobe"),
            toolPaths(QStringLiteral("ffmpeg")),
            QDir::tempPath()};
}

std::optional<QString> ToolLocations::existingFFprobe() const
{
    return firstExisting(ffprobeCandidates);
}

std::optional<QString> ToolLocations::existingFFmpeg() const
{
    return firstExisting(ffmpegCandidates);
}

QString ToolLocations::temporaryFile(const QString &name) const
{
    return QDir(temporaryDirectory).filePath(name);
}
