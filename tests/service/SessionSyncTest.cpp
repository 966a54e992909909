#include "platform/Preferences.h"
#include "service/APIService.h"
#include "service/SessionSync.h"
#include "ServiceTestSupport.h"
#include "state/AppState.h"

#include <QTemporaryDir>

namespace {

// Only read (for the cookie), and never the application's item.
const CredentialStore testCredentials(QStringLiteral("io.vorlix.sync.test-sync"), QStringLiteral("test-sync"));
const QDateTime day(QDate(2024, 5, 1), QTime(9, 0), Qt::UTC);

// Sessions as "id/title/hour/timecode" of their first marker.
QStringList shorthands(const QList<ShootSession> &list)
{
    QStringList result;
    for (const ShootSession &s : list)
        result.append(QStringList{s.id, s.title, QString::number(day.secsTo(s.createdAt) / 3600), s.markers.value(0).timecode}.join(u'/'));
    return result;
}

} // namespace

class SessionSyncTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    int m_preferencesCount = 0;

    QString freshPreferencesFile() { return m_dir.filePath(QStringLiteral("prefs-%1.ini").arg(++m_preferencesCount)); }

private Q_SLOTS:
    // One sync run over HTTP: the answer is applied to a signed-in state only, a refused fetch
    // changes nothing, and a state deleted while the fetch is in flight is left alone.
    void syncRuns_data() { addJsonCases(QStringLiteral("service/service-answers.json"), QStringLiteral("sync")); }

    void syncRuns()
    {
        QFETCH(QJsonObject, data);
        ScriptedServer server({data["status"].toInt(), {{"Content-Type", "application/json"}}, R"({"sessions": [
            {"share_token": "old", "title": "Older", "created_at": "2024-05-01T09:00:00Z"},
            {"share_token": "new", "title": "Newest", "created_at": "2024-05-02T09:00:00Z"}]})"});
        APIService api(server.url(), testCredentials);
        Preferences preferences(freshPreferencesFile());
        auto state = std::make_unique<AppState>(preferences);
        if (data["state"].toString() != u"signed out")
            state->signIn(QStringLiteral("a@b.c"), QString());
        QCoro::Task<> running = SessionSync::syncSessions(*state, api);
        if (data["state"].toString() == u"gone")
            state.reset();
        await(std::move(running));
        QCOMPARE(server.seen().size(), 1);
        if (state)
            QCOMPARE(shorthands(state->sessions()), data["sessions"].toVariant().toStringList());
    }
};

QTEST_GUILESS_MAIN(SessionSyncTest)
#include "SessionSyncTest.moc"
