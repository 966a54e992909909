// Footage scans of the same 200 small clips, in one run: the separate probes one file after
// another (four or five ffprobe launches a file), the first scan (one launch a file, one job per
// core, an empty probe cache) and the rescan of the unchanged files from the cache; then the
// rescan of 2,000 unchanged files. The two ratios are printed at the end. Starting ffprobe is
// the whole cost of a probe, so one clip copied under many names measures the same as varied
// footage would.
#include "media/MediaScanner.h"
#include "media/ToolRunner.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <memory>
#include <unistd.h>

namespace {

constexpr int clipCount = 200;
constexpr int libraryCount = 2000;

double sequentialSeconds = 0;
double firstScanSeconds = 0;
double rescanSeconds = 0;

QTemporaryDir &scratch()
{
    static QTemporaryDir dir;
    return dir;
}

// `count` hard links to one clip from ffmpeg, in a folder of their own.
QString footage(int count)
{
    const QString folder = scratch().filePath(QStringLiteral("footage-%1").arg(count));
    if (QDir(folder).exists())
        return folder;
    QDir().mkpath(folder);
    const QString sample = scratch().filePath(QStringLiteral("sample.mov"));
    if (!QFile::exists(sample)) {
        const ToolRun run = runTool(ToolLocations::platformDefault().existingFFmpeg().value_or(QStringLiteral("ffmpeg")),
                                    {"-v", "error", "-y", "-f", "lavfi", "-i", "testsrc=size=64x36:rate=25", "-f", "lavfi", "-i", "sine",
                                     "-t", "1", "-timecode", "10:00:00:00", sample},
                                    ToolOutput::NullDevice, ToolOutput::Captured, std::chrono::minutes(2));
        if (run.exitStatus != 0)
            qFatal("ffmpeg could not make the sample clip: %s", run.standardError.constData());
    }
    for (int i = 1; i <= count; ++i) {
        const QString name = QDir(folder).filePath(QStringLiteral("A001C%1.mov").arg(i, 4, 10, QLatin1Char('0')));
        if (::link(QFile::encodeName(sample).constData(), QFile::encodeName(name).constData()) != 0)
            qFatal("could not link %s", qPrintable(name));
    }
    return folder;
}

ScanOptions cachedIn(const QString &name)
{
    return {QThread::idealThreadCount(), scratch().filePath(name)};
}

// Runs `scan` once and reports its wall time, the files a second and the ffprobe launches.
template<typename Scan>
double measure(benchmark::State &state, int expectedClips, Scan scan)
{
    double seconds = 0;
    for (auto _ : state) {
        const qint64 launchesBefore = toolRunStatistics().launches;
        QElapsedTimer timer;
        timer.start();
        const qsizetype clips = scan();
        seconds = double(timer.nsecsElapsed()) / 1e9;
        state.counters["launches"] = double(toolRunStatistics().launches - launchesBefore);
        if (clips != expectedClips)
            state.SkipWithError("the scan did not read every clip");
    }
    state.counters["files_per_second"] = double(expectedClips) / seconds;
    return seconds;
}

qsizetype scanned(const QString &folder, const ScanOptions &options)
{
    return MediaScanner(ToolLocations::platformDefault()).scanFolder(folder, options, [](const QString &) {}, std::stop_token()).clips.size();
}

void BM_SequentialSeparateProbes(benchmark::State &state)
{
    const QString folder = footage(clipCount);
    sequentialSeconds = measure(state, clipCount, [&] {
        const MediaScanner scanner(ToolLocations::platformDefault());
        qsizetype clips = 0;
        for (const QFileInfo &file : QDir(folder).entryInfoList(QDir::Files))
            clips += scanner.probeClipSeparately(file.filePath()).path.isEmpty() ? 0 : 1;
        return clips;
    });
}

void BM_FirstScan(benchmark::State &state)
{
    const QString folder = footage(clipCount);
    firstScanSeconds = measure(state, clipCount, [&] { return scanned(folder, cachedIn(QStringLiteral("cache-200.json"))); });
}

void BM_CachedRescan(benchmark::State &state)
{
    const QString folder = footage(clipCount);
    rescanSeconds = measure(state, clipCount, [&] { return scanned(folder, cachedIn(QStringLiteral("cache-200.json"))); });
}

void BM_FirstScanOf2000(benchmark::State &state)
{
    const QString folder = footage(libraryCount);
    measure(state, libraryCount, [&] { return scanned(folder, cachedIn(QStringLiteral("cache-2000.json"))); });
}

void BM_CachedRescanOf2000(benchmark::State &state)
{
    const QString folder = footage(libraryCount);
    measure(state, libraryCount, [&] { return scanned(folder, cachedIn(QStringLiteral("cache-2000.json"))); });
}

} // namespace

BENCHMARK(BM_SequentialSeparateProbes)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_FirstScan)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_CachedRescan)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_FirstScanOf2000)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_CachedRescanOf2000)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    if (sequentialSeconds > 0 && firstScanSeconds > 0 && rescanSeconds > 0) {
        std::printf("%d files: first scan %.1fx faster than the sequential separate probes; cached rescan %.1fx faster than the first scan\n",
                    clipCount, sequentialSeconds / firstScanSeconds, firstScanSeconds / rescanSeconds);
    }
    return 0;
}
