#include "time/NumberText.h"

#include <QByteArray>
#include <QChar>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <locale.h>

namespace {

// Qt sets the process locale from the environment, so plain strtod could read "1,5" in a German
// session; every conversion goes through one C locale instead.
locale_t cLocale()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t(nullptr));
    return locale;
}

} // namespace

std::optional<double> parseStrictDecimal(QStringView text)
{
    if (text.isEmpty() || text.front().isSpace())
        return std::nullopt;
    const QByteArray bytes = text.toUtf8();
    const char *begin = bytes.constData();
    char *end = nullptr;
    const double value = strtod_l(begin, &end, cLocale());
    if (end == begin || end != begin + bytes.size())
        return std::nullopt;
    return value;
}

std::optional<qint64> parseBase10Integer(QStringView text)
{
    qsizetype index = 0;
    bool negative = false;
    if (!text.isEmpty() && (text.front() == u'+' || text.front() == u'-')) {
        negative = text.front() == u'-';
        index = 1;
    }
    if (index == text.size())
        return std::nullopt;
    // Accumulate towards the negative side so that the smallest 64-bit value still fits.
    qint64 value = 0;
    constexpr qint64 lowest = std::numeric_limits<qint64>::min();
    for (; index < text.size(); ++index) {
        const char16_t c = text[index].unicode();
        if (c < u'0' || c > u'9')
            return std::nullopt;
        const int digit = c - u'0';
        if (value < (lowest + digit) / 10)
            return std::nullopt;
        value = value * 10 - digit;
    }
    if (!negative) {
        if (value == lowest)
            return std::nullopt;
        value = -value;
    }
    return value;
}

std::optional<qint64> wholeNumber(double value)
{
    constexpr double largest = 9007199254740992.0; // 2^53
    if (!std::isfinite(value) || std::trunc(value) != value || std::abs(value) > largest)
        return std::nullopt;
    return qint64(value);
}
