#include "export/Preflight.h"

#include "export/ExportClips.h"

using namespace Qt::StringLiterals;

namespace {

QString clipCount(qsizetype count)
{
    return QString::number(count) + (count == 1 ? u" clip"_s : u" clips"_s);
}

} // namespace

bool Preflight::allClear() const
{
    return markersOffFootage.isEmpty() && clipsWithoutTimecode.isEmpty() && clipsWithOtherFps.isEmpty();
}

QString Preflight::summary() const
{
    QStringList parts;
    if (!markersOffFootage.isEmpty()) {
        const qsizetype on = markersOnFootage.size();
        parts.append(QString::number(on) + u" of "_s + QString::number(markers)
                     + (markers == 1 ? u" marker"_s : u" markers"_s) + (on == 1 || markers == 1 ? u" is"_s : u" are"_s)
                     + u" on matched footage"_s);
    }
    if (!clipsWithoutTimecode.isEmpty())
        parts.append(clipCount(clipsWithoutTimecode.size())
                     + (clipsWithoutTimecode.size() == 1 ? u" has"_s : u" have"_s) + u" no timecode"_s);
    if (!clipsWithOtherFps.isEmpty())
        parts.append(clipCount(clipsWithOtherFps.size()) + u" at another frame rate"_s);
    return parts.join(u"; "_s);
}

Preflight preflight(const ShootSession &session)
{
    Preflight result;
    result.markers = int(session.markers.size());

    QList<bool> onFootage(session.markers.size(), false);
    const MarkerIndex frames(session.markers, session.fps);
    for (const ClipSpan &span : clipSpans(session.matchedClips, session.fps)) {
        for (qsizetype m : frames.on(span))
            onFootage[m] = true;
    }
    for (qsizetype i = 0; i < session.markers.size(); ++i)
        (onFootage[i] ? result.markersOnFootage : result.markersOffFootage).append(session.markers[i].id);

    for (const MediaClip &clip : session.matchedClips) {
        if (!clip.timecode)
            result.clipsWithoutTimecode.append(clip.filename);
        if (clip.detectedFps && *clip.detectedFps != session.fps)
            result.clipsWithOtherFps.append(clip.filename);
    }
    return result;
}
