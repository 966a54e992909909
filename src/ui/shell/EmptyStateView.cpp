#include "ui/shell/EmptyStateView.h"

#include "ui/widgets/Icons.h"
#include "ui/widgets/Theme.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

EmptyStateView::EmptyStateView(QWidget *parent) : QWidget(parent)
{
    auto *stack = new QVBoxLayout(this);
    stack->setSpacing(12);
    stack->addStretch(1);
    auto *icon = new QLabel;
    icon->setObjectName(QStringLiteral("emptyIcon"));
    icon->setAlignment(Qt::AlignCenter);
    stack->addWidget(icon);
    auto *headline = Theme::label(QStringLiteral("No session selected"), Theme::TextStyle::Headline, true);
    headline->setAlignment(Qt::AlignCenter);
    stack->addWidget(headline);
    auto *caption = Theme::label(QStringLiteral("Select a session from the sidebar, or sync your shoots."), Theme::TextStyle::Caption, true);
    caption->setAlignment(Qt::AlignCenter);
    stack->addWidget(caption);
    stack->addStretch(1);
    refreshIcon();
}

void EmptyStateView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        refreshIcon();
}

void EmptyStateView::refreshIcon()
{
    findChild<QLabel *>(QStringLiteral("emptyIcon"))
        ->setPixmap(Icons::pixmap(QStringLiteral("film"), 40, palette().color(QPalette::PlaceholderText), devicePixelRatioF()));
}
