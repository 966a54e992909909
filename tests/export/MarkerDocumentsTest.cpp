// The documents for Final Cut Pro, Media Composer, spreadsheets and subtitles: their goldens
// (tests/data/export), the command line that prints them, the exact frame rates ffprobe reads,
// and many generated sessions full of hostile text, each document keeping its shape.
#include "cli/CliRunner.h"
#include "support/TestData.h"

#include "export/AvidMarkerList.h"
#include "export/CsvMarkerList.h"
#include "export/FcpXml.h"
#include "export/PlainLine.h"
#include "export/Subtitles.h"
#include "model/RecordJson.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

ShootSession readSession(const QString &name)
{
    return RecordJson::sessionFromJson(QJsonDocument::fromJson(readTestData(u"export/"_s + name)).object()).value_or(ShootSession{});
}

const QStringList hostile = {u"\""_s, u"'"_s, u"&"_s, u"<"_s, u">"_s, u"-->"_s, u"\n"_s, u"\r\n"_s, u"\t"_s, u","_s, u"="_s,
                             u"+"_s, u"-"_s, u"@"_s, QString(QChar(0)), u"\u0001"_s, u"\u2028"_s, u"\ufffe"_s, u"😀"_s,
                             u"e\u0301"_s, QString(QChar(0xD800)), u" "_s, u"word"_s, u"日本"_s};
const QStringList timecodes = {u"10:00:00:00"_s, u"10:00:05:12"_s, u"10:01:00:00"_s, u"bad"_s, u""_s, u"-5:00:00:00"_s,
                               u"99999999:00:00:00"_s, u"1:2:3"_s};

struct Generator {
    QRandomGenerator random;

    template<typename T> T pick(const QList<T> &from) { return from[int(random.bounded(int(from.size())))]; }
    std::optional<QString> maybe(QString value) { return random.bounded(2) ? std::optional(value) : std::nullopt; }
    QString text()
    {
        QString t;
        for (int i = int(random.bounded(8)); i > 0; --i)
            t += pick(hostile);
        return t;
    }

    ShootSession session()
    {
        ShootSession s{.title = text(), .fps = pick(QList<int>{24, 25, 30, 60})};
        for (int i = int(random.bounded(12)); i > 0; --i)
            s.markers.append({.id = QString::number(i), .markerType = pick(QStringList{u"earmark"_s, u"inout"_s, u"log"_s, text()}),
                              .timecode = pick(timecodes), .timecodeOut = maybe(pick(timecodes)), .summary = maybe(text()),
                              .quote = maybe(text()), .raw = maybe(text()), .manualNote = maybe(text())});
        for (int i = int(random.bounded(4)); i > 0; --i)
            s.matchedClips.append({.id = QString::number(i), .path = u'/' + text(), .filename = text(), .timecode = maybe(pick(timecodes)),
                                   .duration = pick(QList<double>{0.0, 12.5, 3600.0, qInf(), qQNaN()}),
                                   .detectedFps = pick(QList<std::optional<int>>{{}, 24, 30, 50})});
        for (int i = int(random.bounded(10)); i > 0; --i)
            s.transcriptSegments.append({.id = QString::number(i), .speaker = text(), .text = text(), .timecode = pick(timecodes)});
        return s;
    }
};

qsizetype spokenUtterances(const ShootSession &session)
{
    return std::count_if(session.transcriptSegments.begin(), session.transcriptSegments.end(),
                         [](const TranscriptSegment &u) { return !plainLine(u.text).isEmpty(); });
}

} // namespace

class MarkerDocumentsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documents_data()
    {
        QTest::addColumn<QString>("document");
        QTest::addColumn<QString>("golden");
        for (const QString &name : {u"review-session"_s, u"review-session-without-clips"_s}) {
            const ShootSession session = readSession(name + u".json"_s);
            // The 30 fps clip is really 29.97, as ffprobe would say.
            const QByteArray fcpxml = name.toUtf8() + ".fcpxml";
            QTest::newRow(fcpxml) << generateFCPXML(session, {{u"c1"_s, {1001, 30000}}}) << name + u".fcpxml"_s;
            QTest::newRow(name.toUtf8() + ".avid.txt") << generateAvidMarkerList(session) << name + u".avid.txt"_s;
            QTest::newRow(name.toUtf8() + ".csv") << generateMarkerCSV(session) << name + u".csv"_s;
            QTest::newRow(name.toUtf8() + ".srt") << generateSRT(session, session.transcriptSegments) << name + u".srt"_s;
            QTest::newRow(name.toUtf8() + ".vtt") << generateWebVTT(session, session.transcriptSegments) << name + u".vtt"_s;
        }
    }

    void documents()
    {
        QFETCH(QString, document);
        QFETCH(QString, golden);
        const QString mismatch = goldenMismatch(document, u"export/"_s + golden);
        QVERIFY2(mismatch.isEmpty(), qPrintable(mismatch));
    }

    void commandLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("expected");
        const QString path = testDataPath(u"export/review-session.json"_s);
        const QString transcript = testDataPath(u"export/review-transcript.json"_s);
        const ShootSession session = readSession(u"review-session.json"_s);
        const auto args = [&](const QString &format, const QStringList &more = {}) {
            return QStringList{u"export"_s, format, u"--session"_s, path} + more;
        };
        // The clips do not exist, so ffprobe finds no exact rate.
        QTest::newRow("fcpxml") << args(u"fcpxml"_s) << 0 << generateFCPXML(session, {});
        QTest::newRow("avid") << args(u"avid"_s) << 0 << generateAvidMarkerList(session);
        QTest::newRow("csv") << args(u"csv"_s) << 0 << generateMarkerCSV(session);
        QTest::newRow("srt") << args(u"srt"_s) << 0 << generateSRT(session, session.transcriptSegments);
        const auto fromFile = RecordJson::segmentsFromJson(QJsonDocument::fromJson(readTestData(u"export/review-transcript.json"_s)).array());
        QTest::newRow("vtt --transcript") << args(u"vtt"_s, {u"--transcript"_s, transcript}) << 0
                                          << generateWebVTT(session, fromFile.value_or(QList<TranscriptSegment>{}));
        QTest::newRow("not a transcript") << args(u"srt"_s, {u"--transcript"_s, path}) << 1 << path + u": not a transcript"_s;
        QTest::newRow("no session") << QStringList{u"export"_s, u"csv"_s, u"--session"_s, path + u".missing"_s} << 1 << path + u".missing"_s;
    }

    void commandLine()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QString, expected);
        const CliResult result = runCli(arguments);
        QCOMPARE(result.exitCode, status);
        if (status == 0)
            QCOMPARE(result.out, expected.toUtf8()); // bytes: fromUtf8 would drop the byte order mark
        else
            QVERIFY2(QString::fromUtf8(result.err).contains(expected), result.err.constData());
    }

    // ffprobe tells 29.97 from 30: the clip counted at 30 gets the true frame length, the other
    // clip its whole rate, and a clip whose file is missing nothing.
    void exactFrameRates()
    {
        QTemporaryDir folder;
        for (const char *rate : {"30000/1001", "25"}) {
            QProcess ffmpeg;
            ffmpeg.start(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-f"_s, u"lavfi"_s, u"-i"_s, u"testsrc=size=64x36:rate="_s + QLatin1String(rate),
                                        u"-t"_s, u"1"_s, folder.filePath(QString::fromLatin1(rate).remove(u'/') + u".mov"_s)});
            QVERIFY2(ffmpeg.waitForFinished(60000) && ffmpeg.exitCode() == 0, "ffmpeg made no clip within 60 s");
        }
        ShootSession session{.fps = 25};
        session.matchedClips = {{.id = u"ntsc"_s, .path = folder.filePath(u"300001001.mov"_s), .detectedFps = 30},
                                {.id = u"pal"_s, .path = folder.filePath(u"25.mov"_s)},
                                {.id = u"gone"_s, .path = folder.filePath(u"gone.mov"_s), .detectedFps = 30}};
        ToolLocations tools{.ffprobeFallback = u"ffprobe"_s};
        const QHash<QString, FrameDuration> expected{{u"ntsc"_s, {1001, 30000}}, {u"pal"_s, {1, 25}}};
        QCOMPARE(exactFrameDurations(session, tools), expected);
    }

    void generatedSessionsKeepTheirShape()
    {
        static const QRegularExpression csvRecord(u"^(\"([^\"]|\"\")*\",){7}\"([^\"]|\"\")*\"$"_s);
        static const QRegularExpression formula(u"(^|,)\"[=+\\-@]"_s);
        static const QRegularExpression time(u"^-?\\d+(/\\d+)?s$"_s);
        static const QRegularExpression srtCue(u"^\\d+\r\n\\d{2,}:\\d\\d:\\d\\d,\\d{3} --> \\d{2,}:\\d\\d:\\d\\d,\\d{3}\r\n[^\r\n]+$"_s);
        static const QRegularExpression vttCue(u"^\\d{2,}:\\d\\d:\\d\\d\\.\\d{3} --> \\d{2,}:\\d\\d:\\d\\d\\.\\d{3}\n[^\n<>]*(<v [^\n<>]*>)?[^\n<>]+$"_s);
        Generator generate{QRandomGenerator(20261124)};
        for (int i = 0; i < 300; ++i) {
            const ShootSession session = generate.session();
            const QString where = u"session %1: "_s.arg(i);

            const QString fcpxml = generateFCPXML(session, {});
            QXmlStreamReader reader(fcpxml);
            qsizetype markers = 0;
            while (!reader.atEnd()) {
                if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == "marker"_L1) {
                    ++markers;
                    QVERIFY2(time.match(reader.attributes().value("start"_L1)).hasMatch(), qPrintable(where + fcpxml));
                }
            }
            QVERIFY2(!reader.hasError(), qPrintable(where + reader.errorString()));
            if (session.matchedClips.isEmpty())
                QCOMPARE(markers, session.markers.size());

            QString csv = generateMarkerCSV(session);
            QVERIFY2(csv.startsWith(u'\uFEFF') && csv.endsWith(u"\r\n"_s), qPrintable(where + u"BOM or last CRLF"_s));
            const QStringList records = csv.mid(1).chopped(2).split(u"\r\n"_s);
            QCOMPARE(records.size(), session.markers.size() + 1);
            for (const QString &record : records)
                QVERIFY2(csvRecord.match(record).hasMatch() && !formula.match(record).hasMatch(), qPrintable(where + record));

            const QString srt = generateSRT(session, session.transcriptSegments);
            const QStringList srtCues = srt.isEmpty() ? QStringList() : srt.chopped(4).split(u"\r\n\r\n"_s);
            QCOMPARE(srtCues.size(), spokenUtterances(session));
            for (const QString &cue : srtCues)
                QVERIFY2(srtCue.match(cue).hasMatch(), qPrintable(where + cue));

            const QString vtt = generateWebVTT(session, session.transcriptSegments);
            QVERIFY2(vtt.startsWith("WEBVTT\n"_L1), qPrintable(where + vtt));
            const QStringList vttCues = vtt.mid(8).split(u"\n\n"_s, Qt::SkipEmptyParts);
            QCOMPARE(vttCues.size(), spokenUtterances(session));
            for (const QString &cue : vttCues)
                QVERIFY2(vttCue.match(cue.trimmed()).hasMatch() && cue.count("-->"_L1) == 1, qPrintable(where + cue));

            for (const QString &line : generateAvidMarkerList(session).split(u'\n', Qt::SkipEmptyParts))
                QVERIFY2(line.count(u'\t') == 5 && line.startsWith("Vorlix\t"_L1), qPrintable(where + line));
        }
    }
};

QTEST_GUILESS_MAIN(MarkerDocumentsTest)
#include "MarkerDocumentsTest.moc"
