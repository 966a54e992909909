#include "service/ServiceJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QTest>
#include <QUuid>

namespace {

QJsonObject object(const char *json)
{
    return QJsonDocument::fromJson(json).object();
}

const QDateTime fetchTime(QDate(2025, 3, 4), QTime(5, 6, 7), Qt::UTC);

bool isUuid(const QString &text)
{
    return !QUuid::fromString(text).isNull();
}

} // namespace

class ServiceJsonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void internetDates_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDateTime>("expected"); // invalid: not a date
        const QDateTime nine(QDate(2024, 5, 1), QTime(9, 30), Qt::UTC);
        QTest::newRow("utc") << "2024-05-01T09:30:00Z" << nine;
        QTest::newRow("ahead") << "2024-05-01T11:30:00+02:00" << nine;
        QTest::newRow("behind, half hours") << "2024-05-01T04:00:00-05:30" << nine;
        QTest::newRow("offset without colon") << "2024-05-01T11:30:00+0200" << nine;
        QTest::newRow("fractional seconds") << "2024-05-01T09:30:00.250Z" << QDateTime();
        QTest::newRow("no zone") << "2024-05-01T09:30:00" << QDateTime();
        QTest::newRow("day out of range") << "2024-02-30T09:30:00Z" << QDateTime();
        QTest::newRow("trailing text") << "2024-05-01T09:30:00Z " << QDateTime();
    }

    void internetDates()
    {
        QFETCH(QString, text);
        QFETCH(QDateTime, expected);
        const auto parsed = ServiceJson::parseInternetDate(text);
        QCOMPARE(parsed.has_value(), expected.isValid());
        if (parsed)
            QCOMPARE(*parsed, expected);
    }

    void sessionMapping()
    {
        const QList<ShootSession> sessions = ServiceJson::sessionsFromAnswer(object(R"({"sessions": [
            {"title": "no token"},
            {"share_token": "a", "id": "ignored", "created_at": "2024-05-01T09:30:00Z", "title": "Quay"},
            {"share_token": "b", "created_at": "2024-05-01T09:30:00.250Z", "markers": [{"timecode": "10:00:00:00"}, 3]},
            {"share_token": "c", "title": 7, "created_at": 17, "markers": {"0": {}}}
        ]})"), fetchTime);
        QCOMPARE(sessions.size(), 3);
        QCOMPARE(sessions[0].id, QStringLiteral("a"));
        QCOMPARE(sessions[0].shareToken, QStringLiteral("a"));
        QCOMPARE(sessions[0].title, QStringLiteral("Quay"));
        QCOMPARE(sessions[0].createdAt, QDateTime(QDate(2024, 5, 1), QTime(9, 30), Qt::UTC));
        QCOMPARE(sessions[0].fps, 25);
        QCOMPARE(sessions[1].createdAt, fetchTime);
        QVERIFY2(sessions[1].markers.isEmpty(), "an array holding a non-object counts as missing");
        QCOMPARE(sessions[2].title, QStringLiteral("Shoot session"));
        QCOMPARE(sessions[2].createdAt, fetchTime);
        QVERIFY(sessions[2].markers.isEmpty());
    }

    void markerMapping()
    {
        const ShootMarker full = ServiceJson::markerFromService(object(R"({
            "id": "m1", "marker_type": "soundbite", "timecode": "10:00:01:02", "timecode_out": "10:00:05:00",
            "summary": "S", "quote": "Q", "transcript_window": "W", "manual_note": "N",
            "created_at": "2024-05-01T09:30:00Z"})"), fetchTime);
        QCOMPARE(full.id, QStringLiteral("m1"));
        QCOMPARE(full.markerType, QStringLiteral("soundbite"));
        QCOMPARE(full.timecode, QStringLiteral("10:00:01:02"));
        QCOMPARE(full.timecodeOut, std::optional<QString>(QStringLiteral("10:00:05:00")));
        QCOMPARE(full.summary, std::optional<QString>(QStringLiteral("S")));
        QCOMPARE(full.quote, std::optional<QString>(QStringLiteral("Q")));
        QCOMPARE(full.raw, std::optional<QString>(QStringLiteral("W")));
        QCOMPARE(full.manualNote, std::optional<QString>(QStringLiteral("N")));
        QCOMPARE(full.createdAt, QDateTime(QDate(2024, 5, 1), QTime(9, 30), Qt::UTC));

        const ShootMarker wrong = ServiceJson::markerFromService(object(R"({
            "id": 12, "marker_type": null, "timecode": 36000, "timecode_out": false, "summary": ["S"],
            "quote": {}, "transcript_window": 1, "manual_note": null, "created_at": "yesterday"})"), fetchTime);
        QVERIFY(isUuid(wrong.id));
        QCOMPARE(wrong.markerType, QStringLiteral("log"));
        QCOMPARE(wrong.timecode, QString());
        QVERIFY(!wrong.timecodeOut && !wrong.summary && !wrong.quote && !wrong.raw && !wrong.manualNote);
        QCOMPARE(wrong.createdAt, fetchTime);

        const ShootMarker other = ServiceJson::markerFromService({}, fetchTime);
        QVERIFY(isUuid(other.id));
        QVERIFY(other.id != wrong.id);
    }

    void segmentIds_data()
    {
        QTest::addColumn<QByteArray>("segment");
        QTest::addColumn<QString>("id"); // empty: a fresh UUID
        QTest::newRow("utterance id") << QByteArray(R"({"utterance_id": "u1", "id": 3})") << "u1";
        QTest::newRow("empty utterance id, integer id") << QByteArray(R"({"utterance_id": "", "id": 17})") << "17";
        QTest::newRow("fractional id") << QByteArray(R"({"id": 17.5})") << "";
        QTest::newRow("id as text") << QByteArray(R"({"id": "17"})") << "";
        QTest::newRow("utterance id not text") << QByteArray(R"({"utterance_id": 5})") << "";
        QTest::newRow("beyond exact integers") << QByteArray(R"({"id": 1e300})") << "";
    }

    void segmentIds()
    {
        QFETCH(QByteArray, segment);
        QFETCH(QString, id);
        const TranscriptSegment mapped = ServiceJson::segmentFromService(object(segment));
        if (id.isEmpty())
            QVERIFY2(isUuid(mapped.id), qPrintable(mapped.id));
        else
            QCOMPARE(mapped.id, id);
    }

    void segmentFields()
    {
        const TranscriptSegment full = ServiceJson::segmentFromService(object(R"({
            "speaker": "Ana", "text": "Hello", "timecode": "10:00:00:00", "highlighted": true,
            "word_timings": [{"start": 0, "end": 0.5}, {}]})"));
        QCOMPARE(full.speaker, QStringLiteral("Ana"));
        QCOMPARE(full.text, QStringLiteral("Hello"));
        QCOMPARE(full.timecode, QStringLiteral("10:00:00:00"));
        QVERIFY(full.highlighted);
        QVERIFY(full.wordTimings);
        QCOMPARE(full.wordTimings->size(), 2);
        QCOMPARE(full.wordTimings->at(0).value(QStringLiteral("end")), 0.5);

        const TranscriptSegment wrong = ServiceJson::segmentFromService(object(R"({
            "speaker": 1, "text": null, "timecode": [], "highlighted": "true",
            "word_timings": [{"start": 0}, {"end": "0.5"}]})"));
        QCOMPARE(wrong.speaker, QString());
        QCOMPARE(wrong.text, QString());
        QCOMPARE(wrong.timecode, QString());
        QVERIFY(!wrong.highlighted);
        QVERIFY2(!wrong.wordTimings, "one bad entry voids the whole field");
    }

    // Random answers shaped like the service's, every key holding the expected type most of the
    // time and anything else otherwise: the mappings must give records that keep their
    // invariants, whatever arrives.
    void randomAnswers()
    {
        RandomAnswers answers(20241123);
        int sessionCount = 0, markerCount = 0, segmentCount = 0;
        for (int round = 0; round < 2000; ++round) {
            const QJsonObject answer = answers.answer();
            const QList<ShootSession> sessions = ServiceJson::sessionsFromAnswer(answer, fetchTime);
            QVERIFY(sessions.size() <= answer.value(QStringLiteral("sessions")).toArray().size());
            for (const ShootSession &session : sessions) {
                QCOMPARE(session.id, session.shareToken);
                QCOMPARE(session.fps, 25);
                QVERIFY(session.createdAt.isValid());
                QVERIFY(session.matchedClips.isEmpty());
                for (const ShootMarker &marker : session.markers)
                    QVERIFY(marker.createdAt.isValid());
                markerCount += int(session.markers.size());
            }
            sessionCount += int(sessions.size());
            const QList<TranscriptSegment> segments = ServiceJson::transcriptFromAnswer(answer);
            for (const TranscriptSegment &segment : segments)
                QVERIFY(!segment.id.isEmpty());
            segmentCount += int(segments.size());
            QVERIFY(!ServiceJson::loginRefusal(answer).value_or(QStringLiteral("accepted")).isNull());
            ServiceJson::loginCodeRefusal(answer);
            ServiceJson::credentialFromAnswer(answer, QByteArray(";"));
            ServiceJson::loginResultFromAnswer(answer, QStringLiteral("t@x.org"));
        }
        // The generator must reach the deep mappings, or the run proves little.
        QVERIFY2(sessionCount > 500 && markerCount > 500 && segmentCount > 200,
                 qPrintable(QStringLiteral("%1 sessions, %2 markers, %3 segments").arg(sessionCount).arg(markerCount).arg(segmentCount)));
    }

