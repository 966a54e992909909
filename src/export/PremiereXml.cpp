#include "export/PremiereXml.h"

#include "export/ExportClips.h"
#include "export/MarkerTypes.h"
#include "export/TextCleaning.h"
#include "export/XmemlText.h"
#include "media/AudioTrackSelector.h"
#include "time/Timecode.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString markerName(const ShootMarker &marker)
{
    return safeXML(u'[' + markerTypePrefix(marker.markerType) + u"] "_s + markerLabel(marker));
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
    text.line(4, u"<media>"_s);
    text.line(6, u"<video>"_s);
    text.line(8, u"<format>"_s);
    text.line(10, u"<samplecharacteristics>"_s);
    text.line(12, u"<width>1920</width>"_s);
    text.line(12, u"<height>1080</height>"_s);
    text.line(12, u"<pixelaspectratio>square</pixelaspectratio>"_s);
    text.line(12, u"<fielddominance>none</fielddominance>"_s);
    text.line(10, u"</samplecharacteristics>"_s);
    text.line(8, u"</format>"_s);
    text.line(8, u"<track/>"_s);
    text.line(6, u"</video>"_s);
    text.line(6, u"<audio>"_s);
    text.line(8, u"<format>"_s);
    text.line(10, u"<samplecharacteristics>"_s);
    text.line(12, u"<samplerate>48000</samplerate>"_s);
    text.line(12, u"<depth>16</depth>"_s);
    text.line(12, u"<samplesize>16</samplesize>"_s);
    text.line(10, u"</samplecharacteristics>"_s);
    text.line(8, u"</format>"_s);
    text.line(8, u"<track/>"_s);
    text.line(6, u"</audio>"_s);
    text.line(4, u"</media>"_s);
    for (qsizetype i = 0; i < session.markers.size(); ++i) {
        const ShootMarker &marker = session.markers[i];
        const qint64 in = Frames::subtract(frames.frame(i), start);
        const qint64 out = marker.timecodeOut
                               ? Frames::add(in, Frames::subtract(tcToFrames(*marker.timecodeOut, fps), frames.frame(i)))
                               : -1;
        appendMarker(text, 10, marker, in, out);
    }
    text.line(2, u"</sequence>"_s);
    text.line(0, u"</xmeml>"_s);
    return text.take();
}

void appendLinks(XmemlText &text, const QString &n)
{
    text.link(6, u"clipitem-v"_s + n, u"video"_s, 1);
    text.link(6, u"clipitem-a"_s + n + u"-1"_s, u"audio"_s, 1);
    text.link(6, u"clipitem-a"_s + n + u"-2"_s, u"audio"_s, 2);
}

void appendAudioItem(XmemlText &text, const QString &n, int k, const QString &name, const ClipSpan &span,
                     qint64 start, qint64 sourceTrack)
{
    text.clipItemOpening(4, u"clipitem-a"_s + n + u'-' + QString::number(k), name, span.frames, 0, span.frames,
                         start, Frames::add(start, span.frames));
    text.line(6, u"<file id=\"file-"_s, n, u"\"/>"_s);
    text.line(6, u"<sourcetrack>"_s);
    text.line(8, u"<mediatype>audio</mediatype>"_s);
    text.line(8, u"<trackindex>"_s, QString::number(sourceTrack), u"</trackindex>"_s);
    text.line(6, u"</sourcetrack>"_s);
    appendLinks(text, n);
    text.line(4, u"</clipitem>"_s);
}

QString sequenceWithClips(const ShootSession &session, int sourceTrack)
{
    const int fps = session.fps;
    const QList<ClipSpan> spans = clipSpans(session.matchedClips, fps);
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
    video.line(4, u"<format>"_s);
    video.line(6, u"<samplecharacteristics>"_s);
    video.line(8, u"<width>"_s, QString::number(firstClip.width.value_or(1920)), u"</width>"_s);
    video.line(8, u"<height>"_s, QString::number(firstClip.height.value_or(1080)), u"</height>"_s);
    video.line(6, u"</samplecharacteristics>"_s);
    video.line(4, u"</format>"_s);
    video.line(4, u"<media>"_s);
    video.line(6, u"<video>"_s);
    video.line(8, u"<track>"_s);

    for (qsizetype c = 0; c < spans.size(); ++c) {
        const ClipSpan &span = spans[c];
        const QString n = QString::number(c + 1);
        const QString name = safeXML(span.clip->filename);
        const qint64 start = Frames::subtract(span.start, seqStart);
        video.clipItemOpening(4, u"clipitem-v"_s + n, name, span.frames, 0, span.frames, start,
                              Frames::add(start, span.frames));
        video.fileElement(6, u"file-"_s + n, name, span);
        for (qsizetype m : frames.on(span)) {
            const ShootMarker &marker = session.markers[m];
            const qint64 out = marker.timecodeOut ? Frames::subtract(tcToFrames(*marker.timecodeOut, fps), span.start) : -1;
            appendMarker(video, 2, marker, Frames::subtract(frames.frame(m), span.start), out);
        }
        appendLinks(video, n);
        video.line(4, u"</clipitem>"_s);
        appendAudioItem(firstAudio, n, 1, name, span, start, sourceTrack);
        appendAudioItem(secondAudio, n, 2, name, span, start, qint64(sourceTrack) + 1);
    }

    video.line(8, u"</track>"_s);
    video.line(6, u"</video>"_s);
    video.line(6, u"<audio>"_s);
    video.line(8, u"<track>"_s);
    video.append(firstAudio.take());
    video.line(8, u"</track>"_s);
    video.line(8, u"<track>"_s);
    video.append(secondAudio.take());
    video.line(8, u"</track>"_s);
    video.line(6, u"</audio>"_s);
    video.sequenceEnd();
    return video.take();
}

} // namespace

QString generatePremiereXML(const ShootSession &session, int sourceTrack)
{
    return session.matchedClips.isEmpty() ? sequenceWithoutClips(session) : sequenceWithClips(session, sourceTrack);
}

int premiereSourceTrack(const ShootSession &session, const ToolLocations &tools)
{
    // Without clips there is no audio track to point at, and no file to probe.
    if (session.matchedClips.isEmpty())
        return 1;
    return detectAudioTrackOffset(clipsInTimecodeOrder(session.matchedClips).first()->path, tools);
}
