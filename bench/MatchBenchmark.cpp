// Re-matching every session after a scan or a sync: 2,000 sessions of 100 markers against
// 5,000 clips, the size of a long production's library.
#include "BenchLibrary.h"
#include "model/ClipMatcher.h"

#include <benchmark/benchmark.h>

namespace {

void BM_RematchAllSessions(benchmark::State &state)
{
    QList<ShootSession> sessions = BenchLibrary::makeSessions(int(state.range(0)), 100);
    const QList<MediaClip> clips = BenchLibrary::makeClips(int(state.range(1)));
    for (auto _ : state) {
        for (qsizetype i = 0; i < sessions.size(); ++i)
            sessions[i] = ClipMatcher::matchClipsToSession(clips, sessions[i]);
        benchmark::DoNotOptimize(sessions);
    }
}

} // namespace

BENCHMARK(BM_RematchAllSessions)->Args({2000, 5000})->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
