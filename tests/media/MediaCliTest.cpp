#include "../cli/CliRunner.h"
#include "MediaFixtures.h"

#include "model/RecordJson.h"

#include <QJsonDocument>
#include <QTemporaryDir>

using namespace MediaFixtures;

class MediaCliTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    QString file(const QString &name) const { return m_dir.filePath(name); }

    static QList<MediaClip> clipsFrom(const QByteArray &out)
    {
        return RecordJson::clipsFromJson(QJsonDocument::fromJson(out).array()).value_or(QList<MediaClip>());
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QFile::exists(qEnvironmentVariable("VORLIX_CLI")));
        QVERIFY(make(file("footage/A.mov"), video("25") + QStringList{"-t", "1", "-timecode", "09:59:00:00"}));
        QVERIFY(make(file("footage/sub/B.MP4"), video("30000/1001") + QStringList{"-t", "1"}));
        QVERIFY(writeText(file("footage/.hidden/C.mov"), "hidden"));
    }

    void probe()
    {
        const CliResult result = runCli({"probe", file("footage/A.mov"), file("footage/sub/B.MP4")});
        QCOMPARE(result.exitCode, 0);
        QVERIFY(result.err.isEmpty());
        const QList<MediaClip> clips = clipsFrom(result.out);
        QCOMPARE(clips.size(), 2);
        QCOMPARE(clips.at(0).path, file("footage/A.mov"));
        QCOMPARE(clips.at(0).timecode, std::optional<QString>("09:59:00:00"));
        QCOMPARE(clips.at(0).detectedFps, std::optional<int>(25));
        QCOMPARE(clips.at(1).filename, QStringLiteral("B.MP4"));
        QCOMPARE(clips.at(1).detectedFps, std::optional<int>(30));
        QVERIFY(!clips.at(1).timecode);
    }

    void scan()
    {
        const CliResult result = runCli({"scan", file("footage")});
        QCOMPARE(result.exitCode, 0);
        const QList<MediaClip> clips = clipsFrom(result.out);
        QCOMPARE(clips.size(), 2);
        QStringList expected{"Found 2 media files..."};
        for (int i = 0; i < clips.size(); ++i)
            expected.append(QStringLiteral("Reading %1/2: %2").arg(i + 1).arg(clips.at(i).filename));
        expected.append("Scan complete: 2 clips, 1 with timecode");
        QCOMPARE(QString::fromUtf8(result.err).split('\n', Qt::SkipEmptyParts), expected);
    }

    void failures_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("message");
        QTest::newRow("probe a missing file") << QStringList{"probe", file("footage/A.mov"), file("nope.mov")} << 1 << file("nope.mov") + ": no such file";
        QTest::newRow("probe a folder") << QStringList{"probe", file("footage")} << 1 << file("footage") + ": not a file";
        QTest::newRow("scan a missing folder") << QStringList{"scan", file("nowhere")} << 1 << file("nowhere") + ": no such folder";
        QTest::newRow("scan a file") << QStringList{"scan", file("footage/A.mov")} << 1 << file("footage/A.mov") + ": not a folder";
    }

    void failures()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, message);
        const CliResult result = runCli(arguments);
        QCOMPARE(result.exitCode, exitCode);
        QVERIFY(result.out.isEmpty());
        QCOMPARE(QString::fromUtf8(result.err).section('\n', 0, 0), message);
        if (exitCode == 1)
            QCOMPARE(result.err.count('\n'), 1);
    }
};

QTEST_GUILESS_MAIN(MediaCliTest)
#include "MediaCliTest.moc"
