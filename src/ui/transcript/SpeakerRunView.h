#pragma once

#include "ui/transcript/SegmentSelection.h"
#include "ui/transcript/SpeakerRun.h"
#include "ui/transcript/WrappingHStack.h"

#include <QColor>
#include <QFont>
#include <QWidget>

class WordWidthCache;

// One speaker run: its header (timecode, coloured dot, label) and its utterances as flowing
// chips. The chips are painted by this one widget rather than being widgets of their own, so a
// long interview stays light: their widths are measured once, the flow is cached per width,
// painting touches only the rows in the exposed rectangle, and clicks are hit-tested. The runs
// of one transcript share a WordWidthCache in the chip font (chipFont()).
class SpeakerRunView : public QWidget
{
    Q_OBJECT

public:
    SpeakerRunView(int runIndex, SpeakerRun run, WordWidthCache &chipWidths,
                   QWidget *parent = nullptr);

    static QFont chipFont();

    const SpeakerRun &run() const { return m_run; }

    // Recolours the chips; the flow is recomputed only when a chip gains or loses its padding
    // or its grade letter.
    void setChipStates(const SegmentSelection &selection, const QSet<QString> &highlightRangeIds);
    // Rings the chip of the keyboard's current segment; an id the run lacks rings none.
    void setCurrentChip(const QString &segmentId);

    // Where a segment's chip is, in this widget's coordinates; empty when the run lacks it.
    QRect chipRect(const QString &segmentId) const;

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void chipClicked(const QString &segmentId, Qt::KeyboardModifiers modifiers);
    void chipMenuRequested(const QString &segmentId, const QPoint &globalPos);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    struct Chip {
        qreal textWidth = 0;
        ChipState state = ChipState::Plain;
        QColor tint;
        QString grade; // shown as a letter while selected, so B and no grade differ by more than a hue
    };

    qreal chipsTop() const;
    qreal chipWidth(const Chip &chip) const;
    const FlowPlacement &placement(int width) const;
    QRectF chipRectAt(qsizetype index) const;
    qsizetype chipAt(const QPointF &pos) const;
    void paintHeader(QPainter &painter);
    void paintChip(QPainter &painter, qsizetype index, const QColor &text, const QColor &highlightFill);

    SpeakerRun m_run;
    int m_runIndex = 0;
    QString m_label;
    QColor m_speakerColor;
    QFont m_chipFont;
    QFont m_timecodeFont;
    QFont m_labelFont;
    QFont m_gradeFont;
    qreal m_gradeBadgeWidth = 0;
    qreal m_chipHeight = 0;
    qreal m_chipAscent = 0;
    qreal m_headerHeight = 0;
    QList<Chip> m_chips;
    qsizetype m_pressedChip = -1;
    qsizetype m_currentChip = -1;

    mutable int m_placementWidth = -1;
    mutable FlowPlacement m_placement;
};
