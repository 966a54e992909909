#include "ShellFixture.h"

#include "media/FootageScanner.h"
#include "state/PreferenceKeys.h"
#include "ui/EmptyStateView.h"
#include "ui/InlineSettingsView.h"
#include "ui/LoginView.h"
#include "ui/SessionDetailView.h"
#include "ui/SessionListModel.h"
#include "ui/SessionListView.h"
#include "ui/SettingsView.h"
#include "ui/SignedInView.h"
#include "ui/widgets/ElidedLabel.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <QToolBar>

namespace {

// Counts what the screens ask of the service and the scanner; the service itself is tested
// against the stand-in elsewhere.
class CountingBackend : public ShellBackend
{
public:
    int syncs = 0;
    int credentialDeletes = 0;
    AppState *state = nullptr;
    FootageScanner *scanner = nullptr; // scans for real when set
    QList<std::pair<QString, bool>> scans;
    QStringList requests;
    QString codeError;
    LoginOutcome loginOutcome;

    QCoro::Task<QString> requestLoginCode(QString email) override
    {
        requests.append(email);
        co_return codeError;
    }
    QCoro::Task<LoginOutcome> login(QString email, QString code) override
    {
        requests.append(email + QLatin1Char('/') + code);
        co_return loginOutcome;
    }
    void deleteCredential() override { ++credentialDeletes; }
    void syncSessions() override { ++syncs; }
    void scanFootage(const QString &folder) override
    {
        scans.append({folder, true});
        if (scanner)
            scanner->scanFootage(folder);
        else
            state->addFootageFolder(folder);
    }
    void rescanSavedFolders() override
    {
        for (const QString &folder : state->footageFolders())
            scans.append({folder, false});
    }
    QCoro::Task<QList<TranscriptSegment>> fetchTranscript(QString) override { co_return QList<TranscriptSegment>{}; }
    QCoro::Task<> runAnalysis(ShootSession, QList<QUrl>, AnalysisState &) override { co_return; }
};

const QDateTime now = QDateTime::currentDateTime();

ShootSession sessionWithMarkerAt(const QString &id, const QString &timecode)
{
    ShootSession session = makeSession(id, id, now);
    ShootMarker marker;
    marker.id = id + QStringLiteral("-1");
    marker.markerType = QStringLiteral("log");
    marker.timecode = timecode;
    session.markers = {marker};
    return session;
}

bool makeClip(const QString &path, const QString &timecode)
{
    QProcess ffmpeg;
    ffmpeg.start(QStringLiteral("ffmpeg"), {"-hide_banner", "-loglevel", "error", "-y", "-f", "lavfi", "-i", "testsrc2=size=160x90:rate=25",
                                            "-t", "1", "-c:v", "libx264", "-preset", "ultrafast", "-timecode", timecode, path});
    return ffmpeg.waitForFinished(60000) && ffmpeg.exitCode() == 0;
}

QList<ShootSession> threeSessions()
{
    return {makeSession("a", "Alpha", now), makeSession("b", "Bravo", now.addSecs(-60)), makeSession("c", "Charlie", now.addDays(-3))};
}

} // namespace

class SessionListTest : public QObject
{
    Q_OBJECT

    CountingBackend m_backend;
    std::unique_ptr<ShellFixture> m_shell;

    AppState &state() { return m_shell->state; }
    SignedInView *signedIn() { return m_shell->window->signedInView(); }
    SessionListView *list() { return signedIn()->sessionList(); }

    void signInWith(const QList<ShootSession> &sessions)
    {
        state().signIn(QStringLiteral("anna@example.com"), QStringLiteral("Anna Maria Smith"));
        state().setSessions(sessions);
        QTRY_VERIFY(signedIn() && signedIn()->isVisible());
        list()->refresh();
    }

