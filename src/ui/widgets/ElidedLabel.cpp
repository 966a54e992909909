#include "ui/widgets/ElidedLabel.h"

#include <QPainter>
#include <QtMath>

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, QWidget *parent) : QWidget(parent), m_mode(mode)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void ElidedLabel::setText(const QString &text)
{
    m_text = text;
    setToolTip(text);
    updateGeometry();
    update();
}

QSize ElidedLabel::sizeHint() const
{
    // Rounded up: the elision measures fractional widths, and a hint a pixel short elides text that fits.
    return {qCeil(QFontMetricsF(font()).horizontalAdvance(m_text)), fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance(QStringLiteral("M…M")), fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, fontMetrics().elidedText(m_text, m_mode, width()));
}
