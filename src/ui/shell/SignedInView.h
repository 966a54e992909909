#pragma once

#include "ui/detail/ExportEnvironment.h"
#include "ui/shell/ServiceLinks.h"

#include <QTimer>
#include <QWidget>

class AppState;
class CoalescedRefresh;
class Desktop;
class InlineSettingsView;
class PendingAnalyses;
class SessionDetailView;
class EmptyStateView;
class SessionListView;
class ShellBackend;
class QAction;
class QLabel;
class QStackedWidget;
class QToolBar;

// The main window's content while signed in: the session list beside the detail pane, the
// toolbar, and the triggers that keep the sessions current while it exists. A folder dropped on
// it is scanned as if chosen with "Scan Footage".
class SignedInView : public QWidget
{
    Q_OBJECT

public:
    SignedInView(AppState &state, ShellBackend &backend, Desktop &desktop, const ServiceLinks &links, ExportEnvironment exports,
                 QWidget *parent = nullptr);

    // The window shows this toolbar while the view exists.
    QToolBar *toolBar() const { return m_toolBar; }
    SessionListView *sessionList() const { return m_sessionList; }
    QWidget *currentDetail() const;

    SessionDetailView *sessionDetail() const { return m_sessionDetail; }

    void scanFootage();
    void syncSessions();
    // Asks for footage files or folders and analyses the media among them into a new session,
    // which becomes the selection; its screen takes the request and runs it.
    void analyseFootageFromScratch();

    static constexpr int syncIntervalMs = 30'000;

protected:
    void showEvent(QShowEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void refresh();

    AppState &m_state;
    ShellBackend &m_backend;
    Desktop &m_desktop;

    bool m_cameOnScreen = false;
    QTimer m_syncTimer;
    CoalescedRefresh *m_refresh = nullptr;
    QToolBar *m_toolBar = nullptr;
    QAction *m_scanAction = nullptr;
    PendingAnalyses *m_pendingAnalyses = nullptr;
    SessionListView *m_sessionList = nullptr;
    QStackedWidget *m_detail = nullptr;
    InlineSettingsView *m_settings = nullptr;
    SessionDetailView *m_sessionDetail = nullptr;
    EmptyStateView *m_empty = nullptr;
    QLabel *m_dropHighlight = nullptr;
};
