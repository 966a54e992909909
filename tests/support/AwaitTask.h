#pragma once

#include <QCoro/QCoroTask>
#include <QEventLoop>
#include <QTimer>
#include <exception>
#include <optional>

// Runs a task (a service or keyring call, an analysis with ffmpeg) to its end on a local event
// loop and rethrows what it threw. One still running after two minutes ends the test program,
// since its coroutine refers to this frame and cannot be left behind.
inline void awaitTask(QCoro::Task<> task)
{
    QEventLoop loop;
    bool done = false;
    std::exception_ptr thrown;
    auto run = [&]() -> QCoro::Task<> {
        try {
            co_await std::move(task);
        } catch (...) {
            thrown = std::current_exception();
        }
        done = true;
        loop.quit();
    };
    auto running = run();
    if (!done) {
        QTimer::singleShot(120000, &loop, [] { qFatal("an awaited task did not finish within 120 s"); });
        loop.exec();
    }
    if (thrown)
        std::rethrow_exception(thrown);
}

// The same for a task with a value, which it gives.
template<typename T>
T awaitTask(QCoro::Task<T> task)
{
    std::optional<T> value;
    auto keep = [](QCoro::Task<T> task, std::optional<T> &value) -> QCoro::Task<> { value = co_await std::move(task); };
    awaitTask(keep(std::move(task), value));
    return std::move(*value);
}
