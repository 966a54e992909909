#include "ServiceStandin.h"
#include "ServiceTestSupport.h"
#include "platform/Preferences.h"
#include "service/APIService.h"
#include "service/SessionSync.h"
#include "state/AppState.h"

#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

const CredentialStore testCredentials(QStringLiteral("io.vorlix.sync.test-sync"));
const QDateTime day(QDate(2024, 5, 1), QTime(9, 0), Qt::UTC);

ShootMarker marker(const QString &id, const QString &timecode)
{
    ShootMarker m;
    m.id = id;
    m.markerType = QStringLiteral("log");
    m.timecode = timecode;
    m.createdAt = day;
    return m;
}

ShootSession session(const QString &id, const QString &title, int hour, const QString &timecode = QStringLiteral("10:00:00:00"))
{
    ShootSession s;
    s.id = s.shareToken = id;
    s.title = title;
    s.createdAt = day.addSecs(hour * 3600);
    s.markers = {marker(id + QStringLiteral("-m"), timecode)};
    return s;
}

MediaClip clip(const QString &id, const QString &timecode)
{
    MediaClip c;
    c.id = id;
    c.path = QStringLiteral("/footage/") + id + QStringLiteral(".mov");
    c.filename = id + QStringLiteral(".mov");
    c.timecode = timecode;
    c.duration = 60;
    return c;
}

// The ids of these sessions, or another of their texts.
QStringList ids(const QList<ShootSession> &sessions, QString ShootSession::*member = &ShootSession::id)
{
    QStringList result;
    for (const ShootSession &s : sessions)
        result.append(s.*member);
    return result;
}

} // namespace

class SessionSyncTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    QString freshPreferencesFile()
    {
        static int count = 0;
        return m_dir.filePath(QStringLiteral("prefs-%1.ini").arg(++count));
    }

