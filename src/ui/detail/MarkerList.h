#pragma once

#include "model/ShootMarker.h"
#include "ui/widgets/RowColumn.h"

// The session's markers, one MarkerRow each in the session's order. The rows are built again
// only when the markers change, so a sync that brings nothing new leaves them as they are.
class MarkerList : public RowColumn
{
    Q_OBJECT

public:
    explicit MarkerList(QWidget *parent = nullptr);

    void showMarkers(const QList<ShootMarker> &markers);

private:
    QList<ShootMarker> m_markers;
};
