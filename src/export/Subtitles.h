#pragma once

#include "model/ShootSession.h"

#include <QList>
#include <QString>

// The transcript as subtitles for a review copy: one cue per utterance, in the given order.
// Times count from the start of the first matched clip in clip order (else from the first
// utterance), at the session's rate; a time before that start is 0. Each cue ends where the next
// one begins and the last after 5 s; a cue that would end at or before its start (the next
// utterance is not later) lasts 1 s instead. Utterances without text are left out. Speaker and
// text are kept in Unicode on one line.

// SubRip: numbered cues, "Name: " before the text when there is a speaker, CRLF line ends.
QString generateSRT(const ShootSession &session, const QList<TranscriptSegment> &utterances);

// WebVTT: the speaker as a voice tag (<v Name>), "&", "<" and ">" escaped, line feeds.
QString generateWebVTT(const ShootSession &session, const QList<TranscriptSegment> &utterances);
