#include "ui/widgets/Buttons.h"

#include "ui/widgets/Icons.h"
#include "ui/widgets/Theme.h"

#include <QPushButton>
#include <QToolButton>

namespace Buttons {

QPushButton *prominent(const QString &text, const QString &symbol, const QColor &tint)
{
    auto *button = new QPushButton(Icons::symbol(symbol, Qt::white), text);
    button->setIconSize(QSize(16, 16));
    button->setFont(Theme::font(Theme::TextStyle::Body, QFont::DemiBold));
    button->setCursor(Qt::PointingHandCursor);
    button->setStyleSheet(QStringLiteral("QPushButton { color: white; background: %1; border: none; border-radius: 6px; padding: 8px 12px; }"
                                         "QPushButton:pressed { background: %2; }"
                                         "QPushButton:disabled { color: white; background: %3; }")
                              .arg(tint.name(), tint.darker(125).name(), Theme::css(Theme::Colour::disabledFill)));
    return button;
}

QPushButton *bordered(const QString &text, const QString &symbol)
{
    auto *button = new QPushButton(Icons::symbol(symbol), text);
    button->setCursor(Qt::PointingHandCursor);
    button->setStyleSheet(QStringLiteral("QPushButton { padding: 6px 12px; border-radius: 6px; border: 1px solid palette(mid); background: palette(button); }"
                                         "QPushButton:pressed { background: palette(midlight); }"));
    return button;
}

QToolButton *symbol(const QString &symbol, const QColor &color, const QString &toolTip)
{
    auto *button = new QToolButton;
    button->setIcon(Icons::symbol(symbol, color));
    button->setIconSize(QSize(18, 18));
    button->setAutoRaise(true);
    button->setToolTip(toolTip);
    button->setCursor(Qt::PointingHandCursor);
    return button;
}

} // namespace Buttons
