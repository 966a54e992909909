#include "ServiceStandin.h"

#include <QHttpServerResponder>
#include <QJsonParseError>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QUrl>

namespace {

HttpAnswer refusal(int status, const QString &error)
{
    return HttpAnswer::json({{QStringLiteral("ok"), false}, {QStringLiteral("error"), error}}, status);
}

std::optional<QJsonObject> jsonBody(const QHttpServerRequest &request)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(request.body(), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    return document.object();
}

QByteArray header(const QHttpServerRequest &request, const QByteArray &name)
{
    for (const auto &[key, value] : request.headers()) {
        if (key.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    }
    return {};
}

// The ISO form of a local day and time of day, in UTC.
QString isoDate(const QDate &day, const QTime &time)
{
    return QDateTime(day, time, Qt::LocalTime).toUTC().toString(Qt::ISODate);
}

} // namespace

void HttpAnswer::writeTo(QHttpServerResponder &responder) const
{
    responder.writeStatusLine(QHttpServerResponder::StatusCode(status));
    for (const auto &[name, value] : headers)
        responder.writeHeader(name, value);
    responder.writeHeader("Content-Length", QByteArray::number(body.size()));
    responder.writeBody(body);
}

std::optional<StandinData> StandinData::fromJson(const QByteArray &json, const QDateTime &now, QString *error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError || !document.isObject()) {
        *error = parseError.error != QJsonParseError::NoError ? parseError.errorString() : QStringLiteral("expected an object");
        return std::nullopt;
    }
    const QJsonObject root = document.object();
    StandinData data;
    data.userName = root.value(QStringLiteral("user")).toObject().value(QStringLiteral("name")).toString();
    const QJsonArray sessions = root.value(QStringLiteral("sessions")).toArray();
    for (qsizetype i = 0; i < sessions.size(); ++i) {
        QJsonObject session = sessions.at(i).toObject();
        const QString token = session.value(QStringLiteral("share_token")).toString();
        if (token.isEmpty()) {
            *error = QStringLiteral("sessions[%1]: \"share_token\" is missing").arg(i);
            return std::nullopt;
        }
        data.transcripts.insert(token, session.take(QStringLiteral("transcript")).toArray());
        const QJsonValue daysAgo = session.take(QStringLiteral("created_days_ago"));
        const QJsonValue timeOfDay = session.take(QStringLiteral("created_time"));
        if (daysAgo.isDouble()) {
            const QDate day = now.toLocalTime().date().addDays(-daysAgo.toInteger());
            session.insert(QStringLiteral("created_at"),
                           isoDate(day, QTime::fromString(timeOfDay.toString(), QStringLiteral("HH:mm:ss"))));
            QJsonArray markers = session.value(QStringLiteral("markers")).toArray();
            for (qsizetype m = 0; m < markers.size(); ++m) {
                QJsonObject marker = markers.at(m).toObject();
                if (marker.contains(QStringLiteral("created_at")) || !markers.at(m).isObject())
                    continue;
                const QTime time = QTime::fromString(marker.value(QStringLiteral("timecode")).toString().left(8),
                                                     QStringLiteral("HH:mm:ss"));
                if (time.isValid())
                    marker.insert(QStringLiteral("created_at"), isoDate(day, time));
                markers.replace(m, marker);
            }
            session.insert(QStringLiteral("markers"), markers);
        }
        data.sessions.append(session);
    }
    return data;
}

ServiceStandin::ServiceStandin(StandinData data, QString loginCode, QObject *parent)
    : QAbstractHttpServer(parent), m_data(std::move(data)), m_loginCode(std::move(loginCode))
{
    using Method = QHttpServerRequest::Method;
    const auto exact = [](const char *path) {
        return QRegularExpression(QLatin1Char('^') + QRegularExpression::escape(QLatin1String(path)) + QLatin1Char('$'));
    };
    m_routes = {
        {Method::Post, exact("/auth/login"), [this](const auto &request, const auto &) { return requestCode(request); }},
        {Method::Post, exact("/auth/verify"), [this](const auto &request, const auto &) { return verify(request); }},
        {Method::Get, exact("/api/shoot/sessions"), [this](const auto &request, const auto &) { return sessions(request); }},
        {Method::Get, QRegularExpression(QStringLiteral("^/api/ferro/(.+)/transcript$")),
         [this](const auto &request, const QRegularExpressionMatch &match) {
             return transcript(request, QUrl::fromPercentEncoding(match.captured(1).toUtf8()));
         }},
    };
}

