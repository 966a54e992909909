#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <optional>

using WordTiming = QHash<QString, double>;

// One utterance of a transcript.
struct TranscriptSegment {
    QString id;
    QString speaker;
    QString text;
    QString timecode;
    bool highlighted = false;
    std::optional<QList<WordTiming>> wordTimings;

    friend bool operator==(const TranscriptSegment &, const TranscriptSegment &) = default;
};
