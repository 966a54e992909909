#include "MediaFixtures.h"

#include "media/MediaScanner.h"

#include <QTemporaryDir>
#include <QTest>

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
        const QStringList oneSecond{QStringLiteral("-t"), QStringLiteral("1")};
        // NUT keeps tags exactly as given, on the format and on any stream; the names carry a
        // media extension because the probes go by content.
        QVERIFY(make(file("format-and-stream.mov"), video("25") + tone(1) + oneSecond
                     + QStringList{"-metadata", "timecode=06:00:00:00", "-metadata:s:a:0", "timecode=07:00:00:00", "-f", "nut"}));
        QVERIFY(make(file("second-stream.mov"), video("25") + tone(1) + oneSecond
                     + QStringList{"-metadata:s:a:0", "timecode=07:00:00:00", "-f", "nut"}));
        QVERIFY(make(file("format-only.mxf"), video("30000/1001") + oneSecond
                     + QStringList{"-timecode", "01:00:00:00", "-c:v", "mpeg2video"}));
        // QuickTime keeps its timecode on the video and timecode tracks, never on the format.
        QVERIFY(make(file("quicktime.mov"), video("25") + tone(1) + oneSecond + QStringList{"-timecode", "10:00:00:00"}));
        QVERIFY(make(file("none.mp4"), video("30000/1001") + oneSecond));
        QVERIFY(make(file("audio-only.mp4"), tone(1) + oneSecond));
        QVERIFY(writeText(file("text.mov"), "not a movie\n"));
    }

    void timecodeFromJson_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<OptionalText>("expected");
        QTest::addColumn<OptionalText>("formatOnly");
        const OptionalText none;
        QTest::newRow("format wins over stream")
            << QByteArray(R"({"streams":[{"tags":{"timecode":"02:00:00:00"}}],"format":{"tags":{"timecode":"01:00:00:00"}}})")
            << OptionalText("01:00:00:00") << OptionalText("01:00:00:00");
        QTest::newRow("first stream that has one")
            << QByteArray(R"({"streams":[{"tags":{}},{"tags":{"timecode":"03:00:00:00"}},{"tags":{"timecode":"04:00:00:00"}}]})")
            << OptionalText("03:00:00:00") << none;
        QTest::newRow("upper-case key") << QByteArray(R"({"format":{"tags":{"TIMECODE":"01:00:00:00"}}})") << none << none;
        QTest::newRow("number instead of text") << QByteArray(R"({"format":{"tags":{"timecode":1}}})") << none << none;
        QTest::newRow("tags not an object") << QByteArray(R"({"streams":[{"tags":"01:00:00:00"}]})") << none << none;
        QTest::newRow("array at the top") << QByteArray(R"([{"format":{"tags":{"timecode":"01:00:00:00"}}}])") << none << none;
        QTest::newRow("not json") << QByteArray("01:00:00:00") << none << none;
    }

    void timecodeFromJson()
    {
        QFETCH(QByteArray, json);
        QFETCH(OptionalText, expected);
        QFETCH(OptionalText, formatOnly);
        QCOMPARE(FFprobeOutput::timecode(json), expected);
        QCOMPARE(FFprobeOutput::formatTimecode(json), formatOnly);
    }

    // The duration from the format and the size from the first stream, each on its own.
    void durationAndResolutionFromJson_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<double>("duration");
        QTest::addColumn<OptionalInt>("width");
        QTest::addColumn<OptionalInt>("height");
        const OptionalInt none;
        QTest::newRow("ffprobe text, both") << QByteArray(R"({"format":{"duration":"12.345000"},"streams":[{"width":1920,"height":1080}]})")
                                           << 12.345 << OptionalInt(1920) << OptionalInt(1080);
        QTest::newRow("N/A, width only") << QByteArray(R"({"format":{"duration":"N/A"},"streams":[{"width":1920}]})") << 0.0 << OptionalInt(1920) << none;
        QTest::newRow("leading space, fractional height")
            << QByteArray(R"({"format":{"duration":" 12.5"},"streams":[{"width":1920,"height":1080.5}]})") << 0.0 << OptionalInt(1920) << none;
        QTest::newRow("number duration, text width")
            << QByteArray(R"({"format":{"duration":12.5},"streams":[{"width":"1920","height":1080}]})") << 0.0 << none << OptionalInt(1080);
        QTest::newRow("beyond int") << QByteArray(R"({"streams":[{"width":1e12,"height":2}]})") << 0.0 << none << OptionalInt(2);
        QTest::newRow("no streams") << QByteArray(R"({"streams":[]})") << 0.0 << none << none;
        QTest::newRow("not json") << QByteArray("12.5") << 0.0 << none << none;
    }

    void durationAndResolutionFromJson()
    {
        QFETCH(QByteArray, json);
        QFETCH(double, duration);
        QFETCH(OptionalInt, width);
        QFETCH(OptionalInt, height);
        QCOMPARE(FFprobeOutput::duration(json), duration);
        const FFprobeOutput::Resolution resolution = FFprobeOutput::resolution(json);
        QCOMPARE(resolution.width, width);
        QCOMPARE(resolution.height, height);
    }

    void frameRate_data()
    {
        QTest::addColumn<QString>("rate");
        QTest::addColumn<OptionalInt>("expected");
        const OptionalInt none;
        QTest::newRow("NTSC") << "30000/1001" << OptionalInt(30);
        QTest::newRow("half rounds away from zero") << "5/2" << OptionalInt(3);
        QTest::newRow("negative half") << "-5/2" << OptionalInt(-3);
        QTest::newRow("empty pieces dropped") << "/25//1/" << OptionalInt(25);
        QTest::newRow("decimal parts") << "29.97/1" << OptionalInt(30);
        QTest::newRow("0/0") << "0/0" << none;
        QTest::newRow("negative denominator") << "25/-1" << none;
        QTest::newRow("no slash") << "25" << none;
        QTest::newRow("absurd") << "1e300/1e-300" << none;
    }

    void frameRate()
    {
        QFETCH(QString, rate);
        QFETCH(OptionalInt, expected);
        QCOMPARE(FFprobeOutput::frameRate(rate), expected);
        const QByteArray json = QByteArray("{\"streams\":[{\"r_frame_rate\":\"") + rate.toUtf8() + "\"}]}";
        QCOMPARE(FFprobeOutput::fps(json), expected);
    }

    void mediaExtensions_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("isMedia");
        QTest::newRow("R3D upper case") << "/f/CLIP.R3D" << true;
        QTest::newRow("two dots") << "/f/a.b.mxf" << true;
        QTest::newRow("mkv") << "/f/x.mkv" << false;
        QTest::newRow("backup") << "/f/y.mxf.bak" << false;
        QTest::newRow("folder named like media") << "/f/a.mov/b" << false;
    }

    void mediaExtensions()
    {
        QFETCH(QString, path);
        QFETCH(bool, isMedia);
        QCOMPARE(MediaScanner::shared().mediaExtensions.size(), 8);
        QCOMPARE(MediaScanner::shared().isMediaFile(path), isMedia);
    }

    void probeRealFiles_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<OptionalText>("timecode");
        QTest::addColumn<OptionalText>("fileTimecode");
        QTest::addColumn<OptionalInt>("fps");
        QTest::addColumn<OptionalInt>("width");
        QTest::addColumn<double>("duration");
        const OptionalText noTC;
        QTest::newRow("format and stream timecode") << "format-and-stream.mov" << OptionalText("06:00:00:00") << OptionalText("06:00:00:00") << OptionalInt(25) << OptionalInt(64) << 1.0;
        QTest::newRow("timecode on the second stream") << "second-stream.mov" << OptionalText("07:00:00:00") << noTC << OptionalInt(25) << OptionalInt(64) << 1.0;
        QTest::newRow("format timecode, 29.97") << "format-only.mxf" << OptionalText("01:00:00:00") << OptionalText("01:00:00:00") << OptionalInt(30) << OptionalInt(64) << 1.0;
        QTest::newRow("QuickTime timecode track") << "quicktime.mov" << OptionalText("10:00:00:00") << noTC << OptionalInt(25) << OptionalInt(64) << 1.0;
        QTest::newRow("no timecode") << "none.mp4" << noTC << noTC << OptionalInt(30) << OptionalInt(64) << 1.0;
        QTest::newRow("no video") << "audio-only.mp4" << noTC << noTC << OptionalInt() << OptionalInt() << 1.0;
        QTest::newRow("not media") << "text.mov" << noTC << noTC << OptionalInt() << OptionalInt() << 0.0;
    }

    void probeRealFiles()
    {
        QFETCH(QString, name);
        QFETCH(OptionalText, timecode);
        QFETCH(OptionalText, fileTimecode);
        QFETCH(OptionalInt, fps);
        QFETCH(OptionalInt, width);
        QFETCH(double, duration);
        const MediaClip clip = m_scanner.probeClip(file(name));
        QCOMPARE(clip.path, file(name));
        QCOMPARE(clip.filename, name);
        QCOMPARE(clip.id.size(), 36);
        QCOMPARE(clip.id, clip.id.toUpper());
        QCOMPARE(clip.timecode, timecode);
        QCOMPARE(clip.detectedFps, fps);
        QCOMPARE(clip.width, width);
        QCOMPARE(clip.height, width ? OptionalInt(36) : OptionalInt());
        QVERIFY2(qAbs(clip.duration - duration) < 0.1, qPrintable(QString::number(clip.duration)));
        QCOMPARE(clip.recordingDate, QFileInfo(file(name)).lastModified());
        QCOMPARE(m_scanner.getFileTimecode(file(name)), fileTimecode);
    }

    // The first candidate that exists, in the list's order; with none, the fall-back name.
    void findFFprobe()
    {
        QTemporaryDir dir;
        QVERIFY(writeText(dir.filePath("b"), "") && writeText(dir.filePath("c"), ""));
        ToolLocations tools;
        tools.ffprobeCandidates = {dir.filePath("a"), dir.filePath("b"), dir.filePath("c")};
        tools.ffprobeFallback = QStringLiteral("fallback-ffprobe");
        QCOMPARE(MediaScanner(tools).findFFprobe(), dir.filePath("b"));
        tools.ffprobeCandidates = {dir.filePath("a")};
        QCOMPARE(MediaScanner(tools).findFFprobe(), QStringLiteral("fallback-ffprobe"));
    }

    void missingFFprobe()
    {
        const MediaScanner scanner(withoutFFprobe(m_dir.path()));
        const ToolRunStatistics before = toolRunStatistics();
        QCOMPARE(scanner.getFileTimecode(file("format-only.mxf")), OptionalText());
        QCOMPARE(toolRunStatistics().runs, before.runs); // nothing was even tried

        const MediaClip clip = scanner.probeClip(file("format-only.mxf"));
        const ToolRunStatistics after = toolRunStatistics();
        QCOMPARE(after.runs - before.runs, 5); // both timecode queries, duration, resolution, rate
        QCOMPARE(after.launches, before.launches);
        QCOMPARE(clip.filename, QStringLiteral("format-only.mxf"));
        QVERIFY(clip.recordingDate);
        QCOMPARE(clip.timecode, OptionalText());
        QCOMPARE(clip.duration, 0.0);
        QCOMPARE(clip.width, OptionalInt());
        QCOMPARE(clip.height, OptionalInt());
        QCOMPARE(clip.detectedFps, OptionalInt());
    }

    void runToolStreams_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<ToolOutput>("out");
        QTest::addColumn<ToolOutput>("err");
        QTest::addColumn<int>("exitStatus");
        QTest::addColumn<QByteArray>("expectedOut");
        QTest::addColumn<QByteArray>("expectedErr");
        const QString both = QStringLiteral("printf 'to out'; printf 'to err' >&2; exit 3");
        QTest::newRow("both captured") << QStringList{"-c", both} << ToolOutput::Captured << ToolOutput::Captured << 3 << QByteArray("to out") << QByteArray("to err");
        QTest::newRow("output to the null device") << QStringList{"-c", both} << ToolOutput::NullDevice << ToolOutput::Captured << 3 << QByteArray() << QByteArray("to err");
        QTest::newRow("arguments pass unquoted") << QStringList{"-c", "printf '%s|' \"$@\"", "sh", "a b", "'c'", "$HOME", "*"}
                                                 << ToolOutput::Captured << ToolOutput::NullDevice << 0 << QByteArray("a b|'c'|$HOME|*|") << QByteArray();
        QTest::newRow("standard input is empty") << QStringList{"-c", "cat; echo done"} << ToolOutput::Captured << ToolOutput::Captured << 0 << QByteArray("done\n") << QByteArray();
    }

    void runToolStreams()
    {
        QFETCH(QStringList, arguments);
        QFETCH(ToolOutput, out);
        QFETCH(ToolOutput, err);
        QFETCH(int, exitStatus);
        QFETCH(QByteArray, expectedOut);
        QFETCH(QByteArray, expectedErr);
        const ToolRun run = runTool(QStringLiteral("/bin/sh"), arguments, out, err);
        QVERIFY(run.launched);
        QCOMPARE(run.exitStatus, exitStatus);
        QCOMPARE(run.standardOutput, expectedOut);
        QCOMPARE(run.standardError, expectedErr);
    }

    void runToolChattyTool()
    {
        // Far more than a pipe holds, on both streams at once.
        const QStringList arguments = QStringList{"-loglevel", "debug"} + video("25")
                                      + QStringList{"-t", "8", "-vf", "showinfo", "-f", "rawvideo", "-pix_fmt", "rgb24", "-"};
        const ToolRun captured = runTool(ffmpeg(), arguments, ToolOutput::Captured, ToolOutput::Discarded);
        QCOMPARE(captured.exitStatus, 0);
        QCOMPARE(captured.standardOutput.size(), 64 * 36 * 3 * 200);
        QVERIFY(captured.standardError.isEmpty());
        const ToolRun discarded = runTool(ffmpeg(), arguments, ToolOutput::Discarded, ToolOutput::Captured);
        QCOMPARE(discarded.exitStatus, 0);
        QVERIFY(discarded.standardOutput.isEmpty());
        QVERIFY(discarded.standardError.size() > 65536);
    }

    void runToolNotLaunched()
    {
        const ToolRunStatistics before = toolRunStatistics();
        const ToolRun run = runTool(file("no-such-tool"), {"-version"}, ToolOutput::Captured, ToolOutput::Captured);
        QVERIFY(!run.launched);
        QCOMPARE(run.exitStatus, -1);
        QVERIFY(run.standardOutput.isEmpty());
        QCOMPARE(toolRunStatistics().runs, before.runs + 1);
        QCOMPARE(toolRunStatistics().launches, before.launches);
        // Present but not executable.
        QVERIFY(!runTool(file("text.mov"), {}, ToolOutput::Captured, ToolOutput::Captured).launched);
    }

};

QTEST_GUILESS_MAIN(MediaScannerTest)
#include "MediaScannerTest.moc"
