#pragma once

#include "model/ShootSession.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

// The selects sequence: the picked markers, in the order they were logged, then the picked
// utterances of `utterances` (the transcript the picks were made in), in transcript order, each
// cut out of the clip that recorded it and strung one after the other. An utterance lasts until
// the next one starts, or ten seconds when none starts later. A pick that names a marker is a
// marker select. The empty text when nothing is picked.
QString generateSelectsXML(const ShootSession &session, const QSet<QString> &selectedSegmentIds,
                           const QHash<QString, QString> &segmentGrades, const QList<TranscriptSegment> &utterances);
