#pragma once

#include "model/ShootSession.h"

#include <QCoro/QCoroTask>
#include <QList>
#include <QString>
#include <functional>
#include <optional>

// Fetches a session's transcript by share token; a failure is thrown and never shown.
using TranscriptLoader =
    std::function<QCoro::Task<QList<TranscriptSegment>>(const QString &shareToken)>;

// A transcript made of the markers' raw text, oldest marker first, for sessions the service
// holds no transcript for. Each utterance keeps its marker's id so its select exports.
QList<TranscriptSegment> buildTranscriptFromMarkers(const ShootSession &session);

// What the view shows after a load: the fetched transcript, or the marker-built one when the
// fetch failed (nullopt) or came back empty.
QList<TranscriptSegment> transcriptOrFallback(
    const std::optional<QList<TranscriptSegment>> &fetched, const ShootSession &session);
