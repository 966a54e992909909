#include "ui/shell/SignedInView.h"

#include "analysis/AnalysisService.h"
#include "platform/Desktop.h"
#include "state/AppState.h"
#include "state/SessionLibrary.h"
#include "ui/detail/PendingAnalyses.h"
#include "ui/detail/SessionDetailView.h"
#include "ui/sessions/SessionListView.h"
#include "ui/settings/InlineSettingsView.h"
#include "ui/shell/EmptyStateView.h"
#include "ui/shell/ShellBackend.h"
#include "ui/widgets/CoalescedRefresh.h"
#include "ui/widgets/Icons.h"

#include <QAction>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPointer>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolBar>

SignedInView::SignedInView(AppState &state, ShellBackend &backend, Desktop &desktop, const ServiceLinks &links, ExportEnvironment exports,
                           QWidget *parent)
    : QWidget(parent), m_state(state), m_backend(backend), m_desktop(desktop)
{
    m_sessionList = new SessionListView(m_state, m_backend, m_desktop, links.domain);
    m_sessionList->setMinimumWidth(220);

    m_detail = new QStackedWidget;
    m_detail->setObjectName(QStringLiteral("detail"));
    m_detail->setAutoFillBackground(true);
    m_detail->setBackgroundRole(QPalette::Base);
    m_settings = new InlineSettingsView(m_state, m_backend, m_desktop, links);
    m_pendingAnalyses = new PendingAnalyses(this);
    m_sessionDetail = new SessionDetailView(m_state, m_desktop, SessionDetailEnvironment::forBackend(m_backend, links, std::move(exports)),
                                            *m_pendingAnalyses);
    m_empty = new EmptyStateView;
    m_detail->addWidget(m_settings);
    m_detail->addWidget(m_sessionDetail);
    m_detail->addWidget(m_empty);

    auto *split = new QSplitter(Qt::Horizontal);
    split->setChildrenCollapsible(false);
    split->setHandleWidth(1);
    split->addWidget(m_sessionList);
    split->addWidget(m_detail);
    split->setStretchFactor(1, 1);
    split->setSizes({280, 720});
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(split);

    m_toolBar = new QToolBar(QStringLiteral("Toolbar"));
    m_toolBar->setObjectName(QStringLiteral("mainToolbar"));
    m_toolBar->setMovable(false);
    m_toolBar->setFloatable(false);
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_toolBar->setIconSize(QSize(16, 16));
    m_scanAction = m_toolBar->addAction(Icons::symbol(QStringLiteral("folder.badge.gearshape")), QStringLiteral("Scan Footage"),
                                        this, &SignedInView::scanFootage);
    m_toolBar->addAction(Icons::symbol(QStringLiteral("arrow.triangle.2.circlepath")), QStringLiteral("Sync"), this,
                         &SignedInView::syncSessions);
    m_toolBar->addAction(Icons::symbol(QStringLiteral("sparkles")), QStringLiteral("Analyse Footage"), this,
                         &SignedInView::analyseFootageFromScratch);
    // Owned by this view even while the window shows it, so it goes when the view goes.
    connect(this, &QObject::destroyed, m_toolBar, &QObject::deleteLater);

    m_syncTimer.setInterval(syncIntervalMs);
    connect(&m_syncTimer, &QTimer::timeout, this, &SignedInView::syncSessions);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState applicationState) {
        if (applicationState == Qt::ApplicationActive)
            syncSessions();
    });

    m_refresh = new CoalescedRefresh(this, [this] { refresh(); });
    m_refresh->watch(&m_state, &AppState::showSettingsChanged, &AppState::selectedSessionChanged, &AppState::isScanningChanged);
    refresh();
}

QWidget *SignedInView::currentDetail() const
{
    return m_detail->currentWidget();
}

void SignedInView::refresh()
{
    if (m_state.showSettings())
        m_detail->setCurrentWidget(m_settings);
    else if (m_state.selectedSession())
        m_detail->setCurrentWidget(m_sessionDetail);
    else
        m_detail->setCurrentWidget(m_empty);
    m_scanAction->setEnabled(!m_state.isScanning());
}

void SignedInView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_cameOnScreen)
        return;
    m_cameOnScreen = true;
    m_syncTimer.start();
    syncSessions();
    m_backend.rescanSavedFolders();
}

void SignedInView::scanFootage()
{
    QPointer<SignedInView> self(this);
    m_desktop.chooseFolder(QStringLiteral("Select your footage folder"), [self](const QString &path) {
        if (!self)
            return;
        self->m_backend.scanFootage(path);
    });
}

void SignedInView::syncSessions()
{
    m_backend.syncSessions();
}

void SignedInView::analyseFootageFromScratch()
{
    QPointer<SignedInView> self(this);
    m_desktop.chooseFiles({QStringLiteral("Select footage files or a folder to analyse with AI"), true}, [self](const QList<QUrl> &chosen) {
        if (!self)
            return;
        const QList<QUrl> files = Analysis::collectMediaFiles(chosen);
        if (files.isEmpty())
            return;
        const ShootSession session = Analysis::newAnalysisSession(files, self->m_state.now());
        SessionLibrary(self->m_state).addAnalysisSession(session);
        self->m_pendingAnalyses->request(session.id, files);
    });
}
