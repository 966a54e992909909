#pragma once

#include "platform/Workspace.h"

#include <QStringList>

// Stands in for the editing applications the machine does not have: every request to open or
// launch is written down as a line ("open FILE with APP", "open FILE", "launch APP").
struct RecordingWorkspace final : Workspace {
    QStringList calls;

    void openWithApplication(const QString &file, const QString &app) override { calls.append(QStringLiteral("open %1 with %2").arg(file, app)); }
    void launchApplication(const QString &application) override { calls.append(QStringLiteral("launch ") + application); }
};
