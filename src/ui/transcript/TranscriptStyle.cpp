#include "ui/transcript/TranscriptStyle.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace TranscriptStyle {

QColor toQColor(Rgb rgb, qreal opacity)
{
    QColor color(rgb.red, rgb.green, rgb.blue);
    color.setAlphaF(float(opacity));
    return color;
}

QColor secondaryText(const QPalette &palette)
{
    QColor color = palette.color(QPalette::WindowText);
    color.setAlphaF(0.55f);
    return color;
}

QFont font(int pixelSize, QFont::Weight weight)
{
    QFont font = QApplication::font();
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

QFont monospaceFont(int pixelSize, QFont::Weight weight)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

namespace {

void drawHighlighter(QPainter &p, qreal s)
{
    // A marker pen lying at 45 degrees with its chisel tip at the lower left and a stroke of ink.
    p.save();
    p.translate(s * 0.55, s * 0.45);
    p.rotate(45);
    const qreal w = s * 0.30;
    p.drawRoundedRect(QRectF(-w / 2, -s * 0.45, w, s * 0.55), s * 0.06, s * 0.06);
    QPainterPath tip;
    tip.moveTo(-w / 2, s * 0.12);
    tip.lineTo(w / 2, s * 0.12);
    tip.lineTo(w * 0.15, s * 0.34);
    tip.lineTo(-w * 0.15, s * 0.34);
    tip.closeSubpath();
    p.drawPath(tip);
    p.restore();
    p.drawLine(QPointF(s * 0.08, s * 0.92), QPointF(s * 0.42, s * 0.92));
}

void drawXmark(QPainter &p, qreal s)
{
    const qreal m = s * 0.22;
    p.drawLine(QPointF(m, m), QPointF(s - m, s - m));
    p.drawLine(QPointF(s - m, m), QPointF(m, s - m));
}

void drawAlignLeft(QPainter &p, qreal s)
{
    const qreal lengths[] = {0.84, 0.56, 0.84, 0.56};
    for (int i = 0; i < 4; ++i) {
        const qreal y = s * (0.2 + 0.2 * i);
        p.drawLine(QPointF(s * 0.08, y), QPointF(s * (0.08 + lengths[i]), y));
    }
}

void drawCheckmark(QPainter &p, qreal s)
{
    p.drawPolyline(QList<QPointF>{{s * 0.16, s * 0.54}, {s * 0.40, s * 0.78}, {s * 0.86, s * 0.24}});
}

} // namespace

QIcon symbol(const QString &name, const QColor &color, int pixelSize)
{
    const qreal ratio = 2.0; // crisp on high-density screens, scaled down elsewhere
    QPixmap pixmap(QSize(pixelSize, pixelSize) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal s = pixelSize;
    QPen pen(color, std::max(1.2, s / 10.0), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    p.setPen(pen);
    if (name == u"highlighter") {
        p.setBrush(Qt::NoBrush);
        drawHighlighter(p, s);
    } else if (name == u"xmark") {
        drawXmark(p, s);
    } else if (name == u"checkmark") {
        drawCheckmark(p, s);
    } else if (name == u"text.alignleft") {
        drawAlignLeft(p, s);
    }
    p.end();
    return QIcon(pixmap);
}

} // namespace TranscriptStyle
