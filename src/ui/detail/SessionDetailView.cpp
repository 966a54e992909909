#include "ui/detail/SessionDetailView.h"

#include "analysis/PendingAnalyses.h"
#include "export/OtioTimeline.h"
#include "export/PremiereXml.h"
#include "export/ResolveEdl.h"
#include "export/SelectsXml.h"
#include "media/ToolRunner.h"
#include "platform/AtomicFile.h"
#include "platform/Desktop.h"
#include "platform/ProcessWorkspace.h"
#include "state/AppState.h"
#include "state/SessionLibrary.h"
#include "ui/widgets/CoalescedRefresh.h"
#include "ui/widgets/Icons.h"
#include "ui/detail/AnalysisState.h"
#include "ui/detail/MarkerRow.h"
#include "ui/shell/ServiceLinks.h"
#include "ui/sessions/SessionListLogic.h"
#include "ui/shell/ShellBackend.h"
#include "ui/widgets/Theme.h"
#include "ui/widgets/TrimSpacesAndTabs.h"
#include "ui/transcript/SelectsModel.h"
#include "ui/transcript/TranscriptView.h"

#include <QCoro/QCoroFuture>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

namespace {

const QString markersTab = QStringLiteral("markers");
const QString transcriptTab = QStringLiteral("transcript");
const QColor amber(229, 161, 0);
const QColor premiereBlue(0, 0, 214);
const QColor green(61, 170, 109);

void clearLayout(QVBoxLayout *layout)
{
    while (QLayoutItem *item = layout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
}

// Rows are laid out in a list not yet on screen, which then replaces the old one whole: adding
// them one by one to the visible column would lay the column out again for each row.
QWidget *detachedList(QVBoxLayout *&rows, int spacing)
{
    auto *list = new QWidget;
    rows = new QVBoxLayout(list);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(spacing);
    return list;
}

void replaceContent(QVBoxLayout *holder, QWidget *content)
{
    clearLayout(holder);
    holder->addWidget(content);
}

QLabel *heading(const QString &text, const QColor &color)
{
    QLabel *label = Theme::label(text, Theme::TextStyle::Caption);
    label->setFont(Theme::font(Theme::TextStyle::Caption, QFont::Bold));
    Theme::setTextColor(label, color);
    return label;
}

QLabel *symbolLabel(const QString &symbol, const QColor &color, int size)
{
    auto *label = new QLabel;
    label->setPixmap(Icons::symbol(symbol, color).pixmap(size, size));
    return label;
}

// A symbol beside its text, like a labelled icon.
QWidget *iconLabel(const QString &symbol, const QString &text, const QString &name)
{
    auto *widget = new QWidget;
    auto *row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(5);
    row->addWidget(symbolLabel(symbol, Theme::color(Rgb{128, 128, 133}), 14));
    QLabel *label = Theme::label(text, Theme::TextStyle::Body);
    label->setObjectName(name);
    row->addWidget(label);
    return widget;
}

// A filled button in `tint` with white text; disabled it turns grey.
void makeProminent(QPushButton *button, const QColor &tint)
{
    button->setIconSize(QSize(16, 16));
    button->setFont(Theme::font(Theme::TextStyle::Body, QFont::DemiBold));
    button->setCursor(Qt::PointingHandCursor);
    button->setStyleSheet(QStringLiteral("QPushButton { color: white; background: %1; border: none; border-radius: 6px; padding: 8px 12px; }"
                                         "QPushButton:pressed { background: %2; }"
                                         "QPushButton:disabled { color: white; background: rgb(142,142,147); }")
                              .arg(tint.name(), tint.darker(125).name()));
}

QPushButton *prominentButton(const QString &text, const QString &symbol, const QColor &tint)
{
    auto *button = new QPushButton(Icons::symbol(symbol, Qt::white), text);
    makeProminent(button, tint);
    return button;
}

QToolButton *iconButton(const QString &symbol, const QColor &color, const QString &tip)
{
    auto *button = new QToolButton;
    button->setIcon(Icons::symbol(symbol, color));
    button->setIconSize(QSize(18, 18));
    button->setAutoRaise(true);
    button->setToolTip(tip);
    button->setCursor(Qt::PointingHandCursor);
    return button;
}

QWidget *footageRow(const MediaClip &clip, const QPixmap &film)
{
    auto *row = new QWidget;
    row->setObjectName(QStringLiteral("footageRow"));
    row->setAttribute(Qt::WA_StyledBackground);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(10);
    auto *icon = new QLabel;
    icon->setPixmap(film);
    layout->addWidget(icon);
    auto *names = new QVBoxLayout;
    names->setSpacing(2);
    auto *name = new QLabel(clip.filename);
    name->setFont(Theme::pixelFont(13, QFont::Medium));
    names->addWidget(name);
    QLabel *timecode = Theme::label(clip.timecode.value_or(QStringLiteral("No TC")), Theme::TextStyle::Caption, true);
    timecode->setObjectName(QStringLiteral("footageTimecode"));
    names->addWidget(timecode);
    layout->addLayout(names, 1);
    layout->addWidget(Theme::label(QString::asprintf("%.0fs", clip.duration), Theme::TextStyle::Caption, true));
    return row;
}

// The run holds its analysis state, so the screen may switch sessions or close while it goes on.
QCoro::Task<> runHoldingState(AnalysisRunner run, ShootSession session, QList<QUrl> files,
                              std::shared_ptr<AnalysisState> analysis)
{
    co_await run(std::move(session), std::move(files), *analysis);
}

} // namespace

SessionDetailEnvironment SessionDetailEnvironment::forBackend(ShellBackend &backend, const ServiceLinks &links)
{
    return {[&backend](const QString &shareToken) { return backend.fetchTranscript(shareToken); },
            [&backend](ShootSession session, QList<QUrl> files, AnalysisState &analysis) {
                return backend.runAnalysis(std::move(session), std::move(files), analysis);
            },
            std::make_shared<ProcessWorkspace>(), QDir::tempPath(), EditorLocations::forThisPlatform(), links.domain};
}

SessionDetailView::SessionDetailView(AppState &state, Desktop &desktop, SessionDetailEnvironment environment,
                                     PendingAnalyses &pending, QWidget *parent)
    : QWidget(parent), m_state(state), m_desktop(desktop), m_environment(std::move(environment)), m_pending(pending),
      m_selectedTab(markersTab), m_analysis(std::make_shared<AnalysisState>())
{
    m_selects = new SelectsModel(this);
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto *scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    outer->addWidget(scroll);
    auto *content = new QWidget;
    content->setBackgroundRole(QPalette::Base);
    scroll->setWidget(content);
    auto *column = new QVBoxLayout(content);
    column->setContentsMargins(24, 24, 24, 24);
    column->setSpacing(20);

    auto *titleRow = new QHBoxLayout;
    m_title = new QLabel;
    m_title->setObjectName(QStringLiteral("detailTitle"));
    m_title->setFont(Theme::pixelFont(22, QFont::Bold));
    m_title->setWordWrap(true);
    m_title->installEventFilter(this);
    m_titleField = new QLineEdit;
    m_titleField->setObjectName(QStringLiteral("detailTitleField"));
    m_titleField->setPlaceholderText(QStringLiteral("Session name"));
    m_titleField->setFont(Theme::pixelFont(22));
    connect(m_titleField, &QLineEdit::textChanged, this, &SessionDetailView::setNewTitle);
    connect(m_titleField, &QLineEdit::returnPressed, this, &SessionDetailView::renameSession);
    m_renameButton = iconButton(QStringLiteral("pencil"), Theme::indigo(), QStringLiteral("Rename"));
    m_renameButton->setObjectName(QStringLiteral("renameButton"));
    connect(m_renameButton, &QToolButton::clicked, this, [this] { m_isRenaming ? renameSession() : startRenaming(); });
    QToolButton *deleteButton = iconButton(QStringLiteral("trash"), Theme::destructive(), QStringLiteral("Delete"));
    deleteButton->setObjectName(QStringLiteral("deleteButton"));
    connect(deleteButton, &QToolButton::clicked, this, &SessionDetailView::deleteSession);
    titleRow->addWidget(m_title, 1);
    titleRow->addWidget(m_titleField, 1);
    titleRow->addWidget(m_renameButton);
    titleRow->addWidget(deleteButton);
    column->addLayout(titleRow);

    const auto holder = [column](QWidget *&widget, QVBoxLayout *&layout, int spacing) {
        widget = new QWidget;
        layout = new QVBoxLayout(widget);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(spacing);
        column->addWidget(widget);
    };
    holder(m_summary, m_summaryHolder, 0);
    holder(m_footage, m_footageHolder, 6);

    m_tabs = new QTabBar;
    m_tabs->setObjectName(QStringLiteral("viewPicker"));
    m_tabs->setAccessibleName(QStringLiteral("View"));
    m_tabs->setDrawBase(false);
    m_tabs->setExpanding(false);
    m_tabs->setFont(Theme::font(Theme::TextStyle::Caption, QFont::Medium));
    m_tabs->setCursor(Qt::PointingHandCursor);
    m_tabs->addTab(QString());
    m_tabs->addTab(QStringLiteral("Transcript"));
    connect(m_tabs, &QTabBar::tabBarClicked, this, [this](int index) { selectTab(index == 1 ? transcriptTab : markersTab); });
    column->addWidget(m_tabs, 0, Qt::AlignLeft);

    holder(m_markers, m_markersHolder, 4);
    QWidget *transcriptPage = nullptr;
    holder(transcriptPage, m_transcriptHolder, 0);
    transcriptPage->setObjectName(QStringLiteral("transcriptPage"));

    m_selectsSection = new QWidget;
    m_selectsSection->setObjectName(QStringLiteral("selectsSection"));
    auto *selects = new QVBoxLayout(m_selectsSection);
    selects->setContentsMargins(0, 0, 0, 0);
    selects->setSpacing(6);
    selects->addWidget(heading(QStringLiteral("SELECTS"), amber));
    m_selectsCount = Theme::label(QString(), Theme::TextStyle::Caption, true);
    m_selectsCount->setObjectName(QStringLiteral("selectsCount"));
    selects->addWidget(m_selectsCount);
    QPushButton *selectsButton = prominentButton(QStringLiteral("Open selects in Premiere Pro"), QStringLiteral("film"), amber);
    connect(selectsButton, &QPushButton::clicked, this, &SessionDetailView::exportSelectsToPremiereAction);
    selects->addWidget(selectsButton);
    column->addWidget(m_selectsSection);

    auto *actions = new QVBoxLayout;
    actions->setSpacing(8);
    QPushButton *resolve = prominentButton(QStringLiteral("Open in DaVinci Resolve"), QStringLiteral("play.circle.fill"), Theme::indigo());
    connect(resolve, &QPushButton::clicked, this, &SessionDetailView::openInResolve);
    QPushButton *premiere = prominentButton(QStringLiteral("Open in Premiere Pro"), QStringLiteral("play.circle"), premiereBlue);
    connect(premiere, &QPushButton::clicked, this, &SessionDetailView::openInPremiere);
    auto *saves = new QHBoxLayout;
    auto *saveEDL = new QPushButton(Icons::symbol(QStringLiteral("arrow.down.doc")), QStringLiteral("Save EDL"));
    connect(saveEDL, &QPushButton::clicked, this, &SessionDetailView::exportEDL);
    auto *saveXML = new QPushButton(Icons::symbol(QStringLiteral("arrow.down.doc")), QStringLiteral("Save XML"));
    connect(saveXML, &QPushButton::clicked, this, &SessionDetailView::exportXML);
    for (QPushButton *save : {saveEDL, saveXML}) {
        save->setCursor(Qt::PointingHandCursor);
        save->setStyleSheet(QStringLiteral("QPushButton { padding: 6px 12px; border-radius: 6px; border: 1px solid palette(mid); background: palette(button); }"
                                           "QPushButton:pressed { background: palette(midlight); }"));
    }
    saves->addWidget(saveEDL, 1);
    saves->addWidget(saveXML, 1);
    m_analyseButton = new QPushButton;
    m_analyseButton->setObjectName(QStringLiteral("analyseButton"));
    makeProminent(m_analyseButton, green);
    connect(m_analyseButton, &QPushButton::clicked, this, &SessionDetailView::analyseFootage);
    m_analysisResults = new QWidget;
    m_analysisResultsLayout = new QVBoxLayout(m_analysisResults);
    m_analysisResultsLayout->setContentsMargins(0, 0, 0, 0);
    m_analysisResultsLayout->setSpacing(2);
    actions->addWidget(resolve);
    actions->addWidget(premiere);
    actions->addLayout(saves);
    actions->addWidget(m_analyseButton);
    actions->addWidget(m_analysisResults);
    column->addLayout(actions);
    column->addStretch(1);

    connect(m_selects, &SelectsModel::selectionChanged, this, &SessionDetailView::updateSelects);
    connect(&m_pending, &PendingAnalyses::requested, this, [this](const QString &sessionId) {
        if (sessionId == m_session.id)
            takePendingAnalysis();
    });
    m_refresh = new CoalescedRefresh(this, [this] { refresh(); });
    m_refresh->watch(&m_state, &AppState::selectedSessionChanged);
    updateAnalysis();
    refresh();
}

void SessionDetailView::refresh()
{
    const std::optional<ShootSession> &selected = m_state.selectedSession();
    if (!selected)
        return;
    if (!m_showsSession || selected->id != m_session.id)
        showSession(*selected);
    m_session = *selected;
    rebuildSessionContent();
    takePendingAnalysis();
}

SessionDetailView::~SessionDetailView() = default;

void SessionDetailView::showSession(const ShootSession &session)
{
    if (m_showsSession)
        m_memory.insert(m_session.id, {m_selectedTab, m_selects->selection(), m_analysis});
    const SessionMemory memory = m_memory.value(session.id, {markersTab, {}, std::make_shared<AnalysisState>()});
    m_showsSession = true;
    m_isRenaming = false;
    m_selectedTab = memory.selectedTab;
    m_selects->setSelection(memory.selection);
    disconnect(m_analysis.get(), nullptr, this, nullptr);
    m_analysis = memory.analysis;
    for (auto changed : {&AnalysisState::isAnalysingChanged, &AnalysisState::analyseProgressChanged, &AnalysisState::analyseResultsChanged})
        connect(m_analysis.get(), changed, this, &SessionDetailView::updateAnalysis);

    if (m_transcript)
        m_transcript->deleteLater();
    m_transcript = new TranscriptView(session, m_selects, m_environment.loadTranscript);
    m_transcript->setObjectName(QStringLiteral("transcriptView"));
    m_transcriptHolder->addWidget(m_transcript);
    updateAnalysis();
    updateSelects();
}

void SessionDetailView::rebuildSessionContent()
{
    updateTitleRow();

    clearLayout(m_summaryHolder);
    auto *summary = new QWidget;
    auto *summaryRow = new QHBoxLayout(summary);
    summaryRow->setContentsMargins(0, 0, 0, 0);
    summaryRow->setSpacing(16);
    summaryRow->addWidget(iconLabel(QStringLiteral("bookmark.fill"), QStringLiteral("%1 markers").arg(m_session.markers.size()), QStringLiteral("markerCount")));
    summaryRow->addWidget(iconLabel(QStringLiteral("film"), QStringLiteral("%1 clips").arg(m_session.matchedClips.size()), QStringLiteral("clipCount")));
    summaryRow->addWidget(iconLabel(QStringLiteral("clock"), m_session.tcRange(), QStringLiteral("tcRange")));
    QLabel *date = Theme::label(QLocale().toString(m_session.createdAt.toLocalTime().date(), QStringLiteral("d MMM yyyy")), Theme::TextStyle::Body, true);
    summaryRow->addWidget(date);
    summaryRow->addStretch(1);
    m_summaryHolder->addWidget(summary);

    m_footage->setVisible(!m_session.matchedClips.isEmpty());
    QVBoxLayout *footageRows = nullptr;
    QWidget *footageList = detachedList(footageRows, 6);
    footageList->setStyleSheet(QStringLiteral("#footageRow { background: palette(alternate-base); border-radius: 8px; }"));
    if (!m_session.matchedClips.isEmpty()) {
        QLabel *title = heading(QStringLiteral("MATCHED FOOTAGE"), Theme::indigo());
        title->setObjectName(QStringLiteral("matchedFootageHeading"));
        footageRows->addWidget(title);
        const QPixmap film = Icons::symbol(QStringLiteral("film"), green).pixmap(16, 16); // drawn once, not per clip
        for (const MediaClip &clip : m_session.matchedClips)
            footageRows->addWidget(footageRow(clip, film));
    }
    replaceContent(m_footageHolder, footageList);

    QVBoxLayout *markerRows = nullptr;
    QWidget *markerList = detachedList(markerRows, 4);
    for (const ShootMarker &marker : m_session.markers)
        markerRows->addWidget(new MarkerRow(marker));
    replaceContent(m_markersHolder, markerList);
    updateTabs();
}

void SessionDetailView::updateTitleRow()
{
    m_title->setText(m_session.title);
    m_title->setVisible(!m_isRenaming);
    m_titleField->setVisible(m_isRenaming);
    if (m_isRenaming && m_titleField->text() != m_newTitle)
        m_titleField->setText(m_newTitle);
    m_renameButton->setIcon(Icons::symbol(m_isRenaming ? QStringLiteral("checkmark.circle.fill") : QStringLiteral("pencil"), Theme::indigo()));
}

void SessionDetailView::updateTabs()
{
    m_tabs->setTabText(0, QStringLiteral("Markers (%1)").arg(m_session.markers.size()));
    const bool showsTranscript = m_selectedTab == transcriptTab;
    m_tabs->setCurrentIndex(showsTranscript ? 1 : 0);
    m_markers->setVisible(!showsTranscript);
    m_transcriptHolder->parentWidget()->setVisible(showsTranscript);
}

void SessionDetailView::updateSelects()
{
    const qsizetype count = m_selects->selectedSegmentIds().size();
    m_selectsSection->setVisible(count > 0);
    m_selectsCount->setText(selectsCountText(count) + QStringLiteral(" ready to export"));
}

void SessionDetailView::updateAnalysis()
{
    const bool running = m_analysis->isAnalysing();
    m_analyseButton->setText(running ? m_analysis->analyseProgress() : QStringLiteral("Analyse Footage with AI"));
    m_analyseButton->setIcon(Icons::symbol(running ? QStringLiteral("waveform") : QStringLiteral("sparkles"), Qt::white));
    m_analyseButton->setEnabled(!running);
    clearLayout(m_analysisResultsLayout);
    for (const QString &line : m_analysis->analyseResults()) {
        QLabel *label = Theme::label(line, Theme::TextStyle::Caption, true);
        label->setObjectName(QStringLiteral("analysisResult"));
        label->setWordWrap(true);
        m_analysisResultsLayout->addWidget(label);
    }
    m_analysisResults->setVisible(!m_analysis->analyseResults().isEmpty());
}

void SessionDetailView::takePendingAnalysis()
{
    const std::optional<ShootSession> &selected = m_state.selectedSession();
    if (!m_showsSession || !selected || selected->id != m_session.id)
        return;
    if (const std::optional<QList<QUrl>> files = m_pending.take(m_session.id))
        runAnalysis(*files);
}

void SessionDetailView::selectTab(const QString &tab)
{
    m_selectedTab = tab == transcriptTab ? transcriptTab : markersTab;
    updateTabs();
}

void SessionDetailView::startRenaming()
{
    m_newTitle = m_session.title;
    m_isRenaming = true;
    updateTitleRow();
    m_titleField->setFocus();
    m_titleField->selectAll();
}

void SessionDetailView::setNewTitle(const QString &title)
{
    m_newTitle = title;
    if (m_titleField->text() != title)
        m_titleField->setText(title);
}

void SessionDetailView::renameSession()
{
    m_isRenaming = false;
    updateTitleRow();
    SessionLibrary(m_state).renameSession(m_session.id, trimSpacesAndTabs(m_newTitle).toString());
}

void SessionDetailView::deleteSession()
{
    const QString message = QStringLiteral("This will remove the session from Vorlix Edit. Your markers on ") + m_environment.serviceHost
                            + QStringLiteral(" are not affected.");
    QPointer<SessionDetailView> self(this);
    const ShootSession shown = m_session;
    m_desktop.confirm({QStringLiteral("Delete this session?"), message, QStringLiteral("Delete")}, [self, shown] {
        if (!self)
            return;
        self->m_memory.remove(shown.id);
        SessionLibrary(self->m_state).deleteSessions({shown.id});
        self->m_state.setSelectedSession(std::nullopt);
    });
}

EditorHandoff SessionDetailView::handoff() const
{
    return EditorHandoff(*m_environment.workspace, m_environment.temporaryDirectory, m_environment.editors);
}

void SessionDetailView::exportEDL()
{
    const QString edl = generateResolveEDL(m_session);
    m_desktop.chooseSaveFile({ExportFiles::markersEDL, QString()}, [edl](const QString &path) {
        ExportFiles::saveWithExtension(edl, path, QStringLiteral("edl"));
    });
}

void SessionDetailView::exportXML()
{
    exportXMLTask();
}

// The marker sequence asks ffprobe about the first clip's audio, so it is built on the tool pool.
static QFuture<QString> premiereXMLInBackground(const ShootSession &session)
{
    return QtConcurrent::run(toolThreadPool(), [session] { return generatePremiereXML(session); });
}

QCoro::Task<> SessionDetailView::exportXMLTask()
{
    Desktop &desktop = m_desktop;
    QFuture<QString> building = premiereXMLInBackground(m_session);
    const QString xml = co_await building;
    desktop.chooseSaveFile({ExportFiles::markersXML, QStringLiteral("XML (*.xml)")}, [xml](const QString &path) {
        writeFileAtomically(path, xml.toUtf8());
    });
}

void SessionDetailView::openInPremiere()
{
    openInPremiereTask();
}

QCoro::Task<> SessionDetailView::openInPremiereTask()
{
    const EditorHandoff editors = handoff();
    const std::shared_ptr<Workspace> keepWorkspace = m_environment.workspace;
    QFuture<QString> building = premiereXMLInBackground(m_session);
    const QString xml = co_await building;
    editors.openInPremiere(xml);
}

void SessionDetailView::openInResolve()
{
    const QString otio = generateOTIO(m_session);
    Desktop &desktop = m_desktop;
    const SessionDetailEnvironment environment = m_environment;
    desktop.chooseSaveFile({ExportFiles::sessionOTIO, QString()}, [otio, &desktop, environment](const QString &path) {
        const QString saved = ExportFiles::saveWithExtension(otio, path, QStringLiteral("otio"));
        desktop.inform({QStringLiteral("OTIO saved"), resolveImportInstructions(QFileInfo(saved).fileName()), QStringLiteral("Open Resolve"),
                        QStringLiteral("Done")},
                       [environment] {
                           EditorHandoff(*environment.workspace, environment.temporaryDirectory, environment.editors).launchResolve();
                       });
    });
}

void SessionDetailView::exportSelectsToPremiereAction()
{
    handoff().openSelectsInPremiere(generateSelectsXML(m_session, m_selects->selectedSegmentIds(), m_selects->segmentGrades()));
}

void SessionDetailView::analyseFootage()
{
    QPointer<SessionDetailView> self(this);
    const QString sessionId = m_session.id;
    m_desktop.chooseFiles({QStringLiteral("Select footage files to analyse"), false}, [self, sessionId](const QList<QUrl> &files) {
        if (self && self->m_session.id == sessionId)
            self->runAnalysis(files);
    });
}

void SessionDetailView::runAnalysis(const QList<QUrl> &files)
{
    runHoldingState(m_environment.runAnalysis, m_session, files, m_analysis);
}

bool SessionDetailView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_title && event->type() == QEvent::MouseButtonDblClick) {
        startRenaming();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
