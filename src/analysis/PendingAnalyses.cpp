#include "analysis/PendingAnalyses.h"

#include "platform/NotificationCenter.h"

PendingAnalyses::PendingAnalyses(NotificationCenter &center, QObject *parent) : QObject(parent)
{
    connect(&center, &NotificationCenter::posted, this, &PendingAnalyses::notificationPosted);
}

std::optional<PendingAnalyses::Request> PendingAnalyses::requestFromUserInfo(const QVariantMap &userInfo)
{
    const QVariant id = userInfo.value(QStringLiteral("sessionId"));
    const QVariant files = userInfo.value(QStringLiteral("files"));
    if (id.metaType().id() != QMetaType::QString || !files.canConvert<QVariantList>())
        return std::nullopt;
    Request request{id.toString(), {}};
    for (const QVariant &file : files.toList()) {
        if (file.metaType().id() != QMetaType::QUrl)
            return std::nullopt;
        request.files.append(file.toUrl());
    }
    return request;
}

void PendingAnalyses::notificationPosted(const QString &name, const QVariantMap &userInfo)
{
    if (name != Notifications::analyseFiles)
        return;
    const auto request = requestFromUserInfo(userInfo);
    if (!request)
        return;
    m_pending[request->sessionId].append(request->files);
    Q_EMIT requested(request->sessionId);
}

std::optional<QList<QUrl>> PendingAnalyses::take(const QString &sessionId)
{
    const auto found = m_pending.find(sessionId);
    if (found == m_pending.end())
        return std::nullopt;
    const QList<QUrl> files = found->takeFirst();
    if (found->isEmpty())
        m_pending.erase(found);
    return files;
}

bool PendingAnalyses::hasPending(const QString &sessionId) const
{
    return m_pending.contains(sessionId);
}
