#include "service/APIService.h"

#include <QCoro/QCoroNetworkReply>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QNetworkAccessManager>
#include <QNetworkCookie>
#include <QNetworkCookieJar>
#include <QNetworkReply>
#include <QTimer>

namespace {

// A jar that keeps nothing: the service's cookies reach us only through the credential store.
class NoCookieJar : public QNetworkCookieJar
{
public:
    using QNetworkCookieJar::QNetworkCookieJar;

    QList<QNetworkCookie> cookiesForUrl(const QUrl &) const override { return {}; }
    bool setCookiesFromUrl(const QList<QNetworkCookie> &, const QUrl &) override { return false; }
};

struct DeleteLater {
    void operator()(QObject *object) const { object->deleteLater(); }
};

// Paths and texts live outside the coroutines: g++ 12 cannot compile QStringLiteral inside one.
const QString loginCodePath = QStringLiteral("/auth/login");
const QString verifyPath = QStringLiteral("/auth/verify");
const QString sessionsPath = QStringLiteral("/api/shoot/sessions");
const QString analysisAudioPath = QStringLiteral("/api/shoot/analyse-audio");
const QString analysisFramesPath = QStringLiteral("/api/shoot/analyse-frames");
const QByteArray wavType = QByteArrayLiteral("audio/wav");
const QByteArray jsonType = QByteArrayLiteral("application/json");
const QString timedOutText = QStringLiteral("The request timed out.");
const QString tooLargeText = QStringLiteral("The server's answer is too large.");

QByteArray jsonBody(const QString &email, const std::optional<QString> &code = std::nullopt)
{
    QJsonObject object{{QStringLiteral("email"), email}};
    if (code)
        object.insert(QStringLiteral("code"), *code);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

APIError statusError(const char *prefix, int status)
{
    return APIError::loginFailed(QString::fromLatin1(prefix) + QString::number(status));
}

// A top level other than an object reads as an empty object, so every key counts as missing.
QJsonObject parseAnswer(const QByteArray &body)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError)
        throw APIError::parse(QStringLiteral("The server's answer is not valid JSON (%1).").arg(error.errorString()));
    return document.object();
}

// Network-level failures (codes below 200) carry no answer, unless a cut-off answer is read;
// content and server errors are Qt's reading of an HTTP status, which the operations judge
// themselves.
bool isTransportFailure(QNetworkReply::NetworkError error, bool hasStatus, bool readsCutOffAnswers)
{
    if (error == QNetworkReply::NoError)
        return false;
    return !hasStatus || (error < QNetworkReply::ContentAccessDenied && !readsCutOffAnswers);
}

// Watches one reply for its call and ends it, remembering why: when the service redirects it (the
// credential and the login exchange go nowhere else; even a redirect within the origin is not
// followed, as Qt 6.4 at times sent a followed request twice), when it outlives the call's time,
// or when its answer grows past the call's size. Lives in the awaiting coroutine's frame, so
// nothing of it fires once the call is over.
class ReplyGuard
{
public:
    enum class Cut { None, Redirect, Deadline, Size };

    ReplyGuard(QNetworkReply &reply, CallLimit limit) : m_reply(reply), m_maximum(limit.answerBytes)
    {
        m_deadline.setSingleShot(true);
        m_deadline.callOnTimeout([this] { cut(Cut::Deadline); });
        m_deadline.start(limit.time);
        QObject::connect(&reply, &QNetworkReply::redirected, &m_deadline, [this] { cut(Cut::Redirect); });
        QObject::connect(&reply, &QNetworkReply::metaDataChanged, &m_deadline, [this] {
            const QVariant declared = m_reply.header(QNetworkRequest::ContentLengthHeader);
            if (declared.isValid() && declared.toLongLong() > m_maximum)
                cut(Cut::Size);
        });
        QObject::connect(&reply, &QNetworkReply::downloadProgress, &m_deadline, [this](qint64 received, qint64) {
            if (received > m_maximum)
                cut(Cut::Size);
        });
    }

