#include "export/OtioTimeline.h"

#include "export/ExportClips.h"
#include "export/MarkerTypes.h"
#include "export/TextCleaning.h"

#include <QSet>
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
        text += u",\n"_s;
    text += u"{\n    \"OTIO_SCHEMA\": \"Marker.2\",\n    \"name\": \""_s;
    text += otioText(markerLabel(marker));
    text += u"\",\n    \"color\": \""_s;
    text += markerTypeOtioColor(marker.markerType);
    text += u"\",\n    \"metadata\": {\"note\": \""_s;
    text += otioText(marker.quote.value_or(QString()));
    text += u"\"},\n    \"marked_range\": "_s;
    text += timeRange(offset, 1, rate);
    text += u"\n}"_s;
}

void appendGap(QString &text, const ShootSession &session)
{
    const int fps = session.fps;
    const MarkerIndex frames(session.markers, fps);
    const qint64 first = frames.earliest();
    const qint64 total = Frames::subtract(Frames::add(frames.latest(), qint64(fps) * 10), first);
    text += u"{\n    \"OTIO_SCHEMA\": \"Gap.1\",\n    \"name\": \"\",\n    \"metadata\": {},\n    \"effects\": [],\n"
            u"    \"markers\": ["_s;
    for (qsizetype i = 0; i < session.markers.size(); ++i)
        appendMarker(text, i == 0, session.markers[i], Frames::subtract(frames.frame(i), first), fps);
    text += u"],\n    \"source_range\": "_s;
    text += timeRange(0, total, fps);
    text += u"\n}"_s;
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
            text += u",\n"_s;
        firstClip = false;
        text += u"{\n    \"OTIO_SCHEMA\": \"Clip.1\",\n    \"name\": \""_s;
        text += jsonEscaped(safeASCII(clip->filename));
        text += u"\",\n    \"metadata\": {},\n    \"effects\": [],\n    \"markers\": ["_s;
        const QList<qsizetype> inside = frames.within(span.start, span.end());
        for (qsizetype m : inside)
            appendMarker(text, m == inside.first(), session.markers[m], Frames::subtract(frames.frame(m), span.start), rate);
        text += u"],\n    \"media_reference\": {\n        \"OTIO_SCHEMA\": \"ExternalReference.1\",\n"
                u"        \"target_url\": \"file://"_s;
        // Percent-encoding leaves neither a double quote nor a backslash in the path.
        text += percentEncodedPath(clip->path);
        text += u"\",\n        \"available_range\": "_s;
        text += range;
        text += u",\n        \"metadata\": {}\n    },\n    \"source_range\": "_s;
        text += range;
        text += u"\n}"_s;
    }
}

} // namespace

QString rationalTime(qint64 value, int rate)
{
    return u"{\"OTIO_SCHEMA\": \"RationalTime.1\", \"value\": "_s + QString::number(value) + u", \"rate\": "_s
           + QString::number(rate) + u".0}"_s;
}

QString timeRange(qint64 start, qint64 duration, int rate)
{
    return u"{\"OTIO_SCHEMA\": \"TimeRange.1\", \"start_time\": "_s + rationalTime(start, rate) + u", \"duration\": "_s
           + rationalTime(duration, rate) + u'}';
}

QString generateOTIO(const ShootSession &session)
{
    QString text;
    text.reserve(2048 + session.matchedClips.size() * 1200 + session.markers.size() * 500);
    text += u"{\n    \"OTIO_SCHEMA\": \"Timeline.1\",\n    \"name\": \""_s;
    text += otioText(session.title);
    text += u"\",\n    \"metadata\": {\"vorlix\": true},\n    \"global_start_time\": "_s;
    text += rationalTime(0, session.fps);
    text += u",\n"
            u"    \"tracks\": {\n"
            u"        \"OTIO_SCHEMA\": \"Stack.1\",\n"
            u"        \"name\": \"tracks\",\n"
            u"        \"children\": [\n"
            u"            {\n"
            u"                \"OTIO_SCHEMA\": \"Track.1\",\n"
            u"                \"name\": \"V1\",\n"
            u"                \"kind\": \"Video\",\n"
            u"                \"metadata\": {},\n"
            u"                \"effects\": [],\n"
            u"                \"markers\": [],\n"
            u"                \"source_range\": null,\n"
            u"                \"children\": ["_s;
    if (session.matchedClips.isEmpty())
        appendGap(text, session);
    else
        appendClips(text, session);
    text += u"]\n"
            u"            }\n"
            u"        ],\n"
            u"        \"effects\": [],\n"
            u"        \"markers\": [],\n"
            u"        \"source_range\": null\n"
            u"    }\n"
            u"}"_s;
    return text;
}
