// The frame uploads of one analysed file at the most: 60 scene frames of about 30 KB. Reading and
// base64-encoding them runs on the tool pool; splitting them into request bodies runs on the GUI
// thread between two uploads, so it has to stay well under a frame's time (16 ms).
#include "analysis/AnalysisService.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

constexpr int frameCount = 60;
constexpr int frameBytes = 30000;

QTemporaryDir &framesFolder()
{
    static QTemporaryDir folder;
    static const bool written = [] {
        for (int k = 1; k <= frameCount; ++k) {
            QByteArray jpeg(frameBytes, Qt::Uninitialized);
            QRandomGenerator generator{quint32(k)};
            for (char &byte : jpeg)
                byte = char(generator.bounded(256));
            QFile file(QDir(folder.path()).filePath(QStringLiteral("frame_%1.jpg").arg(k, 4, 10, QLatin1Char('0'))));
            if (!file.open(QIODevice::WriteOnly) || file.write(jpeg) != jpeg.size())
                return false;
        }
        return true;
    }();
    if (!written)
        qFatal("could not write the benchmark's frames");
    return folder;
}

QList<double> frameTimes()
{
    QList<double> times;
    for (int k = 0; k < frameCount; ++k)
        times.append(0.4 * k);
    return times;
}

void BM_FrameRecords(benchmark::State &state)
{
    const QString folder = framesFolder().path();
    const QList<double> times = frameTimes();
    const std::optional<QString> start = QStringLiteral("10:00:00:00");
    for (auto _ : state)
        benchmark::DoNotOptimize(Analysis::frameRecords(folder, times, start, 25));
}
BENCHMARK(BM_FrameRecords)->Unit(benchmark::kMillisecond);

void BM_FrameRequestBodies(benchmark::State &state)
{
    const QJsonArray records = Analysis::frameRecords(framesFolder().path(), frameTimes(), QStringLiteral("10:00:00:00"), 25);
    ShootSession session;
    session.shareToken = QStringLiteral("token");
    for (auto _ : state)
        benchmark::DoNotOptimize(Analysis::frameRequestBodies(session, QStringLiteral("A001.mov"), records));
}
BENCHMARK(BM_FrameRequestBodies)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
