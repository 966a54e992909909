#pragma once

#include "media/ToolLocations.h"
#include "media/ToolRunner.h"
#include "model/MediaClip.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaType>
#include <QStringList>
#include <optional>

// Optional values as data-driven test columns.
using OptionalDouble = std::optional<double>;
using OptionalInt = std::optional<int>;
using OptionalText = std::optional<QString>;
Q_DECLARE_METATYPE(OptionalDouble)
Q_DECLARE_METATYPE(OptionalInt)
Q_DECLARE_METATYPE(OptionalText)

// Tiny media files made with the real ffmpeg while the tests run, from lavfi sources.
namespace MediaFixtures {

inline QString ffmpeg() { return ToolLocations::platformDefault().existingFFmpeg().value_or(QStringLiteral("ffmpeg")); }

// Runs ffmpeg with `arguments` writing `path`; says why on failure.
inline bool make(const QString &path, const QStringList &arguments)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    const ToolRun run = runTool(ffmpeg(), QStringList{"-v", "error", "-y"} + arguments + QStringList{path}, ToolOutput::NullDevice, ToolOutput::Captured, std::chrono::minutes(2));
    if (run.exitStatus != 0)
        qWarning().noquote() << "ffmpeg failed for" << path << run.standardError;
    return run.exitStatus == 0;
}

inline QStringList lavfi(const QString &source) { return {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), source}; }

inline QStringList video(const QString &rate) { return lavfi(QStringLiteral("testsrc=size=64x36:rate=") + rate); }

// A 440 Hz tone scaled by `volume` (1.0 measures about -21 dB), or digital silence for 0.
inline QStringList tone(double volume)
{
    return lavfi(volume == 0.0 ? QStringLiteral("anullsrc=channel_layout=mono:sample_rate=44100")
                               : QStringLiteral("sine=frequency=440,volume=%1").arg(volume));
}

// One second of a file whose audio streams are these tones, in this order, and no video.
inline bool makeAudio(const QString &path, const QList<double> &volumes)
{
    QStringList arguments;
    for (double volume : volumes)
        arguments += tone(volume);
    for (qsizetype i = 0; i < volumes.size(); ++i)
        arguments += QStringList{QStringLiteral("-map"), QStringLiteral("%1:a").arg(i)};
    return make(path, arguments + QStringList{"-t", "1", "-c:a", "pcm_s16le"});
}

inline bool writeText(const QString &path, const QByteArray &contents)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

// Locations with no ffprobe anywhere: a candidate that does not exist and a fall-back name no
// PATH holds.
inline ToolLocations withoutFFprobe(const QString &temporaryDirectory)
{
    ToolLocations tools = ToolLocations::platformDefault();
    tools.ffprobeCandidates = {QDir(temporaryDirectory).filePath(QStringLiteral("no-such-dir/ffprobe"))};
    tools.ffprobeFallback = QStringLiteral("vorlix-test-no-such-ffprobe");
    tools.temporaryDirectory = temporaryDirectory;
    return tools;
}

// What the probes learnt about a clip, in one line: "tc 06:00:00:00, fps 25, 64x36, 1 s".
inline QString facts(const MediaClip &clip)
{
    QStringList found;
    if (clip.timecode)
        found.append(QStringLiteral("tc ") + *clip.timecode);
    if (clip.detectedFps)
        found.append(QStringLiteral("fps %1").arg(*clip.detectedFps));
    if (clip.width || clip.height)
        found.append(QStringLiteral("%1x%2").arg(clip.width.value_or(0)).arg(clip.height.value_or(0)));
    return (found << QStringLiteral("%1 s").arg(qRound(clip.duration))).join(QStringLiteral(", "));
}

} // namespace MediaFixtures
