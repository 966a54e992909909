#include "analysis/AnalysisService.h"

#include "media/AudioTrackSelector.h"
#include "media/MediaScanner.h"
#include "media/ToolRunner.h"
#include "service/APIService.h"
#include "time/NumberText.h"
#include "time/Timecode.h"

#include <QCoro/QCoroFuture>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QStringDecoder>
#include <QTemporaryDir>
#include <QUuid>
#include <QtConcurrent/QtConcurrentRun>
#include <algorithm>

// Texts and names live outside the coroutines: g++ 12 cannot compile QStringLiteral inside one,
// and it destroys temporaries of a co_await statement twice, so futures are made by plain
// functions and awaited by name.
namespace {

const QString ffmpegMissing = QStringLiteral("ffmpeg not found - install via: brew install ffmpeg");
const QString markersKey = QStringLiteral("markers");
const QString wordsKey = QStringLiteral("transcript_words");
const QString scratchTemplate = QStringLiteral("vorlix-analysis-XXXXXX");

QString position(qsizetype index, qsizetype count)
{
    return QStringLiteral("(%1/%2): ").arg(index + 1).arg(count);
}

QString extractingText(qsizetype index, qsizetype count, const QString &name)
{
    return QStringLiteral("Extracting audio ") + position(index, count) + name;
}

QString analysingText(qsizetype index, qsizetype count, const QString &name)
{
    return QStringLiteral("Analysing ") + position(index, count) + name + QStringLiteral("...");
}

QString visualText(qsizetype index, qsizetype count, const QString &name)
{
    return QStringLiteral("Visual analysis ") + position(index, count) + name + QStringLiteral("...");
}

QString extractionFailedText(const QString &name)
{
    return QStringLiteral("Failed to extract audio from ") + name;
}

QString audioErrorText(const QString &name, const QString &description)
{
    return name + QStringLiteral(" audio: Error - ") + description;
}

QString scratchFailedText(const QString &reason)
{
    return QStringLiteral("Cannot create a temporary folder: ") + reason;
}

QString wavName(qsizetype index)
{
    return QStringLiteral("vorlix-analyse-%1.wav").arg(index);
}

QString framesFolderName(qsizetype index)
{
    return QStringLiteral("vorlix-frames-%1").arg(index);
}

QStringList audioArguments(const QString &path, int track, const QString &wav)
{
    return {QStringLiteral("-i"), path, QStringLiteral("-vn"), QStringLiteral("-map"), QStringLiteral("0:a:%1").arg(track),
            QStringLiteral("-acodec"), QStringLiteral("pcm_s16le"), QStringLiteral("-ar"), QStringLiteral("16000"),
            QStringLiteral("-ac"), QStringLiteral("1"), QStringLiteral("-y"), wav};
}

QStringList frameArguments(const QString &path, const QString &folder)
{
    return {QStringLiteral("-i"), path,
            QStringLiteral("-vf"), QStringLiteral("select='eq(n,0)+gt(scene,0.25)',showinfo,scale=512:-1"),
            QStringLiteral("-vsync"), QStringLiteral("vfr"), QStringLiteral("-frames:v"), QStringLiteral("60"),
            QStringLiteral("-q:v"), QStringLiteral("4"), QStringLiteral("-y"),
            QDir(folder).filePath(QStringLiteral("frame_%04d.jpg"))};
}

qint64 arrayLength(const QJsonObject &answer)
{
    return answer.value(markersKey).toArray().size();
}

qint64 integerMember(const QJsonObject &answer, const QString &key)
{
    const QJsonValue value = answer.value(key);
    return value.isDouble() ? wholeNumber(value.toDouble()).value_or(0) : 0;
}

std::optional<QByteArray> readWholeFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

QFuture<std::optional<QString>> startTimecodeOnToolPool(const ToolLocations &tools, const QString &path)
{
    return QtConcurrent::run(toolThreadPool(), [tools, path] { return MediaScanner(tools).getFileTimecode(path); });
}

QFuture<std::chrono::milliseconds> extractionTimeLimitOnToolPool(const ToolLocations &tools, const QString &path)
{
    return QtConcurrent::run(toolThreadPool(),
                             [tools, path] { return Analysis::extractionTimeLimit(MediaScanner(tools).readDuration(path)); });
}

QFuture<int> loudestTrackOnToolPool(const ToolLocations &tools, const QString &path, const QString &ffmpeg)
{
    return QtConcurrent::run(toolThreadPool(), [tools, path, ffmpeg] { return findLoudestAudioTrack(path, ffmpeg, tools); });
}

QFuture<std::optional<QByteArray>> readOnToolPool(const QString &path)
{
    return QtConcurrent::run(toolThreadPool(), readWholeFile, path);
}

QFuture<QJsonArray> frameRecordsOnToolPool(const QString &folder, const QList<double> &times,
                                           const std::optional<QString> &start, int fps)
{
    return QtConcurrent::run(toolThreadPool(), Analysis::frameRecords, folder, times, start, fps);
}

void removeFolder(const QString &folder)
{
    QDir(folder).removeRecursively();
}

struct FileCounts {
    qint64 audioMarkers = 0;
    qint64 visualMarkers = 0;
    qint64 words = 0;
};

} // namespace

