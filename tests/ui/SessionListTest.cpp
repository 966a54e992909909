// The main window around the session list offscreen, on real state and a temporary preferences
// file. The backend only counts what the screens ask of it; the screens on the real service
// client, keyring and analysis are in ServiceScreensTest.
#include "ShellFixture.h"

#include "state/PreferenceKeys.h"
#include "ui/detail/SessionDetailView.h"
#include "ui/login/LoginView.h"
#include "ui/sessions/SessionListModel.h"
#include "ui/sessions/SessionListView.h"
#include "ui/settings/InlineSettingsView.h"
#include "ui/settings/SettingsView.h"
#include "ui/shell/EmptyStateView.h"
#include "ui/shell/SignedInView.h"
#include "ui/widgets/ElidedLabel.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QToolBar>

namespace {

// Writes down what the screens ask for, one line each.
class CountingBackend : public ShellBackend
{
public:
    QStringList calls;
    QString codeError;

    QCoro::Task<QString> requestLoginCode(QString email) override
    {
        calls.append("code for " + email);
        co_return codeError;
    }
    QCoro::Task<LoginOutcome> login(QString, QString) override { co_return LoginOutcome{}; }
    QCoro::Task<> deleteCredential() override
    {
        calls.append("delete credential");
        co_return;
    }
    void syncSessions() override { calls.append("sync"); }
    void scanFootage(const QString &folder) override { calls.append("scan " + folder); }
    void cancelScan() override { calls.append("cancel scan"); }
    void rescanSavedFolders() override { calls.append("rescan"); }
    QCoro::Task<QList<TranscriptSegment>> fetchTranscript(QString) override { co_return QList<TranscriptSegment>{}; }
    QCoro::Task<> runAnalysis(ShootSession, QList<QUrl>, AnalysisState &) override { co_return; }
};

const QList<ShootSession> threeSessions{makeSession("a", "Alpha", shellNow), makeSession("b", "Bravo", shellNow.addSecs(-60)),
                                        makeSession("c", "Charlie", shellNow.addDays(-3))};

} // namespace

class SessionListTest : public QObject
{
    Q_OBJECT

    CountingBackend m_backend;
    std::unique_ptr<ShellFixture> m_shell;

    AppState &state() { return m_shell->state; }
    QStringList &asked() { return m_shell->desktop.asked; }
    SignedInView *signedIn() { return m_shell->window->signedInView(); }
    SessionListView *list() { return signedIn()->sessionList(); }
    QLineEdit *renameField() { return list()->listView()->viewport()->findChild<QLineEdit *>("renameField"); }

    [[nodiscard]] bool signInWith(const QList<ShootSession> &sessions)
    {
        state().signIn("anna@example.com", "Anna Maria Smith");
        state().setSessions(sessions);
        if (!QTest::qWaitFor([this] { return signedIn() && signedIn()->isVisible(); }, screenWait))
            return false;
        list()->refresh();
        return true;
    }

    // The inline settings in the detail pane, once they are shown.
    [[nodiscard]] QWidget *showInlineSettings()
    {
        state().setShowSettings(true);
        const auto shown = [this] { return qobject_cast<InlineSettingsView *>(signedIn()->currentDetail()); };
        return QTest::qWaitFor(shown, screenWait) ? shown() : nullptr;
    }

private Q_SLOTS:
    void init()
    {
        m_backend = CountingBackend();
        m_shell = std::make_unique<ShellFixture>();
        m_shell->open(m_backend);
    }
    void cleanup() { m_shell.reset(); }

    // The login steps themselves run against the stand-in in ServiceScreensTest.
    void refusedCodeRequestKeepsTheAddressStep()
    {
        const QPointer<LoginView> login = m_shell->window->loginView();
        login->findChildren<QLineEdit *>().at(0)->setText("  anna@example.com ");
        m_backend.codeError = "Unknown address";
        QTest::mouseClick(withText(login.data(), "Send login code"), Qt::LeftButton);
        QTRY_VERIFY2_WITH_TIMEOUT(login->error() == "Unknown address", "the refusal did not reach the login screen", screenWait);
        QVERIFY(!login->codeSent() && login->findChild<QLabel *>("error")->isVisible());
        QCOMPARE(m_backend.calls, QStringList{"code for   anna@example.com "});
    }

