#include "ui/detail/CoverageStrip.h"

#include "export/ExportClips.h"
#include "export/Preflight.h"
#include "time/Timecode.h"
#include "ui/widgets/Theme.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QSet>
#include <QToolTip>
#include <algorithm>

namespace {

constexpr int trackTop = 10;
constexpr int trackHeight = 22;
constexpr int captionGap = 4;
constexpr qreal reach = 4; // how far from a tick the pointer still names it
// The amber of the ticks is 2.1:1 on the light window; as small text it darkens to 5.1:1.
constexpr Rgb amberTextOnLight{150, 100, 0};

QString framesText(qint64 frames, int rate)
{
    const qint64 seconds = std::max<qint64>(frames, 0) / rate;
    return Timecode::format(seconds / 3600, seconds / 60 % 60, seconds % 60, std::max<qint64>(frames, 0) % rate);
}

} // namespace

CoverageStrip::CoverageStrip(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("coverageStrip"));
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    hide();
}

void CoverageStrip::showSession(const ShootSession &session)
{
    if (session.markers == m_session.markers && session.matchedClips == m_session.matchedClips && session.fps == m_session.fps)
        return;
    m_session = session;
    setVisible(!session.markers.isEmpty() || !session.matchedClips.isEmpty());

    const Preflight check = preflight(session);
    const QSet<QString> offFootage(check.markersOffFootage.cbegin(), check.markersOffFootage.cend());
    const MarkerIndex frames(session.markers, session.fps);
    m_ticks.clear();
    m_bars.clear();
    for (qsizetype i = 0; i < session.markers.size(); ++i) {
        const ShootMarker &marker = session.markers[i];
        const bool on = !offFootage.contains(marker.id);
        const QString summary = markerLabel(marker);
        m_ticks.append({frames.frame(i), Theme::color(on ? marker.color() : Theme::Colour::amber), on,
                        marker.displayLabel() + u' ' + marker.timecode + (summary.isEmpty() ? QString() : QStringLiteral(" — ") + summary)
                            + (on ? QString() : QStringLiteral("\nOn no matched footage"))});
    }
    // A clip without timecode sits at zero in the documents; as a bar it would only stretch the
    // strip back to midnight, and the pre-flight line names it anyway.
    for (const ClipSpan &span : clipSpans(session.matchedClips, session.fps)) {
        if (span.clip->timecode)
            m_bars.append({span.start, span.end(), span.clip->filename + u' ' + span.timecode});
    }

    m_first = session.markers.isEmpty() ? std::numeric_limits<qint64>::max() : frames.earliest();
    m_last = session.markers.isEmpty() ? std::numeric_limits<qint64>::min() : Frames::add(frames.latest(), 1);
    for (const Bar &bar : std::as_const(m_bars)) {
        m_first = std::min(m_first, bar.start);
        m_last = std::max(m_last, bar.end);
    }
    if (m_last <= m_first)
        m_last = Frames::add(m_first, 1);
    const int rate = std::max(session.fps, 1);
    m_startText = framesText(m_first, rate);
    m_endText = framesText(m_last, rate);
    m_warns = !check.allClear();
    m_summary = m_warns ? check.summary() : QStringLiteral("All %1 markers on matched footage").arg(check.markers);
    setAccessibleName(QStringLiteral("Coverage: ") + m_summary);
    update();
}

QSize CoverageStrip::sizeHint() const
{
    return QSize(480, minimumSizeHint().height());
}

QSize CoverageStrip::minimumSizeHint() const
{
    return QSize(120, trackTop + trackHeight + captionGap + QFontMetrics(Theme::font(Theme::TextStyle::SmallCaption)).height());
}

QRectF CoverageStrip::track() const
{
    return QRectF(0.5, trackTop + 0.5, width() - 1.0, trackHeight);
}

qreal CoverageStrip::xOf(qint64 frame) const
{
    const QRectF area = track().adjusted(3, 0, -3, 0);
    return area.left() + area.width() * double(frame - m_first) / double(m_last - m_first);
}

