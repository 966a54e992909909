#include "model/ClipMatcher.h"

#include "time/Timecode.h"

#include <algorithm>

std::optional<double> ClipMatcher::tcToSeconds(QStringView timecode, int fps)
{
    return Timecode::toSeconds(timecode, double(fps));
}

QString ClipMatcher::nudgeTC(const QString &timecode, int frames, int fps)
{
    const QList<qint64> n = Timecode::integerFields(timecode);
    if (n.size() != 4)
        return timecode;
    qint64 h = n[0], m = n[1], s = n[2], f = n[3] + frames;
    if (f >= fps) {
        f -= fps;
        ++s;
    }
    if (s >= 60) {
        s -= 60;
        ++m;
    }
    if (m >= 60) {
        m -= 60;
        ++h;
    }
    return Timecode::format(h, m, s, f);
}

ClipMatcher::ClipRanges::ClipRanges(const QList<MediaClip> &clips)
    : m_clips(clips)
{
    m_ranges.reserve(clips.size());
    for (qsizetype i = 0; i < clips.size(); ++i) {
        const MediaClip &clip = clips.at(i);
        if (!clip.timecode)
            continue;
        const double start = MediaClip::tcToSeconds(*clip.timecode);
        m_ranges.append({start, start + clip.duration, i});
    }
}

ShootSession ClipMatcher::matchClipsToSession(const QList<MediaClip> &clips, const ShootSession &session)
{
    if (session.markers.isEmpty() || clips.isEmpty())
        return session;
    return matchClipsToSession(ClipRanges(clips), session);
}

ShootSession ClipMatcher::matchClipsToSession(const ClipRanges &clips, const ShootSession &session)
{
    if (session.markers.isEmpty() || clips.m_clips.isEmpty())
        return session;

    std::optional<double> first, last;
    for (const ShootMarker &marker : session.markers) {
        const auto seconds = tcToSeconds(marker.timecode, session.fps);
        if (!seconds)
            continue;
        first = first ? std::min(*first, *seconds) : *seconds;
        last = last ? std::max(*last, *seconds) : *seconds;
    }
    if (!first)
        return session;

    QList<const ClipRanges::Range *> matches;
    for (const ClipRanges::Range &range : clips.m_ranges) {
        if (range.start <= *last + tolerance && *first - tolerance <= range.end)
            matches.append(&range);
    }
    std::stable_sort(matches.begin(), matches.end(),
                     [](const auto *a, const auto *b) { return a->start < b->start; });

    ShootSession matched = session;
    matched.matchedClips.clear();
    matched.matchedClips.reserve(matches.size());
    for (const ClipRanges::Range *range : matches)
        matched.matchedClips.append(clips.m_clips.at(range->clip));
    return matched;
}

QList<ShootSession> ClipMatcher::matchClipsToSessions(const QList<MediaClip> &clips, const QList<ShootSession> &sessions)
{
    if (clips.isEmpty())
        return sessions;
    const ClipRanges ranges(clips);
    QList<ShootSession> matched;
    matched.reserve(sessions.size());
    for (const ShootSession &session : sessions)
        matched.append(matchClipsToSession(ranges, session));
    return matched;
}
