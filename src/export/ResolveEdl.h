#pragma once

#include "model/ShootSession.h"

#include <QString>

// A CMX 3600 edit decision list with one event per marker, whose "|C:" and "|M:" comments
// DaVinci Resolve reads as coloured timeline markers.

QString generateResolveEDL(const ShootSession &session);
