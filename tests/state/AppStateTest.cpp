#include "model/RecordJson.h"
#include "platform/Preferences.h"
#include "state/AppState.h"
#include "state/PreferenceKeys.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

ShootSession session(const QString &id, const QString &title)
{
    ShootSession s;
    s.id = s.shareToken = id;
    s.title = title;
    return s;
}

} // namespace

class AppStateTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_file;

    Preferences preferences() const { return Preferences(m_file); }

    QJsonArray storedDeletedList() const
    {
        return QJsonDocument::fromJson(preferences().data(PreferenceKeys::deletedSessions).value_or(QByteArray())).array();
    }

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_dir.isValid());
        m_file = m_dir.filePath(QString::fromLatin1(QTest::currentTestFunction()) + QStringLiteral(".ini"));
        QFile::remove(m_file);
    }

    void settingsFallBacks_data()
    {
        QTest::addColumn<QString>("ini");
        QTest::addColumn<int>("fps");
        QTest::addColumn<QString>("nle");
        QTest::addColumn<QStringList>("folders");
        QTest::newRow("empty store") << "" << 25 << "resolve" << QStringList();
        QTest::newRow("stored values") << "vorlix_default_fps=30\nvorlix_nle=premiere\nvorlix_footage_folders=/a, /b\n"
                                       << 30 << "premiere" << QStringList{"/a", "/b"};
        QTest::newRow("fps zero") << "vorlix_default_fps=0\n" << 25 << "resolve" << QStringList();
        QTest::newRow("fps not a number") << "vorlix_default_fps=fast\n" << 25 << "resolve" << QStringList();
        QTest::newRow("empty stored e-mail") << "vorlix_email=\n" << 25 << "resolve" << QStringList();
        QTest::newRow("one folder") << "vorlix_footage_folders=/only\n" << 25 << "resolve" << QStringList{"/only"};
        QTest::newRow("list where a string belongs") << "vorlix_nle=a, b\n" << 25 << "resolve" << QStringList();
        QTest::newRow("bytes where a list belongs") << "vorlix_footage_folders=@ByteArray(x)\n" << 25 << "resolve" << QStringList();
    }

    void settingsFallBacks()
    {
        QFETCH(QString, ini);
        QFETCH(int, fps);
        QFETCH(QString, nle);
        QFETCH(QStringList, folders);
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[General]\n" + ini.toUtf8());
        file.close();
        Preferences store = preferences();
        AppState state(store);
        QCOMPARE(state.defaultFps(), fps);
        QCOMPARE(state.preferredNLE(), nle);
        QCOMPARE(state.footageFolders(), folders);
        QVERIFY(!state.isLoggedIn());
    }

    void settingsSurviveARestart()
    {
        {
            Preferences store = preferences();
            AppState state(store);
            state.setAppearance(QStringLiteral("dark"));
            state.setDefaultFps(60);
            state.setPreferredNLE(QStringLiteral("fcp"));
            state.saveSettings();
            state.addFootageFolder(QStringLiteral("/Volumes/Card A"));
        }
        Preferences store = preferences();
        AppState state(store);
        QCOMPARE(state.appearance(), QStringLiteral("dark"));
        QCOMPARE(state.defaultFps(), 60);
        QCOMPARE(state.preferredNLE(), QStringLiteral("fcp"));
        QCOMPARE(state.footageFolders(), QStringList{"/Volumes/Card A"});
    }

    void footageFolders()
    {
        Preferences store = preferences();
        AppState state(store);
        QSignalSpy changed(&state, &AppState::footageFoldersChanged);
        state.addFootageFolder(QStringLiteral("/footage"));
        state.addFootageFolder(QStringLiteral("/footage"));
        state.addFootageFolder(QStringLiteral("/footage/"));
        QCOMPARE(state.footageFolders(), (QStringList{"/footage", "/footage/"}));
        QCOMPARE(changed.count(), 2);
        state.removeFootageFolder(QStringLiteral("/footage"));
        QCOMPARE(state.footageFolders(), QStringList{"/footage/"});
        QCOMPARE(preferences().stringList(PreferenceKeys::footageFolders), QStringList{"/footage/"});
        state.removeFootageFolder(QStringLiteral("/footage/"));
        QCOMPARE(preferences().stringList(PreferenceKeys::footageFolders).value_or(QStringList{"x"}), QStringList());
    }

    void deletingTwiceKeepsTheFirstDeletion()
    {
        Preferences store = preferences();
        AppState state(store);
        state.markSessionsDeleted({session("a", "Beach"), session("b", "Studio")});
        const QDateTime first = state.deletedSessions().first().deletedAt;
        QTest::qWait(5);
        state.markSessionsDeleted({session("a", "Beach renamed")});
        QCOMPARE(state.deletedSessions().size(), 2);
        QCOMPARE(state.deletedSessions().first().title, QStringLiteral("Beach"));
        QCOMPARE(state.deletedSessions().first().deletedAt, first);
        QCOMPARE(state.deletedSessionIds(), (QSet<QString>{"a", "b"}));
        QCOMPARE(storedDeletedList().size(), 2);

        state.restoreDeletedSession(QStringLiteral("a"));
        QCOMPARE(state.deletedSessionIds(), QSet<QString>{"b"});
        Preferences reopened = preferences();
        AppState restarted(reopened);
        QCOMPARE(restarted.deletedSessions().size(), 1);
        QCOMPARE(restarted.deletedSessions().first().title, QStringLiteral("Studio"));
    }

    void migratesTheEarlierDeletedList_data()
    {
        QTest::addColumn<QStringList>("oldIds");
        QTest::addColumn<QStringList>("newIds");
        QTest::addColumn<QStringList>("expectedIds");
        QTest::addColumn<bool>("oldKeyRemains");
        QTest::newRow("old only") << QStringList{"x", "y"} << QStringList() << QStringList{"x", "y"} << false;
        QTest::newRow("old and new overlap") << QStringList{"x", "y"} << QStringList{"y"} << QStringList{"y", "x"} << false;
        QTest::newRow("empty old list stays") << QStringList() << QStringList{"y"} << QStringList{"y"} << true;
    }

    void migratesTheEarlierDeletedList()
    {
        QFETCH(QStringList, oldIds);
        QFETCH(QStringList, newIds);
        QFETCH(QStringList, expectedIds);
        QFETCH(bool, oldKeyRemains);
        {
            Preferences store = preferences();
            store.setStringList(PreferenceKeys::legacyDeletedSessions, oldIds);
            QList<DeletedSessionInfo> existing;
            for (const QString &id : newIds)
                existing.append({id, QStringLiteral("Kept title"), QDateTime::currentDateTimeUtc()});
            if (!newIds.isEmpty())
                store.setData(PreferenceKeys::deletedSessions, QJsonDocument(RecordJson::toJsonArray(existing)).toJson());
        }
        for (int start = 0; start < 2; ++start) { // a second start finds nothing more to migrate
            Preferences store = preferences();
            AppState state(store);
            QStringList ids;
            for (const DeletedSessionInfo &info : state.deletedSessions()) {
                ids.append(info.id);
                QCOMPARE(info.title, QString(newIds.contains(info.id) ? "Kept title" : "Deleted session"));
            }
            QCOMPARE(ids, expectedIds);
            QCOMPARE(store.stringList(PreferenceKeys::legacyDeletedSessions).has_value(), oldKeyRemains);
            QCOMPARE(storedDeletedList().size(), expectedIds.size());
        }
    }

    void unreadableDeletedListStartsEmpty()
    {
        preferences().setData(PreferenceKeys::deletedSessions, QByteArray("{not json"));
        Preferences store = preferences();
        AppState state(store);
        QVERIFY(state.deletedSessions().isEmpty());
        state.markSessionsDeleted({session("a", "A")});
        QCOMPARE(storedDeletedList().size(), 1);
    }

    void loginRestoreAndSignOut_data()
    {
        QTest::addColumn<int>("scope");
        QTest::addColumn<bool>("keepsSessions");
        QTest::addColumn<bool>("leavesSettingsPane");
        QTest::newRow("session list") << int(AppState::SignOutScope::SessionList) << false << false;
        QTest::newRow("inline settings") << int(AppState::SignOutScope::InlineSettings) << false << true;
        QTest::newRow("settings window") << int(AppState::SignOutScope::SettingsWindow) << true << false;
    }

    void loginRestoreAndSignOut()
    {
        QFETCH(int, scope);
        QFETCH(bool, keepsSessions);
        QFETCH(bool, leavesSettingsPane);
        {
            Preferences store = preferences();
            AppState state(store);
            state.signIn(QStringLiteral("ed@example.com"), QStringLiteral("Ed"));
        }
        Preferences store = preferences();
        AppState state(store); // no credential stored: still signed in
        QVERIFY(state.isLoggedIn());
        QCOMPARE(state.userEmail(), QStringLiteral("ed@example.com"));
        QCOMPARE(state.userName(), QStringLiteral("Ed"));

        state.addFootageFolder(QStringLiteral("/footage"));
        state.markSessionsDeleted({session("gone", "Gone")});
        state.setSessions({session("s", "S")});
        state.setSelectedSession(session("s", "S"));
        state.setShowSettings(true);
        state.signOut(AppState::SignOutScope(scope));

        QVERIFY(!state.isLoggedIn());
        QVERIFY(state.userEmail().isEmpty());
        QVERIFY(!store.string(PreferenceKeys::email));
        QVERIFY(!store.string(PreferenceKeys::name));
        QCOMPARE(state.sessions().isEmpty(), !keepsSessions);
        QCOMPARE(state.selectedSession().has_value(), keepsSessions);
        QCOMPARE(state.showSettings(), !leavesSettingsPane);
        QCOMPARE(state.footageFolders(), QStringList{"/footage"});
        QCOMPARE(state.deletedSessions().size(), 1);
    }

    void selectionFollowsItsSessionById()
    {
        Preferences store = preferences();
        AppState state(store);
        state.refreshSelectedSession();
        QVERIFY(!state.selectedSession());
        state.setSessions({session("a", "Fresh")});
        state.setSelectedSession(session("a", "Stale"));
        state.refreshSelectedSession();
        QCOMPARE(state.selectedSession()->title, QStringLiteral("Fresh"));
        state.setSelectedSession(session("gone", "Gone"));
        state.refreshSelectedSession();
        QVERIFY(!state.selectedSession());
    }

};

QTEST_GUILESS_MAIN(AppStateTest)
#include "AppStateTest.moc"
