#pragma once

#include "model/Rgb.h"

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QString>

class QLabel;
class QPushButton;
class QWidget;

// The look of the application: Fusion with a light and a dark palette around the indigo accent,
// and the handful of text styles the screens use.
namespace Theme {

enum class TextStyle {
    Body,         // 13 px
    Headline,     // 15 px semibold
    Caption,      // 12 px
    SmallCaption, // 11 px
};

// The colours of the screens by what they show. Those the records and documents share are the
// core's Palette; every style sheet and painter takes its colours from here.
namespace Colour {
inline constexpr Rgb white{255, 255, 255};
inline constexpr Rgb indigo = Palette::indigo; // the accent
inline constexpr Rgb indigoHover{111, 114, 246};
inline constexpr Rgb indigoPressed{78, 80, 214};
// Indigo as text on the dark palette: the accent itself reaches only 3.3:1 on its window, this
// one 5.8:1 on the window and 6.4:1 on the base (4.5:1 is the floor for small text).
inline constexpr Rgb indigoTextOnDark{145, 148, 255};
inline constexpr Rgb charcoal = Palette::charcoal;
inline constexpr Rgb amber = Palette::amber;   // selects
inline constexpr Rgb green = Palette::green;   // matched footage, analysis
inline constexpr Rgb premiereBlue{0, 0, 214};
inline constexpr Rgb symbolGrey{128, 128, 133};
inline constexpr Rgb disabledFill{142, 142, 147};
inline constexpr Rgb destructiveLight{215, 48, 39};
inline constexpr Rgb destructiveDark{255, 105, 97};
inline constexpr Rgb errorOnPicture{255, 110, 100};
inline constexpr Rgb fieldText{29, 29, 31};
} // namespace Colour

QColor color(Rgb rgb, qreal opacity = 1.0);
QColor indigo();
// Indigo for text and line icons on the palette in force; fills keep indigo().
QColor indigoText();
// Red that reads on the palette in force.
QColor destructive();
// A colour as style sheets write it: "rgba(r,g,b,a)", alpha from 0 to 255.
QString css(const QColor &color);
QString css(Rgb rgb, int alpha = 255);

QPalette lightPalette();
QPalette darkPalette();

// "light", "dark", or anything else for the platform's own choice, read once at start.
void applyAppearance(const QString &appearance);
bool isDark();

QFont font(TextStyle style, QFont::Weight weight = QFont::Normal);
QFont pixelFont(int pixelSize, QFont::Weight weight = QFont::Normal);

// A label in a text style; secondary ones follow the palette's placeholder colour.
QLabel *label(const QString &text, TextStyle style, bool secondary = false, QWidget *parent = nullptr);
void setTextColor(QWidget *widget, const QColor &color);
// A borderless text button (links, "Sign Out"); hovering brightens it.
QPushButton *textButton(const QString &text, const QFont &font, const QColor &color);
// A text button in the palette's link colour, which follows every theme change.
QPushButton *linkButton(const QString &text, const QFont &font);
// A bold caption in `color`, as over the screen's sections ("MATCHED FOOTAGE").
QLabel *heading(const QString &text, const QColor &color);
// An upper-cased, letter-spaced, bold, secondary section title.
QLabel *sectionHeader(const QString &title, int pixelSize, qreal letterSpacing);
void setSecondary(QWidget *widget);
} // namespace Theme
