#include "platform/ProcessWorkspace.h"

#include <QProcess>
#if defined(Q_OS_WIN)
#include <QDir>
#endif

using namespace Qt::StringLiterals;

#if defined(Q_OS_MACOS)

void ProcessWorkspace::openWithApplication(const QString &file, const QString &application)
{
    QProcess::startDetached("open"_L1, {"-a"_L1, application, file});
}

void ProcessWorkspace::openWithDefaultHandler(const QString &file)
{
    QProcess::startDetached("open"_L1, {file});
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

void ProcessWorkspace::openWithDefaultHandler(const QString &file)
{
#if defined(Q_OS_WIN)
    QProcess::startDetached("explorer.exe"_L1, {QDir::toNativeSeparators(file)});
#else
    QProcess::startDetached("xdg-open"_L1, {file});
#endif
}

void ProcessWorkspace::launchApplication(const QString &application)
{
    QProcess::startDetached(application, {});
}

#endif