private:
    // Values following the service's shape, written as a schema: objects list their keys, an
    // array holds its element's schema, strings name the kind of leaf.
    class RandomAnswers
    {
    public:
        explicit RandomAnswers(quint32 seed) : m_random(seed) {}

        QJsonObject answer() { return make(QJsonDocument::fromJson(R"({"ok": "bool", "sid": "text", "error": "text",
            "message": "text", "user": {"name": "text", "email": "text"},
            "sessions": [{"share_token": "text", "title": "text", "created_at": "date", "markers": [{"id": "text",
                "marker_type": "text", "timecode": "text", "timecode_out": "text", "summary": "text", "quote": "text",
                "transcript_window": "text", "manual_note": "text", "created_at": "date"}]}],
            "segments": [{"utterance_id": "text", "id": "number", "speaker": "text", "text": "text", "timecode": "text",
                "highlighted": "bool", "word_timings": [{"start": "number", "end": "number"}]}]})").object()).toObject(); }

    private:
        // Each key is present three times in four and then holds its own kind three times in
        // four; arrays have up to five elements, one in thirty of any kind.
        QJsonValue make(const QJsonValue &schema)
        {
            if (schema.isObject()) {
                QJsonObject object;
                const QJsonObject fields = schema.toObject();
                for (auto it = fields.begin(); it != fields.end(); ++it) {
                    if (m_random.bounded(4))
                        object.insert(it.key(), m_random.bounded(4) ? make(it.value()) : anything(2));
                }
                return object;
            }
            if (schema.isArray()) {
                QJsonArray values;
                for (int i = int(m_random.bounded(6)); i > 0; --i)
                    values.append(m_random.bounded(30) ? make(schema.toArray().first()) : anything(1));
                return values;
            }
            if (schema.toString() == u"bool")
                return m_random.bounded(2) == 1;
            if (schema.toString() == u"number")
                return double(m_random.bounded(1000)) / (m_random.bounded(4) ? 1 : 8);
            return schema.toString() == u"date" ? date() : text();
        }

        QJsonValue text()
        {
            static const QStringList samples{"", "log", "10:00:00:00", "sid=a; Path=/", "Shoot session", "\u00e9\u2603", "a b?c"};
            return samples.at(m_random.bounded(samples.size()));
        }

        QJsonValue date()
        {
            return QStringLiteral("2024-%1-01T09:30:%2%3")
                .arg(m_random.bounded(1, 14), 2, 10, QLatin1Char('0'))
                .arg(m_random.bounded(0, 62), 2, 10, QLatin1Char('0'))
                .arg(QStringList{"Z", ".5Z", "+02:00", "", "-0130"}.at(m_random.bounded(5)));
        }

        QJsonValue anything(int depth)
        {
            switch (m_random.bounded(depth > 0 ? 8 : 6)) {
            case 0: return QJsonValue();
            case 1: return m_random.bounded(2) == 1;
            case 2: return (m_random.generateDouble() - 0.5) * std::pow(10.0, m_random.bounded(300));
            case 3: return double(m_random.bounded(100));
            case 4: return text();
            case 5: return date();
            case 6: return QJsonArray{anything(depth - 1), anything(depth - 1)};
            default: return QJsonObject{{"id", anything(depth - 1)}, {"share_token", anything(depth - 1)}};
            }
        }

        QRandomGenerator m_random;
    };
};

QTEST_GUILESS_MAIN(ServiceJsonTest)
#include "ServiceJsonTest.moc"
