#include "export/PremiereXml.h"

#include "export/ExportClips.h"
#include "export/MarkerTypes.h"
#include "export/TextCleaning.h"
#include "export/XmemlText.h"
#include "media/AudioTrackSelector.h"
#include "timecode/Timecode.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString markerName(const ShootMarker &marker)
{
    return safeXML(u'[' + markerTypePrefix(marker.markerType) + "] "_L1 + markerLabel(marker));
}

QString markerComment(const ShootMarker &marker)
{
    return marker.quote ? safeXML(*marker.quote) : QString();
}

void appendMarker(XmemlText &text, int indent, const ShootMarker &marker, qint64 in, qint64 out)
{
    text.marker(indent, markerComment(marker), markerName(marker), in, out, markerTypeColorIndex(marker.markerType));
}

QString sequenceWithoutClips(const ShootSession &session)
{
    const int fps = session.fps;
    const MarkerIndex frames(session.markers, fps);
    const qint64 preRoll = qint64(fps) * 10;
    const qint64 first = frames.earliest();
    const qint64 last = frames.latest();
    const qint64 start = Frames::subtract(first, preRoll);
    const qint64 duration = Frames::subtract(Frames::add(last, preRoll), start);
    const QString headerTimecode = session.markers.isEmpty() ? Timecode::zero : session.markers.first().timecode;

    XmemlText text(2048 + session.markers.size() * 320, fps);
    text.sequenceHeader(safeXML(session.title), duration, headerTimecode, start);
    text.line(4, "<media>"_L1);
    text.line(6, "<video>"_L1);
    text.line(8, "<format>"_L1);
    text.line(10, "<samplecharacteristics>"_L1);
    text.line(12, "<width>1920</width>"_L1);
    text.line(12, "<height>1080</height>"_L1);
    text.line(12, "<pixelaspectratio>square</pixelaspectratio>"_L1);
    text.line(12, "<fielddominance>none</fielddominance>"_L1);
    text.line(10, "</samplecharacteristics>"_L1);
    text.line(8, "</format>"_L1);
    text.line(8, "<track/>"_L1);
    text.line(6, "</video>"_L1);
    text.line(6, "<audio>"_L1);
    text.line(8, "<format>"_L1);
    text.line(10, "<samplecharacteristics>"_L1);
    text.line(12, "<samplerate>48000</samplerate>"_L1);
    text.line(12, "<depth>16</depth>"_L1);
    text.line(12, "<samplesize>16</samplesize>"_L1);
    text.line(10, "</samplecharacteristics>"_L1);
    text.line(8, "</format>"_L1);
    text.line(8, "<track/>"_L1);
    text.line(6, "</audio>"_L1);
    text.line(4, "</media>"_L1);
    for (qsizetype i = 0; i < session.markers.size(); ++i) {
        const ShootMarker &marker = session.markers[i];
        const qint64 in = Frames::subtract(frames.frame(i), start);
        const qint64 out = marker.timecodeOut
                               ? Frames::add(in, Frames::subtract(tcToFrames(*marker.timecodeOut, fps), frames.frame(i)))
                               : -1;
        appendMarker(text, 10, marker, in, out);
    }
    text.line(2, "</sequence>"_L1);
    text.line(0, "</xmeml>"_L1);
    return text.take();
}

void appendLinks(XmemlText &text, const QString &n)
{
    text.link(6, "clipitem-v"_L1 + n, "video"_L1, 1);
    text.link(6, "clipitem-a"_L1 + n + "-1"_L1, "audio"_L1, 1);
    text.link(6, "clipitem-a"_L1 + n + "-2"_L1, "audio"_L1, 2);
}

void appendAudioItem(XmemlText &text, const QString &n, int k, const QString &name, const ClipSpan &span,
                     qint64 start, qint64 sourceTrack)
{
    text.clipItemOpening(4, "clipitem-a"_L1 + n + u'-' + QString::number(k), name, span.frames, 0, span.frames,
                         start, Frames::add(start, span.frames));
    text.line(6, "<file id=\"file-"_L1, n, "\"/>"_L1);
    text.line(6, "<sourcetrack>"_L1);
    text.line(8, "<mediatype>audio</mediatype>"_L1);
    text.line(8, "<trackindex>"_L1, QString::number(sourceTrack), "</trackindex>"_L1);
    text.line(6, "</sourcetrack>"_L1);
    appendLinks(text, n);
    text.line(4, "</clipitem>"_L1);
}

