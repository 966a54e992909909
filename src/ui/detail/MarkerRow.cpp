#include "ui/detail/MarkerRow.h"

#include "ui/widgets/Theme.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QTimer>

namespace {

const QString earmarkType = QStringLiteral("earmark");
const QString arrowText = QStringLiteral("→");
constexpr int margin = 10;
constexpr int lineSpacing = 4;
constexpr int textFlags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap;

QFont badgeFont()
{
    return Theme::pixelFont(10, QFont::Bold);
}

QFont timecodeFont(bool monospaced)
{
    QFont font = monospaced ? QFontDatabase::systemFont(QFontDatabase::FixedFont) : Theme::pixelFont(12);
    font.setPixelSize(12);
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont summaryFont()
{
    return Theme::pixelFont(13, QFont::DemiBold);
}

QFont quoteFont()
{
    QFont font = Theme::pixelFont(12);
    font.setItalic(true);
    return font;
}

QFont smallFont()
{
    return Theme::font(Theme::TextStyle::SmallCaption);
}

// Badges keep their own width, but the texts of all rows start in one column.
int badgeColumnWidth()
{
    return QFontMetrics(badgeFont()).horizontalAdvance(QStringLiteral("Earmark")) + 20;
}

// The rectangle `text` fills when wrapped at `width`, placed at (x, y).
QRect wrapped(const QFont &font, const QString &text, int x, int y, int width)
{
    const QRect bounds = QFontMetrics(font).boundingRect(QRect(0, 0, qMax(width, 1), 1 << 20), textFlags, text);
    return QRect(x, y, qMax(width, 1), bounds.height());
}

QColor withAlpha(QColor color, double alpha)
{
    color.setAlphaF(alpha);
    return color;
}

} // namespace

bool MarkerRow::showsRawText(const ShootMarker &marker)
{
    return marker.markerType == earmarkType && marker.raw && *marker.raw != QLatin1String("[no speech]");
}

MarkerRow::MarkerRow(const ShootMarker &marker, QWidget *parent)
    : QWidget(parent), m_marker(marker), m_label(marker.displayLabel()),
      m_quote(marker.quote ? QLatin1Char('"') + *marker.quote + QLatin1Char('"') : QString()),
      m_isEarmark(marker.markerType == earmarkType), m_showsRaw(showsRawText(marker))
{
    setObjectName(QStringLiteral("markerRow"));
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleName(shownTexts().join(QLatin1Char(' ')));
}

QStringList MarkerRow::shownTexts() const
{
    QStringList texts{m_label, m_marker.timecode};
    if (m_marker.timecodeOut)
        texts << arrowText << *m_marker.timecodeOut;
    if (m_marker.summary)
        texts << *m_marker.summary;
    if (m_marker.quote)
        texts << m_quote;
    if (m_showsRaw)
        texts << *m_marker.raw;
    return texts;
}

void MarkerRow::flash()
{
    m_flashing = true;
    update();
    QTimer::singleShot(1200, this, [this] {
        m_flashing = false;
        update();
    });
}

const MarkerRow::Geometry &MarkerRow::geometryFor(int width) const
{
    if (m_geometry.width != width)
        m_geometry = layoutAt(width);
    return m_geometry;
}

MarkerRow::Geometry MarkerRow::layoutAt(int width) const
{
    Geometry g;
    g.width = width;
    const QFontMetrics badgeMetrics(badgeFont());
    g.badge = QRect(margin, margin + 1, badgeMetrics.horizontalAdvance(m_label) + 12, badgeMetrics.height() + 4);

    const int x = margin + badgeColumnWidth() + margin;
    const int textWidth = width - x - margin;
    int y = margin;
    const QFontMetrics inMetrics(timecodeFont(true));
    const QFontMetrics outMetrics(timecodeFont(false));
    const QFontMetrics smallMetrics(smallFont());
    const int lineHeight = qMax(inMetrics.height(), outMetrics.height());
    g.timecode = QRect(x, y, inMetrics.horizontalAdvance(m_marker.timecode), lineHeight);
    if (m_marker.timecodeOut) {
        g.arrow = QRect(g.timecode.right() + 1 + lineSpacing, y, smallMetrics.horizontalAdvance(arrowText), lineHeight);
        g.timecodeOut = QRect(g.arrow.right() + 1 + lineSpacing, y, outMetrics.horizontalAdvance(*m_marker.timecodeOut), lineHeight);
    }
    y += lineHeight;
    if (m_marker.summary) {
        g.summary = wrapped(summaryFont(), *m_marker.summary, x, y + lineSpacing, textWidth);
        y = g.summary.bottom() + 1;
    }
    if (m_marker.quote) {
        g.quote = wrapped(quoteFont(), m_quote, x + 10, y + lineSpacing, textWidth - 10);
        g.quoteBar = QRect(x, g.quote.top(), 2, g.quote.height());
        y = g.quote.bottom() + 1;
    }
    if (m_showsRaw) {
        g.raw = wrapped(smallFont(), *m_marker.raw, x + 8, y + lineSpacing + 8, textWidth - 16);
        g.rawBox = g.raw.adjusted(-8, -8, 8, 8);
        y = g.rawBox.bottom() + 1;
    }
    g.height = qMax(y, g.badge.bottom() + 1) + margin;
    return g;
}

int MarkerRow::heightForWidth(int width) const
{
    return geometryFor(width).height;
}

QSize MarkerRow::sizeHint() const
{
    const int width = 480;
    return QSize(width, heightForWidth(width));
}

// The height is the unwrapped one: a scroll area takes the minimum height as a floor, so the
// wrapped height at the narrowest width would leave empty space below a wide column.
QSize MarkerRow::minimumSizeHint() const
{
    if (m_unwrappedHeight < 0)
        m_unwrappedHeight = layoutAt(QWIDGETSIZE_MAX / 2).height;
    return QSize(2 * margin + badgeColumnWidth() + margin + 120, m_unwrappedHeight);
}

void MarkerRow::paintEvent(QPaintEvent *)
{
    const Geometry &g = geometryFor(width());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor indigo = Theme::indigo();
    const QColor text = palette().color(QPalette::WindowText);
    const QColor secondary = palette().color(QPalette::PlaceholderText);
    if (m_isEarmark) {
        painter.fillRect(rect(), withAlpha(indigo, 0.04));
        painter.fillRect(QRect(0, 0, 3, height()), indigo);
    }
    if (m_flashing)
        painter.fillRect(rect(), withAlpha(palette().color(QPalette::Highlight), 0.18));

    QPainterPath badge;
    badge.addRoundedRect(g.badge, 4, 4);
    painter.fillPath(badge, Theme::color(m_marker.color()));
    painter.setPen(Qt::white);
    painter.setFont(badgeFont());
    painter.drawText(g.badge, Qt::AlignCenter, m_label);

    const QColor timecodeColour = Theme::indigoText();
    painter.setPen(timecodeColour);
    painter.setFont(timecodeFont(true));
    painter.drawText(g.timecode, Qt::AlignLeft | Qt::AlignVCenter, m_marker.timecode);
    if (m_marker.timecodeOut) {
        painter.setPen(secondary);
        painter.setFont(smallFont());
        painter.drawText(g.arrow, Qt::AlignLeft | Qt::AlignVCenter, arrowText);
        painter.setPen(timecodeColour);
        painter.setFont(timecodeFont(false));
        painter.drawText(g.timecodeOut, Qt::AlignLeft | Qt::AlignVCenter, *m_marker.timecodeOut);
    }
    if (m_marker.summary) {
        painter.setPen(text);
        painter.setFont(summaryFont());
        painter.drawText(g.summary, textFlags, *m_marker.summary);
    }
    if (m_marker.quote) {
        painter.fillRect(g.quoteBar, indigo);
        painter.setPen(secondary);
        painter.setFont(quoteFont());
        painter.drawText(g.quote, textFlags, m_quote);
    }
    if (m_showsRaw) {
        QPainterPath box;
        box.addRoundedRect(g.rawBox, 6, 6);
        painter.fillPath(box, withAlpha(indigo, 0.06));
        painter.setPen(secondary);
        painter.setFont(smallFont());
        painter.drawText(g.raw, textFlags, *m_marker.raw);
    }
}
