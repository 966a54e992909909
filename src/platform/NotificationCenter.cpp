#include "platform/NotificationCenter.h"

NotificationCenter &NotificationCenter::defaultCenter()
{
    // Never destroyed: observers may still disconnect from it while the program shuts down.
    static NotificationCenter *center = new NotificationCenter;
    return *center;
}

void NotificationCenter::post(const QString &name, const QVariantMap &userInfo)
{
    Q_EMIT posted(name, userInfo);
}
