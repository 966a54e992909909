#include "cli/CliCommand.h"
#include "cli/CliIo.h"
#include "export/AvidMarkerList.h"
#include "export/CsvMarkerList.h"
#include "export/FcpXml.h"
#include "export/OtioTimeline.h"
#include "export/PremiereScript.h"
#include "export/Preflight.h"
#include "export/PremiereXml.h"
#include "export/ResolveEdl.h"
#include "export/SelectsXml.h"
#include "export/Subtitles.h"
#include "model/RecordJson.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

const QCommandLineOption sessionOption("session"_L1, "Session JSON file."_L1, "FILE"_L1);
const QCommandLineOption outputOption({"o"_L1, "output"_L1}, "Write the document to OUT instead of stdout."_L1, "OUT"_L1);
const QCommandLineOption selectOption("select"_L1, "A picked marker id, optionally with its grade; repeatable."_L1,
                                      "ID[=GRADE]"_L1);
const QCommandLineOption transcriptOption("transcript"_L1,
                                          "Transcript JSON to use, as `transcript TOKEN` prints it; "
                                          "default: the session's own."_L1,
                                          "FILE"_L1);
const QCommandLineOption xmlPathOption("xml-path"_L1, "Path of the marker XML the script imports."_L1, "PATH"_L1);

// The session every export command works on. A session file written by hand may hold what no
// document can carry: a frame rate of zero or below is refused, and a clip path relative to the
// current folder is made absolute, since the documents address clips by file URL.
std::optional<ShootSession> readSession(const CliContext &context, const QCommandLineParser &parser, int *status)
{
    QString error;
    const QString path = parser.value(sessionOption);
    const auto json = CliIo::readJsonFile(path, &error);
    std::optional<ShootSession> session;
    if (json)
        session = RecordJson::sessionFromJson(*json, &error);
    if (session && session->fps <= 0) {
        error = "the frame rate %1 is not a positive whole number"_L1.arg(QString::number(session->fps));
        session.reset();
    }
    if (!session) {
        *status = context.fail(json ? "%1: not a session: %2"_L1.arg(path, error) : error);
        return session;
    }
    for (MediaClip &clip : session->matchedClips) {
        if (!clip.path.isEmpty() && QDir::isRelativePath(clip.path))
            clip.path = QDir::current().absoluteFilePath(clip.path);
    }
    return session;
}

using Generator = std::function<QString(const CliContext &, const ShootSession &, const QCommandLineParser &)>;

// The generator is a parameter, not a lambda capture, so it lives in the coroutine's own frame.
QCoro::Task<int> emitSessionDocument(const CliContext &context, const QCommandLineParser &parser, Generator generate)
{
    int status = 0;
    const auto session = readSession(context, parser, &status);
    if (!session)
        co_return status;
    co_return CliIo::emitDocument(generate(context, *session, parser).toUtf8(), parser.value(outputOption));
}

auto sessionDocument(Generator generate)
{
    return [generate](const CliContext &context, const QCommandLineParser &parser) {
        return emitSessionDocument(context, parser, generate);
    };
}

// The utterances the picks were made in: those of the --transcript file, else the session's own.
std::optional<QList<TranscriptSegment>> readUtterances(const CliContext &context, const QCommandLineParser &parser,
                                                       const ShootSession &session, int *status)
{
    if (!parser.isSet(transcriptOption))
        return session.transcriptSegments;
    QString error;
    const QString path = parser.value(transcriptOption);
    const auto json = CliIo::readJsonFile(path, &error);
    std::optional<QList<TranscriptSegment>> utterances;
    if (json)
        utterances = RecordJson::segmentsFromJson(*json, &error);
    if (!utterances)
        *status = context.fail(json ? "%1: not a transcript: %2"_L1.arg(path, error) : error);
    return utterances;
}

QByteArray selectsDocument(const ShootSession &session, const QList<TranscriptSegment> &utterances,
                           const QCommandLineParser &parser)
{
    QSet<QString> ids;
    QHash<QString, QString> grades;
    for (const QString &value : parser.values(selectOption)) {
        const qsizetype equals = value.indexOf(u'=');
        const QString id = equals < 0 ? value : value.left(equals);
        ids.insert(id);
        if (equals >= 0)
            grades.insert(id, value.mid(equals + 1));
    }
    return generateSelectsXML(session, ids, grades, utterances).toUtf8();
}

using TranscriptDocument = QByteArray (*)(const ShootSession &, const QList<TranscriptSegment> &, const QCommandLineParser &);

// A document made from the session and the utterances of its transcript.
QCoro::Task<int> emitTranscriptDocument(const CliContext &context, const QCommandLineParser &parser,
                                        TranscriptDocument document)
{
    int status = 0;
    const auto session = readSession(context, parser, &status);
    if (!session)
        co_return status;
    const auto utterances = readUtterances(context, parser, *session, &status);
    if (!utterances)
        co_return status;
    co_return CliIo::emitDocument(document(*session, *utterances, parser), parser.value(outputOption));
}

