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
};

// "format"."tags"."timecode", else the first "streams" element whose "tags" carry one.
std::optional<QString> timecode(const QByteArray &json);
// "format"."tags"."timecode" alone.
std::optional<QString> formatTimecode(const QByteArray &json);
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
// How many elements the "streams" array has; 0 without one.
qsizetype streamCount(const QByteArray &json);
// The 1-based position of the first stream whose "channels" is a whole number above 0.
std::optional<int> firstStreamWithChannels(const QByteArray &json);

} // namespace FFprobeOutput
