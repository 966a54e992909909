// The session screen when the editor picks another session in the sidebar: the screen is rebuilt
// for a session of N markers of mixed types (rows, footage, tabs) and its visible part painted.
#include "platform/IdleDesktop.h"
#include "analysis/PendingAnalyses.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "platform/ProcessWorkspace.h"
#include "state/AppState.h"
#include "ui/detail/SessionDetailView.h"
#include "ui/widgets/Theme.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

ShootSession sessionWithMarkers(const QString &id, int markerCount)
{
    const QString types[] = {QStringLiteral("log"), QStringLiteral("earmark"), QStringLiteral("inout"), QStringLiteral("note")};
    ShootSession session;
    session.id = session.shareToken = id;
    session.title = QStringLiteral("Shoot ") + id;
    session.createdAt = QDateTime::currentDateTime();
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

void BM_SessionDetailSwitch(benchmark::State &benchmarkState)
{
    const int markers = int(benchmarkState.range(0));
    QTemporaryDir dir;
    Preferences preferences(dir.filePath(QStringLiteral("bench.ini")));
    AppState state(preferences);
    Theme::applyAppearance(QStringLiteral("light"));
    IdleDesktop desktop;
    NotificationCenter center;
    PendingAnalyses pending(center);
    SessionDetailEnvironment environment{
        [](const QString &) -> QCoro::Task<QList<TranscriptSegment>> { co_return QList<TranscriptSegment>{}; },
        [](ShootSession, QList<QUrl>, AnalysisState &) -> QCoro::Task<> { co_return; },
        std::make_shared<ProcessWorkspace>(), dir.path(), EditorLocations{}, QStringLiteral("shoot.example.org")};
    const ShootSession sessions[] = {sessionWithMarkers(QStringLiteral("a"), markers), sessionWithMarkers(QStringLiteral("b"), markers)};
    state.setSessions({sessions[0], sessions[1]});
    SessionDetailView view(state, desktop, environment, pending);
    view.resize(720, 900);
    view.show();
    int turn = 0;
    for (auto _ : benchmarkState) {
        state.setSelectedSession(sessions[turn++ % 2]);
        QCoreApplication::processEvents(); // the coalesced refresh
        QPixmap frame = view.grab(QRect(0, 0, 720, 900));
        benchmark::DoNotOptimize(frame);
    }
}
BENCHMARK(BM_SessionDetailSwitch)->Arg(50)->Arg(500)->Unit(benchmark::kMillisecond);

} // namespace
