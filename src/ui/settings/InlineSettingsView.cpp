#include "ui/settings/InlineSettingsView.h"

#include "platform/Desktop.h"
#include "state/AppState.h"
#include "state/SessionLibrary.h"
#include "ui/settings/SettingsActions.h"
#include "ui/settings/SettingsControls.h"
#include "ui/settings/SettingsLogic.h"
#include "ui/shell/ShellBackend.h"
#include "ui/shell/SignOut.h"
#include "ui/widgets/CoalescedRefresh.h"
#include "ui/widgets/Icons.h"
#include "ui/widgets/Theme.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace {

// Rows are rebuilt from the coalesced refresh, never from inside one of their own handlers, so
// they can go at once.
void clearLayout(QLayout *layout)
{
    while (QLayoutItem *item = layout->takeAt(0)) {
        if (QWidget *widget = item->widget())
            delete widget;
        else if (QLayout *child = item->layout())
            clearLayout(child);
        delete item;
    }
}

QWidget *column(int spacing, const QList<QWidget *> &items)
{
    auto *widget = new QWidget;
    auto *stack = new QVBoxLayout(widget);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(spacing);
    for (QWidget *item : items)
        stack->addWidget(item, 0, Qt::AlignLeft);
    return widget;
}

} // namespace

InlineSettingsView::InlineSettingsView(AppState &state, ShellBackend &backend, Desktop &desktop, const ServiceLinks &links, QWidget *parent)
    : QWidget(parent), m_state(state), m_backend(backend), m_desktop(desktop)
{
    auto *scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(scroll);

    auto *content = new QWidget;
    content->setObjectName(QStringLiteral("settingsContent"));
    content->setMaximumWidth(500);
    auto *stack = new QVBoxLayout(content);
    stack->setContentsMargins(32, 32, 32, 32);
    stack->setSpacing(0);

    auto *title = new QLabel(QStringLiteral("Settings"));
    title->setFont(Theme::pixelFont(24, QFont::Bold));
    title->setContentsMargins(0, 0, 0, 24);
    stack->addWidget(title);

    stack->addWidget(block(QStringLiteral("Appearance"), SettingsControls::themeSegments(m_state)));
    stack->addWidget(block(QStringLiteral("Editing"), buildEditing()));
    stack->addWidget(block(QStringLiteral("Footage Folders"), buildFolders()));
    stack->addWidget(block(QStringLiteral("Account"), buildAccount()));

    auto *deleted = new QWidget;
    m_deletedRows = new QVBoxLayout(deleted);
    m_deletedRows->setContentsMargins(0, 0, 0, 0);
    m_deletedRows->setSpacing(8);
    auto *note = Theme::label(QStringLiteral("Restored sessions come back on the next sync."), Theme::TextStyle::SmallCaption, true);
    note->setContentsMargins(0, 2, 0, 0);
    m_deletedBlock = block(QStringLiteral("Recently deleted"), column(8, {deleted, note}));
    m_deletedBlock->setObjectName(QStringLiteral("recentlyDeleted"));
    stack->addWidget(m_deletedBlock);

    stack->addWidget(block(QStringLiteral("About"), buildAbout(links)));
    stack->addStretch(1);

    auto *page = new QWidget;
    page->setBackgroundRole(QPalette::Base);
    page->setAutoFillBackground(true);
    auto *pageLayout = new QHBoxLayout(page);
    pageLayout->setContentsMargins(0, 0, 0, 0);
    pageLayout->addWidget(content, 1, Qt::AlignLeft | Qt::AlignTop);
    scroll->setWidget(page);

    m_refresh = new CoalescedRefresh(this, [this] { refresh(); });
    m_refresh->watch(&m_state, &AppState::footageFoldersChanged, &AppState::deletedSessionsChanged, &AppState::userNameChanged,
                     &AppState::userEmailChanged, &AppState::appearanceChanged);
    refresh();
}

QWidget *InlineSettingsView::block(const QString &title, QWidget *content)
{
    auto *widget = column(12, {Theme::sectionHeader(title, 13, 0.5), content});
    widget->layout()->setContentsMargins(0, 0, 0, 28);
    return widget;
}

QWidget *InlineSettingsView::buildEditing()
{
    auto *nle = SettingsControls::nlePicker(m_state);
    nle->setObjectName(QStringLiteral("nlePicker"));
    nle->setFixedWidth(240);
    auto *fps = SettingsControls::frameRatePicker(m_state);
    fps->setObjectName(QStringLiteral("fpsPicker"));
    fps->setFixedWidth(240);
    return column(12, {column(6, {Theme::label(QStringLiteral("Preferred NLE"), Theme::TextStyle::Caption, true), nle}),
                       column(6, {Theme::label(QStringLiteral("Default frame rate"), Theme::TextStyle::Caption, true), fps})});
}

QWidget *InlineSettingsView::buildFolders()
{
    auto *rows = new QWidget;
    m_folderRows = new QVBoxLayout(rows);
    m_folderRows->setContentsMargins(0, 0, 0, 0);
    m_folderRows->setSpacing(0);
    rows->setFixedWidth(436);

    m_addFolder = Theme::linkButton(QStringLiteral("Add folder"), Theme::font(Theme::TextStyle::Caption, QFont::Medium));
    m_addFolder->setObjectName(QStringLiteral("addFolder"));
    m_addFolder->setIconSize(QSize(13, 13));
    m_addFolder->setContentsMargins(0, 4, 0, 0);
    connect(m_addFolder, &QPushButton::clicked, this, [this] { SettingsActions::addFolder(m_state, m_desktop); });

    auto *note = Theme::label(QStringLiteral("Vorlix Sync scans these folders to match clips to your sessions."), Theme::TextStyle::Caption, true);
    return column(8, {note, rows, m_addFolder});
}

