#include "cli/CliCommand.h"
#include "cli/CliIo.h"
#include "media/MediaScanner.h"
#include "model/RecordJson.h"
#include "time/NumberText.h"

#include <QDir>
#include <QFileInfo>

namespace {

const QCommandLineOption jobsOption(QStringLiteral("jobs"), QStringLiteral("Files probed at once (default: one per core)."), QStringLiteral("N"));
const QCommandLineOption noCacheOption(QStringLiteral("no-cache"), QStringLiteral("Probe every file, neither reading nor writing the probe cache."));
// Texts live outside the coroutines: g++ 12 cannot compile QStringLiteral inside one.
const QString jobsError = QStringLiteral("--jobs must be a whole number from 1 to 256");

std::optional<ScanOptions> chosenOptions(const QCommandLineParser &parser)
{
    ScanOptions options = ScanOptions::platformDefault();
    if (parser.isSet(noCacheOption))
        options.probeCacheFile.clear();
    if (!parser.isSet(jobsOption))
        return options;
    const auto jobs = parseBase10Integer(parser.value(jobsOption));
    if (!jobs || *jobs < 1 || *jobs > 256)
        return std::nullopt;
    options.jobs = int(*jobs);
    return options;
}

QCoro::Task<int> probe(const CliContext &context, const QCommandLineParser &parser)
{
    const QStringList files = parser.positionalArguments();
    for (const QString &file : files) {
        const QFileInfo info(file);
        if (!info.isFile())
            co_return context.fail(QStringLiteral("%1: %2").arg(file, info.exists() ? QStringLiteral("not a file") : QStringLiteral("no such file")));
    }
    const MediaScanner scanner(context.tools);
    QList<MediaClip> clips;
    for (const QString &file : files)
        clips.append(scanner.probeClip(QFileInfo(file).absoluteFilePath()));
    CliIo::printJson(RecordJson::toJsonArray(clips));
    co_return 0;
}

QCoro::Task<int> scan(const CliContext &context, const QCommandLineParser &parser)
{
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() > 1) {
        CliIo::printError(QStringLiteral("Unexpected argument \"%1\".\n").arg(arguments.at(1)));
        co_return 2;
    }
    const QString folder = arguments.first();
    const QFileInfo info(folder);
    if (!info.isDir())
        co_return context.fail(QStringLiteral("%1: %2").arg(folder, info.exists() ? QStringLiteral("not a folder") : QStringLiteral("no such folder")));
    if (!QDir(folder).isReadable())
        co_return context.fail(QStringLiteral("%1: cannot be read").arg(folder));
    const std::optional<ScanOptions> options = chosenOptions(parser);
    if (!options)
        co_return context.fail(jobsError);
    const FolderScan found = MediaScanner(context.tools).scanFolder(folder, *options, [](const QString &line) {
        CliIo::printError(line + QLatin1Char('\n'));
    }, std::stop_token());
    CliIo::printJson(RecordJson::toJsonArray(found.clips));
    co_return 0;
}

} // namespace

QList<CliCommand> mediaCommands()
{
    return {{QStringLiteral("probe"),
             QStringLiteral("FILE..."),
             QStringLiteral("Print one clip per media file, as a footage scan reads it with ffprobe."),
             {},
             {{QStringLiteral("FILE"), QStringLiteral("Media file to probe.")}},
             {},
             1,
             probe},
            {QStringLiteral("scan"),
             QStringLiteral("[--jobs N] [--no-cache] FOLDER"),
             QStringLiteral("Scan a footage folder: progress on stderr, the clips found on stdout. Unchanged files are "
                            "recalled from the probe cache in the user's cache folder."),
             {jobsOption, noCacheOption},
             {{QStringLiteral("FOLDER"), QStringLiteral("Folder to walk, sub-folders included.")}},
             {},
             1,
             scan}};
}
