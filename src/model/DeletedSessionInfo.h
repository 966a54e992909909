#pragma once

#include <QDateTime>
#include <QString>

// The local note that the user deleted a session; kept so a sync does not bring it back.
struct DeletedSessionInfo {
    QString id;
    QString title;
    QDateTime deletedAt;

    friend bool operator==(const DeletedSessionInfo &, const DeletedSessionInfo &) = default;
};
