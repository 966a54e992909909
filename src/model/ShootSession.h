#pragma once

#include "model/MediaClip.h"
#include "model/ShootMarker.h"
#include "model/TranscriptSegment.h"

#include <QList>

// One logged shoot with its markers and the clips matched to it.
struct ShootSession {
    QString id;
    QString shareToken;
    QString title;
    QDateTime createdAt;
    QList<ShootMarker> markers;
    QList<MediaClip> matchedClips;
    int fps = 25;
    QList<TranscriptSegment> transcriptSegments;

    // "first - last" of the markers in array order, or "--" without markers.
    QString tcRange() const;

    // Field by field, so a merge can tell whether anything changed at all.
    friend bool operator==(const ShootSession &, const ShootSession &) = default;
};
