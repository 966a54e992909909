#pragma once

#include "media/MediaScanner.h"
#include "model/MediaClip.h"

#include <QCoro/QCoroTask>
#include <QList>
#include <QObject>
#include <QString>
#include <stop_token>

class AppState;

// Turns footage folders into clips in AppState. Lives on the GUI thread next to the state it
// writes: each scan walks its folder on the tool pool, its progress lines are posted back to
// this thread as they come, and its merge runs here when the scan ends. Several scans may run
// at once; their merges are serialised by this thread's event queue. Each merge also replaces
// the scanned folder's part of the unreadable files the state lists.
class FootageScanner : public QObject
{
    Q_OBJECT

public:
    FootageScanner(AppState &state, ToolLocations tools, ScanOptions options, QObject *parent = nullptr);

    // The user chose `folder` for "Scan Footage": it joins the saved folders, the state shows
    // a scan until this scan's merge, and the clips are merged when the scan ends.
    void scanFootage(const QString &folder);
    // Asks the user's scan to start no further file; it ends as soon as the files being read
    // are, and what it read is merged. Returns at once.
    void cancelUserScan();

    // One scan per saved folder, all started now without waiting; each merges when it ends.
    // These scans leave `isScanning` alone.
    void rescanSavedFolders();

Q_SIGNALS:
    // The clips of a scan of `folder` have been merged and the sessions re-matched.
    void scanMerged(const QString &folder);

private:
    QCoro::Task<> scanAndMerge(QString folder, bool userStarted, std::stop_token stop);

    AppState &m_state;
    MediaScanner m_scanner;
    ScanOptions m_options;
    std::stop_source m_userScan;
};
