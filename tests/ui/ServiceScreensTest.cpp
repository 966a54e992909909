// The screens on the real service client, credential store, sync and footage scanner: a
// stand-in of the service on loopback, the session keyring, ffprobe on clips made here.
#include "ShellFixture.h"

#include "ServiceStandin.h"
#include "media/FootageScanner.h"
#include "media/MediaFixtures.h"
#include "service/APIService.h"
#include "ui/InlineSettingsView.h"
#include "ui/LoginView.h"
#include "ui/ServiceShellBackend.h"
#include "ui/SessionListModel.h"
#include "ui/MarkerRow.h"
#include "ui/SessionDetailView.h"
#include "ui/SessionListView.h"
#include "ui/SignedInView.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

using namespace Qt::StringLiterals;

namespace {

const QString loginCode = QStringLiteral("314159");

// The analysis button's text each time it turns disabled or enabled again.
class EnabledWatcher : public QObject
{
public:
    QStringList changes;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::EnabledChange) {
            const auto *button = static_cast<QPushButton *>(watched);
            changes.append((button->isEnabled() ? u"enabled"_s : u"disabled"_s));
        }
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

    void logIn(const QString &code)
    {
        LoginView *login = m_shell->window->loginView();
        QVERIFY(login);
        QLineEdit *email = login->findChildren<QLineEdit *>().at(0);
        QLineEdit *codeField = login->findChildren<QLineEdit *>().at(1);
        QTest::keyClicks(email, QStringLiteral("editor@example.com"));
        QTest::mouseClick(withText(login, QStringLiteral("Send login code")), Qt::LeftButton);
        QTRY_VERIFY(login->codeSent());
        QTest::keyClicks(codeField, code);
        QTest::mouseClick(withText(login, QStringLiteral("Log in")), Qt::LeftButton);
        QTRY_VERIFY(!login->loading());
    }

    void logInAndSync()
    {
        logIn(loginCode);
        QTRY_VERIFY(signedIn());
        QTRY_COMPARE(state().sessions().size(), 4);
    }

private Q_SLOTS:
    void init()
    {
        QFile demo(QStringLiteral(":/standin/demo-data.json"));
        QVERIFY(demo.open(QIODevice::ReadOnly));
        QString error;
        auto data = StandinData::fromJson(demo.readAll(), QDateTime::currentDateTime(), &error);
        QVERIFY2(data, qPrintable(error));
        m_standin = std::make_unique<ServiceStandin>(std::move(*data), loginCode);
        const quint16 port = m_standin->listenOnLoopback(0);
        QVERIFY(port != 0);
        m_api = std::make_unique<APIService>(QStringLiteral("http://127.0.0.1:%1").arg(port),
                                             CredentialStore(QStringLiteral("io.vorlix.sync.ui-test"), QStringLiteral("session_cookie")));
        m_api->keychainDelete();
        m_shell = std::make_unique<ShellFixture>();
        m_scanner = std::make_unique<FootageScanner>(m_shell->state);
        ToolLocations tools = ToolLocations::platformDefault();
        tools.temporaryDirectory = m_scratch.path();
        m_backend = std::make_unique<ServiceShellBackend>(m_shell->state, *m_api, *m_scanner, tools);
        m_shell->open(*m_backend, QUrl(m_api->baseURL()));
    }
    void wrongCodeShowsTheServiceWordsThenTheRightCodeSignsInAndSyncs()
    {
        logIn(QStringLiteral("000000"));
        LoginView *login = m_shell->window->loginView();
        QCOMPARE(login->error(), QStringLiteral("Invalid or expired code"));
        QCOMPARE(login->findChild<QLabel *>("error")->text(), QStringLiteral("Invalid or expired code"));
        QVERIFY(login->codeSent());
        QVERIFY(!state().isLoggedIn());
        QVERIFY(!m_api->keychainRead());

        QLineEdit *codeField = login->findChildren<QLineEdit *>().at(1);
        QCOMPARE(codeField->text(), QStringLiteral("000000"));
        codeField->setText(loginCode);
        QTest::mouseClick(withText(login, QStringLiteral("Log in")), Qt::LeftButton);
        QTRY_VERIFY(state().isLoggedIn());
        QCOMPARE(state().userEmail(), QStringLiteral("editor@example.com"));
        QCOMPARE(state().userName(), QStringLiteral("Demo Editor"));
        QVERIFY(m_api->keychainRead());
        QTRY_VERIFY(signedIn());
        // The signed-in view's first sync fills the list.
        QTRY_COMPARE(state().sessions().size(), 4);
        QTRY_VERIFY(signedIn()->sessionList()->model()->indexOfSession(QStringLiteral("harbour-day2")).isValid());
    }