namespace Analysis {

QString preparingText(qsizetype fileCount)
{
    return QStringLiteral("Preparing %1 file%2...").arg(fileCount).arg(fileCount == 1 ? QString() : QStringLiteral("s"));
}

std::chrono::milliseconds extractionTimeLimit(double durationSeconds)
{
    using namespace std::chrono;
    if (!(durationSeconds > 0) || durationSeconds > 1e6)
        return minutes(30);
    return minutes(1) + milliseconds(qint64(durationSeconds * 4000));
}

QString summaryLine(const QString &name, qint64 audioMarkers, qint64 visualMarkers, qint64 words)
{
    return QStringLiteral("%1: %2 audio + %3 visual markers (%4 words)").arg(name).arg(audioMarkers).arg(visualMarkers).arg(words);
}

QList<double> frameTimesFromLog(const QByteArray &log)
{
    static const QLatin1StringView marker("pts_time:");
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(log);
    if (decoder.hasError())
        return {};
    QList<double> times;
    for (const QStringView line : QStringView(text).split(QLatin1Char('\n'))) {
        const qsizetype at = line.indexOf(marker);
        if (at < 0)
            continue;
        const QStringView rest = line.mid(at + marker.size());
        qsizetype length = 0;
        while (length < rest.size() && (rest[length].isDigit() || rest[length] == QLatin1Char('.')))
            ++length;
        if (const auto seconds = parseStrictDecimal(rest.left(length)))
            times.append(*seconds);
    }
    return times;
}

QString frameTimecode(const std::optional<QString> &start, double seconds, int fps)
{
    return secondsToTC(Timecode::integerFieldsToSeconds(start.value_or(Timecode::zero), fps) + seconds, fps);
}

QJsonArray frameRecords(const QString &folder, const QList<double> &times, const std::optional<QString> &start, int fps)
{
    const QDir dir(folder);
    if (!dir.exists())
        return {};
    QStringList names;
    for (const QString &name : dir.entryList(QDir::Files | QDir::Hidden)) {
        if (QFileInfo(name).suffix() == QLatin1String("jpg"))
            names.append(name);
    }
    std::sort(names.begin(), names.end());
    QJsonArray records;
    for (qsizetype k = 0; k < names.size(); ++k) {
        const auto jpeg = readWholeFile(dir.filePath(names[k]));
        if (!jpeg)
            continue;
        const double t = k < times.size() ? times[k] : 2.0 * double(k);
        records.append(QJsonObject{{QStringLiteral("base64"), QString::fromLatin1(jpeg->toBase64())},
                                   {QStringLiteral("timecode"), frameTimecode(start, t, fps)}});
    }
    return records;
}

QList<QByteArray> frameRequestBodies(const ShootSession &session, const QString &fileName, const QJsonArray &records)
{
    QList<QByteArray> bodies;
    for (qsizetype first = 0; first < records.size(); first += framesPerRequest) {
        QJsonArray batch;
        for (qsizetype k = first; k < std::min(records.size(), first + framesPerRequest); ++k)
            batch.append(records[k]);
        const QJsonObject body{{QStringLiteral("sessionToken"), session.shareToken},
                               {QStringLiteral("filename"), fileName},
                               {QStringLiteral("fps"), session.fps},
                               {QStringLiteral("frames"), batch}};
        bodies.append(QJsonDocument(body).toJson(QJsonDocument::Compact));
    }
    return bodies;
}

QList<QUrl> collectMediaFiles(const QList<QUrl> &chosen)
{
    QList<QUrl> files;
    for (const QUrl &url : chosen) {
        const QString path = url.toLocalFile();
        if (!QFileInfo(path).isDir()) {
            if (MediaScanner::isMediaFile(path))
                files.append(url);
            continue;
        }
        QDirIterator entries(path, QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            const QString entry = entries.next();
            if (MediaScanner::isMediaFile(entry))
                files.append(QUrl::fromLocalFile(entry));
        }
    }
    return files;
}

ShootSession newAnalysisSession(const QList<QUrl> &files, const QDateTime &now)
{
    ShootSession session;
    session.id = session.shareToken = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    session.title = files.size() == 1 ? QFileInfo(files.first().fileName()).completeBaseName()
                                      : QStringLiteral("Analysed %1 clips").arg(files.size());
    session.createdAt = now;
    session.fps = newSessionFps;
    return session;
}

} // namespace Analysis

