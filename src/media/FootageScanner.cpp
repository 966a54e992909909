#include "media/FootageScanner.h"

#include "media/ToolRunner.h"
#include "state/AppState.h"
#include "state/SessionLibrary.h"

#include <QCoreApplication>
#include <QCoro/QCoroFuture>
#include <QDir>
#include <QPointer>
#include <QtConcurrent/QtConcurrentRun>

namespace {

// A progress callback for the scanning thread: each line is queued to the GUI thread and
// stored there; the scan never waits for it.
std::function<void(const QString &)> progressPoster(AppState &state)
{
    const QPointer<AppState> target(&state);
    return [target](const QString &line) {
        if (QCoreApplication *app = QCoreApplication::instance()) {
            QMetaObject::invokeMethod(app, [target, line] {
                if (target)
                    target->setScanProgress(line);
            }, Qt::QueuedConnection);
        }
    };
}

// The worker gets its own copy of the scanner, so nothing it uses can vanish under it. Kept out
// of the coroutine: g++ 12 destroys temporaries of a co_await statement twice.
QFuture<FolderScan> scanOnToolPool(const MediaScanner &scanner, const QString &folder, const ScanOptions &options,
                                   const std::function<void(const QString &)> &progress, std::stop_token stop)
{
    return QtConcurrent::run(toolThreadPool(), [scanner, folder, options, progress, stop] {
        return scanner.scanFolder(folder, options, progress, stop);
    });
}

// The unreadable files of other folders, then this scan's.
QStringList unreadableAfter(const QStringList &before, const QString &folder, const QStringList &found)
{
    const QString inside = QDir::cleanPath(QDir(folder).absolutePath()) + u'/';
    QStringList after;
    for (const QString &path : before) {
        if (!path.startsWith(inside))
            after.append(path);
    }
    return after + found;
}

} // namespace

FootageScanner::FootageScanner(AppState &state, ToolLocations tools, ScanOptions options, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_scanner(std::move(tools))
    , m_options(std::move(options))
{
}

void FootageScanner::scanFootage(const QString &folder)
{
    m_state.addFootageFolder(folder);
    m_state.setScanning(true);
    m_userScan = std::stop_source();
    scanAndMerge(folder, true, m_userScan.get_token());
}

void FootageScanner::cancelUserScan()
{
    m_userScan.request_stop();
}

void FootageScanner::rescanSavedFolders()
{
    for (const QString &folder : m_state.footageFolders())
        scanAndMerge(folder, false, std::stop_token());
}

QCoro::Task<> FootageScanner::scanAndMerge(QString folder, bool userStarted, std::stop_token stop)
{
    const QPointer<FootageScanner> self(this);
    QFuture<FolderScan> scanning = scanOnToolPool(m_scanner, folder, m_options, progressPoster(m_state), stop);
    const FolderScan scan = co_await scanning;
    if (!self)
        co_return;
    SessionLibrary(m_state).mergeScanned(scan.clips, userStarted);
    const QStringList unreadable = unreadableAfter(m_state.unreadableFootage(), folder, scan.unreadable);
    if (unreadable != m_state.unreadableFootage())
        m_state.setUnreadableFootage(unreadable);
    Q_EMIT scanMerged(folder);
}
