#include "ServiceStandin.h"
#include "analysis/AnalysisPipeline.h"
#include "analysis/PendingAnalyses.h"
#include "media/MediaFixtures.h"
#include "platform/NotificationCenter.h"
#include "platform/Preferences.h"
#include "service/APIService.h"
#include "service/ServiceTestSupport.h"
#include "state/AppState.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>

using namespace MediaFixtures;

class AnalysisPipelineTest : public QObject
{
    Q_OBJECT

    const CredentialStore m_credentials{QStringLiteral("io.vorlix.sync.test-analysis"), QStringLiteral("test-analysis")};
    QTemporaryDir m_media;
    QTemporaryDir m_scratch;
    QTemporaryDir m_preferences;
    std::list<Preferences> m_stores;
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

    std::unique_ptr<AppState> freshState()
    {
        m_stores.emplace_back(m_preferences.filePath(QStringLiteral("prefs-%1.ini").arg(m_stores.size())));
        return std::make_unique<AppState>(m_stores.back());
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_media.isValid() && m_scratch.isValid() && m_preferences.isValid());
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

    void cleanupTestCase() { m_credentials.remove(); }

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

    // Folders are walked with hidden entries; chosen files are kept only with a media extension,
    // and without one nothing is analysed.
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

        auto state = freshState();
        NotificationCenter center;
        QSignalSpy posted(&center, &NotificationCenter::posted);
        QVERIFY(!analyseFootageFromScratch(*state, {url("readme.md")}, center));
        QCOMPARE(posted.count(), 0);
        QVERIFY(state->sessions().isEmpty());
    }

    // Two files from scratch against the stand-in: the request waits for the session's screen,
    // every upload has the expected shape, the markers arrive with the refresh, the event loop
    // keeps turning while ffmpeg runs and nothing is left in the temporary directory.
    void analysesFromScratchEndToEnd()
    {
        auto state = freshState();
        NotificationCenter center;
        PendingAnalyses pending(center);
        AnalysisPipeline pipeline(*state, *m_api, m_tools);
        AnalysisState analysis;
        QStringList progress;
        connect(&analysis, &AnalysisState::analyseProgressChanged, this, [&] { progress.append(analysis.analyseProgress()); });

        const auto session = analyseFootageFromScratch(*state, media({"cuts.mov", "plain.mov"}), center);
        QVERIFY(session);
        QCOMPARE(session->title, QStringLiteral("Analysed 2 clips"));
        QCOMPARE(state->selectedSession()->id, session->id);
        const auto files = pending.take(session->id);
        QCOMPARE(files, media({"cuts.mov", "plain.mov"}));

        int ticks = 0;
        QTimer ticker;
        connect(&ticker, &QTimer::timeout, this, [&] { ++ticks; });
        ticker.start(0);
        await(pipeline.runAnalysis(*session, *files, analysis));
        ticker.stop();
        QVERIFY2(ticks > 20, qPrintable(QStringLiteral("the event loop turned only %1 times during the run").arg(ticks)));

        // 9 s of audio: one soundbite and 22 words; 45 frames: 10 + 10 + 3 visual markers.
        QCOMPARE(analysis.analyseResults(), (QStringList{"cuts.mov: 1 audio + 23 visual markers (22 words)",
                                                         "plain.mov: 1 audio + 1 visual markers (2 words)"}));
        QVERIFY(!analysis.isAnalysing());
        QCOMPARE(progress, (QStringList{"Preparing 2 files...", "Extracting audio (1/2): cuts.mov", "Analysing (1/2): cuts.mov...",
                                        "Visual analysis (1/2): cuts.mov...", "Extracting audio (2/2): plain.mov",
                                        "Analysing (2/2): plain.mov...", "Visual analysis (2/2): plain.mov...", ""}));
        QStringList uploads;
        for (const auto &audio : m_standin->analysisLog().audio) {
            if (audio.sessionToken == session->shareToken)
                uploads.append(QStringLiteral("%1 %2 %3 fps %4 s").arg(audio.filename, audio.startTimecode).arg(audio.fps).arg(qRound(audio.seconds)));
        }
        for (const auto &batch : m_standin->analysisLog().frames) {
            if (batch.sessionToken == session->shareToken)
                uploads.append(QStringLiteral("%1 %2 … %3 (%4)").arg(batch.filename, batch.timecodes.first(), batch.timecodes.last()).arg(batch.timecodes.size()));
        }
        QCOMPARE(uploads, (QStringList{"cuts.mov 10:00:00:00 25 fps 9 s", "plain.mov 00:00:00:00 25 fps 1 s", "cuts.mov 10:00:00:00 … 10:00:03:20 (20)",
                                       "cuts.mov 10:00:04:00 … 10:00:07:20 (20)", "cuts.mov 10:00:08:00 … 10:00:08:20 (5)",
                                       "plain.mov 00:00:00:00 … 00:00:00:00 (1)"}));
        QCOMPARE(state->selectedSession()->markers.size(), 26);
        QCOMPARE(state->sessions().first().markers.size(), 26);
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
        auto state = freshState();
        ToolLocations tools = m_tools;
        if (!data["ffmpeg"].toBool())
            tools.ffmpegCandidates = {m_scratch.filePath(QStringLiteral("no-such-dir/ffmpeg"))};
        AnalysisPipeline pipeline(*state, api, tools);
        AnalysisState analysis;
        const QList<QUrl> files = media(data["files"].toVariant().toStringList());
        await(pipeline.runAnalysis(Analysis::newAnalysisSession(files, QDateTime::currentDateTimeUtc()), files, analysis));
        QCOMPARE(analysis.analyseResults(), data["results"].toVariant().toStringList());
        QCOMPARE(analysis.analyseProgress(), data["progress"].toString());
        QVERIFY(!analysis.isAnalysing());
        QStringList paths;
        for (const SeenRequest &request : server.seen())
            paths.append(request.path);
        QCOMPARE(paths, data["requests"].toVariant().toStringList());
        // The early end leaves the failed file's WAV, if any, as it was; nothing else stays.
        QVERIFY(!QFile::exists(m_scratch.filePath("vorlix-analyse-1.wav")));
        QVERIFY(!QFile::exists(m_scratch.filePath("vorlix-frames-1")));
    }
};

QTEST_GUILESS_MAIN(AnalysisPipelineTest)
#include "AnalysisPipelineTest.moc"
