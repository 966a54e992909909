#pragma once

#include "model/MediaClip.h"
#include "model/ShootSession.h"

#include <QList>
#include <QSet>
#include <QString>
#include <optional>

class AppState;

// Every change to the sessions, the clips and the selection goes through here, so each rule is
// written once: what a sync keeps, what a scan adds, what deleting and restoring do, and that
// the selection follows its session. A change that leaves a value as it was assigns nothing,
// so a sync or a rescan that brings nothing new repaints nothing.
class SessionLibrary
{
public:
    explicit SessionLibrary(AppState &state);

    // A sync's answer merged in (see merge), every session re-matched against the clips; the
    // state notes the time as the last successful sync.
    void mergeFetched(const QList<ShootSession> &fetched);
    // A scan's clips merged in by path, every session re-matched; `endsUserScan` ends the scan
    // the user started.
    void mergeScanned(const QList<MediaClip> &scanned, bool endsUserScan);
    // After an analysis: the fetched markers of `sessionId` replace the local ones and that
    // session becomes the selection. Nothing happens unless both sides know the session.
    void applyAnalysisReload(const QList<ShootSession> &fetched, const QString &sessionId);
    // A local session for footage analysed from scratch: first in the list and selected, with
    // the settings pane closed.
    void addAnalysisSession(const ShootSession &session);

    // Gives session `id` the title as given; false (and no change) for an empty title or an
    // unknown id.
    bool renameSession(const QString &id, const QString &title);
    // Notes the sessions as deleted, so no sync brings them back, and removes them; the
    // selection is cleared when it was one of them.
    void deleteSessions(const QSet<QString> &ids);
    // Forgets that the session was deleted; the next sync brings it back.
    void restoreSession(const QString &id);
    // No sessions and no selection, as after signing out.
    void clearSessions();

    // The selection replaced by its current copy in the sessions, or cleared when that is gone.
    void refreshSelection();

    // The current sessions with the fetched ones merged in, newest first; sessions with equal
    // dates keep their order, new ones after known ones. A known session takes the fetched
    // markers, and the fetched title only while its own is empty or "Shoot session"; everything
    // else of it stays. Deleted sessions stay away.
    static QList<ShootSession> merge(const QList<ShootSession> &current, const QList<ShootSession> &fetched,
                                     const QSet<QString> &deletedIds);

private:
    void assignSessions(const QList<ShootSession> &sessions);
    void assignSelection(const std::optional<ShootSession> &session);

    AppState &m_state;
};

// The session with `id` in `sessions`, or nothing.
const ShootSession *findSession(const QList<ShootSession> &sessions, const QString &id);
