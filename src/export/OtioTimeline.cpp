#include "export/OtioTimeline.h"

#include "export/ExportClips.h"
#include "export/MarkerTypes.h"
#include "export/TextCleaning.h"

#include <QSet>
#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

namespace {

// Names and notes trade double quotes for apostrophes; backslashes still need JSON escaping.
QString otioText(QStringView text)
{
    return jsonEscaped(safeASCII(text).replace(u'"', u'\''));
}

void appendMarker(QString &list, const ShootMarker &marker, qint64 offset, int rate)
{
    if (!list.isEmpty())
        list += ",\n"_L1;
    list += "{\n    \"OTIO_SCHEMA\": \"Marker.2\",\n    \"name\": \""_L1;
    list += otioText(markerLabel(marker));
    list += "\",\n    \"color\": \""_L1;
    list += markerTypeOtioColor(marker.markerType);
    list += "\",\n    \"metadata\": {\"note\": \""_L1;
    list += otioText(marker.quote.value_or(QString()));
    list += "\"},\n    \"marked_range\": "_L1;
    list += timeRange(offset, 1, rate);
    list += "\n}"_L1;
}

QString gap(const ShootSession &session)
{
    const int fps = session.fps;
    const MarkerIndex frames(session.markers, fps);
    const qint64 first = frames.earliest();
    const qint64 last = frames.latest();
    QString markers;
    markers.reserve(session.markers.size() * 420);
    for (qsizetype i = 0; i < session.markers.size(); ++i)
        appendMarker(markers, session.markers[i], Frames::subtract(frames.frame(i), first), fps);
    const qint64 total = Frames::subtract(Frames::add(last, qint64(fps) * 10), first);
    return "{\n    \"OTIO_SCHEMA\": \"Gap.1\",\n    \"name\": \"\",\n    \"metadata\": {},\n    \"effects\": [],\n"
           "    \"markers\": ["_L1
           + markers + "],\n    \"source_range\": "_L1 + timeRange(0, total, fps) + "\n}"_L1;
}

QString clips(const ShootSession &session)
{
    std::map<int, MarkerIndex> indexByRate;
    QSet<QString> seenNames;
    QString children;
    children.reserve(session.matchedClips.size() * 1200 + session.markers.size() * 420);
    for (const MediaClip *clip : clipsInTimecodeOrder(session.matchedClips)) {
        if (seenNames.contains(clip->filename))
            continue;
        seenNames.insert(clip->filename);
        const int rate = clip->detectedFps.value_or(session.fps);
        const MarkerIndex &frames = indexByRate.try_emplace(rate, session.markers, rate).first->second;
        const ClipSpan span = clipSpan(*clip, rate);
        QString markers;
        for (qsizetype m : frames.within(span.start, span.end()))
            appendMarker(markers, session.markers[m], Frames::subtract(frames.frame(m), span.start), rate);
        const QString range = timeRange(span.start, span.frames, rate);
        if (!children.isEmpty())
            children += ",\n"_L1;
        children += "{\n    \"OTIO_SCHEMA\": \"Clip.1\",\n    \"name\": \""_L1;
        children += jsonEscaped(safeASCII(clip->filename));
        children += "\",\n    \"metadata\": {},\n    \"effects\": [],\n    \"markers\": ["_L1;
        children += markers;
        children += "],\n    \"media_reference\": {\n        \"OTIO_SCHEMA\": \"ExternalReference.1\",\n"
                    "        \"target_url\": \"file://"_L1;
        // Percent-encoding leaves neither a double quote nor a backslash in the path.
        children += percentEncodedPath(clip->path);
        children += "\",\n        \"available_range\": "_L1;
        children += range;
        children += ",\n        \"metadata\": {}\n    },\n    \"source_range\": "_L1;
        children += range;
        children += "\n}"_L1;
    }
    return children;
}

} // namespace

QString rationalTime(qint64 value, int rate)
{
    return "{\"OTIO_SCHEMA\": \"RationalTime.1\", \"value\": "_L1 + QString::number(value) + ", \"rate\": "_L1
           + QString::number(rate) + ".0}"_L1;
}

QString timeRange(qint64 start, qint64 duration, int rate)
{
    return "{\"OTIO_SCHEMA\": \"TimeRange.1\", \"start_time\": "_L1 + rationalTime(start, rate) + ", \"duration\": "_L1
           + rationalTime(duration, rate) + u'}';
}

QString generateOTIO(const ShootSession &session)
{
    const QString children = session.matchedClips.isEmpty() ? gap(session) : clips(session);
    QString text;
    text.reserve(children.size() + 1024);
    text += "{\n    \"OTIO_SCHEMA\": \"Timeline.1\",\n    \"name\": \""_L1;
    text += otioText(session.title);
    text += "\",\n    \"metadata\": {\"vorlix\": true},\n    \"global_start_time\": "_L1;
    text += rationalTime(0, session.fps);
    text += ",\n"
            "    \"tracks\": {\n"
            "        \"OTIO_SCHEMA\": \"Stack.1\",\n"
            "        \"name\": \"tracks\",\n"
            "        \"children\": [\n"
            "            {\n"
            "                \"OTIO_SCHEMA\": \"Track.1\",\n"
            "                \"name\": \"V1\",\n"
            "                \"kind\": \"Video\",\n"
            "                \"metadata\": {},\n"
            "                \"effects\": [],\n"
            "                \"markers\": [],\n"
            "                \"source_range\": null,\n"
            "                \"children\": ["_L1;
    text += children;
    text += "]\n"
            "            }\n"
            "        ],\n"
            "        \"effects\": [],\n"
            "        \"markers\": [],\n"
            "        \"source_range\": null\n"
            "    }\n"
            "}"_L1;
    return text;
}
