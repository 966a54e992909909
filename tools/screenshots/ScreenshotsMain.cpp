// Puts the main window into its typical states with sample sessions and grabs each one, light
// and dark, so a change of look can be reviewed without a display.
#include "platform/Desktop.h"
#include "platform/Preferences.h"
#include "state/AppState.h"
#include "ui/ContentView.h"
#include "ui/LoginView.h"
#include "ui/SessionListView.h"
#include "ui/SettingsView.h"
#include "ui/ShellBackend.h"
#include "ui/SignedInView.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>

namespace {

// Nothing leaves the process: the pictures show the state the tool puts in.
class StillBackend : public ShellBackend
{
public:
    QCoro::Task<QString> requestLoginCode(QString) override { co_return QString(); }
    QCoro::Task<LoginOutcome> login(QString, QString) override { co_return LoginOutcome{std::nullopt, QStringLiteral("Invalid or expired code")}; }
    void deleteCredential() override {}
    void syncSessions() override {}
    void scanFootage(const QString &) override {}
    void rescanSavedFolders() override {}
    QCoro::Task<QList<TranscriptSegment>> fetchTranscript(QString) override { co_return QList<TranscriptSegment>{}; }
    QCoro::Task<> runAnalysis(ShootSession, QList<QUrl>, AnalysisState &) override { co_return; }
};

class StillDesktop : public Desktop
{
public:
    void chooseFolder(const QString &, std::function<void(const QString &)>) override {}
    void confirm(const Confirmation &, std::function<void()>) override {}
    void openUrl(const QUrl &) override {}
    void chooseSaveFile(const SaveRequest &, std::function<void(const QString &)>) override {}
    void inform(const Notice &, std::function<void()>) override {}
    void chooseFiles(const OpenRequest &, std::function<void(const QList<QUrl> &)>) override {}
};

QList<ShootSession> sampleSessions()
{
    const QDateTime now = QDateTime::currentDateTime();
    const struct {
        const char *title;
        int daysAgo;
        int hoursAgo;
        int markers;
        int clips;
    } rows[] = {
        {"Harbour interviews", 0, 1, 24, 6},
        {"Market b-roll", 0, 4, 9, 0},
        {"Workshop with the makers", 1, 2, 31, 12},
        {"Rooftop sunset timelapse", 1, 6, 4, 2},
        {"Founder portrait", 3, 0, 17, 0},
        {"Warehouse walkthrough", 6, 3, 12, 5},
        {"Studio pick-ups", 9, 1, 6, 0},
    };
    QList<ShootSession> sessions;
    int n = 0;
    for (const auto &row : rows) {
        ShootSession session;
        session.id = session.shareToken = QStringLiteral("s%1").arg(++n);
        session.title = QString::fromUtf8(row.title);
        session.createdAt = now.addDays(-row.daysAgo).addSecs(-3600 * row.hoursAgo);
        session.markers.resize(row.markers);
        for (int i = 0; i < row.clips; ++i) {
            MediaClip clip;
            clip.id = QStringLiteral("c%1-%2").arg(n).arg(i);
            session.matchedClips.append(clip);
        }
        sessions.append(session);
    }
    return sessions;
}

void settle()
{
    for (int i = 0; i < 5; ++i) {
        QApplication::processEvents();
        QThread::msleep(10);
    }
}

bool save(QWidget &window, const QDir &folder, const QString &name)
{
    settle();
    return window.grab().save(folder.filePath(name + QStringLiteral(".png")));
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList args = QApplication::arguments();
    if (args.size() != 2) {
        QTextStream(stderr) << "usage: vorlix-screenshots <output folder>\n";
        return 2;
    }
    QDir folder(args.at(1));
    folder.mkpath(QStringLiteral("."));
    QTemporaryDir profile;
    Preferences preferences(profile.filePath(QStringLiteral("settings.ini")));
    AppState state(preferences);
    state.setAppearanceHandler([](const QString &appearance) { Theme::applyAppearance(appearance); });
    StillBackend backend;
    StillDesktop desktop;
    ContentView window(state, backend, desktop, ServiceLinks::forBaseUrl(QUrl(QStringLiteral("https://shoot.vorlix.io"))));
    window.show();

    window.setLoginHint(QStringLiteral("Demo: any e-mail address, code 123456"));
    bool ok = save(window, folder, QStringLiteral("login"));
    // The code step after a refused code.
    LoginView *login = window.loginView();
    login->findChild<QLineEdit *>()->setText(QStringLiteral("anna.smith@example.com"));
    login->sendCode();
    settle();
    login->findChildren<QLineEdit *>().at(1)->setText(QStringLiteral("123465"));
    login->verify();
    ok = save(window, folder, QStringLiteral("login-code-step")) && ok;

    state.signIn(QStringLiteral("anna.smith@example.com"), QStringLiteral("Anna Maria Smith"));
    state.setFootageFolders({QStringLiteral("/Volumes/Shuttle/2026-11 Harbour/Camera A"), QStringLiteral("/home/anna/Footage/Workshop")});
    state.setSessions(sampleSessions().mid(0, 6));
    state.markSessionsDeleted({sampleSessions().at(6)});
    for (const QString &appearance : {QStringLiteral("light"), QStringLiteral("dark")}) {
        state.setAppearance(appearance);
        state.applyAppearance();
        state.setShowSettings(false);
        state.setScanning(false);
        settle();
        SignedInView *signedIn = window.signedInView();
        signedIn->sessionList()->setSelectedIds({QStringLiteral("s3")});
        signedIn->sessionList()->listView()->setFocus();
        ok = save(window, folder, QStringLiteral("sessions-") + appearance) && ok;

        state.setScanning(true);
        state.setScanProgress(QStringLiteral("Reading 7/24: A001C007_261118.mov"));
        signedIn->sessionList()->setSelectedIds({});
        ok = save(window, folder, QStringLiteral("scanning-") + appearance) && ok;

        state.setScanning(false);
        state.setShowSettings(true);
        window.resize(1000, 980); // tall enough for every block of the settings screen
        ok = save(window, folder, QStringLiteral("settings-") + appearance) && ok;
        window.resize(1000, 650);

        window.openSettingsWindow();
        ok = save(*window.settingsWindow(), folder, QStringLiteral("settings-window-") + appearance) && ok;
        window.settingsWindow()->close();
    }
    return ok ? 0 : 1;
}
