#include "service/SessionSync.h"

#include "service/APIService.h"
#include "state/AppState.h"
#include "timecode/ClipMatcher.h"

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

QList<ShootSession> rematch(const QList<ShootSession> &sessions, const QList<MediaClip> &clips)
{
    if (clips.isEmpty())
        return sessions;
    const ClipMatcher::ClipRanges ranges(clips);
    QList<ShootSession> matched;
    matched.reserve(sessions.size());
    for (const ShootSession &session : sessions)
        matched.append(ClipMatcher::matchClipsToSession(ranges, session));
    return matched;
}

std::optional<ShootSession> refreshedSelection(const std::optional<ShootSession> &selected,
                                               const QList<ShootSession> &sessions)
{
    if (!selected)
        return std::nullopt;
    const auto found = std::find_if(sessions.cbegin(), sessions.cend(),
                                    [&](const ShootSession &session) { return session.id == selected->id; });
    if (found == sessions.cend())
        return std::nullopt;
    return *found;
}

void applyFetched(AppState &state, const QList<ShootSession> &fetched)
{
    state.setSessions(merge(state.sessions(), fetched, state.deletedSessionIds()));
    // One assignment for the whole re-match instead of one per session: observers see the same
    // order of states (merged, then matched, then the selection) with far fewer redraws.
    if (!state.clips().isEmpty())
        state.setSessions(rematch(state.sessions(), state.clips()));
    if (state.selectedSession())
        state.setSelectedSession(refreshedSelection(state.selectedSession(), state.sessions()));
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
    if (guard)
        applyFetched(*guard, fetched);
}

} // namespace SessionSync