    void toolbarAndScanSection()
    {
        QVERIFY2(signInWith({}), "the signed-in view did not come up");
        // Coming on screen syncs and rescans the saved folders; the window becoming active at the same time may sync again.
        QVERIFY2(m_backend.calls.startsWith("sync") && m_backend.calls.contains("rescan"), qPrintable(m_backend.calls.join("; ")));
        QAction *scan = withText<QAction>(signedIn()->toolBar(), "Scan Footage");
        m_backend.calls.clear();
        m_shell->desktop.folderAnswers = {"/footage/new"};
        scan->trigger();
        withText<QAction>(signedIn()->toolBar(), "Sync")->trigger();
        QCOMPARE(m_backend.calls, (QStringList{"scan /footage/new", "sync"}));

        const QPointer<QWidget> section = list()->findChild<QWidget *>("scanningSection");
        QVERIFY(section->isHidden());
        state().setScanning(true);
        state().setScanProgress("Reading 3/12: A001C003.mov");
        QTRY_VERIFY2_WITH_TIMEOUT(section && !section->isHidden() && !scan->isEnabled(), "the sidebar does not show the scan", screenWait);
        QCOMPARE(list()->findChild<ElidedLabel *>("scanProgress")->text(), "Reading 3/12: A001C003.mov");
        m_backend.calls.clear();
        QTest::mouseClick(list()->findChild<QPushButton *>("scanProgressButton"), Qt::LeftButton);
        QCOMPARE(m_backend.calls, QStringList{"cancel scan"});
        state().setScanning(false);
        QTRY_VERIFY2_WITH_TIMEOUT(section && section->isHidden() && scan->isEnabled(), "the sidebar still shows a scan", screenWait);

        // Files a scan could not read stay listed after it, until dismissed.
        state().setUnreadableFootage({"/footage/new/A.mov", "/footage/new/sub/B.mov"});
        const QPointer<ElidedLabel> unreadable = list()->findChild<ElidedLabel *>("unreadableFootage");
        QTRY_VERIFY2_WITH_TIMEOUT(section && !section->isHidden() && unreadable->isVisible(), "the unreadable files are not shown", screenWait);
        QCOMPARE(unreadable->text(), "Could not read 2 files: A.mov, B.mov");
        QVERIFY(!list()->findChild<ElidedLabel *>("scanProgress")->isVisible());
        QTest::mouseClick(list()->findChild<QPushButton *>("unreadableFootageButton"), Qt::LeftButton);
        QTRY_VERIFY2_WITH_TIMEOUT(section && section->isHidden() && state().unreadableFootage().isEmpty(), "dismissing left the line", screenWait);
    }

    void rowsAndSelection()
    {
        QList<ShootSession> sessions = threeSessions;
        sessions[1].matchedClips.resize(2);
        sessions[1].markers.resize(12);
        QVERIFY2(signInWith(sessions), "the signed-in view did not come up");
        SessionListModel *model = list()->model();
        QCOMPARE(model->rowCount(), 5); // two day headers
        QVERIFY(model->index(0).data().toString() == "Today" && model->index(3).data(SessionListModel::KindRole).toInt() == int(SessionListModel::RowKind::Header));
        const QModelIndex bravo = model->indexOfSession("b");
        QCOMPARE((QList<int>{bravo.data(SessionListModel::ClipCountRole).toInt(), bravo.data(SessionListModel::MarkerCountRole).toInt()}), (QList<int>{2, 12}));

        QTRY_VERIFY2_WITH_TIMEOUT(qobject_cast<EmptyStateView *>(signedIn()->currentDetail()), "no empty state without a selection", screenWait);
        QVERIFY2(showInlineSettings(), "the settings did not replace the detail pane");
        // One row selected shows it and hides the settings; several keep it; none clears it.
        list()->setSelectedIds({"b"});
        QVERIFY(state().selectedSession()->id == "b" && !state().showSettings());
        QTRY_VERIFY2_WITH_TIMEOUT(qobject_cast<SessionDetailView *>(signedIn()->currentDetail()), "the selected session is not shown", screenWait);
        list()->setSelectedIds({"a", "c"});
        QCOMPARE(state().selectedSession()->id, "b");
        state().setShowSettings(true);
        list()->setSelectedIds({});
        QVERIFY(!state().selectedSession() && state().showSettings());
        // The settings button toggles the settings and clears the shown session, not the rows.
        list()->setSelectedIds({"a"});
        QTest::mouseClick(list()->findChild<QPushButton *>("settingsButton"), Qt::LeftButton);
        QVERIFY(state().showSettings() && !state().selectedSession());
        QCOMPARE(list()->selectedIds(), QSet<QString>{"a"});
        QTest::mouseClick(list()->findChild<QPushButton *>("settingsButton"), Qt::LeftButton);
        QVERIFY(!state().showSettings());

        state().setSessions({});
        list()->refresh();
        QCOMPARE(model->rowCount(), 2);
        QCOMPARE(model->index(1).data(SessionListModel::HintRole).toString(), "Sync your shoots from 127.0.0.1");
    }