    QWidget *renameField() { return list()->listView()->viewport()->findChild<QLineEdit *>(QStringLiteral("renameField")); }

private Q_SLOTS:
    void init()
    {
        m_backend = CountingBackend();
        m_shell = std::make_unique<ShellFixture>();
        m_backend.state = &m_shell->state;
        m_shell->open(m_backend);
    }
    void cleanup() { m_shell.reset(); }

    void signedInViewStartsOneSyncAndRescansEverySavedFolder()
    {
        QVERIFY(m_shell->window->loginView());
        state().setFootageFolders({"/footage/a", "/footage/b"});
        signInWith({});
        // Coming on screen syncs; the window becoming active at the same time may add one.
        QVERIFY(m_backend.syncs >= 1);
        const int syncsOnScreen = m_backend.syncs;
        QCOMPARE(m_backend.scans, (QList<std::pair<QString, bool>>{{"/footage/a", false}, {"/footage/b", false}}));
        QVERIFY(!m_shell->window->loginView());

        const QList<QAction *> actions = signedIn()->toolBar()->actions();
        QCOMPARE(actions.size(), 3);
        QCOMPARE(actions[0]->text(), QStringLiteral("Scan Footage"));
        QCOMPARE(actions[1]->text(), QStringLiteral("Sync"));
        QCOMPARE(actions[2]->text(), QStringLiteral("Analyse Footage"));
        QWidget *section = list()->findChild<QWidget *>("scanningSection");
        QVERIFY(section->isHidden());
        state().setScanning(true);
        state().setScanProgress(QStringLiteral("Reading 3/12: A001C003.mov"));
        QTRY_VERIFY(!actions[0]->isEnabled());
        QTRY_VERIFY(!section->isHidden());
        QCOMPARE(list()->findChild<ElidedLabel *>("scanProgress")->text(), QStringLiteral("Reading 3/12: A001C003.mov"));
        QCOMPARE(list()->findChild<QLabel *>("accountName")->text(), QStringLiteral("Anna Maria Smith"));
        QVERIFY(actions[1]->isEnabled() && actions[2]->isEnabled());
        actions[1]->trigger();
        QCOMPARE(m_backend.syncs, syncsOnScreen + 1);
        state().setScanning(false);
        QTRY_VERIFY(actions[0]->isEnabled());
    }

    void loginStepsAndEnabling()
    {
        LoginView *login = m_shell->window->loginView();
        QVERIFY(login);
        auto *email = login->findChildren<QLineEdit *>().at(0);
        auto *code = login->findChildren<QLineEdit *>().at(1);
        const auto button = [login](const QString &text) { return withText(login, text); };
        QVERIFY(!button("Send login code")->isEnabled());
        QTest::keyClicks(email, QStringLiteral("anna@localhost"));
        QVERIFY(!button("Send login code")->isEnabled());
        email->setText(QStringLiteral("  anna@example.com "));
        QVERIFY(button("Send login code")->isEnabled());
        QTest::keyClick(email, Qt::Key_Return);
        QVERIFY(m_backend.requests.isEmpty());

        m_backend.codeError = QStringLiteral("Unknown address");
        QTest::mouseClick(button("Send login code"), Qt::LeftButton);
        QTRY_COMPARE(login->error(), QStringLiteral("Unknown address"));
        QVERIFY(!login->codeSent());
        QVERIFY(login->findChild<QLabel *>("error")->isVisible());
        QCOMPARE(m_backend.requests, QStringList{"  anna@example.com "});

        m_backend.codeError.clear();
        login->sendCode();
        QTRY_VERIFY(login->codeSent());
        QVERIFY(login->error().isEmpty());
        QVERIFY(code->isVisible() && !email->isVisible());
        for (const char *bad : {"12345", "1234567", "12a456"}) {
            code->setText(QLatin1String(bad));
            QVERIFY(!button("Log in")->isEnabled());
        }
        code->setText(QStringLiteral("123456"));
        QVERIFY(button("Log in")->isEnabled());
        login->useDifferentEmail();
        QVERIFY(!login->codeSent());
        QCOMPARE(email->text(), QStringLiteral("  anna@example.com "));
        QVERIFY(code->text().isEmpty());

        login->sendCode();
        QTRY_VERIFY(login->codeSent());
        code->setText(QStringLiteral("654321"));
        m_backend.loginOutcome = {ShellBackend::SignedInUser{QStringLiteral("Anna"), QStringLiteral("anna@example.com")}, QString()};
        login->verify();
        QTRY_VERIFY(state().isLoggedIn());
        QCOMPARE(state().userName(), QStringLiteral("Anna"));
        QCOMPARE(m_shell->preferences.string(PreferenceKeys::email), std::optional<QString>("anna@example.com"));
        QTRY_VERIFY(signedIn());
    }

