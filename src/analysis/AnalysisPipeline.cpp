#include "analysis/AnalysisPipeline.h"

#include "analysis/AnalysisService.h"
#include "platform/NotificationCenter.h"
#include "state/SessionLibrary.h"

#include <QVariant>

std::optional<ShootSession> analyseFootageFromScratch(AppState &state, const QList<QUrl> &chosen, NotificationCenter &center)
{
    const QList<QUrl> files = Analysis::collectMediaFiles(chosen);
    if (files.isEmpty())
        return std::nullopt;
    const ShootSession session = Analysis::newAnalysisSession(files, QDateTime::currentDateTimeUtc());
    SessionLibrary(state).addAnalysisSession(session);
    QVariantList urls;
    for (const QUrl &url : files)
        urls.append(url);
    center.post(Notifications::analyseFiles, {{QStringLiteral("files"), urls}, {QStringLiteral("sessionId"), session.id}});
    return session;
}
