#pragma once

#include "model/ShootMarker.h"
#include "ui/widgets/RowColumn.h"

class MarkerRow;

// The session's markers, one MarkerRow each in the session's order. The rows are built again
// only when the markers change, so a sync that brings nothing new leaves them as they are.
class MarkerList : public RowColumn
{
    Q_OBJECT

public:
    explicit MarkerList(QWidget *parent = nullptr);

    void showMarkers(const QList<ShootMarker> &markers);
    // The row of marker `index` in session order; null when there is none.
    MarkerRow *rowAt(qsizetype index) const { return m_rows.value(index); }

private:
    QList<ShootMarker> m_markers;
    QList<MarkerRow *> m_rows;
};
