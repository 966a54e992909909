// One session sync of a long production: 2,000 sessions of 100 markers already in the
// application, the service sending all of them again, and 5,000 scanned clips to re-match
// against. Budget: under 200 ms for merge and re-match together, and a sync that brings nothing
// new assigns nothing (the "assignments" counter), so no screen repaints.
#include "BenchLibrary.h"
#include "platform/Preferences.h"
#include "state/AppState.h"
#include "state/SessionLibrary.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

struct Production {
    QList<ShootSession> current;
    QList<ShootSession> fetched; // markers shifted, so every session really changes
    QList<MediaClip> clips;
};

Production makeProduction(int count, int clipCount)
{
    Production production{BenchLibrary::makeSessions(count, 100), BenchLibrary::makeSessions(count, 100),
                          BenchLibrary::makeClips(clipCount)};
    const QDateTime start(QDate(2024, 1, 1), QTime(8, 0), Qt::UTC);
    for (int i = 0; i < count; ++i) {
        ShootSession &session = production.current[i];
        session.title = i % 3 == 0 ? QStringLiteral("Shoot session") : QStringLiteral("Renamed %1").arg(i);
        session.createdAt = start.addSecs(qint64(i) * 3600);
    }
    for (int i = 0; i < count; ++i) {
        production.fetched[i].markers = production.current[(i + 1) % count].markers;
        production.fetched[i].createdAt = production.current[i].createdAt;
        production.fetched[i].title = QStringLiteral("Service title %1").arg(i);
    }
    return production;
}

// The state as a running program holds it: `production` synced once, then `sync` again.
void runSync(benchmark::State &benchmarkState, bool bringsChanges)
{
    const Production production = makeProduction(int(benchmarkState.range(0)), int(benchmarkState.range(1)));
    QTemporaryDir dir;
    Preferences preferences(dir.filePath(QStringLiteral("bench.ini")));
    AppState state(preferences);
    state.setClips(production.clips);
    int assignments = 0;
    QObject::connect(&state, &AppState::sessionsChanged, [&assignments] { ++assignments; });
    QObject::connect(&state, &AppState::selectedSessionChanged, [&assignments] { ++assignments; });
    for (auto _ : benchmarkState) {
        benchmarkState.PauseTiming();
        state.setSessions(production.current);
        SessionLibrary library(state);
        if (!bringsChanges)
            library.mergeFetched(production.fetched);
        state.setSelectedSession(state.sessions().first());
        assignments = 0;
        benchmarkState.ResumeTiming();
        library.mergeFetched(production.fetched);
    }
    benchmarkState.counters["assignments"] = assignments;
}

void BM_SyncMergeAndRematch(benchmark::State &state)
{
    runSync(state, true);
}

void BM_SyncWithoutChange(benchmark::State &state)
{
    runSync(state, false);
}

} // namespace

BENCHMARK(BM_SyncMergeAndRematch)->Args({2000, 5000})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SyncWithoutChange)->Args({2000, 5000})->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