// What one run has reported so far; every change goes to the run's handler.
class AnalysisService::Run
{
public:
    explicit Run(UpdateHandler onUpdate) : m_onUpdate(std::move(onUpdate)) {}

    void start(const QString &progress)
    {
        m_update = {progress, {}, true};
        report();
    }

    void setProgress(const QString &progress)
    {
        m_update.progress = progress;
        report();
    }

    void addResult(const QString &line)
    {
        m_update.results.append(line);
        report();
    }

    void stop()
    {
        m_update.running = false;
        report();
    }

    const QStringList &results() const { return m_update.results; }

private:
    void report() { m_onUpdate(m_update); }

    UpdateHandler m_onUpdate;
    AnalysisUpdate m_update;
};

AnalysisService::AnalysisService(APIService &api, ToolLocations tools) : m_api(api), m_tools(std::move(tools)) {}

QCoro::Task<AnalysisOutcome> AnalysisService::analyse(ShootSession session, QList<QUrl> files, UpdateHandler onUpdate)
{
    Run run(std::move(onUpdate));
    run.start(Analysis::preparingText(files.size()));
    // Owner-only and unique per run, so neither another run nor another user can read or plant
    // our files; it goes with this frame, whichever way the run ends.
    const QTemporaryDir scratch(QDir(m_tools.temporaryDirectory).filePath(scratchTemplate));
    if (!scratch.isValid()) {
        run.addResult(scratchFailedText(scratch.errorString()));
        run.stop();
        co_return AnalysisOutcome{run.results(), false};
    }
    for (qsizetype i = 0; i < files.size(); ++i) {
        QCoro::Task<bool> file = analyseFile(run, session, files[i], i, files.size(), scratch.path());
        const bool goOn = co_await std::move(file);
        if (!goOn)
            co_return AnalysisOutcome{run.results(), false};
    }
    run.stop();
    run.setProgress(QString());
    co_return AnalysisOutcome{run.results(), true};
}

