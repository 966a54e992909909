#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariantMap>
#include <optional>

class NotificationCenter;

// The analysis requests ("VorlixAnalyseFiles") that no detail screen has taken yet, by session id.
// The main window posts the request right after selecting the new session, usually before that
// session's detail screen exists; keeping the request here until a screen takes it means it is
// run exactly once, whether the screen was already showing (it reacts to `requested`) or appears
// later (it calls `take` when it is shown).
class PendingAnalyses : public QObject
{
    Q_OBJECT

public:
    // Listens to `center` for as long as this object lives.
    explicit PendingAnalyses(NotificationCenter &center, QObject *parent = nullptr);

    // The files of the oldest waiting request for `sessionId`, removed from the registry.
    std::optional<QList<QUrl>> take(const QString &sessionId);
    bool hasPending(const QString &sessionId) const;

    // A request as the notification carries it: "files" a list of URLs, "sessionId" a string.
    struct Request {
        QString sessionId;
        QList<QUrl> files;
    };
    static std::optional<Request> requestFromUserInfo(const QVariantMap &userInfo);

Q_SIGNALS:
    // A request for `sessionId` is waiting.
    void requested(const QString &sessionId);

private:
    void notificationPosted(const QString &name, const QVariantMap &userInfo);

    QHash<QString, QList<QList<QUrl>>> m_pending;
};
