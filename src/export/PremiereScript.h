#pragma once

#include <QString>

// The ExtendScript that Premiere Pro runs on hand-off: it imports the marker sequence at
// `xmlPath`, then recolours the imported markers by their bracketed type prefix and strips it.
QString premiereScript(const QString &xmlPath);
