#include "cli/CliCommand.h"
#include "cli/CliIo.h"

#include <QCoreApplication>
#include <QTimer>
#include <csignal>

int main(int argc, char *argv[])
{
#ifdef SIGPIPE
    // A reader that goes away (`| head`) makes the next write fail with EPIPE, which is reported,
    // instead of killing the tool silently; the same for a file size limit and EFBIG.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
#endif
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
            if (status == 0 && !CliIo::outputIsComplete())
                status = 1;
            QCoreApplication::exit(status);
        }(commands, app.arguments().mid(1), status);
    });
    app.exec();
    return status;
}
