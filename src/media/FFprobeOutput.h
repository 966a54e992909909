#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>
#include <optional>

// Readings of ffprobe's JSON answers ("-of json"). Output that is not a JSON object, a missing
// key and a value of the wrong JSON type all give the reading's empty result; keys are matched
// exactly ("TIMECODE" is not "timecode").
namespace FFprobeOutput {

struct Resolution {
    std::optional<int> width;
    std::optional<int> height;
    bool operator==(const Resolution &) const = default;
};

// What a footage scan learns from ffprobe about one file.
struct Reading {
    std::optional<QString> timecode;
    double duration = 0.0;
    Resolution resolution;
    std::optional<int> fps;
};

// The ffprobe query ("-show_entries" argument) whose one answer `reading` reads.
inline constexpr char readingEntries[] =
    "format=duration:format_tags=timecode:stream=codec_type,width,height,r_frame_rate:stream_tags=timecode";

// "format"."tags"."timecode", else the first "streams" element whose "tags" carry one.
std::optional<QString> timecode(const QByteArray &json);
// "format"."duration" under the strict decimal rule; 0.0 when unknown.
double duration(const QByteArray &json);
// "width" and "height" of the first stream, each present only as a whole JSON number.
Resolution resolution(const QByteArray &json);
// "r_frame_rate" of the first stream, see frameRate.
std::optional<int> fps(const QByteArray &json);
// A rate written "numerator/denominator" (empty pieces ignored), rounded half away from zero;
// absent unless both parts are strict decimals, the denominator is positive and the quotient
// fits an int.
std::optional<int> frameRate(QStringView rate);
// The answer to readingEntries read as the separate readings read theirs: the timecode rule,
// the duration, and width, height and frame rate of the first stream whose "codec_type" is
// "video" (the stream "-select_streams v:0" picks).
Reading reading(const QByteArray &json);
// How many elements the "streams" array has; 0 without one.
qsizetype streamCount(const QByteArray &json);
// The 1-based position of the first stream whose "channels" is a whole number above 0.
std::optional<int> firstStreamWithChannels(const QByteArray &json);

} // namespace FFprobeOutput
