#pragma once

#include "model/MediaClip.h"
#include "model/ShootSession.h"

#include <QList>
#include <optional>

// Decides which scanned clips belong to a session, and holds the marker-side timecode helpers.
class ClipMatcher
{
public:
    // Seconds on either side of the marker span within which a clip still belongs to a session.
    static constexpr double tolerance = 30.0;

    static std::optional<double> tcToSeconds(QStringView timecode, int fps);

    // Moves a timecode by whole frames with one carry per field; text that is not four integer
    // fields comes back unchanged.
    static QString nudgeTC(const QString &timecode, int frames, int fps);

    // The clips with their ranges in seconds, read once so that re-matching every session after
    // a sync or a scan does not parse every clip's timecode once per session.
    class ClipRanges
    {
    public:
        explicit ClipRanges(const QList<MediaClip> &clips);

    private:
        friend class ClipMatcher;
        struct Range {
            double start;
            double end;
            qsizetype clip;
        };
        QList<MediaClip> m_clips;
        QList<Range> m_ranges; // clips with a timecode, in scan order
    };

    // The session with matchedClips replaced by the clips whose range touches the widened span
    // of its marker timecodes, ordered by start (stable). Unchanged when nothing can be decided.
    static ShootSession matchClipsToSession(const QList<MediaClip> &clips, const ShootSession &session);
    static ShootSession matchClipsToSession(const ClipRanges &clips, const ShootSession &session);

    // Every session matched again; after a scan or a sync. Unchanged when there are no clips.
    static QList<ShootSession> matchClipsToSessions(const QList<MediaClip> &clips, const QList<ShootSession> &sessions);
};
