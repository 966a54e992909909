#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTest>

// Runs the built vorlix-sync-cli (its path comes from CTest) the way a script would.
struct CliResult {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

inline CliResult runCli(const QStringList &arguments, const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(qEnvironmentVariable("VORLIX_CLI"), arguments);
    process.closeWriteChannel();
    if (!process.waitForFinished(120000))
        process.kill();
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput(), process.readAllStandardError()};
}

// Writes a fixture file for a command to read and returns its path.
inline QString writeTestFile(const QDir &dir, const QString &name, const QByteArray &contents)
{
    const QString path = dir.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(path));
    file.write(contents);
    return path;
}
