#include "ServiceTestSupport.h"
#include "platform/Preferences.h"
#include "service/APIService.h"
#include "service/SessionSync.h"
#include "state/AppState.h"

#include <QTemporaryDir>

namespace {

// Only read (for the cookie), and never the application's item.
const CredentialStore testCredentials(QStringLiteral("io.vorlix.sync.test-sync"), QStringLiteral("test-sync"));
const QDateTime day(QDate(2024, 5, 1), QTime(9, 0), Qt::UTC);

// Sessions with one marker each, from "id/title/hour/timecode", and back.
QList<ShootSession> sessions(const QStringList &shorthands)
{
    QList<ShootSession> list;
    for (const QString &shorthand : shorthands) {
        const QStringList fields = shorthand.split(u'/');
        ShootSession &s = list.emplace_back();
        s.id = s.shareToken = fields[0];
        s.title = fields[1];
        s.createdAt = day.addSecs(fields[2].toInt() * 3600);
        s.markers = {ShootMarker{s.id + QStringLiteral("-m"), QStringLiteral("log"), fields[3], {}, {}, {}, {}, {}, day}};
    }
    return list;
}

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
    // Applying an answer merges it newest first: sessions only the user has stay; deleted ones
    // stay away (a known one as it was); a known session takes the fetched markers, and the
    // fetched title only while its own is empty or exactly "Shoot session", and keeps the rest.
    // Observers see the merged sessions, then, in one assignment, the re-matched ones (with no
    // clips there is no re-match and earlier matches stay), then the selection.
    void applyFetched()
    {
        Preferences preferences(freshPreferencesFile());
        AppState state(preferences);
        QList<ShootSession> current = sessions({"local/Made here/5/10:00:00:00", "kept/Shoot session/1/10:00:00:00",
                                                "default/Shoot session/2/10:00:00:00", "empty//3/10:00:00:00",
                                                "own/My cut/4/10:00:00:00", "spaced/Shoot session /6/10:00:00:00"});
        current[3].fps = 50;
        current[3].transcriptSegments = {TranscriptSegment{QStringLiteral("u"), {}, {}, {}, false, std::nullopt}};
        current[4].matchedClips = {MediaClip{"c1", {}, {}, "10:00:00:00", 60, {}, {}, {}, {}}};
        state.setSessions(current);
        state.markSessionsDeleted(sessions({"gone/Gone/8/10:00:00:00", "kept/K/1/10:00:00:00"}));
        state.setSelectedSession(current[3]);
        state.setClips({MediaClip{"near", {}, {}, "11:59:40:00", 60, {}, {}, {}, {}}});
        QStringList events; // per change: the sessions' matches, or "selection"
        connect(&state, &AppState::sessionsChanged, this, [&] {
            QStringList matched;
            for (const ShootSession &session : state.sessions()) {
                if (!session.matchedClips.isEmpty())
                    matched.append(session.id + u'=' + session.matchedClips.first().id);
            }
            events.append(matched.join(u' '));
        });
        connect(&state, &AppState::selectedSessionChanged, this, [&] { events.append("selection"); });

        SessionSync::applyFetched(state, sessions({"new/New/9/10:00:00:00", "gone/Gone/8/10:00:00:00", "kept/K/1/11:00:00:00",
                                                   "default/Harbour/7/11:00:00:00", "empty/Quay/3/12:00:00:00",
                                                   "own/Theirs/4/11:00:00:00", "spaced/Theirs/6/11:00:00:00"}));
        QCOMPARE(events, (QStringList{"own=c1", "empty=near", "selection"}));
        QCOMPARE(shorthands(state.sessions()), (QStringList{"new/New/9/10:00:00:00", "spaced/Shoot session /6/11:00:00:00", "local/Made here/5/10:00:00:00",
                                                       "own/My cut/4/11:00:00:00", "empty/Quay/3/12:00:00:00", "default/Harbour/2/11:00:00:00",
                                                       "kept/Shoot session/1/10:00:00:00"}));
        const ShootSession selected = *state.selectedSession();
        QCOMPARE(QStringList({shorthands({selected}).first(), QString::number(selected.fps), selected.transcriptSegments.first().id}),
                 QStringList({"empty/Quay/3/12:00:00:00", "50", "u"}));

        state.setClips({});
        events.clear();
        SessionSync::applyFetched(state, {});
        QCOMPARE(events, (QStringList{"empty=near", "selection"}));
    }

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
