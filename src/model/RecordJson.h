#pragma once

#include "model/DeletedSessionInfo.h"
#include "model/MediaClip.h"
#include "model/ShootMarker.h"
#include "model/ShootSession.h"
#include "model/TranscriptSegment.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <optional>

// The records' own JSON form: camel-case keys named after the fields, optional fields left out
// when empty, dates as seconds since 2001-01-01 00:00:00 UTC. The deleted-session list is stored
// in this form, so it must stay readable. Reading fails on a missing or mistyped required key and
// says where in `error`, e.g. `markers[2]: "timecode" is missing`.
namespace RecordJson {

double toReferenceSeconds(const QDateTime &date);
QDateTime fromReferenceSeconds(double seconds);

QJsonObject toJson(const ShootMarker &marker);
QJsonObject toJson(const TranscriptSegment &segment);
QJsonObject toJson(const MediaClip &clip);
QJsonObject toJson(const ShootSession &session);
QJsonObject toJson(const DeletedSessionInfo &info);

template<typename Record>
QJsonArray toJsonArray(const QList<Record> &records)
{
    QJsonArray array;
    for (const Record &record : records)
        array.append(toJson(record));
    return array;
}

std::optional<ShootMarker> markerFromJson(const QJsonValue &value, QString *error = nullptr);
std::optional<TranscriptSegment> segmentFromJson(const QJsonValue &value, QString *error = nullptr);
std::optional<MediaClip> clipFromJson(const QJsonValue &value, QString *error = nullptr);
std::optional<ShootSession> sessionFromJson(const QJsonValue &value, QString *error = nullptr);
std::optional<DeletedSessionInfo> deletedSessionFromJson(const QJsonValue &value, QString *error = nullptr);

std::optional<QList<ShootSession>> sessionsFromJson(const QJsonValue &value, QString *error = nullptr);
std::optional<QList<MediaClip>> clipsFromJson(const QJsonValue &value, QString *error = nullptr);
std::optional<QList<TranscriptSegment>> segmentsFromJson(const QJsonValue &value, QString *error = nullptr);
std::optional<QList<DeletedSessionInfo>> deletedSessionsFromJson(const QJsonValue &value, QString *error = nullptr);

} // namespace RecordJson
