#include "CliRunner.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

class CliTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Help goes to stdout with status 0; bad usage names the problem, then gives the usage, on
    // stderr with status 2.
    void usage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("text");
        QTest::newRow("tool's help") << QStringList{"--help"} << 0 << "match --session FILE --clips FILE";
        QTest::newRow("command's help") << QStringList{"match", "--help"} << 0 << "--clips FILE";
        QTest::newRow("help after global option") << QStringList{"--service-url", "http://127.0.0.1:1", "-h"} << 0 << "Commands:";
        QTest::newRow("nothing") << QStringList() << 2 << "No command given.";
        QTest::newRow("unknown command") << QStringList{"frobnicate"} << 2 << "Unknown command \"frobnicate\".";
        QTest::newRow("unknown option") << QStringList{"match", "--colour", "x"} << 2 << "Unknown option 'colour'.";
        QTest::newRow("missing option") << QStringList{"match", "--session", "a.json"} << 2 << "Missing --clips.";
        QTest::newRow("stray argument") << QStringList{"match", "--session", "a", "--clips", "b", "c"} << 2 << "Unexpected argument \"c\".";
        QTest::newRow("service url without value") << QStringList{"--service-url"} << 2 << "--service-url needs a URL.";
    }

    void usage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QString, text);
        const CliResult result = runCli(arguments);
        const QByteArray &shown = status == 0 ? result.out : result.err;
        QVERIFY2((status == 0 ? shown.contains(text.toUtf8()) : shown.startsWith(text.toUtf8())) && shown.contains("Usage: vorlix-sync-cli"),
                 (result.out + result.err).constData());
        QVERIFY((status == 0 ? result.err : result.out).isEmpty());
        QCOMPARE(result.exitCode, status);
    }

    // The session with the clips its markers touch on stdout, or one line on stderr naming the
    // session file and the problem.
    void match_data()
    {
        QTest::addColumn<QString>("session");
        QTest::addColumn<QString>("expected"); // the matched clip ids, or the problem
        QTest::newRow("matched by timecode") << "session.json" << "in";
        QTest::newRow("invalid json") << "invalid.json" << "not valid JSON";
        QTest::newRow("missing key") << "missing-markers.json" << "not a session: \"markers\" is missing";
        QTest::newRow("array instead of object") << "array.json" << "not a session: expected an object";
        QTest::newRow("missing file") << "no-such-file.json" << "";
    }

    void match()
    {
        QFETCH(QString, session);
        QFETCH(QString, expected);
        const QString path = QStringLiteral(VORLIX_TEST_DATA "/cli/") + session;
        const CliResult result = runCli({"match", "--session", path, "--clips", QStringLiteral(VORLIX_TEST_DATA "/cli/clips.json")});
        if (result.exitCode == 0) {
            QStringList matched;
            for (const QJsonValue &clip : QJsonDocument::fromJson(result.out)["matchedClips"].toArray())
                matched.append(clip["id"].toString());
            QCOMPARE(matched.join(u','), expected);
            return;
        }
        QVERIFY2(result.err.startsWith((path + ": ").toUtf8()) && result.err.contains(expected.toUtf8()), result.err.constData());
        QCOMPARE(result.err.count('\n'), 1);
        QCOMPARE(result.exitCode, 1);
        QVERIFY(result.out.isEmpty());
    }
};

QTEST_GUILESS_MAIN(CliTest)
#include "CliTest.moc"
