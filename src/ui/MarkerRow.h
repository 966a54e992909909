#pragma once

#include "model/ShootMarker.h"

#include <QWidget>

// One marker of the session screen: its type badge beside the timecodes, summary, quote and,
// for earmarks, the words heard. Earmarks stand out with a tinted background and an edge bar.
class MarkerRow : public QWidget
{
    Q_OBJECT

public:
    explicit MarkerRow(const ShootMarker &marker, QWidget *parent = nullptr);

    // The heard words an earmark shows: its raw text unless absent or the no-speech placeholder.
    static bool showsRawText(const ShootMarker &marker);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_isEarmark;
};
