// Draws the login screen's background photograph stand-in and the product word mark, so the
// bundle carries only pictures made for it.
#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QTextStream>
#include <cmath>

namespace {

const QColor indigo(93, 96, 242);

// A dusk sky over layered hills with out-of-focus lights: reads as "location shoot" under the
// dark veil the login screen lays over it.
QImage drawHero()
{
    const int width = 1920;
    const int height = 1200;
    QImage image(width, height, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);

    QLinearGradient sky(0, 0, 0, height);
    sky.setColorAt(0.0, QColor(18, 20, 54));
    sky.setColorAt(0.45, QColor(70, 58, 150));
    sky.setColorAt(0.72, QColor(214, 112, 96));
    sky.setColorAt(1.0, QColor(250, 190, 120));
    painter.fillRect(image.rect(), sky);

    QRadialGradient sun(width * 0.68, height * 0.70, height * 0.35);
    sun.setColorAt(0.0, QColor(255, 226, 170, 230));
    sun.setColorAt(0.25, QColor(255, 190, 130, 120));
    sun.setColorAt(1.0, QColor(255, 160, 110, 0));
    painter.fillRect(image.rect(), sun);

    QRandomGenerator random(20261123);
    for (int i = 0; i < 70; ++i) {
        const double x = random.bounded(width);
        const double y = random.bounded(height * 0.75);
        const double radius = 8 + random.bounded(60);
        QRadialGradient light(x, y, radius);
        const QColor tint = i % 3 == 0 ? QColor(255, 214, 160) : (i % 3 == 1 ? QColor(160, 170, 255) : QColor(255, 150, 170));
        QColor core = tint;
        core.setAlpha(40 + random.bounded(70));
        QColor edge = tint;
        edge.setAlpha(0);
        light.setColorAt(0.0, core);
        light.setColorAt(0.8, core);
        light.setColorAt(1.0, edge);
        painter.setPen(Qt::NoPen);
        painter.setBrush(light);
        painter.drawEllipse(QPointF(x, y), radius, radius);
    }

    const QColor hills[] = {QColor(58, 44, 96), QColor(38, 30, 72), QColor(22, 18, 46), QColor(12, 10, 28)};
    for (int layer = 0; layer < 4; ++layer) {
        QPainterPath path;
        const double base = height * (0.68 + 0.08 * layer);
        path.moveTo(0, height);
        for (int x = 0; x <= width; x += 16) {
            const double y = base - 60 * std::sin(x / (260.0 + 70 * layer) + layer * 1.7)
                             - 30 * std::sin(x / (97.0 + 23 * layer) + layer);
            path.lineTo(x, y);
        }
        path.lineTo(width, height);
        path.closeSubpath();
        painter.fillPath(path, hills[layer]);
    }
    return image;
}

// White word mark with an indigo marker badge; transparent so it sits on the frosted card.
QImage drawLogo()
{
    QImage image(800, 200, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);

    const QRectF badge(8, 28, 144, 144);
    QLinearGradient fill(badge.topLeft(), badge.bottomRight());
    fill.setColorAt(0.0, indigo.lighter(125));
    fill.setColorAt(1.0, indigo.darker(115));
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(badge, 36, 36);

    // A bookmark-shaped marker over a play triangle: markers on footage.
    QPainterPath marker;
    marker.moveTo(52, 58);
    marker.lineTo(108, 58);
    marker.lineTo(108, 142);
    marker.lineTo(80, 120);
    marker.lineTo(52, 142);
    marker.closeSubpath();
    painter.setBrush(Qt::white);
    painter.drawPath(marker);
    QPainterPath play;
    play.moveTo(71, 74);
    play.lineTo(94, 88);
    play.lineTo(71, 102);
    play.closeSubpath();
    painter.setBrush(indigo);
    painter.drawPath(play);

    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(120);
    font.setWeight(QFont::Bold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, -4);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(180, 0, 620, 200), Qt::AlignVCenter | Qt::AlignLeft, QStringLiteral("vorlix"));
    return image;
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() != 2) {
        QTextStream(stderr) << "usage: vorlix-artwork <resources folder>\n";
        return 2;
    }
    const QDir target(args.at(1));
    const bool ok = drawHero().save(target.filePath(QStringLiteral("hero.jpg")), "JPG", 88)
                    && drawLogo().save(target.filePath(QStringLiteral("nav-logo.png")), "PNG");
    return ok ? 0 : 1;
}
