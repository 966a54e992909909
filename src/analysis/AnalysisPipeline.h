#pragma once

#include "model/ShootSession.h"

#include <QList>
#include <QUrl>
#include <optional>

class AppState;
class NotificationCenter;

// The main window's "Analyse Footage" after its panel: creates, inserts and selects a session for
// the media files among `chosen` and posts the analysis request for it. Returns the session, or
// nothing (and changes nothing) when no media file was chosen.
std::optional<ShootSession> analyseFootageFromScratch(AppState &state, const QList<QUrl> &chosen,
                                                      NotificationCenter &center);
