#pragma once

#include "media/ToolLocations.h"

#include <QByteArray>
#include <QString>
#include <chrono>
#include <optional>

// How many audio streams findLoudestAudioTrack measures at most, and how many seconds of each.
inline constexpr int maximumMeasuredAudioStreams = 8;
inline constexpr int measuredAudioSeconds = 10;
// How long cutting out or measuring those seconds may take.
inline constexpr std::chrono::milliseconds levelCheckTimeLimit = std::chrono::seconds(60);

// The 0-based ordinal (as in ffmpeg's "0:a:N") of the audio stream with the highest mean volume
// over its first seconds; 0 when there is at most one stream or nothing could be measured.
// `ffmpeg` is the executable the caller found. Runs up to 17 tools one after another and uses
// vorlix-levelcheck-N.wav in the temporary directory.
int findLoudestAudioTrack(const QString &filePath, const QString &ffmpeg, const ToolLocations &tools);

// The 1-based number of the first audio track that has channels; 1 when nothing better is known.
int detectAudioTrackOffset(const std::optional<QString> &path, const ToolLocations &tools);

// The number after the first "mean_volume: " of ffmpeg's volumedetect log, in dB.
std::optional<double> meanVolumeFromLog(const QByteArray &log);
