#include "ui/detail/SessionDetailView.h"

#include "state/AppState.h"
#include "ui/detail/AnalysisState.h"
#include "ui/detail/CoverageStrip.h"
#include "ui/detail/ExportActions.h"
#include "ui/detail/ExportNotice.h"
#include "ui/detail/MarkerList.h"
#include "ui/detail/MarkerRow.h"
#include "ui/detail/MatchedFootageList.h"
#include "ui/detail/PendingAnalyses.h"
#include "ui/detail/SessionHeader.h"
#include "ui/shell/ServiceLinks.h"
#include "ui/shell/ShellBackend.h"
#include "ui/transcript/SelectsModel.h"
#include "ui/transcript/TranscriptView.h"
#include "ui/widgets/CoalescedRefresh.h"
#include "ui/widgets/Theme.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QPointer>
#include <QTabBar>
#include <QTimer>
#include <QVBoxLayout>

namespace {

const QString markersTab = QStringLiteral("markers");
const QString transcriptTab = QStringLiteral("transcript");

QTabBar *viewPicker()
{
    auto *tabs = new QTabBar;
    tabs->setObjectName(QStringLiteral("viewPicker"));
    tabs->setAccessibleName(QStringLiteral("View"));
    tabs->setDrawBase(false);
    tabs->setExpanding(false);
    tabs->setFont(Theme::font(Theme::TextStyle::Caption, QFont::Medium));
    tabs->setCursor(Qt::PointingHandCursor);
    tabs->addTab(QString());
    tabs->addTab(QStringLiteral("Transcript"));
    return tabs;
}

} // namespace

SessionDetailEnvironment SessionDetailEnvironment::forBackend(ShellBackend &backend, const ServiceLinks &links, ExportEnvironment exports)
{
    return {[&backend](const QString &shareToken) { return backend.fetchTranscript(shareToken); },
            [&backend](ShootSession session, QList<QUrl> files, AnalysisState &analysis) {
                return backend.runAnalysis(std::move(session), std::move(files), analysis);
            },
            std::move(exports), links.domain};
}

SessionDetailView::SessionDetailView(AppState &state, Desktop &desktop, SessionDetailEnvironment environment,
                                     PendingAnalyses &pending, QWidget *parent)
    : QWidget(parent), m_state(state), m_pending(pending), m_loadTranscript(std::move(environment.loadTranscript)),
      m_selectedTab(markersTab), m_analysis(std::make_shared<AnalysisState>()), m_selects(new SelectsModel(this)),
      m_notice(new ExportNotice(desktop)), m_scroll(new QScrollArea), m_header(new SessionHeader(state, desktop, environment.serviceHost)),
      m_coverage(new CoverageStrip), m_footage(new MatchedFootageList), m_tabs(viewPicker()),
      m_markers(new MarkerList), m_transcriptPage(new QWidget), m_transcriptHolder(new QVBoxLayout(m_transcriptPage)),
      m_exports(new ExportActions(state, desktop, std::move(environment.exports), *m_selects)),
      m_analysisPanel(new AnalysisPanel(desktop, std::move(environment.runAnalysis)))
{
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    outer->addWidget(m_notice);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    // The column narrows with the window; a sideways scroll would hide the buttons' ends.
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    outer->addWidget(m_scroll);
    auto *content = new QWidget;
    content->setBackgroundRole(QPalette::Base);
    m_scroll->setWidget(content);

    m_transcriptPage->setObjectName(QStringLiteral("transcriptPage"));
    m_transcriptHolder->setContentsMargins(0, 0, 0, 0);
    m_transcriptHolder->setSpacing(0);
    auto *actions = new QVBoxLayout;
    actions->setSpacing(8);
    actions->addWidget(m_exports);
    actions->addWidget(m_analysisPanel);

    auto *column = new QVBoxLayout(content);
    column->setContentsMargins(24, 24, 24, 24);
    column->setSpacing(20);
    column->addWidget(m_header);
    column->addWidget(m_coverage);
    column->addWidget(m_footage);
    column->addWidget(m_tabs, 0, Qt::AlignLeft);
    column->addWidget(m_markers);
    column->addWidget(m_transcriptPage);
    column->addLayout(actions);
    column->addStretch(1);

    connect(m_tabs, &QTabBar::tabBarClicked, this, [this](int index) { selectTab(index == 1 ? transcriptTab : markersTab); });
    connect(m_exports, &ExportActions::reported, m_notice, &ExportNotice::report);
    connect(m_coverage, &CoverageStrip::markerClicked, this, &SessionDetailView::showMarkerRow);
    connect(m_header, &SessionHeader::sessionDeleted, this, [this](const QString &id) { m_memory.remove(id); });
    connect(&m_pending, &PendingAnalyses::requested, this, [this](const QString &sessionId) {
        if (sessionId == m_session.id)
            takePendingAnalysis();
    });
    auto *refreshing = new CoalescedRefresh(this, [this] { refresh(); });
    refreshing->watch(&m_state, &AppState::selectedSessionChanged);
    refresh();
}

