#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

// The screens name their icons by system symbol name ("sparkles", "folder.badge.gearshape");
// one table maps them to the bundled line icons. An icon without a fixed colour is drawn in the
// palette's text colour of the moment, so it follows the theme.
namespace Icons {

void ensureResources();

// The bundled file for a symbol name, or an empty string for a name the table lacks.
QString resourceFor(const QString &symbolName);

QIcon symbol(const QString &symbolName, const QColor &color = QColor());
QPixmap pixmap(const QString &symbolName, int size, const QColor &color, qreal devicePixelRatio = 1.0);
} // namespace Icons
