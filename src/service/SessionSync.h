#pragma once

#include <QCoro/QCoroTask>

class APIService;
class AppState;

// Brings the service's sessions into the application without losing local work (the merge
// rules are the session library's).
namespace SessionSync {

// One sync run: fetch, and on success merge. Errors are dropped without a trace; the next run
// tries again. Runs may overlap; each merges its answer when it arrives. The returned task may
// be dropped; `api` must outlive the run, `state` may not (its result is then discarded).
QCoro::Task<> syncSessions(AppState &state, APIService &api);

} // namespace SessionSync