QWidget *InlineSettingsView::buildAccount()
{
    m_avatar = new QLabel;
    m_avatar->setObjectName(QStringLiteral("avatar"));
    m_avatar->setFixedSize(36, 36);
    m_avatar->setAlignment(Qt::AlignCenter);
    m_avatar->setFont(Theme::pixelFont(14, QFont::Bold));
    m_avatar->setStyleSheet(QStringLiteral("QLabel { background: %1; color: white; border-radius: 18px; }").arg(Theme::css(Theme::Colour::indigo)));
    m_name = new QLabel;
    m_name->setObjectName(QStringLiteral("accountName"));
    m_name->setFont(Theme::pixelFont(14, QFont::DemiBold));
    m_email = Theme::label(QString(), Theme::TextStyle::Caption, true);

    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(m_avatar);
    layout->addWidget(column(2, {m_name, m_email}));
    layout->addStretch(1);

    auto *signOutButton = Theme::textButton(QStringLiteral("Sign out"), Theme::font(Theme::TextStyle::Caption, QFont::Medium), Theme::destructive());
    signOutButton->setObjectName(QStringLiteral("inlineSignOut"));
    connect(signOutButton, &QPushButton::clicked, this, &InlineSettingsView::signOut);
    auto *account = column(12, {row, signOutButton});
    return account;
}

QWidget *InlineSettingsView::buildAbout(const ServiceLinks &links)
{
    auto *version = Theme::label(QStringLiteral("Vorlix Sync v1.0.0"), Theme::TextStyle::Caption, true);
    auto *linksRow = new QWidget;
    auto *row = new QHBoxLayout(linksRow);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(16);
    const std::pair<QString, QUrl> targets[] = {
        {links.domain, links.home},
        {QStringLiteral("Privacy Policy"), links.privacyPolicy},
        {QStringLiteral("Terms"), links.terms},
    };
    for (const auto &[label, url] : targets) {
        auto *link = Theme::linkButton(label, Theme::font(Theme::TextStyle::Caption));
        connect(link, &QPushButton::clicked, this, [this, url] { m_desktop.openUrl(url); });
        row->addWidget(link);
    }
    row->addStretch(1);
    return column(6, {version, linksRow});
}

void InlineSettingsView::refresh()
{
    refreshFolders();
    refreshDeleted();
    m_addFolder->setIcon(Icons::symbol(QStringLiteral("plus"), Theme::indigoText()));
    m_avatar->setText(SettingsLogic::initials(m_state.userName(), m_state.userEmail()));
    m_name->setText(SettingsLogic::displayName(m_state.userName()));
    m_email->setText(m_state.userEmail());
}

void InlineSettingsView::refreshFolders()
{
    clearLayout(m_folderRows);
    if (m_state.footageFolders().isEmpty()) {
        auto *none = Theme::label(QStringLiteral("No folders added yet"), Theme::TextStyle::Caption, true);
        QFont italic = none->font();
        italic.setItalic(true);
        none->setFont(italic);
        none->setContentsMargins(0, 4, 0, 4);
        m_folderRows->addWidget(none);
        return;
    }
    const SettingsControls::FolderRowLook look{QStringLiteral("folder.fill"), Theme::indigoText(), QStringLiteral("xmark.circle.fill"),
                                               palette().color(QPalette::PlaceholderText), QStringLiteral("removeFolder"), 4};
    for (const QString &path : m_state.footageFolders()) {
        QWidget *row = SettingsControls::folderRow(m_state, path, look);
        row->setObjectName(QStringLiteral("folderRow"));
        m_folderRows->addWidget(row);
    }
}

void InlineSettingsView::refreshDeleted()
{
    clearLayout(m_deletedRows);
    const QList<DeletedSessionInfo> deleted = SettingsLogic::newestFirst(m_state.deletedSessions());
    m_deletedBlock->setVisible(!deleted.isEmpty());
    for (const DeletedSessionInfo &info : deleted) {
        auto *row = new QWidget;
        row->setObjectName(QStringLiteral("deletedRow"));
        row->setFixedWidth(436);
        auto *layout = new QHBoxLayout(row);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(8);
        auto *title = Theme::label(info.title, Theme::TextStyle::Body);
        auto *date = Theme::label(locale().toString(info.deletedAt.toLocalTime().date(), QLocale::ShortFormat), Theme::TextStyle::SmallCaption, true);
        layout->addWidget(column(2, {title, date}));
        layout->addStretch(1);
        auto *restoreButton = new QPushButton(QStringLiteral("Restore"));
        restoreButton->setObjectName(QStringLiteral("restore"));
        restoreButton->setFont(Theme::font(Theme::TextStyle::Caption));
        restoreButton->setCursor(Qt::PointingHandCursor);
        const QString id = info.id;
        connect(restoreButton, &QPushButton::clicked, this, [this, id] { restore(id); });
        layout->addWidget(restoreButton);
        m_deletedRows->addWidget(row);
    }
}

void InlineSettingsView::restore(const QString &sessionId)
{
    SessionLibrary(m_state).restoreSession(sessionId);
    // The sync brings the session back, its id no longer being recorded as deleted.
    m_backend.syncSessions();
}

void InlineSettingsView::signOut()
{
    signOutEverywhere(m_state, m_backend, SignOutScope::InlineSettings);
}
