#include "state/SessionLibrary.h"

#include "model/ClipMatcher.h"
#include "state/AppState.h"

#include <QHash>
#include <algorithm>

const ShootSession *findSession(const QList<ShootSession> &sessions, const QString &id)
{
    const auto found = std::find_if(sessions.cbegin(), sessions.cend(), [&id](const ShootSession &s) { return s.id == id; });
    return found == sessions.cend() ? nullptr : &*found;
}

SessionLibrary::SessionLibrary(AppState &state) : m_state(state)
{
}

QList<ShootSession> SessionLibrary::merge(const QList<ShootSession> &current, const QList<ShootSession> &fetched,
                                          const QSet<QString> &deletedIds)
{
    QList<ShootSession> merged = current;
    QHash<QString, qsizetype> indexById;
    indexById.reserve(current.size() + fetched.size());
    for (qsizetype i = 0; i < merged.size(); ++i)
        indexById.insert(merged[i].id, i);

    for (const ShootSession &incoming : fetched) {
        if (deletedIds.contains(incoming.id))
            continue;
        const auto known = indexById.constFind(incoming.id);
        if (known == indexById.cend()) {
            indexById.insert(incoming.id, merged.size());
            merged.append(incoming);
            continue;
        }
        ShootSession &existing = merged[*known];
        existing.markers = incoming.markers;
        if (existing.title.isEmpty() || existing.title == QLatin1String("Shoot session"))
            existing.title = incoming.title;
    }
    std::stable_sort(merged.begin(), merged.end(),
                     [](const ShootSession &a, const ShootSession &b) { return a.createdAt > b.createdAt; });
    return merged;
}

void SessionLibrary::mergeFetched(const QList<ShootSession> &fetched)
{
    const QList<ShootSession> merged = merge(m_state.sessions(), fetched, m_state.deletedSessionIds());
    assignSessions(m_state.clips().isEmpty() ? merged : ClipMatcher::matchClipsToSessions(m_state.clips(), merged));
    refreshSelection();
    m_state.setLastSynced(m_state.now());
}

void SessionLibrary::mergeScanned(const QList<MediaClip> &scanned, bool endsUserScan)
{
    QSet<QString> knownPaths;
    for (const MediaClip &clip : m_state.clips())
        knownPaths.insert(clip.path);
    QList<MediaClip> clips = m_state.clips();
    for (const MediaClip &clip : scanned) {
        if (!knownPaths.contains(clip.path))
            clips.append(clip);
    }
    if (clips.size() != m_state.clips().size())
        m_state.setClips(clips);
    if (endsUserScan)
        m_state.setScanning(false);

    // Every session is matched again, even when this scan added nothing: other scans may have
    // added clips since the last match.
    assignSessions(ClipMatcher::matchClipsToSessions(clips, m_state.sessions()));
    refreshSelection();
}

void SessionLibrary::applyAnalysisReload(const QList<ShootSession> &fetched, const QString &sessionId)
{
    const ShootSession *remote = findSession(fetched, sessionId);
    if (!remote || !findSession(m_state.sessions(), sessionId))
        return;
    QList<ShootSession> sessions = m_state.sessions();
    for (ShootSession &session : sessions) {
        if (session.id == sessionId)
            session.markers = remote->markers;
    }
    assignSessions(sessions);
    assignSelection(*findSession(m_state.sessions(), sessionId));
}

void SessionLibrary::addAnalysisSession(const ShootSession &session)
{
    assignSessions(QList<ShootSession>{session} + m_state.sessions());
    assignSelection(session);
    if (m_state.showSettings())
        m_state.setShowSettings(false);
}

bool SessionLibrary::renameSession(const QString &id, const QString &title)
{
    if (title.isEmpty() || !findSession(m_state.sessions(), id))
        return false;
    QList<ShootSession> sessions = m_state.sessions();
    for (ShootSession &session : sessions) {
        if (session.id == id)
            session.title = title;
    }
    assignSessions(sessions);
    refreshSelection();
    return true;
}

void SessionLibrary::deleteSessions(const QSet<QString> &ids)
{
    QList<ShootSession> deleted;
    QList<ShootSession> kept;
    for (const ShootSession &session : m_state.sessions())
        (ids.contains(session.id) ? deleted : kept).append(session);
    m_state.markSessionsDeleted(deleted);
    assignSessions(kept);
    const std::optional<ShootSession> &selected = m_state.selectedSession();
    if (selected && ids.contains(selected->id))
        assignSelection(std::nullopt);
}

void SessionLibrary::restoreSession(const QString &id)
{
    m_state.restoreDeletedSession(id);
}

void SessionLibrary::clearSessions()
{
    assignSessions({});
    assignSelection(std::nullopt);
}

void SessionLibrary::refreshSelection()
{
    const std::optional<ShootSession> &selected = m_state.selectedSession();
    if (!selected)
        return;
    const ShootSession *current = findSession(m_state.sessions(), selected->id);
    assignSelection(current ? std::optional<ShootSession>(*current) : std::nullopt);
}

void SessionLibrary::assignSessions(const QList<ShootSession> &sessions)
{
    if (sessions != m_state.sessions())
        m_state.setSessions(sessions);
}

void SessionLibrary::assignSelection(const std::optional<ShootSession> &session)
{
    if (session != m_state.selectedSession())
        m_state.setSelectedSession(session);
}
