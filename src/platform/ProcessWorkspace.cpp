#include "platform/ProcessWorkspace.h"

#include <QProcess>

using namespace Qt::StringLiterals;

#if defined(Q_OS_MACOS)

void ProcessWorkspace::openWithApplication(const QString &file, const QString &application)
{
    QProcess::startDetached("open"_L1, {"-a"_L1, application, file});
}

void ProcessWorkspace::launchApplication(const QString &application)
{
    QProcess::startDetached("open"_L1, {application});
}

#else

void ProcessWorkspace::openWithApplication(const QString &file, const QString &application)
{
    QProcess::startDetached(application, {file});
}

void ProcessWorkspace::launchApplication(const QString &application)
{
    QProcess::startDetached(application, {});
}

#endif