    void loginFooterLinksOpenInTheBrowser()
    {
        LoginView *login = m_shell->window->loginView();
        for (QPushButton *link : login->findChildren<QPushButton *>()) {
            if (link->text() == QStringLiteral("Privacy Policy") || link->text() == QStringLiteral("Terms") || link->text() == QStringLiteral("127.0.0.1"))
                QTest::mouseClick(link, Qt::LeftButton);
        }
        QCOMPARE(m_shell->desktop.opened,
                 (QList<QUrl>{QUrl("http://127.0.0.1:8765/privacy"), QUrl("http://127.0.0.1:8765/terms"), QUrl("http://127.0.0.1:8765/")}));
    }

    void scriptedScanUpdatesTheClipBadges()
    {
        FootageScanner scanner(state());
        m_backend.scanner = &scanner;
        QTemporaryDir footage;
        QVERIFY(makeClip(footage.filePath(QStringLiteral("A001C001.mov")), QStringLiteral("10:00:10:00")));
        QVERIFY(makeClip(footage.filePath(QStringLiteral("Z001C001.mov")), QStringLiteral("03:00:00:00")));
        signInWith({sessionWithMarkerAt("harbour", "10:00:30:00"), sessionWithMarkerAt("rooftop", "16:00:00:00")});
        state().setSelectedSession(state().sessions().at(0));
        SessionListModel *model = list()->model();
        QCOMPARE(model->indexOfSession("harbour").data(SessionListModel::ClipCountRole).toInt(), 0);

        // A cancelled panel scans nothing.
        m_shell->desktop.folderAnswers = {std::nullopt, footage.path()};
        signedIn()->scanFootage();
        QVERIFY(!state().isScanning());
        QVERIFY(m_backend.scans.isEmpty() && state().footageFolders().isEmpty());
        signedIn()->scanFootage();
        QCOMPARE(m_backend.scans, (QList<std::pair<QString, bool>>{{footage.path(), true}}));
        QCOMPARE(state().footageFolders(), QStringList{footage.path()});
        QVERIFY(state().isScanning());
        QTRY_VERIFY(!list()->findChild<QWidget *>("scanningSection")->isHidden());
        QVERIFY(!signedIn()->toolBar()->actions().at(0)->isEnabled());
        QTRY_VERIFY_WITH_TIMEOUT(!state().isScanning(), 60000);
        QTRY_COMPARE(model->indexOfSession("harbour").data(SessionListModel::ClipCountRole).toInt(), 1);
        QCOMPARE(model->indexOfSession("rooftop").data(SessionListModel::ClipCountRole).toInt(), 0);
        QCOMPARE(state().selectedSession()->matchedClips.size(), 1);
        QCOMPARE(state().scanProgress(), QStringLiteral("Scan complete: 2 clips, 2 with timecode"));
        QTRY_VERIFY(list()->findChild<QWidget *>("scanningSection")->isHidden());
        QTRY_VERIFY(signedIn()->toolBar()->actions().at(0)->isEnabled());
        m_backend.scanner = nullptr;
    }

