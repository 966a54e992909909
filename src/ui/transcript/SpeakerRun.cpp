#include "ui/transcript/SpeakerRun.h"

#include <cstdlib>

QList<SpeakerRun> buildSpeakerRuns(const QList<TranscriptSegment> &segments)
{
    QList<SpeakerRun> runs;
    for (const TranscriptSegment &segment : segments) {
        if (runs.isEmpty() || runs.last().speaker != segment.speaker)
            runs.append(SpeakerRun{segment.speaker, segment.timecode, {}});
        runs.last().segments.append(segment);
    }
    return runs;
}

Rgb speakerColor(const QString &speaker)
{
    int index = 0;
    if (!speaker.isEmpty()) {
        const char16_t last = speaker.back().unicode();
        if (last < 128)
            index = std::abs(int(last) - int(u'A'));
    }
    return speakerColors[std::size_t(index) % speakerColors.size()];
}

QString speakerLabel(const QString &speaker)
{
    QString name = speaker;
    name.remove(QStringLiteral("SPEAKER "));
    qsizetype begin = 0;
    qsizetype end = name.size();
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\t'; };
    while (begin < end && isBlank(name[begin]))
        ++begin;
    while (end > begin && isBlank(name[end - 1]))
        --end;
    name = name.mid(begin, end - begin);
    return QStringLiteral("Speaker ") + (name.isEmpty() ? QStringLiteral("A") : name);
}
