#include "cli/CliCommand.h"
#include "cli/CliIo.h"
#include "model/ClipMatcher.h"
#include "model/RecordJson.h"

namespace {

const QCommandLineOption sessionOption(QStringLiteral("session"), QStringLiteral("Session JSON file."), QStringLiteral("FILE"));
const QCommandLineOption clipsOption(QStringLiteral("clips"), QStringLiteral("JSON file with an array of clips."), QStringLiteral("FILE"));

QCoro::Task<int> match(const CliContext &context, const QCommandLineParser &parser)
{
    QString error;
    const QString sessionPath = parser.value(sessionOption);
    const QString clipsPath = parser.value(clipsOption);
    const auto sessionJson = CliIo::readJsonFile(sessionPath, &error);
    if (!sessionJson)
        co_return context.fail(error);
    const auto session = RecordJson::sessionFromJson(*sessionJson, &error);
    if (!session)
        co_return context.fail(QStringLiteral("%1: not a session: %2").arg(sessionPath, error));
    const auto clipsJson = CliIo::readJsonFile(clipsPath, &error);
    if (!clipsJson)
        co_return context.fail(error);
    const auto clips = RecordJson::clipsFromJson(*clipsJson, &error);
    if (!clips)
        co_return context.fail(QStringLiteral("%1: not a list of clips: %2").arg(clipsPath, error));
    CliIo::printJson(RecordJson::toJson(ClipMatcher::matchClipsToSession(*clips, *session)));
    co_return 0;
}

} // namespace

QList<CliCommand> matchCommands()
{
    return {{QStringLiteral("match"),
             QStringLiteral("--session FILE --clips FILE"),
             QStringLiteral("Print the session with the clips that match its marker timecodes."),
             {sessionOption, clipsOption},
             {},
             {QStringLiteral("session"), QStringLiteral("clips")},
             0,
             match}};
}