    void detailPaneFollowsTheState()
    {
        signInWith(threeSessions());
        QTRY_VERIFY(qobject_cast<EmptyStateView *>(signedIn()->currentDetail()));
        QVERIFY(signedIn()->currentDetail()->findChildren<QLabel *>().size() >= 3);
        state().setSelectedSession(threeSessions().at(0));
        QTRY_VERIFY(qobject_cast<SessionDetailView *>(signedIn()->currentDetail()));
        state().setShowSettings(true);
        QTRY_VERIFY(qobject_cast<InlineSettingsView *>(signedIn()->currentDetail()));
    }

    void selectionReactions()
    {
        signInWith(threeSessions());
        state().setShowSettings(true);
        list()->setSelectedIds({"b"});
        QCOMPARE(state().selectedSession()->id, QStringLiteral("b"));
        QVERIFY(!state().showSettings());

        list()->setSelectedIds({"a", "c"});
        QCOMPARE(state().selectedSession()->id, QStringLiteral("b"));

        state().setShowSettings(true);
        list()->setSelectedIds({});
        QVERIFY(!state().selectedSession());
        QVERIFY(state().showSettings());
    }

    void groupsAndBadges()
    {
        QList<ShootSession> sessions = threeSessions();
        MediaClip clip;
        clip.id = QStringLiteral("clip-1");
        sessions[1].matchedClips = {clip, clip};
        sessions[1].markers.resize(12);
        signInWith(sessions);
        SessionListModel *model = list()->model();
        QCOMPARE(model->rowCount(), 5);
        QCOMPARE(model->index(0).data().toString(), QStringLiteral("Today"));
        QCOMPARE(model->index(3).data(SessionListModel::KindRole).toInt(), int(SessionListModel::RowKind::Header));
        const QModelIndex bravo = model->indexOfSession("b");
        QCOMPARE(bravo.data(SessionListModel::ClipCountRole).toInt(), 2);
        QCOMPARE(bravo.data(SessionListModel::MarkerCountRole).toInt(), 12);
        QCOMPARE(model->indexOfSession("a").data(SessionListModel::ClipCountRole).toInt(), 0);

        state().setSessions({});
        list()->refresh();
        QCOMPARE(model->rowCount(), 2);
        QCOMPARE(model->index(0).data().toString(), QStringLiteral("Sessions"));
        QCOMPARE(model->index(1).data(SessionListModel::HintRole).toString(), QStringLiteral("Sync your shoots from 127.0.0.1"));
    }

