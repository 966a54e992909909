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

namespace {

const CredentialStore testCredentials(QStringLiteral("io.vorlix.sync.test-analysis"));
const QString ffmpegMissing = QStringLiteral("ffmpeg not found - install via: brew install ffmpeg");

QList<qsizetype> batchSizes(const StandinAnalysisLog &log)
{
    QList<qsizetype> sizes;
    for (const auto &batch : log.frames)
        sizes.append(batch.timecodes.size());
    return sizes;
}

} // namespace

class AnalysisPipelineTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_media;
    QTemporaryDir m_scratch;
    QTemporaryDir m_preferences;
    ToolLocations m_tools = ToolLocations::platformDefault();
    std::unique_ptr<ServiceStandin> m_standin;
    std::unique_ptr<APIService> m_api;

    QUrl media(const QString &name) const { return QUrl::fromLocalFile(m_media.filePath(name)); }

    std::unique_ptr<AppState> freshState()
    {
        static int count = 0;
        static std::list<Preferences> stores;
        stores.emplace_back(m_preferences.filePath(QStringLiteral("prefs-%1.ini").arg(++count)));
        return std::make_unique<AppState>(stores.back());
    }

    QStringList leftOvers() const { return QDir(m_scratch.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden); }

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
        QVERIFY(make(m_media.filePath("plain.mov"),
                     lavfi("color=red:size=64x36:rate=25") + tone(1) + QStringList{"-t", "1", "-f", "nut"}));
        QVERIFY(writeText(m_media.filePath("broken.mov"), "not a movie"));

        m_standin = std::make_unique<ServiceStandin>(StandinData{}, QStringLiteral("222222"));
        const quint16 port = m_standin->listenOnLoopback(0);
        QVERIFY(port != 0);
        m_api = std::make_unique<APIService>(QStringLiteral("http://127.0.0.1:%1").arg(port), testCredentials);
        QVERIFY(await(m_api->login(QStringLiteral("editor@example.com"), QStringLiteral("222222"))).value);
    }

    void cleanupTestCase() { testCredentials.remove(); }

    void frameTimesFromLog_data()
    {
        QTest::addColumn<QByteArray>("log");
        QTest::addColumn<QList<double>>("times");
        QTest::newRow("showinfo lines") << QByteArray("[Parsed_showinfo_1 @ 0x1] n:   0 pts:      0 pts_time:0       duration:1\n"
                                                      "frame=    2 fps=0.0\n"
                                                      "[Parsed_showinfo_1 @ 0x1] n:   1 pts:  12800 pts_time:12.5    pos:1\n")
                                        << QList<double>{0, 12.5};
        QTest::newRow("first occurrence, digits and dots only") << QByteArray("pts_time:1.5x pts_time:9\npts_time:3\n")
                                                                << QList<double>{1.5, 3};
        QTest::newRow("unconvertible skipped") << QByteArray("pts_time:-1\npts_time:1.2.3\npts_time:\npts_time:4.\n")
                                               << QList<double>{4};
        QTest::newRow("not UTF-8") << QByteArray("pts_time:1\n\xff\xfe") << QList<double>{};
    }

    void frameTimesFromLog()
    {
        QFETCH(QByteArray, log);
        QFETCH(QList<double>, times);
        QCOMPARE(Analysis::frameTimesFromLog(log), times);
    }

    // Whole frames after the start timecode; a start with too few fields counts as zero.
    void frameTimecode()
    {
        QCOMPARE(Analysis::frameTimecode(OptionalText("10:00:00:00"), 12.5, 25), QStringLiteral("10:00:12:12"));
        QCOMPARE(Analysis::frameTimecode(OptionalText("10:00"), 2.0, 30), QStringLiteral("00:00:02:00"));
    }

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

        const QDateTime now = QDateTime::currentDateTimeUtc();
        const ShootSession one = Analysis::newAnalysisSession({url("interview.mov")}, now);
        QCOMPARE(one.title, QStringLiteral("interview"));
        QCOMPARE(one.shareToken, one.id);
        QCOMPARE(one.fps, 25);
        QCOMPARE(one.createdAt, now);
        QCOMPARE(Analysis::newAnalysisSession(folder, now).title, QStringLiteral("Analysed 3 clips"));
        QVERIFY(Analysis::newAnalysisSession(folder, now).id != one.id);

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

        const auto session = analyseFootageFromScratch(*state, {media("cuts.mov"), media("plain.mov")}, center);
        QVERIFY(session);
        QCOMPARE(session->title, QStringLiteral("Analysed 2 clips"));
        QCOMPARE(state->sessions().first().id, session->id);
        QCOMPARE(state->selectedSession()->id, session->id);
        QVERIFY(!state->showSettings());
        const auto files = pending.take(session->id);
        QCOMPARE(files, (QList<QUrl>{media("cuts.mov"), media("plain.mov")}));

        int ticks = 0;
        QTimer ticker;
        ticker.setInterval(0);
        connect(&ticker, &QTimer::timeout, this, [&] { ++ticks; });
        ticker.start();
        const int audioBefore = int(m_standin->analysisLog().audio.size());
        const int framesBefore = int(m_standin->analysisLog().frames.size());
        await(pipeline.runAnalysis(*session, *files, analysis));
        ticker.stop();
        QVERIFY2(ticks > 20, qPrintable(QString::number(ticks)));

        // 9 s of audio: one soundbite and 22 words; 45 frames: 10 + 10 + 3 visual markers.
        QCOMPARE(analysis.analyseResults(), (QStringList{"cuts.mov: 1 audio + 23 visual markers (22 words)",
                                                         "plain.mov: 1 audio + 1 visual markers (2 words)"}));
        QVERIFY(!analysis.isAnalysing());
        QCOMPARE(progress, (QStringList{"Preparing 2 files...", "Extracting audio (1/2): cuts.mov", "Analysing (1/2): cuts.mov...",
                                        "Visual analysis (1/2): cuts.mov...", "Extracting audio (2/2): plain.mov",
                                        "Analysing (2/2): plain.mov...", "Visual analysis (2/2): plain.mov...", ""}));

        const StandinAnalysisLog &log = m_standin->analysisLog();
        QCOMPARE(log.audio.size(), audioBefore + 2);
        QCOMPARE(log.audio[audioBefore].startTimecode, QStringLiteral("10:00:00:00"));
        QCOMPARE(log.audio[audioBefore + 1].startTimecode, QStringLiteral("00:00:00:00"));
        QCOMPARE(log.audio[audioBefore].sessionToken, session->shareToken);
        QCOMPARE(log.audio[audioBefore].fps, 25);
        QCOMPARE(log.audio[audioBefore].filename, QStringLiteral("cuts.mov"));
        QVERIFY(qAbs(log.audio[audioBefore].seconds - 9.0) < 0.1);
        QCOMPARE(batchSizes(log).mid(framesBefore), (QList<qsizetype>{20, 20, 5, 1}));
        const QStringList cutTimecodes = log.frames[framesBefore].timecodes;
        QCOMPARE(cutTimecodes.mid(0, 3), (QStringList{"10:00:00:00", "10:00:00:05", "10:00:00:10"}));
        QCOMPARE(log.frames[framesBefore + 2].timecodes.last(), QStringLiteral("10:00:08:20"));
        QCOMPARE(log.frames[framesBefore + 3].timecodes, QStringList{"00:00:00:00"});

        QCOMPARE(state->selectedSession()->id, session->id);
        QCOMPARE(state->selectedSession()->title, QStringLiteral("Analysed 2 clips"));
        QCOMPARE(state->selectedSession()->markers.size(), 26);
        QCOMPARE(state->sessions().first().markers.size(), 26);
        QCOMPARE(leftOvers(), QStringList());
    }

    // Without ffmpeg the first file ends the run: one line, no upload, no refresh.
    void missingFFmpegEndsTheRun()
    {
        auto state = freshState();
        ToolLocations tools = m_tools;
        tools.ffmpegCandidates = {m_scratch.filePath(QStringLiteral("no-such-dir/ffmpeg"))};
        AnalysisPipeline pipeline(*state, *m_api, tools);
        AnalysisState analysis;
        ShootSession session = Analysis::newAnalysisSession({media("cuts.mov")}, QDateTime::currentDateTimeUtc());
        state->setSessions({session});
        QSignalSpy sessionsChanged(state.get(), &AppState::sessionsChanged);
        const qsizetype audioBefore = m_standin->analysisLog().audio.size();

        await(pipeline.runAnalysis(session, {media("cuts.mov"), media("plain.mov")}, analysis));
        QCOMPARE(analysis.analyseResults(), QStringList{ffmpegMissing});
        QVERIFY(!analysis.isAnalysing());
        QCOMPARE(analysis.analyseProgress(), QStringLiteral("Extracting audio (1/2): cuts.mov"));
        QCOMPARE(m_standin->analysisLog().audio.size(), audioBefore);
        QCOMPARE(sessionsChanged.count(), 0);
    }

    // A file ffmpeg cannot read gets its line and no uploads; an audio answer that is not JSON
    // gives the error line, and the frames still go out, with the stored cookie.
    void failuresBecomeResultLines()
    {
        ScriptedServer server(HttpAnswer{200, {{"Content-Type", "text/plain"}}, "busy"});
        APIService api(server.url(), testCredentials);
        auto state = freshState();
        AnalysisPipeline pipeline(*state, api, m_tools);
        AnalysisState analysis;
        ShootSession session = Analysis::newAnalysisSession({media("plain.mov")}, QDateTime::currentDateTimeUtc());

        await(pipeline.runAnalysis(session, {media("broken.mov"), media("plain.mov")}, analysis));
        const QStringList results = analysis.analyseResults();
        QCOMPARE(results.size(), 3);
        QCOMPARE(results[0], QStringLiteral("Failed to extract audio from broken.mov"));
        QVERIFY2(results[1].startsWith("plain.mov audio: Error - ") && results[1].size() > 25, qPrintable(results[1]));
        QCOMPARE(results[2], QStringLiteral("plain.mov: 0 audio + 0 visual markers (0 words)"));

        QStringList paths;
        for (const SeenRequest &request : server.seen())
            paths.append(request.path);
        QCOMPARE(paths, (QStringList{"/api/shoot/analyse-audio", "/api/shoot/analyse-frames", "/api/shoot/sessions"}));
        const SeenRequest &audio = server.seen().first();
        QCOMPARE(audio.header("Content-Type"), QByteArray("audio/wav"));
        QCOMPARE(audio.header("Cookie"), testCredentials.read()->toUtf8());
        QCOMPARE(audio.header("sessiontoken"), session.shareToken.toUtf8());
        QCOMPARE(audio.header("filename"), QByteArray("plain.mov"));
        QCOMPARE(audio.header("fps"), QByteArray("25"));
        QVERIFY(audio.body.startsWith("RIFF"));
        QCOMPARE(server.seen()[1].header("Content-Type"), QByteArray("application/json"));
        // The early end leaves the failed file's WAV, if any, as it was; nothing else stays.
        QVERIFY(!QFile::exists(m_scratch.filePath("vorlix-analyse-1.wav")));
        QVERIFY(!QFile::exists(m_scratch.filePath("vorlix-frames-1")));
    }
};

QTEST_GUILESS_MAIN(AnalysisPipelineTest)
#include "AnalysisPipelineTest.moc"
