#include "MediaFixtures.h"
#include "support/TestData.h"

#include "media/FootageScanner.h"
#include "platform/Preferences.h"
#include "state/AppState.h"
#include "state/SessionLibrary.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>
#include <QThreadPool>

using namespace MediaFixtures;

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
        const QList<MediaClip> clips = m_scanner.scanFolder(m_dir.filePath(input), [&](const QString &line) { reported.append(line); });
        reported += names(clips, &MediaClip::path).replaceInStrings(m_dir.path() + u'/', QString());
        QCOMPARE(reported.join(QStringLiteral(" | ")), expected);
    }

    // Every scan makes new records; a merge keeps the known record of a path, first, and matches
    // every session again even when nothing is new (sessions may arrive after the clips).
    void mergeKeepsKnownClips()
    {
        const auto scan = [this](const QString &folder) { return m_scanner.scanFolder(folder, [](const QString &) {}); };
        const QList<MediaClip> known = scan(m_second);
        m_state->setClips(known);
        m_state->setSessions(twoSessions());
        SessionLibrary(*m_state).mergeScanned(scan(m_second), false);
        QCOMPARE(names(m_state->sessions().at(1).matchedClips, &MediaClip::id), names(known, &MediaClip::id));
        SessionLibrary(*m_state).mergeScanned(scan(m_dir.path()), false);
        QCOMPARE(m_state->clips().size(), 4);
        QCOMPARE(m_state->clips().first().id, known.first().id);
    }

    void userScansRunBesideTheGuiThread()
    {
        m_state->setSessions(twoSessions());
        m_state->setSelectedSession(m_state->sessions().first());
        FootageScanner scanner(*m_state, ToolLocations::platformDefault());
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

    void rescanOfSavedFolders()
    {
        m_state->setFootageFolders({m_dir.filePath("empty"), m_root, m_second});
        m_state->setSessions(twoSessions());
        FootageScanner scanner(*m_state, ToolLocations::platformDefault());
        QSignalSpy merged(&scanner, &FootageScanner::scanMerged);
        QSignalSpy scanning(m_state.get(), &AppState::isScanningChanged);
        scanner.rescanSavedFolders();
        QVERIFY(m_state->clips().isEmpty());
        QTRY_VERIFY2_WITH_TIMEOUT(merged.size() == 3, "not every saved folder was merged", 60000);
        QCOMPARE(scanning.size(), 0);
        QCOMPARE(m_state->clips().size(), 4);
        QCOMPARE(names(m_state->sessions().at(0).matchedClips), (QStringList{"A001.mov", "B.MOV"}));
        QCOMPARE(names(m_state->sessions().at(1).matchedClips), QStringList{"D.mov"});
    }

    void scannerGoneBeforeItsScanEnds()
    {
        auto scanner = std::make_unique<FootageScanner>(*m_state, ToolLocations::platformDefault());
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
