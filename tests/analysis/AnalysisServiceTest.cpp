#include "analysis/AnalysisService.h"
#include "media/MediaFixtures.h"
#include "service/APIService.h"
#include "service/ServiceTestSupport.h"
#include "ServiceStandin.h"

#include <QTemporaryDir>
#include <QTimer>

using namespace MediaFixtures;
using namespace Qt::StringLiterals;

class AnalysisServiceTest : public QObject
{
    Q_OBJECT

    const CredentialStore m_credentials{QStringLiteral("io.vorlix.sync.test-analysis"), QStringLiteral("test-analysis")};
    QTemporaryDir m_media;
    QTemporaryDir m_scratch;
    ToolLocations m_tools = ToolLocations::platformDefault();
    std::unique_ptr<ServiceStandin> m_standin;
    std::unique_ptr<APIService> m_api;

    QList<QUrl> media(const QStringList &names) const
    {
        QList<QUrl> urls;
        for (const QString &name : names)
            urls.append(QUrl::fromLocalFile(m_media.filePath(name)));
        return urls;
    }

    // Runs the analysis of `files` to its end; `updates` gets every update it reported.
    static AnalysisOutcome analyse(AnalysisService &service, const QList<QUrl> &files, QList<AnalysisUpdate> &updates)
    {
        const ShootSession session = Analysis::newAnalysisSession(files, QDateTime::currentDateTimeUtc());
        return awaitTask(service.analyse(session, files, [&updates](const AnalysisUpdate &update) { updates.append(update); }));
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_media.isValid() && m_scratch.isValid());
        m_tools.temporaryDirectory = m_scratch.path();
        // A hard cut every second frame at 10 frames a second: the first frame and 44 cuts give
        // 45 scene frames at pts 0, 0.2, 0.4, ...; NUT keeps the start timecode on the format.
        QVERIFY(make(m_media.filePath("cuts.mov"),
                     lavfi("nullsrc=size=64x36:rate=10,geq=lum='255*mod(floor(N/2),2)':cb=128:cr=128,format=yuv420p")
                         + tone(1) + QStringList{"-t", "9", "-metadata", "timecode=10:00:00:00", "-f", "nut"}));
        QVERIFY(make(m_media.filePath("plain.mov"), lavfi("color=red:size=64x36:rate=25") + tone(1) + QStringList{"-t", "1", "-f", "nut"}));
        QVERIFY(writeText(m_media.filePath("broken.mov"), "not a movie"));

