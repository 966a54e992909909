#pragma once

#include <QList>
#include <QPointF>
#include <QSizeF>
#include <limits>

// Where a flow of children goes: each child's top-left corner and the size of the whole.
struct FlowPlacement {
    QList<QPointF> origins;
    QSizeF size;
};

// Lays children out like words: left to right, starting a new row when the next one would run
// past the width. Children keep their natural size; one wider than the width sits alone on its
// row and overflows instead of being shrunk or split. Rows hang from their top and are not
// justified. The same rule measures and places.
struct WrappingHStack {
    static constexpr qreal unbounded = std::numeric_limits<qreal>::infinity();

    qreal spacing = 0;

    FlowPlacement arrange(const QList<QSizeF> &childSizes, qreal availableWidth = unbounded) const;
};
