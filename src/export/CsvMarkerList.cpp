#include "export/CsvMarkerList.h"

#include "export/ExportClips.h"
#include "export/PlainLine.h"

using namespace Qt::StringLiterals;

namespace {

void appendCell(QString &text, QStringView value, bool last)
{
    QString cell = plainLine(value);
    if (!cell.isEmpty() && (cell[0] == u'=' || cell[0] == u'+' || cell[0] == u'-' || cell[0] == u'@'))
        cell.prepend(u'\'');
    text += u'"';
    text += cell.replace(u'"', u"\"\""_s);
    text += last ? u"\"\r\n"_s : u"\","_s;
}

// Where each marker sits: the first clip in clip order whose span holds it, counted at the
// session's rate like the xmeml sequence.
QList<const MediaClip *> clipOfEachMarker(const ShootSession &session)
{
    QList<const MediaClip *> clips(session.markers.size(), nullptr);
    const MarkerIndex frames(session.markers, session.fps);
    for (const ClipSpan &span : clipSpans(session.matchedClips, session.fps)) {
        for (qsizetype m : frames.on(span)) {
            if (!clips[m])
                clips[m] = span.clip;
        }
    }
    return clips;
}

} // namespace

QString generateMarkerCSV(const ShootSession &session)
{
    QString text;
    text.reserve(128 + session.markers.size() * 200);
    text += u"\uFEFF\"Type\",\"In\",\"Out\",\"Summary\",\"Quote\",\"Note\",\"Clip\",\"On matched footage\"\r\n"_s;
    const QList<const MediaClip *> clips = clipOfEachMarker(session);
    for (qsizetype m = 0; m < session.markers.size(); ++m) {
        const ShootMarker &marker = session.markers[m];
        appendCell(text, marker.markerType, false);
        appendCell(text, marker.timecode, false);
        appendCell(text, marker.timecodeOut.value_or(QString()), false);
        appendCell(text, marker.summary.value_or(QString()), false);
        appendCell(text, marker.quote.value_or(QString()), false);
        appendCell(text, marker.manualNote.value_or(QString()), false);
        appendCell(text, clips[m] ? clips[m]->filename : QString(), false);
        appendCell(text, clips[m] ? u"yes"_s : u"no"_s, true);
    }
    return text;
}
