#include "MediaFixtures.h"

#include "media/AudioTrackSelector.h"
#include "media/FFprobeOutput.h"

#include <QTemporaryDir>
#include <QTest>

using namespace MediaFixtures;


class AudioTrackSelectorTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_media;
    QTemporaryDir m_scratch;
    ToolLocations m_tools = ToolLocations::platformDefault();

    QString file(const QString &name) const { return m_media.filePath(name); }

    QStringList leftOverSamples() const
    {
        return QDir(m_scratch.path()).entryList({"vorlix-levelcheck-*"}, QDir::Files);
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_media.isValid() && m_scratch.isValid());
        m_tools.temporaryDirectory = m_scratch.path();
        // A tone at volume 1.0 measures about -21 dB, 0.5 about -27, 0.25 about -33, 0.1 about
        // -41; 0 is digital silence (-91 dB).
        QVERIFY(makeAudio(file("one.mov"), {0.5}));
        QVERIFY(makeAudio(file("silent-then-quiet.mov"), {0, 0.25}));
        QVERIFY(makeAudio(file("tie.mov"), {0.25, 1, 1}));
        QVERIFY(makeAudio(file("silent.mov"), {0, 0}));
        QVERIFY(makeAudio(file("ten.mov"), {0.1, 0.25, 0.1, 0.1, 0.1, 0.5, 0.1, 0.1, 1, 1}));
        QVERIFY(make(file("no-audio.mp4"), video("25") + QStringList{"-t", "1"}));
        QVERIFY(make(file("stereo.mov"), video("25") + tone(1) + QStringList{"-t", "1", "-ac", "2"}));

        // ffmpeg never writes an audio stream without channels, so one is made by hand: the
        // first stream's sample description says 0 channels and its channel layout atom is
        // renamed so nothing else supplies a count.
        QVERIFY(make(file("two-stereo.mov"), tone(1) + tone(1)
                     + QStringList{"-map", "0:a", "-map", "1:a", "-t", "1", "-c:a", "pcm_s16le", "-ac", "2"}));
        QFile source(file("two-stereo.mov"));
        QVERIFY(source.open(QIODevice::ReadOnly));
        QByteArray bytes = source.readAll();
        const qsizetype description = bytes.indexOf("sowt") - 4;
        QVERIFY(description > 0);
        bytes[description + 24] = 0;
        bytes[description + 25] = 0;
        const qsizetype layout = bytes.indexOf("chan", description);
        QVERIFY(layout > 0);
        bytes.replace(layout, 4, "xxxx");
        QVERIFY(writeText(file("no-channels-first.mov"), bytes));
    }

    void loudestTrack_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("expected");
        QTest::addColumn<int>("toolRuns");
        QTest::newRow("one stream") << "one.mov" << 0 << 3;
        QTest::newRow("no audio") << "no-audio.mp4" << 0 << 1;
        QTest::newRow("silence loses to a quiet tone") << "silent-then-quiet.mov" << 1 << 5;
        QTest::newRow("a tie keeps the earlier stream") << "tie.mov" << 1 << 7;
        QTest::newRow("silence still beats nothing") << "silent.mov" << 0 << 5;
        QTest::newRow("only the first eight count") << "ten.mov" << 5 << 17;
    }

    void loudestTrack()
    {
        QFETCH(QString, name);
        QFETCH(int, expected);
        QFETCH(int, toolRuns);
        // A stale sample from an earlier run is overwritten, and removed like the others.
        QVERIFY(writeText(m_tools.temporaryFile("vorlix-levelcheck-0.wav"), "stale"));
        const qint64 runsBefore = toolRunStatistics().runs;
        QCOMPARE(findLoudestAudioTrack(file(name), ffmpeg(), m_tools), expected);
        QCOMPARE(toolRunStatistics().runs - runsBefore, toolRuns);
        const QStringList leftOver = leftOverSamples();
        QCOMPARE(leftOver, toolRuns > 1 ? QStringList() : QStringList{"vorlix-levelcheck-0.wav"});
        QFile::remove(m_tools.temporaryFile("vorlix-levelcheck-0.wav"));
    }

    void loudestTrackWithoutTools()
    {
        const qint64 launchesBefore = toolRunStatistics().launches;
        // Without ffmpeg every measurement fails: the first stream it is.
        QCOMPARE(findLoudestAudioTrack(file("tie.mov"), file("no-such-ffmpeg"), m_tools), 0);
        QCOMPARE(toolRunStatistics().launches - launchesBefore, 1);
        QVERIFY(leftOverSamples().isEmpty());
        // Without ffprobe the last known location is still tried, and fails.
        const qint64 runsBefore = toolRunStatistics().runs;
        QCOMPARE(findLoudestAudioTrack(file("tie.mov"), ffmpeg(), withoutFFprobe(m_scratch.path())), 0);
        QCOMPARE(toolRunStatistics().runs - runsBefore, 1);
        QCOMPARE(toolRunStatistics().launches - launchesBefore, 1);
    }

    void meanVolume_data()
    {
        QTest::addColumn<QByteArray>("log");
        QTest::addColumn<OptionalDouble>("expected");
        const QByteArray prefix = "[Parsed_volumedetect_0 @ 0x55] n_samples: 160000\n[Parsed_volumedetect_0 @ 0x55] ";
        QTest::newRow("ffmpeg's line") << prefix + "mean_volume: -23.4 dB\n[Parsed_volumedetect_0 @ 0x55] max_volume: -5.0 dB\n" << OptionalDouble(-23.4);
        QTest::newRow("at the very end") << QByteArray("mean_volume: -7") << OptionalDouble(-7.0);
        QTest::newRow("first of two") << QByteArray("mean_volume: -7 dB mean_volume: -3 dB") << OptionalDouble(-7.0);
        QTest::newRow("line break before the space") << QByteArray("mean_volume: -7\nmax_volume: -1 dB") << OptionalDouble();
        QTest::newRow("no line") << QByteArray("Output file is empty, nothing was encoded") << OptionalDouble();
        QTest::newRow("not UTF-8") << QByteArray("\xff\xfe mean_volume: -7 dB") << OptionalDouble();
    }

    void meanVolume()
    {
        QFETCH(QByteArray, log);
        QFETCH(OptionalDouble, expected);
        QCOMPARE(meanVolumeFromLog(log), expected);
    }

    void trackOffset_data()
    {
        QTest::addColumn<OptionalText>("path");
        QTest::addColumn<bool>("withFFprobe");
        QTest::addColumn<int>("toolRuns");
        QTest::newRow("no clip") << OptionalText() << true << 0;
        QTest::newRow("no ffprobe") << OptionalText(file("stereo.mov")) << false << 0;
        QTest::newRow("stereo") << OptionalText(file("stereo.mov")) << true << 1;
        // ffprobe refuses a stream without a channel count and prints no JSON at all.
        QTest::newRow("first stream without channels") << OptionalText(file("no-channels-first.mov")) << true << 1;
    }

    void trackOffset()
    {
        QFETCH(OptionalText, path);
        QFETCH(bool, withFFprobe);
        QFETCH(int, toolRuns);
        const qint64 runsBefore = toolRunStatistics().runs;
        QCOMPARE(detectAudioTrackOffset(path, withFFprobe ? m_tools : withoutFFprobe(m_scratch.path())), 1);
        QCOMPARE(toolRunStatistics().runs - runsBefore, toolRuns);
        if (withFFprobe)
            QCOMPARE(detectAudioTrackOffset(path), 1);
    }

    void firstStreamWithChannels_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<OptionalInt>("expected");
        QTest::newRow("second has channels") << QByteArray(R"({"streams":[{"channels":0},{"channels":2}]})") << OptionalInt(2);
        QTest::newRow("text is not a count") << QByteArray(R"({"streams":[{"channels":"2"},{},{"channels":6}]})") << OptionalInt(3);
        QTest::newRow("negative") << QByteArray(R"({"streams":[{"channels":-2}]})") << OptionalInt();
        QTest::newRow("no streams") << QByteArray(R"({"streams":[]})") << OptionalInt();
        QTest::newRow("not json") << QByteArray("channels=2") << OptionalInt();
    }

    void firstStreamWithChannels()
    {
        QFETCH(QByteArray, json);
        QFETCH(OptionalInt, expected);
        QCOMPARE(FFprobeOutput::firstStreamWithChannels(json), expected);
    }
};

QTEST_GUILESS_MAIN(AudioTrackSelectorTest)
#include "AudioTrackSelectorTest.moc"
