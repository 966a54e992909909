#pragma once

#include "model/ShootMarker.h"

#include <QRect>
#include <QStringList>
#include <QWidget>

// One marker of the session screen: its type badge beside the timecodes, summary, quote and,
// for earmarks, the words heard. Earmarks stand out with a tinted background and an edge bar.
// The row paints itself: a session holds hundreds of markers, and a handful of label widgets
// per marker made switching sessions take seconds.
class MarkerRow : public QWidget
{
    Q_OBJECT

public:
    explicit MarkerRow(const ShootMarker &marker, QWidget *parent = nullptr);

    // The heard words an earmark shows: its raw text unless absent or the no-speech placeholder.
    static bool showsRawText(const ShootMarker &marker);

    // The texts the row shows, in reading order: badge, timecode, "→" and the out timecode,
    // summary, the quote in double quotes, the heard words.
    QStringList shownTexts() const;

    // Tints the row for a moment, so the eye finds it after a jump.
    void flash();
    bool isFlashing() const { return m_flashing; }

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    // Where everything goes at one width, in this widget's coordinates.
    struct Geometry {
        int width = -1;
        int height = 0;
        QRect badge;
        QRect timecode;
        QRect arrow;
        QRect timecodeOut;
        QRect summary;
        QRect quoteBar;
        QRect quote;
        QRect rawBox;
        QRect raw;
    };
    const Geometry &geometryFor(int width) const;
    Geometry layoutAt(int width) const;

    ShootMarker m_marker;
    QString m_label;
    QString m_quote;
    bool m_isEarmark;
    bool m_showsRaw;
    mutable Geometry m_geometry;
    mutable int m_unwrappedHeight = -1;
    bool m_flashing = false;
};
