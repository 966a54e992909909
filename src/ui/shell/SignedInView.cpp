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
#include "ui/widgets/Theme.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMimeData>
#include <QPointer>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolBar>

namespace {

// The one local folder a drag carries, or nothing: files, several items and remote addresses are
// not for scanning.
QString droppedFolder(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    if (urls.size() != 1 || !urls.constFirst().isLocalFile())
        return QString();
    const QFileInfo folder(urls.constFirst().toLocalFile());
    return folder.isDir() ? folder.absoluteFilePath() : QString();
}

} // namespace

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

    setAcceptDrops(true);
    m_dropHighlight = new QLabel(QStringLiteral("Drop the folder to scan its footage"), this);
    m_dropHighlight->setObjectName(QStringLiteral("dropHighlight"));
    m_dropHighlight->setAlignment(Qt::AlignCenter);
    m_dropHighlight->setFont(Theme::font(Theme::TextStyle::Headline));
    m_dropHighlight->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_dropHighlight->hide();

    m_refresh = new CoalescedRefresh(this, [this] { refresh(); });
    m_refresh->watch(&m_state, &AppState::showSettingsChanged, &AppState::selectedSessionChanged, &AppState::isScanningChanged);
    refresh();
}

void SignedInView::dragEnterEvent(QDragEnterEvent *event)
{
    // While a scan runs "Scan Footage" is off, and so is dropping.
    if (m_state.isScanning() || droppedFolder(*event->mimeData()).isEmpty())
        return;
    event->acceptProposedAction();
    // A veil of the window's colour, so the line reads over whatever the screens show.
    QColor veil = palette().color(QPalette::Window);
    veil.setAlpha(225);
    m_dropHighlight->setStyleSheet(QStringLiteral("QLabel { background: %1; border: 2px solid %2; border-radius: 12px; color: %3; }")
                                       .arg(Theme::css(veil), Theme::css(Theme::Colour::indigo), Theme::css(Theme::indigoText())));
    m_dropHighlight->setGeometry(rect().adjusted(8, 8, -8, -8));
    m_dropHighlight->raise();
    m_dropHighlight->show();
}

void SignedInView::dragLeaveEvent(QDragLeaveEvent *event)
{
    QWidget::dragLeaveEvent(event);
    m_dropHighlight->hide();
}

void SignedInView::dropEvent(QDropEvent *event)
{
    m_dropHighlight->hide();
    const QString folder = droppedFolder(*event->mimeData());
    if (m_state.isScanning() || folder.isEmpty())
        return;
    event->acceptProposedAction();
    m_backend.scanFootage(folder);
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