QString sequenceWithClips(const ShootSession &session, int sourceTrack)
{
    const int fps = session.fps;
    QList<ClipSpan> spans;
    for (const MediaClip *clip : clipsInTimecodeOrder(session.matchedClips))
        spans.append(clipSpan(*clip, fps));
    const qint64 seqStart = spans.first().start;
    qint64 seqEnd = spans.first().end();
    for (const ClipSpan &span : spans)
        seqEnd = std::max(seqEnd, span.end());
    const MarkerIndex frames(session.markers, fps);

    const qsizetype perClip = 6000;
    XmemlText video(2048 + spans.size() * perClip + session.markers.size() * 300, fps);
    XmemlText firstAudio(spans.size() * perClip / 2, fps);
    XmemlText secondAudio(spans.size() * perClip / 2, fps);

    const MediaClip &firstClip = *spans.first().clip;
    video.sequenceHeader(safeXML(session.title), Frames::subtract(seqEnd, seqStart), spans.first().timecode, seqStart);
    video.line(4, "<format>"_L1);
    video.line(6, "<samplecharacteristics>"_L1);
    video.line(8, "<width>"_L1, QString::number(firstClip.width.value_or(1920)), "</width>"_L1);
    video.line(8, "<height>"_L1, QString::number(firstClip.height.value_or(1080)), "</height>"_L1);
    video.line(6, "</samplecharacteristics>"_L1);
    video.line(4, "</format>"_L1);
    video.line(4, "<media>"_L1);
    video.line(6, "<video>"_L1);
    video.line(8, "<track>"_L1);

    for (qsizetype c = 0; c < spans.size(); ++c) {
        const ClipSpan &span = spans[c];
        const QString n = QString::number(c + 1);
        const QString name = safeXML(span.clip->filename);
        const qint64 start = Frames::subtract(span.start, seqStart);
        video.clipItemOpening(4, "clipitem-v"_L1 + n, name, span.frames, 0, span.frames, start,
                              Frames::add(start, span.frames));
        video.fileElement(6, "file-"_L1 + n, name, span);
        for (qsizetype m : frames.within(span.start, span.end())) {
            const ShootMarker &marker = session.markers[m];
            const qint64 out = marker.timecodeOut ? Frames::subtract(tcToFrames(*marker.timecodeOut, fps), span.start) : -1;
            appendMarker(video, 2, marker, Frames::subtract(frames.frame(m), span.start), out);
        }
        appendLinks(video, n);
        video.line(4, "</clipitem>"_L1);
        appendAudioItem(firstAudio, n, 1, name, span, start, sourceTrack);
        appendAudioItem(secondAudio, n, 2, name, span, start, qint64(sourceTrack) + 1);
    }

    video.line(8, "</track>"_L1);
    video.line(6, "</video>"_L1);
    video.line(6, "<audio>"_L1);
    video.line(8, "<track>"_L1);
    video.append(firstAudio.take());
    video.line(8, "</track>"_L1);
    video.line(8, "<track>"_L1);
    video.append(secondAudio.take());
    video.line(8, "</track>"_L1);
    video.line(6, "</audio>"_L1);
    video.sequenceEnd();
    return video.take();
}

} // namespace

QString generatePremiereXML(const ShootSession &session, int sourceTrack)
{
    return session.matchedClips.isEmpty() ? sequenceWithoutClips(session) : sequenceWithClips(session, sourceTrack);
}

QString generatePremiereXML(const ShootSession &session)
{
    if (session.matchedClips.isEmpty())
        return sequenceWithoutClips(session);
    return sequenceWithClips(session, detectAudioTrackOffset(clipsInTimecodeOrder(session.matchedClips).first()->path));
}
