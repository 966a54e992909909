#include "model/RecordJson.h"

#include "time/NumberText.h"

#include <QTimeZone>
#include <cmath>
#include <limits>

namespace RecordJson {

namespace {

const QDateTime &referenceDate()
{
    static const QDateTime date(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    return date;
}

// Walks one JSON object, remembering the first problem with the path that leads to it.
class Reader
{
public:
    Reader(const QJsonValue &value, QString path, QString *error)
        : m_path(std::move(path)), m_error(error)
    {
        if (value.isObject())
            m_object = value.toObject();
        else
            fail(QStringLiteral("expected an object"));
    }

    bool ok() const { return m_ok; }

    QString string(const QString &key) { return required(key, QJsonValue::String).toString(); }
    double number(const QString &key) { return required(key, QJsonValue::Double).toDouble(); }
    bool boolean(const QString &key) { return required(key, QJsonValue::Bool).toBool(); }
    QDateTime date(const QString &key) { return fromReferenceSeconds(number(key)); }

    int integer(const QString &key)
    {
        const double value = number(key);
        if (m_ok && !isInteger(value))
            fail(QStringLiteral("\"%1\" is not an integer").arg(key));
        return int(value);
    }

    std::optional<QString> optionalString(const QString &key)
    {
        const QJsonValue value = optional(key, QJsonValue::String);
        return value.isString() ? std::optional(value.toString()) : std::nullopt;
    }

    std::optional<double> optionalNumber(const QString &key)
    {
        const QJsonValue value = optional(key, QJsonValue::Double);
        return value.isDouble() ? std::optional(value.toDouble()) : std::nullopt;
    }

    std::optional<int> optionalInteger(const QString &key)
    {
        const auto value = optionalNumber(key);
        if (!value)
            return std::nullopt;
        if (!isInteger(*value)) {
            fail(QStringLiteral("\"%1\" is not an integer").arg(key));
            return std::nullopt;
        }
        return int(*value);
    }

    template<typename Record, typename Read>
    QList<Record> array(const QString &key, Read read)
    {
        const QJsonValue value = required(key, QJsonValue::Array);
        return m_ok ? readArray<Record>(value.toArray(), m_path + key, read) : QList<Record>();
    }

    template<typename Record, typename Read>
    QList<Record> readArray(const QJsonArray &array, const QString &path, Read read)
    {
        QList<Record> records;
        records.reserve(array.size());
        for (qsizetype i = 0; i < array.size() && m_ok; ++i) {
            QString innerError;
            const auto record = read(array.at(i), &innerError);
            if (!record) {
                fail(QStringLiteral("%1[%2]: %3").arg(path).arg(i).arg(innerError), false);
                break;
            }
            records.append(*record);
        }
        return records;
    }

    const QJsonObject &object() const { return m_object; }

    void fail(const QString &message, bool prefixPath = true)
    {
        if (!m_ok)
            return;
        m_ok = false;
        if (m_error)
            *m_error = prefixPath && !m_path.isEmpty() ? m_path + QStringLiteral(": ") + message : message;
    }

private:
    static bool isInteger(double value)
    {
        const auto number = wholeNumber(value);
        return number && std::abs(*number) <= std::numeric_limits<int>::max();
    }

    QJsonValue required(const QString &key, QJsonValue::Type type)
    {
        if (!m_ok)
            return {};
        if (!m_object.contains(key)) {
            fail(QStringLiteral("\"%1\" is missing").arg(key));
            return {};
        }
        return typed(key, type);
    }

    QJsonValue optional(const QString &key, QJsonValue::Type type)
    {
        if (!m_ok || !m_object.contains(key) || m_object.value(key).isNull())
            return {};
        return typed(key, type);
    }

    QJsonValue typed(const QString &key, QJsonValue::Type type)
    {
        const QJsonValue value = m_object.value(key);
        if (value.type() != type) {
            fail(QStringLiteral("\"%1\" has the wrong type").arg(key));
            return {};
        }
        return value;
    }

    QJsonObject m_object;
    QString m_path;
    QString *m_error;
    bool m_ok = true;
};

template<typename Record>
std::optional<Record> finish(const Reader &reader, Record record)
{
    return reader.ok() ? std::optional(std::move(record)) : std::nullopt;
}

void putOptional(QJsonObject &object, const QString &key, const std::optional<QString> &value)
{
    if (value)
        object.insert(key, *value);
}

void putOptional(QJsonObject &object, const QString &key, const std::optional<int> &value)
{
    if (value)
        object.insert(key, *value);
}

template<typename Record, typename Read>
std::optional<QList<Record>> listFromJson(const QJsonValue &value, QString *error, Read read)
{
    if (!value.isArray()) {
        if (error)
            *error = QStringLiteral("expected an array");
        return std::nullopt;
    }
    Reader reader(QJsonObject(), QString(), error);
    QList<Record> records = reader.readArray<Record>(value.toArray(), QString(), read);
    return finish(reader, records);
}

std::optional<QList<WordTiming>> wordTimingsFromJson(const QJsonValue &value)
{
    if (!value.isArray())
        return std::nullopt;
    QList<WordTiming> timings;
    for (const QJsonValue &entry : value.toArray()) {
        if (!entry.isObject())
            return std::nullopt;
        WordTiming timing;
        const QJsonObject object = entry.toObject();
        for (auto it = object.begin(); it != object.end(); ++it) {
            if (!it->isDouble())
                return std::nullopt;
            timing.insert(it.key(), it->toDouble());
        }
        timings.append(timing);
    }
    return timings;
}

} // namespace

double toReferenceSeconds(const QDateTime &date)
{
    return double(referenceDate().msecsTo(date)) / 1000.0;
}

QDateTime fromReferenceSeconds(double seconds)
{
    if (!std::isfinite(seconds))
        return referenceDate();
    return referenceDate().addMSecs(qint64(std::llround(seconds * 1000.0)));
}

QJsonObject toJson(const ShootMarker &marker)
{
    QJsonObject object{{"id", marker.id},
                       {"markerType", marker.markerType},
                       {"timecode", marker.timecode},
                       {"createdAt", toReferenceSeconds(marker.createdAt)}};
    putOptional(object, "timecodeOut", marker.timecodeOut);
    putOptional(object, "summary", marker.summary);
    putOptional(object, "quote", marker.quote);
    putOptional(object, "raw", marker.raw);
    putOptional(object, "manualNote", marker.manualNote);
    return object;
}

QJsonObject toJson(const TranscriptSegment &segment)
{
    QJsonObject object{{"id", segment.id},
                       {"speaker", segment.speaker},
                       {"text", segment.text},
                       {"timecode", segment.timecode},
                       {"highlighted", segment.highlighted}};
    if (segment.wordTimings) {
        QJsonArray timings;
        for (const WordTiming &timing : *segment.wordTimings) {
            QJsonObject entry;
            for (auto it = timing.begin(); it != timing.end(); ++it)
                entry.insert(it.key(), it.value());
            timings.append(entry);
        }
        object.insert("wordTimings", timings);
    }
    return object;
}

QJsonObject toJson(const MediaClip &clip)
{
    QJsonObject object{{"id", clip.id},
                       {"path", clip.path},
                       {"filename", clip.filename},
                       {"duration", clip.duration}};
    putOptional(object, "timecode", clip.timecode);
    if (clip.recordingDate)
        object.insert("recordingDate", toReferenceSeconds(*clip.recordingDate));
    putOptional(object, "width", clip.width);
    putOptional(object, "height", clip.height);
    putOptional(object, "detectedFps", clip.detectedFps);
    return object;
}

QJsonObject toJson(const ShootSession &session)
{
    return QJsonObject{{"id", session.id},
                       {"shareToken", session.shareToken},
                       {"title", session.title},
                       {"createdAt", toReferenceSeconds(session.createdAt)},
                       {"markers", toJsonArray(session.markers)},
                       {"matchedClips", toJsonArray(session.matchedClips)},
                       {"fps", session.fps},
                       {"transcriptSegments", toJsonArray(session.transcriptSegments)}};
}

QJsonObject toJson(const DeletedSessionInfo &info)
{
    return QJsonObject{{"id", info.id},
                       {"title", info.title},
                       {"deletedAt", toReferenceSeconds(info.deletedAt)}};
}

std::optional<ShootMarker> markerFromJson(const QJsonValue &value, QString *error)
{
    Reader r(value, QString(), error);
    ShootMarker marker;
    marker.id = r.string("id");
    marker.markerType = r.string("markerType");
    marker.timecode = r.string("timecode");
    marker.timecodeOut = r.optionalString("timecodeOut");
    marker.summary = r.optionalString("summary");
    marker.quote = r.optionalString("quote");
    marker.raw = r.optionalString("raw");
    marker.manualNote = r.optionalString("manualNote");
    marker.createdAt = r.date("createdAt");
    return finish(r, marker);
}

std::optional<TranscriptSegment> segmentFromJson(const QJsonValue &value, QString *error)
{
    Reader r(value, QString(), error);
    TranscriptSegment segment;
    segment.id = r.string("id");
    segment.speaker = r.string("speaker");
    segment.text = r.string("text");
    segment.timecode = r.string("timecode");
    segment.highlighted = r.boolean("highlighted");
    if (r.ok())
        segment.wordTimings = wordTimingsFromJson(r.object().value("wordTimings"));
    return finish(r, segment);
}

std::optional<MediaClip> clipFromJson(const QJsonValue &value, QString *error)
{
    Reader r(value, QString(), error);
    MediaClip clip;
    clip.id = r.string("id");
    clip.path = r.string("path");
    clip.filename = r.string("filename");
    clip.timecode = r.optionalString("timecode");
    clip.duration = r.number("duration");
    if (const auto seconds = r.optionalNumber("recordingDate"))
        clip.recordingDate = fromReferenceSeconds(*seconds);
    clip.width = r.optionalInteger("width");
    clip.height = r.optionalInteger("height");
    clip.detectedFps = r.optionalInteger("detectedFps");
    return finish(r, clip);
}

std::optional<ShootSession> sessionFromJson(const QJsonValue &value, QString *error)
{
    Reader r(value, QString(), error);
    ShootSession session;
    session.id = r.string("id");
    session.shareToken = r.string("shareToken");
    session.title = r.string("title");
    session.createdAt = r.date("createdAt");
    session.markers = r.array<ShootMarker>("markers", markerFromJson);
    session.matchedClips = r.array<MediaClip>("matchedClips", clipFromJson);
    session.fps = r.integer("fps");
    session.transcriptSegments = r.array<TranscriptSegment>("transcriptSegments", segmentFromJson);
    return finish(r, session);
}

std::optional<DeletedSessionInfo> deletedSessionFromJson(const QJsonValue &value, QString *error)
{
    Reader r(value, QString(), error);
    DeletedSessionInfo info;
    info.id = r.string("id");
    info.title = r.string("title");
    info.deletedAt = r.date("deletedAt");
    return finish(r, info);
}

std::optional<QList<ShootSession>> sessionsFromJson(const QJsonValue &value, QString *error)
{
    return listFromJson<ShootSession>(value, error, sessionFromJson);
}

std::optional<QList<MediaClip>> clipsFromJson(const QJsonValue &value, QString *error)
{
    return listFromJson<MediaClip>(value, error, clipFromJson);
}

std::optional<QList<TranscriptSegment>> segmentsFromJson(const QJsonValue &value, QString *error)
{
    return listFromJson<TranscriptSegment>(value, error, segmentFromJson);
}

std::optional<QList<DeletedSessionInfo>> deletedSessionsFromJson(const QJsonValue &value, QString *error)
{
    return listFromJson<DeletedSessionInfo>(value, error, deletedSessionFromJson);
}

} // namespace RecordJson
