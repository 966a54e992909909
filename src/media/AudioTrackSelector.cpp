#include "media/AudioTrackSelector.h"

#include "media/FFprobeOutput.h"
#include "media/ToolRunner.h"
#include "time/NumberText.h"

#include <QFile>
#include <QProcess>
#include <QStringDecoder>
#include <algorithm>

namespace {

QStringList audioStreamQuery(const QStringList &entries, const QString &path)
{
    return QStringList{QStringLiteral("-v"), QStringLiteral("quiet"), QStringLiteral("-of"), QStringLiteral("json")} + entries
           + QStringList{QStringLiteral("-select_streams"), QStringLiteral("a"), path};
}

} // namespace

std::optional<double> meanVolumeFromLog(const QByteArray &log)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder.decode(log);
    if (decoder.hasError())
        return std::nullopt;
    const QLatin1String marker("mean_volume: ");
    const qsizetype start = text.indexOf(marker);
    if (start < 0)
        return std::nullopt;
    const qsizetype from = start + marker.size();
    const qsizetype space = text.indexOf(QLatin1Char(' '), from);
    return parseStrictDecimal(QStringView(text).mid(from, space < 0 ? -1 : space - from));
}

int findLoudestAudioTrack(const QString &filePath, const QString &ffmpeg, const ToolLocations &tools)
{
    // Without a known ffprobe the last, system location is still tried; its failure gives 0.
    const QString ffprobe = tools.existingFFprobe().value_or(tools.ffprobeCandidates.value(tools.ffprobeCandidates.size() - 1));
    const ToolRun listing = runTool(ffprobe,
                                    audioStreamQuery({QStringLiteral("-show_entries"), QStringLiteral("stream=index,codec_type")}, filePath),
                                    ToolOutput::Captured, ToolOutput::NullDevice, probeTimeLimit);
    const qsizetype streams = std::min<qsizetype>(FFprobeOutput::streamCount(listing.standardOutput), maximumMeasuredAudioStreams);

    int best = 0;
    double bestLevel = -200.0;
    for (int i = 0; i < streams; ++i) {
        const QString sample = tools.temporaryFile(QStringLiteral("vorlix-levelcheck-%1.wav").arg(i));
        runTool(ffmpeg,
                {QStringLiteral("-i"), filePath, QStringLiteral("-vn"), QStringLiteral("-map"), QStringLiteral("0:a:%1").arg(i),
                 QStringLiteral("-t"), QString::number(measuredAudioSeconds), QStringLiteral("-acodec"), QStringLiteral("pcm_s16le"),
                 QStringLiteral("-ar"), QStringLiteral("16000"), QStringLiteral("-ac"), QStringLiteral("1"), QStringLiteral("-y"), sample},
                ToolOutput::NullDevice, ToolOutput::NullDevice, levelCheckTimeLimit);
        const ToolRun measurement = runTool(ffmpeg,
                                            {QStringLiteral("-i"), sample, QStringLiteral("-af"), QStringLiteral("volumedetect"),
                                             QStringLiteral("-f"), QStringLiteral("null"), QProcess::nullDevice()},
                                            ToolOutput::NullDevice, ToolOutput::Captured, levelCheckTimeLimit);
        const auto level = meanVolumeFromLog(measurement.standardError);
        if (level && *level > bestLevel) {
            best = i;
            bestLevel = *level;
        }
        QFile::remove(sample);
    }
    return best;
}

int detectAudioTrackOffset(const std::optional<QString> &path, const ToolLocations &tools)
{
    if (!path)
        return 1;
    const auto ffprobe = tools.existingFFprobe();
    if (!ffprobe)
        return 1;
    const ToolRun run = runTool(*ffprobe, audioStreamQuery({QStringLiteral("-show_streams")}, *path),
                                ToolOutput::Captured, ToolOutput::Discarded, probeTimeLimit);
    return FFprobeOutput::firstStreamWithChannels(run.standardOutput).value_or(1);
}
