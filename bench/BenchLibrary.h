#pragma once

// A long production's library for the benchmarks: sessions of many markers spread over the day
// and clips every 17 seconds of timecode.
#include "model/MediaClip.h"
#include "model/ShootSession.h"
#include "time/Timecode.h"

namespace BenchLibrary {

inline QList<ShootSession> makeSessions(int count, int markersEach)
{
    QList<ShootSession> sessions;
    for (int s = 0; s < count; ++s) {
        ShootSession session;
        session.id = session.shareToken = QStringLiteral("session-%1").arg(s);
        for (int m = 0; m < markersEach; ++m) {
            ShootMarker marker;
            marker.id = QStringLiteral("%1-%2").arg(s).arg(m);
            marker.markerType = QStringLiteral("log");
            marker.timecode = secondsToTC(double((s * 37 + m * 11) % 86000), 25);
            session.markers.append(marker);
        }
        sessions.append(session);
    }
    return sessions;
}

inline QList<MediaClip> makeClips(int count)
{
    QList<MediaClip> clips;
    for (int c = 0; c < count; ++c) {
        MediaClip clip;
        clip.id = QStringLiteral("clip-%1").arg(c);
        clip.path = QStringLiteral("/footage/%1.mov").arg(c);
        clip.timecode = secondsToTC(double((c * 17) % 86000), 25);
        clip.duration = 20.0;
        clips.append(clip);
    }
    return clips;
}

} // namespace BenchLibrary