quint16 ServiceStandin::listenOnLoopback(quint16 port)
{
    return listen(QHostAddress::LocalHost, port);
}

bool ServiceStandin::handleRequest(const QHttpServerRequest &request, QTcpSocket *socket)
{
    const QString path = request.url().path(QUrl::FullyEncoded);
    for (const Route &route : std::as_const(m_routes)) {
        const QRegularExpressionMatch match = route.path.match(path);
        if (route.method == request.method() && match.hasMatch()) {
            QHttpServerResponder responder = makeResponder(request, socket);
            route.answer(request, match).writeTo(responder);
            return true;
        }
    }
    return false;
}

void ServiceStandin::missingHandler(const QHttpServerRequest &request, QTcpSocket *socket)
{
    QHttpServerResponder responder = makeResponder(request, socket);
    refusal(404, QStringLiteral("Not found")).writeTo(responder);
}

HttpAnswer ServiceStandin::requestCode(const QHttpServerRequest &request)
{
    const auto body = jsonBody(request);
    const QString email = body ? body->value(QStringLiteral("email")).toString() : QString();
    if (!email.contains(QLatin1Char('@')))
        return refusal(400, QStringLiteral("Enter a valid e-mail address"));
    Q_EMIT loginCodeIssued(email, m_loginCode);
    return HttpAnswer::json({{QStringLiteral("ok"), true}});
}

HttpAnswer ServiceStandin::verify(const QHttpServerRequest &request)
{
    if (header(request, "x-vorlix-client") != "live")
        return refusal(400, QStringLiteral("Unsupported client"));
    const auto body = jsonBody(request);
    if (!body)
        return refusal(400, QStringLiteral("Invalid request"));
    const QString email = body->value(QStringLiteral("email")).toString();
    if (body->value(QStringLiteral("code")).toString() != m_loginCode || !email.contains(QLatin1Char('@')))
        return refusal(401, QStringLiteral("Invalid or expired code"));

    const QString sid = QString::number(QRandomGenerator::global()->generate64(), 16);
    m_sids.insert(sid);
    const QString name = m_data.userName.isEmpty() ? email.section(QLatin1Char('@'), 0, 0) : m_data.userName;
    HttpAnswer answer = HttpAnswer::json({{QStringLiteral("ok"), true},
                                          {QStringLiteral("sid"), sid},
                                          {QStringLiteral("user"), QJsonObject{{QStringLiteral("name"), name},
                                                                               {QStringLiteral("email"), email}}}});
    answer.headers.append(std::pair<QByteArray, QByteArray>("Set-Cookie", "sid=" + sid.toLatin1() + "; Path=/; HttpOnly"));
    return answer;
}

bool ServiceStandin::isSignedIn(const QHttpServerRequest &request) const
{
    const QList<QByteArray> cookies = header(request, "Cookie").split(';');
    return std::any_of(cookies.begin(), cookies.end(), [this](const QByteArray &cookie) {
        const QByteArray pair = cookie.trimmed();
        return pair.startsWith("sid=") && m_sids.contains(QString::fromLatin1(pair.mid(4)));
    });
}

HttpAnswer ServiceStandin::sessions(const QHttpServerRequest &request) const
{
    if (!isSignedIn(request))
        return refusal(401, QStringLiteral("Not signed in"));
    return HttpAnswer::json({{QStringLiteral("ok"), true}, {QStringLiteral("sessions"), m_data.sessions}});
}

HttpAnswer ServiceStandin::transcript(const QHttpServerRequest &request, const QString &token) const
{
    if (!isSignedIn(request))
        return refusal(401, QStringLiteral("Not signed in"));
    const auto found = m_data.transcripts.constFind(token);
    if (found == m_data.transcripts.cend())
        return refusal(404, QStringLiteral("Unknown session"));
    return HttpAnswer::json({{QStringLiteral("ok"), true}, {QStringLiteral("segments"), *found}});
}
