// vorlix-sync-cli export ...: the document on stdout exactly as the generators make it, or in the
// file given with -o, and one clear line for bad input.
#include "cli/CliRunner.h"
#include "support/TestData.h"

#include "export/OtioTimeline.h"
#include "export/PremiereScript.h"
#include "export/PremiereXml.h"
#include "export/ResolveEdl.h"
#include "export/SelectsXml.h"
#include "model/RecordJson.h"

#include <QJsonDocument>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

class ExportCliTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    const QString m_data = testDataPath(QStringLiteral("export/")); // the input files
    const QString m_sessionPath = m_data + u"cli-session.json"_s;
    ShootSession m_session;

    static QString golden(const QString &name) { return QString::fromUtf8(readTestData(u"export/"_s + name)); }

    static QStringList exportSession(const QString &format, const QString &session, const QStringList &more = {})
    {
        return QStringList{u"export"_s, format, u"--session"_s, session} + more;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(QFile::exists(qEnvironmentVariable("VORLIX_CLI")), "VORLIX_CLI does not name the built command-line tool");
        QFile file(m_sessionPath);
        const auto session = file.open(QIODevice::ReadOnly) ? RecordJson::sessionFromJson(QJsonDocument::fromJson(file.readAll()).object())
                                                            : std::nullopt;
        QVERIFY2(session, qPrintable(m_sessionPath + u" is missing or not a session"_s));
        m_session = *session;
    }

    void run_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("problem"); // in standard error, which is empty without one
        const QString missing = m_dir.filePath(u"missing.json"_s), unwritable = m_dir.filePath(u"no/such/dir.edl"_s);
        const QString broken = m_data + u"cli-broken.json"_s, notSession = m_data + u"cli-not-a-session.json"_s;
        const QStringList picks{u"--select"_s, u"m1=A"_s, u"--select"_s, u"m0"_s, u"--select"_s, u"nobody"_s};
        const QString jsxPath = u"/tmp/it's\\here.xml"_s;
        QTest::newRow("edl") << exportSession(u"edl"_s, m_sessionPath) << 0 << generateResolveEDL(m_session) << QString();
        QTest::newRow("xml") << exportSession(u"xml"_s, m_sessionPath) << 0
                             << generatePremiereXML(m_session, premiereSourceTrack(m_session, ToolLocations::platformDefault())) << QString();
        QTest::newRow("otio") << exportSession(u"otio"_s, m_sessionPath) << 0 << generateOTIO(m_session) << QString();
        QTest::newRow("selects") << exportSession(u"selects"_s, m_sessionPath, picks) << 0
                                 << generateSelectsXML(m_session, {u"m0"_s, u"m1"_s, u"nobody"_s}, {{u"m1"_s, u"A"_s}}, m_session.transcriptSegments) << QString();
        const QString transcript = m_data + u"cli-transcript.json"_s;
        const QStringList utterancePicks{u"--select"_s, u"t1=B"_s, u"--select"_s, u"t2"_s, u"--select"_s, u"m0"_s};
        QTest::newRow("selects, session's transcript") << exportSession(u"selects"_s, m_sessionPath, utterancePicks) << 0
                                                       << golden(u"selects-session-transcript.xml"_s) << QString();
        QTest::newRow("selects --transcript") << exportSession(u"selects"_s, m_sessionPath, utterancePicks + QStringList{u"--transcript"_s, transcript})
                                              << 0 << golden(u"selects-transcript-file.xml"_s) << QString();
        QTest::newRow("not a transcript") << exportSession(u"selects"_s, m_sessionPath, picks + QStringList{u"--transcript"_s, notSession})
                                          << 1 << QString() << notSession + u": not a transcript: "_s;
        QTest::newRow("check") << QStringList{u"check"_s, u"--session"_s, m_sessionPath} << 0 << golden(u"check.json"_s) << QString();
        QTest::newRow("jsx") << QStringList{u"export"_s, u"jsx"_s, u"--xml-path"_s, jsxPath} << 0 << premiereScript(jsxPath) << QString();
        QTest::newRow("missing file") << exportSession(u"edl"_s, missing) << 1 << QString() << missing;
        QTest::newRow("invalid json") << exportSession(u"xml"_s, broken) << 1 << QString() << broken + u": not valid JSON"_s;
        QTest::newRow("not a session") << exportSession(u"otio"_s, notSession) << 1 << QString() << notSession + u": not a session: "_s;
        QTest::newRow("unwritable output") << exportSession(u"edl"_s, m_sessionPath, {u"-o"_s, unwritable}) << 1 << QString() << unwritable;
        QTest::newRow("selects without select") << exportSession(u"selects"_s, m_sessionPath) << 2 << QString() << u"Missing --select."_s;
        QTest::newRow("jsx without path") << QStringList{u"export"_s, u"jsx"_s} << 2 << QString() << u"Missing --xml-path."_s;
    }

    void run()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, out);
        QFETCH(QString, problem);
        const CliResult result = runCli(arguments);
        QCOMPARE(result.exitCode, exitCode);
        QCOMPARE(result.out, out.toUtf8());
        QVERIFY2(problem.isEmpty() ? result.err.isEmpty() : result.err.contains(problem.toUtf8()), result.err.constData());
        // Bad input is one line; a usage error (status 2) may add the usage.
        if (exitCode == 1)
            QCOMPARE(result.err.count('\n'), 1);
    }

    void outputFile()
    {
        const QString out = m_dir.filePath(u"cut.otio"_s);
        const CliResult result = runCli(exportSession(u"otio"_s, m_sessionPath, {u"-o"_s, out}));
        QVERIFY2(result.exitCode == 0 && result.out.isEmpty(), result.err.constData());
        QFile file(out);
        QVERIFY2(file.open(QIODevice::ReadOnly) && file.readAll() == generateOTIO(m_session).toUtf8(), "-o did not get the document");
    }
};

QTEST_GUILESS_MAIN(ExportCliTest)
#include "ExportCliTest.moc"
