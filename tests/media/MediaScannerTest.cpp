#include "MediaFixtures.h"
#include "support/TestData.h"

#include "media/MediaScanner.h"
#include "model/RecordJson.h"

#include <QTemporaryDir>

using namespace MediaFixtures;

Q_DECLARE_METATYPE(ToolOutput)

class MediaScannerTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    MediaScanner m_scanner{ToolLocations::platformDefault()};

    QString file(const QString &name) const { return m_dir.filePath(name); }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        const QStringList oneSecond{"-t", "1"};
        // NUT keeps tags exactly as given, on the format and on any stream; the names carry a
        // media extension because the probes go by content.
        QVERIFY(make(file("format-and-stream.mov"), video("25") + tone(1) + oneSecond
                     + QStringList{"-metadata", "timecode=06:00:00:00", "-metadata:s:a:0", "timecode=07:00:00:00", "-f", "nut"}));
        QVERIFY(make(file("second-stream.mov"), video("25") + tone(1) + oneSecond + QStringList{"-metadata:s:a:0", "timecode=07:00:00:00", "-f", "nut"}));
        QVERIFY(make(file("format-only.mxf"), video("30000/1001") + oneSecond + QStringList{"-timecode", "01:00:00:00", "-c:v", "mpeg2video"}));
        // QuickTime keeps its timecode on the video and timecode tracks, never on the format.
        QVERIFY(make(file("quicktime.mov"), video("25") + tone(1) + oneSecond + QStringList{"-timecode", "10:00:00:00"}));
        QVERIFY(make(file("audio-only.mp4"), tone(1) + oneSecond));
        QVERIFY(make(file("23.976.mp4"), video("24000/1001") + oneSecond));
        QVERIFY(make(file("50p.mov"), video("50") + oneSecond + QStringList{"-timecode", "23:59:59:49"}));
        QVERIFY(make(file("video-second.mov"), tone(1) + video("25") + oneSecond + QStringList{"-map", "0:a", "-map", "1:v"}));
        QVERIFY(make(file("no-streams.mov"), tone(1) + QStringList{"-t", "0", "-f", "ffmetadata"}));
        QVERIFY(writeText(file("text.mov"), "not a movie\n"));
    }

    void ffprobeAnswers_data() { addCaseRows(QStringLiteral("media/ffprobe-answers.txt")); }

    void ffprobeAnswers()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        const QByteArray json = input.toUtf8();
        const FFprobeOutput::Resolution size = FFprobeOutput::resolution(json);
        const FFprobeOutput::Reading reading = FFprobeOutput::reading(json);
        QCOMPARE(reading.timecode, FFprobeOutput::timecode(json));
        QCOMPARE(reading.duration, FFprobeOutput::duration(json));
        const QString video = caseText(reading.resolution.width) + u'x' + caseText(reading.resolution.height) + u'@' + caseText(reading.fps);
        const QStringList readings{caseText(FFprobeOutput::timecode(json)), video,
                                   caseText(std::optional(FFprobeOutput::duration(json))), caseText(size.width), caseText(size.height),
                                   caseText(FFprobeOutput::fps(json)), caseText(FFprobeOutput::firstStreamWithChannels(json))};
        QCOMPARE(readings.join(u", "), expected);
    }

    void probeRealFiles_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        QTest::newRow("format and stream timecode") << "format-and-stream.mov" << "tc 06:00:00:00, fps 25, 64x36, 1 s";
        QTest::newRow("timecode on the second stream") << "second-stream.mov" << "tc 07:00:00:00, fps 25, 64x36, 1 s";
        QTest::newRow("format timecode, 29.97") << "format-only.mxf" << "tc 01:00:00:00, fps 30, 64x36, 1 s";
        QTest::newRow("QuickTime timecode track") << "quicktime.mov" << "tc 10:00:00:00, fps 25, 64x36, 1 s";
        QTest::newRow("23.976") << "23.976.mp4" << "fps 24, 64x36, 1 s";
        QTest::newRow("50p") << "50p.mov" << "tc 23:59:59:49, fps 50, 64x36, 1 s";
        QTest::newRow("video after audio") << "video-second.mov" << "fps 25, 64x36, 1 s";
        QTest::newRow("no video") << "audio-only.mp4" << "1 s";
        QTest::newRow("no streams") << "no-streams.mov" << "0 s";
        QTest::newRow("not media") << "text.mov" << "0 s";
    }

    // One launch reads what the four or five separate probes read, and the analysis' timecode
    // follows the same rule.
    void probeRealFiles()
    {
        QFETCH(QString, name);
        QFETCH(QString, expected);
        const ToolRunStatistics before = toolRunStatistics();
        MediaClip clip = m_scanner.probeClip(file(name));
        QCOMPARE(toolRunStatistics().launches - before.launches, 1);
        QCOMPARE(facts(clip), expected);
        QCOMPARE(QStringList({clip.path, clip.filename}), QStringList({file(name), name}));
        QVERIFY2(clip.id.size() == 36 && clip.id == clip.id.toUpper(), qPrintable(clip.id));
        QCOMPARE(clip.recordingDate, QFileInfo(file(name)).lastModified());
        QCOMPARE(m_scanner.getFileTimecode(file(name)), clip.timecode);

        const MediaClip separately = m_scanner.probeClipSeparately(file(name));
        QCOMPARE_GE(toolRunStatistics().launches - before.launches, 1 + 4 + 1);
        QVERIFY(separately.id != clip.id);
        clip.id = separately.id;
        QCOMPARE(RecordJson::toJson(clip), RecordJson::toJson(separately));
    }

    // The first candidate that exists, in the list's order; with none, the fall-back name. The
    // clip probe tries that name; the analysis' timecode query has no fall-back and tries nothing.
    void ffprobeLookup()
    {
        QVERIFY(writeText(file("b/ffprobe"), "") && writeText(file("c/ffprobe"), ""));
        ToolLocations tools = withoutFFprobe(m_dir.path());
        tools.ffprobeCandidates += {file("b/ffprobe"), file("c/ffprobe")};
        QCOMPARE(MediaScanner(tools).findFFprobe(), file("b/ffprobe"));

        const MediaScanner scanner(withoutFFprobe(m_dir.path()));
        QCOMPARE(scanner.findFFprobe(), QStringLiteral("vorlix-test-no-such-ffprobe"));
        const ToolRunStatistics before = toolRunStatistics();
        QCOMPARE(scanner.getFileTimecode(file("format-only.mxf")), OptionalText());
        QCOMPARE(toolRunStatistics().runs, before.runs);
        const MediaClip clip = scanner.probeClip(file("format-only.mxf"));
        QCOMPARE(toolRunStatistics().runs - before.runs, 1);
        QCOMPARE(toolRunStatistics().launches, before.launches);
        QCOMPARE(facts(clip), QStringLiteral("0 s"));
        QVERIFY(clip.recordingDate);
    }

    // The program is the first of the arguments.
    void runTool_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<ToolOutput>("out");
        QTest::addColumn<int>("limitMs");
        QTest::addColumn<QString>("expected");
        const QStringList both{"/bin/sh", "-c", "printf 'to out'; printf 'to err' >&2; exit 3"};
        const int ample = 60000;
        QTest::newRow("both captured") << both << ToolOutput::Captured << ample << "launched, exit 3, out [to out], err [to err]";
        QTest::newRow("output to the null device") << both << ToolOutput::NullDevice << ample << "launched, exit 3, out [], err [to err]";
        QTest::newRow("arguments pass unquoted") << QStringList{"/bin/sh", "-c", "printf '%s|' \"$@\"", "sh", "a b", "'c'", "$HOME", "*"}
                                                 << ToolOutput::Captured << ample << "launched, exit 0, out [a b|'c'|$HOME|*|], err []";
        QTest::newRow("standard input is empty") << QStringList{"/bin/sh", "-c", "cat; echo done"} << ToolOutput::Captured << ample << "launched, exit 0, out [done\n], err []";
        QTest::newRow("crash") << QStringList{"/bin/sh", "-c", "kill -KILL $$"} << ToolOutput::Captured << ample << "launched, exit -1, out [], err []";
        QTest::newRow("outlives its limit") << QStringList{"/bin/sh", "-c", "printf partial; printf partial >&2; exec sleep 600"}
                                            << ToolOutput::Captured << 300 << "timed out, exit -1, out [], err []";
        QTest::newRow("missing") << QStringList{file("no-such-tool"), "-version"} << ToolOutput::Captured << ample << "not launched, exit -1, out [], err []";
        QTest::newRow("not executable") << QStringList{file("text.mov")} << ToolOutput::Captured << ample << "not launched, exit -1, out [], err []";
    }

    void runTool()
    {
        QFETCH(QStringList, arguments);
        QFETCH(ToolOutput, out);
        QFETCH(int, limitMs);
        QFETCH(QString, expected);
        const ToolRunStatistics before = toolRunStatistics();
        const ToolRun run = ::runTool(arguments.first(), arguments.mid(1), out, ToolOutput::Captured, std::chrono::milliseconds(limitMs));
        const char *outcome = !run.launched ? "not launched" : run.timedOut ? "timed out" : "launched";
        QCOMPARE(QStringLiteral("%1, exit %2, out [%3], err [%4]").arg(outcome).arg(run.exitStatus)
                     .arg(QString::fromUtf8(run.standardOutput), QString::fromUtf8(run.standardError)), expected);
        QCOMPARE(toolRunStatistics().runs - before.runs, 1);
        QCOMPARE(toolRunStatistics().launches - before.launches, run.launched ? 1 : 0);
    }

    void runToolChattyTool()
    {
        // Far more than a pipe holds, on both streams at once.
        const QStringList arguments = QStringList{"-loglevel", "debug"} + video("25") + QStringList{"-t", "8", "-vf", "showinfo", "-f", "rawvideo", "-pix_fmt", "rgb24", "-"};
        const ToolRun captured = ::runTool(ffmpeg(), arguments, ToolOutput::Captured, ToolOutput::Discarded, std::chrono::minutes(2));
        QCOMPARE(captured.exitStatus, 0);
        QCOMPARE(captured.standardOutput.size(), 64 * 36 * 3 * 200);
        const ToolRun discarded = ::runTool(ffmpeg(), arguments, ToolOutput::Discarded, ToolOutput::Captured, std::chrono::minutes(2));
        QCOMPARE(discarded.exitStatus, 0);
        QVERIFY(discarded.standardOutput.isEmpty() && discarded.standardError.size() > 65536);
    }
};

QTEST_GUILESS_MAIN(MediaScannerTest)
#include "MediaScannerTest.moc"
