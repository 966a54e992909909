#include "ui/widgets/Theme.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QStyleFactory>

namespace Theme {
namespace {

// The platform's palette before we replace it: what "system" follows.
const QPalette &platformPalette()
{
    static const QPalette palette = QApplication::palette();
    return palette;
}

bool g_dark = false;

void setAccent(QPalette &palette, const QColor &highlightedText, const QColor &link)
{
    palette.setColor(QPalette::Highlight, indigo());
    palette.setColor(QPalette::HighlightedText, highlightedText);
    palette.setColor(QPalette::Link, link);
    palette.setColor(QPalette::LinkVisited, link);
}

} // namespace

QColor color(Rgb rgb, qreal opacity)
{
    QColor result(rgb.red, rgb.green, rgb.blue);
    result.setAlphaF(float(opacity));
    return result;
}

QColor indigo()
{
    return color(Colour::indigo);
}

QColor indigoText()
{
    return color(g_dark ? Colour::indigoTextOnDark : Colour::indigo);
}

QColor destructive()
{
    return color(g_dark ? Colour::destructiveDark : Colour::destructiveLight);
}

QString css(const QColor &color)
{
    return css(Rgb{color.red(), color.green(), color.blue()}, color.alpha());
}

QString css(Rgb rgb, int alpha)
{
    return QStringLiteral("rgba(%1,%2,%3,%4)").arg(rgb.red).arg(rgb.green).arg(rgb.blue).arg(alpha);
}

namespace {

// The colours that set one palette apart from the other; everything else is shared.
struct PaletteColours {
    QColor window, text, base, alternateBase, button, toolTipBase, placeholder;
    QColor light, midlight, mid, dark, shadow, disabledText, link;
};

QPalette fusionPalette(const PaletteColours &c)
{
    QPalette palette;
    palette.setColor(QPalette::Window, c.window);
    palette.setColor(QPalette::WindowText, c.text);
    palette.setColor(QPalette::Base, c.base);
    palette.setColor(QPalette::AlternateBase, c.alternateBase);
    palette.setColor(QPalette::Text, c.text);
    palette.setColor(QPalette::Button, c.button);
    palette.setColor(QPalette::ButtonText, c.text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, c.toolTipBase);
    palette.setColor(QPalette::ToolTipText, c.text);
    palette.setColor(QPalette::PlaceholderText, c.placeholder);
    palette.setColor(QPalette::Light, c.light);
    palette.setColor(QPalette::Midlight, c.midlight);
    palette.setColor(QPalette::Mid, c.mid);
    palette.setColor(QPalette::Dark, c.dark);
    palette.setColor(QPalette::Shadow, c.shadow);
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, c.disabledText);
    setAccent(palette, Qt::white, c.link);
    return palette;
}

} // namespace

QPalette lightPalette()
{
    return fusionPalette({.window = QColor(246, 246, 248),
                          .text = QColor(29, 29, 31),
                          .base = Qt::white,
                          .alternateBase = QColor(240, 240, 244),
                          .button = QColor(252, 252, 253),
                          .toolTipBase = QColor(255, 255, 240),
                          .placeholder = QColor(110, 110, 118),
                          .light = Qt::white,
                          .midlight = QColor(232, 232, 236),
                          .mid = QColor(200, 200, 206),
                          .dark = QColor(160, 160, 168),
                          .shadow = QColor(120, 120, 128),
                          .disabledText = QColor(170, 170, 176),
                          .link = color(Colour::indigo)});
}

QPalette darkPalette()
{
    return fusionPalette({.window = QColor(36, 36, 40),
                          .text = QColor(236, 236, 240),
                          .base = QColor(28, 28, 31),
                          .alternateBase = QColor(44, 44, 49),
                          .button = QColor(52, 52, 58),
                          .toolTipBase = QColor(52, 52, 58),
                          .placeholder = QColor(152, 152, 160),
                          .light = QColor(70, 70, 76),
                          .midlight = QColor(58, 58, 64),
                          .mid = QColor(46, 46, 52),
                          .dark = QColor(20, 20, 22),
                          .shadow = Qt::black,
                          .disabledText = QColor(105, 105, 112),
                          .link = color(Colour::indigoTextOnDark)});
}

