// The session screen when the editor picks another session in the sidebar: the screen is rebuilt
// for a session of N markers of mixed types (rows, footage, tabs) and its visible part painted;
// and when a background sync brings the shown session back unchanged, which should cost next to
// nothing.
#include "platform/IdleDesktop.h"
#include "platform/Preferences.h"
#include "platform/ProcessWorkspace.h"
#include "state/AppState.h"
#include "state/SessionLibrary.h"
#include "ui/detail/PendingAnalyses.h"
#include "ui/detail/SessionDetailView.h"
#include "ui/widgets/Theme.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

ShootSession sessionWithMarkers(const QString &id, int markerCount, const QDateTime &createdAt)
{
    const QString types[] = {QStringLiteral("log"), QStringLiteral("earmark"), QStringLiteral("inout"), QStringLiteral("note")};
    ShootSession session;
    session.id = session.shareToken = id;
    session.title = QStringLiteral("Shoot ") + id;
    session.createdAt = createdAt;
    for (int i = 0; i < markerCount; ++i) {
        ShootMarker marker;
        marker.id = id + QString::number(i);
        marker.markerType = types[i % 4];
        marker.timecode = QStringLiteral("10:%1:%2:00").arg(i / 60 % 60, 2, 10, QChar(u'0')).arg(i % 60, 2, 10, QChar(u'0'));
        marker.summary = QStringLiteral("Skipper arrives and ties up at the north pontoon, take %1").arg(i);
        if (i % 3 == 0)
            marker.quote = QStringLiteral("Every plank has its own mind.");
        if (marker.markerType == types[1])
            marker.raw = QStringLiteral("a little dinghy it leaked like a sieve but it floated");
        if (marker.markerType == types[2])
            marker.timecodeOut = marker.timecode;
        session.markers.append(marker);
    }
    for (int i = 0; i < 20; ++i) {
        MediaClip clip;
        clip.id = clip.path = clip.filename = QStringLiteral("A001C%1.mov").arg(i);
        clip.duration = 60;
        session.matchedClips.append(clip);
    }
    return session;
}

// The screen on two sessions of `markers` markers each, newest first as a sync leaves them, the
// first one selected and shown.
struct Screen {
    explicit Screen(int markers)
        : preferences(dir.filePath(QStringLiteral("bench.ini"))), state(preferences),
          sessions{sessionWithMarkers(QStringLiteral("a"), markers, newest), sessionWithMarkers(QStringLiteral("b"), markers, newest.addDays(-1))}
    {
        Theme::applyAppearance(QStringLiteral("light"));
        state.setSessions(sessions);
        state.setSelectedSession(sessions.first());
        SessionDetailEnvironment environment{
            [](const QString &) -> QCoro::Task<QList<TranscriptSegment>> { co_return QList<TranscriptSegment>{}; },
            [](ShootSession, QList<QUrl>, AnalysisState &) -> QCoro::Task<> { co_return; },
            {std::make_shared<ProcessWorkspace>(), dir.path(), EditorLocations{}, ToolLocations::platformDefault()},
            QStringLiteral("shoot.example.org")};
        view = std::make_unique<SessionDetailView>(state, desktop, environment, pending);
        view->resize(720, 900);
        view->show();
        QCoreApplication::processEvents();
    }

    QPixmap paint() { return view->grab(QRect(0, 0, 720, 900)); }

    static inline const QDateTime newest{QDate(2026, 11, 18), QTime(12, 0), Qt::UTC};

    QTemporaryDir dir;
    Preferences preferences;
    AppState state;
    QList<ShootSession> sessions;
    IdleDesktop desktop;
    PendingAnalyses pending;
    std::unique_ptr<SessionDetailView> view;
};

void BM_SessionDetailSwitch(benchmark::State &benchmarkState)
{
    Screen screen(int(benchmarkState.range(0)));
    int turn = 1;
    for (auto _ : benchmarkState) {
        screen.state.setSelectedSession(screen.sessions[turn++ % 2]);
        QCoreApplication::processEvents(); // the coalesced refresh
        QPixmap frame = screen.paint();
        benchmark::DoNotOptimize(frame);
    }
}
BENCHMARK(BM_SessionDetailSwitch)->Arg(50)->Arg(500)->Unit(benchmark::kMillisecond);

// The 30-second sync while the session is on screen: the service answers what the program
// already has, and the user clicks the session once more.
void BM_SessionDetailUnchangedSync(benchmark::State &benchmarkState)
{
    Screen screen(int(benchmarkState.range(0)));
    for (auto _ : benchmarkState) {
        SessionLibrary(screen.state).mergeFetched(screen.sessions);
        screen.state.setSelectedSession(screen.sessions.first());
        QCoreApplication::processEvents(); // the coalesced refresh
        QPixmap frame = screen.paint();
        benchmark::DoNotOptimize(frame);
    }
}
BENCHMARK(BM_SessionDetailUnchangedSync)->Arg(500)->Unit(benchmark::kMillisecond);

} // namespace
