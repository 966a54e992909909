#pragma once

#include "media/FFprobeOutput.h"
#include "media/ToolLocations.h"
#include "media/ToolRunner.h"
#include "model/MediaClip.h"

#include <QDateTime>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

// Asks ffprobe and the file system about media files, and walks footage folders. Every call
// blocks its thread while ffprobe runs, so callers use it from worker threads; it holds no
// mutable state, so one instance serves any number of threads.
class MediaScanner
{
public:
    // The probes launch ffprobe from `tools`; tests pass locations of their own.
    explicit MediaScanner(ToolLocations tools);

    // Lower-case extensions of the files that count as media.
    static inline const QSet<QString> mediaExtensions{
        QStringLiteral("mxf"), QStringLiteral("mp4"), QStringLiteral("mov"), QStringLiteral("avi"),
        QStringLiteral("m4v"), QStringLiteral("mpg"), QStringLiteral("mts"), QStringLiteral("r3d")};

    // By the name's extension alone, compared in lower case; the file is not looked at.
    static bool isMediaFile(const QString &path);

    // The first existing ffprobe candidate, else the fall-back name; looked up on every call.
    QString findFFprobe() const;

    // A start timecode exactly as ffprobe reports it, for the query arguments `args`
    // (e.g. "-show_entries", "format_tags=timecode").
    std::optional<QString> ffprobe(const QString &path, const QStringList &args) const;
    double readDuration(const QString &path) const;
    FFprobeOutput::Resolution readResolution(const QString &path) const;
    std::optional<int> readFps(const QString &path) const;
    // The file's content-modification date.
    static std::optional<QDateTime> readRecordingDate(const QString &path);

    // The container's start timecode for the analysis. Unlike the probes it has no fall-back
    // name: without an ffprobe at a known place it answers absent without launching anything.
    std::optional<QString> getFileTimecode(const QString &path) const;

    // One clip with everything the probes learn about `path` (format timecode first, the
    // streams' only when the format has none). A fresh id every time.
    MediaClip probeClip(const QString &path) const;

    // Every media file under `folder`, hidden files and folders skipped, in the order the file
    // system lists them. `progress` is called on this thread with each progress line. A folder
    // that cannot be listed gives no clips and no progress.
    QList<MediaClip> scanFolder(const QString &folder, const std::function<void(const QString &)> &progress) const;

private:
    // ffprobe's JSON answer to "-v quiet -of json", the query arguments and the path.
    static QByteArray runQuery(const QString &executable, const QString &path, const QStringList &args,
                               ToolOutput standardError = ToolOutput::Discarded);

    ToolLocations m_tools;
};
