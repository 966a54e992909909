#include "cli/CliRunner.h"
#include "cli/StandinProcess.h"
#include "model/RecordJson.h"
#include "support/AwaitTask.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

// The service commands of vorlix-sync-cli, run as a script would, against the stand-in program
// with its built-in demo data. The tool keeps its login in this program's own keyring item
// (scripts/test.sh gives the suite a throw-away keyring).
class ServiceCliTest : public QObject
{
    Q_OBJECT

    StandinProcess m_standin;

    CliResult run(const QStringList &arguments, const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
    {
        return runCli(m_standin.withService(arguments), environment);
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_standin.start(QStringLiteral("246810")), "the stand-in did not start");
        awaitTask(cliCredentials().remove());
    }

    void cleanupTestCase() { awaitTask(cliCredentials().remove()); }

    void wholeRound()
    {
        CliResult result = run({"login", "--email", "editor@example.org"});
        QCOMPARE(result.exitCode, 0);
        QVERIFY(result.out.isEmpty());
        QCOMPARE(m_standin.readLine(), QByteArray("Login code for editor@example.org: 246810"));

        result = run({"login", "--email", "editor@example.org", "--code", "123456"});
        QCOMPARE(result.err, QByteArray("Invalid or expired code\n"));
        QCOMPARE(result.exitCode, 1);

        result = run({"login", "--email", "editor@example.org", "--code", "246810"});
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(QJsonDocument::fromJson(result.out).object(), (QJsonObject{{"name", "Demo Editor"}, {"email", "editor@example.org"}}));
        QVERIFY2(awaitTask(cliCredentials().read()).value_or(QString()).startsWith("sid="), "the login is kept in the item the environment names");

        const auto sessions = RecordJson::sessionsFromJson(QJsonDocument::fromJson(run({"sessions"}).out).array());
        QVERIFY2(sessions && sessions->size() == 4 && sessions->at(0).createdAt > sessions->at(1).createdAt,
                 "sessions did not print the four demo sessions, newest first");

        // The environment names the service when no option does; the option wins over it.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("VORLIX_SERVICE_URL"), m_standin.url() + QStringLiteral("/"));
        QCOMPARE(runCli({"transcript", "rooftop-broll"}, environment).out, QByteArray("[\n]\n"));
        environment.insert(QStringLiteral("VORLIX_SERVICE_URL"), QStringLiteral("http://127.0.0.1:1"));
        const auto segments = RecordJson::segmentsFromJson(QJsonDocument::fromJson(run({"transcript", "harbour-day2"}, environment).out).array());
        QVERIFY2(segments && !segments->isEmpty(), "the demo session's transcript was not printed");

        // Without a session bus there is no secret store: the stored login reads as absent.
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent/bus"));
        environment.remove(QStringLiteral("DISPLAY")); // or D-Bus would try to start a bus for the display
        QCOMPARE(run({"sessions"}, environment).err, QByteArray("Server returned status 401\n"));

        QCOMPARE(run({"logout"}).exitCode, 0);
        QCOMPARE(awaitTask(cliCredentials().read()), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(ServiceCliTest)
#include "ServiceCliTest.moc"
