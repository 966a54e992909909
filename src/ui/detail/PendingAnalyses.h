#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>
#include <optional>

// The analysis requests that no session screen has taken yet, by session id. The main window's
// "Analyse Footage" asks for a run right after selecting the new session, before the screen has
// shown it; keeping the request here until the screen takes it means it runs exactly once,
// whether the screen was already showing the session (it reacts to `requested`) or shows it
// later (it calls `take` when it does).
class PendingAnalyses : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Keeps `files` for the screen of `sessionId`.
    void request(const QString &sessionId, const QList<QUrl> &files);
    // The files of the oldest waiting request for `sessionId`, removed from the registry.
    std::optional<QList<QUrl>> take(const QString &sessionId);
    bool hasPending(const QString &sessionId) const;

Q_SIGNALS:
    // A request for `sessionId` is waiting.
    void requested(const QString &sessionId);

private:
    QHash<QString, QList<QList<QUrl>>> m_pending;
};
