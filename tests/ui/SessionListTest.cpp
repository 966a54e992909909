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
#include <QDragEnterEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMimeData>
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
        QVERIFY(!login->codeSent() && login->findChild<QLabel *>("error")->text() == "Unknown address");
        QCOMPARE(m_backend.calls, QStringList{"code for   anna@example.com "});
        // Sent: typed digits land in the code field, not on whatever follows the address step.
        m_backend.codeError.clear();
        QTest::mouseClick(withText(login.data(), "Send login code"), Qt::LeftButton);
        QTRY_VERIFY2_WITH_TIMEOUT(login && login->codeSent(), "the code step did not come", screenWait);
        QCOMPARE(login->window()->focusWidget(), login->findChildren<QLineEdit *>().at(1));
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

    // Rows: Today, Alpha, Bravo, a dated header, Charlie.
    void keyboard_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("to");
        QTest::newRow("down over a header") << "b" << int(Qt::Key_Down) << "c";
        QTest::newRow("up over a header") << "c" << int(Qt::Key_Up) << "b";
        QTest::newRow("up at the top stays") << "a" << int(Qt::Key_Up) << "a";
        QTest::newRow("home") << "c" << int(Qt::Key_Home) << "a";
        QTest::newRow("page up") << "c" << int(Qt::Key_PageUp) << "a";
        QTest::newRow("F2 renames") << "b" << int(Qt::Key_F2) << "rename b";
        QTest::newRow("Return renames") << "c" << int(Qt::Key_Return) << "rename c";
    }
    void keyboard()
    {
        QFETCH(QString, from);
        QFETCH(int, key);
        QFETCH(QString, to);
        QVERIFY2(signInWith(threeSessions), "the signed-in view did not come up");
        list()->setSelectedIds({from});
        QTest::keyClick(list()->listView(), Qt::Key(key));
        const QString shown = state().selectedSession() ? state().selectedSession()->id : "nothing";
        QCOMPARE(renameField() ? "rename " + list()->editingSessionId().value_or("?") : shown, to);
        QCOMPARE(list()->selectedIds(), QSet<QString>{shown});
    }

    void filter()
    {
        QVERIFY2(signInWith(threeSessions), "the signed-in view did not come up");
        m_shell->window->activateWindow();
        QVERIFY2(QTest::qWaitForWindowActive(m_shell->window.get(), screenWait), "the window did not become active");
        const QPointer<QLineEdit> field = list()->filterField();
        QTest::keyClick(list()->listView(), Qt::Key_F, Qt::ControlModifier);
        QVERIFY(field->hasFocus());
        const auto rows = [this] {
            QStringList shown;
            for (int row = 0; row < list()->model()->rowCount(); ++row)
                shown.append(list()->model()->index(row).data().toString());
            return shown.join(", ");
        };
        const QString olderDay = list()->model()->index(3).data().toString();
        const QList<std::pair<QString, QString>> cases{{"  CHAR ", olderDay + ", Charlie"}, {"today", "Today, Alpha, Bravo"},
                                                       {olderDay.left(6), olderDay + ", Charlie"}, {"zzz", "Sessions, No matching sessions"}};
        for (const auto &[typed, expected] : cases) {
            field->setText(typed);
            QTRY_COMPARE_WITH_TIMEOUT(rows(), expected, screenWait);
        }
        QTest::keyClick(field, Qt::Key_Escape);
        QTRY_COMPARE_WITH_TIMEOUT(rows(), "Today, Alpha, Bravo, " + olderDay + ", Charlie", screenWait);
    }

    void syncLine()
    {
        QVERIFY2(signInWith({}), "the signed-in view did not come up");
        const QPointer<QLabel> line = list()->findChild<QLabel *>("syncStatus");
        state().setSyncsRunning(1);
        QTRY_VERIFY2_WITH_TIMEOUT(line && line->text() == "Syncing…" && list()->findChild<QWidget *>("syncSpinner")->isVisible(),
                                  "a running sync is not shown", screenWait);
        state().setLastSynced(shellNow.addSecs(-180));
        state().setSyncsRunning(0);
        QTRY_VERIFY2_WITH_TIMEOUT(line && line->text().startsWith("Synced ") && !list()->findChild<QWidget *>("syncSpinner")->isVisible(),
                                  "the last sync's time is not shown", screenWait);
        QVERIFY2(line->text().contains(":57") && !line->text().contains(":57:00"), qPrintable(line->text())); // 11:57, no seconds
    }

    void folderDrop_data()
    {
        QTest::addColumn<QStringList>("dropped");
        QTest::addColumn<bool>("scanning");
        QTest::addColumn<bool>("scans");
        QTest::newRow("a folder") << QStringList{"footage"} << false << true;
        QTest::newRow("a file") << QStringList{"footage/clip.mov"} << false << false;
        QTest::newRow("two folders") << QStringList{"footage", "more"} << false << false;
        QTest::newRow("while a scan runs") << QStringList{"footage"} << true << false;
    }
    void folderDrop()
    {
        QFETCH(QStringList, dropped);
        QFETCH(bool, scanning);
        QFETCH(bool, scans);
        QVERIFY2(signInWith({}), "the signed-in view did not come up");
        const QDir dir(m_shell->dir.path());
        QVERIFY(dir.mkpath("footage") && dir.mkpath("more"));
        QFile clip(dir.filePath("footage/clip.mov"));
        QVERIFY(clip.open(QIODevice::WriteOnly));
        state().setScanning(scanning);
        QMimeData data;
        QList<QUrl> urls;
        for (const QString &name : dropped)
            urls.append(QUrl::fromLocalFile(dir.filePath(name)));
        data.setUrls(urls);
        m_backend.calls.clear();
        QDragEnterEvent enter(QPoint(300, 200), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(signedIn(), &enter);
        QCOMPARE(enter.isAccepted(), scans);
        QCOMPARE(signedIn()->findChild<QWidget *>("dropHighlight")->isVisible(), scans);
        QDropEvent drop(QPointF(300, 200), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(signedIn(), &drop);
        QCOMPARE(m_backend.calls, scans ? QStringList{"scan " + dir.filePath("footage")} : QStringList{});
        QVERIFY(signedIn()->findChild<QWidget *>("dropHighlight")->isHidden());
    }

    // Indigo as text (counts, links, the open settings button) reads on the dark palette.
    void indigoTextContrastOnDark()
    {
        Theme::applyAppearance("dark");
        const auto luminance = [](const QColor &colour) {
            const auto linear = [](float c) { return c <= 0.03928f ? c / 12.92f : std::pow((c + 0.055f) / 1.055f, 2.4f); };
            return 0.2126f * linear(colour.redF()) + 0.7152f * linear(colour.greenF()) + 0.0722f * linear(colour.blueF());
        };
        for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base}) { // the sidebar, the detail pane
            const float text = luminance(Theme::indigoText()), ground = luminance(QApplication::palette().color(role));
            const float ratio = (std::max(text, ground) + 0.05f) / (std::min(text, ground) + 0.05f);
            QVERIFY2(ratio >= 4.5f, qPrintable(QString("%1:1 on palette role %2").arg(ratio).arg(int(role))));
        }
        QCOMPARE(QApplication::palette().color(QPalette::Link), Theme::indigoText());
        Theme::applyAppearance("light");
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
