#include "analysis/PendingAnalyses.h"
#include "platform/NotificationCenter.h"

#include <QSignalSpy>
#include <QTest>

namespace {

QVariantMap request(const QVariant &files, const QVariant &sessionId)
{
    return {{QStringLiteral("files"), files}, {QStringLiteral("sessionId"), sessionId}};
}

QVariantList urls(const QStringList &paths)
{
    QVariantList list;
    for (const QString &path : paths)
        list.append(QUrl::fromLocalFile(path));
    return list;
}

} // namespace

class PendingAnalysesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The request is posted before any detail screen exists; the screen of that session takes it
    // once when it appears, screens of other sessions never see it.
    void keepsARequestUntilItsScreenTakesIt()
    {
        NotificationCenter center;
        PendingAnalyses pending(center);
        QSignalSpy requested(&pending, &PendingAnalyses::requested);

        center.post(Notifications::analyseFiles, request(urls({"/f/a.mov", "/f/b.mov"}), QStringLiteral("S1")));
        center.post(Notifications::analyseFiles, request(urls({"/f/c.mov"}), QStringLiteral("S1")));
        QCOMPARE(requested.count(), 2);
        QCOMPARE(requested.first().first().toString(), QStringLiteral("S1"));

        QVERIFY(!pending.take(QStringLiteral("S2")));
        QVERIFY(pending.hasPending(QStringLiteral("S1")));
        QCOMPARE(pending.take(QStringLiteral("S1")),
                 (QList<QUrl>{QUrl::fromLocalFile("/f/a.mov"), QUrl::fromLocalFile("/f/b.mov")}));
        QCOMPARE(pending.take(QStringLiteral("S1")), QList<QUrl>{QUrl::fromLocalFile("/f/c.mov")});
        QVERIFY(!pending.take(QStringLiteral("S1")));
        QVERIFY(!pending.hasPending(QStringLiteral("S1")));
    }

    void ignoresOtherNotificationsAndMalformedRequests_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QVariantMap>("userInfo");
        const QVariant id = QStringLiteral("S1");
        QTest::newRow("other name") << Notifications::syncNow << request(urls({"/f/a.mov"}), id);
        QTest::newRow("no session id") << Notifications::analyseFiles << QVariantMap{{"files", urls({"/f/a.mov"})}};
        QTest::newRow("files not a list") << Notifications::analyseFiles << request(QUrl::fromLocalFile("/f/a.mov"), id);
        QTest::newRow("paths instead of URLs") << Notifications::analyseFiles << request(QStringList{"/f/a.mov"}, id);
    }

    void ignoresOtherNotificationsAndMalformedRequests()
    {
        QFETCH(QString, name);
        QFETCH(QVariantMap, userInfo);
        NotificationCenter center;
        PendingAnalyses pending(center);
        QSignalSpy requested(&pending, &PendingAnalyses::requested);
        center.post(name, userInfo);
        QCOMPARE(requested.count(), 0);
        QVERIFY(!pending.hasPending(QStringLiteral("S1")));
    }
};

QTEST_GUILESS_MAIN(PendingAnalysesTest)
#include "PendingAnalysesTest.moc"
