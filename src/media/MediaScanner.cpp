#include "media/MediaScanner.h"

#include "media/ToolRunner.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QUuid>

namespace {

const QStringList formatTimecodeQuery{QStringLiteral("-show_entries"), QStringLiteral("format_tags=timecode")};
const QStringList streamTimecodeQuery{QStringLiteral("-show_entries"), QStringLiteral("stream_tags=timecode")};

} // namespace

MediaScanner::MediaScanner(ToolLocations tools)
    : m_tools(std::move(tools))
{
}

bool MediaScanner::isMediaFile(const QString &path)
{
    return mediaExtensions.contains(QFileInfo(path).suffix().toLower());
}

QString MediaScanner::findFFprobe() const
{
    return m_tools.existingFFprobe().value_or(m_tools.ffprobeFallback);
}

QByteArray MediaScanner::runQuery(const QString &executable, const QString &path, const QStringList &args,
                                  ToolOutput standardError)
{
    const QStringList arguments = QStringList{QStringLiteral("-v"), QStringLiteral("quiet"), QStringLiteral("-of"), QStringLiteral("json")}
                                  + args + QStringList{path};
    return runTool(executable, arguments, ToolOutput::Captured, standardError, probeTimeLimit).standardOutput;
}

std::optional<QString> MediaScanner::ffprobe(const QString &path, const QStringList &args) const
{
    return FFprobeOutput::timecode(runQuery(findFFprobe(), path, args));
}

double MediaScanner::readDuration(const QString &path) const
{
    return FFprobeOutput::duration(
        runQuery(findFFprobe(), path, {QStringLiteral("-show_entries"), QStringLiteral("format=duration")}));
}

FFprobeOutput::Resolution MediaScanner::readResolution(const QString &path) const
{
    return FFprobeOutput::resolution(runQuery(findFFprobe(), path,
                                              {QStringLiteral("-show_entries"), QStringLiteral("stream=width,height"),
                                               QStringLiteral("-select_streams"), QStringLiteral("v:0")}));
}

std::optional<int> MediaScanner::readFps(const QString &path) const
{
    return FFprobeOutput::fps(runQuery(findFFprobe(), path,
                                       {QStringLiteral("-show_entries"), QStringLiteral("stream=r_frame_rate"),
                                        QStringLiteral("-select_streams"), QStringLiteral("v:0")}));
}

std::optional<QDateTime> MediaScanner::readRecordingDate(const QString &path)
{
    const QDateTime modified = QFileInfo(path).fileTime(QFileDevice::FileModificationTime);
    if (!modified.isValid())
        return std::nullopt;
    return modified;
}

std::optional<QString> MediaScanner::getFileTimecode(const QString &path) const
{
    const auto executable = m_tools.existingFFprobe();
    if (!executable)
        return std::nullopt;
    return FFprobeOutput::formatTimecode(runQuery(*executable, path, formatTimecodeQuery, ToolOutput::NullDevice));
}

MediaClip MediaScanner::probeClip(const QString &path) const
{
    MediaClip clip;
    clip.id = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    clip.path = path;
    clip.filename = QFileInfo(path).fileName();
    clip.timecode = ffprobe(path, formatTimecodeQuery);
    if (!clip.timecode)
        clip.timecode = ffprobe(path, streamTimecodeQuery);
    clip.duration = readDuration(path);
    clip.recordingDate = readRecordingDate(path);
    const FFprobeOutput::Resolution resolution = readResolution(path);
    clip.width = resolution.width;
    clip.height = resolution.height;
    clip.detectedFps = readFps(path);
    return clip;
}

QList<MediaClip> MediaScanner::scanFolder(const QString &folder, const std::function<void(const QString &)> &progress) const
{
    const QString root = QDir::cleanPath(QDir(folder).absolutePath());
    if (!QFileInfo(root).isDir() || !QDir(root).isReadable())
        return {};

    // Without QDir::Hidden the iterator neither lists hidden entries nor descends into hidden
    // folders. Folders are listed too: an entry is kept by its name alone, like a bundle named
    // *.mov would be.
    QStringList media;
    QDirIterator entries(root, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        if (isMediaFile(path))
            media.append(path);
    }

    const qsizetype count = media.size();
    progress(QStringLiteral("Found %1 media files...").arg(count));
    QList<MediaClip> clips;
    clips.reserve(count);
    qsizetype withTimecode = 0;
    for (qsizetype i = 0; i < count; ++i) {
        progress(QStringLiteral("Reading %1/%2: %3").arg(i + 1).arg(count).arg(QFileInfo(media.at(i)).fileName()));
        clips.append(probeClip(media.at(i)));
        if (clips.last().timecode)
            ++withTimecode;
    }
    progress(QStringLiteral("Scan complete: %1 clips, %2 with timecode").arg(clips.size()).arg(withTimecode));
    return clips;
}
