#include "export/FcpXml.h"

#include "export/ExportClips.h"
#include "export/MarkerTypes.h"
#include "export/PlainLine.h"
#include "export/TextCleaning.h"
#include "media/ToolRunner.h"
#include "time/NumberText.h"
#include "time/Timecode.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>
#include <map>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

// Final Cut Pro and Resolve read Unicode, so free text keeps it; only what XML cannot hold goes.
QString attribute(QStringView text)
{
    return xmlEscaped(plainLine(text));
}

// A keyword's value is a comma-separated list of keywords, so a comma in a type would split it.
QString keyword(QStringView markerType)
{
    return attribute(markerTypePrefix(markerType).replace(u',', u' '));
}

quint64 magnitude(qint64 value)
{
    return value < 0 ? 0 - quint64(value) : quint64(value);
}

// Seconds as FCPXML writes them: a reduced fraction "n/ds", or "ns" when it is whole.
struct Seconds {
    qint64 numerator = 0;
    qint64 denominator = 1;

    static Seconds of(qint64 frames, FrameDuration frame)
    {
        return Seconds{Frames::multiply(frames, frame.numerator), frame.denominator}.reduced();
    }

    Seconds plus(Seconds other) const
    {
        if (denominator == other.denominator)
            return Seconds{Frames::add(numerator, other.numerator), denominator}.reduced();
        return Seconds{Frames::add(Frames::multiply(numerator, other.denominator), Frames::multiply(other.numerator, denominator)),
                       Frames::multiply(denominator, other.denominator)}
            .reduced();
    }

    Seconds reduced() const
    {
        const quint64 divisor = std::gcd(magnitude(numerator), magnitude(denominator));
        if (divisor <= 1)
            return *this;
        return {qint64(numerator / qint64(divisor)), qint64(denominator / qint64(divisor))};
    }

    QString text() const
    {
        if (numerator == 0)
            return u"0s"_s;
        if (denominator == 1)
            return QString::number(numerator) + u's';
        return QString::number(numerator) + u'/' + QString::number(denominator) + u's';
    }
};

QString fcpxTime(qint64 frames, FrameDuration frame)
{
    return Seconds::of(frames, frame).text();
}

struct Format {
    QString id;
    FrameDuration frame;
    int width = 1920;
    int height = 1080;
};

class FcpxText
{
public:
    explicit FcpxText(qsizetype capacity) { m_text.reserve(capacity); }

    template<typename... Parts>
    void line(int indent, const Parts &...parts)
    {
        m_text += u'\n';
        m_text += QString(indent, u' ');
        ((m_text += parts), ...);
    }

    QString &text() { return m_text; }

private:
    QString m_text;
};

// A marker at `frame` in the time of the element that holds it, with its type as a keyword over
// the same range so the browser can filter by it. A marker with an out point spans to it.
void appendMarker(FcpxText &out, int indent, const ShootMarker &marker, qint64 frame, int rate, FrameDuration duration)
{
    qint64 length = 1;
    if (marker.timecodeOut)
        length = std::max<qint64>(1, Frames::subtract(tcToFrames(*marker.timecodeOut, rate), frame));
    const QString start = fcpxTime(frame, duration);
    const QString span = fcpxTime(length, duration);
    const QString toDo = marker.markerType == "earmark"_L1 ? u" completed=\"0\""_s : QString();
    const QString note = marker.quote ? u" note=\""_s + attribute(*marker.quote) + u'"' : QString();
    out.line(indent, u"<marker start=\""_s, start, u"\" duration=\""_s, span, u"\" value=\""_s, attribute(markerLabel(marker)),
             u'"', toDo, note, u"/>"_s);
    const QString type = keyword(marker.markerType);
    if (!type.isEmpty())
        out.line(indent, u"<keyword start=\""_s, start, u"\" duration=\""_s, span, u"\" value=\""_s, type, u"\"/>"_s);
}

