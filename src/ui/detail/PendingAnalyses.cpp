#include "ui/detail/PendingAnalyses.h"

void PendingAnalyses::request(const QString &sessionId, const QList<QUrl> &files)
{
    m_pending[sessionId].append(files);
    Q_EMIT requested(sessionId);
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