    void signOutDeletesTheCredential()
    {
        logInAndSync();
        QVERIFY(m_api->keychainRead());
        signedIn()->sessionList()->signOut();
        QVERIFY(!m_api->keychainRead());
        QVERIFY(state().sessions().isEmpty());
        QTRY_VERIFY(m_shell->window->loginView());
    }

    void restoreBringsADeletedSessionBackThroughTheSyncNotification()
    {
        logInAndSync();
        SessionListView *list = signedIn()->sessionList();
        list->deleteFromRow(QStringLiteral("rooftop-broll"));
        QCOMPARE(state().sessions().size(), 3);
        QSignalSpy merged(&state(), &AppState::sessionsChanged);
        signedIn()->syncSessions();
        QTRY_VERIFY(merged.count() > 0);
        QCOMPARE(state().sessions().size(), 3);

        state().setShowSettings(true);
        QTRY_VERIFY(qobject_cast<InlineSettingsView *>(signedIn()->currentDetail()));
        QWidget *settings = signedIn()->currentDetail();
        QTRY_VERIFY(settings->findChild<QPushButton *>(QStringLiteral("restore")));
        settings->findChild<QPushButton *>(QStringLiteral("restore"))->click(); // may lie below the visible part
        QVERIFY(state().deletedSessions().isEmpty());
        QTRY_COMPARE(state().sessions().size(), 4);
    }

    void toolbarAnalysisRunsInTheNewSessionsScreen()
    {
        QTemporaryDir media;
        const QString clip = media.filePath(u"interview.mov"_s);
        QVERIFY(MediaFixtures::make(clip, MediaFixtures::lavfi(u"color=red:size=64x36:rate=25"_s) + MediaFixtures::tone(1)
                                              + QStringList{u"-t"_s, u"2"_s, u"-f"_s, u"nut"_s}));
        logInAndSync();
        SessionDetailView *detail = signedIn()->sessionDetail();
        auto *analyse = detail->findChild<QPushButton *>(u"analyseButton"_s);
        EnabledWatcher watcher;
        analyse->installEventFilter(&watcher);

        m_shell->desktop.fileAnswers = {{QUrl::fromLocalFile(clip)}};
        const QList<QAction *> actions = signedIn()->toolBar()->actions();
        const auto action = std::find_if(actions.cbegin(), actions.cend(), [](QAction *a) { return a->text() == u"Analyse Footage"_s; });
        QVERIFY(action != actions.cend());
        (*action)->trigger();
        QCOMPARE(m_shell->desktop.openRequests.last().message, u"Select footage files or a folder to analyse with AI"_s);
        QVERIFY(m_shell->desktop.openRequests.last().allowsFolders);
        QCOMPARE(state().sessions().size(), 5);
        const ShootSession created = state().sessions().first();
        QCOMPARE(created.title, u"interview"_s);
        QCOMPARE(state().selectedSession()->id, created.id);

        QTRY_COMPARE(detail->session().id, created.id);
        QTRY_COMPARE_WITH_TIMEOUT(watcher.changes, (QStringList{u"disabled"_s, u"enabled"_s}), 60000);
        QCOMPARE(analyse->text(), u"Analyse Footage with AI"_s);
        const QList<QLabel *> lines = detail->findChildren<QLabel *>(u"analysisResult"_s);
        QCOMPARE(lines.size(), 1);
        QVERIFY2(QRegularExpression(u"^interview\\.mov: [1-9]\\d* audio \\+ \\d+ visual markers \\([1-9]\\d* words\\)$"_s)
                     .match(lines.first()->text()).hasMatch(),
                 qPrintable(lines.first()->text()));
        // The final refresh brings in what the service derived.
        QTRY_VERIFY(!state().selectedSession()->markers.isEmpty());
        QTRY_VERIFY(!detail->findChildren<MarkerRow *>().isEmpty());
        QCOMPARE(QDir(m_scratch.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden), QStringList());
    }

    void cleanup()
    {
        m_shell.reset();
        m_backend.reset();
        m_scanner.reset();
        if (m_api)
            m_api->keychainDelete();
        m_api.reset();
        m_standin.reset();
    }
};

QTEST_MAIN(ServiceScreensTest)
#include "ServiceScreensTest.moc"
