#pragma once

#include "model/MediaClip.h"
#include "model/ShootMarker.h"

#include <QList>
#include <QString>
#include <QtGlobal>

// What the xmeml, selects and OTIO writers share: the clip order, a clip's place in frames, the
// lookup of markers by frame, and frame arithmetic that saturates instead of overflowing, so that
// absurd durations or timecodes give absurd numbers rather than undefined behaviour.

namespace Frames {

qint64 add(qint64 a, qint64 b);
qint64 subtract(qint64 a, qint64 b);
qint64 multiply(qint64 a, qint64 b);

// Seconds truncated toward zero, times the rate; 0 for NaN, saturated for huge or infinite values.
qint64 wholeSeconds(double seconds, int rate);

} // namespace Frames

// summary, else raw, else the empty text.
QString markerLabel(const ShootMarker &marker);

// Ascending by MediaClip::tcToSeconds, a clip without timecode counting as 0; stable.
QList<const MediaClip *> clipsInTimecodeOrder(const QList<MediaClip> &clips);

// A clip's span on a timeline counted at `rate`.
struct ClipSpan {
    const MediaClip *clip = nullptr;
    QString timecode; // the clip's own, or the zero timecode
    qint64 start = 0;
    qint64 frames = 0;

    qint64 end() const { return Frames::add(start, frames); }
    bool contains(qint64 frame) const { return start <= frame && frame < end(); }
};

ClipSpan clipSpan(const MediaClip &clip, int rate);

// The clips as every export with clips lays them out: in timecode order, counted at `rate`.
QList<ClipSpan> clipSpans(const QList<MediaClip> &clips, int rate);

// The markers' in frames at one rate, sorted once, so that finding the markers inside every
// clip costs a binary search per clip instead of a pass over all markers.
class MarkerIndex
{
public:
    MarkerIndex(const QList<ShootMarker> &markers, int rate);

    qint64 frame(qsizetype marker) const { return m_frames[marker]; }
    // The smallest and largest frame; 0 without markers.
    qint64 earliest() const { return m_byFrame.isEmpty() ? 0 : m_frames[m_byFrame.first()]; }
    qint64 latest() const { return m_byFrame.isEmpty() ? 0 : m_frames[m_byFrame.last()]; }

    // Positions in the marker array, in array order, of the markers with start <= frame < end.
    QList<qsizetype> within(qint64 start, qint64 end) const;
    // The markers a clip carries in the xmeml sequence: those inside its span.
    QList<qsizetype> on(const ClipSpan &span) const { return within(span.start, span.end()); }

private:
    QList<qint64> m_frames;
    QList<qsizetype> m_byFrame;
};
