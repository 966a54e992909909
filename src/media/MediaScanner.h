#pragma once

#include "media/FFprobeOutput.h"
#include "media/ProbeCache.h"
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
#include <stop_token>

class QFileInfo;

// How a folder scan runs.
struct ScanOptions {
    // How many files are probed at once.
    int jobs = 1;
    // Where ffprobe's answers are remembered between scans; empty: nowhere.
    QString probeCacheFile;

    // One job per core, and this user's cache folder.
    static ScanOptions platformDefault();
};

// What one folder scan found.
struct FolderScan {
    // One per media file read, in the order the file system listed them.
    QList<MediaClip> clips;
    // The files among them that ffprobe could not read.
    QStringList unreadable;
    bool cancelled = false;
};

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

    // "Could not read N files: " and the files' names.
    static QString unreadableText(const QStringList &paths);

    // The separate probes, one ffprobe launch each: the timecode for the query arguments `args`
    // (e.g. "-show_entries", "format_tags=timecode") exactly as ffprobe reports it, the
    // duration, the first video stream's size and frame rate. probeClip reads the same in one
    // launch; these stay as its reference and for measuring it.
    std::optional<QString> ffprobe(const QString &path, const QStringList &args) const;
    double readDuration(const QString &path) const;
    FFprobeOutput::Resolution readResolution(const QString &path) const;
    std::optional<int> readFps(const QString &path) const;
    // The file's content-modification date.
    static std::optional<QDateTime> readRecordingDate(const QString &path);

    // The start timecode for the analysis, by the scan's rule: the container's tag, else the
    // first stream's. Unlike the probes it has no fall-back name: without an ffprobe at a known
    // place it answers absent without launching anything.
    std::optional<QString> getFileTimecode(const QString &path) const;

    // One clip with everything ffprobe tells about `path` in one launch. A fresh id every time.
    MediaClip probeClip(const QString &path) const;
    // The same clip from the separate probes: four or five launches.
    MediaClip probeClipSeparately(const QString &path) const;

    // Every media file under `folder`, hidden files and folders skipped, in the order the file
    // system lists them; entries that are neither files nor folders once links are resolved
    // (FIFOs, sockets, devices) are left out. Files are probed `options.jobs` at a time, or
    // recalled from the probe cache. `progress` is called on this thread with each progress
    // line, the "Reading" lines in file order. Once `stop` is requested no further file is
    // started; the files read so far are returned. A folder that cannot be listed gives no
    // clips and no progress.
    FolderScan scanFolder(const QString &folder, const ScanOptions &options,
                          const std::function<void(const QString &)> &progress, std::stop_token stop) const;

private:
    // ffprobe's answer to "-v quiet -of json", the query arguments and the path.
    static ToolRun runQuery(const QString &executable, const QString &path, const QStringList &args,
                            ToolOutput standardError);
    static ProbeCache::Probe probeWith(const QString &executable, const QString &path);
    static MediaClip clipFrom(const QFileInfo &file, const FFprobeOutput::Reading &reading);

    ToolLocations m_tools;
};
