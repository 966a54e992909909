// Puts the main window into its typical states with sample sessions and grabs each one, light
// and dark, so a change of look can be reviewed without a display.
#include "platform/IdleDesktop.h"
#include "platform/Preferences.h"
#include "platform/ProcessWorkspace.h"
#include "state/AppState.h"
#include "ui/detail/AnalysisState.h"
#include "ui/detail/ExportActions.h"
#include "ui/detail/ExportNotice.h"
#include "ui/detail/SessionDetailView.h"
#include "ui/login/LoginView.h"
#include "ui/sessions/SessionListView.h"
#include "ui/settings/SettingsView.h"
#include "ui/shell/ContentView.h"
#include "ui/shell/ShellBackend.h"
#include "ui/shell/SignedInView.h"
#include "ui/transcript/SelectsModel.h"
#include "ui/transcript/SpeakerRunView.h"
#include "ui/widgets/Theme.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QPushButton>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>
#include <QToolButton>

namespace {

// Nothing leaves the process: the pictures show the state the tool puts in.
class StillBackend : public ShellBackend
{
public:
    QCoro::Task<QString> requestLoginCode(QString) override { co_return QString(); }
    QCoro::Task<LoginOutcome> login(QString, QString) override { co_return LoginOutcome{std::nullopt, QStringLiteral("Invalid or expired code")}; }
    QCoro::Task<> deleteCredential() override { co_return; }
    void syncSessions() override {}
    void scanFootage(const QString &) override {}
    void cancelScan() override {}
    void rescanSavedFolders() override {}
    QCoro::Task<QList<TranscriptSegment>> fetchTranscript(QString) override { co_return sampleTranscript(); }
    // A run caught on its last file: two result lines and the progress of the third.
    QCoro::Task<> runAnalysis(ShootSession, QList<QUrl> files, AnalysisState &analysis) override
    {
        analysis.setAnalysing(true);
        analysis.setAnalyseResults({QStringLiteral("%1: 12 audio + 5 visual markers (2150 words)").arg(files.at(0).fileName()),
                                    QStringLiteral("%1: 4 audio + 9 visual markers (610 words)").arg(files.at(1).fileName())});
        analysis.setAnalyseProgress(QStringLiteral("Visual analysis (3/3): %1...").arg(files.at(2).fileName()));
        co_return;
    }