private Q_SLOTS:
    void init() { testCredentials.remove(); }
    void cleanupTestCase() { testCredentials.remove(); }

    void newestFirstAndNothingRemoved()
    {
        const QList<ShootSession> current{session("local-only", "Made here", 5), session("old", "Old", 1)};
        const QList<ShootSession> fetched{session("b", "B", 3), session("c", "C", 9)};
        const QList<ShootSession> merged = SessionSync::merge(current, fetched, {});
        QCOMPARE(ids(merged), (QStringList{"c", "local-only", "b", "old"}));
    }

    void deletedSessionsStayAway()
    {
        const QList<ShootSession> merged =
            SessionSync::merge({session("kept", "Shoot session", 1)}, {session("gone", "G", 2), session("kept", "K", 1, "11:00:00:00")}, {"gone", "kept"});
        QCOMPARE(ids(merged), QStringList{"kept"});
        // A deleted id leaves the local copy as it was.
        QCOMPARE(merged.first().title, QStringLiteral("Shoot session"));
        QCOMPARE(merged.first().markers.first().timecode, QStringLiteral("10:00:00:00"));
    }

    void titles_data()
    {
        QTest::addColumn<QString>("local");
        QTest::addColumn<QString>("service");
        QTest::addColumn<QString>("merged");
        QTest::newRow("default title takes the service's") << "Shoot session" << "Harbour" << "Harbour";
        QTest::newRow("own title kept over a new one") << "My cut" << "Harbour" << "My cut";
        QTest::newRow("default with a space is the user's") << "Shoot session " << "Harbour" << "Shoot session ";
    }

    void titles()
    {
        QFETCH(QString, local);
        QFETCH(QString, service);
        QFETCH(QString, merged);
        QCOMPARE(ids(SessionSync::merge({session("s", local, 1)}, {session("s", service, 1)}, {}), &ShootSession::title), QStringList{merged});
    }

    void knownSessionTakesMarkersAndKeepsTheRest()
    {
        ShootSession local = session("s", "Mine", 1);
        local.fps = 50;
        local.matchedClips = {clip("c1", "10:00:00:00")};
        local.transcriptSegments = {TranscriptSegment{QStringLiteral("u"), {}, {}, {}, false, std::nullopt}};
        ShootSession remote = session("s", "Theirs", 7, QStringLiteral("11:00:00:00"));
        remote.shareToken = QStringLiteral("other-token");
        remote.markers.append(marker("extra", "11:00:05:00"));

        const ShootSession merged = SessionSync::merge({local}, {remote}, {}).first();
        QCOMPARE(merged.markers.size(), 2);
        QCOMPARE(merged.markers.first().timecode, QStringLiteral("11:00:00:00"));
        QCOMPARE(merged.title, QStringLiteral("Mine"));
        QCOMPARE(merged.createdAt, local.createdAt);
        QCOMPARE(merged.shareToken, QStringLiteral("s"));
        QCOMPARE(merged.fps, 50);
        QCOMPARE(merged.matchedClips.size(), 1);
        QCOMPARE(merged.transcriptSegments.size(), 1);
    }

    // Applying an answer: merged sessions, then their matches, then the selection — and one
    // assignment for the re-match rather than one per session.
    void applyFetched()
    {
        Preferences preferences(freshPreferencesFile());
        AppState state(preferences);
        state.setSessions({session("a", "Mine", 1), session("b", "Shoot session", 2)});
        state.setSelectedSession(state.sessions().first());
        state.setClips({clip("near-a", "09:59:40:00")});

        QStringList order;
        connect(&state, &AppState::sessionsChanged, this, [&] {
            const bool matched = std::any_of(state.sessions().begin(), state.sessions().end(),
                                             [](const ShootSession &s) { return !s.matchedClips.isEmpty(); });
            order.append(matched ? "matched" : "merged");
        });
        connect(&state, &AppState::selectedSessionChanged, this, [&] { order.append("selection"); });

        SessionSync::applyFetched(state, {session("a", "Theirs", 1, "10:00:10:00"), session("b", "B", 2, "20:00:00:00")});
        QCOMPARE(order, (QStringList{"merged", "matched", "selection"}));
        QCOMPARE(ids(state.sessions(), &ShootSession::title), (QStringList{"B", "Mine"}));
        QCOMPARE(state.selectedSession()->markers.first().timecode, QStringLiteral("10:00:10:00"));
        QCOMPARE(state.selectedSession()->matchedClips.first().id, QStringLiteral("near-a"));

        order.clear();
        state.setClips({});
        state.setSelectedSession(std::nullopt);
        order.clear();
        SessionSync::applyFetched(state, {});
        QCOMPARE(order, QStringList{"matched"});
        QVERIFY2(!state.sessions().last().matchedClips.isEmpty(), "no clips leaves earlier matches alone");
        QCOMPARE(state.selectedSession(), std::nullopt);
    }

    // Over HTTP against the stand-in: a first sync, a deletion respected, a restore brought back
    // with the service's title, and failed syncs changing nothing.
    void syncAgainstTheStandin()
    {
        QString error;
        auto data = StandinData::fromJson(R"({"sessions": [
            {"share_token": "new", "title": "Newest", "created_days_ago": 0, "created_time": "08:00:00", "markers": []},
            {"share_token": "old", "title": "Service title", "created_days_ago": 2, "created_time": "08:00:00", "markers": []}]})",
                                          QDateTime::currentDateTime(), &error);
        QVERIFY2(data, qPrintable(error));
        auto standin = std::make_unique<ServiceStandin>(*data, QStringLiteral("111111"));
        const quint16 port = standin->listenOnLoopback(0);
        APIService api(QStringLiteral("http://127.0.0.1:%1").arg(port), testCredentials);
        Preferences preferences(freshPreferencesFile());
        AppState state(preferences);

        QSignalSpy sessionsChanged(&state, &AppState::sessionsChanged);
        await(SessionSync::syncSessions(state, api));
        QCOMPARE(sessionsChanged.count(), 0);
        QVERIFY(state.sessions().isEmpty());

        QVERIFY(await(api.login(QStringLiteral("a@b.c"), QStringLiteral("111111"))).value);
        await(SessionSync::syncSessions(state, api));
        QVERIFY(state.sessions().isEmpty()); // an answer for a signed-out state is dropped
        state.signIn(QStringLiteral("a@b.c"), QString());
        await(SessionSync::syncSessions(state, api));
        QCOMPARE(ids(state.sessions()), (QStringList{"new", "old"}));

        state.markSessionsDeleted({state.sessions().last()});
        QList<ShootSession> remaining = state.sessions();
        remaining.removeLast();
        state.setSessions(remaining);
        await(SessionSync::syncSessions(state, api));
        QCOMPARE(ids(state.sessions()), QStringList{"new"});

        state.restoreDeletedSession(QStringLiteral("old"));
        await(SessionSync::syncSessions(state, api));
        QCOMPARE(ids(state.sessions(), &ShootSession::title), (QStringList{"Newest", "Service title"}));

        // Signed out on the service's side, then the service gone: nothing changes, nothing shows.
        state.setSelectedSession(state.sessions().first());
        const QList<ShootSession> before = state.sessions();
        api.keychainDelete();
        sessionsChanged.clear();
        QSignalSpy selectionChanged(&state, &AppState::selectedSessionChanged);
        await(SessionSync::syncSessions(state, api));
        standin.reset();
        APIService unreachable(QStringLiteral("http://127.0.0.1:%1").arg(port), testCredentials);
        await(SessionSync::syncSessions(state, unreachable));
        QCOMPARE(sessionsChanged.count(), 0);
        QCOMPARE(selectionChanged.count(), 0);
        QCOMPARE(ids(state.sessions()), ids(before));
        QCOMPARE(state.selectedSession()->id, QStringLiteral("new"));
    }

    void stateGoneBeforeTheAnswer()
    {
        ScriptedServer server(HttpAnswer::json({{"sessions", QJsonArray{QJsonObject{{"share_token", "a"}}}}}));
        APIService api(server.url(), testCredentials);
        Preferences preferences(freshPreferencesFile());
        auto state = std::make_unique<AppState>(preferences);
        QCoro::Task<> running = SessionSync::syncSessions(*state, api);
        state.reset();
        await(std::move(running));
        QCOMPARE(server.seen().size(), 1);
    }
};

QTEST_GUILESS_MAIN(SessionSyncTest)
#include "SessionSyncTest.moc"
