#include "analysis/PendingAnalyses.h"
#include "platform/NotificationCenter.h"

#include <QSignalSpy>
#include <QTest>

namespace {

const QList<QUrl> files{QUrl::fromLocalFile("/f/a.mov"), QUrl::fromLocalFile("/f/b.mov")};

QVariantMap request(const QVariant &files, const QVariant &sessionId)
{
    return {{QStringLiteral("files"), files}, {QStringLiteral("sessionId"), sessionId}};
}

} // namespace

class PendingAnalysesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Requests wait, in order, until their session's screen takes them, each once; other
    // notifications and malformed requests are ignored.
    void keepsRequestsUntilTheirScreenTakesThem()
    {
        NotificationCenter center;
        PendingAnalyses pending(center);
        QSignalSpy requested(&pending, &PendingAnalyses::requested);
        const QVariantList urls{files[0], files[1]};
        center.post(Notifications::analyseFiles, request(urls, QStringLiteral("S1")));
        center.post(Notifications::analyseFiles, request(urls.mid(1), QStringLiteral("S1")));
        for (const QVariantMap &ignored : {request(urls, 1), request(urls.first(), "S2"), request(QStringList{"/f/a.mov"}, "S2"),
                                           QVariantMap{{"files", urls}}})
            center.post(Notifications::analyseFiles, ignored);
        center.post(Notifications::syncNow, request(urls, QStringLiteral("S2")));

        QCOMPARE(requested.count(), 2);
        QCOMPARE(requested.first().first().toString(), QStringLiteral("S1"));
        QCOMPARE(pending.take(QStringLiteral("S2")), std::nullopt);
        QCOMPARE(pending.take(QStringLiteral("S1")), files);
        QCOMPARE(pending.take(QStringLiteral("S1")), files.mid(1));
        QCOMPARE(pending.take(QStringLiteral("S1")), std::nullopt);
        QVERIFY(!pending.hasPending(QStringLiteral("S1")));
    }
};

QTEST_GUILESS_MAIN(PendingAnalysesTest)
#include "PendingAnalysesTest.moc"