        m_standin = std::make_unique<ServiceStandin>(StandinData{}, QStringLiteral("222222"));
        const quint16 port = m_standin->listenOnLoopback(0);
        QVERIFY(port != 0);
        m_api = std::make_unique<APIService>(QStringLiteral("http://127.0.0.1:%1").arg(port), m_credentials);
        QVERIFY2(!await(m_api->login(QStringLiteral("editor@example.com"), QStringLiteral("222222"))), "the stand-in refused the login");
    }

    void cleanupTestCase() { awaitTask(m_credentials.remove()); }

    // Odd lines; the end-to-end run reads real showinfo logs.
    void frameTimesFromLog_data()
    {
        QTest::addColumn<QByteArray>("log");
        QTest::addColumn<QList<double>>("times");
        QTest::newRow("first occurrence, digits and dots only") << QByteArray("pts_time:1.5x pts_time:9\npts_time:3\n") << QList<double>{1.5, 3};
        QTest::newRow("unconvertible skipped") << QByteArray("pts_time:-1\npts_time:1.2.3\npts_time:\npts_time:4.\n") << QList<double>{4};
        QTest::newRow("not UTF-8") << QByteArray("pts_time:1\n\xff\xfe") << QList<double>{};
    }

    void frameTimesFromLog()
    {
        QFETCH(QByteArray, log);
        QTEST(Analysis::frameTimesFromLog(log), "times");
    }

    // A start with too few fields counts as zero (the end-to-end run counts from real starts).
    void frameTimecode() { QCOMPARE(Analysis::frameTimecode(OptionalText("10:00"), 2.0, 30), QStringLiteral("00:00:02:00")); }

    // Folders are walked with hidden entries; chosen files are kept only with a media extension.
    void collectsMediaAndNamesTheSession()
    {
        QTemporaryDir chosen;
        for (const char *name : {"a/A001.MOV", "a/notes.txt", "a/.hidden.mp4", "a/deep/B002.mxf", "interview.mov", "readme.md"})
            QVERIFY(writeText(chosen.filePath(name), "x"));
        const auto url = [&](const char *name) { return QUrl::fromLocalFile(chosen.filePath(name)); };
        QList<QUrl> folder = Analysis::collectMediaFiles({url("a")});
        std::sort(folder.begin(), folder.end());
        QCOMPARE(folder, (QList<QUrl>{url("a/.hidden.mp4"), url("a/A001.MOV"), url("a/deep/B002.mxf")}));
        QCOMPARE(Analysis::collectMediaFiles({url("readme.md"), url("interview.mov")}), QList<QUrl>{url("interview.mov")});

        const ShootSession one = Analysis::newAnalysisSession({url("interview.mov")}, QDateTime::currentDateTimeUtc());
        QCOMPARE(QStringList({one.title, one.shareToken, QString::number(one.fps)}), QStringList({"interview", one.id, "25"}));
        QCOMPARE(Analysis::newAnalysisSession(folder, QDateTime::currentDateTimeUtc()).title, QStringLiteral("Analysed 3 clips"));
    }

    // Two files against the stand-in: the progress in order, every upload of the expected shape,
    // the service holding the derived markers under the session's token, the event loop turning
    // while ffmpeg runs, and nothing left in the temporary directory.
    void analysesEndToEnd()
    {
        AnalysisService service(*m_api, m_tools);
        QList<AnalysisUpdate> updates;
        int ticks = 0;
        QTimer ticker;
        // Whatever the run keeps in the temporary directory is one folder only its owner can enter.
        QSet<QString> scratchEntries;
        connect(&ticker, &QTimer::timeout, this, [&] {
            ++ticks;
            const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ExeGroup
                                                    | QFileDevice::ReadOther | QFileDevice::WriteOther | QFileDevice::ExeOther;
            for (const QFileInfo &entry : QDir(m_scratch.path()).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden))
                scratchEntries.insert(entry.fileName().left(16) + (entry.isDir() && !(entry.permissions() & others) ? u" private"_s : u" open"_s));
        });
        ticker.start(0);
        const AnalysisOutcome outcome = analyse(service, media({"cuts.mov", "plain.mov"}), updates);
        ticker.stop();
        QVERIFY2(ticks > 20, qPrintable(QStringLiteral("the event loop turned only %1 times during the run").arg(ticks)));
        QCOMPARE(scratchEntries, QSet<QString>{u"vorlix-analysis- private"_s});

        // 9 s of audio: one soundbite and 22 words; 45 frames: 10 + 10 + 3 visual markers.
        QCOMPARE(outcome.results, (QStringList{"cuts.mov: 1 audio + 23 visual markers (22 words)", "plain.mov: 1 audio + 1 visual markers (2 words)"}));
        QVERIFY(outcome.wentThroughAllFiles);
        QCOMPARE(updates.last().results, outcome.results);
        QVERIFY(!updates.last().running && std::all_of(updates.begin(), updates.end() - 2, [](const AnalysisUpdate &u) { return u.running; }));
        QStringList progress;
        for (const AnalysisUpdate &update : updates) {
            if (progress.isEmpty() || progress.last() != update.progress)
                progress.append(update.progress);
        }
        QCOMPARE(progress, (QStringList{"Preparing 2 files...", "Extracting audio (1/2): cuts.mov", "Analysing (1/2): cuts.mov...",
                                        "Visual analysis (1/2): cuts.mov...", "Extracting audio (2/2): plain.mov",
                                        "Analysing (2/2): plain.mov...", "Visual analysis (2/2): plain.mov...", ""}));

        const QString token = m_standin->analysisLog().audio.last().sessionToken;
        QStringList uploads;
        for (const auto &audio : m_standin->analysisLog().audio) {
            if (audio.sessionToken == token)
                uploads.append(QStringLiteral("%1 %2 %3 fps %4 s").arg(audio.filename, audio.startTimecode).arg(audio.fps).arg(qRound(audio.seconds)));
        }
        for (const auto &batch : m_standin->analysisLog().frames) {
            if (batch.sessionToken == token)
                uploads.append(QStringLiteral("%1 %2 … %3 (%4)").arg(batch.filename, batch.timecodes.first(), batch.timecodes.last()).arg(batch.timecodes.size()));
        }
        QCOMPARE(uploads, (QStringList{"cuts.mov 10:00:00:00 25 fps 9 s", "plain.mov 00:00:00:00 25 fps 1 s", "cuts.mov 10:00:00:00 … 10:00:03:20 (20)",
                                       "cuts.mov 10:00:04:00 … 10:00:07:20 (20)", "cuts.mov 10:00:08:00 … 10:00:08:20 (5)",
                                       "plain.mov 00:00:00:00 … 00:00:00:00 (1)"}));
        const QList<ShootSession> stored = awaitTask(m_api->fetchShootSessions());
        const auto analysed = std::find_if(stored.begin(), stored.end(), [&](const ShootSession &s) { return s.id == token; });
        QVERIFY2(analysed != stored.end() && analysed->markers.size() == 26, "the service does not hold the 26 derived markers");
        QCOMPARE(QDir(m_scratch.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden), QStringList());
    }

    // Runs that end early or fail per file, against a server whose every answer is "busy" (the
    // stand-in run above proves the uploads' shape), from tests/data/analysis/cases.json.
    void failures_data() { addJsonCases(QStringLiteral("analysis/cases.json"), QStringLiteral("failures")); }

    void failures()
    {
        QFETCH(QJsonObject, data);
        ScriptedServer server(HttpAnswer{200, {{"Content-Type", "text/plain"}}, "busy"});
        APIService api(server.url(), m_credentials);
        ToolLocations tools = m_tools;
        if (!data["ffmpeg"].toBool())
            tools.ffmpegCandidates = {m_scratch.filePath(QStringLiteral("no-such-dir/ffmpeg"))};
        AnalysisService service(api, tools);
        QList<AnalysisUpdate> updates;
        const AnalysisOutcome outcome = analyse(service, media(data["files"].toVariant().toStringList()), updates);
        QCOMPARE(outcome.results, data["results"].toVariant().toStringList());
        QCOMPARE(outcome.wentThroughAllFiles, data["ffmpeg"].toBool());
        QCOMPARE(updates.last().results, outcome.results);
        QCOMPARE(updates.last().progress, data["progress"].toString());
        QVERIFY(!updates.last().running);
        QStringList paths;
        for (const SeenRequest &request : server.seen())
            paths.append(request.path);
        QCOMPARE(paths, data["requests"].toVariant().toStringList());
        // However the run ends, its temporary folder goes with it.
        QCOMPARE(QDir(m_scratch.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden), QStringList());
    }
};

QTEST_GUILESS_MAIN(AnalysisServiceTest)
#include "AnalysisServiceTest.moc"
