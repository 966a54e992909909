#pragma once

#include "model/ShootSession.h"

#include <QString>
#include <QStringList>

// What an editor should know before handing a session off: which markers land on the matched
// footage and which clips will not line up. Every export and `vorlix-sync-cli check` read the same
// answer, so the screen, the notices and the command line never disagree.
struct Preflight {
    int markers = 0;
    // Marker ids in session order. On footage are exactly the markers the xmeml sequence carries
    // on its clips; without matched clips no marker is on footage.
    QStringList markersOnFootage;
    QStringList markersOffFootage;
    // File names of matched clips, in matched order.
    QStringList clipsWithoutTimecode;
    QStringList clipsWithOtherFps; // a detected rate that differs from the session's

    bool allClear() const;
    // One line for the screen, e.g. "2 of 16 markers are on matched footage"; empty when all is clear.
    QString summary() const;
};

Preflight preflight(const ShootSession &session);
