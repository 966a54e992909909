#include "export/ResolveEdl.h"

#include "export/ExportClips.h"
#include "export/MarkerTypes.h"
#include "export/TextCleaning.h"
#include "model/ClipMatcher.h"

using namespace Qt::StringLiterals;

namespace {

// Event lines are fields separated by spaces, one event a line: a timecode from the service is
// written as stored only as far as it keeps that shape.
QString eventTimecode(const QString &timecode)
{
    return safeASCII(timecode).remove(u' ');
}

} // namespace

QString generateResolveEDL(const ShootSession &session)
{
    QString text;
    text.reserve(256 + session.markers.size() * 260);
    text += u"TITLE: "_s;
    text += safeXML(session.title);
    text += u"\nFCM: NON-DROP FRAME\n\n"_s;
    for (qsizetype i = 0; i < session.markers.size(); ++i) {
        const ShootMarker &marker = session.markers[i];
        const QString in = eventTimecode(marker.timecode);
        const QString out = eventTimecode(marker.timecodeOut ? *marker.timecodeOut : ClipMatcher::nudgeTC(marker.timecode, 1, session.fps));
        const QString name = safeXML(markerLabel(marker));
        const QString quote = marker.quote ? u" -- \""_s + safeXML(*marker.quote) + u'"' : QString();

        text += QString::number(i + 1).rightJustified(3, u'0');
        text += u"  001      V     C        "_s;
        text += in + u' ' + out + u' ' + in + u' ' + out + u'\n';
        if (marker.markerType == u"inout"_s || marker.markerType == u"earmark"_s)
            text += u"* FROM CLIP NAME: "_s + name + quote + u'\n';
        text += u"|C:"_s + markerTypeResolveColor(marker.markerType) + u" |M:"_s + name + quote + u" |D:1\n\n"_s;
    }
    return text;
}
