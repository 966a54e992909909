#include "ui/transcript/TranscriptStyle.h"

#include <QFontDatabase>

namespace TranscriptStyle {

QColor toQColor(Rgb rgb, qreal opacity)
{
    QColor color(rgb.red, rgb.green, rgb.blue);
    color.setAlphaF(float(opacity));
    return color;
}

QColor secondaryText(const QPalette &palette)
{
    QColor color = palette.color(QPalette::WindowText);
    color.setAlphaF(0.55f);
    return color;
}

QFont monospaceFont(int pixelSize, QFont::Weight weight)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

} // namespace TranscriptStyle
