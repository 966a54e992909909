#pragma once

#include <QWidget>

class AppState;
class CoalescedRefresh;
class QLabel;

// The detail pane of the selected session: its title and counts. The full screen with markers,
// footage and exports grows here.
class SessionDetailView : public QWidget
{
    Q_OBJECT

public:
    explicit SessionDetailView(AppState &state, QWidget *parent = nullptr);

private:
    void refresh();

    AppState &m_state;
    CoalescedRefresh *m_refresh = nullptr;
    QLabel *m_title = nullptr;
    QLabel *m_summary = nullptr;
};
