#pragma once

#include "platform/Workspace.h"

// The workspace through detached child processes, so the core needs no QtGui: `open` on macOS,
// the application's executable elsewhere.
class ProcessWorkspace final : public Workspace
{
public:
    void openWithApplication(const QString &file, const QString &application) override;
    void launchApplication(const QString &application) override;
};
