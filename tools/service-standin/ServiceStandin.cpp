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

bool isTimecode(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("^\\d{2,}:\\d{2}:\\d{2}:\\d{2}$"));
    return pattern.match(text).hasMatch();
}

quint32 littleEndian32(const QByteArray &bytes, qsizetype at)
{
    const auto byte = [&](qsizetype i) { return quint32(quint8(bytes[at + i])); };
    return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
}

// The playing time of a RIFF WAVE file from its "fmt " byte rate and "data" size; absent when
// the bytes are not such a file.
std::optional<double> wavSeconds(const QByteArray &wav)
{
    if (wav.size() < 12 || !wav.startsWith("RIFF") || wav.mid(8, 4) != "WAVE")
        return std::nullopt;
    std::optional<quint32> byteRate;
    for (qsizetype at = 12; at + 8 <= wav.size();) {
        const QByteArray id = wav.mid(at, 4);
        const quint32 size = littleEndian32(wav, at + 4);
        if (id == "fmt " && size >= 16 && at + 20 <= wav.size())
            byteRate = littleEndian32(wav, at + 16);
        if (id == "data") {
            if (!byteRate || *byteRate == 0)
                return std::nullopt;
            const qsizetype available = std::min<qsizetype>(size, wav.size() - at - 8);
            return double(available) / *byteRate;
        }
        at += 8 + size + (size & 1);
    }
    return std::nullopt;
}

// The timecode `seconds` after `start` at `fps`, both non-drop-frame.
QString timecodeAfter(const QString &start, double seconds, int fps)
{
    const QStringList parts = start.split(QLatin1Char(':'));
    const qint64 frames = ((parts[0].toLongLong() * 60 + parts[1].toLongLong()) * 60 + parts[2].toLongLong()) * fps
        + parts[3].toLongLong() + qint64(seconds * fps);
    return QStringLiteral("%1:%2:%3:%4")
        .arg(frames / (3600 * fps), 2, 10, QLatin1Char('0'))
        .arg(frames / (60 * fps) % 60, 2, 10, QLatin1Char('0'))
        .arg(frames / fps % 60, 2, 10, QLatin1Char('0'))
        .arg(frames % fps, 2, 10, QLatin1Char('0'));
}

QJsonObject analysisMarker(const QString &type, const QString &timecode, const QString &summary)
{
    return {{QStringLiteral("id"), QString::number(QRandomGenerator::global()->generate64(), 16)},
            {QStringLiteral("marker_type"), type},
            {QStringLiteral("timecode"), timecode},
            {QStringLiteral("summary"), summary},
            {QStringLiteral("created_at"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate)}};
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
        {Method::Post, exact("/api/shoot/analyse-audio"), [this](const auto &request, const auto &) { return analyseAudio(request); }},
        {Method::Post, exact("/api/shoot/analyse-frames"), [this](const auto &request, const auto &) { return analyseFrames(request); }},
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

void ServiceStandin::storeMarkers(const QString &token, const QString &filename, const QJsonArray &markers)
{
    for (qsizetype i = 0; i < m_data.sessions.size(); ++i) {
        QJsonObject session = m_data.sessions.at(i).toObject();
        if (session.value(QStringLiteral("share_token")).toString() != token)
            continue;
        QJsonArray stored = session.value(QStringLiteral("markers")).toArray();
        for (const QJsonValue &marker : markers)
            stored.append(marker);
        session.insert(QStringLiteral("markers"), stored);
        m_data.sessions.replace(i, session);
        return;
    }
    m_data.sessions.prepend(QJsonObject{{QStringLiteral("share_token"), token},
                                        {QStringLiteral("title"), filename},
                                        {QStringLiteral("created_at"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate)},
                                        {QStringLiteral("markers"), markers}});
}

// One soundbite marker per started 10 seconds of audio and about 2.5 words a second.
HttpAnswer ServiceStandin::analyseAudio(const QHttpServerRequest &request)
{
    if (!isSignedIn(request))
        return refusal(401, QStringLiteral("Not signed in"));
    StandinAnalysisLog::Audio seen{QString::fromUtf8(header(request, "sessiontoken")),
                                   QString::fromUtf8(header(request, "filename")),
                                   QString::fromUtf8(header(request, "starttimecode")), 0, 0};
    bool fpsOk = false;
    seen.fps = header(request, "fps").toInt(&fpsOk);
    const auto seconds = wavSeconds(request.body());
    if (header(request, "Content-Type") != "audio/wav" || seen.sessionToken.isEmpty() || seen.filename.isEmpty()
        || !isTimecode(seen.startTimecode) || !fpsOk || seen.fps <= 0 || !seconds)
        return refusal(400, QStringLiteral("Invalid audio upload"));
    seen.seconds = *seconds;
    m_analysisLog.audio.append(seen);

    QJsonArray markers;
    for (int k = 0; k * 10.0 < seen.seconds; ++k)
        markers.append(analysisMarker(QStringLiteral("soundbite"), timecodeAfter(seen.startTimecode, k * 10.0, seen.fps),
                                      QStringLiteral("Speech in %1").arg(seen.filename)));
    storeMarkers(seen.sessionToken, seen.filename, markers);
    return HttpAnswer::json({{QStringLiteral("ok"), true},
                             {QStringLiteral("markers"), markers},
                             {QStringLiteral("transcript_words"), qint64(seen.seconds * 2.5)}});
}

// One visual marker for every second frame of the batch, starting with the first.
HttpAnswer ServiceStandin::analyseFrames(const QHttpServerRequest &request)
{
    if (!isSignedIn(request))
        return refusal(401, QStringLiteral("Not signed in"));
    const auto body = jsonBody(request);
    const QJsonValue fps = body ? body->value(QStringLiteral("fps")) : QJsonValue();
    const QJsonValue frames = body ? body->value(QStringLiteral("frames")) : QJsonValue();
    StandinAnalysisLog::Frames seen{body ? body->value(QStringLiteral("sessionToken")).toString() : QString(),
                                    body ? body->value(QStringLiteral("filename")).toString() : QString(), {}};
    bool valid = header(request, "Content-Type") == "application/json" && !seen.sessionToken.isEmpty()
        && !seen.filename.isEmpty() && fps.isDouble() && fps.toDouble() == double(fps.toInteger()) && fps.toInteger() > 0
        && frames.isArray() && !frames.toArray().isEmpty() && frames.toArray().size() <= 20;
    for (const QJsonValue &frame : frames.toArray()) {
        const QString timecode = frame.toObject().value(QStringLiteral("timecode")).toString();
        const QByteArray jpeg = QByteArray::fromBase64(frame.toObject().value(QStringLiteral("base64")).toString().toLatin1());
        valid = valid && isTimecode(timecode) && jpeg.startsWith("\xFF\xD8");
        seen.timecodes.append(timecode);
    }
    if (!valid)
        return refusal(400, QStringLiteral("Invalid frames upload"));
    m_analysisLog.frames.append(seen);

    QJsonArray markers;
    for (qsizetype k = 0; k < seen.timecodes.size(); k += 2)
        markers.append(analysisMarker(QStringLiteral("visual"), seen.timecodes[k], QStringLiteral("Shot in %1").arg(seen.filename)));
    storeMarkers(seen.sessionToken, seen.filename, markers);
    return HttpAnswer::json({{QStringLiteral("ok"), true}, {QStringLiteral("markers"), markers}});
}
