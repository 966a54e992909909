#include "ServiceTestSupport.h"
#include "platform/Preferences.h"
#include "service/APIService.h"
#include "service/SessionSync.h"
#include "state/AppState.h"

#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

// Only read (for the cookie), and never the application's item.
const CredentialStore testCredentials(QStringLiteral("io.vorlix.sync.test-sync"), QStringLiteral("test-sync"));
const QDateTime day(QDate(2024, 5, 1), QTime(9, 0), Qt::UTC);

// Sessions with one marker each, from "id/title/hour/timecode", and back.
QList<ShootSession> sessions(const QStringList &specs)
{
    QList<ShootSession> list;
    for (const QString &spec : specs) {
        const QStringList fields = spec.split(u'/');
        ShootSession &s = list.emplace_back();
        s.id = s.shareToken = fields[0];
        s.title = fields[1];
        s.createdAt = day.addSecs(fields[2].toInt() * 3600);
        s.markers = {ShootMarker{s.id + QStringLiteral("-m"), QStringLiteral("log"), fields[3], {}, {}, {}, {}, {}, day}};
    }
    return list;
}

QStringList specs(const QList<ShootSession> &list)
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
    // Newest first; sessions only the user has stay; deleted ones stay away (a known one as it
    // was); a known session takes the fetched markers, and the fetched title only while its own
    // is empty or exactly "Shoot session"; its share token, fps, matches and transcript stay.
    void merge()
    {
        QList<ShootSession> current = sessions({"local/Made here/5/10:00:00:00", "kept/Shoot session/1/10:00:00:00",
                                                "default/Shoot session/2/10:00:00:00", "empty//3/10:00:00:00",
                                                "own/My cut/4/10:00:00:00", "spaced/Shoot session /6/10:00:00:00"});
        current[3].fps = 50;
        current[3].matchedClips = {MediaClip{"c1", {}, {}, "10:00:00:00", 60, {}, {}, {}, {}}};
        current[3].transcriptSegments = {TranscriptSegment{QStringLiteral("u"), {}, {}, {}, false, std::nullopt}};
        QList<ShootSession> fetched = sessions({"new/New/9/10:00:00:00", "gone/Gone/8/10:00:00:00", "kept/K/1/11:00:00:00",
                                                "default/Harbour/7/11:00:00:00", "empty/Quay/3/11:00:00:00",
                                                "own/Theirs/4/11:00:00:00", "spaced/Theirs/6/11:00:00:00"});
        fetched[4].shareToken = QStringLiteral("other-token");
        const QList<ShootSession> merged = SessionSync::merge(current, fetched, {"gone", "kept"});
        QCOMPARE(specs(merged), (QStringList{"new/New/9/10:00:00:00", "spaced/Shoot session /6/11:00:00:00", "local/Made here/5/10:00:00:00",
                                             "own/My cut/4/11:00:00:00", "empty/Quay/3/11:00:00:00", "default/Harbour/2/11:00:00:00",
                                             "kept/Shoot session/1/10:00:00:00"}));
        const ShootSession &empty = merged[4];
        QCOMPARE(QStringList({empty.shareToken, QString::number(empty.fps), empty.matchedClips.first().id, empty.transcriptSegments.first().id}),
                 QStringList({"empty", "50", "c1", "u"}));
    }

    // Applying an answer: merged sessions (a deleted one left out), then their matches, then the
    // selection — one assignment for the re-match rather than one per session. Without clips,
    // earlier matches stay.
    void applyFetched()
    {
        Preferences preferences(freshPreferencesFile());
        AppState state(preferences);
        state.setSessions(sessions({"a/Mine/1/10:00:00:00", "b/Shoot session/2/10:00:00:00"}));
        state.markSessionsDeleted(sessions({"gone/G/3/10:00:00:00"}));
        state.setSelectedSession(state.sessions().first());
        state.setClips({MediaClip{"near-a", {}, {}, "09:59:40:00", 60, {}, {}, {}, {}}});
        QStringList order;
        connect(&state, &AppState::sessionsChanged, this, [&] {
            const bool matched = std::any_of(state.sessions().begin(), state.sessions().end(),
                                             [](const ShootSession &s) { return !s.matchedClips.isEmpty(); });
            order.append(matched ? "matched" : "merged");
        });
        connect(&state, &AppState::selectedSessionChanged, this, [&] { order.append("selection"); });

        SessionSync::applyFetched(state, sessions({"a/Theirs/1/10:00:10:00", "b/B/2/20:00:00:00", "gone/G/3/10:00:00:00"}));
        QCOMPARE(order, (QStringList{"merged", "matched", "selection"}));
        QCOMPARE(specs(state.sessions()), (QStringList{"b/B/2/20:00:00:00", "a/Mine/1/10:00:10:00"}));
        QCOMPARE(specs({*state.selectedSession()}), QStringList{"a/Mine/1/10:00:10:00"});
        QCOMPARE(state.selectedSession()->matchedClips.first().id, QStringLiteral("near-a"));

        state.setClips({});
        order.clear();
        SessionSync::applyFetched(state, {});
        QVERIFY2(!state.sessions().last().matchedClips.isEmpty(), "no clips leaves earlier matches alone");
        QCOMPARE(order, (QStringList{"matched", "selection"}));
    }

    // One sync run over HTTP: the answer is applied to a signed-in state only, a refused fetch
    // changes nothing, and a state deleted while the fetch is in flight is left alone.
    void syncRuns_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("state");
        QTest::addColumn<QStringList>("sessions");
        QTest::newRow("applied") << 200 << "signed in" << QStringList{"new/Newest/24/", "old/Older/0/"};
        QTest::newRow("signed out: dropped") << 200 << "signed out" << QStringList();
        QTest::newRow("refused: nothing changes") << 401 << "signed in" << QStringList();
        QTest::newRow("state gone") << 200 << "gone" << QStringList();
    }

    void syncRuns()
    {
        QFETCH(int, status);
        QFETCH(QString, state);
        QFETCH(QStringList, sessions);
        ScriptedServer server({status, {{"Content-Type", "application/json"}}, R"({"sessions": [
            {"share_token": "old", "title": "Older", "created_at": "2024-05-01T09:00:00Z"},
            {"share_token": "new", "title": "Newest", "created_at": "2024-05-02T09:00:00Z"}]})"});
        APIService api(server.url(), testCredentials);
        Preferences preferences(freshPreferencesFile());
        auto appState = std::make_unique<AppState>(preferences);
        if (state != u"signed out")
            appState->signIn(QStringLiteral("a@b.c"), QString());
        QSignalSpy sessionsChanged(appState.get(), &AppState::sessionsChanged);
        QCoro::Task<> running = SessionSync::syncSessions(*appState, api);
        if (state == u"gone")
            appState.reset();
        await(std::move(running));
        QCOMPARE(server.seen().size(), 1);
        if (appState) {
            QCOMPARE(specs(appState->sessions()), sessions);
            QCOMPARE(sessionsChanged.count(), sessions.isEmpty() ? 0 : 1);
        }
    }
};

QTEST_GUILESS_MAIN(SessionSyncTest)
#include "SessionSyncTest.moc"