    Cut reason() const { return m_reason; }

private:
    // Aborting finishes the reply at once, which may resume the coroutine and end this object:
    // nothing may follow the abort.
    void cut(Cut reason)
    {
        if (m_reason != Cut::None)
            return;
        m_reason = reason;
        m_reply.abort();
    }

    QNetworkReply &m_reply;
    qint64 m_maximum;
    QTimer m_deadline;
    Cut m_reason = Cut::None;
};

} // namespace

APIService::APIService(QString baseURL, CredentialStore credentials, APILimits limits)
    : m_baseURL(std::move(baseURL)),
      m_credentials(std::move(credentials)),
      m_limits(limits),
      m_network(std::make_unique<QNetworkAccessManager>())
{
    m_network->setCookieJar(new NoCookieJar(m_network.get()));
}

APIService::~APIService() = default;

QCoro::Task<std::optional<QString>> APIService::keychainRead() const
{
    return m_credentials.read();
}

QCoro::Task<> APIService::keychainWrite(QString text) const
{
    return m_credentials.write(std::move(text));
}

QCoro::Task<> APIService::keychainDelete() const
{
    return m_credentials.remove();
}

std::optional<QUrl> APIService::transcriptUrl(const QString &baseURL, const QString &token)
{
    // One path segment: "/" is escaped too, and a dot segment would climb out of /api/ferro/.
    if (token == u"." || token == u"..")
        return std::nullopt;
    const QByteArray segment = QUrl::toPercentEncoding(token, QByteArrayLiteral("!$&'()*+,:;=@"));
    const QUrl url(baseURL + QStringLiteral("/api/ferro/") + QString::fromLatin1(segment) + QStringLiteral("/transcript"),
                   QUrl::StrictMode);
    if (!url.isValid())
        return std::nullopt;
    return url;
}

QNetworkRequest APIService::jsonPost(const QString &path) const
{
    QNetworkRequest request(QUrl(m_baseURL + path));
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    return request;
}

QNetworkRequest APIService::uploadRequest(const QString &path, const QByteArray &contentType) const
{
    QNetworkRequest request(QUrl(m_baseURL + path));
    request.setRawHeader(QByteArrayLiteral("Content-Type"), contentType);
    return request;
}

QCoro::Task<QNetworkRequest> APIService::authenticated(QNetworkRequest request) const
{
    QCoro::Task<std::optional<QString>> reading = keychainRead();
    if (const std::optional<QString> credential = co_await std::move(reading)) {
        if (!ServiceJson::isCookiePair(*credential))
            throw APIError::invalidResponse();
        request.setRawHeader("Cookie", credential->toUtf8());
    }
    co_return request;
}

QCoro::Task<APIService::Answer> APIService::send(QNetworkRequest request, std::optional<QByteArray> body, CallLimit limit,
                                                 CutOffAnswers cutOff)
{
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::UserVerifiedRedirectPolicy);
    const std::unique_ptr<QNetworkReply, DeleteLater> reply(body ? m_network->post(request, *body)
                                                                 : m_network->get(request));
    const ReplyGuard guard(*reply, limit);
    co_await reply.get();

    switch (guard.reason()) {
    case ReplyGuard::Cut::Redirect: throw APIError::invalidResponse();
    case ReplyGuard::Cut::Deadline: throw APIError::transport(timedOutText);
    case ReplyGuard::Cut::Size: throw APIError::transport(tooLargeText);
    case ReplyGuard::Cut::None: break;
    }
    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (isTransportFailure(reply->error(), status.isValid(), cutOff == CutOffAnswers::Read))
        throw APIError::transport(reply->errorString());
    Answer answer;
    if (status.isValid())
        answer.status = status.toInt();
    answer.body = reply->readAll();
    if (reply->hasRawHeader("Set-Cookie"))
        answer.setCookie = reply->rawHeader("Set-Cookie");
    co_return answer;
}

