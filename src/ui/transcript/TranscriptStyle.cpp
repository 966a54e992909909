#include "ui/transcript/TranscriptStyle.h"

#include <QFontDatabase>

namespace TranscriptStyle {

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
