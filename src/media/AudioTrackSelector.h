#pragma once

#include <QString>
#include <optional>

// The 1-based number of the first audio track that has channels; 1 when nothing better is known.
int detectAudioTrackOffset(const std::optional<QString> &path);
