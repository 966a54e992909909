#include "../cli/CliRunner.h"
#include "MediaFixtures.h"
#include "support/TestData.h"

#include "model/RecordJson.h"

#include <QJsonDocument>
#include <QTemporaryDir>

using namespace MediaFixtures;

class MediaCliTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    // The tool's probe cache goes to the test's folder, never the user's.
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();

    QString file(const QString &name) const { return m_dir.filePath(name); }

    // "name: facts" of each clip a command printed, in its order.
    static QStringList printedClips(const QByteArray &out)
    {
        QStringList clips;
        for (const MediaClip &clip : RecordJson::clipsFromJson(QJsonDocument::fromJson(out).array()).value_or(QList<MediaClip>()))
            clips.append(clip.filename + ": " + facts(clip));
        return clips;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QFile::exists(qEnvironmentVariable("VORLIX_CLI")));
        m_environment.insert("XDG_CACHE_HOME", file("cache"));
        QVERIFY(make(file("footage/A.mov"), video("25") + QStringList{"-t", "1", "-timecode", "09:59:00:00"}));
        QVERIFY(make(file("footage/sub/B.MP4"), video("30000/1001") + QStringList{"-t", "1"}));
        QVERIFY(writeText(file("footage/.hidden/C.mov"), "hidden"));
    }

    void probe()
    {
        const CliResult result = runCli({"probe", file("footage/sub/B.MP4"), file("footage/A.mov")}, m_environment);
        QCOMPARE(result.exitCode, 0);
        QVERIFY(result.err.isEmpty());
        QCOMPARE(printedClips(result.out), (QStringList{"B.MP4: fps 30, 64x36, 1 s", "A.mov: tc 09:59:00:00, fps 25, 64x36, 1 s"}));
    }

    // Progress goes to standard error and names the files in the order they are printed.
    void scan()
    {
        const CliResult result = runCli({"scan", "--no-cache", file("footage")}, m_environment);
        QCOMPARE(result.exitCode, 0);
        QStringList clips = printedClips(result.out);
        QCOMPARE(QString::fromUtf8(result.err).split(u'\n', Qt::SkipEmptyParts),
                 (QStringList{"Found 2 media files...", "Reading 1/2: " + clips.value(0).section(u':', 0, 0),
                              "Reading 2/2: " + clips.value(1).section(u':', 0, 0), "Scan complete: 2 clips, 1 with timecode"}));
        clips.sort();
        QCOMPARE(clips, (QStringList{"A.mov: tc 09:59:00:00, fps 25, 64x36, 1 s", "B.MP4: fps 30, 64x36, 1 s"}));

        // The cache in the user's cache folder changes nothing the tool prints, with any number of jobs.
        const QString cache = file("cache/vorlix-sync/probe-cache.json");
        QVERIFY(!QFile::exists(cache));
        for (const char *jobs : {"1", "3"}) {
            const CliResult cached = runCli({"scan", "--jobs", jobs, file("footage")}, m_environment);
            QCOMPARE(cached.err, result.err);
            QCOMPARE(printedClips(cached.out), printedClips(result.out));
            QVERIFY(QFile::exists(cache));
        }
    }

    void failures_data() { addCaseRows(QStringLiteral("media/cli-failures.txt")); }

    void failures()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        const CliResult result = runCli(input.split(u' ').replaceInStrings(QStringLiteral("{dir}"), m_dir.path()), m_environment);
        QCOMPARE(result.exitCode, 1);
        QVERIFY(result.out.isEmpty());
        QCOMPARE(QString::fromUtf8(result.err), QString(expected).replace(QStringLiteral("{dir}"), m_dir.path()) + u'\n');
    }
};

QTEST_GUILESS_MAIN(MediaCliTest)
#include "MediaCliTest.moc"
