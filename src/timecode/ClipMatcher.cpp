#include "timecode/ClipMatcher.h"

#include "timecode/Timecode.h"

#include <algorithm>
#include <utility>

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

ShootSession ClipMatcher::matchClipsToSession(const QList<MediaClip> &clips, const ShootSession &session)
{
    if (session.markers.isEmpty() || clips.isEmpty())
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

    QList<std::pair<double, const MediaClip *>> matches;
    for (const MediaClip &clip : clips) {
        if (!clip.timecode)
            continue;
        const double start = MediaClip::tcToSeconds(*clip.timecode);
        const double end = start + clip.duration;
        if (start <= *last + tolerance && *first - tolerance <= end)
            matches.append({start, &clip});
    }
    std::stable_sort(matches.begin(), matches.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });

    ShootSession matched = session;
    matched.matchedClips.clear();
    matched.matchedClips.reserve(matches.size());
    for (const auto &[start, clip] : matches)
        matched.matchedClips.append(*clip);
    return matched;
}
