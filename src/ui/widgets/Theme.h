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

QColor color(Rgb rgb);
QColor indigo();
QColor destructive();

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
// An upper-cased, letter-spaced, bold, secondary section title.
QLabel *sectionHeader(const QString &title, int pixelSize, qreal letterSpacing);
void setSecondary(QWidget *widget);
} // namespace Theme