QCoro::Task<> APIService::requestLoginCode(QString email)
{
    const Answer answer = co_await send(jsonPost(loginCodePath), jsonBody(email), m_limits.loginCode, CutOffAnswers::Fail);
    if (const auto refusal = ServiceJson::loginCodeRefusal(parseAnswer(answer.body)))
        throw APIError::loginFailed(*refusal);
}

QCoro::Task<LoginResult> APIService::login(QString email, QString code)
{
    QNetworkRequest request = jsonPost(verifyPath);
    request.setRawHeader("x-vorlix-client", "live");
    const Answer answer = co_await send(request, jsonBody(email, code), m_limits.login, CutOffAnswers::Fail);
    if (!answer.status)
        throw APIError::invalidResponse();
    const QJsonObject object = parseAnswer(answer.body);
    if (const auto refusal = ServiceJson::loginRefusal(object))
        throw APIError::loginFailed(*refusal);
    if (const auto credential = ServiceJson::credentialFromAnswer(object, answer.setCookie)) {
        if (!ServiceJson::isCookiePair(*credential))
            throw APIError::invalidResponse();
        QCoro::Task<> storing = keychainWrite(*credential);
        co_await std::move(storing);
    }
    co_return ServiceJson::loginResultFromAnswer(object, email);
}

QCoro::Task<QList<ShootSession>> APIService::fetchShootSessions()
{
    QCoro::Task<QNetworkRequest> signing = authenticated(QNetworkRequest(QUrl(m_baseURL + sessionsPath)));
    const QNetworkRequest request = co_await std::move(signing);
    const Answer answer = co_await send(request, std::nullopt, m_limits.sessions, CutOffAnswers::Fail);
    if (!answer.status)
        throw APIError::invalidResponse();
    if (*answer.status != 200)
        throw statusError("Server returned status ", *answer.status);
    co_return ServiceJson::sessionsFromAnswer(parseAnswer(answer.body), QDateTime::currentDateTimeUtc());
}

QCoro::Task<QList<TranscriptSegment>> APIService::fetchTranscript(QString token)
{
    const auto url = transcriptUrl(m_baseURL, token);
    if (!url)
        throw APIError::invalidResponse();
    QCoro::Task<QNetworkRequest> signing = authenticated(QNetworkRequest(*url));
    const QNetworkRequest request = co_await std::move(signing);
    const Answer answer = co_await send(request, std::nullopt, m_limits.transcript, CutOffAnswers::Fail);
    if (!answer.status)
        throw APIError::invalidResponse();
    if (*answer.status != 200)
        throw statusError("Transcript fetch failed with status ", *answer.status);
    co_return ServiceJson::transcriptFromAnswer(parseAnswer(answer.body));
}

QCoro::Task<QJsonObject> APIService::uploadAnalysisAudio(AnalysisAudio audio)
{
    QCoro::Task<QNetworkRequest> signing = authenticated(uploadRequest(analysisAudioPath, wavType));
    QNetworkRequest request = co_await std::move(signing);
    request.setRawHeader("sessiontoken", audio.sessionToken.toUtf8());
    request.setRawHeader("filename", audio.fileName.toUtf8());
    request.setRawHeader("starttimecode", audio.startTimecode.toUtf8());
    request.setRawHeader("fps", QByteArray::number(audio.fps));
    QCoro::Task<Answer> sending = send(request, audio.wav, m_limits.analysisAudio, CutOffAnswers::Read);
    const Answer answer = co_await std::move(sending);
    co_return parseAnswer(answer.body);
}

QCoro::Task<QJsonObject> APIService::uploadAnalysisFrames(QByteArray body)
{
    QCoro::Task<QNetworkRequest> signing = authenticated(uploadRequest(analysisFramesPath, jsonType));
    const QNetworkRequest request = co_await std::move(signing);
    QCoro::Task<Answer> sending = send(request, body, m_limits.analysisFrames, CutOffAnswers::Read);
    const Answer answer = co_await std::move(sending);
    co_return parseAnswer(answer.body);
}
