#pragma once

#include "model/ShootSession.h"
#include "model/TranscriptSegment.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <optional>

// Who signed in, as the code check reports it.
struct LoginResult {
    QString name;
    QString email;

    friend bool operator==(const LoginResult &, const LoginResult &) = default;
};

// The service's JSON answers turned into records, key by key. Every key has a fall-back for
// "missing or of another type", so no answer can make a mapping fail; only a session without a
// share token is left out. `now` stands in for every unreadable date, so one fetch gets one
// instant. Ids that the service leaves out become fresh UUIDs.
namespace ServiceJson {

// "2024-05-01T09:30:00Z" or "...+02:00": date, "T", time to the second and a zone. Fractional
// seconds and every other form give nothing.
std::optional<QDateTime> parseInternetDate(const QString &text);

ShootMarker markerFromService(const QJsonObject &object, const QDateTime &now);
std::optional<ShootSession> sessionFromService(const QJsonObject &object, const QDateTime &now);
TranscriptSegment segmentFromService(const QJsonObject &object);

// The answer of GET /api/shoot/sessions, in the service's order.
QList<ShootSession> sessionsFromAnswer(const QJsonObject &answer, const QDateTime &now);
// The answer of GET /api/ferro/<token>/transcript; empty unless "ok" is true.
QList<TranscriptSegment> transcriptFromAnswer(const QJsonObject &answer);

// The answer of POST /auth/login: nothing when the code is on its way, else the message to show.
std::optional<QString> loginCodeRefusal(const QJsonObject &answer);
// The answer of POST /auth/verify: nothing when the code was accepted, else the message to show.
std::optional<QString> loginRefusal(const QJsonObject &answer);
// The text to keep as the login credential: "sid=" + "sid", else the first piece of the
// Set-Cookie header, else nothing (the earlier credential stays).
std::optional<QString> credentialFromAnswer(const QJsonObject &answer, const std::optional<QByteArray> &setCookie);
// Whether `credential` is one cookie as a Cookie header may carry it: a token name, "=", and a
// value of cookie-octets, optionally in double quotes (RFC 6265). Anything else, a line break or
// a second cookie among it, is no credential of ours.
bool isCookiePair(QStringView credential);
LoginResult loginResultFromAnswer(const QJsonObject &answer, const QString &typedEmail);

} // namespace ServiceJson
