#include "ui/MarkerRow.h"

#include "ui/Theme.h"

#include <QFontDatabase>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace {

const QString earmarkType = QStringLiteral("earmark");

QLabel *timecodeLabel(const QString &timecode, bool monospaced)
{
    auto *label = new QLabel(timecode);
    QFont font = monospaced ? QFontDatabase::systemFont(QFontDatabase::FixedFont) : Theme::pixelFont(12);
    font.setPixelSize(12);
    font.setWeight(QFont::DemiBold);
    label->setFont(font);
    Theme::setTextColor(label, Theme::indigo());
    return label;
}

QString rgba(const QColor &color, double opacity)
{
    return QStringLiteral("rgba(%1,%2,%3,%4)").arg(color.red()).arg(color.green()).arg(color.blue()).arg(qRound(opacity * 255));
}

} // namespace

bool MarkerRow::showsRawText(const ShootMarker &marker)
{
    return marker.markerType == earmarkType && marker.raw && *marker.raw != QLatin1String("[no speech]");
}

MarkerRow::MarkerRow(const ShootMarker &marker, QWidget *parent)
    : QWidget(parent), m_isEarmark(marker.markerType == earmarkType)
{
    setObjectName(QStringLiteral("markerRow"));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(10, 10, 10, 10);
    row->setSpacing(10);

    auto *badge = new QLabel(marker.displayLabel());
    badge->setObjectName(QStringLiteral("markerBadge"));
    badge->setFont(Theme::pixelFont(10, QFont::Bold));
    badge->setStyleSheet(QStringLiteral("QLabel { color: white; background: %1; border-radius: 4px; padding: 2px 6px; }")
                             .arg(Theme::color(marker.color()).name()));
    // Badges keep their own width, but the texts of all rows start in one column.
    auto *badgeColumn = new QWidget;
    auto *badgeLayout = new QVBoxLayout(badgeColumn);
    badgeLayout->setContentsMargins(0, 1, 0, 0);
    badgeLayout->addWidget(badge, 0, Qt::AlignLeft | Qt::AlignTop);
    badgeLayout->addStretch(1);
    badgeColumn->setFixedWidth(QFontMetrics(badge->font()).horizontalAdvance(QStringLiteral("Earmark")) + 20);
    row->addWidget(badgeColumn);

    auto *column = new QVBoxLayout;
    column->setSpacing(4);
    auto *timecodes = new QHBoxLayout;
    timecodes->setSpacing(4);
    timecodes->addWidget(timecodeLabel(marker.timecode, true));
    if (marker.timecodeOut) {
        timecodes->addWidget(Theme::label(QStringLiteral("→"), Theme::TextStyle::SmallCaption, true));
        timecodes->addWidget(timecodeLabel(*marker.timecodeOut, false));
    }
    timecodes->addStretch(1);
    column->addLayout(timecodes);

    if (marker.summary) {
        auto *summary = new QLabel(*marker.summary);
        summary->setObjectName(QStringLiteral("markerSummary"));
        summary->setFont(Theme::pixelFont(13, QFont::DemiBold));
        summary->setWordWrap(true);
        column->addWidget(summary);
    }
    if (marker.quote) {
        QLabel *quote = Theme::label(QLatin1Char('"') + *marker.quote + QLatin1Char('"'), Theme::TextStyle::Caption, true);
        quote->setObjectName(QStringLiteral("markerQuote"));
        QFont font = Theme::pixelFont(12);
        font.setItalic(true);
        quote->setFont(font);
        quote->setWordWrap(true);
        auto *bar = new QFrame;
        bar->setFixedWidth(2);
        bar->setStyleSheet(QStringLiteral("QFrame { background: %1; border: none; }").arg(Theme::indigo().name()));
        auto *quoted = new QHBoxLayout;
        quoted->setContentsMargins(0, 0, 0, 0);
        quoted->setSpacing(8);
        quoted->addWidget(bar);
        quoted->addWidget(quote, 1);
        column->addLayout(quoted);
    }
    if (showsRawText(marker)) {
        QLabel *raw = Theme::label(*marker.raw, Theme::TextStyle::SmallCaption, true);
        raw->setObjectName(QStringLiteral("markerRaw"));
        raw->setWordWrap(true);
        raw->setStyleSheet(QStringLiteral("QLabel { background: %1; border-radius: 6px; padding: 8px; }").arg(rgba(Theme::indigo(), 0.06)));
        column->addWidget(raw);
    }
    row->addLayout(column, 1);
}

void MarkerRow::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    if (!m_isEarmark)
        return;
    QPainter painter(this);
    QColor tint = Theme::indigo();
    tint.setAlphaF(0.04);
    painter.fillRect(rect(), tint);
    painter.fillRect(QRect(0, 0, 3, height()), Theme::indigo());
}
