#include "ui/sessions/SessionListView.h"

#include "media/MediaScanner.h"
#include "platform/Desktop.h"
#include "state/AppState.h"
#include "state/SessionLibrary.h"
#include "ui/sessions/SessionListBox.h"
#include "ui/sessions/SessionListModel.h"
#include "ui/sessions/SessionRowDelegate.h"
#include "ui/settings/SettingsLogic.h"
#include "ui/shell/ShellBackend.h"
#include "ui/shell/SignOut.h"
#include "ui/widgets/CoalescedRefresh.h"
#include "ui/widgets/ElidedLabel.h"
#include "ui/widgets/Icons.h"
#include "ui/widgets/Spinner.h"
#include "ui/widgets/Theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

using namespace SessionListLogic;

SessionListView::SessionListView(AppState &state, ShellBackend &backend, Desktop &desktop, const QString &serviceHost, QWidget *parent)
    : QWidget(parent), m_state(state), m_backend(backend), m_desktop(desktop), m_serviceHost(serviceHost)
{
    setObjectName(QStringLiteral("sidebar"));
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Window);

    m_model = new SessionListModel(this);
    m_delegate = new SessionRowDelegate(this);
    m_list = new SessionListBox;
    m_list->setObjectName(QStringLiteral("sessionList"));
    m_list->setModel(m_model);
    m_list->setItemDelegate(m_delegate);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setAutoFillBackground(false);
    m_list->viewport()->setAutoFillBackground(false);
    m_list->setUniformItemSizes(false);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setMouseTracking(true);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    m_list->installEventFilter(this);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(buildFilter());
    layout->addWidget(m_list, 1);
    const auto addDivider = [layout] {
        auto *divider = new QFrame;
        divider->setObjectName(QStringLiteral("sidebarDivider"));
        divider->setFixedHeight(1);
        layout->addWidget(divider);
    };
    addDivider();
    layout->addWidget(buildScanningSection());
    layout->addWidget(buildAccountSection());

    addDivider();
    layout->addWidget(buildBottomBar());

    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, &SessionListView::onSelectionChanged);
    connect(m_list, &QListView::doubleClicked, this, [this](const QModelIndex &index) {
        if (m_model->kindAt(index.row()) == SessionListModel::RowKind::Session)
            startRename(index.data(SessionListModel::SessionIdRole).toString());
    });
    connect(m_list, &QListView::customContextMenuRequested, this, &SessionListView::showContextMenu);
    connect(m_delegate, &SessionRowDelegate::renameCommitted, this, &SessionListView::commitRename);
    connect(m_delegate, &QAbstractItemDelegate::closeEditor, this, [this] { m_editingSessionId.reset(); });
    connect(m_settingsButton, &QPushButton::clicked, this, &SessionListView::toggleSettings);

    m_refresh = new CoalescedRefresh(this, [this] { refresh(); });
    m_refresh->watch(&m_state, &AppState::unreadableFootageChanged);
    m_refresh->watch(&m_state, &AppState::sessionsChanged, &AppState::isScanningChanged, &AppState::scanProgressChanged,
                     &AppState::userNameChanged, &AppState::userEmailChanged, &AppState::showSettingsChanged,
                     &AppState::appearanceChanged, &AppState::syncsRunningChanged, &AppState::lastSyncedChanged);
    m_refresh->watch(m_filter, &QLineEdit::textChanged);
    refresh();
}

QWidget *SessionListView::buildFilter()
{
    m_filter = new QLineEdit;
    m_filter->setObjectName(QStringLiteral("sessionFilter"));
    m_filter->setPlaceholderText(QStringLiteral("Filter"));
    m_filter->setClearButtonEnabled(true);
    m_filter->setFont(Theme::font(Theme::TextStyle::Body));
    // A folder dropped on the window is for scanning, not a path to type.
    m_filter->setAcceptDrops(false);
    m_filter->installEventFilter(this);
    auto *find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, this, [this] {
        m_filter->setFocus(Qt::ShortcutFocusReason);
        m_filter->selectAll();
    });

    auto *box = new QWidget;
    auto *layout = new QVBoxLayout(box);
    layout->setContentsMargins(12, 10, 12, 4);
    layout->addWidget(m_filter);
    return box;
}

