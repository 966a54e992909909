#include "support/TestData.h"

#include "platform/Preferences.h"
#include "state/AppState.h"
#include "state/SessionLibrary.h"

#include <QTemporaryDir>

namespace {

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

MediaClip clip(const QString &id, const QString &timecode)
{
    return MediaClip{id, QStringLiteral("/footage/") + id, id, timecode, 60, {}, {}, {}, {}};
}

} // namespace

class SessionLibraryTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    int m_files = 0;
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<AppState> m_state;
    QStringList m_events; // per assignment: "sessions" or "selection"

private Q_SLOTS:
    void init()
    {
        m_preferences = std::make_unique<Preferences>(m_dir.filePath(QStringLiteral("%1.ini").arg(++m_files)));
        m_state = std::make_unique<AppState>(*m_preferences);
        m_events.clear();
        connect(m_state.get(), &AppState::sessionsChanged, this, [this] { m_events.append(QStringLiteral("sessions")); });
        connect(m_state.get(), &AppState::selectedSessionChanged, this, [this] { m_events.append(QStringLiteral("selection")); });
    }

    // A sync's answer merged newest first: sessions only the user has stay; deleted ones stay
    // away (a known one as it was); a known session takes the fetched markers, and the fetched
    // title only while its own is empty or exactly "Shoot session", and keeps the rest. One
    // assignment carries the merged and re-matched sessions, then the selection follows; an
    // answer that changes nothing assigns nothing.
    void mergeFetched()
    {
        QList<ShootSession> current = sessions({"local/Made here/5/10:00:00:00", "kept/Shoot session/1/10:00:00:00",
                                                "default/Shoot session/2/10:00:00:00", "empty//3/10:00:00:00",
                                                "own/My cut/4/10:00:00:00", "spaced/Shoot session /6/10:00:00:00"});
        current[3].fps = 50;
        current[3].transcriptSegments = {TranscriptSegment{QStringLiteral("u"), {}, {}, {}, false, std::nullopt}};
        current[4].matchedClips = {clip("c1", "10:00:00:00")};
        m_state->setSessions(current);
        m_state->markSessionsDeleted(sessions({"gone/Gone/8/10:00:00:00", "kept/K/1/10:00:00:00"}));
        m_state->setSelectedSession(current[3]);
        m_state->setClips({clip("near", "11:59:40:00")});
        m_events.clear();

        const QList<ShootSession> fetched = sessions({"new/New/9/10:00:00:00", "gone/Gone/8/10:00:00:00", "kept/K/1/11:00:00:00",
                                                      "default/Harbour/7/11:00:00:00", "empty/Quay/3/12:00:00:00",
                                                      "own/Theirs/4/11:00:00:00", "spaced/Theirs/6/11:00:00:00"});
        SessionLibrary library(*m_state);
        library.mergeFetched(fetched);
        QCOMPARE(m_events, (QStringList{"sessions", "selection"}));
        QStringList matched;
        for (const ShootSession &session : m_state->sessions()) {
            if (!session.matchedClips.isEmpty())
                matched.append(session.id + u'=' + session.matchedClips.first().id);
        }
        QCOMPARE(matched, QStringList{"empty=near"});
        QCOMPARE(shorthands(m_state->sessions()), (QStringList{"new/New/9/10:00:00:00", "spaced/Shoot session /6/11:00:00:00", "local/Made here/5/10:00:00:00",
                                                          "own/My cut/4/11:00:00:00", "empty/Quay/3/12:00:00:00", "default/Harbour/2/11:00:00:00",
                                                          "kept/Shoot session/1/10:00:00:00"}));
        const ShootSession selected = *m_state->selectedSession();
        QCOMPARE(QStringList({shorthands({selected}).first(), QString::number(selected.fps), selected.transcriptSegments.first().id}),
                 QStringList({"empty/Quay/3/12:00:00:00", "50", "u"}));

        m_events.clear();
        library.mergeFetched(fetched);
        library.mergeFetched({});
        library.mergeScanned({clip("near", "11:59:40:00")}, false);
        QCOMPARE(m_events, QStringList());
    }

    // The changes the screens ask for, each with what observers see.
    void edits_data()
    {
        QTest::addColumn<QString>("edit");
        QTest::addColumn<QString>("expected");
        QTest::newRow("rename") << "rename b Quay" << "a/A b/Quay c/C; selected b/Quay; events: sessions, selection";
        QTest::newRow("rename to the same title") << "rename b B" << "a/A b/B c/C; selected b/B; events: none";
        QTest::newRow("rename to nothing") << "rename b " << "refused; a/A b/B c/C; selected b/B; events: none";
        QTest::newRow("rename unknown") << "rename x Quay" << "refused; a/A b/B c/C; selected b/B; events: none";
        QTest::newRow("delete the selected") << "delete b c" << "a/A; selected none; deleted b c; events: sessions, selection";
        QTest::newRow("delete another") << "delete a" << "b/B c/C; selected b/B; deleted a; events: sessions";
        QTest::newRow("reload after analysis") << "reload c" << "a/A b/B c/C; selected c/C 12:00:00:00; events: sessions, selection";
        QTest::newRow("reload unknown here") << "reload x" << "a/A b/B c/C; selected b/B 10:00:00:00; events: none";
        QTest::newRow("analysis session") << "add n" << "n/N a/A b/B c/C; selected n/N; events: sessions, selection";
        QTest::newRow("clear") << "clear" << "; selected none; events: sessions, selection";
    }

    void edits()
    {
        QFETCH(QString, edit);
        QFETCH(QString, expected);
        m_state->setSessions(sessions({"a/A/3/10:00:00:00", "b/B/2/10:00:00:00", "c/C/1/10:00:00:00"}));
        m_state->setSelectedSession(m_state->sessions().at(1));
        m_events.clear();
        SessionLibrary library(*m_state);
        const QStringList words = edit.split(u' ');
        QStringList outcome;
        if (words[0] == u"rename" && !library.renameSession(words[1], words[2]))
            outcome.append(QStringLiteral("refused"));
        if (words[0] == u"delete")
            library.deleteSessions({words.begin() + 1, words.end()});
        if (words[0] == u"reload")
            library.applyAnalysisReload(sessions({"c/Service/9/12:00:00:00", "x/X/9/12:00:00:00"}), words[1]);
        if (words[0] == u"add")
            library.addAnalysisSession(sessions({"n/N/0/"}).first());
        if (words[0] == u"clear")
            library.clearSessions();

        QStringList titles;
        for (const ShootSession &s : m_state->sessions())
            titles.append(s.id + u'/' + s.title);
        outcome.append(titles.join(u' '));
        const std::optional<ShootSession> &selected = m_state->selectedSession();
        QString selection = QStringLiteral("selected ") + (selected ? selected->id + u'/' + selected->title : QStringLiteral("none"));
        if (selected && words[0] == u"reload")
            selection += u' ' + selected->markers.first().timecode;
        outcome.append(selection);
        QStringList deleted;
        for (const DeletedSessionInfo &info : m_state->deletedSessions())
            deleted.append(info.id);
        if (!deleted.isEmpty())
            outcome.append(QStringLiteral("deleted ") + deleted.join(u' '));
        outcome.append(QStringLiteral("events: ") + (m_events.isEmpty() ? QStringLiteral("none") : m_events.join(QStringLiteral(", "))));
        QCOMPARE(outcome.join(QStringLiteral("; ")), expected);
    }
};

QTEST_GUILESS_MAIN(SessionLibraryTest)
#include "SessionLibraryTest.moc"
