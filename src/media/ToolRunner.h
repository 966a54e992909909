#pragma once

#include <QByteArray>
#include <QFuture>
#include <QString>
#include <QStringList>
#include <chrono>

class QThreadPool;

// What happens to one output stream of a tool.
enum class ToolOutput {
    Captured,   // read through a pipe and handed back
    Discarded,  // read through a pipe and thrown away
    NullDevice, // never reaches this process
};

struct ToolRun {
    // False when the executable could not be started (missing, not executable); nothing else
    // is then meaningful.
    bool launched = false;
    // True when the tool outlived its time limit and was killed; its output is then dropped.
    bool timedOut = false;
    // The exit code; -1 when the tool crashed, was killed or was never launched.
    int exitStatus = -1;
    QByteArray standardOutput; // empty unless captured
    QByteArray standardError;  // empty unless captured
};

// How long one ffprobe question about one file may take. A probe answers in well under a second;
// the margin is for a machine busy with other work. A file that keeps ffprobe longer (a FIFO,
// a dead network share) gives the probe's empty result instead of a scan that never ends.
inline constexpr std::chrono::milliseconds probeTimeLimit = std::chrono::seconds(10);

// The one way an external tool runs: exactly these arguments (no shell), standard input closed,
// both pipes drained while waiting so a chatty tool never stalls. A tool still running after
// `timeLimit` is killed and reports `timedOut` with nothing captured, so its caller takes its
// empty result. Blocks the calling thread until the tool exits, so it belongs on a worker thread.
ToolRun runTool(const QString &executable, const QStringList &arguments,
                ToolOutput standardOutput, ToolOutput standardError, std::chrono::milliseconds timeLimit);

// Blocking tool work runs on a pool of its own, so that scans and analyses waiting on child
// processes never take the threads of QtConcurrent's global pool.
QThreadPool *toolThreadPool();

// runTool on the tool pool; a GUI-thread coroutine co_awaits the future.
QFuture<ToolRun> runToolAsync(const QString &executable, const QStringList &arguments,
                              ToolOutput standardOutput, ToolOutput standardError, std::chrono::milliseconds timeLimit);

// Totals over every runTool call of this process, on any thread: how often a tool was asked
// for, how often it actually started, and the wall time spent inside runTool.
struct ToolRunStatistics {
    qint64 runs = 0;
    qint64 launches = 0;
    qint64 nanoseconds = 0;
};
ToolRunStatistics toolRunStatistics();
