#include "analysis/AnalysisPipeline.h"
#include "cli/CliCommand.h"
#include "cli/CliIo.h"
#include "platform/Preferences.h"
#include "service/APIService.h"
#include "state/AppState.h"
#include "time/NumberText.h"

#include <QFileInfo>
#include <QTemporaryDir>

namespace {

const QCommandLineOption tokenOption(QStringLiteral("session-token"), QStringLiteral("Share token of the session the service stores the results under."), QStringLiteral("T"));
const QCommandLineOption fpsOption(QStringLiteral("fps"), QStringLiteral("The session's frame rate (default 25)."), QStringLiteral("N"));

// Texts live outside the coroutine: g++ 12 cannot compile QStringLiteral inside one.
const QString fpsError = QStringLiteral("--fps must be a whole number from 1 to 1000");
const QString scratchStoreName = QStringLiteral("analyse.ini");

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

QCoro::Task<int> analyse(const CliContext &context, const QCommandLineParser &parser)
{
    const std::optional<int> fps = chosenFps(parser);
    if (!fps)
        co_return context.fail(fpsError);

    // The tool keeps no state between runs: the pipeline's state lives in a throw-away store.
    const QTemporaryDir scratch;
    Preferences preferences(scratch.filePath(scratchStoreName));
    AppState state(preferences);
    ShootSession session;
    session.id = session.shareToken = session.title = parser.value(tokenOption);
    session.fps = *fps;
    state.setSessions({session});

    QList<QUrl> files;
    for (const QString &path : parser.positionalArguments())
        files.append(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));

    APIService api(context.serviceUrl, context.credentials);
    AnalysisPipeline pipeline(state, api);
    AnalysisState analysis;
    QObject::connect(&analysis, &AnalysisState::analyseProgressChanged, &analysis, [&analysis] {
        if (!analysis.analyseProgress().isEmpty())
            CliIo::printError(line(analysis.analyseProgress()));
    });
    QCoro::Task<> run = pipeline.runAnalysis(session, files, analysis);
    co_await std::move(run);
    for (const QString &result : analysis.analyseResults())
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
