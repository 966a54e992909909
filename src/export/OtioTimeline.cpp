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

void appendMarker(QString &text, bool first, const ShootMarker &marker, qint64 offset, int rate)
{
    if (!first)
        text += ",\n"_L1;
    text += "{\n    \"OTIO_SCHEMA\": \"Marker.2\",\n    \"name\": \""_L1;
    text += otioText(markerLabel(marker));
    text += "\",\n    \"color\": \""_L1;
    text += markerTypeOtioColor(marker.markerType);
    text += "\",\n    \"metadata\": {\"note\": \""_L1;
    text += otioText(marker.quote.value_or(QString()));
    text += "\"},\n    \"marked_range\": "_L1;
    text += timeRange(offset, 1, rate);
    text += "\n}"_L1;
}

void appendGap(QString &text, const ShootSession &session)
{
    const int fps = session.fps;
    const MarkerIndex frames(session.markers, fps);
    const qint64 first = frames.earliest();
    const qint64 total = Frames::subtract(Frames::add(frames.latest(), qint64(fps) * 10), first);
    text += "{\n    \"OTIO_SCHEMA\": \"Gap.1\",\n    \"name\": \"\",\n    \"metadata\": {},\n    \"effects\": [],\n"
            "    \"markers\": ["_L1;
    for (qsizetype i = 0; i < session.markers.size(); ++i)
        appendMarker(text, i == 0, session.markers[i], Frames::subtract(frames.frame(i), first), fps);
    text += "],\n    \"source_range\": "_L1;
    text += timeRange(0, total, fps);
    text += "\n}"_L1;
}

void appendClips(QString &text, const ShootSession &session)
{
    std::map<int, MarkerIndex> indexByRate;
    QSet<QString> seenNames;
    bool firstClip = true;
    for (const MediaClip *clip : clipsInTimecodeOrder(session.matchedClips)) {
        if (seenNames.contains(clip->filename))
            continue;
        seenNames.insert(clip->filename);
        const int rate = clip->detectedFps.value_or(session.fps);
        const MarkerIndex &frames = indexByRate.try_emplace(rate, session.markers, rate).first->second;
        const ClipSpan span = clipSpan(*clip, rate);
        const QString range = timeRange(span.start, span.frames, rate);
        if (!firstClip)
            text += ",\n"_L1;
        firstClip = false;
        text += "{\n    \"OTIO_SCHEMA\": \"Clip.1\",\n    \"name\": \""_L1;
        text += jsonEscaped(safeASCII(clip->filename));
        text += "\",\n    \"metadata\": {},\n    \"effects\": [],\n    \"markers\": ["_L1;
        const QList<qsizetype> inside = frames.within(span.start, span.end());
        for (qsizetype m : inside)
            appendMarker(text, m == inside.first(), session.markers[m], Frames::subtract(frames.frame(m), span.start), rate);
        text += "],\n    \"media_reference\": {\n        \"OTIO_SCHEMA\": \"ExternalReference.1\",\n"
                "        \"target_url\": \"file://"_L1;
        // Percent-encoding leaves neither a double quote nor a backslash in the path.
        text += percentEncodedPath(clip->path);
        text += "\",\n        \"available_range\": "_L1;
        text += range;
        text += ",\n        \"metadata\": {}\n    },\n    \"source_range\": "_L1;
        text += range;
        text += "\n}"_L1;
    }
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
    QString text;
    text.reserve(2048 + session.matchedClips.size() * 1200 + session.markers.size() * 500);
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
    if (session.matchedClips.isEmpty())
        appendGap(text, session);
    else
        appendClips(text, session);
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
