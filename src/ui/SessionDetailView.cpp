#include "ui/SessionDetailView.h"

#include "state/AppState.h"
#include "ui/CoalescedRefresh.h"
#include "ui/Theme.h"

#include <QLabel>
#include <QVBoxLayout>

SessionDetailView::SessionDetailView(AppState &state, QWidget *parent) : QWidget(parent), m_state(state)
{
    auto *stack = new QVBoxLayout(this);
    stack->setContentsMargins(32, 32, 32, 32);
    stack->setSpacing(8);
    m_title = new QLabel;
    m_title->setObjectName(QStringLiteral("detailTitle"));
    m_title->setFont(Theme::pixelFont(24, QFont::Bold));
    m_title->setWordWrap(true);
    m_summary = Theme::label(QString(), Theme::TextStyle::Body, true);
    m_summary->setObjectName(QStringLiteral("detailSummary"));
    stack->addWidget(m_title);
    stack->addWidget(m_summary);
    stack->addStretch(1);

    m_refresh = new CoalescedRefresh(this, [this] { refresh(); });
    m_refresh->watch(&m_state, &AppState::selectedSessionChanged);
    refresh();
}

void SessionDetailView::refresh()
{
    const auto &session = m_state.selectedSession();
    if (!session)
        return;
    m_title->setText(session->title);
    m_summary->setText(QStringLiteral("%1 markers · %2 matched clips").arg(session->markers.size()).arg(session->matchedClips.size()));
}