void appendHeader(FcpxText &out)
{
    out.text() += u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>"_s;
    out.line(0, u"<!DOCTYPE fcpxml>"_s);
    out.line(0, u"<fcpxml version=\"1.9\">"_s);
    out.line(4, u"<resources>"_s);
}

void appendFormat(FcpxText &out, const Format &format)
{
    out.line(8, u"<format id=\""_s, format.id, u"\" frameDuration=\""_s, QString::number(format.frame.numerator), u'/',
             QString::number(format.frame.denominator), u"s\" width=\""_s, QString::number(format.width), u"\" height=\""_s,
             QString::number(format.height), u"\"/>"_s);
}

void appendProjectOpening(FcpxText &out, const QString &title, const QString &format, const QString &duration, const QString &tcStart)
{
    out.line(4, u"</resources>"_s);
    out.line(4, u"<library>"_s);
    out.line(8, u"<event name=\""_s, title, u"\">"_s);
    out.line(12, u"<project name=\""_s, title, u"\">"_s);
    out.line(16, u"<sequence format=\""_s, format, u"\" duration=\""_s, duration, u"\" tcStart=\""_s, tcStart,
             u"\" tcFormat=\"NDF\">"_s);
    out.line(20, u"<spine>"_s);
}

void appendProjectEnd(FcpxText &out)
{
    out.line(20, u"</spine>"_s);
    out.line(16, u"</sequence>"_s);
    out.line(12, u"</project>"_s);
    out.line(8, u"</event>"_s);
    out.line(4, u"</library>"_s);
    out.line(0, u"</fcpxml>"_s);
}

// The gap starts at the first marker's timecode and runs ten seconds past the last, so the
// markers keep the session's timecodes.
QString documentWithoutClips(const ShootSession &session)
{
    const int fps = session.fps;
    const FrameDuration frame{1, fps};
    const MarkerIndex frames(session.markers, fps);
    const qint64 first = frames.earliest();
    const qint64 total = Frames::subtract(Frames::add(frames.latest(), qint64(fps) * 10), first);
    const QString start = fcpxTime(first, frame);
    const QString duration = fcpxTime(total, frame);

    FcpxText out(2048 + session.markers.size() * 300);
    appendHeader(out);
    appendFormat(out, {u"r1"_s, frame});
    appendProjectOpening(out, attribute(session.title), u"r1"_s, duration, start);
    out.line(24, u"<gap name=\"Gap\" offset=\""_s, start, u"\" start=\""_s, start, u"\" duration=\""_s, duration, u"\">"_s);
    for (qsizetype i = 0; i < session.markers.size(); ++i)
        appendMarker(out, 28, session.markers[i], frames.frame(i), fps, frame);
    out.line(24, u"</gap>"_s);
    appendProjectEnd(out);
    return std::move(out.text());
}

