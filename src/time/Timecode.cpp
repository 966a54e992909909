#include "time/Timecode.h"

#include "time/NumberText.h"

#include <cmath>
#include <limits>

namespace Timecode {

QList<QStringView> pieces(QStringView text)
{
    return text.split(u':', Qt::SkipEmptyParts);
}

QList<double> decimalFields(QStringView text)
{
    QList<double> numbers;
    for (QStringView piece : pieces(text)) {
        if (const auto number = parseStrictDecimal(piece))
            numbers.append(*number);
    }
    return numbers;
}

QList<qint64> integerFields(QStringView text)
{
    QList<qint64> numbers;
    for (QStringView piece : pieces(text)) {
        if (const auto number = parseBase10Integer(piece))
            numbers.append(*number);
    }
    return numbers;
}

std::optional<double> toSeconds(QStringView text, double fps)
{
    const QList<double> n = decimalFields(text);
    if (n.size() < 3)
        return std::nullopt;
    double seconds = n[0] * 3600 + n[1] * 60 + n[2];
    if (n.size() == 4)
        seconds += n[3] / fps;
    return seconds;
}

double integerFieldsToSeconds(QStringView text, int fps)
{
    const QList<qint64> n = integerFields(text);
    if (n.size() < 3)
        return 0.0;
    double seconds = double(n[0] * 3600 + n[1] * 60 + n[2]);
    if (n.size() == 4)
        seconds += double(n[3]) / double(fps);
    return seconds;
}

QString format(qint64 hours, qint64 minutes, qint64 seconds, qint64 frames)
{
    return QString::asprintf("%02lld:%02lld:%02lld:%02lld", hours, minutes, seconds, frames);
}

} // namespace Timecode

qint64 tcToFrames(QStringView timecode, int fps)
{
    const QList<qint64> n = Timecode::integerFields(timecode);
    if (n.size() < 3)
        return 0;
    // Absurd hour fields from the service saturate instead of overflowing.
    qint64 frames = 0;
    bool overflow = __builtin_mul_overflow(n[0], qint64(3600), &frames);
    qint64 term = 0;
    overflow |= __builtin_mul_overflow(n[1], qint64(60), &term) || __builtin_add_overflow(frames, term, &frames);
    overflow |= __builtin_add_overflow(frames, n[2], &frames) || __builtin_mul_overflow(frames, qint64(fps), &frames);
    if (n.size() == 4)
        overflow |= __builtin_add_overflow(frames, n[3], &frames);
    if (overflow)
        return n[0] < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
    return frames;
}

QString secondsToTC(double seconds, int fps)
{
    const double whole = std::trunc(seconds);
    const auto total = qint64(whole);
    const auto frames = qint64(std::trunc((seconds - whole) * fps));
    return Timecode::format(total / 3600, (total % 3600) / 60, total % 60, frames);
}
