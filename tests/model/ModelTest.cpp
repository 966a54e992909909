#include "model/RecordJson.h"

#include <QJsonDocument>
#include <QSet>
#include <QTest>

namespace {

QJsonObject parse(const char *json)
{
    return QJsonDocument::fromJson(json).object();
}

ShootMarker sampleMarker()
{
    ShootMarker m;
    m.id = QStringLiteral("m1");
    m.markerType = QStringLiteral("inout");
    m.timecode = QStringLiteral("10:00:00:00");
    m.timecodeOut = QStringLiteral("10:00:05:00");
    m.quote = QStringLiteral("We \"never\" stop\n\u00e9\U0001F3AC");
    m.createdAt = QDateTime(QDate(2026, 11, 20), QTime(9, 30, 15, 250), Qt::UTC);
    return m;
}

} // namespace

class ModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void markerLabelAndColour_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("label");
        QTest::addColumn<int>("red");
        QTest::newRow("earmark") << "earmark" << "Earmark" << 93;
        QTest::newRow("inout") << "inout" << "Clip" << 61;
        QTest::newRow("note") << "note" << "Note" << 128;
        QTest::newRow("log") << "log" << "Log" << 93;
        QTest::newRow("capitalised is unknown") << "Earmark" << "Log" << 93;
        QTest::newRow("clip is not inout") << "clip" << "Log" << 93;
        QTest::newRow("empty") << "" << "Log" << 93;
    }

    void markerLabelAndColour()
    {
        QFETCH(QString, type);
        QFETCH(QString, label);
        QFETCH(int, red);
        ShootMarker m;
        m.markerType = type;
        QCOMPARE(m.displayLabel(), label);
        QCOMPARE(m.color().red, red);
    }

    void tcRange_data()
    {
        QTest::addColumn<QStringList>("timecodes");
        QTest::addColumn<QString>("expected");
        QTest::newRow("none") << QStringList() << "--";
        QTest::newRow("one") << QStringList{"01:00:00:00"} << "01:00:00:00 - 01:00:00:00";
        QTest::newRow("array order, not time order") << QStringList{"02:00:00:00", "01:00:00:00", "03:00:00:00", "00:30:00:00"}
                                                     << "02:00:00:00 - 00:30:00:00";
        QTest::newRow("empty timecodes") << QStringList{"", ""} << " - ";
    }

    void tcRange()
    {
        QFETCH(QStringList, timecodes);
        QFETCH(QString, expected);
        ShootSession s;
        for (const QString &tc : timecodes) {
            ShootMarker m;
            m.timecode = tc;
            s.markers.append(m);
        }
        QCOMPARE(s.tcRange(), expected);
    }

    void clipIdentityIsTheIdAlone()
    {
        MediaClip a;
        a.id = QStringLiteral("same");
        a.path = QStringLiteral("/a.mov");
        MediaClip b;
        b.id = QStringLiteral("same");
        b.path = QStringLiteral("/b.mov");
        b.duration = 9;
        MediaClip c = a;
        c.id = QStringLiteral("other");
        QVERIFY(a == b);
        QVERIFY(!(a == c));
        QCOMPARE(QSet<MediaClip>({a, b, c}).size(), 2);
    }

    void sessionRoundTrip()
    {
        ShootSession s;
        s.id = s.shareToken = QStringLiteral("tok");
        s.title = QStringLiteral("Interview");
        s.createdAt = QDateTime(QDate(2026, 11, 22), QTime(18, 0), Qt::UTC);
        s.fps = 30;
        s.markers = {sampleMarker()};
        MediaClip clip;
        clip.id = QStringLiteral("c1");
        clip.path = QStringLiteral("/footage/A001.mov");
        clip.filename = QStringLiteral("A001.mov");
        clip.timecode = QStringLiteral("10:00:00:00");
        clip.duration = 12.5;
        clip.recordingDate = QDateTime(QDate(2026, 11, 22), QTime(9, 0), Qt::UTC);
        clip.detectedFps = 25;
        s.matchedClips = {clip};
        TranscriptSegment segment;
        segment.id = QStringLiteral("u1");
        segment.speaker = QStringLiteral("A");
        segment.text = QStringLiteral("Hello");
        segment.timecode = QStringLiteral("10:00:01:00");
        segment.wordTimings = QList<WordTiming>{{{"start", 1.0}, {"end", 1.4}}};
        s.transcriptSegments = {segment};

        const QJsonObject json = RecordJson::toJson(s);
        const auto back = RecordJson::sessionFromJson(json);
        QVERIFY(back);
        QCOMPARE(RecordJson::toJson(*back), json);
        QCOMPARE(back->createdAt, s.createdAt);
        QCOMPARE(back->markers.first().quote, s.markers.first().quote);
        QCOMPARE(back->matchedClips.first().width, std::nullopt);
    }

    void optionalFieldsAreLeftOut()
    {
        const QJsonObject marker = RecordJson::toJson(sampleMarker());
        QVERIFY(marker.contains("timecodeOut"));
        QVERIFY(!marker.contains("summary"));
        QVERIFY(!marker.contains("manualNote"));
        MediaClip clip;
        const QJsonObject clipJson = RecordJson::toJson(clip);
        for (const char *key : {"timecode", "recordingDate", "width", "height", "detectedFps"})
            QVERIFY2(!clipJson.contains(key), key);
    }

    void readsDeletedListOfAnEarlierRun()
    {
        const QJsonDocument stored = QJsonDocument::fromJson(
            R"([{"id":"abc","title":"Beach day","deletedAt":785000000.25},{"id":"def","title":"","deletedAt":0}])");
        const auto list = RecordJson::deletedSessionsFromJson(stored.array());
        QVERIFY(list);
        QCOMPARE(list->size(), 2);
        QCOMPARE(list->at(0).deletedAt, QDateTime(QDate(2025, 11, 16), QTime(15, 33, 20, 250), Qt::UTC));
        QCOMPARE(list->at(1).deletedAt, QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC));
        QCOMPARE(RecordJson::toJson(list->at(0)).value("deletedAt").toDouble(), 785000000.25);
    }

    void readingFailsWithAReason_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("error");
        const QByteArray base = R"("id":"s","shareToken":"s","title":"t","createdAt":1,"matchedClips":[],"fps":25,"transcriptSegments":[])";
        QTest::newRow("missing markers") << "{" + base + "}" << R"("markers" is missing)";
        QTest::newRow("marker without timecode")
            << "{" + base + R"(,"markers":[{"id":"m","markerType":"log","timecode":"1","createdAt":0},{"id":"m2","markerType":"log","createdAt":0}]})"
            << R"(markers[1]: "timecode" is missing)";
        QTest::newRow("title of wrong type") << QByteArray(R"({"id":"s","shareToken":"s","title":7})") << R"("title" has the wrong type)";
        QTest::newRow("fractional fps") << QByteArray(R"({"id":"s","shareToken":"s","title":"t","createdAt":1,"markers":[],"matchedClips":[],"fps":25.5,"transcriptSegments":[]})")
                                        << R"("fps" is not an integer)";
        QTest::newRow("optional of wrong type")
            << "{" + base + R"(,"markers":[{"id":"m","markerType":"log","timecode":"1","createdAt":0,"quote":3}]})"
            << R"(markers[0]: "quote" has the wrong type)";
        QTest::newRow("not an object") << QByteArray("[1]") << "expected an object";
    }

    void readingFailsWithAReason()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, error);
        const QJsonDocument document = QJsonDocument::fromJson(json);
        const QJsonValue value = document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
        QString actual;
        QVERIFY(!RecordJson::sessionFromJson(value, &actual));
        QCOMPARE(actual, error);
    }

    void nullOptionalReadsAsAbsent()
    {
        const auto clip = RecordJson::clipFromJson(
            parse(R"({"id":"c","path":"/p","filename":"p","duration":1,"timecode":null,"width":1920})"));
        QVERIFY(clip);
        QCOMPARE(clip->timecode, std::nullopt);
        QCOMPARE(clip->width, std::optional<int>(1920));
    }
};

QTEST_GUILESS_MAIN(ModelTest)
#include "ModelTest.moc"