QWidget *SessionListView::buildBottomBar()
{
    m_settingsButton = new QPushButton(QStringLiteral("Settings"));
    m_settingsButton->setObjectName(QStringLiteral("settingsButton"));
    m_settingsButton->setFlat(true);
    m_settingsButton->setCursor(Qt::PointingHandCursor);
    m_settingsButton->setFont(Theme::font(Theme::TextStyle::Caption, QFont::Medium));
    m_settingsButton->setIconSize(QSize(14, 14));
    m_settingsButton->setStyleSheet(QStringLiteral("QPushButton { text-align: left; padding: 10px 20px; border: none; background: transparent; }"));

    m_syncSpinner = new Spinner(11);
    m_syncSpinner->setObjectName(QStringLiteral("syncSpinner"));
    m_syncStatus = Theme::label(QString(), Theme::TextStyle::SmallCaption, true);
    m_syncStatus->setObjectName(QStringLiteral("syncStatus"));

    auto *bar = new QWidget;
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 16, 0);
    row->setSpacing(6);
    row->addWidget(m_settingsButton, 1);
    row->addWidget(m_syncSpinner);
    row->addWidget(m_syncStatus);
    return bar;
}

QWidget *SessionListView::buildScanningSection()
{
    m_scanningSection = new QWidget;
    m_scanningSection->setObjectName(QStringLiteral("scanningSection"));
    auto *stack = new QVBoxLayout(m_scanningSection);
    stack->setContentsMargins(20, 10, 16, 6);
    stack->setSpacing(6);
    stack->addWidget(Theme::sectionHeader(QStringLiteral("Scanning"), 11, 0.4));
    const QFont caption = Theme::font(Theme::TextStyle::Caption);
    const auto lineWithButton = [&](ElidedLabel *line, const QString &name, const QString &buttonText) {
        auto *widget = new QWidget;
        auto *row = new QHBoxLayout(widget);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(8);
        line->setFont(caption);
        Theme::setSecondary(line);
        line->setObjectName(name);
        row->addWidget(line, 1);
        QPushButton *button = Theme::linkButton(buttonText, caption);
        button->setObjectName(name + QStringLiteral("Button"));
        row->addWidget(button);
        stack->addWidget(widget);
        return std::pair{widget, button};
    };

    m_scanSpinner = new Spinner(14);
    m_scanProgress = new ElidedLabel(Qt::ElideRight);
    const auto [scanRow, cancel] = lineWithButton(m_scanProgress, QStringLiteral("scanProgress"), QStringLiteral("Cancel"));
    m_scanRow = scanRow;
    static_cast<QHBoxLayout *>(m_scanRow->layout())->insertWidget(0, m_scanSpinner);
    connect(cancel, &QPushButton::clicked, this, [this] { m_backend.cancelScan(); });

    // Stays after the scan, until dismissed or the folder is scanned again, since the progress
    // line it came with is gone with the scan.
    m_unreadable = new ElidedLabel(Qt::ElideRight);
    const auto [unreadableRow, dismiss] = lineWithButton(m_unreadable, QStringLiteral("unreadableFootage"), QStringLiteral("Dismiss"));
    m_unreadableRow = unreadableRow;
    connect(dismiss, &QPushButton::clicked, this, [this] { m_state.setUnreadableFootage({}); });
    return m_scanningSection;
}

