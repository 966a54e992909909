#include "MediaFixtures.h"

#include "media/FootageScanner.h"
#include "platform/Preferences.h"
#include "state/AppState.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>

using namespace MediaFixtures;

namespace {

ShootSession session(const QString &id, const QString &timecode)
{
    ShootSession s;
    s.id = s.shareToken = s.title = id;
    ShootMarker marker;
    marker.id = id + timecode;
    marker.markerType = QStringLiteral("log");
    marker.timecode = timecode;
    s.markers.append(marker);
    return s;
}

MediaClip clip(const QString &path, const QString &timecode)
{
    MediaClip c;
    c.id = path + QStringLiteral("#id");
    c.path = path;
    c.filename = QFileInfo(path).fileName();
    c.timecode = timecode;
    c.duration = 10;
    return c;
}

// The two sessions of the footage: one around the 10:00 clips, one at the 12:00 clip.
QList<ShootSession> twoSessions()
{
    return {session("s1", "10:00:02:00"), session("s2", "12:00:00:00")};
}

// The paths of these clips, or another of their texts.
QStringList paths(const QList<MediaClip> &clips, QString MediaClip::*member = &MediaClip::path)
{
    QStringList result;
    for (const MediaClip &c : clips)
        result.append(c.*member);
    return result;
}

} // namespace

class FootageScannerTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_root;   // three media files among hidden and non-media ones
    QString m_second; // one more clip, of another session
    QString m_empty;
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<AppState> m_state;

    QString root(const QString &relative) const { return m_root + QLatin1Char('/') + relative; }

    static bool copy(const QString &from, const QString &to)
    {
        QDir().mkpath(QFileInfo(to).absolutePath());
        return QFile::copy(from, to);
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_root = m_dir.filePath("footage");
        m_second = m_dir.filePath("second");
        m_empty = m_dir.filePath("empty");
        QVERIFY(QDir().mkpath(m_empty));
        const QStringList oneSecond{"-t", "1"};
        QVERIFY(make(root("A001.mov"), video("25") + oneSecond + QStringList{"-metadata", "timecode=10:00:00:00", "-f", "nut"}));
        QVERIFY(make(root("sub/B.MOV"), video("25") + tone(1) + oneSecond + QStringList{"-timecode", "10:00:05:00"}));
        QVERIFY(make(root("deep/er/C.mp4"), video("30000/1001") + oneSecond));
        QVERIFY(make(m_second + "/D.mov", video("25") + oneSecond + QStringList{"-timecode", "12:00:00:00"}));
        QVERIFY(copy(root("A001.mov"), root(".hidden.mov")));
        QVERIFY(copy(root("A001.mov"), root("sub/.cache/x.mp4")));
        QVERIFY(copy(root("A001.mov"), root("y.mxf.bak")));
        QVERIFY(copy(root("A001.mov"), root("noext")));
        QVERIFY(writeText(root("notes.txt"), "call sheet\n"));
    }

    void init()
    {
        const QString ini = m_dir.filePath(QString::fromLatin1(QTest::currentTestFunction()) + ".ini");
        QFile::remove(ini);
        m_state.reset();
        m_preferences = std::make_unique<Preferences>(ini);
        m_state = std::make_unique<AppState>(*m_preferences);
    }

    void scanFolderEdges_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("empty folder") << m_empty << QStringList{"Found 0 media files...", "Scan complete: 0 clips, 0 with timecode"};
        QTest::newRow("missing folder") << m_dir.filePath("missing") << QStringList();
        QTest::newRow("a file, not a folder") << root("notes.txt") << QStringList();
        QTest::newRow("trailing slash") << m_second + "/" << QStringList{"Found 1 media files...", "Reading 1/1: D.mov", "Scan complete: 1 clips, 1 with timecode"};
    }

    void scanFolderEdges()
    {
        QFETCH(QString, folder);
        QFETCH(QStringList, lines);
        QStringList reported;
        const QList<MediaClip> clips = MediaScanner(ToolLocations::platformDefault()).scanFolder(folder, [&](const QString &line) {
            reported.append(line);
        });
        QCOMPARE(reported, lines);
        QCOMPARE(clips.size(), qMax<qsizetype>(0, lines.size() - 2));
        if (!clips.isEmpty())
            QCOMPARE(clips.first().path, m_second + "/D.mov");
    }

    // Known paths are dropped from a scan; the clips already known stay first, the same records.
    void mergeDeduplicatesByPath()
    {
        QList<MediaClip> before{clip("/b", "10:00:00:00"), clip("/a", "10:00:00:00")}, scan;
        for (const char *path : {"/c", "/a", "/d", "/b"})
            scan.append(clip(path, "10:00:00:00"));
        m_state->setClips(before);
        mergeScannedClips(*m_state, scan, false);
        QCOMPARE(paths(m_state->clips()), (QStringList{"/b", "/a", "/c", "/d"}));
        for (qsizetype i = 0; i < before.size(); ++i)
            QCOMPARE(m_state->clips().at(i).id, before.at(i).id);
    }

    void userScanRunsBesideTheGuiThread()
    {
        m_state->setSessions(twoSessions());
        m_state->setSelectedSession(m_state->sessions().first());
        FootageScanner scanner(*m_state);
        QSignalSpy merged(&scanner, &FootageScanner::scanMerged);

        QStringList lines;
        bool allOnGuiThread = true;
        connect(m_state.get(), &AppState::scanProgressChanged, this, [&] {
            lines.append(m_state->scanProgress());
            allOnGuiThread = allOnGuiThread && QThread::currentThread() == thread();
        });
        QList<bool> scanningStates;
        connect(m_state.get(), &AppState::isScanningChanged, this, [&] {
            scanningStates.append(m_state->isScanning());
            allOnGuiThread = allOnGuiThread && QThread::currentThread() == thread();
        });
        int turnsWhileScanning = 0;
        QTimer ticker;
        connect(&ticker, &QTimer::timeout, this, [&] { turnsWhileScanning += m_state->isScanning(); });
        ticker.start(0);

        scanner.scanFootage(m_root);
        // Nothing has arrived yet: the scan runs elsewhere and posts back.
        QCOMPARE(m_state->footageFolders(), QStringList{m_root});
        QVERIFY(m_state->isScanning());
        QVERIFY(lines.isEmpty());
        QVERIFY(m_state->clips().isEmpty());

        QVERIFY(merged.wait(60000));
        QCOMPARE(merged.first().first().toString(), m_root);
        QVERIFY(allOnGuiThread);
        QVERIFY(turnsWhileScanning > 0);
        QCOMPARE(scanningStates, (QList<bool>{true, false}));
        QCOMPARE(lines.size(), 5);
        QCOMPARE(lines.first(), QStringLiteral("Found 3 media files..."));
        QCOMPARE(lines.last(), QStringLiteral("Scan complete: 3 clips, 2 with timecode"));
        QCOMPARE(m_state->clips().size(), 3);
        QStringList matched = paths(m_state->sessions().first().matchedClips, &MediaClip::filename);
        QCOMPARE(matched, (QStringList{"A001.mov", "B.MOV"})); // ordered by timecode
        QCOMPARE(paths(m_state->selectedSession()->matchedClips, &MediaClip::filename), matched);

        // The same folder again: nothing new, the folder is not saved twice, every session is
        // matched again, and the last line counts this scan's files.
        const QList<MediaClip> firstClips = m_state->clips();
        QSignalSpy sessionsChanged(m_state.get(), &AppState::sessionsChanged);
        lines.clear();
        scanner.scanFootage(m_root);
        QVERIFY(merged.wait(60000));
        QCOMPARE(m_state->footageFolders(), QStringList{m_root});
        QCOMPARE(m_state->clips().size(), 3);
        QCOMPARE(m_state->clips().first().id, firstClips.first().id);
        QCOMPARE(sessionsChanged.size(), 1);
        QCOMPARE(lines.last(), QStringLiteral("Scan complete: 3 clips, 2 with timecode"));
        QCOMPARE(m_state->scanProgress(), lines.last());
        QVERIFY(!m_state->isScanning());
    }

    void selectionDeletedDuringAScan()
    {
        m_state->setSessions(twoSessions());
        m_state->setSelectedSession(m_state->sessions().first());
        FootageScanner scanner(*m_state);
        QSignalSpy merged(&scanner, &FootageScanner::scanMerged);
        scanner.scanFootage(m_second);
        m_state->setSessions({m_state->sessions().at(1)});
        QVERIFY(merged.wait(60000));
        QVERIFY(!m_state->selectedSession());
        QCOMPARE(paths(m_state->sessions().first().matchedClips, &MediaClip::filename), QStringList{"D.mov"});
    }

    void rescanOfSavedFolders()
    {
        m_state->setFootageFolders({m_root, m_second, m_empty});
        m_state->setSessions(twoSessions());
        FootageScanner scanner(*m_state);
        QSignalSpy merged(&scanner, &FootageScanner::scanMerged);
        QSignalSpy scanning(m_state.get(), &AppState::isScanningChanged);
        scanner.rescanSavedFolders();
        QVERIFY(m_state->clips().isEmpty());
        while (merged.size() < 3)
            QVERIFY(merged.wait(60000));
        QStringList mergedFolders;
        for (const QList<QVariant> &arguments : merged)
            mergedFolders.append(arguments.first().toString());
        mergedFolders.sort();
        QStringList folders = m_state->footageFolders();
        folders.sort();
        QCOMPARE(mergedFolders, folders);
        QCOMPARE(scanning.size(), 0);
        QCOMPARE(m_state->clips().size(), 4);
        QCOMPARE(paths(m_state->sessions().at(0).matchedClips, &MediaClip::filename), (QStringList{"A001.mov", "B.MOV"}));
        QCOMPARE(paths(m_state->sessions().at(1).matchedClips, &MediaClip::filename), QStringList{"D.mov"});
        QVERIFY(m_state->scanProgress().startsWith("Scan complete: "));
    }

    void scannerGoneBeforeItsScanEnds()
    {
        auto scanner = std::make_unique<FootageScanner>(*m_state);
        scanner->scanFootage(m_second);
        scanner.reset();
        // The scan still ends and its progress still arrives; no merge follows.
        QTRY_COMPARE_WITH_TIMEOUT(m_state->scanProgress(), QStringLiteral("Scan complete: 1 clips, 1 with timecode"), 60000);
        QTest::qWait(50);
        QVERIFY(m_state->clips().isEmpty());
    }
};

QTEST_GUILESS_MAIN(FootageScannerTest)
#include "FootageScannerTest.moc"
