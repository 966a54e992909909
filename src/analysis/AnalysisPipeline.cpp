#include "analysis/AnalysisPipeline.h"

#include "media/AudioTrackSelector.h"
#include "media/MediaScanner.h"
#include "media/ToolRunner.h"
#include "platform/NotificationCenter.h"
#include "service/APIService.h"
#include "state/AppState.h"
#include "time/NumberText.h"
#include "time/Timecode.h"

#include <QCoro/QCoroFuture>
#include <QCoro/QCoroNetworkReply>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QScopedPointer>
#include <QStringDecoder>
#include <QUuid>
#include <QtConcurrent/QtConcurrentRun>
#include <algorithm>
#include <cmath>

// Texts and names live outside the coroutines: g++ 12 cannot compile QStringLiteral inside one,
// and it destroys temporaries of a co_await statement twice, so futures are made by plain
// functions and awaited by name.
namespace {

const QString audioPath = QStringLiteral("/api/shoot/analyse-audio");
const QString framesPath = QStringLiteral("/api/shoot/analyse-frames");
const QString ffmpegMissing = QStringLiteral("ffmpeg not found - install via: brew install ffmpeg");
const QString markersKey = QStringLiteral("markers");
const QString wordsKey = QStringLiteral("transcript_words");
const QByteArray wavType = QByteArrayLiteral("audio/wav");
const QByteArray jsonType = QByteArrayLiteral("application/json");

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
    if (!value.isDouble() || value.toDouble() != std::trunc(value.toDouble()))
        return 0;
    return value.toInteger();
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

QString answerNotJson(const QJsonParseError &error)
{
    return QStringLiteral("The server's answer is not valid JSON (%1).").arg(error.errorString());
}

QString transferError(const QNetworkReply &reply)
{
    // Only the transfer time limit cancels an upload, and Qt words that as a cancellation.
    if (reply.error() == QNetworkReply::OperationCanceledError)
        return QStringLiteral("The request timed out.");
    return reply.errorString();
}

} // namespace

void AnalysisState::setAnalysing(bool value)
{
    m_isAnalysing = value;
    Q_EMIT isAnalysingChanged();
}

void AnalysisState::setAnalyseProgress(const QString &value)
{
    m_analyseProgress = value;
    Q_EMIT analyseProgressChanged();
}

void AnalysisState::setAnalyseResults(const QStringList &value)
{
    m_analyseResults = value;
    Q_EMIT analyseResultsChanged();
}

void AnalysisState::appendAnalyseResult(const QString &line)
{
    m_analyseResults.append(line);
    Q_EMIT analyseResultsChanged();
}

