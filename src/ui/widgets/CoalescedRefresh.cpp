#include "ui/widgets/CoalescedRefresh.h"

CoalescedRefresh::CoalescedRefresh(QObject *parent, std::function<void()> refresh)
    : QObject(parent), m_refresh(std::move(refresh))
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, [this] { m_refresh(); });
}

void CoalescedRefresh::schedule()
{
    if (!m_timer.isActive())
        m_timer.start();
}
