#include "ui/detail/MarkerList.h"

#include "ui/detail/MarkerRow.h"

MarkerList::MarkerList(QWidget *parent) : RowColumn(4, parent) {}

void MarkerList::showMarkers(const QList<ShootMarker> &markers)
{
    if (markers == m_markers)
        return;
    m_markers = markers;
    m_rows.clear();
    m_rows.reserve(markers.size());
    QList<QWidget *> rows;
    rows.reserve(markers.size());
    for (const ShootMarker &marker : markers) {
        m_rows.append(new MarkerRow(marker));
        rows.append(m_rows.last());
    }
    replaceRows(rows);
}