auto transcriptDocument(TranscriptDocument document)
{
    return [document](const CliContext &context, const QCommandLineParser &parser) {
        return emitTranscriptDocument(context, parser, document);
    };
}

QJsonObject preflightJson(const Preflight &result)
{
    return {{"markers"_L1, result.markers},
            {"markersOnFootage"_L1, int(result.markersOnFootage.size())},
            {"markersOffFootage"_L1, QJsonArray::fromStringList(result.markersOffFootage)},
            {"clipsWithoutTimecode"_L1, QJsonArray::fromStringList(result.clipsWithoutTimecode)},
            {"clipsWithOtherFps"_L1, QJsonArray::fromStringList(result.clipsWithOtherFps)}};
}

QCoro::Task<int> check(const CliContext &context, const QCommandLineParser &parser)
{
    int status = 0;
    const auto session = readSession(context, parser, &status);
    if (!session)
        co_return status;
    CliIo::printJson(preflightJson(preflight(*session)));
    co_return 0;
}

QCoro::Task<int> script(const CliContext &, const QCommandLineParser &parser)
{
    co_return CliIo::emitDocument(premiereScript(parser.value(xmlPathOption)).toUtf8(), parser.value(outputOption));
}

CliCommand sessionCommand(const QString &name, const QString &summary, Generator generate)
{
    return {"export "_L1 + name, "--session FILE [-o OUT]"_L1, summary, {sessionOption, outputOption}, {},
            {"session"_L1}, 0, sessionDocument(std::move(generate))};
}

CliCommand subtitleCommand(const QString &name, const QString &summary, TranscriptDocument document)
{
    return {"export "_L1 + name, "--session FILE [--transcript FILE] [-o OUT]"_L1, summary,
            {sessionOption, transcriptOption, outputOption}, {}, {"session"_L1}, 0, transcriptDocument(document)};
}

} // namespace

QList<CliCommand> exportCommands()
{
    return {
        sessionCommand("edl"_L1, "Print the session's markers as a CMX 3600 EDL for DaVinci Resolve."_L1,
                       [](const CliContext &, const ShootSession &session, const QCommandLineParser &) {
                           return generateResolveEDL(session);
                       }),
        sessionCommand("xml"_L1, "Print the xmeml marker sequence for Premiere Pro."_L1,
                       [](const CliContext &context, const ShootSession &session, const QCommandLineParser &) {
                           return generatePremiereXML(session, premiereSourceTrack(session, context.tools));
                       }),
        sessionCommand("otio"_L1, "Print the OpenTimelineIO timeline for DaVinci Resolve."_L1,
                       [](const CliContext &, const ShootSession &session, const QCommandLineParser &) { return generateOTIO(session); }),
        {"export selects"_L1, "--session FILE --select ID[=GRADE] ... [--transcript FILE] [-o OUT]"_L1,
         "Print the xmeml selects sequence of the picked markers and utterances (empty when none is picked)."_L1,
         {sessionOption, selectOption, transcriptOption, outputOption}, {}, {"session"_L1, "select"_L1}, 0, transcriptDocument(selectsDocument)},
        {"export jsx"_L1, "--xml-path PATH [-o OUT]"_L1,
         "Print the Premiere Pro script that imports the marker XML at PATH and colours its markers."_L1,
         {xmlPathOption, outputOption}, {}, {"xml-path"_L1}, 0, script},
        sessionCommand("fcpxml"_L1, "Print the Final Cut Pro XML (FCPXML 1.9) of the matched clips and their markers."_L1,
                       [](const CliContext &context, const ShootSession &session, const QCommandLineParser &) {
                           return generateFCPXML(session, exactFrameDurations(session, context.tools));
                       }),
        sessionCommand("avid"_L1, "Print the marker list that Media Composer's Markers window imports."_L1,
                       [](const CliContext &, const ShootSession &session, const QCommandLineParser &) {
                           return generateAvidMarkerList(session);
                       }),
        sessionCommand("csv"_L1, "Print the markers as a spreadsheet (CSV, UTF-8 with byte order mark)."_L1,
                       [](const CliContext &, const ShootSession &session, const QCommandLineParser &) {
                           return generateMarkerCSV(session);
                       }),
        {"check"_L1, "--session FILE"_L1,
         "Print as JSON which markers land on matched footage and which clips lack timecode or run at another rate."_L1,
         {sessionOption}, {}, {"session"_L1}, 0, check},
        subtitleCommand("srt"_L1, "Print the transcript as SubRip subtitles."_L1,
                        [](const ShootSession &session, const QList<TranscriptSegment> &utterances, const QCommandLineParser &) {
                            return generateSRT(session, utterances).toUtf8();
                        }),
        subtitleCommand("vtt"_L1, "Print the transcript as WebVTT subtitles."_L1,
                        [](const ShootSession &session, const QList<TranscriptSegment> &utterances, const QCommandLineParser &) {
                            return generateWebVTT(session, utterances).toUtf8();
                        }),
    };
}
