// A footage scan of 200 small clips: every file costs four or five ffprobe launches, so the
// scan's speed is the speed of starting ffprobe. The counters say how many files a second are
// read and which share of the wall time is spent inside runTool waiting for ffprobe.
#include "media/MediaScanner.h"
#include "media/ToolRunner.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <memory>

namespace {

constexpr int clipCount = 200;

// The folder of clips, made once: one clip from ffmpeg, copied under 200 names.
const QTemporaryDir &footage()
{
    static const std::unique_ptr<QTemporaryDir> dir = [] {
        auto made = std::make_unique<QTemporaryDir>();
        const ToolLocations tools = ToolLocations::platformDefault();
        const QString first = made->filePath(QStringLiteral("A001C001.mov"));
        const ToolRun run = runTool(tools.existingFFmpeg().value_or(QStringLiteral("ffmpeg")),
                                    {"-v", "error", "-y", "-f", "lavfi", "-i", "testsrc=size=64x36:rate=25", "-f", "lavfi", "-i", "sine",
                                     "-t", "1", "-timecode", "10:00:00:00", first},
                                    ToolOutput::NullDevice, ToolOutput::Captured, std::chrono::minutes(2));
        if (run.exitStatus != 0)
            qFatal("ffmpeg could not make the sample clip: %s", run.standardError.constData());
        for (int i = 2; i <= clipCount; ++i)
            QFile::copy(first, made->filePath(QStringLiteral("A001C%1.mov").arg(i, 3, 10, QLatin1Char('0'))));
        return made;
    }();
    return *dir;
}

void BM_ScanFolder(benchmark::State &state)
{
    const QString folder = footage().path();
    const MediaScanner scanner(ToolLocations::platformDefault());
    qint64 wallNanoseconds = 0;
    qint64 toolNanoseconds = 0;
    qint64 files = 0;
    for (auto _ : state) {
        const qint64 toolBefore = toolRunStatistics().nanoseconds;
        QElapsedTimer timer;
        timer.start();
        const QList<MediaClip> clips = scanner.scanFolder(folder, [](const QString &) {});
        wallNanoseconds += timer.nsecsElapsed();
        toolNanoseconds += toolRunStatistics().nanoseconds - toolBefore;
        files += clips.size();
        if (clips.size() != clipCount)
            state.SkipWithError("the scan did not find every clip");
    }
    state.counters["files_per_second"] = benchmark::Counter(double(files) / (double(wallNanoseconds) / 1e9));
    state.counters["share_in_ffprobe"] = benchmark::Counter(double(toolNanoseconds) / double(wallNanoseconds));
}

} // namespace

BENCHMARK(BM_ScanFolder)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