namespace {

// The few controls Fusion draws too plainly for this program, in the colours of the palette in
// force. Re-applied with every palette, which also repolishes every widget.
QString styleSheetFor(const QPalette &palette)
{
    const QColor text = palette.color(QPalette::Text);
    QColor faint = text;
    faint.setAlphaF(0.28);
    QColor hover = text;
    hover.setAlphaF(0.08);
    QColor handle = text;
    handle.setAlphaF(0.45);
    // The toolbar's own rule goes by type: a toolbar sets its margins from the style sheet when
    // it is made, before it has its name, and would grow at the first re-polish.
    return QStringLiteral(
               "QScrollBar:vertical { background: transparent; width: 10px; margin: 2px 2px 2px 0; }"
               "QScrollBar::handle:vertical { background: %1; border-radius: 3px; min-height: 32px; margin: 0 1px; }"
               "QScrollBar::handle:vertical:hover { background: %2; }"
               "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
               "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }"
               "QToolBar { border: none; border-bottom: 1px solid %3; padding: 4px 8px; spacing: 4px; background: %4; }"
               "QToolBar#mainToolbar QToolButton { padding: 4px 8px; border-radius: 6px; color: %5; }"
               "QToolBar#mainToolbar QToolButton:hover { background: %6; }"
               "QToolBar#mainToolbar QToolButton:disabled { color: %7; }"
               "QFrame#sidebarDivider, QSplitter::handle { background: %3; border: none; }"
               "QLineEdit#sessionFilter { background: %8; color: %5; border: 1px solid %3; border-radius: 6px; padding: 3px 6px; }"
               "QLineEdit#renameField { background: %8; color: %5; border: 1px solid %10; border-radius: 4px; padding: 0 3px; }"
               "QPushButton[segment=\"first\"], QPushButton[segment=\"middle\"], QPushButton[segment=\"last\"]"
               " { padding: 5px 0; background: %9; color: %5; border: 1px solid %3; }"
               "QPushButton[segment=\"middle\"], QPushButton[segment=\"last\"] { border-left: none; }"
               "QPushButton[segment=\"first\"] { border-top-left-radius: 6px; border-bottom-left-radius: 6px; }"
               "QPushButton[segment=\"last\"] { border-top-right-radius: 6px; border-bottom-right-radius: 6px; }"
               "QPushButton[segment=\"first\"]:checked, QPushButton[segment=\"middle\"]:checked, QPushButton[segment=\"last\"]:checked"
               " { background: %10; color: white; border-color: %10; }"
               "QTabBar#viewPicker::tab { padding: 5px 16px; margin: 0; background: %9; color: %5; border: 1px solid %3; }"
               "QTabBar#viewPicker::tab:first { border-top-left-radius: 6px; border-bottom-left-radius: 6px; }"
               "QTabBar#viewPicker::tab:last { border-left: none; border-top-right-radius: 6px; border-bottom-right-radius: 6px; }"
               "QTabBar#viewPicker::tab:selected { background: %10; color: white; border-color: %10; }")
        .arg(css(faint), css(handle), css(palette.color(QPalette::Mid)), css(palette.color(QPalette::Window)),
             css(palette.color(QPalette::ButtonText)), css(hover), css(palette.color(QPalette::Disabled, QPalette::ButtonText)),
             css(palette.color(QPalette::Base)), css(palette.color(QPalette::Button)))
        .arg(css(Colour::indigo));
}

} // namespace

void applyAppearance(const QString &appearance)
{
    const bool platformDark = platformPalette().color(QPalette::Window).lightness() < 128;
    g_dark = appearance == QLatin1String("dark") || (appearance != QLatin1String("light") && platformDark);
    if (QApplication::style()->name().compare(QLatin1String("fusion"), Qt::CaseInsensitive) != 0)
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QPalette palette = g_dark ? darkPalette() : lightPalette();
    QApplication::setPalette(palette);
    qApp->setStyleSheet(styleSheetFor(palette));
}

bool isDark()
{
    return g_dark;
}

QFont pixelFont(int pixelSize, QFont::Weight weight)
{
    QFont font = QApplication::font();
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

QFont font(TextStyle style, QFont::Weight weight)
{
    switch (style) {
    case TextStyle::Body:
        return pixelFont(13, weight);
    case TextStyle::Headline:
        return pixelFont(15, weight == QFont::Normal ? QFont::DemiBold : weight);
    case TextStyle::Caption:
        return pixelFont(12, weight);
    case TextStyle::SmallCaption:
        return pixelFont(11, weight);
    }
    return pixelFont(13, weight);
}

void setTextColor(QWidget *widget, const QColor &color)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, color);
    palette.setColor(QPalette::ButtonText, color);
    palette.setColor(QPalette::Text, color);
    widget->setPalette(palette);
}

void setSecondary(QWidget *widget)
{
    widget->setForegroundRole(QPalette::PlaceholderText);
}

QPushButton *textButton(const QString &text, const QFont &font, const QColor &color)
{
    auto *button = new QPushButton(text);
    button->setFlat(true);
    button->setCursor(Qt::PointingHandCursor);
    button->setFont(font);
    QColor hover = color;
    hover.setAlphaF(std::min(1.0, color.alphaF() + 0.3));
    button->setStyleSheet(QStringLiteral("QPushButton { border: none; background: transparent; padding: 0; color: %1; text-align: left; }"
                                         "QPushButton:hover { color: %2; }")
                              .arg(color.name(QColor::HexArgb), (color.alphaF() < 1.0 ? hover : color.lighter(120)).name(QColor::HexArgb)));
    return button;
}

QPushButton *linkButton(const QString &text, const QFont &font)
{
    auto *button = new QPushButton(text);
    button->setFlat(true);
    button->setCursor(Qt::PointingHandCursor);
    button->setFont(font);
    button->setStyleSheet(QStringLiteral("QPushButton { border: none; background: transparent; padding: 0; color: palette(link); text-align: left; }"
                                         "QPushButton:hover { text-decoration: underline; }"));
    return button;
}

QLabel *heading(const QString &text, const QColor &color)
{
    QLabel *heading = label(text, TextStyle::Caption);
    heading->setFont(font(TextStyle::Caption, QFont::Bold));
    setTextColor(heading, color);
    return heading;
}

QLabel *sectionHeader(const QString &title, int pixelSize, qreal letterSpacing)
{
    QFont headerFont = pixelFont(pixelSize, QFont::Bold);
    headerFont.setLetterSpacing(QFont::AbsoluteSpacing, letterSpacing);
    auto *header = new QLabel(title.toUpper());
    header->setFont(headerFont);
    setSecondary(header);
    return header;
}

QLabel *label(const QString &text, TextStyle style, bool secondary, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setFont(font(style));
    if (secondary)
        setSecondary(label);
    return label;
}

} // namespace Theme
