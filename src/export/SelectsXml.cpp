#include "export/SelectsXml.h"

#include "export/ExportClips.h"
#include "export/TextCleaning.h"
#include "export/XmemlText.h"
#include "time/Timecode.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString selectName(const QString &label, const QString &id, const QHash<QString, QString> &grades)
{
    QString name = label;
    const auto grade = grades.constFind(id);
    if (grade != grades.constEnd())
        name += u" [Grade "_s + *grade + u']';
    return safeXML(name);
}

void appendLinks(XmemlText &text, const QString &n)
{
    text.link(10, u"clipitem-v"_s + n, u"video"_s, 1);
    text.link(10, u"clipitem-a"_s + n, u"audio"_s, 1);
}

// A picked moment, whether a marker or an utterance, in frames at the session's rate.
struct Pick {
    QString id;
    QString label;
    qint64 inFrame;
    qint64 outFrame;
};

QList<Pick> picks(const ShootSession &session, const QList<TranscriptSegment> &utterances,
                  const QSet<QString> &selectedSegmentIds)
{
    const int fps = session.fps;
    const qint64 defaultLength = qint64(fps) * 10;
    QList<const ShootMarker *> markers;
    QSet<QString> markerIds;
    for (const ShootMarker &marker : session.markers) {
        markerIds.insert(marker.id);
        if (selectedSegmentIds.contains(marker.id))
            markers.append(&marker);
    }
    std::stable_sort(markers.begin(), markers.end(),
                     [](const ShootMarker *a, const ShootMarker *b) { return a->createdAt < b->createdAt; });

    QList<Pick> result;
    for (const ShootMarker *marker : markers) {
        const qint64 in = tcToFrames(marker->timecode, fps);
        const qint64 out = marker->timecodeOut ? tcToFrames(*marker->timecodeOut, fps) : Frames::add(in, defaultLength);
        result.append({marker->id, marker->summary.value_or(marker->raw.value_or(u"Select"_s)), in, out});
    }
    // A service transcript's ids are never marker ids, so its picks name utterances; an utterance
    // runs until the next one starts.
    for (qsizetype i = 0; i < utterances.size(); ++i) {
        const TranscriptSegment &utterance = utterances[i];
        if (!selectedSegmentIds.contains(utterance.id) || markerIds.contains(utterance.id))
            continue;
        const qint64 in = tcToFrames(utterance.timecode, fps);
        const qint64 next = i + 1 < utterances.size() ? tcToFrames(utterances[i + 1].timecode, fps) : in;
        result.append({utterance.id, utterance.text, in, next > in ? next : Frames::add(in, defaultLength)});
    }
    return result;
}

} // namespace

QString generateSelectsXML(const ShootSession &session, const QSet<QString> &selectedSegmentIds,
                           const QHash<QString, QString> &segmentGrades, const QList<TranscriptSegment> &utterances)
{
    const QList<Pick> selects = picks(session, utterances, selectedSegmentIds);
    if (selects.isEmpty())
        return {};

    const int fps = session.fps;
    const QList<ClipSpan> spans = clipSpans(session.matchedClips, fps);

    // Places first, so the header can carry the final length and the items go straight into the
    // document without a second copy.
    struct Placement {
        const Pick *select;
        const ClipSpan *span;
        qsizetype n;
        qint64 sourceIn, sourceOut, start, end;
    };
    QList<Placement> placements;
    placements.reserve(selects.size());
    qint64 position = 0;
    for (qsizetype i = 0; i < selects.size(); ++i) {
        const Pick &select = selects[i];
        const auto span = std::find_if(spans.cbegin(), spans.cend(),
                                       [&select](const ClipSpan &s) { return s.contains(select.inFrame); });
        if (span == spans.cend())
            continue;
        const qint64 end = Frames::add(position, Frames::subtract(select.outFrame, select.inFrame));
        placements.append({&select, &*span, i + 1, Frames::subtract(select.inFrame, span->start),
                           Frames::subtract(select.outFrame, span->start), position, end});
        position = end;
    }

    XmemlText text(4096 + placements.size() * 3200, fps);
    text.sequenceHeader(safeXML(session.title) + u" - Selects"_s, position, u"01:00:00:00"_s, qint64(fps) * 3600);
    text.line(4, u"<media>"_s);
    text.line(6, u"<video>"_s);
    text.line(8, u"<track>"_s);
    QStringList names;
    names.reserve(placements.size());
    for (const Placement &p : placements) {
        const QString n = QString::number(p.n);
        names.append(selectName(p.select->label, p.select->id, segmentGrades));
        text.clipItemOpening(8, u"clipitem-v"_s + n, names.last(), p.span->frames, p.sourceIn, p.sourceOut, p.start, p.end);
        text.fileElement(10, u"file-"_s + n, safeXML(p.span->clip->filename), *p.span);
        appendLinks(text, n);
        text.line(8, u"</clipitem>"_s);
    }
    text.line(8, u"</track>"_s);
    text.line(6, u"</video>"_s);
    text.line(6, u"<audio>"_s);
    text.line(8, u"<track>"_s);
    for (qsizetype i = 0; i < placements.size(); ++i) {
        const Placement &p = placements[i];
        const QString n = QString::number(p.n);
        text.clipItemOpening(8, u"clipitem-a"_s + n, names[i], p.span->frames, p.sourceIn, p.sourceOut, p.start, p.end);
        text.line(10, u"<file id=\"file-"_s, n, u"\"/>"_s);
        appendLinks(text, n);
        text.line(8, u"</clipitem>"_s);
    }
    text.line(8, u"</track>"_s);
    text.line(8, u"<track/>"_s);
    text.line(6, u"</audio>"_s);
    text.sequenceEnd();
    return text.take();
}
