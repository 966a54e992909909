#pragma once

#include "model/ShootSession.h"

#include <QString>

// The markers as a spreadsheet (RFC 4180), to be written as UTF-8: it starts with a byte order
// mark so spreadsheet programs read the text right; CRLF after every record, every field quoted. A header row, then one row
// per marker in session order: type, in, out, summary, quote, note, the name of the matched clip
// it falls in (the first in clip order, as the xmeml sequence places it) and whether it is on
// matched footage ("yes"/"no"). Free text keeps its Unicode on one line.
//
// A cell that begins with "=", "+", "-" or "@" gets a leading apostrophe, so a spreadsheet shows
// it as text instead of running it as a formula (a "-5:00:00:00" timecode included).
QString generateMarkerCSV(const ShootSession &session);
