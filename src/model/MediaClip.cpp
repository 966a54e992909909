#include "model/MediaClip.h"

#include "time/Timecode.h"

double MediaClip::tcToSeconds(const QString &timecode)
{
    return Timecode::toSeconds(timecode, 25.0).value_or(0.0);
}
