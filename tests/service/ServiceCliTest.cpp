#include "cli/CliRunner.h"
#include "cli/StandinProcess.h"
#include "model/RecordJson.h"

#include <QJsonArray>
#include <QJsonDocument>

// The service commands of vorlix-sync-cli, run as a script would, against the stand-in program
// running as a child process with its built-in demo data. The login goes to the real keyring
// item of the application (scripts/test.sh gives the suite a throw-away keyring).
class ServiceCliTest : public QObject
{
    Q_OBJECT

    StandinProcess m_standin;

    QStringList withService(const QStringList &arguments) const { return m_standin.withService(arguments); }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_standin.start(QStringLiteral("246810")));
        QVERIFY(runCli(withService({"logout"})).exitCode == 0);
    }

    void cleanupTestCase()
    {
        runCli(withService({"logout"}));
    }

    void wholeRound()
    {
        CliResult result = runCli(withService({"login", "--email", "editor@example.org"}));
        QCOMPARE(result.exitCode, 0);
        QVERIFY(result.out.isEmpty());
        QVERIFY(m_standin.process().waitForReadyRead(5000));
        QCOMPARE(m_standin.process().readLine().trimmed(), QByteArray("Login code for editor@example.org: 246810"));

        result = runCli(withService({"login", "--email", "editor@example.org", "--code", "123456"}));
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.err, QByteArray("Invalid or expired code\n"));

        result = runCli(withService({"login", "--email", "editor@example.org", "--code", "246810"}));
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(QJsonDocument::fromJson(result.out).object(),
                 (QJsonObject{{"name", "Demo Editor"}, {"email", "editor@example.org"}}));
        QVERIFY2(!result.out.contains("sid"), "the credential is never printed");

        result = runCli(withService({"sessions"}));
        QCOMPARE(result.exitCode, 0);
        QString error;
        const auto sessions = RecordJson::sessionsFromJson(QJsonDocument::fromJson(result.out).array(), &error);
        QVERIFY2(sessions, qPrintable(error));
        QCOMPARE(sessions->size(), 4);
        QSet<QString> types;
        for (const ShootSession &session : *sessions) {
            for (const ShootMarker &marker : session.markers)
                types.insert(marker.markerType);
        }
        QCOMPARE(types.size(), 15); // the 14 known types and one the exporters do not know
        QCOMPARE(sessions->at(2).title, QStringLiteral("Shoot session"));
        QVERIFY(sessions->at(0).createdAt > sessions->at(1).createdAt);

        result = runCli(withService({"transcript", "harbour-day2"}));
        QCOMPARE(result.exitCode, 0);
        const auto segments = RecordJson::segmentsFromJson(QJsonDocument::fromJson(result.out).array(), &error);
        QVERIFY2(segments, qPrintable(error));
        QSet<QString> speakers;
        for (const TranscriptSegment &segment : *segments)
            speakers.insert(segment.speaker);
        QCOMPARE(speakers.size(), 3);

        // The environment names the service when no option does; the option wins over it.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("VORLIX_SERVICE_URL"), m_standin.url() + QStringLiteral("/"));
        QCOMPARE(runCli({"transcript", "rooftop-broll"}, environment).out.trimmed(), QByteArray("[\n]"));
        environment.insert(QStringLiteral("VORLIX_SERVICE_URL"), QStringLiteral("http://127.0.0.1:1"));
        QCOMPARE(runCli(withService({"transcript", "rooftop-broll"}), environment).exitCode, 0);

        result = runCli(withService({"transcript", "no such token"}));
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.err, QByteArray("Transcript fetch failed with status 404\n"));

        QCOMPARE(runCli(withService({"logout"})).exitCode, 0);
        QCOMPARE(runCli(withService({"sessions"})).err, QByteArray("Server returned status 401\n"));
    }

    // Without a session bus there is no secret store: the stored credential reads as absent.
    void noSecretStore()
    {
        QCOMPARE(runCli(withService({"login", "--email", "a@b.c", "--code", "246810"})).exitCode, 0);
        QCOMPARE(runCli(withService({"sessions"})).exitCode, 0);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent/bus"));
        environment.remove(QStringLiteral("DISPLAY"));
        const CliResult result = runCli(withService({"sessions"}), environment);
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.err, QByteArray("Server returned status 401\n"));
        QCOMPARE(runCli(withService({"logout"}), environment).exitCode, 0);
    }
};

QTEST_GUILESS_MAIN(ServiceCliTest)
#include "ServiceCliTest.moc"
