#pragma once

#include "model/Rgb.h"
#include "model/TranscriptSegment.h"

#include <QList>
#include <QString>
#include <array>

// A maximal stretch of consecutive utterances by the same speaker.
struct SpeakerRun {
    QString speaker;
    QString timecode;
    QList<TranscriptSegment> segments;
};

inline constexpr std::array<Rgb, 5> speakerColors{{
    {45, 106, 79},  // green
    {74, 144, 217}, // blue
    {212, 168, 67}, // gold
    {192, 57, 43},  // red
    {142, 68, 173}, // purple
}};

// Speakers are compared byte for byte: "SPEAKER A" and "Speaker A" are two runs.
QList<SpeakerRun> buildSpeakerRuns(const QList<TranscriptSegment> &segments);

// Chosen from the speaker's last character, so "SPEAKER A" and "Guest A" share a colour.
Rgb speakerColor(const QString &speaker);

// "SPEAKER B" reads "Speaker B"; the unnamed speaker of a marker-built transcript is "Speaker A".
QString speakerLabel(const QString &speaker);
