#pragma once

#include "media/MediaScanner.h"
#include "model/MediaClip.h"

#include <QCoro/QCoroTask>
#include <QList>
#include <QObject>
#include <QString>

class AppState;

// Turns footage folders into clips in AppState. Lives on the GUI thread next to the state it
// writes: each scan walks its folder on the tool pool, its progress lines are posted back to
// this thread as they come, and its merge runs here when the scan ends. Several scans may run
// at once; their merges are serialised by this thread's event queue.
class FootageScanner : public QObject
{
    Q_OBJECT

public:
    FootageScanner(AppState &state, ToolLocations tools, QObject *parent = nullptr);

    // The user chose `folder` for "Scan Footage": it joins the saved folders, the state shows
    // a scan until this scan's merge, and the clips are merged when the scan ends.
    void scanFootage(const QString &folder);

    // One scan per saved folder, all started now without waiting; each merges when it ends.
    // These scans leave `isScanning` alone.
    void rescanSavedFolders();

Q_SIGNALS:
    // The clips of a scan of `folder` have been merged and the sessions re-matched.
    void scanMerged(const QString &folder);

private:
    QCoro::Task<> scanAndMerge(QString folder, bool userStarted);

    AppState &m_state;
    MediaScanner m_scanner;
};
