#include "CliRunner.h"
#include "support/TestData.h"

#include <QTemporaryDir>
#include <sys/resource.h>
#include <unistd.h>

// The tool's usage, its reading of input files and its writing of output, case by case from
// tests/data/cli/cases.json.
class CliTest : public QObject
{
    Q_OBJECT

    static bool writeFile(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }

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

    void output_data() { addJsonCases(QStringLiteral("cli/cases.json"), QStringLiteral("output")); }

    // A write that fails ends the run with status 1 and one line naming the output and the
    // system's reason; a file that cannot be written whole keeps its old contents, and a device
    // stays a device.
    void output()
    {
        QFETCH(QJsonObject, data);
        QTemporaryDir work;
        const QString out = work.filePath(QStringLiteral("out"));
        QVERIFY(work.isValid() && writeFile(out, "old"));
        const auto paths = [&](QString text) {
            return text.replace(QLatin1String("OUT"), out).replace(QLatin1String("DATA"), testDataPath(QStringLiteral("cli"))).replace(QLatin1String("WORK"), work.path());
        };
        QStringList arguments;
        for (const QVariant &argument : data["arguments"].toVariant().toList())
            arguments.append(paths(argument.toString()));
        int pipeEnds[2];
        QVERIFY(::pipe(pipeEnds) == 0);
        ::close(pipeEnds[0]); // nobody will ever read this pipe
        const QString stdoutTarget = data["stdout"].toString();
        const rlim_t fileSizeLimit = data["fileSizeLimit"].toInteger(RLIM_INFINITY);
        const CliResult result = runCli(arguments, QProcessEnvironment::systemEnvironment(), [&](QProcess &process) {
            process.setWorkingDirectory(work.path());
            if (stdoutTarget.startsWith(u'/'))
                process.setStandardOutputFile(stdoutTarget);
            process.setChildProcessModifier([&] {
                const rlimit limit{fileSizeLimit, fileSizeLimit};
                ::setrlimit(RLIMIT_FSIZE, &limit);
                if (stdoutTarget == u"closed pipe")
                    ::dup2(pipeEnds[1], STDOUT_FILENO);
            });
        });
        ::close(pipeEnds[1]);
        QCOMPARE(QString::fromUtf8(result.err), paths(data["err"].toString()));
        QCOMPARE(result.exitCode, data["status"].toInt());
        QFile written(out);
        QVERIFY(written.open(QIODevice::ReadOnly));
        const QByteArray contents = written.readAll();
        if (data.contains(QLatin1StringView("out")))
            QCOMPARE(contents, data["out"].toString().toUtf8());
        QVERIFY2(contents.contains(paths(data["contains"].toString()).toUtf8()), contents.constData());
        QVERIFY2(!QFileInfo(QStringLiteral("/dev/full")).isFile(), "/dev/full was replaced by a file");
    }
};

QTEST_GUILESS_MAIN(CliTest)
#include "CliTest.moc"
