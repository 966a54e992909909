#pragma once

#include "model/Rgb.h"

#include <QColor>
#include <QFont>
#include <QPalette>

// Sizes are given in the design's points and used as logical pixels, so the transcript has the
// same proportions on every platform whatever the screen's dots per inch.
namespace TranscriptStyle {

// The range offer's yellow, the platform's system yellow rather than pure (255, 255, 0), which
// glares on a light background.
inline constexpr Rgb yellow{255, 204, 0};

// Secondary text: the palette's text colour, faded, so it reads on light and dark alike.
QColor secondaryText(const QPalette &palette);

QFont monospaceFont(int pixelSize, QFont::Weight weight = QFont::Normal);

} // namespace TranscriptStyle
