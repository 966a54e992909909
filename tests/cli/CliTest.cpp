#include "CliRunner.h"

#include "model/RecordJson.h"

#include <QJsonDocument>
#include <QTemporaryDir>

class CliTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    QString write(const QString &name, const QByteArray &contents) { return writeTestFile(QDir(m_dir.path()), name, contents); }

    static QByteArray sessionJson(const QStringList &timecodes)
    {
        ShootSession s;
        s.id = s.shareToken = QStringLiteral("tok");
        s.title = QStringLiteral("Shoot session");
        s.createdAt = QDateTime::currentDateTimeUtc();
        for (const QString &tc : timecodes) {
            ShootMarker m;
            m.id = tc;
            m.markerType = QStringLiteral("log");
            m.timecode = tc;
            s.markers.append(m);
        }
        return QJsonDocument(RecordJson::toJson(s)).toJson();
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QFile::exists(qEnvironmentVariable("VORLIX_CLI")));
    }

    void help_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("mentions");
        QTest::newRow("tool") << QStringList{"--help"} << "match --session FILE --clips FILE";
        QTest::newRow("command") << QStringList{"match", "--help"} << "--clips FILE";
        QTest::newRow("after global option") << QStringList{"--service-url", "http://127.0.0.1:1", "-h"} << "Commands:";
    }

    void help()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, mentions);
        const CliResult result = runCli(arguments);
        QCOMPARE(result.exitCode, 0);
        QVERIFY2(result.out.contains(mentions.toUtf8()), result.out.constData());
        QVERIFY(result.err.isEmpty());
    }

    void badUsage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("problem");
        QTest::newRow("nothing") << QStringList() << "No command given.";
        QTest::newRow("unknown command") << QStringList{"frobnicate"} << "Unknown command \"frobnicate\".";
        QTest::newRow("unknown option") << QStringList{"match", "--colour", "x"} << "Unknown option 'colour'.";
        QTest::newRow("missing option") << QStringList{"match", "--session", "a.json"} << "Missing --clips.";
        QTest::newRow("stray argument") << QStringList{"match", "--session", "a", "--clips", "b", "c"} << "Unexpected argument \"c\".";
        QTest::newRow("service url without value") << QStringList{"--service-url"} << "--service-url needs a URL.";
    }

    void badUsage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, problem);
        const CliResult result = runCli(arguments);
        QCOMPARE(result.exitCode, 2);
        QVERIFY(result.out.isEmpty());
        QVERIFY2(result.err.startsWith(problem.toUtf8()), result.err.constData());
        QVERIFY(result.err.contains("Usage: vorlix-sync-cli"));
    }

    void match()
    {
        MediaClip inside, outside;
        inside.id = QStringLiteral("in");
        inside.timecode = QStringLiteral("10:00:10:00");
        inside.duration = 5;
        outside.id = QStringLiteral("out");
        outside.timecode = QStringLiteral("11:00:00:00");
        outside.duration = 5;
        const QString clips = write("clips.json", QJsonDocument(RecordJson::toJsonArray(QList<MediaClip>{outside, inside})).toJson());
        const QString session = write("session.json", sessionJson({"10:00:00:00", "10:00:20:00"}));

        const CliResult result = runCli({"match", "--session", session, "--clips", clips});
        QCOMPARE(result.exitCode, 0);
        const auto matched = RecordJson::sessionFromJson(QJsonDocument::fromJson(result.out).object());
        QVERIFY(matched);
        QCOMPARE(matched->matchedClips.size(), 1);
        QCOMPARE(matched->matchedClips.first().id, QStringLiteral("in"));
    }

    void badInputNamesTheFile_data()
    {
        QTest::addColumn<QByteArray>("sessionContents");
        QTest::addColumn<QString>("problem");
        QTest::newRow("invalid json") << QByteArray("{\"id\": ") << "not valid JSON";
        QTest::newRow("missing key") << QByteArray(R"({"id":"s","shareToken":"s","title":"t","createdAt":0})") << "not a session: \"markers\" is missing";
        QTest::newRow("array instead of object") << QByteArray("[]") << "not a session: expected an object";
        QTest::newRow("missing file") << QByteArray() << "";
    }

    void badInputNamesTheFile()
    {
        QFETCH(QByteArray, sessionContents);
        QFETCH(QString, problem);
        const QString session = sessionContents.isNull() ? m_dir.filePath("nope.json") : write("bad-session.json", sessionContents);
        const QString clips = write("no-clips.json", "[]");
        const CliResult result = runCli({"match", "--session", session, "--clips", clips});
        QCOMPARE(result.exitCode, 1);
        QVERIFY(result.out.isEmpty());
        QVERIFY2(result.err.startsWith((session + ": ").toUtf8()), result.err.constData());
        QVERIFY2(result.err.contains(problem.toUtf8()), result.err.constData());
        QCOMPARE(result.err.count('\n'), 1);
    }
};

QTEST_GUILESS_MAIN(CliTest)
#include "CliTest.moc"
