#include "MediaFixtures.h"
#include "support/TestData.h"

#include "media/AudioTrackSelector.h"

#include <QTemporaryDir>

using namespace MediaFixtures;

class AudioTrackSelectorTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_media;
    QTemporaryDir m_scratch;
    ToolLocations m_tools = ToolLocations::platformDefault();

    QString file(const QString &name) const { return m_media.filePath(name); }
    QStringList leftOverSamples() const { return QDir(m_scratch.path()).entryList({"vorlix-levelcheck-*"}, QDir::Files); }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_media.isValid() && m_scratch.isValid());
        m_tools.temporaryDirectory = m_scratch.path();
        // A tone at volume 1.0 measures about -21 dB, 0.25 about -33, 0.1 about -41; 0 is
        // digital silence (-91 dB).
        QVERIFY(makeAudio(file("silent-then-quiet.mov"), {0, 0.25}));
        QVERIFY(makeAudio(file("tie.mov"), {0.25, 1, 1}));
        QVERIFY(makeAudio(file("ten.mov"), {0.1, 0.25, 0.1, 0.1, 0.1, 0.5, 0.1, 0.1, 1, 1}));
        QVERIFY(make(file("stereo-after-video.mov"), video("25") + tone(1) + QStringList{"-t", "1", "-ac", "2"}));
    }

    // Each stream is cut to a sample and measured (two ffmpeg runs) after one ffprobe listing.
    void loudestTrack_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("expected");
        QTest::addColumn<int>("toolRuns");
        QTest::newRow("one stream") << "stereo-after-video.mov" << 0 << 3;
        QTest::newRow("silence loses to a quiet tone") << "silent-then-quiet.mov" << 1 << 5;
        QTest::newRow("a tie keeps the earlier stream") << "tie.mov" << 1 << 7;
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
        QCOMPARE(leftOverSamples(), QStringList());
    }

    void loudestTrackWithoutTools()
    {
        const qint64 launchesBefore = toolRunStatistics().launches;
        // Without ffmpeg every measurement fails: the first stream it is.
        QCOMPARE(findLoudestAudioTrack(file("tie.mov"), file("no-such-ffmpeg"), m_tools), 0);
        QCOMPARE(toolRunStatistics().launches - launchesBefore, 1);
        QVERIFY(leftOverSamples().isEmpty());
        // Without ffprobe the last known location is still tried, and fails: nothing to measure.
        const qint64 runsBefore = toolRunStatistics().runs;
        QCOMPARE(findLoudestAudioTrack(file("tie.mov"), ffmpeg(), withoutFFprobe(m_scratch.path())), 0);
        QCOMPARE(toolRunStatistics().runs - runsBefore, 1);
        QCOMPARE(toolRunStatistics().launches - launchesBefore, 1);
    }

    void meanVolume_data() { addCaseRows(QStringLiteral("media/mean-volume.txt")); }

    void meanVolume()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        QCOMPARE(caseText(meanVolumeFromLog(QByteArray::fromPercentEncoding(input.toUtf8()))), expected);
    }

    // The audio streams are numbered from 1, so the video stream before them does not count.
    void trackOffset()
    {
        const qint64 runsBefore = toolRunStatistics().runs;
        QCOMPARE(detectAudioTrackOffset(std::nullopt, m_tools), 1);
        QCOMPARE(detectAudioTrackOffset(file("stereo-after-video.mov"), withoutFFprobe(m_scratch.path())), 1);
        QCOMPARE(toolRunStatistics().runs, runsBefore);
        QCOMPARE(detectAudioTrackOffset(file("stereo-after-video.mov"), m_tools), 1);
        QCOMPARE(toolRunStatistics().runs - runsBefore, 1);
    }
};

QTEST_GUILESS_MAIN(AudioTrackSelectorTest)
#include "AudioTrackSelectorTest.moc"
