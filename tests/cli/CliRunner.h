#pragma once

#include "platform/CredentialStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>
#include <functional>

// The keyring item the tool keeps its login in when a test program runs it: one of the
// program's own, so that a test run never signs the application out.
inline CredentialStore cliCredentials()
{
    const QString name = QCoreApplication::applicationName();
    return CredentialStore(QStringLiteral("io.vorlix.sync.") + name, name);
}

struct CliResult {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

// Runs the built vorlix-sync-cli (its path comes from CTest) the way a script would, with its
// login in cliCredentials(); `prepare` may set up the process further (output, working folder).
inline CliResult runCli(const QStringList &arguments, QProcessEnvironment environment = QProcessEnvironment::systemEnvironment(),
                        const std::function<void(QProcess &)> &prepare = {})
{
    environment.insert(QStringLiteral("VORLIX_KEYRING_SERVICE"), cliCredentials().service());
    environment.insert(QStringLiteral("VORLIX_KEYRING_ACCOUNT"), cliCredentials().account());
    QProcess process;
    process.setProcessEnvironment(environment);
    if (prepare)
        prepare(process);
    process.start(qEnvironmentVariable("VORLIX_CLI"), arguments);
    process.closeWriteChannel();
    if (!process.waitForFinished(120000)) {
        qWarning("vorlix-sync-cli %s did not finish within 120 s", qPrintable(arguments.join(u' ')));
        process.kill();
        process.waitForFinished();
    }
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput(), process.readAllStandardError()};
}
