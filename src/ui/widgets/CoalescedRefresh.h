#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

// Runs a view's refresh once per event-loop turn, however many change signals arrive before it:
// a sync that assigns the session list hundreds of times repaints once.
class CoalescedRefresh : public QObject
{
    Q_OBJECT

public:
    CoalescedRefresh(QObject *parent, std::function<void()> refresh);

    void schedule();

    // Schedules on every emission of each given signal of `sender`.
    template <typename Sender, typename... Signals>
    void watch(const Sender *sender, Signals... signalsToWatch)
    {
        (connect(sender, signalsToWatch, this, &CoalescedRefresh::schedule), ...);
    }

private:
    QTimer m_timer;
    std::function<void()> m_refresh;
};
