#include "service/ServiceJson.h"

#include "time/NumberText.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QUuid>

namespace ServiceJson {

namespace {

QString orFreshId(std::optional<QString> id)
{
    return id ? std::move(*id) : QUuid::createUuid().toString(QUuid::WithoutBraces);
}

std::optional<QString> stringValue(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

bool isTrue(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    return value.isBool() && value.toBool();
}

// An array counts only when every element is an object: one stray element voids it all.
std::optional<QJsonArray> objectArray(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    if (!value.isArray())
        return std::nullopt;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &element : array) {
        if (!element.isObject())
            return std::nullopt;
    }
    return array;
}

QDateTime dateValue(const QJsonObject &object, const QDateTime &now)
{
    const auto text = stringValue(object, QLatin1StringView("created_at"));
    return text ? parseInternetDate(*text).value_or(now) : now;
}

std::optional<QString> integerText(const QJsonValue &value)
{
    const auto number = value.isDouble() ? wholeNumber(value.toDouble()) : std::nullopt;
    return number ? std::optional(QString::number(*number)) : std::nullopt;
}

std::optional<QList<WordTiming>> wordTimings(const QJsonObject &object)
{
    const auto array = objectArray(object, QLatin1StringView("word_timings"));
    if (!array)
        return std::nullopt;
    QList<WordTiming> timings;
    timings.reserve(array->size());
    for (const QJsonValue &element : *array) {
        const QJsonObject entry = element.toObject();
        WordTiming timing;
        for (auto it = entry.begin(); it != entry.end(); ++it) {
            if (!it.value().isDouble())
                return std::nullopt;
            timing.insert(it.key(), it.value().toDouble());
        }
        timings.append(timing);
    }
    return timings;
}

bool isTokenCharacter(QChar c)
{
    static constexpr QLatin1StringView separators("()<>@,;:\\\"/[]?={} \t");
    return c.unicode() > 32 && c.unicode() < 127 && !separators.contains(c);
}

bool isCookieOctet(QChar c)
{
    const char16_t u = c.unicode();
    return u == 0x21 || (u >= 0x23 && u <= 0x2B) || (u >= 0x2D && u <= 0x3A) || (u >= 0x3C && u <= 0x5B)
           || (u >= 0x5D && u <= 0x7E);
}

} // namespace

std::optional<QDateTime> parseInternetDate(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral(
        R"(^(\d{4})-(\d{2})-(\d{2})T(\d{2}):(\d{2}):(\d{2})(?:(Z)|([+-])(\d{2}):?(\d{2}))$)"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const auto number = [&](int group) { return match.capturedView(group).toInt(); };
    const QDate date(number(1), number(2), number(3));
    const QTime time(number(4), number(5), number(6));
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    int offset = 0;
    if (!match.hasCaptured(7)) {
        const int hours = number(9), minutes = number(10);
        if (hours > 23 || minutes > 59)
            return std::nullopt;
        offset = (hours * 3600 + minutes * 60) * (match.capturedView(8) == u"-" ? -1 : 1);
    }
    return QDateTime(date, time, Qt::UTC).addSecs(-offset);
}

ShootMarker markerFromService(const QJsonObject &object, const QDateTime &now)
{
    ShootMarker marker;
    marker.id = orFreshId(stringValue(object, QLatin1StringView("id")));
    marker.markerType = stringValue(object, QLatin1StringView("marker_type")).value_or(QStringLiteral("log"));
    marker.timecode = stringValue(object, QLatin1StringView("timecode")).value_or(QString());
    marker.timecodeOut = stringValue(object, QLatin1StringView("timecode_out"));
    marker.summary = stringValue(object, QLatin1StringView("summary"));
    marker.quote = stringValue(object, QLatin1StringView("quote"));
    marker.raw = stringValue(object, QLatin1StringView("transcript_window"));
    marker.manualNote = stringValue(object, QLatin1StringView("manual_note"));
    marker.createdAt = dateValue(object, now);
    return marker;
}

std::optional<ShootSession> sessionFromService(const QJsonObject &object, const QDateTime &now)
{
    const auto token = stringValue(object, QLatin1StringView("share_token"));
    if (!token)
        return std::nullopt;
    ShootSession session;
    session.id = session.shareToken = *token;
    session.title = stringValue(object, QLatin1StringView("title")).value_or(QStringLiteral("Shoot session"));
    session.createdAt = dateValue(object, now);
    if (const auto markers = objectArray(object, QLatin1StringView("markers"))) {
        session.markers.reserve(markers->size());
        for (const QJsonValue &marker : *markers)
            session.markers.append(markerFromService(marker.toObject(), now));
    }
    session.fps = 25;
    return session;
}

TranscriptSegment segmentFromService(const QJsonObject &object)
{
    TranscriptSegment segment;
    const QString utteranceId = stringValue(object, QLatin1StringView("utterance_id")).value_or(QString());
    if (!utteranceId.isEmpty())
        segment.id = utteranceId;
    else
        segment.id = orFreshId(integerText(object.value(QLatin1StringView("id"))));
    segment.speaker = stringValue(object, QLatin1StringView("speaker")).value_or(QString());
    segment.text = stringValue(object, QLatin1StringView("text")).value_or(QString());
    segment.timecode = stringValue(object, QLatin1StringView("timecode")).value_or(QString());
    const QJsonValue highlighted = object.value(QLatin1StringView("highlighted"));
    segment.highlighted = highlighted.isBool() && highlighted.toBool();
    segment.wordTimings = wordTimings(object);
    return segment;
}

QList<ShootSession> sessionsFromAnswer(const QJsonObject &answer, const QDateTime &now)
{
    QList<ShootSession> sessions;
    const auto array = objectArray(answer, QLatin1StringView("sessions"));
    if (!array)
        return sessions;
    sessions.reserve(array->size());
    for (const QJsonValue &element : *array) {
        if (auto session = sessionFromService(element.toObject(), now))
            sessions.append(std::move(*session));
    }
    return sessions;
}

QList<TranscriptSegment> transcriptFromAnswer(const QJsonObject &answer)
{
    QList<TranscriptSegment> segments;
    const auto array = isTrue(answer, QLatin1StringView("ok")) ? objectArray(answer, QLatin1StringView("segments")) : std::nullopt;
    if (!array)
        return segments;
    segments.reserve(array->size());
    for (const QJsonValue &element : *array)
        segments.append(segmentFromService(element.toObject()));
    return segments;
}

std::optional<QString> loginCodeRefusal(const QJsonObject &answer)
{
    // An informational "message" means the service has taken the request.
    if (isTrue(answer, QLatin1StringView("ok")) || answer.contains(QLatin1StringView("message")))
        return std::nullopt;
    return stringValue(answer, QLatin1StringView("error")).value_or(QStringLiteral("Failed to send code"));
}

std::optional<QString> loginRefusal(const QJsonObject &answer)
{
    if (isTrue(answer, QLatin1StringView("ok")))
        return std::nullopt;
    return stringValue(answer, QLatin1StringView("error")).value_or(QStringLiteral("Unknown error"));
}

std::optional<QString> credentialFromAnswer(const QJsonObject &answer, const std::optional<QByteArray> &setCookie)
{
    if (const auto sid = stringValue(answer, QLatin1StringView("sid")))
        return QStringLiteral("sid=") + *sid;
    if (!setCookie)
        return std::nullopt;
    const QStringList pieces = QString::fromUtf8(*setCookie).split(QLatin1Char(';'), Qt::SkipEmptyParts);
    if (pieces.isEmpty())
        return std::nullopt;
    return pieces.first();
}

bool isCookiePair(QStringView credential)
{
    const qsizetype equals = credential.indexOf(u'=');
    if (equals <= 0)
        return false;
    const QStringView name = credential.left(equals);
    QStringView value = credential.mid(equals + 1);
    if (value.size() >= 2 && value.front() == u'"' && value.back() == u'"')
        value = value.mid(1, value.size() - 2);
    return std::all_of(name.begin(), name.end(), isTokenCharacter) && std::all_of(value.begin(), value.end(), isCookieOctet);
}

LoginResult loginResultFromAnswer(const QJsonObject &answer, const QString &typedEmail)
{
    const QJsonObject user = answer.value(QLatin1StringView("user")).toObject();
    return {stringValue(user, QLatin1StringView("name")).value_or(QString()),
            stringValue(user, QLatin1StringView("email")).value_or(typedEmail)};
}

} // namespace ServiceJson
