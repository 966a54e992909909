#pragma once

#include "model/ShootSession.h"

#include <QString>

// The marker list Media Composer's Markers window imports ("Import Markers"): one line per
// marker in session order, six tab-separated fields — user, timecode, track, colour, comment,
// duration in frames — each line ending with a line feed, as Media Composer writes the list
// itself when it exports markers as text. The timecode is the marker's own, as stored, so the
// markers land where the session logged them on a sequence that runs at source timecode.
QString generateAvidMarkerList(const ShootSession &session);
