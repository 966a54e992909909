#include "ui/widgets/Icons.h"

#include <QApplication>
#include <QFile>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QPalette>
#include <QSvgRenderer>

static void initBundledResources()
{
    Q_INIT_RESOURCE(resources);
}

namespace Icons {
namespace {

const QHash<QString, QString> &symbolTable()
{
    static const QHash<QString, QString> table{
        {QStringLiteral("folder.badge.gearshape"), QStringLiteral("folder-cog")},
        {QStringLiteral("arrow.triangle.2.circlepath"), QStringLiteral("refresh-cw")},
        {QStringLiteral("sparkles"), QStringLiteral("sparkles")},
        {QStringLiteral("film"), QStringLiteral("film")},
        {QStringLiteral("person.circle"), QStringLiteral("circle-user")},
        {QStringLiteral("gearshape"), QStringLiteral("settings")},
        {QStringLiteral("checkmark.circle.fill"), QStringLiteral("circle-check")},
        {QStringLiteral("bookmark.fill"), QStringLiteral("bookmark")},
        {QStringLiteral("folder.fill"), QStringLiteral("folder")},
        {QStringLiteral("folder"), QStringLiteral("folder")},
        {QStringLiteral("xmark.circle.fill"), QStringLiteral("circle-x")},
        {QStringLiteral("plus"), QStringLiteral("plus")},
        {QStringLiteral("minus.circle"), QStringLiteral("circle-minus")},
        {QStringLiteral("pencil"), QStringLiteral("pencil")},
        {QStringLiteral("trash"), QStringLiteral("trash-2")},
        {QStringLiteral("clock"), QStringLiteral("clock")},
        {QStringLiteral("play.circle"), QStringLiteral("circle-play")},
        {QStringLiteral("play.circle.fill"), QStringLiteral("circle-play")},
        {QStringLiteral("arrow.down.doc"), QStringLiteral("file-down")},
        {QStringLiteral("waveform"), QStringLiteral("audio-waveform")},
        {QStringLiteral("highlighter"), QStringLiteral("highlighter")},
        {QStringLiteral("xmark"), QStringLiteral("x")},
        {QStringLiteral("checkmark"), QStringLiteral("check")},
        {QStringLiteral("text.alignleft"), QStringLiteral("text-align-start")},
    };
    return table;
}

// The icon set strokes with currentColor; substituting it tints the drawing without a mask pass.
void render(QPainter *painter, const QRectF &rect, const QString &symbolName, const QColor &color)
{
    QFile file(resourceFor(symbolName));
    if (!file.open(QIODevice::ReadOnly))
        return;
    QByteArray svg = file.readAll();
    svg.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
    QSvgRenderer renderer(svg);
    painter->save();
    painter->setOpacity(painter->opacity() * color.alphaF());
    renderer.render(painter, rect);
    painter->restore();
}

class SymbolIconEngine : public QIconEngine
{
public:
    SymbolIconEngine(QString symbolName, QColor color) : m_symbolName(std::move(symbolName)), m_color(std::move(color)) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        QColor color = m_color;
        if (!color.isValid())
            color = QApplication::palette().color(QPalette::Active, QPalette::ButtonText);
        if (mode == QIcon::Disabled)
            color.setAlphaF(color.alphaF() * 0.35);
        render(painter, rect, m_symbolName, color);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap result(size);
        result.fill(Qt::transparent);
        QPainter painter(&result);
        painter.setRenderHint(QPainter::Antialiasing);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return result;
    }

    QIconEngine *clone() const override { return new SymbolIconEngine(m_symbolName, m_color); }

private:
    QString m_symbolName;
    QColor m_color;
};

} // namespace

void ensureResources()
{
    static const bool loaded = (initBundledResources(), true);
    Q_UNUSED(loaded);
}

QString resourceFor(const QString &symbolName)
{
    const QString file = symbolTable().value(symbolName);
    return file.isEmpty() ? QString() : QStringLiteral(":/icons/%1.svg").arg(file);
}

QIcon symbol(const QString &symbolName, const QColor &color)
{
    ensureResources();
    return QIcon(new SymbolIconEngine(symbolName, color));
}

QPixmap pixmap(const QString &symbolName, int size, const QColor &color, qreal devicePixelRatio)
{
    ensureResources();
    const QString key = QStringLiteral("vorlix-symbol:%1:%2:%3:%4").arg(symbolName).arg(size).arg(color.name(QColor::HexArgb)).arg(devicePixelRatio);
    QPixmap cached;
    if (QPixmapCache::find(key, &cached))
        return cached;
    QPixmap result(QSize(size, size) * devicePixelRatio);
    result.setDevicePixelRatio(devicePixelRatio);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setRenderHint(QPainter::Antialiasing);
    render(&painter, QRectF(0, 0, size, size), symbolName, color);
    painter.end();
    QPixmapCache::insert(key, result);
    return result;
}

} // namespace Icons
