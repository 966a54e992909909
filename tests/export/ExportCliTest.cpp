// vorlix-sync-cli export ...: the document on stdout exactly as the generators make it, or in the
// file given with -o, and one clear line for bad input.
#include "cli/CliRunner.h"

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
    ShootSession m_session;
    QString m_sessionPath;

    QString write(const QString &name, const QByteArray &contents) { return writeTestFile(QDir(m_dir.path()), name, contents); }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QFile::exists(qEnvironmentVariable("VORLIX_CLI")));
        m_session.id = m_session.shareToken = u"tok"_s;
        m_session.title = u"Café \"Shoot\" & <co>"_s;
        m_session.createdAt = QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC);
        const QStringList timecodes{u"10:00:01:00"_s, u"10:00:03:00"_s, u"09:00:00:00"_s};
        for (qsizetype i = 0; i < timecodes.size(); ++i) {
            ShootMarker m;
            m.id = u"m%1"_s.arg(i);
            m.markerType = i == 0 ? u"inout"_s : u"soundbite"_s;
            m.timecode = timecodes[i];
            m.summary = u"Line \\ %1 \"quoted\""_s.arg(i);
            m.createdAt = m_session.createdAt.addSecs(10 - i);
            m_session.markers.append(m);
        }
        MediaClip clip;
        clip.id = u"c"_s;
        clip.path = u"/footage/Card A/C0001.MP4"_s;
        clip.filename = u"C0001.MP4"_s;
        clip.timecode = u"10:00:00:00"_s;
        clip.duration = 30.0;
        m_session.matchedClips.append(clip);
        m_sessionPath = write(u"session.json"_s, QJsonDocument(RecordJson::toJson(m_session)).toJson());
    }

    void documentsOnStdout_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("document");
        QTest::newRow("edl") << QStringList{u"export"_s, u"edl"_s, u"--session"_s, m_sessionPath}
                             << generateResolveEDL(m_session);
        QTest::newRow("xml") << QStringList{u"export"_s, u"xml"_s, u"--session"_s, m_sessionPath}
                             << generatePremiereXML(m_session);
        QTest::newRow("otio") << QStringList{u"export"_s, u"otio"_s, u"--session"_s, m_sessionPath}
                              << generateOTIO(m_session);
        QTest::newRow("selects") << QStringList{u"export"_s, u"selects"_s, u"--session"_s, m_sessionPath,
                                                u"--select"_s, u"m1=A"_s, u"--select"_s, u"m0"_s, u"--select"_s, u"nobody"_s}
                                 << generateSelectsXML(m_session, {u"m0"_s, u"m1"_s, u"nobody"_s}, {{u"m1"_s, u"A"_s}});
        QTest::newRow("no select in the session") << QStringList{u"export"_s, u"selects"_s, u"--session"_s,
                                                                 m_sessionPath, u"--select"_s, u"nobody"_s}
                                                  << QString();
        QTest::newRow("jsx") << QStringList{u"export"_s, u"jsx"_s, u"--xml-path"_s, u"/tmp/it's\\here.xml"_s}
                             << premiereScript(u"/tmp/it's\\here.xml"_s);
    }

    void documentsOnStdout()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, document);
        const CliResult result = runCli(arguments);
        QCOMPARE(result.err, QByteArray());
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out, document.toUtf8());
    }

    void outputFile()
    {
        const QString out = m_dir.filePath(u"cut.otio"_s);
        const CliResult result = runCli({u"export"_s, u"otio"_s, u"--session"_s, m_sessionPath, u"-o"_s, out});
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out, QByteArray());
        QFile file(out);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), generateOTIO(m_session).toUtf8());
    }

    void badInput_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("problem");
        const QString missing = m_dir.filePath(u"missing.json"_s);
        const QString broken = write(u"broken.json"_s, "{\"title\": ");
        const QString notSession = write(u"list.json"_s, "{\"title\": 5}");
        QTest::newRow("missing file") << QStringList{u"export"_s, u"edl"_s, u"--session"_s, missing} << 1 << missing;
        QTest::newRow("invalid json") << QStringList{u"export"_s, u"xml"_s, u"--session"_s, broken} << 1
                                      << broken + u": not valid JSON"_s;
        QTest::newRow("not a session") << QStringList{u"export"_s, u"otio"_s, u"--session"_s, notSession} << 1
                                       << notSession + u": not a session: "_s;
        QTest::newRow("unwritable output") << QStringList{u"export"_s, u"edl"_s, u"--session"_s, m_sessionPath, u"-o"_s,
                                                          m_dir.filePath(u"no/such/dir.edl"_s)}
                                           << 1 << m_dir.filePath(u"no/such/dir.edl"_s);
        QTest::newRow("selects without select") << QStringList{u"export"_s, u"selects"_s, u"--session"_s, m_sessionPath}
                                                << 2 << u"Missing --select."_s;
        QTest::newRow("jsx without path") << QStringList{u"export"_s, u"jsx"_s} << 2 << u"Missing --xml-path."_s;
    }

    void badInput()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, problem);
        const CliResult result = runCli(arguments);
        QCOMPARE(result.exitCode, exitCode);
        QCOMPARE(result.out, QByteArray());
        QVERIFY2(result.err.contains(problem.toUtf8()), result.err.constData());
        if (exitCode == 1)
            QCOMPARE(result.err.count('\n'), 1);
    }
};

QTEST_GUILESS_MAIN(ExportCliTest)
#include "ExportCliTest.moc"
