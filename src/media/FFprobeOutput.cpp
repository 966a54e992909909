#include "media/FFprobeOutput.h"

#include "time/NumberText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <cmath>
#include <limits>

namespace FFprobeOutput {

namespace {

std::optional<QJsonObject> parseObject(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    return document.object();
}

std::optional<QString> tagTimecode(const QJsonValue &owner)
{
    const QJsonValue value = owner.toObject().value(QLatin1String("tags")).toObject().value(QLatin1String("timecode"));
    if (!value.isString())
        return std::nullopt;
    return value.toString();
}

QJsonArray streams(const QJsonObject &root)
{
    return root.value(QLatin1String("streams")).toArray();
}

QJsonObject firstStream(const QByteArray &json)
{
    const auto root = parseObject(json);
    return root ? streams(*root).at(0).toObject() : QJsonObject();
}

// A JSON number that holds a whole value an int can carry.
std::optional<int> wholeNumber(const QJsonValue &value)
{
    if (!value.isDouble())
        return std::nullopt;
    const double number = value.toDouble();
    if (number != std::floor(number) || number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
        return std::nullopt;
    return int(number);
}

// The format's tag first, else the first stream's in stream order.
std::optional<QString> timecodeOf(const QJsonObject &root)
{
    if (auto found = tagTimecode(root.value(QLatin1String("format"))))
        return found;
    for (const QJsonValue &stream : streams(root)) {
        if (auto found = tagTimecode(stream))
            return found;
    }
    return std::nullopt;
}

double durationOf(const QJsonObject &root)
{
    const QJsonValue value = root.value(QLatin1String("format")).toObject().value(QLatin1String("duration"));
    if (!value.isString())
        return 0.0;
    return parseStrictDecimal(value.toString()).value_or(0.0);
}

Resolution resolutionOf(const QJsonObject &stream)
{
    return {wholeNumber(stream.value(QLatin1String("width"))), wholeNumber(stream.value(QLatin1String("height")))};
}

std::optional<int> fpsOf(const QJsonObject &stream)
{
    const QJsonValue rate = stream.value(QLatin1String("r_frame_rate"));
    if (!rate.isString())
        return std::nullopt;
    return frameRate(rate.toString());
}

} // namespace

std::optional<QString> timecode(const QByteArray &json)
{
    const auto root = parseObject(json);
    return root ? timecodeOf(*root) : std::nullopt;
}

double duration(const QByteArray &json)
{
    const auto root = parseObject(json);
    return root ? durationOf(*root) : 0.0;
}

Resolution resolution(const QByteArray &json)
{
    return resolutionOf(firstStream(json));
}

std::optional<int> fps(const QByteArray &json)
{
    return fpsOf(firstStream(json));
}

Reading reading(const QByteArray &json)
{
    const auto root = parseObject(json);
    if (!root)
        return {};
    QJsonObject video;
    for (const QJsonValue &stream : streams(*root)) {
        if (stream.toObject().value(QLatin1String("codec_type")) == QLatin1String("video")) {
            video = stream.toObject();
            break;
        }
    }
    return {timecodeOf(*root), durationOf(*root), resolutionOf(video), fpsOf(video)};
}

std::optional<int> frameRate(QStringView rate)
{
    const QList<QStringView> parts = rate.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    if (parts.size() != 2)
        return std::nullopt;
    const auto numerator = parseStrictDecimal(parts.at(0));
    const auto denominator = parseStrictDecimal(parts.at(1));
    if (!numerator || !denominator || !(*denominator > 0.0))
        return std::nullopt;
    // std::round rounds halves away from zero; anything an int cannot hold (1e300/1, inf) is
    // no frame rate at all.
    const double rounded = std::round(*numerator / *denominator);
    if (!std::isfinite(rounded) || rounded < std::numeric_limits<int>::min() || rounded > std::numeric_limits<int>::max())
        return std::nullopt;
    return int(rounded);
}

qsizetype streamCount(const QByteArray &json)
{
    const auto root = parseObject(json);
    return root ? streams(*root).size() : 0;
}

std::optional<int> firstStreamWithChannels(const QByteArray &json)
{
    const auto root = parseObject(json);
    if (!root)
        return std::nullopt;
    const QJsonArray all = streams(*root);
    for (qsizetype i = 0; i < all.size(); ++i) {
        if (wholeNumber(all.at(i).toObject().value(QLatin1String("channels"))).value_or(0) > 0)
            return int(i + 1);
    }
    return std::nullopt;
}

} // namespace FFprobeOutput
