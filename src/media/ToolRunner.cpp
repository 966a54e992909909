#include "media/ToolRunner.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QProcess>
#include <QThreadPool>
#include <QtConcurrent/QtConcurrentRun>
#include <algorithm>
#include <atomic>

namespace {

std::atomic<qint64> runCount{0};
std::atomic<qint64> launchCount{0};
std::atomic<qint64> insideNanoseconds{0};

// How long the tool may write to a discarded pipe before those bytes are dropped; it bounds
// the memory a talkative tool can make us hold, not how long anything waits.
constexpr int drainIntervalMs = 200;

void take(QProcess &process, QProcess::ProcessChannel channel, ToolOutput mode, QByteArray &into)
{
    if (mode == ToolOutput::NullDevice)
        return;
    process.setReadChannel(channel);
    const QByteArray bytes = process.readAll();
    if (mode == ToolOutput::Captured)
        into += bytes;
}

ToolRun runProcess(const QString &executable, const QStringList &arguments,
                   ToolOutput standardOutput, ToolOutput standardError, std::chrono::milliseconds timeLimit)
{
    const QDeadlineTimer deadline(timeLimit);
    QProcess process;
    process.setProgram(executable);
    process.setArguments(arguments);
    // ffmpeg reads keyboard commands from its standard input; it must never see ours.
    process.setStandardInputFile(QProcess::nullDevice());
    if (standardOutput == ToolOutput::NullDevice)
        process.setStandardOutputFile(QProcess::nullDevice());
    if (standardError == ToolOutput::NullDevice)
        process.setStandardErrorFile(QProcess::nullDevice());

    ToolRun run;
    process.start(QIODevice::ReadOnly);
    if (!process.waitForStarted(-1))
        return run;
    run.launched = true;
    launchCount.fetch_add(1, std::memory_order_relaxed);

    // Waiting reads both pipes into QProcess's buffers as data arrives; emptying them between
    // waits keeps a discarded stream from growing without bound.
    const auto drain = [&] {
        take(process, QProcess::StandardOutput, standardOutput, run.standardOutput);
        take(process, QProcess::StandardError, standardError, run.standardError);
    };
    while (!process.waitForFinished(int(std::min<qint64>(drainIntervalMs, deadline.remainingTime())))
           && process.state() != QProcess::NotRunning) {
        drain();
        if (deadline.hasExpired()) {
            process.kill();
            process.waitForFinished(-1);
            run.standardOutput.clear();
            run.standardError.clear();
            run.timedOut = true;
            return run;
        }
    }
    drain();
    run.exitStatus = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    return run;
}

} // namespace

ToolRun runTool(const QString &executable, const QStringList &arguments,
                ToolOutput standardOutput, ToolOutput standardError, std::chrono::milliseconds timeLimit)
{
    QElapsedTimer timer;
    timer.start();
    runCount.fetch_add(1, std::memory_order_relaxed);
    ToolRun run = runProcess(executable, arguments, standardOutput, standardError, timeLimit);
    insideNanoseconds.fetch_add(timer.nsecsElapsed(), std::memory_order_relaxed);
    return run;
}

QThreadPool *toolThreadPool()
{
    static QThreadPool *pool = [] {
        auto *created = new QThreadPool;
        // The threads mostly wait on child processes, so more of them than cores is fine. The
        // pool is never destroyed: a scan still running at exit is abandoned, not waited for.
        created->setMaxThreadCount(8);
        return created;
    }();
    return pool;
}

QFuture<ToolRun> runToolAsync(const QString &executable, const QStringList &arguments,
                              ToolOutput standardOutput, ToolOutput standardError, std::chrono::milliseconds timeLimit)
{
    return QtConcurrent::run(toolThreadPool(), runTool, executable, arguments, standardOutput, standardError, timeLimit);
}

ToolRunStatistics toolRunStatistics()
{
    return {runCount.load(std::memory_order_relaxed), launchCount.load(std::memory_order_relaxed),
            insideNanoseconds.load(std::memory_order_relaxed)};
}
