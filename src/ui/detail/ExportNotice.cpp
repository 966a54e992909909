#include "ui/detail/ExportNotice.h"

#include "platform/Desktop.h"
#include "ui/widgets/Buttons.h"
#include "ui/widgets/Icons.h"
#include "ui/widgets/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

ExportNotice::ExportNotice(Desktop &desktop, QWidget *parent) : QFrame(parent), m_desktop(desktop)
{
    setObjectName(QStringLiteral("exportNotice"));
    setAccessibleName(QStringLiteral("Export report"));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(24, 8, 12, 8);
    row->setSpacing(10);
    m_icon = new QLabel;
    row->addWidget(m_icon, 0, Qt::AlignTop);
    m_message = Theme::label(QString(), Theme::TextStyle::Body);
    m_message->setObjectName(QStringLiteral("exportNoticeText"));
    m_message->setWordWrap(true);
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    row->addWidget(m_message, 1);
    m_reveal = Buttons::bordered(QStringLiteral("Show in folder"), QStringLiteral("folder"));
    m_reveal->setFocusPolicy(Qt::TabFocus);
    connect(m_reveal, &QPushButton::clicked, this, [this] { m_desktop.revealFile(m_report.file); });
    row->addWidget(m_reveal, 0, Qt::AlignVCenter);
    QToolButton *close = Buttons::symbol(QStringLiteral("xmark"), Theme::color(Theme::Colour::symbolGrey), QStringLiteral("Dismiss"));
    close->setObjectName(QStringLiteral("dismissNotice"));
    close->setAccessibleName(QStringLiteral("Dismiss"));
    close->setFocusPolicy(Qt::TabFocus);
    connect(close, &QToolButton::clicked, this, &ExportNotice::dismiss);
    row->addWidget(close, 0, Qt::AlignVCenter);
    hide();
}

void ExportNotice::report(const ExportReport &report)
{
    m_report = report;
    m_message->setText(report.message);
    m_reveal->setVisible(!report.failed && !report.file.isEmpty());
    applyColours();
    show();
}

void ExportNotice::dismiss()
{
    m_report = {};
    hide();
}

// A tint of the report's colour over the window, so the band reads on light and dark alike.
void ExportNotice::applyColours()
{
    const Rgb tone = m_report.failed ? Theme::Colour::destructiveLight : Theme::Colour::green;
    const QString symbol = m_report.failed ? QStringLiteral("xmark.circle.fill") : QStringLiteral("checkmark.circle.fill");
    m_icon->setPixmap(Icons::pixmap(symbol, 18, Theme::color(tone), devicePixelRatioF()));
    setStyleSheet(QStringLiteral("#exportNotice { background: %1; border-bottom: 1px solid %2; }")
                      .arg(Theme::css(tone, 30), Theme::css(tone, 90)));
}
