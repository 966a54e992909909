#include "model/RecordJson.h"

#include <QFile>
#include <QJsonDocument>
#include <QSet>
#include <QTest>

class ModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void clipIdentityIsTheIdAlone()
    {
        MediaClip a, b, c;
        a.id = b.id = QStringLiteral("same");
        b.path = QStringLiteral("/b.mov");
        c.id = QStringLiteral("other");
        QCOMPARE(QSet<MediaClip>({a, b, c}).size(), 2);
    }

    // A session stored with every kind of field reads back and writes the same JSON: key names,
    // dates as seconds since 2001, optional fields left out rather than written empty.
    void storedSessionRoundTrip()
    {
        QFile file(QStringLiteral(VORLIX_TEST_DATA "/model/session.json"));
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
        const QJsonObject stored = QJsonDocument::fromJson(file.readAll()).object();
        QString error;
        const auto session = RecordJson::sessionFromJson(stored, &error);
        QVERIFY2(session, qPrintable(error));
        QCOMPARE(RecordJson::toJson(*session), stored);
        QCOMPARE(session->createdAt, QDateTime(QDate(2026, 11, 22), QTime(18, 0, 0, 250), Qt::UTC));
        QCOMPARE(session->markers.first().quote, QStringLiteral("We \"never\" stop\n\u00e9\U0001F3AC"));
        QCOMPARE(session->tcRange(), QStringLiteral("10:00:00:00 - 09:00:00:00")); // array order
        QCOMPARE(session->markers.first().displayLabel() + session->markers.last().displayLabel(), QStringLiteral("ClipLog"));
        QCOMPARE(ShootSession().tcRange(), QStringLiteral("--"));

        const auto clip = RecordJson::clipFromJson(QJsonDocument::fromJson(R"({"id":"c","path":"/p","filename":"p","duration":1,"timecode":null})").object());
        QVERIFY2(clip && !clip->timecode, "a null optional reads as absent");
    }

    // The deleted-session list of an earlier run stays readable.
    void storedDeletedList()
    {
        const QJsonArray stored = QJsonDocument::fromJson(R"([{"id":"abc","title":"Beach day","deletedAt":785000000.25},{"id":"def","title":"","deletedAt":0}])").array();
        const auto list = RecordJson::deletedSessionsFromJson(stored);
        QVERIFY(list);
        QCOMPARE(list->at(0).deletedAt, QDateTime(QDate(2025, 11, 16), QTime(15, 33, 20, 250), Qt::UTC));
        QCOMPARE(list->at(1).deletedAt, QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC));
        QCOMPARE(RecordJson::toJsonArray(*list), stored);
    }

    void readingFailsWithAReason_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("error");
        const QByteArray base = R"({"id":"s","shareToken":"s","title":"t","createdAt":1,"matchedClips":[],"transcriptSegments":[])";
        const QByteArray marker = R"({"id":"m","markerType":"log","timecode":"1","createdAt":0)";
        QTest::newRow("missing markers") << base + R"(,"fps":25})" << R"("markers" is missing)";
        QTest::newRow("marker without timecode") << base + R"(,"fps":25,"markers":[)" + marker + R"(},{"id":"m2","markerType":"log","createdAt":0}]})"
                                                 << R"(markers[1]: "timecode" is missing)";
        QTest::newRow("optional of wrong type") << base + R"(,"fps":25,"markers":[)" + marker + R"(,"quote":3}]})"
                                                << R"(markers[0]: "quote" has the wrong type)";
        QTest::newRow("fractional fps") << base + R"(,"fps":25.5,"markers":[]})" << R"("fps" is not an integer)";
        QTest::newRow("title of wrong type") << QByteArray(R"({"id":"s","shareToken":"s","title":7})") << R"("title" has the wrong type)";
        QTest::newRow("not an object") << QByteArray("[1]") << "expected an object";
    }

    void readingFailsWithAReason()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, error);
        const QJsonDocument document = QJsonDocument::fromJson(json);
        QVERIFY2(!document.isNull(), "the row is not JSON");
        QString actual;
        QVERIFY(!RecordJson::sessionFromJson(document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object()), &actual));
        QCOMPARE(actual, error);
    }
};

QTEST_GUILESS_MAIN(ModelTest)
#include "ModelTest.moc"
