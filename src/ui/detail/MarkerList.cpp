#include "ui/detail/MarkerList.h"

#include "ui/detail/MarkerRow.h"

MarkerList::MarkerList(QWidget *parent) : RowColumn(4, parent) {}

void MarkerList::showMarkers(const QList<ShootMarker> &markers)
{
    if (markers == m_markers)
        return;
    m_markers = markers;
    QList<QWidget *> rows;
    rows.reserve(markers.size());
    for (const ShootMarker &marker : markers)
        rows.append(new MarkerRow(marker));
    replaceRows(rows);
}