QWidget *SessionListView::buildAccountSection()
{
    auto *section = new QWidget;
    auto *stack = new QVBoxLayout(section);
    stack->setContentsMargins(20, 10, 16, 10);
    stack->setSpacing(8);
    stack->addWidget(Theme::sectionHeader(QStringLiteral("Account"), 11, 0.4));

    auto *row = new QHBoxLayout;
    row->setSpacing(8);
    auto *icon = new QLabel;
    icon->setObjectName(QStringLiteral("accountIcon"));
    icon->setFixedSize(22, 22);
    row->addWidget(icon, 0, Qt::AlignVCenter);
    auto *names = new QVBoxLayout;
    names->setSpacing(2);
    m_userName = Theme::label(QString(), Theme::TextStyle::Caption);
    m_userName->setFont(Theme::font(Theme::TextStyle::Caption, QFont::DemiBold));
    m_userName->setObjectName(QStringLiteral("accountName"));
    m_userEmail = Theme::label(QString(), Theme::TextStyle::SmallCaption, true);
    m_userEmail->setObjectName(QStringLiteral("accountEmail"));
    names->addWidget(m_userName);
    names->addWidget(m_userEmail);
    row->addLayout(names, 1);
    stack->addLayout(row);

    auto *signOut = Theme::textButton(QStringLiteral("Sign Out"), Theme::font(Theme::TextStyle::Caption, QFont::Medium), Theme::destructive());
    signOut->setObjectName(QStringLiteral("signOutButton"));
    connect(signOut, &QPushButton::clicked, this, &SessionListView::signOut);
    stack->addWidget(signOut, 0, Qt::AlignLeft);
    return section;
}

void SessionListView::refresh()
{
    const QDate today = m_state.now().toLocalTime().date();
    const QList<DayGroup> groups = sessionsByDate(m_state.sessions(), today, locale());
    const QList<DayGroup> shown = filterGroups(groups, m_filter->text(), locale());
    const SessionListModel::Placeholder placeholder =
        groups.isEmpty() ? SessionListModel::Placeholder{QStringLiteral("No sessions yet"), QStringLiteral("Sync your shoots from %1").arg(m_serviceHost)}
                         : SessionListModel::Placeholder{QStringLiteral("No matching sessions"), QStringLiteral("Escape clears the filter")};
    m_applyingSelection = true;
    m_model->setGroups(shown, placeholder, locale());
    applySelectionToView();
    m_applyingSelection = false;

    const bool syncing = m_state.syncsRunning() > 0;
    m_syncSpinner->setVisible(syncing);
    m_syncStatus->setText(syncStatusText(syncing, m_state.lastSynced(), today, locale()));

    const QStringList &unreadable = m_state.unreadableFootage();
    m_scanningSection->setVisible(m_state.isScanning() || !unreadable.isEmpty());
    m_scanRow->setVisible(m_state.isScanning());
    m_scanProgress->setText(m_state.scanProgress());
    m_unreadableRow->setVisible(!unreadable.isEmpty());
    m_unreadable->setText(MediaScanner::unreadableText(unreadable));
    m_unreadable->setToolTip(unreadable.join(u'\n'));
    m_userName->setText(SettingsLogic::displayName(m_state.userName()));
    m_userEmail->setText(m_state.userEmail());
    findChild<QLabel *>(QStringLiteral("accountIcon"))
        ->setPixmap(Icons::pixmap(QStringLiteral("person.circle"), 22, palette().color(QPalette::PlaceholderText), devicePixelRatioF()));

    const QColor settingsColor = m_state.showSettings() ? Theme::indigoText() : palette().color(QPalette::PlaceholderText);
    Theme::setTextColor(m_settingsButton, settingsColor);
    m_settingsButton->setIcon(Icons::symbol(QStringLiteral("gearshape"), settingsColor));
}

QListView *SessionListView::listView() const
{
    return m_list;
}

void SessionListView::applySelectionToView()
{
    QItemSelection selection;
    for (const QString &id : std::as_const(m_selectedIds)) {
        const QModelIndex index = m_model->indexOfSession(id);
        if (index.isValid())
            selection.select(index, index);
    }
    if (selection != m_list->selectionModel()->selection())
        m_list->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void SessionListView::setSelectedIds(const QSet<QString> &ids)
{
    QItemSelection selection;
    for (const QString &id : ids) {
        const QModelIndex index = m_model->indexOfSession(id);
        if (index.isValid())
            selection.select(index, index);
    }
    m_list->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!selection.isEmpty())
        m_list->selectionModel()->setCurrentIndex(selection.indexes().constFirst(), QItemSelectionModel::NoUpdate);
}