namespace Analysis {

QString preparingText(qsizetype fileCount)
{
    return QStringLiteral("Preparing %1 file%2...").arg(fileCount).arg(fileCount == 1 ? QString() : QStringLiteral("s"));
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
    const MediaScanner &scanner = MediaScanner::shared();
    QList<QUrl> files;
    for (const QUrl &url : chosen) {
        const QString path = url.toLocalFile();
        if (!QFileInfo(path).isDir()) {
            if (scanner.isMediaFile(path))
                files.append(url);
            continue;
        }
        QDirIterator entries(path, QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            const QString entry = entries.next();
            if (scanner.isMediaFile(entry))
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

void applyRefreshedMarkers(AppState &state, const QList<ShootSession> &fetched, const QString &sessionId)
{
    const auto hasId = [&](const ShootSession &s) { return s.id == sessionId; };
    const auto remote = std::find_if(fetched.cbegin(), fetched.cend(), hasId);
    if (remote == fetched.cend())
        return;
    QList<ShootSession> sessions = state.sessions();
    const auto local = std::find_if(sessions.begin(), sessions.end(), hasId);
    if (local == sessions.end())
        return;
    local->markers = remote->markers;
    const ShootSession updated = *local;
    state.setSessions(sessions);
    state.setSelectedSession(updated);
}

} // namespace Analysis

AnalysisPipeline::AnalysisPipeline(AppState &state, APIService &api, ToolLocations tools, AnalysisTimeLimits limits)
    : m_state(state), m_api(api), m_tools(std::move(tools)), m_limits(limits),
      m_network(std::make_unique<QNetworkAccessManager>())
{
}

AnalysisPipeline::~AnalysisPipeline() = default;

QNetworkRequest AnalysisPipeline::request(const QString &path, const QByteArray &contentType) const
{
    QNetworkRequest request(QUrl(m_api.baseURL() + path));
    request.setRawHeader(QByteArrayLiteral("Content-Type"), contentType);
    if (const auto credential = m_api.keychainRead())
        request.setRawHeader(QByteArrayLiteral("Cookie"), credential->toUtf8());
    return request;
}

QNetworkRequest AnalysisPipeline::audioRequest(const ShootSession &session, const QString &name,
                                               const std::optional<QString> &start) const
{
    QNetworkRequest audio = request(audioPath, wavType);
    audio.setRawHeader(QByteArrayLiteral("sessiontoken"), session.shareToken.toUtf8());
    audio.setRawHeader(QByteArrayLiteral("filename"), name.toUtf8());
    audio.setRawHeader(QByteArrayLiteral("starttimecode"), start.value_or(Timecode::zero).toUtf8());
    audio.setRawHeader(QByteArrayLiteral("fps"), QByteArray::number(session.fps));
    return audio;
}

QCoro::Task<AnalysisPipeline::Upload> AnalysisPipeline::post(QNetworkRequest request, QByteArray body,
                                                            std::chrono::milliseconds limit)
{
    request.setTransferTimeout(int(limit.count()));
    const QScopedPointer<QNetworkReply, QScopedPointerDeleteLater> reply(m_network->post(request, body));
    co_await reply.get();

    Upload upload;
    const bool answered = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
    if (reply->error() != QNetworkReply::NoError && !answered) {
        upload.error = transferError(*reply);
        co_return upload;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(reply->readAll(), &error);
    if (error.error != QJsonParseError::NoError)
        upload.error = answerNotJson(error);
    else
        upload.answer = document.object();
    co_return upload;
}

QCoro::Task<> AnalysisPipeline::runAnalysis(ShootSession session, QList<QUrl> files, AnalysisState &analysis)
{
    analysis.setAnalysing(true);
    analysis.setAnalyseProgress(Analysis::preparingText(files.size()));
    analysis.setAnalyseResults({});
    for (qsizetype i = 0; i < files.size(); ++i) {
        QCoro::Task<bool> file = analyseFile(session, files[i], i, files.size(), analysis);
        const bool goOn = co_await std::move(file);
        if (!goOn)
            co_return;
    }
    analysis.setAnalysing(false);
    analysis.setAnalyseProgress(QString());
    QCoro::Task<> refresh = refreshMarkers(session.id);
    co_await std::move(refresh);
}

QCoro::Task<bool> AnalysisPipeline::analyseFile(const ShootSession &session, const QUrl &file, qsizetype index,
                                                qsizetype count, AnalysisState &analysis)
{
    const QString path = file.toLocalFile();
    const QString name = file.fileName();
    analysis.setAnalyseProgress(extractingText(index, count, name));
    const QString wav = m_tools.temporaryFile(wavName(index));
    QFile::remove(wav);

    const std::optional<QString> ffmpeg = m_tools.existingFFmpeg();
    if (!ffmpeg) {
        analysis.appendAnalyseResult(ffmpegMissing);
        analysis.setAnalysing(false);
        co_return false;
    }

    QFuture<std::optional<QString>> startLookup = startTimecodeOnToolPool(m_tools, path);
    const std::optional<QString> start = co_await startLookup;
    QFuture<int> trackChoice = loudestTrackOnToolPool(m_tools, path, *ffmpeg);
    const int track = co_await trackChoice;
    QFuture<ToolRun> extraction = runToolAsync(*ffmpeg, audioArguments(path, track, wav), ToolOutput::NullDevice,
                                               ToolOutput::NullDevice);
    const ToolRun extracted = co_await extraction;
    if (!extracted.launched || extracted.exitStatus != 0 || !QFile::exists(wav)) {
        analysis.appendAnalyseResult(extractionFailedText(name));
        co_return true;
    }

    analysis.setAnalyseProgress(analysingText(index, count, name));
    QFuture<std::optional<QByteArray>> reading = readOnToolPool(wav);
    const std::optional<QByteArray> audio = co_await reading;
    if (!audio)
        co_return true;

    QCoro::Task<Upload> audioUpload = post(audioRequest(session, name, start), *audio, m_limits.audio);
    const Upload audioAnswer = co_await std::move(audioUpload);
    FileCounts counts;
    if (audioAnswer.answer) {
        counts.audioMarkers = arrayLength(*audioAnswer.answer);
        counts.words = integerMember(*audioAnswer.answer, wordsKey);
    } else {
        analysis.appendAnalyseResult(audioErrorText(name, audioAnswer.error));
    }

    analysis.setAnalyseProgress(visualText(index, count, name));
    QCoro::Task<qint64> frames = analyseFrames(session, path, name, *ffmpeg, index, start);
    counts.visualMarkers = co_await std::move(frames);

    analysis.appendAnalyseResult(Analysis::summaryLine(name, counts.audioMarkers, counts.visualMarkers, counts.words));
    QFile::remove(wav);
    co_return true;
}

QCoro::Task<qint64> AnalysisPipeline::analyseFrames(const ShootSession &session, const QString &path,
                                                    const QString &name, const QString &ffmpeg, qsizetype index,
                                                    std::optional<QString> start)
{
    const QString folder = m_tools.temporaryFile(framesFolderName(index));
    removeFolder(folder);
    QDir().mkpath(folder);

    QFuture<ToolRun> extraction = runToolAsync(ffmpeg, frameArguments(path, folder), ToolOutput::NullDevice,
                                               ToolOutput::Captured);
    const ToolRun extracted = co_await extraction;
    QFuture<QJsonArray> encoding = frameRecordsOnToolPool(folder, Analysis::frameTimesFromLog(extracted.standardError),
                                                          start, session.fps);
    const QJsonArray records = co_await encoding;

    qint64 visualMarkers = 0;
    const QList<QByteArray> bodies = Analysis::frameRequestBodies(session, name, records);
    for (const QByteArray &body : bodies) {
        QCoro::Task<Upload> upload = post(request(framesPath, jsonType), body, m_limits.frames);
        const Upload answer = co_await std::move(upload);
        if (answer.answer)
            visualMarkers += arrayLength(*answer.answer);
    }
    removeFolder(folder);
    co_return visualMarkers;
}

QCoro::Task<> AnalysisPipeline::refreshMarkers(QString sessionId)
{
    QList<ShootSession> fetched;
    try {
        QCoro::Task<QList<ShootSession>> fetch = m_api.fetchShootSessions();
        fetched = co_await std::move(fetch);
    } catch (const APIError &) {
        co_return;
    }
    Analysis::applyRefreshedMarkers(m_state, fetched, sessionId);
}

std::optional<ShootSession> analyseFootageFromScratch(AppState &state, const QList<QUrl> &chosen, NotificationCenter &center)
{
    const QList<QUrl> files = Analysis::collectMediaFiles(chosen);
    if (files.isEmpty())
        return std::nullopt;
    const ShootSession session = Analysis::newAnalysisSession(files, QDateTime::currentDateTimeUtc());
    QList<ShootSession> sessions = state.sessions();
    sessions.prepend(session);
    state.setSessions(sessions);
    state.setSelectedSession(session);
    state.setShowSettings(false);
    QVariantList urls;
    for (const QUrl &url : files)
        urls.append(url);
    center.post(Notifications::analyseFiles, {{QStringLiteral("files"), urls}, {QStringLiteral("sessionId"), session.id}});
    return session;
}
