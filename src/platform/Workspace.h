#pragma once

#include <QString>

// Opening files and applications, the platform's "workspace". Outcomes are not reported: the
// hand-off to an editing application is fire-and-forget.
class Workspace
{
public:
    virtual ~Workspace() = default;

    virtual void openWithApplication(const QString &file, const QString &application) = 0;
    virtual void launchApplication(const QString &application) = 0;
};
