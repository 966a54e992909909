#include "media/MediaScanner.h"

#include "media/ToolRunner.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSemaphore>
#include <QStandardPaths>
#include <QThread>
#include <QThreadPool>
#include <QUuid>
#include <vector>

namespace {

const QStringList formatTimecodeQuery{QStringLiteral("-show_entries"), QStringLiteral("format_tags=timecode")};
const QStringList streamTimecodeQuery{QStringLiteral("-show_entries"), QStringLiteral("stream_tags=timecode")};
const QStringList anyTimecodeQuery{QStringLiteral("-show_entries"), QStringLiteral("format_tags=timecode:stream_tags=timecode")};
const QStringList readingQuery{QStringLiteral("-show_entries"), QString::fromLatin1(FFprobeOutput::readingEntries)};

// The executable with its size and modification time: answers cached from one ffprobe are not
// taken for another's after an upgrade.
QString ffprobeIdentity(const QString &executable)
{
    const QFileInfo info(QFileInfo(executable).isAbsolute() ? executable : QStandardPaths::findExecutable(executable));
    return QStringLiteral("%1 %2 %3").arg(executable).arg(info.size()).arg(info.lastModified().toMSecsSinceEpoch());
}

ProbeCache::Stamp stampOf(const QFileInfo &file)
{
    return {file.size(), file.lastModified().toMSecsSinceEpoch()};
}

} // namespace

ScanOptions ScanOptions::platformDefault()
{
    return {QThread::idealThreadCount(), ProbeCache::platformLocation()};
}

MediaScanner::MediaScanner(ToolLocations tools)
    : m_tools(std::move(tools))
{
}

bool MediaScanner::isMediaFile(const QString &path)
{
    return mediaExtensions.contains(QFileInfo(path).suffix().toLower());
}

QString MediaScanner::unreadableText(const QStringList &paths)
{
    QStringList names;
    names.reserve(paths.size());
    for (const QString &path : paths)
        names.append(QFileInfo(path).fileName());
    return QStringLiteral("Could not read %1 files: %2").arg(paths.size()).arg(names.join(QStringLiteral(", ")));
}

QString MediaScanner::findFFprobe() const
{
    return m_tools.existingFFprobe().value_or(m_tools.ffprobeFallback);
}

ToolRun MediaScanner::runQuery(const QString &executable, const QString &path, const QStringList &args, ToolOutput standardError)
{
    const QStringList arguments = QStringList{QStringLiteral("-v"), QStringLiteral("quiet"), QStringLiteral("-of"), QStringLiteral("json")}
                                  + args + QStringList{path};
    return runTool(executable, arguments, ToolOutput::Captured, standardError, probeTimeLimit);
}

std::optional<QString> MediaScanner::ffprobe(const QString &path, const QStringList &args) const
{
    return FFprobeOutput::timecode(runQuery(findFFprobe(), path, args, ToolOutput::Discarded).standardOutput);
}

double MediaScanner::readDuration(const QString &path) const
{
    return FFprobeOutput::duration(
        runQuery(findFFprobe(), path, {QStringLiteral("-show_entries"), QStringLiteral("format=duration")}, ToolOutput::Discarded)
            .standardOutput);
}

FFprobeOutput::Resolution MediaScanner::readResolution(const QString &path) const
{
    return FFprobeOutput::resolution(runQuery(findFFprobe(), path,
                                              {QStringLiteral("-show_entries"), QStringLiteral("stream=width,height"),
                                               QStringLiteral("-select_streams"), QStringLiteral("v:0")},
                                              ToolOutput::Discarded)
                                         .standardOutput);
}

std::optional<int> MediaScanner::readFps(const QString &path) const
{
    return FFprobeOutput::fps(runQuery(findFFprobe(), path,
                                       {QStringLiteral("-show_entries"), QStringLiteral("stream=r_frame_rate"),
                                        QStringLiteral("-select_streams"), QStringLiteral("v:0")},
                                       ToolOutput::Discarded)
                                  .standardOutput);
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
    return FFprobeOutput::timecode(runQuery(*executable, path, anyTimecodeQuery, ToolOutput::NullDevice).standardOutput);
}

ProbeCache::Probe MediaScanner::probeWith(const QString &executable, const QString &path)
{
    const ToolRun run = runQuery(executable, path, readingQuery, ToolOutput::Discarded);
    return {FFprobeOutput::reading(run.standardOutput), run.launched && !run.timedOut && run.exitStatus == 0};
}

