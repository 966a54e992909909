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
        QTest::newRow("no seconds") << "2024-05-01T09:30Z" << QDateTime();
        QTest::newRow("space for T") << "2024-05-01 09:30:00Z" << QDateTime();
        QTest::newRow("day out of range") << "2024-02-30T09:30:00Z" << QDateTime();
        QTest::newRow("hour out of range") << "2024-05-01T24:00:00Z" << QDateTime();
        QTest::newRow("trailing text") << "2024-05-01T09:30:00Z " << QDateTime();
        QTest::newRow("empty") << "" << QDateTime();
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

    void sessionsKeyOfAnotherType_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("missing") << QByteArray("{}");
        QTest::newRow("object") << QByteArray(R"({"sessions": {"share_token": "a"}})");
        QTest::newRow("array with a string") << QByteArray(R"({"sessions": [{"share_token": "a"}, "b"]})");
        QTest::newRow("null") << QByteArray(R"({"sessions": null})");
    }

    void sessionsKeyOfAnotherType()
    {
        QFETCH(QByteArray, answer);
        QVERIFY(ServiceJson::sessionsFromAnswer(object(answer), fetchTime).isEmpty());
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
        QTest::newRow("integral double") << QByteArray(R"({"id": 17.0})") << "17";
        QTest::newRow("negative") << QByteArray(R"({"id": -4})") << "-4";
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

    void transcriptAnswer_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("count");
        QTest::newRow("ok") << QByteArray(R"({"ok": true, "segments": [{}, {"text": "x"}]})") << 2;
        QTest::newRow("ok false") << QByteArray(R"({"ok": false, "segments": [{}]})") << 0;
        QTest::newRow("ok missing") << QByteArray(R"({"segments": [{}]})") << 0;
        QTest::newRow("ok as 1") << QByteArray(R"({"ok": 1, "segments": [{}]})") << 0;
        QTest::newRow("no segments") << QByteArray(R"({"ok": true})") << 0;
        QTest::newRow("segments hold a number") << QByteArray(R"({"ok": true, "segments": [{}, 2]})") << 0;
    }

    void transcriptAnswer()
    {
        QFETCH(QByteArray, answer);
        QFETCH(int, count);
        QCOMPARE(ServiceJson::transcriptFromAnswer(object(answer)).size(), count);
    }

    void loginAnswers_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("codeRefusal"); // empty: accepted
        QTest::addColumn<QString>("loginRefusal");
        QTest::newRow("ok") << QByteArray(R"({"ok": true})") << "" << "";
        QTest::newRow("message only") << QByteArray(R"({"message": null})") << "" << "Unknown error";
        QTest::newRow("ok false") << QByteArray(R"({"ok": false})") << "Failed to send code" << "Unknown error";
        QTest::newRow("with error") << QByteArray(R"({"ok": false, "error": "Nope"})") << "Nope" << "Nope";
        QTest::newRow("error not text") << QByteArray(R"({"error": 5})") << "Failed to send code" << "Unknown error";
        QTest::newRow("ok as text") << QByteArray(R"({"ok": "true"})") << "Failed to send code" << "Unknown error";
    }

    void loginAnswers()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QString, codeRefusal);
        QFETCH(QString, loginRefusal);
        QCOMPARE(ServiceJson::loginCodeRefusal(object(answer)).value_or(QString()), codeRefusal);
        QCOMPARE(ServiceJson::loginRefusal(object(answer)).value_or(QString()), loginRefusal);
    }

    void credentials_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QByteArray>("setCookie"); // "-": no header
        QTest::addColumn<QString>("credential");   // "-": nothing stored
        QTest::newRow("sid wins") << QByteArray(R"({"sid": "abc"})") << QByteArray("sid=zzz") << "sid=abc";
        QTest::newRow("empty sid") << QByteArray(R"({"sid": ""})") << QByteArray("-") << "sid=";
        QTest::newRow("header") << QByteArray("{}") << QByteArray("sid=xyz; Path=/; HttpOnly") << "sid=xyz";
        QTest::newRow("header, empty first piece") << QByteArray("{}") << QByteArray(";;a=1; Path=/") << "a=1";
        QTest::newRow("sid not text") << QByteArray(R"({"sid": 5})") << QByteArray("k=v") << "k=v";
        QTest::newRow("empty header") << QByteArray("{}") << QByteArray("") << "-";
        QTest::newRow("nothing") << QByteArray("{}") << QByteArray("-") << "-";
    }

    void credentials()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QByteArray, setCookie);
        QFETCH(QString, credential);
        const auto header = setCookie == "-" ? std::nullopt : std::optional(setCookie);
        QCOMPARE(ServiceJson::credentialFromAnswer(object(answer), header).value_or(QStringLiteral("-")), credential);
    }

    void loginResult()
    {
        QCOMPARE(ServiceJson::loginResultFromAnswer(object(R"({"user": {"name": "Ana"}})"), "typed@x.org"),
                 (LoginResult{"Ana", "typed@x.org"}));
        QCOMPARE(ServiceJson::loginResultFromAnswer(object(R"({"user": {"name": "A", "email": "e@x.org"}})"), "t@x.org"),
                 (LoginResult{"A", "e@x.org"}));
        QCOMPARE(ServiceJson::loginResultFromAnswer(object(R"({"user": ["Ana"]})"), "t@x.org"), (LoginResult{"", "t@x.org"}));
    }

    // Random answers built from the service's own keys and values of every JSON type: the
    // mappings must give records that keep their invariants, whatever arrives.
    void randomAnswers()
    {
        QRandomGenerator random(20241123);
        const QStringList keys{"sessions", "share_token", "title", "created_at", "markers", "id", "marker_type",
                               "timecode", "timecode_out", "summary", "quote", "transcript_window", "manual_note",
                               "ok", "segments", "utterance_id", "speaker", "text", "highlighted", "word_timings",
                               "sid", "user", "name", "email", "error", "message", "start"};
        std::function<QJsonValue(int)> value = [&](int depth) -> QJsonValue {
            switch (random.bounded(depth > 3 ? 6 : 8)) {
            case 0: return QJsonValue();
            case 1: return random.bounded(2) == 1;
            case 2: return (random.generateDouble() - 0.5) * std::pow(10.0, random.bounded(20));
            case 3: return double(random.bounded(100));
            case 4: return QStringLiteral("2024-05-01T09:30:%1Z").arg(random.bounded(70));
            case 5: return keys.at(random.bounded(keys.size()));
            case 6: {
                QJsonArray array;
                for (int i = random.bounded(6); i > 0; --i)
                    array.append(random.bounded(4) ? QJsonValue(objectOf(depth + 1, value)) : value(depth + 1));
                return array;
            }
            default: return objectOf(depth + 1, value);
            }
        };
        for (int round = 0; round < 3000; ++round) {
            const QJsonObject answer = objectOf(0, value);
            const QList<ShootSession> sessions = ServiceJson::sessionsFromAnswer(answer, fetchTime);
            QVERIFY(sessions.size() <= answer.value(QStringLiteral("sessions")).toArray().size());
            for (const ShootSession &session : sessions) {
                QCOMPARE(session.id, session.shareToken);
                QCOMPARE(session.fps, 25);
                QVERIFY(session.createdAt.isValid());
                QVERIFY(session.matchedClips.isEmpty());
                for (const ShootMarker &marker : session.markers)
                    QVERIFY(marker.createdAt.isValid());
            }
            for (const TranscriptSegment &segment : ServiceJson::transcriptFromAnswer(answer))
                QVERIFY(!segment.id.isEmpty());
            QVERIFY(!ServiceJson::loginRefusal(answer).value_or(QStringLiteral("x")).isNull());
            ServiceJson::loginCodeRefusal(answer);
            ServiceJson::credentialFromAnswer(answer, std::nullopt);
            ServiceJson::loginResultFromAnswer(answer, QStringLiteral("t@x.org"));
        }
    }

private:
    QJsonObject objectOf(int depth, const std::function<QJsonValue(int)> &value)
    {
        static QRandomGenerator keyRandom(7);
        static const QStringList keys{"sessions", "share_token", "title", "created_at", "markers", "id", "marker_type",
                                      "timecode", "ok", "segments", "utterance_id", "highlighted", "word_timings",
                                      "sid", "user", "name", "email", "error", "message", "zzz"};
        QJsonObject object;
        for (int i = int(keyRandom.bounded(depth > 3 ? 3 : 9)); i > 0; --i)
            object.insert(keys.at(keyRandom.bounded(keys.size())), value(depth));
        return object;
    }
};

QTEST_GUILESS_MAIN(ServiceJsonTest)
#include "ServiceJsonTest.moc"
