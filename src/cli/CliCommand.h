#pragma once

#include "media/ToolLocations.h"
#include "platform/CredentialStore.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QCoro/QCoroTask>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

// What every command gets: the service URL chosen by option, environment or build, the keyring
// item of the stored login, where ffprobe and ffmpeg are looked for and scratch files go, and
// the way to end with an error.
struct CliContext {
    QString serviceUrl;
    CredentialStore credentials;
    ToolLocations tools;

    // Exit status 1: the error's description on stderr.
    int fail(const QString &message) const;
};

// One command of vorlix-sync-cli. Multi-word names ("export edl") form groups for --help.
struct CliCommand {
    QString name;
    QString synopsis; // arguments after the name, e.g. "--session FILE [-o OUT]"
    QString summary;
    QList<QCommandLineOption> options;
    // Positional arguments, by name and description, for --help.
    QList<std::pair<QString, QString>> positionals;
    QStringList requiredOptions; // long names that must be given
    int minimumPositionals = 0;
    std::function<QCoro::Task<int>(const CliContext &, const QCommandLineParser &)> run;
};

// Every command group adds itself here; the list is the tool's whole surface.
QList<CliCommand> matchCommands();
QList<CliCommand> exportCommands();
QList<CliCommand> mediaCommands();
QList<CliCommand> serviceCommands();
QList<CliCommand> analysisCommands();

// Parses the arguments (without the program name), runs the chosen command and gives the exit
// status: 0 success, 1 failure, 2 bad usage (usage on stderr).
QCoro::Task<int> runCli(const QList<CliCommand> &commands, QStringList arguments);