    static QList<TranscriptSegment> sampleTranscript()
    {
        const char *lines[][2] = {
            {"SPEAKER A", "So tell me where it all started."},
            {"SPEAKER A", "Take your time."},
            {"SPEAKER B", "It started in my grandfather's workshop, in the winter of 1986."},
            {"SPEAKER B", "He let me sweep the shavings."},
            {"SPEAKER B", "I was nine, and I thought it was the best job in the world."},
            {"SPEAKER B", "The smell of cedar still takes me straight back there."},
            {"SPEAKER A", "And the first boat?"},
            {"SPEAKER A", "Do you remember it?"},
            {"SPEAKER B", "A little dinghy. It leaked like a sieve, but it floated."},
            {"SPEAKER B", "We took it out on the harbour the morning after it was finished."},
        };
        QList<TranscriptSegment> segments;
        int second = 4;
        int n = 0;
        for (const auto &line : lines) {
            TranscriptSegment segment;
            segment.id = QStringLiteral("t%1").arg(++n);
            segment.speaker = QString::fromUtf8(line[0]);
            segment.text = QString::fromUtf8(line[1]);
            segment.timecode = QStringLiteral("10:02:%1:00").arg(second += 5, 2, 10, QChar(u'0'));
            segments.append(segment);
        }
        return segments;
    }
};

// Saves every document into one folder, as a person confirming the proposed name would.
class SavingDesktop : public IdleDesktop
{
public:
    explicit SavingDesktop(QString folder) : m_folder(std::move(folder)) {}
    void chooseSaveFile(const SaveRequest &request, std::function<void(const QString &)> onChosen) override
    {
        onChosen(QDir(m_folder).filePath(request.defaultName));
    }

private:
    QString m_folder;
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

ShootMarker sampleMarker(const char *type, const char *timecode, const char *summary, const char *quote = nullptr,
                         const char *raw = nullptr, const char *timecodeOut = nullptr)
{
    ShootMarker marker;
    static int n = 0;
    marker.id = QStringLiteral("m%1").arg(++n);
    marker.markerType = QString::fromUtf8(type);
    marker.timecode = QString::fromUtf8(timecode);
    if (summary)
        marker.summary = QString::fromUtf8(summary);
    if (quote)
        marker.quote = QString::fromUtf8(quote);
    if (raw)
        marker.raw = QString::fromUtf8(raw);
    if (timecodeOut)
        marker.timecodeOut = QString::fromUtf8(timecodeOut);
    return marker;
}

// The first sample session with what an editor meets after a day's shoot.
ShootSession detailedSession(ShootSession session)
{
    session.markers = {
        sampleMarker("log", "10:02:14:05", "Skipper arrives, ties up at the north pontoon"),
        sampleMarker("earmark", "10:04:51:12", "The first boat story", "It leaked like a sieve, but it floated.",
                     "a little dinghy it leaked like a sieve but it floated we took it out the morning after"),
        sampleMarker("inout", "10:07:30:00", "Workshop walk-through, wide", nullptr, nullptr, "10:09:12:18"),
        sampleMarker("note", "10:11:02:20", "Check audio: gull noise over the second answer"),
        sampleMarker("earmark", "10:12:40:03", "Pause before the answer", nullptr, "[no speech]"),
        sampleMarker("soundbite", "10:15:08:11", "Why wooden boats", "Every plank has its own mind."),
    };
    const struct {
        const char *name;
        const char *timecode;
        double duration;
    } clips[] = {{"A001C007_261118.mov", "10:01:58:00", 342.4}, {"A001C008_261118.mov", "10:07:21:10", 615.0}, {"B002C003_261118.mxf", nullptr, 87.6}};
    session.matchedClips.clear();
    for (const auto &clip : clips) {
        MediaClip media;
        media.id = media.path = QStringLiteral("/Volumes/Shuttle/") + QString::fromUtf8(clip.name);
        media.filename = QString::fromUtf8(clip.name);
        if (clip.timecode)
            media.timecode = QString::fromUtf8(clip.timecode);
        media.duration = clip.duration;
        session.matchedClips.append(media);
    }
    return session;
}

void settle()
{
    for (int i = 0; i < 5; ++i) {
        QApplication::processEvents();
        QThread::msleep(10);
    }
}

// Lets the exports finish (the marker sequence asks ffprobe first), for at most a few seconds.
bool settleUntil(const std::function<bool()> &done)
{
    const QDeadlineTimer deadline(10000);
    while (!done() && !deadline.hasExpired())
        settle();
    return done();
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
    // The exports pressed here write into the output folder; no editing application is
    // installed, so nothing is launched.
    SavingDesktop desktop(folder.absolutePath());
    ExportEnvironment exports{std::make_shared<ProcessWorkspace>(), profile.path(), EditorLocations{}, ToolLocations::platformDefault()};
    ContentView window(state, backend, desktop, ServiceLinks::forBaseUrl(QUrl(QStringLiteral("https://shoot.vorlix.io"))), exports);
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
    QList<ShootSession> sessions = sampleSessions().mid(0, 6);
    sessions[0] = detailedSession(sessions[0]);
    sessions[2] = detailedSession(sessions[2]);
    sessions[3] = detailedSession(sessions[3]);
    sessions[3].matchedClips.removeAt(1); // the afternoon's card is missing: markers off the footage
    state.setSessions(sessions);
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

        // The sidebar filtered, with the last sync's time beside the settings button.
        state.setLastSynced(QDateTime::currentDateTime().addSecs(-140));
        signedIn->sessionList()->filterField()->setText(QStringLiteral("ro"));
        ok = save(window, folder, QStringLiteral("sidebar-filter-") + appearance) && ok;
        signedIn->sessionList()->filterField()->clear();

        // The window at its minimum size while a sync runs.
        state.setSyncsRunning(1);
        window.resize(window.minimumSize());
        ok = save(window, folder, QStringLiteral("minimum-size-") + appearance) && ok;
        state.setSyncsRunning(0);
        window.resize(1000, 650);

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

        // The session screen: matched footage and markers of several types.
        state.setShowSettings(false);
        signedIn->sessionList()->setSelectedIds({QStringLiteral("s1")});
        settle();
        SessionDetailView *detail = signedIn->sessionDetail();
        detail->selectTab(QStringLiteral("markers"));
        window.resize(1000, 1180);
        ok = save(window, folder, QStringLiteral("detail-") + appearance) && ok;

        // The transcript with graded selects and a range offered by a shift-click.
        detail->selectTab(QStringLiteral("transcript"));
        settle();
        SegmentSelection selection;
        selection.selectedSegmentIds = {QStringLiteral("t6"), QStringLiteral("t8"), QStringLiteral("t9")};
        selection.segmentGrades = {{QStringLiteral("t8"), QStringLiteral("A")}, {QStringLiteral("t9"), QStringLiteral("B")}};
        detail->selects()->setSelection(selection);
        settle();
        const auto chip = [detail](const QString &id, Qt::KeyboardModifiers modifiers) {
            for (SpeakerRunView *run : detail->findChildren<SpeakerRunView *>()) {
                if (!run->chipRect(id).isEmpty())
                    Q_EMIT run->chipClicked(id, modifiers);
            }
        };
        chip(QStringLiteral("t3"), Qt::ShiftModifier); // from the first select, t6
        window.resize(1000, 900);
        ok = save(window, folder, QStringLiteral("detail-transcript-") + appearance) && ok;

        // The analysis area near the bottom of the screen, while the last of three files runs.
        detail->selects()->setSelection({});
        detail->selectTab(QStringLiteral("markers"));
        signedIn->sessionList()->setSelectedIds({QStringLiteral("s3")});
        settle();
        detail->analysisPanel()->runAnalysis({QUrl::fromLocalFile(QStringLiteral("/Volumes/Shuttle/A001C007_261118.mov")),
                                              QUrl::fromLocalFile(QStringLiteral("/Volumes/Shuttle/A001C008_261118.mov")),
                                              QUrl::fromLocalFile(QStringLiteral("/Volumes/Shuttle/B002C003_261118.mxf"))});
        window.resize(1000, 650);
        settle();
        QScrollBar *scroll = detail->findChild<QScrollArea *>()->verticalScrollBar();
        scroll->setValue(scroll->maximum());
        ok = save(window, folder, QStringLiteral("detail-analysis-") + appearance) && ok;
        signedIn->sessionList()->setSelectedIds({});
        window.resize(1000, 650);

        // The coverage strip of a session whose footage misses half its markers, then the notice
        // after saving its marker sequence.
        signedIn->sessionList()->setSelectedIds({QStringLiteral("s4")});
        settle();
        ok = save(window, folder, QStringLiteral("coverage-") + appearance) && ok;
        ExportNotice *notice = detail->notice();
        detail->exportActions()->exportXML();
        ok = settleUntil([notice] { return notice->isVisible(); }) && save(window, folder, QStringLiteral("notice-saved-") + appearance) && ok;

        // Graded selects picked in the transcript, sent to Premiere Pro, which is not installed
        // here, so the sequence is saved and the notice says where.
        signedIn->sessionList()->setSelectedIds({QStringLiteral("s1")});
        settle();
        detail->selectTab(QStringLiteral("transcript"));
        settle();
        detail->selects()->setSelection(selection);
        settle();
        detail->findChild<QPushButton *>(QStringLiteral("selectsButton"))->click();
        window.resize(1000, 900);
        ok = settleUntil([notice] { return notice->isVisible(); }) && save(window, folder, QStringLiteral("selects-exported-") + appearance) && ok;
        detail->selects()->setSelection({});
        detail->selectTab(QStringLiteral("markers"));
        signedIn->sessionList()->setSelectedIds({});
        window.resize(1000, 650);

        // The buttons of an editor who prefers Final Cut Pro, with the Export menu open. The menu
        // is a window of its own, kept inside the small offscreen screen, so it is painted onto
        // the picture below its button, where it opens on a real screen.
        state.setPreferredNLE(QStringLiteral("fcp"));
        signedIn->sessionList()->setSelectedIds({QStringLiteral("s1")});
        settle();
        notice->dismiss();
        window.resize(1000, 1300); // the whole screen, with room for the menu below its button
        QToolButton *exportMenu = detail->findChild<QToolButton *>(QStringLiteral("exportMenu"));
        exportMenu->setFocus();
        exportMenu->menu()->popup(exportMenu->mapToGlobal(QPoint(0, exportMenu->height())));
        settle();
        QPixmap picture = window.grab();
        QPainter(&picture).drawPixmap(exportMenu->mapTo(&window, QPoint(0, exportMenu->height())), exportMenu->menu()->grab());
        ok = picture.save(folder.filePath(QStringLiteral("export-menu-") + appearance + QStringLiteral(".png"))) && ok;
        exportMenu->menu()->close();
        state.setPreferredNLE(QStringLiteral("resolve"));
        signedIn->sessionList()->setSelectedIds({});
        window.resize(1000, 650);
    }
    return ok ? 0 : 1;
}