QCoro::Task<bool> AnalysisService::analyseFile(Run &run, const ShootSession &session, const QUrl &file, qsizetype index,
                                               qsizetype count, QString scratch)
{
    const QString path = file.toLocalFile();
    const QString name = file.fileName();
    run.setProgress(extractingText(index, count, name));
    const QString wav = QDir(scratch).filePath(wavName(index));

    const std::optional<QString> ffmpeg = m_tools.existingFFmpeg();
    if (!ffmpeg) {
        run.addResult(ffmpegMissing);
        run.stop();
        co_return false;
    }

    QFuture<std::optional<QString>> startLookup = startTimecodeOnToolPool(m_tools, path);
    const std::optional<QString> start = co_await startLookup;
    QFuture<std::chrono::milliseconds> timeLimitLookup = extractionTimeLimitOnToolPool(m_tools, path);
    const std::chrono::milliseconds timeLimit = co_await timeLimitLookup;
    // The level checks' scratch files stay inside the run's folder too.
    ToolLocations privateTools = m_tools;
    privateTools.temporaryDirectory = scratch;
    QFuture<int> trackChoice = loudestTrackOnToolPool(privateTools, path, *ffmpeg);
    const int track = co_await trackChoice;
    QFuture<ToolRun> extraction = runToolAsync(*ffmpeg, audioArguments(path, track, wav), ToolOutput::NullDevice,
                                               ToolOutput::NullDevice, timeLimit);
    const ToolRun extracted = co_await extraction;
    if (!extracted.launched || extracted.exitStatus != 0 || !QFile::exists(wav)) {
        run.addResult(extractionFailedText(name));
        co_return true;
    }

    run.setProgress(analysingText(index, count, name));
    QFuture<std::optional<QByteArray>> reading = readOnToolPool(wav);
    const std::optional<QByteArray> audio = co_await reading;
    if (!audio)
        co_return true;

    QCoro::Task<QJsonObject> audioUpload = m_api.uploadAnalysisAudio(
        AnalysisAudio{session.shareToken, name, start.value_or(Timecode::zero), session.fps, *audio});
    FileCounts counts;
    try {
        const QJsonObject answer = co_await std::move(audioUpload);
        counts.audioMarkers = arrayLength(answer);
        counts.words = integerMember(answer, wordsKey);
    } catch (const APIError &error) {
        run.addResult(audioErrorText(name, error.description()));
    }

    run.setProgress(visualText(index, count, name));
    QCoro::Task<qint64> frames = analyseFrames(session, path, name, *ffmpeg, QDir(scratch).filePath(framesFolderName(index)),
                                               start, timeLimit);
    counts.visualMarkers = co_await std::move(frames);

    run.addResult(Analysis::summaryLine(name, counts.audioMarkers, counts.visualMarkers, counts.words));
    QFile::remove(wav);
    co_return true;
}

QCoro::Task<qint64> AnalysisService::analyseFrames(const ShootSession &session, const QString &path, const QString &name,
                                                   const QString &ffmpeg, QString folder, std::optional<QString> start,
                                                   std::chrono::milliseconds timeLimit)
{
    QDir().mkpath(folder);

    QFuture<ToolRun> extraction = runToolAsync(ffmpeg, frameArguments(path, folder), ToolOutput::NullDevice,
                                               ToolOutput::Captured, timeLimit);
    const ToolRun extracted = co_await extraction;
    QFuture<QJsonArray> encoding = frameRecordsOnToolPool(folder, Analysis::frameTimesFromLog(extracted.standardError),
                                                          start, session.fps);
    const QJsonArray records = co_await encoding;

    qint64 visualMarkers = 0;
    const QList<QByteArray> bodies = Analysis::frameRequestBodies(session, name, records);
    for (const QByteArray &body : bodies) {
        QCoro::Task<QJsonObject> upload = m_api.uploadAnalysisFrames(body);
        try {
            const QJsonObject answer = co_await std::move(upload);
            visualMarkers += arrayLength(answer);
        } catch (const APIError &) {
            // A batch that failed counts nothing, without a word; the next batch still goes.
        }
    }
    removeFolder(folder);
    co_return visualMarkers;
}
