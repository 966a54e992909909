#include "export/ResolveEdl.h"

#include "export/ExportClips.h"
#include "export/MarkerTypes.h"
#include "export/TextCleaning.h"
#include "timecode/ClipMatcher.h"

using namespace Qt::StringLiterals;

QString generateResolveEDL(const ShootSession &session)
{
    QString text;
    text.reserve(256 + session.markers.size() * 260);
    text += "TITLE: "_L1;
    text += safeXML(session.title);
    text += "\nFCM: NON-DROP FRAME\n\n"_L1;
    for (qsizetype i = 0; i < session.markers.size(); ++i) {
        const ShootMarker &marker = session.markers[i];
        const QString &in = marker.timecode;
        const QString out = marker.timecodeOut ? *marker.timecodeOut : ClipMatcher::nudgeTC(marker.timecode, 1, session.fps);
        const QString name = safeXML(markerLabel(marker));
        const QString quote = marker.quote ? " -- \""_L1 + safeXML(*marker.quote) + u'"' : QString();

        text += QString::number(i + 1).rightJustified(3, u'0');
        text += "  001      V     C        "_L1;
        text += in + u' ' + out + u' ' + in + u' ' + out + u'\n';
        if (marker.markerType == "inout"_L1 || marker.markerType == "earmark"_L1)
            text += "* FROM CLIP NAME: "_L1 + name + quote + u'\n';
        text += "|C:"_L1 + markerTypeResolveColor(marker.markerType) + " |M:"_L1 + name + quote + " |D:1\n\n"_L1;
    }
    return text;
}
