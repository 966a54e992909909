// The screens on the real service client, credential store, sync and analysis: a stand-in of
// the service on loopback, the session keyring under the test's own item, ffmpeg on a clip made
// here.
#include "ShellFixture.h"

#include "media/FootageScanner.h"
#include "media/MediaFixtures.h"
#include "service/APIService.h"
#include "ServiceStandin.h"
#include "state/SessionLibrary.h"
#include "support/AwaitTask.h"
#include "ui/detail/MarkerRow.h"
#include "ui/detail/SessionDetailView.h"
#include "ui/login/LoginView.h"
#include "ui/sessions/SessionListModel.h"
#include "ui/sessions/SessionListView.h"
#include "ui/shell/ServiceShellBackend.h"
#include "ui/shell/SignedInView.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QToolBar>

using namespace Qt::StringLiterals;

namespace {

const QString loginCode = u"314159"_s;

// The analysis button's state each time it turns disabled or enabled again.
class EnabledWatcher : public QObject
{
public:
    QStringList changes;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::EnabledChange)
            changes.append(static_cast<QWidget *>(watched)->isEnabled() ? u"enabled"_s : u"disabled"_s);
        return false;
    }
};

} // namespace

class ServiceScreensTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<ServiceStandin> m_standin;
    std::unique_ptr<APIService> m_api;
    std::unique_ptr<FootageScanner> m_scanner;
    std::unique_ptr<ServiceShellBackend> m_backend;
    std::unique_ptr<ShellFixture> m_shell;
    QTemporaryDir m_scratch; // the analysis's working files

    AppState &state() { return m_shell->state; }
    SignedInView *signedIn() { return m_shell->window->signedInView(); }

    // Enters the address (unless a code was already sent) and `code`, and waits for the answer:
    // an error on the login screen, or the screen gone because the user signed in.
    void logIn(const QString &code)
    {
        // Signing in deletes the login screen.
        const QPointer<LoginView> login = m_shell->window->loginView();
        QVERIFY2(login, "the login screen is not shown");
        const QList<QLineEdit *> fields = login->findChildren<QLineEdit *>();
        if (!login->codeSent()) {
            fields.at(0)->setText(u"editor@example.com"_s);
            QTest::mouseClick(withText(login.data(), u"Send login code"_s), Qt::LeftButton);
            QTRY_VERIFY2_WITH_TIMEOUT(login && login->codeSent(), "the service did not confirm sending a code", screenWait);
        }
        fields.at(1)->setText(code);
        QPushButton *logInButton = withText(login.data(), u"Log in"_s);
        QVERIFY2(logInButton && logInButton->isEnabled(), "the Log in button does not take the code");
        QTest::mouseClick(logInButton, Qt::LeftButton);
        QTRY_VERIFY2_WITH_TIMEOUT(!login || !login->loading(), "the login screen got no answer to the code", screenWait);
    }

    void logInAndSync()
    {
        logIn(loginCode);
        if (QTest::currentTestFailed())
            return;
        QTRY_VERIFY2_WITH_TIMEOUT(signedIn() && state().sessions().size() == 4, "signing in did not bring the session list and its 4 sessions", screenWait);
    }

