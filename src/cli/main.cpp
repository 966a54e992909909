#include "cli/CliCommand.h"

#include <QCoreApplication>
#include <QTimer>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vorlix-sync-cli"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VORLIX_VERSION));

    QList<CliCommand> commands;
    commands += matchCommands();
    commands += exportCommands();
    commands += mediaCommands();
    commands += serviceCommands();
    commands += analysisCommands();

    int status = 0;
    QTimer::singleShot(0, &app, [&] {
        [](QList<CliCommand> commands, QStringList arguments, int &status) -> QCoro::Task<> {
            status = co_await runCli(commands, arguments);
            QCoreApplication::exit(status);
        }(commands, app.arguments().mid(1), status);
    });
    app.exec();
    return status;
}
