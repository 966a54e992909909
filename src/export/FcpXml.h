#pragma once

#include "media/ToolLocations.h"
#include "model/ShootSession.h"

#include <QHash>
#include <QString>

// The Final Cut Pro XML (FCPXML 1.9) document: the matched clips as assets and asset clips one
// after the other in timecode order, each marker on every clip it falls in at its place in the
// clip's media time; without matched clips the markers sit on one gap spanning the session.
// Version 1.9 is the newest that both Final Cut Pro 10.6 and later and DaVinci Resolve 18.0
// import: Final Cut Pro reads every older version, while Resolve 18.0 stops at 1.9.

// One frame's length in seconds as FCPXML writes it: 1/25 at 25 fps, 1001/30000 at 29.97.
struct FrameDuration {
    qint64 numerator = 1;
    qint64 denominator = 25;

    friend bool operator==(const FrameDuration &, const FrameDuration &) = default;
};

// Pure. A clip's frames are counted at its detected rate (else the session's) as in the OTIO
// timeline; `exactDurations`, by clip id, gives the true frame length of clips whose rate is a
// whole-number rounding (30 for 29.97), and every other clip is taken at its whole rate.
QString generateFCPXML(const ShootSession &session, const QHash<QString, FrameDuration> &exactDurations);

// The exact frame duration of every matched clip whose video stream ffprobe reads at a rate
// that rounds to the clip's whole rate. Runs ffprobe from `tools`, so keep it off the GUI thread.
QHash<QString, FrameDuration> exactFrameDurations(const ShootSession &session, const ToolLocations &tools);
