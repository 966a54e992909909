#pragma once

#include "HttpAnswer.h"

#include <QAbstractHttpServer>
#include <QDateTime>
#include <QHash>
#include <QHttpServerRequest>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <functional>
#include <optional>

// What the stand-in serves: the user's name, the sessions in the service's own snake_case form
// and each session's transcript segments by share token.
struct StandinData {
    QString userName;
    QJsonArray sessions;
    QHash<QString, QJsonArray> transcripts;

    // Reads a data file. Besides the service's keys a session may give "created_days_ago" and
    // "created_time" (local "HH:MM:SS") instead of "created_at", and markers without
    // "created_at" then take their session's day at their timecode's time of day, so the demo's
    // dates stay fresh. A session's "transcript" is its segment list. Fails with `error` set.
    static std::optional<StandinData> fromJson(const QByteArray &json, const QDateTime &now, QString *error);
};

// What the stand-in accepted of the analysis uploads, in arrival order, for tests to check.
struct StandinAnalysisLog {
    struct Audio {
        QString sessionToken;
        QString filename;
        QString startTimecode;
        int fps = 0;
        double seconds = 0; // the WAV's length
    };
    struct Frames {
        QString sessionToken;
        QString filename;
        QStringList timecodes; // one per frame of the batch
    };
    QList<Audio> audio;
    QList<Frames> frames;
};

// A local stand-in of the shoot-logging service on the loopback interface: e-mail code login
// (the code is fixed and reported through loginCodeIssued), a "sid" cookie issued at
// verification and required by the GET requests (401 without it), sessions and transcripts
// from StandinData, and the two analysis uploads, which derive markers from the audio's length
// and the frames and store them under the share token (a new token makes a new session), so the
// next session download brings them in. Requests are matched against a table of routes, one per service request.
class ServiceStandin : public QAbstractHttpServer
{
    Q_OBJECT

public:
    ServiceStandin(StandinData data, QString loginCode, QObject *parent = nullptr);

    // Listens on 127.0.0.1; port 0 picks a free one. Returns the port, or 0 on failure.
    quint16 listenOnLoopback(quint16 port);

    const StandinAnalysisLog &analysisLog() const { return m_analysisLog; }

Q_SIGNALS:
    void loginCodeIssued(const QString &email, const QString &code);

protected:
    bool handleRequest(const QHttpServerRequest &request, QTcpSocket *socket) override;
    void missingHandler(const QHttpServerRequest &request, QTcpSocket *socket) override;

private:
    struct Route {
        QHttpServerRequest::Method method;
        QRegularExpression path;
        std::function<HttpAnswer(const QHttpServerRequest &, const QRegularExpressionMatch &)> answer;
    };

    HttpAnswer requestCode(const QHttpServerRequest &request);
    HttpAnswer verify(const QHttpServerRequest &request);
    HttpAnswer sessions(const QHttpServerRequest &request) const;
    HttpAnswer transcript(const QHttpServerRequest &request, const QString &token) const;
    bool isSignedIn(const QHttpServerRequest &request) const;
    HttpAnswer analyseAudio(const QHttpServerRequest &request);
    HttpAnswer analyseFrames(const QHttpServerRequest &request);
    // Appends markers to the session of `token`, creating it (titled `filename`) when new.
    void storeMarkers(const QString &token, const QString &filename, const QJsonArray &markers);

    StandinData m_data;
    QString m_loginCode;
    QSet<QString> m_sids;
    QList<Route> m_routes;
    StandinAnalysisLog m_analysisLog;
};
