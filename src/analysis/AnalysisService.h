#pragma once

#include "media/ToolLocations.h"
#include "model/ShootSession.h"

#include <QByteArray>
#include <QCoro/QCoroTask>
#include <QJsonArray>
#include <QList>
#include <QStringList>
#include <QUrl>
#include <chrono>
#include <functional>
#include <optional>

class APIService;

// Where a run stands: what a screen shows of it, or a script prints.
struct AnalysisUpdate {
    QString progress;    // one line; empty once the run is over
    QStringList results; // one or more lines per file done
    bool running = false;
};

// How a run ended. Only a run that went through every file has anything for the service to
// give back, so only then is the session's reload due.
struct AnalysisOutcome {
    QStringList results;
    bool wentThroughAllFiles = false;
};

// The analysis's rules as functions of their arguments; frameRecords and collectMediaFiles also
// read the file system, and a new session gets a random id.
namespace Analysis {

inline constexpr int framesPerRequest = 20;
inline constexpr int newSessionFps = 25;

QString preparingText(qsizetype fileCount);
// How long one extraction of a file `durationSeconds` long may run: a minute plus four times its
// length (scene detection decodes every frame, on a slow machine below real time), half an hour
// when the length is unknown.
std::chrono::milliseconds extractionTimeLimit(double durationSeconds);
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

} // namespace Analysis

// Analyses footage files for one session: extraction with ffmpeg on the tool pool, and the
// uploads through the API client, which stores what it derives under the session's share
// token. Runs on the GUI thread and never blocks it. It reports where it stands after every
// step and changes nothing else: reloading the session's markers afterwards is the caller's
// business. One instance serves any number of runs; it must outlive them.
class AnalysisService
{
public:
    using UpdateHandler = std::function<void(const AnalysisUpdate &)>;

    AnalysisService(APIService &api, ToolLocations tools);

    // Every file of `files` in turn. `onUpdate` gets the whole state after each change, the
    // last time with `running` false.
    QCoro::Task<AnalysisOutcome> analyse(ShootSession session, QList<QUrl> files, UpdateHandler onUpdate);

private:
    class Run;

    // False when the run must end (ffmpeg missing). Working files go into the run's `scratch`.
    QCoro::Task<bool> analyseFile(Run &run, const ShootSession &session, const QUrl &file, qsizetype index,
                                  qsizetype count, QString scratch);
    QCoro::Task<qint64> analyseFrames(const ShootSession &session, const QString &path, const QString &name,
                                      const QString &ffmpeg, QString folder, std::optional<QString> start,
                                      std::chrono::milliseconds timeLimit);

    APIService &m_api;
    ToolLocations m_tools;
};
