#pragma once

#include "model/MediaClip.h"
#include "model/ShootSession.h"

#include <QCoro/QCoroTask>
#include <QList>
#include <QSet>
#include <optional>

class APIService;
class AppState;

// Brings the service's sessions into the application without losing local work: deleted
// sessions stay away, renamed sessions keep their names, sessions the service no longer lists
// stay, and every session is re-matched against the scanned clips.
namespace SessionSync {

// The current sessions with the fetched ones merged in, newest first (equal dates in no
// defined order). A known session takes the fetched markers, and the fetched title only while
// its own is empty or "Shoot session"; everything else of it stays.
QList<ShootSession> merge(const QList<ShootSession> &current, const QList<ShootSession> &fetched,
                          const QSet<QString> &deletedIds);

// Applies one fetched answer to the state, on the GUI thread: sessions, then their matches,
// then the selection, reading the deleted list and the clips as they are now.
void applyFetched(AppState &state, const QList<ShootSession> &fetched);

// One sync run: fetch, and on success apply. Errors are dropped without a trace; the next run
// tries again. Runs may overlap; each applies its answer when it arrives. The returned task
// may be dropped; `api` must outlive the run, `state` may not (its result is then discarded).
QCoro::Task<> syncSessions(AppState &state, APIService &api);

} // namespace SessionSync
