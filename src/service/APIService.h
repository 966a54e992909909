#pragma once

#include "platform/CredentialStore.h"
#include "service/APIError.h"
#include "service/ServiceJson.h"

#include <QByteArray>
#include <QCoro/QCoroTask>
#include <QJsonObject>
#include <QNetworkRequest>
#include <QUrl>
#include <chrono>
#include <memory>

class QNetworkAccessManager;

// What one kind of call may take: the whole request, from sending to the last byte of the
// answer, and the size of the answer. A call past either ends with a transport error, whatever
// the service keeps sending.
struct CallLimit {
    std::chrono::milliseconds time;
    qint64 answerBytes;
};

struct APILimits {
    static constexpr qint64 megabyte = 1024 * 1024;

    CallLimit loginCode{std::chrono::seconds(60), megabyte};
    CallLimit login{std::chrono::seconds(60), megabyte};
    CallLimit sessions{std::chrono::seconds(10), 64 * megabyte};
    CallLimit transcript{std::chrono::seconds(15), 16 * megabyte};
    CallLimit analysisAudio{std::chrono::seconds(600), 16 * megabyte};
    CallLimit analysisFrames{std::chrono::seconds(300), 16 * megabyte};
};

// One file's audio for the analysis: the WAV and what the service files it under.
struct AnalysisAudio {
    QString sessionToken;
    QString fileName;
    QString startTimecode;
    int fps = 0;
    QByteArray wav;
};

// The client of the shoot-logging service. Each operation is a coroutine on the calling (GUI)
// thread: it suspends while the request is in flight and either returns its value or throws an
// APIError. The object must outlive every operation it started; make one and keep it.
//
// Only the stored credential is ever sent as a cookie: the network manager's cookie jar keeps
// nothing, so the cookies a service sets are not replayed and signing out really signs out. The
// credential and the login exchange go to the service's own origin alone: a redirect is not
// followed and ends the call as an invalid response, and a credential that is not a plain cookie
// pair is neither stored nor sent.
class APIService
{
public:
    // `baseURL` is the service's origin without a trailing slash (see resolveServiceUrl); the login is
    // kept in `credentials`.
    APIService(QString baseURL, CredentialStore credentials, APILimits limits = {});
    ~APIService();

    const QString &baseURL() const { return m_baseURL; }

    // Asks the service to e-mail a login code. Throws loginFailed when the service refuses.
    QCoro::Task<> requestLoginCode(QString email);
    // Checks the code, stores the login credential and says who signed in. A refusal throws
    // loginFailed and leaves the earlier credential in place.
    QCoro::Task<LoginResult> login(QString email, QString code);
    // The user's sessions in the service's order. A status other than 200 throws loginFailed.
    QCoro::Task<QList<ShootSession>> fetchShootSessions();
    // One session's transcript; an answer without "ok" true is an empty transcript.
    QCoro::Task<QList<TranscriptSegment>> fetchTranscript(QString token);

    // The footage analysis's uploads: one file's audio, and one batch of its frames as the JSON
    // body the service expects. Whatever the status, the answer's JSON object is returned; only
    // a failed transfer or a body that is not JSON throws (a transport or parse error).
    QCoro::Task<QJsonObject> uploadAnalysisAudio(AnalysisAudio audio);
    QCoro::Task<QJsonObject> uploadAnalysisFrames(QByteArray body);

    // The login credential: a "name=value" cookie text, sent as the Cookie header as it is.
    QCoro::Task<std::optional<QString>> keychainRead() const;
    QCoro::Task<> keychainWrite(QString text) const;
    QCoro::Task<> keychainDelete() const;

    // The transcript address for a share token, percent-encoded as one path segment; nothing when
    // no valid URL results or the token is a dot segment.
    static std::optional<QUrl> transcriptUrl(const QString &baseURL, const QString &token);

private:
    struct Answer {
        std::optional<int> status; // absent when the answer was not HTTP
        QByteArray body;
        std::optional<QByteArray> setCookie;
    };

    // Which network errors end a request with no answer to read.
    enum class CutOffAnswers {
        Fail, // any network error, even after the status line: a cut-off body is no answer
        Read, // only those that left no HTTP status; the analysis reads whatever arrived
    };

    QNetworkRequest jsonPost(const QString &path) const;
    QNetworkRequest uploadRequest(const QString &path, const QByteArray &contentType) const;
    // `request` with the stored credential as its cookie, when one is stored.
    QCoro::Task<QNetworkRequest> authenticated(QNetworkRequest request) const;
    QCoro::Task<Answer> send(QNetworkRequest request, std::optional<QByteArray> body, CallLimit limit,
                             CutOffAnswers cutOff);

    QString m_baseURL;
    CredentialStore m_credentials;
    APILimits m_limits;
    std::unique_ptr<QNetworkAccessManager> m_network;
};
