#include "export/AvidMarkerList.h"

#include "export/ExportClips.h"
#include "export/MarkerTypes.h"
#include "export/PlainLine.h"
#include "export/TextCleaning.h"
#include "time/Timecode.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Media Composer shows whoever placed a marker; these come from the logging service.
const QString user = u"Vorlix"_s;

QString comment(const ShootMarker &marker)
{
    QString text = u'[' + markerTypePrefix(marker.markerType) + u"] "_s + markerLabel(marker);
    if (marker.quote)
        text += u" - "_s + *marker.quote;
    // Printable ASCII on one line keeps tabs and line breaks out of the fields.
    return safeASCII(plainLine(text));
}

} // namespace

QString generateAvidMarkerList(const ShootSession &session)
{
    QString text;
    text.reserve(session.markers.size() * 120);
    for (const ShootMarker &marker : session.markers) {
        qint64 duration = 1;
        if (marker.timecodeOut)
            duration = std::max<qint64>(1, Frames::subtract(tcToFrames(*marker.timecodeOut, session.fps),
                                                           tcToFrames(marker.timecode, session.fps)));
        text += user;
        text += u'\t';
        text += safeASCII(marker.timecode);
        text += u"\tV1\t"_s;
        text += markerTypeAvidColor(marker.markerType);
        text += u'\t';
        text += comment(marker);
        text += u'\t';
        text += QString::number(duration);
        text += u'\n';
    }
    return text;
}
