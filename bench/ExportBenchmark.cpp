// Every export document for a long shoot: 10,000 markers and 500 matched clips.
#include "export/OtioTimeline.h"
#include "export/PremiereXml.h"
#include "export/ResolveEdl.h"
#include "export/SelectsXml.h"
#include "time/Timecode.h"

#include <benchmark/benchmark.h>

namespace {

const QStringList types{QStringLiteral("log"), QStringLiteral("inout"), QStringLiteral("soundbite"),
                        QStringLiteral("visual"), QStringLiteral("broll")};

// Clips of 60 seconds every 70 seconds from 09:00:00, markers spread over the same ten hours, so
// most markers sit inside a clip and some fall into the gaps.
ShootSession longShoot()
{
    ShootSession session;
    session.id = session.shareToken = QStringLiteral("bench");
    session.title = QStringLiteral("Festival day – main stage & backstage \"B\"");
    for (int c = 0; c < 500; ++c) {
        MediaClip clip;
        clip.id = QString::number(c);
        clip.filename = QStringLiteral("C%1.MP4").arg(c, 4, 10, QLatin1Char('0'));
        clip.path = QStringLiteral("/Volumes/Card A/Day 1/") + clip.filename;
        clip.timecode = secondsToTC(9 * 3600 + c * 70.0, 25);
        clip.duration = 60.0;
        clip.width = 3840;
        clip.height = 2160;
        if (c % 3 == 0)
            clip.detectedFps = 50;
        session.matchedClips.append(clip);
    }
    for (int m = 0; m < 10000; ++m) {
        ShootMarker marker;
        marker.id = QString::number(m);
        marker.markerType = types[m % types.size()];
        marker.timecode = secondsToTC(9 * 3600 + m * 3.5, 25);
        if (m % 4 == 0)
            marker.timecodeOut = secondsToTC(9 * 3600 + m * 3.5 + 6, 25);
        marker.summary = QStringLiteral("Speaker %1 talks about the lighting rig — “a long, winding answer” & more").arg(m);
        marker.quote = QStringLiteral("We had to re-rig everything after the storm, it's the third time this week.");
        marker.createdAt = QDateTime::fromSecsSinceEpoch(1700000000 + (m * 7919) % 10000, Qt::UTC);
        session.markers.append(marker);
    }
    return session;
}

const ShootSession &shoot()
{
    static const ShootSession session = longShoot();
    return session;
}

void BM_ResolveEDL(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(generateResolveEDL(shoot()));
}

void BM_PremiereXML(benchmark::State &state)
{
    ShootSession session = shoot();
    if (state.range(0) == 0)
        session.matchedClips.clear();
    for (auto _ : state)
        benchmark::DoNotOptimize(generatePremiereXML(session, 1));
}

void BM_SelectsXML(benchmark::State &state)
{
    QSet<QString> picked;
    QHash<QString, QString> grades;
    // Every n-th marker picked; n = 1 picks all 10,000, which makes a document of about 50 MB.
    for (qsizetype m = 0; m < shoot().markers.size(); m += state.range(0)) {
        const ShootMarker &marker = shoot().markers[m];
        picked.insert(marker.id);
        grades.insert(marker.id, QStringLiteral("A"));
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(generateSelectsXML(shoot(), picked, grades, {}));
}

void BM_OTIO(benchmark::State &state)
{
    ShootSession session = shoot();
    if (state.range(0) == 0)
        session.matchedClips.clear();
    for (auto _ : state)
        benchmark::DoNotOptimize(generateOTIO(session));
}

} // namespace

BENCHMARK(BM_ResolveEDL)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PremiereXML)->Arg(0)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SelectsXML)->Arg(10)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OTIO)->Arg(0)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
