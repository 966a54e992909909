#include "support/TestData.h"

#include "platform/Preferences.h"
#include "state/AppState.h"
#include "state/PreferenceKeys.h"

#include <QTemporaryDir>

namespace {

ShootSession session(const QString &id, const QString &title)
{
    ShootSession s;
    s.id = s.shareToken = id;
    s.title = title;
    return s;
}

// "id title hh:mm" per entry, the time in UTC.
QStringList described(const QList<DeletedSessionInfo> &list)
{
    QStringList lines;
    for (const DeletedSessionInfo &info : list)
        lines.append(info.id + u' ' + info.title + u' ' + info.deletedAt.toUTC().toString(u"hh:mm"));
    return lines;
}

} // namespace

// Each test and data row has a store in a new ini file, and a clock it moves by hand.
class AppStateTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_file;
    int m_files = 0;
    QDateTime m_now;

    Preferences preferences() const { return Preferences(m_file); }
    AppState::Clock clock() { return [this] { return m_now; }; }

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_dir.isValid());
        m_file = m_dir.filePath(QStringLiteral("%1.ini").arg(++m_files));
        m_now = QDateTime(QDate(2026, 3, 1), QTime(12, 0), Qt::UTC);
    }

    // What is read at start is what saving writes back.
    void storedSettings_data() { addCaseRows(QStringLiteral("state/settings.txt")); }

    void storedSettings()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("[General]\n" + input.split(" ; ").join(u'\n').toUtf8() + '\n') > 0);
        file.close();
        for (int start = 0; start < 2; ++start) {
            Preferences store = preferences();
            AppState state(store);
            const QString login = state.isLoggedIn() ? QStringLiteral("signed in as %1 (%2)").arg(state.userEmail(), state.userName()) : QStringLiteral("signed out");
            QCOMPARE(QStringList({QString::number(state.defaultFps()), state.preferredNLE(), state.appearance(),
                                  u'[' + state.footageFolders().join(", ") + u']', login}).join(", "), expected);
            state.saveSettings();
        }
    }

    void footageFolders()
    {
        Preferences store = preferences();
        AppState state(store);
        for (const char *folder : {"/footage", "/footage", "/footage/"})
            state.addFootageFolder(QString::fromUtf8(folder));
        // The same text is saved once; a trailing slash makes another folder.
        QCOMPARE(store.stringList(PreferenceKeys::footageFolders), std::optional(QStringList{"/footage", "/footage/"}));
        state.removeFootageFolder(QStringLiteral("/footage"));
        state.removeFootageFolder(QStringLiteral("/footage/"));
        QCOMPARE(store.stringList(PreferenceKeys::footageFolders), std::optional(QStringList()));
    }

    void deletingTwiceKeepsTheFirstDeletion()
    {
        Preferences store = preferences();
        AppState state(store, nullptr, clock());
        state.markSessionsDeleted({session("a", "Beach"), session("b", "Studio")});
        m_now = m_now.addSecs(60);
        state.markSessionsDeleted({session("a", "Beach renamed"), session("c", "Car")});
        QCOMPARE(described(state.deletedSessions()), (QStringList{"a Beach 12:00", "b Studio 12:00", "c Car 12:01"}));
        state.restoreDeletedSession(QStringLiteral("a"));
        QCOMPARE(described(AppState(store).deletedSessions()), (QStringList{"b Studio 12:00", "c Car 12:01"}));
    }

    void migratesTheEarlierDeletedList_data() { addCaseRows(QStringLiteral("state/deleted-list-migration.txt")); }

    void migratesTheEarlierDeletedList()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        preferences().setStringList(PreferenceKeys::legacyDeletedSessions, input.section(" | ", 0, 0).split(u' ', Qt::SkipEmptyParts));
        if (const QString stored = input.section(" | ", 1); !stored.isEmpty())
            preferences().setData(PreferenceKeys::deletedSessions, stored.toUtf8());
        for (int start = 0; start < 2; ++start) {
            Preferences store = preferences();
            const QString list = described(AppState(store, nullptr, clock()).deletedSessions()).join(", ");
            QCOMPARE(list + (store.stringList(PreferenceKeys::legacyDeletedSessions) ? "; earlier list kept" : "; earlier list removed"), expected);
            m_now = m_now.addSecs(60);
        }
    }

    // Signing out forgets who signed in, here and in the store; the sessions, the selection and
    // the settings are for the screen it came from to decide.
    void signOut()
    {
        Preferences store = preferences();
        AppState state(store);
        state.signIn(QStringLiteral("ed@example.com"), QStringLiteral("Ed"));
        QCOMPARE(AppState(store).userName(), QStringLiteral("Ed")); // remembered for the next start
        state.addFootageFolder(QStringLiteral("/footage"));
        state.markSessionsDeleted({session("gone", "Gone")});
        state.setSessions({session("s", "S")});
        state.setSelectedSession(session("s", "S"));
        state.signOut();
        QVERIFY(!state.isLoggedIn() && state.userEmail().isEmpty() && state.userName().isEmpty());
        QVERIFY(!store.string(PreferenceKeys::email) && !store.string(PreferenceKeys::name));
        QVERIFY2(state.sessions().size() == 1 && state.selectedSession(), "signing out cleared the sessions");
        QVERIFY2(state.footageFolders().size() == 1 && state.deletedSessions().size() == 1, "signing out touched the folders or the deleted list");
    }
};

QTEST_GUILESS_MAIN(AppStateTest)
#include "AppStateTest.moc"
