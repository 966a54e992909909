#include "export/Subtitles.h"

#include "export/ExportClips.h"
#include "export/PlainLine.h"
#include "time/Timecode.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 lastCueMilliseconds = 5000;
constexpr qint64 shortestCueMilliseconds = 1000;

struct Cue {
    qint64 start = 0; // milliseconds
    qint64 end = 0;
    QString speaker;
    QString text;
};

QList<Cue> cues(const ShootSession &session, const QList<TranscriptSegment> &utterances)
{
    const int fps = session.fps;
    QList<Cue> cues;
    cues.reserve(utterances.size());
    for (const TranscriptSegment &utterance : utterances) {
        QString text = plainLine(utterance.text);
        if (!text.isEmpty())
            cues.append({tcToFrames(utterance.timecode, fps), 0, plainLine(utterance.speaker), std::move(text)});
    }
    if (cues.isEmpty())
        return cues;

    const qint64 origin = session.matchedClips.isEmpty()
                              ? cues.first().start
                              : tcToFrames(clipsInTimecodeOrder(session.matchedClips).first()->timecode.value_or(Timecode::zero), fps);
    for (Cue &cue : cues) {
        const qint64 frames = std::max<qint64>(0, Frames::subtract(cue.start, origin));
        cue.start = fps > 0 ? Frames::multiply(frames, 1000) / fps : 0;
    }
    for (qsizetype i = 0; i < cues.size(); ++i) {
        Cue &cue = cues[i];
        cue.end = i + 1 < cues.size() ? cues[i + 1].start : Frames::add(cue.start, lastCueMilliseconds);
        if (cue.end <= cue.start)
            cue.end = Frames::add(cue.start, shortestCueMilliseconds);
    }
    return cues;
}

QString timestamp(qint64 milliseconds, QChar separator)
{
    return QString::asprintf("%02lld:%02lld:%02lld", qlonglong(milliseconds / 3600000), qlonglong(milliseconds / 60000 % 60),
                             qlonglong(milliseconds / 1000 % 60))
           + separator + QString::asprintf("%03lld", qlonglong(milliseconds % 1000));
}

QString vttEscaped(QStringView text)
{
    QString escaped;
    escaped.reserve(text.size());
    for (QChar c : text) {
        switch (c.unicode()) {
        case '&': escaped += "&amp;"_L1; break;
        case '<': escaped += "&lt;"_L1; break;
        case '>': escaped += "&gt;"_L1; break;
        default: escaped += c;
        }
    }
    return escaped;
}

} // namespace

QString generateSRT(const ShootSession &session, const QList<TranscriptSegment> &utterances)
{
    QString text;
    text.reserve(utterances.size() * 120);
    qsizetype number = 0;
    for (const Cue &cue : cues(session, utterances)) {
        text += QString::number(++number);
        text += u"\r\n"_s;
        text += timestamp(cue.start, u',');
        text += u" --> "_s;
        text += timestamp(cue.end, u',');
        text += u"\r\n"_s;
        if (!cue.speaker.isEmpty())
            text += cue.speaker + u": "_s;
        text += cue.text;
        text += u"\r\n\r\n"_s;
    }
    return text;
}

QString generateWebVTT(const ShootSession &session, const QList<TranscriptSegment> &utterances)
{
    QString text = u"WEBVTT\n"_s;
    text.reserve(utterances.size() * 120);
    for (const Cue &cue : cues(session, utterances)) {
        text += u'\n';
        text += timestamp(cue.start, u'.');
        text += u" --> "_s;
        text += timestamp(cue.end, u'.');
        text += u'\n';
        // A space keeps a name ending in "--" from forming "-->" with the tag's end.
        if (!cue.speaker.isEmpty())
            text += u"<v "_s + vttEscaped(cue.speaker) + (cue.speaker.endsWith(u'-') ? u" >"_s : u">"_s);
        text += vttEscaped(cue.text);
        text += u'\n';
    }
    return text;
}
