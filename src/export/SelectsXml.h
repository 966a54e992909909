#pragma once

#include "model/ShootSession.h"

#include <QHash>
#include <QSet>
#include <QString>

// The selects sequence: the picked markers, in the order they were logged, cut out of the clips
// that recorded them and strung one after the other. The empty text when nothing is picked.
QString generateSelectsXML(const ShootSession &session, const QSet<QString> &selectedSegmentIds,
                           const QHash<QString, QString> &segmentGrades);
