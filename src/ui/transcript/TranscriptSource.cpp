#include "ui/transcript/TranscriptSource.h"

#include <QSet>
#include <QTextBoundaryFinder>
#include <algorithm>

namespace {

// The first `count` user-perceived characters, so an accent or emoji is never cut in half.
QString leadingCharacters(const QString &text, int count)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    for (int taken = 0; taken < count; ++taken) {
        const qsizetype next = finder.toNextBoundary();
        if (next < 0)
            break;
        end = next;
    }
    return text.left(end);
}

} // namespace

QList<TranscriptSegment> buildTranscriptFromMarkers(const ShootSession &session)
{
    QList<ShootMarker> markers = session.markers;
    std::stable_sort(markers.begin(), markers.end(),
                     [](const ShootMarker &a, const ShootMarker &b) {
                         return a.createdAt < b.createdAt;
                     });
    QList<TranscriptSegment> segments;
    QSet<QString> seenKeys;
    for (const ShootMarker &marker : markers) {
        if (!marker.raw || marker.raw->isEmpty() || *marker.raw == u"[no speech]"
            || *marker.raw == u"[manual note]")
            continue;
        const QString key = leadingCharacters(*marker.raw, 50);
        if (seenKeys.contains(key))
            continue;
        seenKeys.insert(key);
        TranscriptSegment segment;
        segment.id = marker.id;
        segment.text = *marker.raw;
        segment.timecode = marker.timecode;
        segments.append(segment);
    }
    return segments;
}

QList<TranscriptSegment> transcriptOrFallback(
    const std::optional<QList<TranscriptSegment>> &fetched, const ShootSession &session)
{
    if (fetched && !fetched->isEmpty())
        return *fetched;
    return buildTranscriptFromMarkers(session);
}
