#include "cli/CliRunner.h"
#include "cli/StandinProcess.h"
#include "media/MediaFixtures.h"
#include "model/RecordJson.h"
#include "support/AwaitTask.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

using namespace MediaFixtures;

// `analyse` run as a script would, against the stand-in program: the service stores what the
// uploads produce under the token, so the next `sessions` lists that session with its markers.
// The tool keeps its login in this program's own keyring item.
class AnalysisCliTest : public QObject
{
    Q_OBJECT

    StandinProcess m_standin;
    QTemporaryDir m_media;

    CliResult run(const QStringList &arguments) { return runCli(m_standin.withService(arguments)); }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(make(m_media.filePath("plain.mov"), lavfi("color=red:size=64x36:rate=25") + tone(1) + QStringList{"-t", "1", "-f", "nut"}));
        QVERIFY2(m_standin.start(QStringLiteral("135790")), "the stand-in did not start");
        awaitTask(cliCredentials().remove());
    }

    void cleanupTestCase() { awaitTask(cliCredentials().remove()); }

    void analysesIntoTheService()
    {
        // Signed out, the service refuses with a JSON answer, which counts as nothing found.
        CliResult result = run({"analyse", "--session-token", "cli-token", m_media.filePath("plain.mov")});
        QCOMPARE(result.out, QByteArray("plain.mov: 0 audio + 0 visual markers (0 words)\n"));
        QCOMPARE(result.exitCode, 0);

        QCOMPARE(run({"login", "--email", "editor@example.org", "--code", "135790"}).exitCode, 0);
        result = run({"analyse", "--session-token", "cli-token", "--fps", "30", m_media.filePath("plain.mov")});
        QCOMPARE(result.out, QByteArray("plain.mov: 1 audio + 1 visual markers (2 words)\n"));
        QCOMPARE(result.err, QByteArray("Preparing 1 file...\nExtracting audio (1/1): plain.mov\nAnalysing (1/1): plain.mov...\n"
                                        "Visual analysis (1/1): plain.mov...\n"));
        QCOMPARE(result.exitCode, 0);

        const auto sessions = RecordJson::sessionsFromJson(QJsonDocument::fromJson(run({"sessions"}).out).array());
        QVERIFY2(sessions && std::any_of(sessions->begin(), sessions->end(),
                                         [](const ShootSession &session) { return session.id == u"cli-token" && session.markers.size() == 2; }),
                 "the service lists no session cli-token with the two markers");

        result = run({"analyse", "--session-token", "t", "--fps", "2.5", m_media.filePath("plain.mov")});
        QCOMPARE(result.err, QByteArray("--fps must be a whole number from 1 to 1000\n"));
        QCOMPARE(result.exitCode, 1);
    }

    // Camera files keep their timecode on a stream: the analysis sends that one, as a scan reads it.
    void sendsTheStreamTimecode()
    {
        QVERIFY(make(m_media.filePath("B002C002.mov"), lavfi("color=blue:size=64x36:rate=25") + tone(1) + QStringList{"-t", "1", "-timecode", "16:03:00:00"}));
        QCOMPARE(run({"login", "--email", "editor@example.org", "--code", "135790"}).exitCode, 0);
        QCOMPARE(run({"analyse", "--session-token", "stream-tc", m_media.filePath("B002C002.mov")}).exitCode, 0);
        const auto sessions = RecordJson::sessionsFromJson(QJsonDocument::fromJson(run({"sessions"}).out).array());
        QVERIFY(sessions);
        const auto session = std::find_if(sessions->begin(), sessions->end(), [](const ShootSession &s) { return s.id == u"stream-tc"; });
        QVERIFY2(session != sessions->end() && !session->markers.isEmpty(), "the service lists no markers for stream-tc");
        QCOMPARE(session->markers.first().timecode, QStringLiteral("16:03:00:00"));
    }
};

QTEST_GUILESS_MAIN(AnalysisCliTest)
#include "AnalysisCliTest.moc"
