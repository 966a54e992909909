#pragma once

#include <QStringView>
#include <QtGlobal>
#include <optional>

// The number rules used wherever text or JSON from a tool, a file or the service becomes a number.

// The whole text must be a C-locale floating-point number: no leading white space, nothing after
// it. "inf", "nan" and hexadecimal forms are numbers too, as strtod reads them.
std::optional<double> parseStrictDecimal(QStringView text);

// An optional sign followed by decimal digits only, fitting in 64 bits. "05" is 5; "5.0" fails.
std::optional<qint64> parseBase10Integer(QStringView text);

// A JSON number as a whole number: finite, with no fractional part and at most 2^53 in size,
// beyond which a double no longer tells neighbouring integers apart. -0.0 is 0.
std::optional<qint64> wholeNumber(double value);
