#pragma once

#include <QColor>
#include <QString>

class QPushButton;
class QToolButton;

// The buttons that start actions, with their styles, so every screen offers actions alike.
namespace Buttons {

// A filled button in `tint` with white text and symbol; disabled it turns grey.
QPushButton *prominent(const QString &text, const QString &symbol, const QColor &tint);
// An outlined button on the palette's button colour.
QPushButton *bordered(const QString &text, const QString &symbol);
// A bare symbol in `color` that frames itself only under the pointer.
QToolButton *symbol(const QString &symbol, const QColor &color, const QString &toolTip);

} // namespace Buttons
