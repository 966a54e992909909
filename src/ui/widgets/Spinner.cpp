#include "ui/widgets/Spinner.h"

#include <QPainter>

Spinner::Spinner(int diameter, QWidget *parent) : QWidget(parent), m_diameter(diameter)
{
    setFixedSize(diameter, diameter);
    m_timer.setInterval(16);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_angle = (m_angle + 12) % 360;
        update();
    });
}

void Spinner::setColor(const QColor &color)
{
    m_color = color;
    update();
}

QSize Spinner::sizeHint() const
{
    return {m_diameter, m_diameter};
}

void Spinner::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor color = m_color.isValid() ? m_color : palette().color(QPalette::WindowText);
    const qreal width = std::max(1.5, m_diameter / 8.0);
    const QRectF ring = QRectF(rect()).adjusted(width, width, -width, -width);
    QColor track = color;
    track.setAlphaF(color.alphaF() * 0.2);
    painter.setPen(QPen(track, width));
    painter.drawEllipse(ring);
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, -m_angle * 16, 100 * 16);
}

void Spinner::showEvent(QShowEvent *)
{
    m_timer.start();
}

void Spinner::hideEvent(QHideEvent *)
{
    m_timer.stop();
}
