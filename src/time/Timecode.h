#pragma once

#include <QList>
#include <QString>
#include <QStringView>
#include <QtGlobal>
#include <optional>

// Timecode text is HH:MM:SS:FF, non-drop-frame. Every parser splits at ":" and drops empty
// pieces; each conversion then has its own rule for turning the pieces into numbers, and pieces
// that fail that rule are dropped. How many numbers survive decides the result.
namespace Timecode {

inline const QString zero = QStringLiteral("00:00:00:00");
inline const QString noTimecodeLabel = QStringLiteral("No TC");

QList<QStringView> pieces(QStringView text);
QList<double> decimalFields(QStringView text);
QList<qint64> integerFields(QStringView text);

// Seconds with the strict decimal rule: absent for fewer than three numbers, frames divided by
// fps only when there are exactly four.
std::optional<double> toSeconds(QStringView text, double fps);

// Seconds with the integer rule, 0.0 for fewer than three numbers; the analysis uses it for a
// clip's start timecode.
double integerFieldsToSeconds(QStringView text, int fps);

QString format(qint64 hours, qint64 minutes, qint64 seconds, qint64 frames);

} // namespace Timecode

// Frame count used by every editor export; 0 for text with fewer than three integer fields.
qint64 tcToFrames(QStringView timecode, int fps);

// Seconds from midnight as timecode, hours not wrapped at 24.
QString secondsToTC(double seconds, int fps);
