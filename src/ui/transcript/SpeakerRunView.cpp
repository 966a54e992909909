#include "ui/transcript/SpeakerRunView.h"

#include "ui/transcript/TranscriptStyle.h"
#include "ui/transcript/WordWidthCache.h"
#include "ui/widgets/Theme.h"

#include <QContextMenuEvent>
#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace {

constexpr qreal sidePadding = 4;
constexpr qreal laterRunTopPadding = 8;
constexpr qreal headerToChips = 4;
constexpr qreal headerSpacing = 6;
constexpr qreal dotSize = 7;
constexpr qreal chipVerticalPadding = 2;
constexpr qreal chipSidePadding = 4;
constexpr qreal chipCornerRadius = 4;
constexpr qreal gradeGap = 4;

} // namespace

QFont SpeakerRunView::chipFont()
{
    return Theme::pixelFont(14);
}

SpeakerRunView::SpeakerRunView(int runIndex, SpeakerRun run, WordWidthCache &chipWidths,
                               QWidget *parent)
    : QWidget(parent)
    , m_run(std::move(run))
    , m_runIndex(runIndex)
    , m_label(speakerLabel(m_run.speaker))
    , m_speakerColor(Theme::color(speakerColor(m_run.speaker)))
    , m_chipFont(chipFont())
    , m_timecodeFont(TranscriptStyle::monospaceFont(11, QFont::Medium))
    , m_labelFont(Theme::pixelFont(11, QFont::DemiBold))
    , m_gradeFont(Theme::pixelFont(10, QFont::Bold))
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);

    const QFontMetricsF chipMetrics(m_chipFont);
    m_chipHeight = std::ceil(chipMetrics.height()) + 2 * chipVerticalPadding;
    m_chipAscent = chipMetrics.ascent();
    m_headerHeight = std::ceil(std::max({QFontMetricsF(m_timecodeFont).height(),
                                         QFontMetricsF(m_labelFont).height(), dotSize}));
    m_gradeBadgeWidth = std::ceil(QFontMetricsF(m_gradeFont).horizontalAdvance(u'W')) + 6;
    m_chips.reserve(m_run.segments.size());
    for (const TranscriptSegment &segment : std::as_const(m_run.segments))
        m_chips.append(Chip{chipWidths.width(segment.text + u' '), ChipState::Plain, {}, {}});
}

void SpeakerRunView::setChipStates(const SegmentSelection &selection,
                                   const QSet<QString> &highlightRangeIds)
{
    bool recoloured = false;
    bool reflowed = false;
    for (qsizetype i = 0; i < m_chips.size(); ++i) {
        const QString &id = m_run.segments[i].id;
        Chip &chip = m_chips[i];
        const ChipState state = chipState(id, selection.selectedSegmentIds, highlightRangeIds);
        const bool selected = state == ChipState::Selected;
        const QColor tint = selected ? Theme::color(highlightColor(id, selection.segmentGrades)) : QColor();
        const QString grade = selected && gradeColor(selection.segmentGrades.value(id)) ? selection.segmentGrades.value(id) : QString();
        if (state == chip.state && tint == chip.tint && grade == chip.grade)
            continue;
        reflowed |= (state == ChipState::Plain) != (chip.state == ChipState::Plain) || grade.isEmpty() != chip.grade.isEmpty();
        recoloured = true;
        chip.state = state;
        chip.tint = tint;
        chip.grade = grade;
    }
    if (reflowed) {
        m_placementWidth = -1;
        updateGeometry();
    }
    if (recoloured)
        update();
}

void SpeakerRunView::setCurrentChip(const QString &segmentId)
{
    qsizetype current = -1;
    for (qsizetype i = 0; i < m_run.segments.size() && current < 0 && !segmentId.isEmpty(); ++i) {
        if (m_run.segments[i].id == segmentId)
            current = i;
    }
    if (std::exchange(m_currentChip, current) != current)
        update();
}

qreal SpeakerRunView::chipsTop() const
{
    return (m_runIndex == 0 ? 0 : laterRunTopPadding) + m_headerHeight + headerToChips;
}

qreal SpeakerRunView::chipWidth(const Chip &chip) const
{
    return chip.textWidth + (chip.state == ChipState::Plain ? 0 : 2 * chipSidePadding)
        + (chip.grade.isEmpty() ? 0 : m_gradeBadgeWidth + gradeGap);
}

const FlowPlacement &SpeakerRunView::placement(int width) const
{
    if (width != m_placementWidth) {
        QList<QSizeF> sizes;
        sizes.reserve(m_chips.size());
        for (const Chip &chip : m_chips)
            sizes.append(QSizeF(chipWidth(chip), m_chipHeight));
        m_placement = WrappingHStack{0}.arrange(sizes, std::max(0.0, width - 2 * sidePadding));
        m_placementWidth = width;
    }
    return m_placement;
}

int SpeakerRunView::heightForWidth(int width) const
{
    return int(std::ceil(chipsTop() + placement(width).size.height()));
}

QSize SpeakerRunView::sizeHint() const
{
    const int width = 480;
    return QSize(width, heightForWidth(width));
}

QSize SpeakerRunView::minimumSizeHint() const
{
    return QSize(0, int(std::ceil(chipsTop() + m_chipHeight)));
}

QRectF SpeakerRunView::chipRectAt(qsizetype index) const
{
    const QPointF origin = placement(width()).origins[index];
    return QRectF(sidePadding + origin.x(), chipsTop() + origin.y(), chipWidth(m_chips[index]),
                  m_chipHeight);
}

