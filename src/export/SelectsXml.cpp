#include "export/SelectsXml.h"

#include "export/ExportClips.h"
#include "export/TextCleaning.h"
#include "export/XmemlText.h"
#include "time/Timecode.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString selectName(const ShootMarker &select, const QHash<QString, QString> &grades)
{
    QString name = select.summary.value_or(select.raw.value_or(u"Select"_s));
    const auto grade = grades.constFind(select.id);
    if (grade != grades.constEnd())
        name += u" [Grade "_s + *grade + u']';
    return safeXML(name);
}

void appendLinks(XmemlText &text, const QString &n)
{
    text.link(10, u"clipitem-v"_s + n, u"video"_s, 1);
    text.link(10, u"clipitem-a"_s + n, u"audio"_s, 1);
}

} // namespace

QString generateSelectsXML(const ShootSession &session, const QSet<QString> &selectedSegmentIds,
                           const QHash<QString, QString> &segmentGrades)
{
    QList<const ShootMarker *> selects;
    for (const ShootMarker &marker : session.markers) {
        if (selectedSegmentIds.contains(marker.id))
            selects.append(&marker);
    }
    if (selects.isEmpty())
        return {};
    std::stable_sort(selects.begin(), selects.end(),
                     [](const ShootMarker *a, const ShootMarker *b) { return a->createdAt < b->createdAt; });

    const int fps = session.fps;
    const QList<ClipSpan> spans = clipSpans(session.matchedClips, fps);

    // Places first, so the header can carry the final length and the items go straight into the
    // document without a second copy.
    struct Placement {
        const ShootMarker *select;
        const ClipSpan *span;
        qsizetype n;
        qint64 sourceIn, sourceOut, start, end;
    };
    QList<Placement> placements;
    placements.reserve(selects.size());
    qint64 position = 0;
    for (qsizetype i = 0; i < selects.size(); ++i) {
        const ShootMarker &select = *selects[i];
        const qint64 inFrame = tcToFrames(select.timecode, fps);
        const auto span = std::find_if(spans.cbegin(), spans.cend(),
                                       [inFrame](const ClipSpan &s) { return s.contains(inFrame); });
        if (span == spans.cend())
            continue;
        const qint64 outFrame = select.timecodeOut ? tcToFrames(*select.timecodeOut, fps)
                                                   : Frames::add(inFrame, qint64(fps) * 10);
        const qint64 end = Frames::add(position, Frames::subtract(outFrame, inFrame));
        placements.append({&select, &*span, i + 1, Frames::subtract(inFrame, span->start),
                           Frames::subtract(outFrame, span->start), position, end});
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
        names.append(selectName(*p.select, segmentGrades));
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