SessionDetailView::~SessionDetailView() = default;

// Each part compares what it shows with the session, so a sync that changes nothing, or a
// click on the session already shown, rebuilds nothing.
void SessionDetailView::refresh()
{
    const std::optional<ShootSession> &selected = m_state.selectedSession();
    if (!selected)
        return;
    if (!m_showsSession || selected->id != m_session.id)
        switchTo(*selected);
    m_session = *selected;
    m_header->showSession(m_session);
    m_coverage->showSession(m_session);
    m_footage->showClips(m_session.matchedClips);
    m_markers->showMarkers(m_session.markers);
    m_exports->showSession(m_session);
    m_analysisPanel->showSession(m_session, m_analysis);
    updateTabs();
    takePendingAnalysis();
}

void SessionDetailView::switchTo(const ShootSession &session)
{
    if (m_showsSession)
        m_memory.insert(m_session.id, {m_selectedTab, m_selects->selection(), m_selects->transcript(), m_analysis});
    const SessionMemory memory = m_memory.value(session.id, {markersTab, {}, {}, std::make_shared<AnalysisState>()});
    m_showsSession = true;
    m_selectedTab = memory.selectedTab;
    m_selects->setSelection(memory.selection);
    m_selects->setTranscript(memory.transcript);
    m_analysis = memory.analysis;
    m_notice->dismiss();
    m_scroll->verticalScrollBar()->setValue(0);

    delete m_transcript; // at once, so a load it still waits for cannot report into the next session
    m_transcript = new TranscriptView(session, m_selects, m_loadTranscript);
    m_transcript->setObjectName(QStringLiteral("transcriptView"));
    m_transcriptHolder->addWidget(m_transcript);
}

void SessionDetailView::updateTabs()
{
    const QString markersLabel = QStringLiteral("Markers (%1)").arg(m_session.markers.size());
    if (m_tabs->tabText(0) != markersLabel)
        m_tabs->setTabText(0, markersLabel);
    const bool showsTranscript = m_selectedTab == transcriptTab;
    m_tabs->setCurrentIndex(showsTranscript ? 1 : 0);
    m_markers->setVisible(!showsTranscript);
    m_transcriptPage->setVisible(showsTranscript);
}

void SessionDetailView::takePendingAnalysis()
{
    const std::optional<ShootSession> &selected = m_state.selectedSession();
    if (!m_showsSession || !selected || selected->id != m_session.id)
        return;
    if (const std::optional<QList<QUrl>> files = m_pending.take(m_session.id))
        m_analysisPanel->runAnalysis(*files);
}

void SessionDetailView::selectTab(const QString &tab)
{
    m_selectedTab = tab == transcriptTab ? transcriptTab : markersTab;
    updateTabs();
}

void SessionDetailView::showMarkerRow(qsizetype index)
{
    selectTab(markersTab);
    MarkerRow *row = m_markers->rowAt(index);
    if (!row)
        return;
    // The tab may just have been switched: place the row once the column has its new height.
    const QPointer<MarkerRow> target(row);
    QTimer::singleShot(0, this, [this, target] {
        if (!target)
            return;
        m_scroll->ensureWidgetVisible(target, 0, 40);
        target->flash();
    });
}