    void renameCommitCancelBlank_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("title");
        QTest::newRow("return commits trimmed") << "  Rooftop  " << int(Qt::Key_Return) << "Rooftop";
        QTest::newRow("escape drops") << "Rooftop" << int(Qt::Key_Escape) << "Bravo";
        QTest::newRow("blank keeps old") << "   " << int(Qt::Key_Return) << "Bravo";
    }
    void renameCommitCancelBlank()
    {
        QFETCH(QString, typed);
        QFETCH(int, key);
        QFETCH(QString, title);
        signInWith(threeSessions());
        list()->setSelectedIds({"b"});
        list()->startRename("b");
        QCOMPARE(list()->editingSessionId(), std::optional<QString>("b"));
        auto *field = qobject_cast<QLineEdit *>(renameField());
        QVERIFY(field);
        QCOMPARE(field->text(), QStringLiteral("Bravo"));
        QCOMPARE(field->placeholderText(), QStringLiteral("Session name"));
        field->setText(typed);
        QTest::keyClick(field, Qt::Key(key));
        QVERIFY(!list()->editingSessionId());
        QCOMPARE(state().sessions().at(1).title, title);
        QCOMPARE(state().selectedSession()->title, title);
    }

    void renameSurvivesARepaintButNotAVanishedSession()
    {
        signInWith(threeSessions());
        list()->startRename("a");
        auto *field = qobject_cast<QLineEdit *>(renameField());
        field->setText(QStringLiteral("Typed"));
        state().setSessions(threeSessions()); // a sync with the same sessions
        list()->refresh();
        QCOMPARE(qobject_cast<QLineEdit *>(renameField())->text(), QStringLiteral("Typed"));
        list()->commitRename("gone", QStringLiteral("New"));
        QCOMPARE(state().sessions().at(0).title, QStringLiteral("Alpha"));
    }

    void deleteFromRowDeletesOnlyThatRow()
    {
        signInWith(threeSessions());
        list()->setSelectedIds({"a", "b"});
        list()->deleteFromRow("c");
        QCOMPARE(m_shell->desktop.asked.size(), 1);
        QCOMPARE(m_shell->desktop.asked[0].title, QStringLiteral("Delete session?"));
        QCOMPARE(m_shell->desktop.asked[0].message, QStringLiteral("Are you sure you want to delete \"Charlie\"? This can't be undone."));
        QCOMPARE(m_shell->desktop.asked[0].confirmLabel, QStringLiteral("Delete"));
        QCOMPARE(state().sessions().size(), 2);
        QCOMPARE(state().deletedSessions().size(), 1);
        QCOMPARE(state().deletedSessions()[0].id, QStringLiteral("c"));
        QVERIFY(list()->selectedIds().isEmpty());
    }

    void deleteKeyAsksAboutTheSelection()
    {
        signInWith(threeSessions());
        QListView *view = list()->listView();
        view->setFocus();
        QTest::keyClick(view, Qt::Key_Delete);
        QVERIFY(m_shell->desktop.asked.isEmpty());

        list()->setSelectedIds({"a", "b", "c"});
        state().setSelectedSession(threeSessions().at(0));
        m_shell->desktop.confirmAnswer = false;
        QTest::keyClick(view, Qt::Key_Delete);
        QCOMPARE(m_shell->desktop.asked.size(), 1);
        QCOMPARE(m_shell->desktop.asked[0].title, QStringLiteral("Delete 3 sessions?"));
        QCOMPARE(m_shell->desktop.asked[0].message, QStringLiteral("Are you sure you want to delete 3 sessions? This can't be undone."));
        QCOMPARE(state().sessions().size(), 3);

        m_shell->desktop.confirmAnswer = true;
        QTest::keyClick(view, Qt::Key_Delete);
        QVERIFY(state().sessions().isEmpty());
        QVERIFY(!state().selectedSession());
        QCOMPARE(state().deletedSessionIds(), (QSet<QString>{"a", "b", "c"}));
    }

    void signOutVariants_data()
    {
        QTest::addColumn<int>("surface"); // 0 sidebar, 1 inline settings, 2 settings window
        QTest::addColumn<bool>("sessionsKept");
        QTest::newRow("sidebar") << 0 << false;
        QTest::newRow("inline settings") << 1 << false;
        QTest::newRow("settings window") << 2 << true;
    }
    void signOutVariants()
    {
        QFETCH(int, surface);
        QFETCH(bool, sessionsKept);
        signInWith(threeSessions());
        state().setSelectedSession(threeSessions().at(0));
        state().setShowSettings(true);
        QTRY_VERIFY(qobject_cast<InlineSettingsView *>(signedIn()->currentDetail()));
        const char *button = surface == 0 ? "signOutButton" : surface == 1 ? "inlineSignOut" : "windowSignOut";
        QWidget *root = signedIn();
        if (surface == 2) {
            m_shell->window->openSettingsWindow();
            root = m_shell->window->settingsWindow();
        }
        auto *signOut = root->findChild<QPushButton *>(QLatin1String(button));
        QVERIFY(signOut);
        QTest::mouseClick(signOut, Qt::LeftButton);

        QVERIFY(!state().isLoggedIn());
        QVERIFY(state().userEmail().isEmpty() && state().userName().isEmpty());
        QCOMPARE(m_backend.credentialDeletes, 1);
        QVERIFY(!m_shell->preferences.string(PreferenceKeys::email));
        QVERIFY(!m_shell->preferences.string(PreferenceKeys::name));
        QCOMPARE(state().sessions().size(), sessionsKept ? 3 : 0);
        QCOMPARE(state().selectedSession().has_value(), sessionsKept);
        QCOMPARE(state().showSettings(), surface != 1);
        QTRY_VERIFY(m_shell->window->loginView());
        QVERIFY(!signedIn());
    }

    void settingsChangesArePersisted()
    {
        signInWith({});
        state().setShowSettings(true);
        QTRY_VERIFY(qobject_cast<InlineSettingsView *>(signedIn()->currentDetail()));
        QWidget *settings = signedIn()->currentDetail();

        QTest::mouseClick(settings->findChild<QPushButton *>("theme-dark"), Qt::LeftButton);
        QCOMPARE(m_shell->preferences.string(PreferenceKeys::appearance), std::optional<QString>("dark"));
        QVERIFY(Theme::isDark());
        auto *nle = settings->findChild<QComboBox *>("nlePicker");
        QCOMPARE(nle->currentText(), QStringLiteral("DaVinci Resolve"));
        nle->setCurrentIndex(1);
        Q_EMIT nle->activated(1);
        QCOMPARE(m_shell->preferences.string(PreferenceKeys::preferredNLE), std::optional<QString>("premiere"));
        auto *fps = settings->findChild<QComboBox *>("fpsPicker");
        Q_EMIT fps->activated(4);
        QCOMPARE(m_shell->preferences.integer(PreferenceKeys::defaultFps), std::optional<qint64>(60));

        m_shell->desktop.folderAnswers = {std::nullopt, QStringLiteral("/footage/x"), QStringLiteral("/footage/y")};
        auto *add = settings->findChild<QPushButton *>("addFolder");
        QTest::mouseClick(add, Qt::LeftButton);
        QVERIFY(state().footageFolders().isEmpty());
        QTest::mouseClick(add, Qt::LeftButton);
        QTest::mouseClick(add, Qt::LeftButton);
        QCOMPARE(m_shell->preferences.stringList(PreferenceKeys::footageFolders), std::optional<QStringList>(QStringList{"/footage/x", "/footage/y"}));
        QTRY_COMPARE(settings->findChildren<QWidget *>("folderRow").size(), 2);
        QTest::mouseClick(settings->findChildren<QPushButton *>("removeFolder").at(0), Qt::LeftButton);
        QCOMPARE(m_shell->preferences.stringList(PreferenceKeys::footageFolders), std::optional<QStringList>(QStringList{"/footage/y"}));

        // The settings window edits the same values.
        m_shell->window->openSettingsWindow();
        auto *windowTheme = m_shell->window->settingsWindow()->findChild<QComboBox *>("windowThemePicker");
        QCOMPARE(windowTheme->currentText(), QStringLiteral("Dark"));
        Q_EMIT windowTheme->activated(1);
        QCOMPARE(m_shell->preferences.string(PreferenceKeys::appearance), std::optional<QString>("light"));
        QTRY_VERIFY(settings->findChild<QPushButton *>("theme-light")->isChecked());
        QVERIFY(!Theme::isDark());
    }

    void settingsButtonTogglesAndClearsTheDetail()
    {
        signInWith(threeSessions());
        list()->setSelectedIds({"a"});
        QTest::mouseClick(list()->findChild<QPushButton *>("settingsButton"), Qt::LeftButton);
        QVERIFY(state().showSettings());
        QVERIFY(!state().selectedSession());
        QCOMPARE(list()->selectedIds(), QSet<QString>{"a"});
        QTest::mouseClick(list()->findChild<QPushButton *>("settingsButton"), Qt::LeftButton);
        QVERIFY(!state().showSettings());
    }
};

QTEST_MAIN(SessionListTest)
#include "SessionListTest.moc"
