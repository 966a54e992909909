// One session sync of a long production: 2,000 sessions of 100 markers already in the
// application, the service sending all of them again with fresh markers, and 5,000 scanned
// clips to re-match against. Budget: under 200 ms for merge and re-match together.
#include "BenchLibrary.h"
#include "service/SessionSync.h"
#include "model/ClipMatcher.h"

#include <benchmark/benchmark.h>

namespace {

void BM_SyncMergeAndRematch(benchmark::State &state)
{
    const int count = int(state.range(0));
    QList<ShootSession> current = BenchLibrary::makeSessions(count, 100);
    const QDateTime start(QDate(2024, 1, 1), QTime(8, 0), Qt::UTC);
    for (int i = 0; i < count; ++i) {
        current[i].title = i % 3 == 0 ? QStringLiteral("Shoot session") : QStringLiteral("Renamed %1").arg(i);
        current[i].createdAt = start.addSecs(qint64(i) * 3600);
    }
    // The service's copy: same sessions, markers shifted so every session really changes.
    QList<ShootSession> fetched = BenchLibrary::makeSessions(count, 100);
    for (int i = 0; i < count; ++i) {
        fetched[i].markers = current[(i + 1) % count].markers;
        fetched[i].createdAt = current[i].createdAt;
        fetched[i].title = QStringLiteral("Service title %1").arg(i);
    }
    const QList<MediaClip> clips = BenchLibrary::makeClips(int(state.range(1)));
    const QSet<QString> deleted{QStringLiteral("session-7"), QStringLiteral("session-70")};

    for (auto _ : state) {
        QList<ShootSession> sessions = ClipMatcher::matchClipsToSessions(clips, SessionSync::merge(current, fetched, deleted));
        benchmark::DoNotOptimize(sessions);
    }
}

} // namespace

BENCHMARK(BM_SyncMergeAndRematch)->Args({2000, 5000})->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
