#include "CliRunner.h"
#include "support/TestData.h"

// The tool's usage and its reading of input files, case by case from tests/data/cli/cases.json.
class CliTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void usage_data() { addJsonCases(QStringLiteral("cli/cases.json"), QStringLiteral("usage")); }

    // Help goes to stdout with status 0; bad usage names the problem, then gives the usage, on
    // stderr with status 2.
    void usage()
    {
        QFETCH(QJsonObject, data);
        const CliResult result = runCli(data["arguments"].toVariant().toStringList());
        const int status = data["status"].toInt();
        const QByteArray text = data["text"].toString().toUtf8();
        const QByteArray &shown = status == 0 ? result.out : result.err;
        QVERIFY2((status == 0 ? shown.contains(text) : shown.startsWith(text)) && shown.contains("Usage: vorlix-sync-cli"),
                 (result.out + result.err).constData());
        QVERIFY((status == 0 ? result.err : result.out).isEmpty());
        QCOMPARE(result.exitCode, status);
    }

    void match_data() { addJsonCases(QStringLiteral("cli/cases.json"), QStringLiteral("match")); }

    // The session with the clips its markers touch on stdout, or one line on stderr naming the
    // session file and the problem.
    void match()
    {
        QFETCH(QJsonObject, data);
        const QString path = testDataPath(QStringLiteral("cli/") + data["session"].toString());
        const QString expected = data["expected"].toString();
        const CliResult result = runCli({"match", "--session", path, "--clips", testDataPath(QStringLiteral("cli/clips.json"))});
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