QString documentWithClips(const ShootSession &session, const QHash<QString, FrameDuration> &exactDurations)
{
    std::map<int, MarkerIndex> indexByRate;
    QList<Format> formats;
    FcpxText assets(session.matchedClips.size() * 500);
    FcpxText clips(session.matchedClips.size() * 600 + session.markers.size() * 300);
    Seconds offset;
    QString sequenceFormat;
    int n = 0;
    for (const MediaClip *clip : clipsInTimecodeOrder(session.matchedClips)) {
        const int rate = clip->detectedFps.value_or(session.fps);
        const FrameDuration frame = exactDurations.value(clip->id, FrameDuration{1, rate});
        const Format wanted{QString(), frame, clip->width.value_or(1920), clip->height.value_or(1080)};
        auto format = std::find_if(formats.begin(), formats.end(), [&](const Format &f) {
            return f.frame == wanted.frame && f.width == wanted.width && f.height == wanted.height;
        });
        if (format == formats.end()) {
            formats.append(wanted);
            formats.last().id = u'r' + QString::number(formats.size());
            format = formats.end() - 1;
        }
        if (sequenceFormat.isEmpty())
            sequenceFormat = format->id;

        const MarkerIndex &markers = indexByRate.try_emplace(rate, session.markers, rate).first->second;
        const ClipSpan span = clipSpan(*clip, rate);
        const QString id = u'a' + QString::number(++n);
        const QString name = attribute(clip->filename);
        const QString start = fcpxTime(span.start, frame);
        const QString duration = fcpxTime(span.frames, frame);
        assets.line(8, u"<asset id=\""_s, id, u"\" name=\""_s, name, u"\" start=\""_s, start, u"\" duration=\""_s, duration,
                    u"\" hasVideo=\"1\" hasAudio=\"1\" format=\""_s, format->id, u"\" audioSources=\"1\" audioChannels=\"2\">"_s);
        // "&" and "'" are legal in a URL path but not in an XML attribute.
        assets.line(12, u"<media-rep kind=\"original-media\" src=\"file://"_s, xmlEscaped(percentEncodedPath(clip->path)), u"\"/>"_s);
        assets.line(8, u"</asset>"_s);
        clips.line(24, u"<asset-clip ref=\""_s, id, u"\" offset=\""_s, offset.text(), u"\" name=\""_s, name, u"\" start=\""_s, start,
                   u"\" duration=\""_s, duration, u"\" tcFormat=\"NDF\">"_s);
        for (qsizetype m : markers.within(span.start, span.end()))
            appendMarker(clips, 28, session.markers[m], markers.frame(m), rate, frame);
        clips.line(24, u"</asset-clip>"_s);
        offset = offset.plus(Seconds::of(span.frames, frame));
    }

    FcpxText out(2048 + assets.text().size() + clips.text().size());
    appendHeader(out);
    for (const Format &format : formats)
        appendFormat(out, format);
    out.text() += assets.text();
    appendProjectOpening(out, attribute(session.title), sequenceFormat, offset.text(), u"0s"_s);
    out.text() += clips.text();
    appendProjectEnd(out);
    return std::move(out.text());
}

// "30000/1001" as FFprobe writes a stream's rate, as the length of one frame.
std::optional<FrameDuration> frameDuration(QStringView rate)
{
    const QList<QStringView> parts = rate.split(u'/');
    if (parts.size() != 2)
        return std::nullopt;
    const auto frames = parseBase10Integer(parts[0]);
    const auto seconds = parseBase10Integer(parts[1]);
    if (!frames || !seconds || *frames <= 0 || *seconds <= 0)
        return std::nullopt;
    return FrameDuration{*seconds, *frames};
}

} // namespace

QString generateFCPXML(const ShootSession &session, const QHash<QString, FrameDuration> &exactDurations)
{
    return session.matchedClips.isEmpty() ? documentWithoutClips(session) : documentWithClips(session, exactDurations);
}

QHash<QString, FrameDuration> exactFrameDurations(const ShootSession &session, const ToolLocations &tools)
{
    QHash<QString, FrameDuration> durations;
    const QString ffprobe = tools.existingFFprobe().value_or(tools.ffprobeFallback);
    for (const MediaClip &clip : session.matchedClips) {
        const QStringList arguments{u"-v"_s, u"quiet"_s, u"-of"_s, u"json"_s, u"-select_streams"_s, u"v:0"_s,
                                    u"-show_entries"_s, u"stream=r_frame_rate"_s, clip.path};
        const ToolRun run = runTool(ffprobe, arguments, ToolOutput::Captured, ToolOutput::NullDevice, probeTimeLimit);
        const QJsonValue rate = QJsonDocument::fromJson(run.standardOutput)["streams"_L1][0]["r_frame_rate"_L1];
        const auto duration = frameDuration(rate.toString());
        // Only a rate the clip's timecode is counted in fits the frame numbers the document uses.
        if (duration && std::lround(double(duration->denominator) / double(duration->numerator))
                            == clip.detectedFps.value_or(session.fps))
            durations.insert(clip.id, *duration);
    }
    return durations;
}