QRect SpeakerRunView::chipRect(const QString &segmentId) const
{
    for (qsizetype i = 0; i < m_run.segments.size(); ++i) {
        if (m_run.segments[i].id == segmentId)
            return chipRectAt(i).toAlignedRect();
    }
    return {};
}

qsizetype SpeakerRunView::chipAt(const QPointF &pos) const
{
    const QList<QPointF> &origins = placement(width()).origins;
    const QPointF flowPos = pos - QPointF(sidePadding, chipsTop());
    // Every chip has the same height, so the rows are found by the origins' y alone.
    auto it = std::upper_bound(origins.cbegin(), origins.cend(), flowPos.y(),
                               [](qreal y, const QPointF &origin) { return y < origin.y(); });
    while (it != origins.cbegin()) {
        --it;
        if (flowPos.y() >= it->y() + m_chipHeight)
            break;
        const qsizetype index = it - origins.cbegin();
        if (flowPos.x() >= it->x() && flowPos.x() < it->x() + chipWidth(m_chips[index]))
            return index;
    }
    return -1;
}

void SpeakerRunView::paintHeader(QPainter &painter)
{
    const qreal top = m_runIndex == 0 ? 0 : laterRunTopPadding;
    const QColor secondary = TranscriptStyle::secondaryText(palette());
    qreal x = sidePadding;

    painter.setPen(secondary);
    painter.setFont(m_timecodeFont);
    const QFontMetricsF timecodeMetrics(m_timecodeFont);
    const QRectF timecodeBox(x, top, timecodeMetrics.horizontalAdvance(m_run.timecode),
                             m_headerHeight);
    painter.drawText(timecodeBox, Qt::AlignLeft | Qt::AlignVCenter, m_run.timecode);
    x = timecodeBox.right() + headerSpacing;

    painter.setPen(Qt::NoPen);
    painter.setBrush(m_speakerColor);
    painter.drawEllipse(QRectF(x, top + (m_headerHeight - dotSize) / 2, dotSize, dotSize));
    x += dotSize + headerSpacing;

    painter.setPen(secondary);
    painter.setFont(m_labelFont);
    painter.drawText(QRectF(x, top, width() - x, m_headerHeight), Qt::AlignLeft | Qt::AlignVCenter,
                     m_label);
}

void SpeakerRunView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect exposed = event->rect();
    if (exposed.top() < chipsTop())
        paintHeader(painter);

    const QList<QPointF> &origins = placement(width()).origins;
    const qreal firstY = exposed.top() - chipsTop() - m_chipHeight;
    const qreal lastY = exposed.bottom() - chipsTop();
    auto it = std::upper_bound(origins.cbegin(), origins.cend(), firstY,
                               [](qreal y, const QPointF &origin) { return y < origin.y(); });
    const QColor text = palette().color(QPalette::WindowText);
    const QColor highlightFill = Theme::color(TranscriptStyle::yellow, 0.25);
    painter.setFont(m_chipFont);
    for (; it != origins.cend() && it->y() <= lastY; ++it)
        paintChip(painter, it - origins.cbegin(), text, highlightFill);
}

void SpeakerRunView::paintChip(QPainter &painter, qsizetype index, const QColor &text, const QColor &highlightFill)
{
    const Chip &chip = m_chips[index];
    const QRectF box = chipRectAt(index);
    qreal textX = box.left();
    if (chip.state != ChipState::Plain) {
        QColor fill = highlightFill;
        if (chip.state == ChipState::Selected) {
            fill = chip.tint;
            fill.setAlphaF(0.1f);
        }
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawRoundedRect(box, chipCornerRadius, chipCornerRadius);
        textX += chipSidePadding;
    }
    if (!chip.grade.isEmpty()) {
        const QRectF badge(textX, box.top() + 4, m_gradeBadgeWidth, box.height() - 8);
        painter.setPen(Qt::NoPen);
        painter.setBrush(chip.tint);
        painter.drawRoundedRect(badge, 3, 3);
        painter.setPen(Qt::white);
        painter.setFont(m_gradeFont);
        painter.drawText(badge, Qt::AlignCenter, chip.grade);
        painter.setFont(m_chipFont);
        textX = badge.right() + gradeGap;
    }
    // An ungraded select's indigo is too dark to read as text on the dark palette.
    const QColor selectedText = chip.tint == Theme::indigo() ? Theme::indigoText() : chip.tint;
    painter.setPen(chip.state == ChipState::Selected ? selectedText : text);
    painter.drawText(QPointF(textX, box.top() + chipVerticalPadding + m_chipAscent), m_run.segments[index].text);
    if (index == m_currentChip) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(box.adjusted(0.75, 0.75, -0.75, -0.75), chipCornerRadius, chipCornerRadius);
    }
}

void SpeakerRunView::mousePressEvent(QMouseEvent *event)
{
    m_pressedChip = event->button() == Qt::LeftButton ? chipAt(event->position()) : -1;
    event->accept();
}

void SpeakerRunView::mouseReleaseEvent(QMouseEvent *event)
{
    const qsizetype pressed = std::exchange(m_pressedChip, -1);
    if (event->button() == Qt::LeftButton && pressed >= 0 && chipAt(event->position()) == pressed)
        Q_EMIT chipClicked(m_run.segments[pressed].id, event->modifiers());
    event->accept();
}

void SpeakerRunView::contextMenuEvent(QContextMenuEvent *event)
{
    const qsizetype chip = chipAt(event->pos());
    if (chip < 0) {
        event->ignore();
        return;
    }
    Q_EMIT chipMenuRequested(m_run.segments[chip].id, event->globalPos());
}
