#include "support/TestData.h"

#include "model/RecordJson.h"

#include <QJsonDocument>

class ModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A session stored with every kind of field reads back and writes the same JSON: key names,
    // dates as seconds since 2001, optional fields left out rather than written empty.
    void storedSessionRoundTrip()
    {
        const QJsonObject stored = QJsonDocument::fromJson(readTestData(QStringLiteral("model/session.json"))).object();
        QString error;
        const auto session = RecordJson::sessionFromJson(stored, &error);
        QVERIFY2(session, qPrintable(error));
        QCOMPARE(RecordJson::toJson(*session), stored);
        QCOMPARE(session->createdAt, QDateTime(QDate(2026, 11, 22), QTime(18, 0, 0, 250), Qt::UTC));
        QCOMPARE(session->markers.first().quote, QStringLiteral("We \"never\" stop\n\u00e9\U0001F3AC"));
        QCOMPARE(session->tcRange(), QStringLiteral("10:00:00:00 - 09:00:00:00")); // array order
        QStringList labels; // three types have a label of their own, two a colour
        for (const ShootMarker &marker : session->markers)
            labels.append(marker.displayLabel() + u' ' + QString::number(marker.color().red));
        QCOMPARE(labels, QStringList({"Clip 61", "Earmark 93", "Note 128", "Log 93", "Log 93"}));
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
        QCOMPARE(RecordJson::toJsonArray(*list), stored);
    }

    void readingFailsWithAReason_data() { addCaseRows(QStringLiteral("model/reading-errors.txt")); }

    void readingFailsWithAReason()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        const QJsonDocument document = QJsonDocument::fromJson(input.toUtf8());
        QVERIFY2(!document.isNull(), "the case is not JSON");
        QString error;
        QVERIFY(!RecordJson::sessionFromJson(document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object()), &error));
        QCOMPARE(error, expected);
    }
};

QTEST_GUILESS_MAIN(ModelTest)
#include "ModelTest.moc"
