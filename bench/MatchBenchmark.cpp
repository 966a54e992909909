// Re-matching every session after a scan or a sync: 2,000 sessions of 100 markers against
// 5,000 clips, the size of a long production's library.
#include "timecode/ClipMatcher.h"
#include "timecode/Timecode.h"

#include <benchmark/benchmark.h>

namespace {

QList<ShootSession> makeSessions(int count, int markersEach)
{
    QList<ShootSession> sessions;
    for (int s = 0; s < count; ++s) {
        ShootSession session;
        session.id = session.shareToken = QStringLiteral("session-%1").arg(s);
        for (int m = 0; m < markersEach; ++m) {
            ShootMarker marker;
            marker.id = QStringLiteral("%1-%2").arg(s).arg(m);
            marker.markerType = QStringLiteral("log");
            marker.timecode = secondsToTC(double((s * 37 + m * 11) % 86000), 25);
            session.markers.append(marker);
        }
        sessions.append(session);
    }
    return sessions;
}

QList<MediaClip> makeClips(int count)
{
    QList<MediaClip> clips;
    for (int c = 0; c < count; ++c) {
        MediaClip clip;
        clip.id = QStringLiteral("clip-%1").arg(c);
        clip.path = QStringLiteral("/footage/%1.mov").arg(c);
        clip.timecode = secondsToTC(double((c * 17) % 86000), 25);
        clip.duration = 20.0;
        clips.append(clip);
    }
    return clips;
}

void BM_RematchAllSessions(benchmark::State &state)
{
    QList<ShootSession> sessions = makeSessions(int(state.range(0)), 100);
    const QList<MediaClip> clips = makeClips(int(state.range(1)));
    for (auto _ : state) {
        for (qsizetype i = 0; i < sessions.size(); ++i)
            sessions[i] = ClipMatcher::matchClipsToSession(clips, sessions[i]);
        benchmark::DoNotOptimize(sessions);
    }
}

} // namespace

BENCHMARK(BM_RematchAllSessions)->Args({2000, 5000})->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
