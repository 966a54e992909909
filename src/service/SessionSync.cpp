#include "service/SessionSync.h"

#include "service/APIService.h"
#include "state/AppState.h"
#include "model/ClipMatcher.h"

#include <QHash>
#include <QPointer>
#include <algorithm>

namespace SessionSync {

QList<ShootSession> merge(const QList<ShootSession> &current, const QList<ShootSession> &fetched,
                          const QSet<QString> &deletedIds)
{
    QHash<QString, ShootSession> byId;
    byId.reserve(current.size() + fetched.size());
    for (const ShootSession &session : current)
        byId.insert(session.id, session);

    for (const ShootSession &incoming : fetched) {
        if (deletedIds.contains(incoming.id))
            continue;
        const auto existing = byId.find(incoming.id);
        if (existing == byId.end()) {
            byId.insert(incoming.id, incoming);
            continue;
        }
        existing->markers = incoming.markers;
        if (existing->title.isEmpty() || existing->title == QLatin1String("Shoot session"))
            existing->title = incoming.title;
    }

    QList<ShootSession> merged;
    merged.reserve(byId.size());
    for (auto it = byId.cbegin(); it != byId.cend(); ++it)
        merged.append(it.value());
    std::stable_sort(merged.begin(), merged.end(),
                     [](const ShootSession &a, const ShootSession &b) { return a.createdAt > b.createdAt; });
    return merged;
}

void applyFetched(AppState &state, const QList<ShootSession> &fetched)
{
    state.setSessions(merge(state.sessions(), fetched, state.deletedSessionIds()));
    // One assignment for the whole re-match instead of one per session: observers see the same
    // order of states (merged, then matched, then the selection) with far fewer redraws.
    if (!state.clips().isEmpty())
        state.setSessions(ClipMatcher::matchClipsToSessions(state.clips(), state.sessions()));
    state.refreshSelectedSession();
}

QCoro::Task<> syncSessions(AppState &state, APIService &api)
{
    const QPointer<AppState> guard(&state);
    QList<ShootSession> fetched;
    try {
        fetched = co_await api.fetchShootSessions();
    } catch (const APIError &) {
        co_return;
    }
    // A run that outlives a sign-out must not bring the signed-out user's sessions back.
    if (guard && guard->isLoggedIn())
        applyFetched(*guard, fetched);
}

} // namespace SessionSync
