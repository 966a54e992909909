#pragma once

#include "media/ToolLocations.h"
#include "model/ShootSession.h"

#include <QByteArray>
#include <QCoro/QCoroTask>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QNetworkRequest>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <chrono>
#include <memory>
#include <optional>

class APIService;
class AppState;
class NotificationCenter;
class QNetworkAccessManager;

// What the detail screen shows of a running analysis. Lives on the GUI thread; every assignment
// emits its change signal.
class AnalysisState : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    bool isAnalysing() const { return m_isAnalysing; }
    const QString &analyseProgress() const { return m_analyseProgress; }
    const QStringList &analyseResults() const { return m_analyseResults; }

    void setAnalysing(bool value);
    void setAnalyseProgress(const QString &value);
    void setAnalyseResults(const QStringList &value);
    void appendAnalyseResult(const QString &line);

Q_SIGNALS:
    void isAnalysingChanged();
    void analyseProgressChanged();
    void analyseResultsChanged();

private:
    bool m_isAnalysing = false;
    QString m_analyseProgress;
    QStringList m_analyseResults;
};

// How long an upload may go without traffic.
struct AnalysisTimeLimits {
    std::chrono::milliseconds audio{600000};
    std::chrono::milliseconds frames{300000};
};

// The pure pieces of the pipeline.
namespace Analysis {

inline constexpr int framesPerRequest = 20;
inline constexpr int newSessionFps = 25;

QString preparingText(qsizetype fileCount);
// NAME: A audio + V visual markers (W words)
QString summaryLine(const QString &name, qint64 audioMarkers, qint64 visualMarkers, qint64 words);

// The times after "pts_time:" in ffmpeg's showinfo log, in log order.
QList<double> frameTimesFromLog(const QByteArray &log);
// The timecode of a frame `seconds` into a file that starts at `start` (absent: zero).
QString frameTimecode(const std::optional<QString> &start, double seconds, int fps);
// One record per readable "*.jpg" of `folder`, in file-name order; the k-th gets the k-th time,
// or 2 s per frame past the known times. Reads the files, so it runs on a worker thread.
QJsonArray frameRecords(const QString &folder, const QList<double> &times, const std::optional<QString> &start, int fps);
// The frames request bodies, one per batch of at most framesPerRequest records.
QList<QByteArray> frameRequestBodies(const ShootSession &session, const QString &fileName, const QJsonArray &records);

// The media files among the chosen files and folders, in the order chosen; folders are walked
// recursively, hidden entries included.
QList<QUrl> collectMediaFiles(const QList<QUrl> &chosen);
// A fresh local session for analysing `files` (not empty): named after the one file, or
// "Analysed N clips".
ShootSession newAnalysisSession(const QList<QUrl> &files, const QDateTime &now);
// After the final fetch: the fetched markers of session `sessionId` replace the local ones, and
// that session becomes the selection. Nothing happens unless both sides know the session.
void applyRefreshedMarkers(AppState &state, const QList<ShootSession> &fetched, const QString &sessionId);

} // namespace Analysis

// Runs the analysis of footage files for one session: extraction with ffmpeg on the tool pool,
// uploads to the service at the API client's base URL with its stored cookie, and a refresh of
// the session's markers at the end. Everything it changes, it changes on the GUI thread. One
// instance serves any number of analyses; it must outlive them.
class AnalysisPipeline
{
public:
    AnalysisPipeline(AppState &state, APIService &api, ToolLocations tools = ToolLocations::platformDefault(),
                     AnalysisTimeLimits limits = {});
    ~AnalysisPipeline();

    // The whole run for `files` against `session`, reporting into `analysis`, which must outlive
    // the run. Completes after the final marker refresh (the analysis state is idle again before
    // the refresh starts).
    QCoro::Task<> runAnalysis(ShootSession session, QList<QUrl> files, AnalysisState &analysis);

private:
    struct Upload {
        std::optional<QJsonObject> answer; // absent when the transfer or the JSON failed
        QString error;
    };

    struct FileCounts {
        qint64 audioMarkers = 0;
        qint64 visualMarkers = 0;
        qint64 words = 0;
    };

    // False when the run must end (ffmpeg missing).
    QCoro::Task<bool> analyseFile(const ShootSession &session, const QUrl &file, qsizetype index, qsizetype count,
                                  AnalysisState &analysis);
    QCoro::Task<qint64> analyseFrames(const ShootSession &session, const QString &path, const QString &name,
                                      const QString &ffmpeg, qsizetype index, std::optional<QString> start);
    QCoro::Task<Upload> post(QNetworkRequest request, QByteArray body, std::chrono::milliseconds limit);
    QNetworkRequest request(const QString &path, const QByteArray &contentType) const;
    QNetworkRequest audioRequest(const ShootSession &session, const QString &name,
                                 const std::optional<QString> &start) const;
    QCoro::Task<> refreshMarkers(QString sessionId);

    AppState &m_state;
    APIService &m_api;
    ToolLocations m_tools;
    AnalysisTimeLimits m_limits;
    std::unique_ptr<QNetworkAccessManager> m_network;
};

// The main window's "Analyse Footage" after its panel: creates, inserts and selects a session for
// the media files among `chosen` and posts the analysis request for it. Returns the session, or
// nothing (and changes nothing) when no media file was chosen.
std::optional<ShootSession> analyseFootageFromScratch(AppState &state, const QList<QUrl> &chosen,
                                                      NotificationCenter &center);
