#pragma once

#include "media/ToolLocations.h"
#include "model/ShootSession.h"

#include <QString>

// The xmeml (version 4) marker sequence that Premiere Pro imports: markers on an empty sequence
// when the session has no matched clips, otherwise the clips at their source timecode with each
// marker on the clip that contains it.

// Pure: `sourceTrack` is the 1-based source audio track for the first audio item of each clip.
QString generatePremiereXML(const ShootSession &session, int sourceTrack);

// The source track for `session`: what detectAudioTrackOffset finds in the first clip in
// timecode order, 1 without clips. Runs ffprobe from `tools`, so keep it off the GUI thread.
int premiereSourceTrack(const ShootSession &session, const ToolLocations &tools);
