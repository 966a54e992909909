#include "media/FootageScanner.h"

#include "media/ToolRunner.h"
#include "state/AppState.h"
#include "state/SessionLibrary.h"

#include <QCoreApplication>
#include <QCoro/QCoroFuture>
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
QFuture<QList<MediaClip>> scanOnToolPool(const MediaScanner &scanner, const QString &folder,
                                         const std::function<void(const QString &)> &progress)
{
    return QtConcurrent::run(toolThreadPool(), [scanner, folder, progress] { return scanner.scanFolder(folder, progress); });
}

} // namespace

FootageScanner::FootageScanner(AppState &state, ToolLocations tools, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_scanner(std::move(tools))
{
}

void FootageScanner::scanFootage(const QString &folder)
{
    m_state.addFootageFolder(folder);
    m_state.setScanning(true);
    scanAndMerge(folder, true);
}

void FootageScanner::rescanSavedFolders()
{
    for (const QString &folder : m_state.footageFolders())
        scanAndMerge(folder, false);
}

QCoro::Task<> FootageScanner::scanAndMerge(QString folder, bool userStarted)
{
    const QPointer<FootageScanner> self(this);
    QFuture<QList<MediaClip>> scan = scanOnToolPool(m_scanner, folder, progressPoster(m_state));
    const QList<MediaClip> clips = co_await scan;
    if (!self)
        co_return;
    SessionLibrary(m_state).mergeScanned(clips, userStarted);
    Q_EMIT scanMerged(folder);
}