MediaClip MediaScanner::clipFrom(const QFileInfo &file, const FFprobeOutput::Reading &reading)
{
    MediaClip clip;
    clip.id = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    clip.path = file.filePath();
    clip.filename = file.fileName();
    clip.timecode = reading.timecode;
    clip.duration = reading.duration;
    clip.recordingDate = readRecordingDate(file.filePath());
    clip.width = reading.resolution.width;
    clip.height = reading.resolution.height;
    clip.detectedFps = reading.fps;
    return clip;
}

MediaClip MediaScanner::probeClip(const QString &path) const
{
    return clipFrom(QFileInfo(path), probeWith(findFFprobe(), path).reading);
}

MediaClip MediaScanner::probeClipSeparately(const QString &path) const
{
    FFprobeOutput::Reading reading;
    reading.timecode = ffprobe(path, formatTimecodeQuery);
    if (!reading.timecode)
        reading.timecode = ffprobe(path, streamTimecodeQuery);
    reading.duration = readDuration(path);
    reading.resolution = readResolution(path);
    reading.fps = readFps(path);
    return clipFrom(QFileInfo(path), reading);
}

FolderScan MediaScanner::scanFolder(const QString &folder, const ScanOptions &options,
                                    const std::function<void(const QString &)> &progress, std::stop_token stop) const
{
    const QString root = QDir::cleanPath(QDir(folder).absolutePath());
    if (!QFileInfo(root).isDir() || !QDir(root).isReadable())
        return {};

    // Without QDir::Hidden the iterator neither lists hidden entries nor descends into hidden
    // folders. Folders are listed too: an entry is kept by its name alone, like a bundle named
    // *.mov would be. A FIFO, socket or device (or a link to one) is not footage, and ffprobe
    // would wait on a FIFO for ever.
    QList<QFileInfo> media;
    QDirIterator entries(root, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        const QFileInfo entry = entries.fileInfo();
        if (isMediaFile(path) && (entry.isFile() || entry.isDir()))
            media.append(entry);
    }

    const qsizetype count = media.size();
    progress(QStringLiteral("Found %1 media files...").arg(count));
    const QString executable = findFFprobe();
    ProbeCache cache(options.probeCacheFile, ffprobeIdentity(executable));
    // Each job writes only its own element; waitForDone() hands them all to this thread.
    std::vector<std::optional<ProbeCache::Probe>> probes(static_cast<size_t>(count));
    std::vector<bool> probedNow(static_cast<size_t>(count), false);
    const int jobs = std::max(1, options.jobs);
    QThreadPool pool;
    pool.setMaxThreadCount(jobs);
    QSemaphore freeJobs(jobs);
    qsizetype started = 0;
    for (; started < count && !stop.stop_requested(); ++started) {
        const QFileInfo &file = media.at(started);
        progress(QStringLiteral("Reading %1/%2: %3").arg(started + 1).arg(count).arg(file.fileName()));
        if (auto recalled = cache.recall(file.filePath(), stampOf(file))) {
            probes[size_t(started)] = std::move(recalled);
            continue;
        }
        freeJobs.acquire();
        probedNow[size_t(started)] = true;
        auto &into = probes[size_t(started)];
        pool.start([&executable, &freeJobs, &into, path = file.filePath()] {
            into = probeWith(executable, path);
            freeJobs.release();
        });
    }
    pool.waitForDone();

    FolderScan scan;
    scan.clips.reserve(started);
    qsizetype withTimecode = 0;
    for (qsizetype i = 0; i < started; ++i) {
        const QFileInfo &file = media.at(i);
        const ProbeCache::Probe &probe = *probes[size_t(i)];
        scan.clips.append(clipFrom(file, probe.reading));
        if (probe.reading.timecode)
            ++withTimecode;
        if (!probe.readable)
            scan.unreadable.append(file.filePath());
        if (probedNow[size_t(i)])
            cache.remember(file.filePath(), stampOf(file), probe);
    }
    if (!options.probeCacheFile.isEmpty())
        cache.save(root);

    scan.cancelled = started < count;
    if (scan.cancelled)
        progress(QStringLiteral("Scan cancelled: %1 of %2 files read").arg(started).arg(count));
    else
        progress(QStringLiteral("Scan complete: %1 clips, %2 with timecode").arg(scan.clips.size()).arg(withTimecode));
    if (!scan.unreadable.isEmpty())
        progress(unreadableText(scan.unreadable));
    return scan;
}
