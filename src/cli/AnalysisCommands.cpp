#include "analysis/AnalysisService.h"
#include "cli/CliCommand.h"
#include "cli/CliIo.h"
#include "service/APIService.h"
#include "time/NumberText.h"

#include <QFileInfo>

namespace {

const QCommandLineOption tokenOption(QStringLiteral("session-token"), QStringLiteral("Share token of the session the service stores the results under."), QStringLiteral("T"));
const QCommandLineOption fpsOption(QStringLiteral("fps"), QStringLiteral("The session's frame rate (default 25)."), QStringLiteral("N"));

// Texts live outside the coroutine: g++ 12 cannot compile QStringLiteral inside one.
const QString fpsError = QStringLiteral("--fps must be a whole number from 1 to 1000");

std::optional<int> chosenFps(const QCommandLineParser &parser)
{
    if (!parser.isSet(fpsOption))
        return Analysis::newSessionFps;
    const auto fps = parseBase10Integer(parser.value(fpsOption));
    if (!fps || *fps <= 0 || *fps > 1000)
        return std::nullopt;
    return int(*fps);
}

QString line(const QString &text)
{
    return text + QLatin1Char('\n');
}

// Each new progress line goes to stderr as it comes, like a log; the run's end shows no line.
AnalysisService::UpdateHandler progressPrinter()
{
    return [shown = QString()](const AnalysisUpdate &update) mutable {
        if (!update.progress.isEmpty() && update.progress != shown)
            CliIo::printError(line(update.progress));
        shown = update.progress;
    };
}

// The service keeps what the uploads produce under the token; reloading it is `sessions`' job.
QCoro::Task<int> analyse(const CliContext &context, const QCommandLineParser &parser)
{
    const std::optional<int> fps = chosenFps(parser);
    if (!fps)
        co_return context.fail(fpsError);

    ShootSession session;
    session.id = session.shareToken = parser.value(tokenOption);
    session.fps = *fps;
    QList<QUrl> files;
    for (const QString &path : parser.positionalArguments())
        files.append(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));

    APIService api(context.serviceUrl, context.credentials);
    AnalysisService analysis(api, context.tools);
    QCoro::Task<AnalysisOutcome> run = analysis.analyse(session, files, progressPrinter());
    const AnalysisOutcome outcome = co_await std::move(run);
    for (const QString &result : outcome.results)
        CliIo::printOut(line(result).toUtf8());
    co_return 0;
}

} // namespace

QList<CliCommand> analysisCommands()
{
    return {{QStringLiteral("analyse"),
             QStringLiteral("--session-token T [--fps N] FILE..."),
             QStringLiteral("Extract audio and scene frames of footage files with ffmpeg, upload them for analysis "
                            "and print one result line per file."),
             {tokenOption, fpsOption},
             {{QStringLiteral("FILE"), QStringLiteral("Footage files, analysed in this order.")}},
             {QStringLiteral("session-token")},
             1,
             analyse}};
}