private Q_SLOTS:
    void init()
    {
        QFile demo(u":/standin/demo-data.json"_s);
        QVERIFY(demo.open(QIODevice::ReadOnly));
        QString error;
        auto data = StandinData::fromJson(demo.readAll(), QDateTime::currentDateTime(), &error);
        QVERIFY2(data, qPrintable(error));
        m_standin = std::make_unique<ServiceStandin>(std::move(*data), loginCode);
        const quint16 port = m_standin->listenOnLoopback(0);
        QVERIFY2(port != 0, "the stand-in could not listen on loopback");
        m_api = std::make_unique<APIService>(u"http://127.0.0.1:%1"_s.arg(port), CredentialStore(u"io.vorlix.sync.ui-test"_s, u"ui-screens"_s));
        awaitTask(m_api->keychainDelete());
        m_shell = std::make_unique<ShellFixture>();
        ToolLocations tools = ToolLocations::platformDefault();
        tools.temporaryDirectory = m_scratch.path();
        m_scanner = std::make_unique<FootageScanner>(m_shell->state, tools, ScanOptions{2, QString()});
        m_backend = std::make_unique<ServiceShellBackend>(m_shell->state, *m_api, *m_scanner, tools);
        m_shell->open(*m_backend, QUrl(m_api->baseURL()));
    }

    void cleanup()
    {
        m_shell.reset();
        m_backend.reset();
        m_scanner.reset();
        if (m_api)
            awaitTask(m_api->keychainDelete());
        m_api.reset();
        m_standin.reset();
    }

    // The login screen's steps, a refused code, the sign-in, the first sync, a deletion a sync
    // does not undo, the restore that brings the session back, and signing out.
    void signInSyncRestoreAndSignOut()
    {
        const QPointer<LoginView> login = m_shell->window->loginView();
        QVERIFY2(login, "the login screen is not shown");
        QTest::mouseClick(withText(login.data(), u"Terms"_s), Qt::LeftButton);
        QCOMPARE(m_shell->desktop.asked, QStringList{u"browser: "_s + m_api->baseURL() + u"/terms"_s});
        login->findChildren<QLineEdit *>().at(0)->setText(u"editor@localhost"_s);
        QVERIFY2(!withText(login.data(), u"Send login code"_s)->isEnabled(), "an address without a dot after the @ can be sent");
        logIn(u"000000"_s);
        if (QTest::currentTestFailed())
            return;
        QVERIFY2(login, "a refused code replaced the login screen");
        QCOMPARE(login->findChild<QLabel *>(u"error"_s)->text(), u"Invalid or expired code"_s);
        QVERIFY(login->codeSent() && !state().isLoggedIn());
        QVERIFY2(!awaitTask(m_api->keychainRead()), "a refused code stored a credential");
        QLineEdit *code = login->findChildren<QLineEdit *>().at(1);
        QVERIFY2(code->isVisible() && !login->findChildren<QLineEdit *>().at(0)->isVisible(), "the code step is not shown");
        QCOMPARE(code->text(), u"000000"_s);
        code->setText(u"12345"_s);
        QVERIFY2(!withText(login.data(), u"Log in"_s)->isEnabled(), "a five-digit code can be sent");
        login->useDifferentEmail(); // back to the address, which stays; the code goes
        QVERIFY(!login->codeSent() && code->text().isEmpty());
        QCOMPARE(login->findChildren<QLineEdit *>().at(0)->text(), u"editor@example.com"_s);

        logInAndSync();
        if (QTest::currentTestFailed())
            return;
        QCOMPARE((QStringList{state().userEmail(), state().userName()}), (QStringList{u"editor@example.com"_s, u"Demo Editor"_s}));
        QVERIFY2(awaitTask(m_api->keychainRead()), "signing in stored no credential");
        QTRY_VERIFY2_WITH_TIMEOUT(signedIn()->sessionList()->model()->indexOfSession(u"harbour-day2"_s).isValid(), "the sidebar lacks the sessions", screenWait);

        signedIn()->sessionList()->deleteFromRow(u"rooftop-broll"_s);
        QCOMPARE(state().sessions().size(), 3);
        // A sync that changes nothing assigns nothing; the fetched title it puts back shows it merged.
        QVERIFY(SessionLibrary(state()).renameSession(u"harbour-day2"_s, u"Shoot session"_s));
        QSignalSpy merged(&state(), &AppState::sessionsChanged);
        signedIn()->syncSessions();
        QVERIFY2(merged.wait(screenWait), "the sync after the deletion did not merge");
        QCOMPARE(state().sessions().size(), 3);
        // Restoring asks for a sync.
        state().setShowSettings(true);
        QTRY_VERIFY2_WITH_TIMEOUT(signedIn()->currentDetail()->findChild<QPushButton *>(u"restore"_s), "nothing offered for restoring", screenWait);
        signedIn()->currentDetail()->findChild<QPushButton *>(u"restore"_s)->click(); // may lie below the visible part
        QTRY_VERIFY2_WITH_TIMEOUT(state().sessions().size() == 4, "the restored session did not come back with a sync", screenWait);

        signedIn()->sessionList()->signOut();
        QTRY_VERIFY2_WITH_TIMEOUT(!awaitTask(m_api->keychainRead()), "signing out left the credential in the keyring", screenWait);
        QTRY_VERIFY2_WITH_TIMEOUT(m_shell->window->loginView(), "signing out did not bring the login screen back", screenWait);
    }

    void toolbarAnalysisRunsInTheNewSessionsScreen()
    {
        QTemporaryDir media;
        const QString clip = media.filePath(u"interview.mov"_s);
        QVERIFY(MediaFixtures::make(clip, MediaFixtures::lavfi(u"color=red:size=64x36:rate=25"_s) + MediaFixtures::tone(1)
                                              + QStringList{u"-t"_s, u"2"_s, u"-f"_s, u"nut"_s}));
        logInAndSync();
        if (QTest::currentTestFailed())
            return;
        const QPointer<SessionDetailView> detail = signedIn()->sessionDetail();
        const QPointer<QPushButton> analyse = detail->findChild<QPushButton *>(u"analyseButton"_s);
        EnabledWatcher watcher;
        analyse->installEventFilter(&watcher);

        m_shell->desktop.fileAnswers = {{QUrl::fromLocalFile(clip)}};
        QAction *action = withText<QAction>(signedIn()->toolBar(), u"Analyse Footage"_s);
        QVERIFY2(action, "the toolbar has no Analyse Footage action");
        action->trigger();
        const ShootSession created = state().sessions().first(); // a new session, titled after the file and selected
        QCOMPARE((QStringList{QString::number(state().sessions().size()), created.title, state().selectedSession()->id}), (QStringList{u"5"_s, u"interview"_s, created.id}));

        QTRY_VERIFY2_WITH_TIMEOUT(detail && detail->session().id == created.id, "the new session is not shown", screenWait);
        QTRY_VERIFY2_WITH_TIMEOUT(analyse && watcher.changes == (QStringList{u"disabled"_s, u"enabled"_s}), "the button was not disabled, then enabled", toolWait);
        QCOMPARE(detail->findChildren<QLabel *>(u"analysisResult"_s).size(), 1);
        const QString result = detail->findChild<QLabel *>(u"analysisResult"_s)->text();
        QVERIFY2(QRegularExpression(u"^interview\\.mov: [1-9]\\d* audio \\+ \\d+ visual markers \\([1-9]\\d* words\\)$"_s).match(result).hasMatch(), qPrintable(result));
        // The final refresh brings in what the service derived.
        QTRY_VERIFY2_WITH_TIMEOUT(detail && !detail->findChildren<MarkerRow *>().isEmpty(), "the derived markers are not shown", screenWait);
        QCOMPARE(QDir(m_scratch.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden), QStringList());
    }
};

QTEST_MAIN(ServiceScreensTest)
#include "ServiceScreensTest.moc"
