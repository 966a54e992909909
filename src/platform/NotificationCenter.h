#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

// Names of the notifications posted inside the application.
namespace Notifications {
// Runs one session sync; no user information.
inline const QString syncNow = QStringLiteral("VorlixSyncNow");
// Analyses footage for a session: "files" (list of file URLs) and "sessionId" (string).
inline const QString analyseFiles = QStringLiteral("VorlixAnalyseFiles");
} // namespace Notifications

// Named broadcasts between parts of the application that do not know each other. Observers
// connect to `posted` and look at the name; delivery is direct, on the posting thread (the GUI
// thread in practice).
class NotificationCenter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // The application's shared centre, created on first use in the thread that asks first.
    static NotificationCenter &defaultCenter();

    void post(const QString &name, const QVariantMap &userInfo = {});

Q_SIGNALS:
    void posted(const QString &name, const QVariantMap &userInfo);
};
