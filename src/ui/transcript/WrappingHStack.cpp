#include "ui/transcript/WrappingHStack.h"

#include <algorithm>

FlowPlacement WrappingHStack::arrange(const QList<QSizeF> &childSizes, qreal availableWidth) const
{
    FlowPlacement placement;
    placement.origins.reserve(childSizes.size());
    qreal x = 0;
    qreal y = 0;
    qreal rowHeight = 0;
    for (const QSizeF &child : childSizes) {
        if (x > 0 && x + child.width() > availableWidth) {
            y += rowHeight + spacing;
            rowHeight = 0;
            x = 0;
        }
        placement.origins.append(QPointF(x, y));
        x += child.width() + spacing;
        rowHeight = std::max(rowHeight, child.height());
    }
    placement.size = QSizeF(availableWidth, y + rowHeight);
    return placement;
}
