#include "MediaFixtures.h"
#include "support/TestData.h"

#include "media/FootageScanner.h"
#include "model/RecordJson.h"
#include "platform/Preferences.h"
#include "state/AppState.h"
#include "state/SessionLibrary.h"

#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>
#include <QThreadPool>
#include <sys/stat.h>

using namespace MediaFixtures;
using namespace Qt::StringLiterals;

namespace {

// The two sessions of the footage: one around the 10:00 clips, one at the 12:00 clip.
QList<ShootSession> twoSessions()
{
    QList<ShootSession> sessions;
    for (const QString &timecode : {QStringLiteral("10:00:02:00"), QStringLiteral("12:00:00:00")}) {
        ShootSession session;
        session.id = session.shareToken = session.title = timecode;
        ShootMarker marker;
        marker.timecode = timecode;
        session.markers.append(marker);
        sessions.append(session);
    }
    return sessions;
}

// Two probes at a time and no cache, unless a test says otherwise.
const ScanOptions uncached{2, QString()};

QStringList names(const QList<MediaClip> &clips, QString MediaClip::*member = &MediaClip::filename)
{
    QStringList result;
    for (const MediaClip &clip : clips)
        result.append(clip.*member);
    return result;
}

} // namespace

class FootageScannerTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_root;   // three media files among hidden and non-media ones
    QString m_second; // one more clip, of the other session
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<AppState> m_state;
    const MediaScanner m_scanner{ToolLocations::platformDefault()};

    QString root(const QString &relative) const { return m_root + u'/' + relative; }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_root = m_dir.filePath("footage");
        m_second = m_dir.filePath("second");
        const QStringList oneSecond{"-t", "1"};
        QVERIFY(make(root("A001.mov"), video("25") + oneSecond + QStringList{"-metadata", "timecode=10:00:00:00", "-f", "nut"}));
        QVERIFY(make(root("sub/B.MOV"), video("25") + tone(1) + oneSecond + QStringList{"-timecode", "10:00:05:00"}));
        QVERIFY(make(root("deep/er/C.take2.mp4"), video("30000/1001") + oneSecond));
        QVERIFY(make(m_second + "/D.mov", video("25") + oneSecond + QStringList{"-timecode", "12:00:00:00"}));
        for (const char *skipped : {".hidden.mov", "sub/.cache/x.mp4", "y.mxf.bak", "noext", "notes.txt"})
            QVERIFY(writeText(root(skipped), "not scanned"));
        QVERIFY(QDir().mkpath(m_dir.filePath("empty")));
        // Named like media but no footage: a FIFO (ffprobe would wait on it for ever), a link to
        // it, and a folder, which stays listed as a bundle would.
        QVERIFY(QDir().mkpath(m_dir.filePath("odd/bundle.mov")));
        QCOMPARE(::mkfifo(QFile::encodeName(m_dir.filePath("odd/pipe.mov")).constData(), 0600), 0);
        QVERIFY(QFile::link(m_dir.filePath("odd/pipe.mov"), m_dir.filePath("odd/link.mp4")));
    }

    FolderScan scan(const QString &folder, const ScanOptions &options = uncached, QStringList *lines = nullptr,
                    std::stop_source stop = std::stop_source(std::nostopstate)) const
    {
        return m_scanner.scanFolder(folder, options, [&](const QString &line) {
            if (lines)
                lines->append(line);
            if (line.startsWith(u"Reading 2/"))
                stop.request_stop();
        }, stop.get_token());
    }

    void init()
    {
        m_state.reset();
        m_preferences = std::make_unique<Preferences>(m_dir.filePath(QString::fromLatin1(QTest::currentTestFunction()) + ".ini"));
        m_state = std::make_unique<AppState>(*m_preferences);
    }

    void scanFolderEdges_data() { addCaseRows(QStringLiteral("media/folder-scans.txt")); }

    void scanFolderEdges()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        QStringList reported;
        const QList<MediaClip> clips = scan(m_dir.filePath(input), uncached, &reported).clips;
        reported += names(clips, &MediaClip::path).replaceInStrings(m_dir.path() + u'/', QString());
        QCOMPARE(reported.join(QStringLiteral(" | ")), expected);
    }

    // Probes run side by side while the lines keep the file order; a rescan of unchanged files
    // launches nothing and reads the same. A changed file is probed again, a file that went is
    // dropped from the cache, and a cache that cannot be read is rebuilt without a word.
    void probeCacheFollowsTheFiles()
    {
        const QString folder = m_dir.filePath("cached");
        QVERIFY(QDir().mkpath(folder));
        for (const QString &name : {u"A001.mov"_s, u"sub/B.MOV"_s, u"deep/er/C.take2.mp4"_s}) {
            QVERIFY(QDir().mkpath(QFileInfo(folder + u'/' + name).path()));
            QVERIFY(QFile::copy(root(name), folder + u'/' + name));
        }
        const ScanOptions cached{4, m_dir.filePath("cache/probes.json")};
        const auto launches = [&](QStringList *lines = nullptr) {
            const qint64 before = toolRunStatistics().launches;
            const FolderScan found = scan(folder, cached, lines);
            return std::pair{toolRunStatistics().launches - before, found};
        };
        const auto facts = [](const FolderScan &found) {
            QStringList all;
            for (MediaClip clip : found.clips) {
                clip.id.clear();
                all.append(QString::fromUtf8(QJsonDocument(RecordJson::toJson(clip)).toJson(QJsonDocument::Compact)));
            }
            return all;
        };

        QStringList lines;
        const auto [first, firstScan] = launches(&lines);
        QCOMPARE(first, 3);
        QCOMPARE(lines.filter(u"Reading"_s), (QStringList{u"Reading 1/3: "_s + firstScan.clips.at(0).filename,
                                                          u"Reading 2/3: "_s + firstScan.clips.at(1).filename,
                                                          u"Reading 3/3: "_s + firstScan.clips.at(2).filename}));
        QCOMPARE(facts(firstScan), facts(scan(folder)));
        const auto [again, rescan] = launches();
        QCOMPARE(again, 0);
        QCOMPARE(facts(rescan), facts(firstScan));

        QFile touched(folder + u"/A001.mov"_s);
        QVERIFY(touched.open(QIODevice::ReadWrite));
        QVERIFY(touched.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFileDevice::FileModificationTime));
        touched.close();
        QVERIFY(QFile::remove(folder + u"/sub/B.MOV"_s));
        QCOMPARE(launches().first, 1);
        QFile cache(cached.probeCacheFile);
        QVERIFY(cache.open(QIODevice::ReadOnly));
        const QByteArray stored = cache.readAll();
        cache.close();
        QVERIFY2(stored.contains("C.take2.mp4") && !stored.contains("B.MOV"), stored.constData());

        QVERIFY(writeText(cached.probeCacheFile, "{\"files\": [1, {\"path\": 2}"));
        QCOMPARE(launches().first, 2);
        QCOMPARE(launches().first, 0);
    }

    // A stop asked for while a file is read lets it end and starts no other.
    void cancelledScanKeepsWhatItRead()
    {
        QStringList lines;
        const FolderScan found = scan(m_root, ScanOptions{1, QString()}, &lines, std::stop_source());
        QVERIFY(found.cancelled);
        QCOMPARE(found.clips.size(), 2);
        QCOMPARE(lines.last(), u"Scan cancelled: 2 of 3 files read"_s);
    }

    // Every scan makes new records; a merge keeps the known record of a path, first, and matches
    // every session again even when nothing is new (sessions may arrive after the clips).
    void mergeKeepsKnownClips()
    {
        const QList<MediaClip> known = scan(m_second).clips;
        m_state->setClips(known);
        m_state->setSessions(twoSessions());
        SessionLibrary(*m_state).mergeScanned(scan(m_second).clips, false);
        QCOMPARE(names(m_state->sessions().at(1).matchedClips, &MediaClip::id), names(known, &MediaClip::id));
        SessionLibrary(*m_state).mergeScanned(scan(m_second).clips + scan(m_root).clips, false);
        QCOMPARE(m_state->clips().size(), 4);
        QCOMPARE(m_state->clips().first().id, known.first().id);
    }

    void userScansRunBesideTheGuiThread()
    {
        m_state->setSessions(twoSessions());
        m_state->setSelectedSession(m_state->sessions().first());
        FootageScanner scanner(*m_state, ToolLocations::platformDefault(), uncached);
        QSignalSpy merged(&scanner, &FootageScanner::scanMerged);
        QStringList lines;
        bool allOnGuiThread = true;
        connect(m_state.get(), &AppState::scanProgressChanged, this, [&] {
            lines.append(m_state->scanProgress());
            allOnGuiThread = allOnGuiThread && QThread::currentThread() == thread();
        });
        QList<bool> scanning;
        connect(m_state.get(), &AppState::isScanningChanged, this, [&] { scanning.append(m_state->isScanning()); });

        scanner.scanFootage(m_root);
        QVERIFY2(m_state->isScanning() && lines.isEmpty() && m_state->clips().isEmpty(), "the scan did not leave the GUI thread");
        QCOMPARE(m_state->footageFolders(), QStringList{m_root});
        QVERIFY2(merged.wait(60000), "the scan of the footage folder was not merged");
        QCOMPARE(merged.first().first().toString(), m_root);
        QVERIFY2(allOnGuiThread, "progress was stored off the GUI thread");
        QCOMPARE(scanning, (QList<bool>{true, false}));
        QCOMPARE(lines.size(), 5);
        QCOMPARE(lines.last(), QStringLiteral("Scan complete: 3 clips, 2 with timecode"));
        QCOMPARE(m_state->clips().size(), 3);
        QCOMPARE(names(m_state->sessions().first().matchedClips), (QStringList{"A001.mov", "B.MOV"})); // ordered by timecode
        QCOMPARE(names(m_state->selectedSession()->matchedClips), (QStringList{"A001.mov", "B.MOV"}));

        // The selected session is deleted during the next scan: every session left is matched
        // again, in one assignment, and the selection is cleared.
        scanner.scanFootage(m_second);
        m_state->setSessions({m_state->sessions().at(1)});
        QSignalSpy sessionsChanged(m_state.get(), &AppState::sessionsChanged);
        QVERIFY2(merged.wait(60000), "the scan of the second folder was not merged");
        QCOMPARE(m_state->clips().size(), 4);
        QCOMPARE(sessionsChanged.size(), 1);
        QCOMPARE(names(m_state->sessions().first().matchedClips), QStringList{"D.mov"});
        QVERIFY(!m_state->selectedSession() && !m_state->isScanning());
    }

    // The cancel returns at once; the scan merges what it read and says it was cancelled.
    void userCancelsAScan()
    {
        const QString folder = m_dir.filePath("many");
        QVERIFY(QDir().mkpath(folder));
        for (int i = 0; i < 40; ++i)
            QVERIFY(QFile::link(root("A001.mov"), folder + u"/A%1.mov"_s.arg(i)));
        FootageScanner scanner(*m_state, ToolLocations::platformDefault(), uncached);
        QSignalSpy merged(&scanner, &FootageScanner::scanMerged);
        scanner.scanFootage(folder);
        scanner.cancelUserScan();
        QVERIFY2(merged.wait(60000), "the cancelled scan was not merged");
        const QString line = m_state->scanProgress();
        QVERIFY2(line.startsWith(u"Scan cancelled: "_s) && line.endsWith(u" of 40 files read"_s), qPrintable(line));
        QCOMPARE(u"Scan cancelled: %1 of 40 files read"_s.arg(m_state->clips().size()), line);
        QVERIFY(!m_state->isScanning());
    }

    void rescanOfSavedFolders()
    {
        m_state->setFootageFolders({m_dir.filePath("empty"), m_root, m_second, m_dir.filePath("odd")});
        m_state->setSessions(twoSessions());
        FootageScanner scanner(*m_state, ToolLocations::platformDefault(), uncached);
        QSignalSpy merged(&scanner, &FootageScanner::scanMerged);
        QSignalSpy scanning(m_state.get(), &AppState::isScanningChanged);
        scanner.rescanSavedFolders();
        QVERIFY(m_state->clips().isEmpty());
        QTRY_VERIFY2_WITH_TIMEOUT(merged.size() == 4, "not every saved folder was merged", 60000);
        QCOMPARE(scanning.size(), 0);
        QCOMPARE(m_state->clips().size(), 5);
        QCOMPARE(m_state->unreadableFootage(), QStringList{m_dir.filePath("odd/bundle.mov")});
        QCOMPARE(names(m_state->sessions().at(0).matchedClips), (QStringList{"A001.mov", "B.MOV"}));
        QCOMPARE(names(m_state->sessions().at(1).matchedClips), QStringList{"D.mov"});
    }

    void scannerGoneBeforeItsScanEnds()
    {
        auto scanner = std::make_unique<FootageScanner>(*m_state, ToolLocations::platformDefault(), uncached);
        scanner->scanFootage(m_second);
        scanner.reset();
        // The scan still ends and its progress still arrives. Its end is posted to this thread
        // before the pool is idle, so a call queued after that runs after the place of a merge.
        QVERIFY2(toolThreadPool()->waitForDone(60000), "the scan did not end");
        bool queuedCallRan = false;
        QMetaObject::invokeMethod(this, [&] { queuedCallRan = true; }, Qt::QueuedConnection);
        QTRY_VERIFY2_WITH_TIMEOUT(queuedCallRan, "the queued call did not run", 60000);
        QCOMPARE(m_state->scanProgress(), QStringLiteral("Scan complete: 1 clips, 1 with timecode"));
        QVERIFY2(m_state->clips().isEmpty(), "a scan was merged after its scanner was gone");
    }
};

QTEST_GUILESS_MAIN(FootageScannerTest)
#include "FootageScannerTest.moc"
