#pragma once

#include "model/ShootSession.h"

#include <QString>
#include <QStringView>

// The OpenTimelineIO timeline (.otio) that DaVinci Resolve imports: one video track holding the
// matched clips back to back with their markers, or one gap holding every marker.

QString rationalTime(qint64 value, int rate);
QString timeRange(qint64 start, qint64 duration, int rate);

QString generateOTIO(const ShootSession &session);
