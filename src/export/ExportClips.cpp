#include "export/ExportClips.h"

#include "time/Timecode.h"

#include <QtNumeric>
#include <algorithm>
#include <cmath>
#include <limits>

namespace Frames {

namespace {
constexpr qint64 maximum = std::numeric_limits<qint64>::max();
constexpr qint64 minimum = std::numeric_limits<qint64>::min();
} // namespace

qint64 add(qint64 a, qint64 b)
{
    qint64 sum;
    if (qAddOverflow(a, b, &sum))
        return b > 0 ? maximum : minimum;
    return sum;
}

qint64 subtract(qint64 a, qint64 b)
{
    qint64 difference;
    if (qSubOverflow(a, b, &difference))
        return b < 0 ? maximum : minimum;
    return difference;
}

qint64 multiply(qint64 a, qint64 b)
{
    qint64 product;
    if (qMulOverflow(a, b, &product))
        return (a < 0) != (b < 0) ? minimum : maximum;
    return product;
}

qint64 wholeSeconds(double seconds, int rate)
{
    if (std::isnan(seconds))
        return 0;
    const double whole = std::trunc(seconds);
    // 2^63 is exactly representable; anything at or beyond it saturates before the conversion.
    constexpr double limit = 9223372036854775808.0;
    const qint64 clamped = whole >= limit ? maximum : whole <= -limit ? minimum : qint64(whole);
    return multiply(clamped, rate);
}

} // namespace Frames

QString markerLabel(const ShootMarker &marker)
{
    return marker.summary.value_or(marker.raw.value_or(QString()));
}

QList<const MediaClip *> clipsInTimecodeOrder(const QList<MediaClip> &clips)
{
    QList<std::pair<double, const MediaClip *>> keyed;
    keyed.reserve(clips.size());
    for (const MediaClip &clip : clips)
        keyed.append({MediaClip::tcToSeconds(clip.timecode.value_or(Timecode::zero)), &clip});
    std::stable_sort(keyed.begin(), keyed.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    QList<const MediaClip *> ordered;
    ordered.reserve(keyed.size());
    for (const auto &[key, clip] : keyed)
        ordered.append(clip);
    return ordered;
}

ClipSpan clipSpan(const MediaClip &clip, int rate)
{
    ClipSpan span;
    span.clip = &clip;
    span.timecode = clip.timecode.value_or(Timecode::zero);
    span.start = tcToFrames(span.timecode, rate);
    span.frames = Frames::wholeSeconds(clip.duration, rate);
    return span;
}

QList<ClipSpan> clipSpans(const QList<MediaClip> &clips, int rate)
{
    QList<ClipSpan> spans;
    spans.reserve(clips.size());
    for (const MediaClip *clip : clipsInTimecodeOrder(clips))
        spans.append(clipSpan(*clip, rate));
    return spans;
}

MarkerIndex::MarkerIndex(const QList<ShootMarker> &markers, int rate)
{
    m_frames.reserve(markers.size());
    m_byFrame.reserve(markers.size());
    for (qsizetype i = 0; i < markers.size(); ++i) {
        m_frames.append(tcToFrames(markers[i].timecode, rate));
        m_byFrame.append(i);
    }
    std::stable_sort(m_byFrame.begin(), m_byFrame.end(),
                     [this](qsizetype a, qsizetype b) { return m_frames[a] < m_frames[b]; });
}

QList<qsizetype> MarkerIndex::within(qint64 start, qint64 end) const
{
    auto first = std::lower_bound(m_byFrame.begin(), m_byFrame.end(), start,
                                  [this](qsizetype marker, qint64 frame) { return m_frames[marker] < frame; });
    QList<qsizetype> inside;
    for (auto it = first; it != m_byFrame.end() && m_frames[*it] < end; ++it)
        inside.append(*it);
    std::sort(inside.begin(), inside.end());
    return inside;
}