    void rename_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("title");
        QTest::newRow("return commits trimmed") << "  Rooftop  " << int(Qt::Key_Return) << "Rooftop";
        QTest::newRow("escape drops") << "Rooftop" << int(Qt::Key_Escape) << "Bravo";
        QTest::newRow("blank keeps old") << "   " << int(Qt::Key_Return) << "Bravo";
    }
    void rename()
    {
        QFETCH(QString, typed);
        QFETCH(int, key);
        QFETCH(QString, title);
        QVERIFY2(signInWith(threeSessions), "the signed-in view did not come up");
        list()->setSelectedIds({"b"});
        list()->startRename("b");
        QLineEdit *field = renameField();
        QVERIFY2(field, "no rename field opened");
        QCOMPARE(field->text(), "Bravo");
        field->setText(typed);
        state().setSessions(threeSessions); // a sync with the same sessions repaints without closing the rename
        list()->refresh();
        QCOMPARE(renameField(), field);
        QTest::keyClick(field, Qt::Key(key));
        QVERIFY(!list()->editingSessionId());
        QCOMPARE((QStringList{state().sessions().at(1).title, state().selectedSession()->title}), QStringList(2, title));
    }

    void deleting()
    {
        QVERIFY2(signInWith(threeSessions), "the signed-in view did not come up");
        QListView *view = list()->listView();
        view->setFocus();
        QTest::keyClick(view, Qt::Key_Delete); // nothing selected: nothing asked
        // The row's menu deletes that row only, whatever else is selected.
        list()->setSelectedIds({"a", "b"});
        list()->deleteFromRow("c");
        QCOMPARE(state().deletedSessionIds(), QSet<QString>{"c"});
        QVERIFY(list()->selectedIds().isEmpty());
        list()->setSelectedIds({"a", "b"});
        QTest::keyClick(view, Qt::Key_Delete);
        list()->deleteFromRow("gone"); // the row vanished under its menu
        QCOMPARE(asked(), (QStringList{"confirm: Delete session? | Are you sure you want to delete \"Charlie\"? This can't be undone. | Delete",
                                       "confirm: Delete 2 sessions? | Are you sure you want to delete 2 sessions? This can't be undone. | Delete",
                                       "confirm: Delete session? | Are you sure you want to delete 1 sessions? This can't be undone. | Delete"}));
        QVERIFY(state().sessions().isEmpty() && !state().selectedSession());
        QCOMPARE(state().deletedSessionIds(), (QSet<QString>{"a", "b", "c"}));
    }

    void signOutFromEachPlace_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("sessionsKept");
        QTest::addColumn<bool>("settingsShown");
        QTest::newRow("sidebar") << "signOutButton" << false << true;
        QTest::newRow("inline settings") << "inlineSignOut" << false << false;
        QTest::newRow("settings window") << "windowSignOut" << true << true;
    }
    void signOutFromEachPlace()
    {
        QFETCH(QString, button);
        QFETCH(bool, sessionsKept);
        QFETCH(bool, settingsShown);
        QVERIFY2(signInWith(threeSessions), "the signed-in view did not come up");
        QVERIFY2(showInlineSettings(), "the settings did not replace the detail pane");
        m_shell->window->openSettingsWindow();
        QTest::mouseClick(m_shell->window->findChild<QPushButton *>(button), Qt::LeftButton);
        QCOMPARE(m_backend.calls.last(), "delete credential");
        QCOMPARE(state().sessions().size(), sessionsKept ? 3 : 0);
        QCOMPARE(state().showSettings(), settingsShown);
        QTRY_VERIFY2_WITH_TIMEOUT(m_shell->window->loginView() && !signedIn(), "signing out did not bring the login screen back", screenWait);
    }

    void settingsChangesArePersisted()
    {
        QVERIFY2(signInWith({}), "the signed-in view did not come up");
        const QPointer<QWidget> settings = showInlineSettings();
        QVERIFY2(settings, "the settings did not replace the detail pane");
        const auto stored = [this](const QString &key) { return m_shell->preferences.string(key).value_or("<none>"); };
        QTest::mouseClick(settings->findChild<QPushButton *>("theme-dark"), Qt::LeftButton);
        QVERIFY(Theme::isDark());
        Q_EMIT settings->findChild<QComboBox *>("nlePicker")->activated(1);
        Q_EMIT settings->findChild<QComboBox *>("fpsPicker")->activated(4);
        QCOMPARE((QStringList{stored(PreferenceKeys::appearance), stored(PreferenceKeys::preferredNLE)}), (QStringList{"dark", "premiere"}));
        QCOMPARE(m_shell->preferences.integer(PreferenceKeys::defaultFps), std::optional<qint64>(60));

        m_shell->desktop.folderAnswers = {"/footage/x", "/footage/y"};
        for (int i = 0; i < 2; ++i)
            QTest::mouseClick(settings->findChild<QPushButton *>("addFolder"), Qt::LeftButton);
        QTRY_VERIFY2_WITH_TIMEOUT(settings && settings->findChildren<QWidget *>("folderRow").size() == 2, "the folders are not listed", screenWait);
        QTest::mouseClick(settings->findChildren<QPushButton *>("removeFolder").at(0), Qt::LeftButton);
        QCOMPARE(m_shell->preferences.stringList(PreferenceKeys::footageFolders), std::optional(QStringList{"/footage/y"}));

        // The settings window edits the same values.
        m_shell->window->openSettingsWindow();
        auto *windowTheme = m_shell->window->settingsWindow()->findChild<QComboBox *>("windowThemePicker");
        QCOMPARE(windowTheme->currentText(), "Dark");
        Q_EMIT windowTheme->activated(1);
        QCOMPARE(stored(PreferenceKeys::appearance), "light");
        QVERIFY(!Theme::isDark());
        QTRY_VERIFY2_WITH_TIMEOUT(settings && settings->findChild<QPushButton *>("theme-light")->isChecked(),
                                  "the inline settings did not follow the window's choice", screenWait);
    }
};

QTEST_MAIN(SessionListTest)
#include "SessionListTest.moc"
