#pragma once

#include <QDateTime>
#include <QHashFunctions>
#include <QString>
#include <optional>

// One media file found in a footage folder. Identity is the id alone: two scans of the same
// file make two different clips, and the scanner avoids that by comparing paths.
struct MediaClip {
    QString id;
    QString path;
    QString filename;
    std::optional<QString> timecode;
    double duration = 0.0;
    std::optional<QDateTime> recordingDate;
    std::optional<int> width;
    std::optional<int> height;
    std::optional<int> detectedFps;

    // Clip timecodes are always counted at 25 frames per second, whatever the file's own rate;
    // unreadable text counts as 0.0.
    static double tcToSeconds(const QString &timecode);

    friend bool operator==(const MediaClip &a, const MediaClip &b) { return a.id == b.id; }
};

inline size_t qHash(const MediaClip &clip, size_t seed = 0) noexcept
{
    return qHash(clip.id, seed);
}