QRect CoverageStrip::tickRect(qsizetype index) const
{
    if (index < 0 || index >= m_ticks.size() || !isVisible())
        return {};
    const Tick &tick = m_ticks[index];
    const QRectF box = track();
    const qreal top = tick.onFootage ? box.top() + 3 : box.top() - 6;
    return QRectF(xOf(tick.frame) - 1, top, 2, box.bottom() - 3 - top).toAlignedRect();
}

qsizetype CoverageStrip::tickAt(const QPoint &pos) const
{
    if (pos.y() < trackTop - 8 || pos.y() > trackTop + trackHeight)
        return -1;
    qsizetype nearest = -1;
    qreal best = reach;
    // Markers off the footage are drawn last, so they win a tie: they are what the strip warns of.
    for (qsizetype i = 0; i < m_ticks.size(); ++i) {
        const qreal distance = std::abs(xOf(m_ticks[i].frame) - pos.x());
        if (distance < best || (distance == best && !m_ticks[i].onFootage)) {
            best = distance;
            nearest = i;
        }
    }
    return nearest;
}

qsizetype CoverageStrip::barAt(const QPoint &pos) const
{
    if (!track().contains(pos))
        return -1;
    for (qsizetype i = 0; i < m_bars.size(); ++i) {
        if (xOf(m_bars[i].start) <= pos.x() && pos.x() <= xOf(m_bars[i].end))
            return i;
    }
    return -1;
}

bool CoverageStrip::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    auto *help = static_cast<QHelpEvent *>(event);
    const qsizetype tick = tickAt(help->pos());
    const qsizetype bar = tick < 0 ? barAt(help->pos()) : -1;
    const QString text = tick >= 0 ? m_ticks[tick].name : bar >= 0 ? m_bars[bar].name : QString();
    if (text.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), text, this);
    return true;
}

void CoverageStrip::mouseReleaseEvent(QMouseEvent *event)
{
    const qsizetype tick = event->button() == Qt::LeftButton ? tickAt(event->position().toPoint()) : -1;
    if (tick >= 0)
        Q_EMIT markerClicked(tick);
}

void CoverageStrip::mouseMoveEvent(QMouseEvent *event)
{
    setCursor(tickAt(event->position().toPoint()) >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void CoverageStrip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = track();
    const QColor text = palette().color(QPalette::WindowText);
    QColor frame = text;
    frame.setAlphaF(0.18f);
    painter.setPen(QPen(frame, 1));
    painter.setBrush(palette().color(QPalette::AlternateBase));
    painter.drawRoundedRect(box, 4, 4);

    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::color(Theme::Colour::green, Theme::isDark() ? 0.45 : 0.3));
    for (const Bar &bar : std::as_const(m_bars)) {
        const qreal left = xOf(bar.start);
        painter.drawRoundedRect(QRectF(left, box.top() + 2, std::max(2.0, xOf(bar.end) - left), box.height() - 4), 2, 2);
    }
    for (const bool onFootage : {true, false}) {
        for (qsizetype i = 0; i < m_ticks.size(); ++i) {
            if (m_ticks[i].onFootage == onFootage)
                painter.fillRect(tickRect(i), m_ticks[i].colour);
        }
    }

    painter.setFont(Theme::font(Theme::TextStyle::SmallCaption));
    QColor secondary = text;
    secondary.setAlphaF(0.6f);
    painter.setPen(secondary);
    const QRectF captions(0, box.bottom() + captionGap, width(), height() - box.bottom() - captionGap);
    painter.drawText(captions, Qt::AlignLeft | Qt::AlignTop, m_startText);
    painter.drawText(captions, Qt::AlignRight | Qt::AlignTop, m_endText);
    if (m_warns)
        painter.setPen(Theme::color(Theme::isDark() ? Theme::Colour::amber : amberTextOnLight));
    painter.drawText(captions, Qt::AlignHCenter | Qt::AlignTop, m_summary);
}