void SessionListView::onSelectionChanged()
{
    if (m_applyingSelection)
        return;
    QSet<QString> ids;
    for (const QModelIndex &index : m_list->selectionModel()->selectedIndexes())
        ids.insert(index.data(SessionListModel::SessionIdRole).toString());
    if (ids == m_selectedIds)
        return;
    m_selectedIds = ids;

    const SelectionEffect effect = selectionEffect(m_selectedIds, m_state.sessions());
    switch (effect.kind) {
    case SelectionEffect::Kind::Select:
        m_state.setSelectedSession(effect.session);
        m_state.setShowSettings(false);
        break;
    case SelectionEffect::Kind::Clear:
        m_state.setSelectedSession(std::nullopt);
        break;
    case SelectionEffect::Kind::Keep:
        break;
    }
}

void SessionListView::startRename(const QString &sessionId)
{
    const QModelIndex index = m_model->indexOfSession(sessionId);
    if (!index.isValid())
        return;
    // Moving the current row closes an editor open elsewhere, dropping its text.
    m_list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    m_list->edit(index);
    m_editingSessionId = sessionId;
    if (auto *field = m_list->viewport()->findChild<QWidget *>(QStringLiteral("renameField")))
        field->setFocus();
}

void SessionListView::commitRename(const QString &sessionId, const QString &editingTitle)
{
    m_editingSessionId.reset();
    SessionLibrary(m_state).renameSession(sessionId, editingTitle.trimmed());
}

void SessionListView::deleteFromRow(const QString &sessionId)
{
    setSelectedIds({sessionId});
    // Also when the row vanished under the menu: the alert then counts one session.
    m_selectedIds = {sessionId};
    requestDelete();
}

void SessionListView::requestDelete()
{
    if (m_selectedIds.isEmpty())
        return;
    m_desktop.confirm({deleteAlertTitle(m_selectedIds), deleteAlertMessage(m_selectedIds, m_state.sessions()), QStringLiteral("Delete")},
                      [this] { deleteSelected(); });
}

void SessionListView::deleteSelected()
{
    SessionLibrary(m_state).deleteSessions(m_selectedIds);
    m_selectedIds.clear();
    m_applyingSelection = true;
    m_list->selectionModel()->clearSelection();
    m_applyingSelection = false;
}

void SessionListView::signOut()
{
    signOutEverywhere(m_state, m_backend, SignOutScope::SessionList);
}

void SessionListView::toggleSettings()
{
    m_state.setShowSettings(!m_state.showSettings());
    if (m_state.showSettings())
        m_state.setSelectedSession(std::nullopt);
}

void SessionListView::showContextMenu(const QPoint &position)
{
    const QModelIndex index = m_list->indexAt(position);
    if (!index.isValid() || m_model->kindAt(index.row()) != SessionListModel::RowKind::Session)
        return;
    const QString id = index.data(SessionListModel::SessionIdRole).toString();
    QMenu menu(this);
    menu.addAction(QStringLiteral("Rename"), this, [this, id] { startRename(id); });
    menu.addSeparator();
    menu.addAction(QStringLiteral("Delete"), this, [this, id] { deleteFromRow(id); });
    menu.exec(m_list->viewport()->mapToGlobal(position));
}

bool SessionListView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (watched == m_filter && key == Qt::Key_Escape && !m_filter->text().isEmpty()) {
        m_filter->clear();
        return true;
    }
    if (watched == m_list && !m_editingSessionId) {
        if (key == Qt::Key_Delete || key == Qt::Key_Backspace) {
            requestDelete();
            return true;
        }
        const QModelIndex current = m_list->currentIndex();
        const bool renameKey = key == Qt::Key_F2 || key == Qt::Key_Return || key == Qt::Key_Enter;
        if (renameKey && m_selectedIds.size() == 1 && m_list->selectionModel()->isSelected(current)) {
            startRename(current.data(SessionListModel::SessionIdRole).toString());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
