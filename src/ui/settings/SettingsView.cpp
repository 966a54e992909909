#include "ui/settings/SettingsView.h"

#include "state/AppState.h"
#include "ui/settings/SettingsActions.h"
#include "ui/settings/SettingsControls.h"
#include "ui/settings/SettingsLogic.h"
#include "ui/shell/SignOut.h"
#include "ui/widgets/CoalescedRefresh.h"
#include "ui/widgets/Theme.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

// Both picker rows share one label width so their pop-ups line up across sections.
QLabel *rowLabel(const QString &text)
{
    auto *label = Theme::label(text, Theme::TextStyle::Body);
    label->setFixedWidth(110);
    return label;
}

QGroupBox *section(const QString &title, QLayout *content)
{
    auto *box = new QGroupBox(title);
    box->setFont(Theme::pixelFont(13, QFont::DemiBold));
    box->setLayout(content);
    return box;
}

} // namespace

SettingsView::SettingsView(AppState &state, ShellBackend &backend, Desktop &desktop, QWidget *parent)
    : QWidget(parent, Qt::Window), m_state(state), m_backend(backend), m_desktop(desktop)
{
    setWindowTitle(QStringLiteral("Settings"));
    setFixedSize(450, 400);
    auto *form = new QVBoxLayout(this);
    form->setContentsMargins(20, 16, 20, 16);
    form->setSpacing(12);

    m_account = new QStackedWidget;
    m_account->addWidget(Theme::label(QStringLiteral("Not signed in"), Theme::TextStyle::Body, true));
    auto *signedIn = new QWidget;
    auto *accountRow = new QHBoxLayout(signedIn);
    accountRow->setContentsMargins(0, 0, 0, 0);
    auto *names = new QVBoxLayout;
    names->setSpacing(2);
    m_name = Theme::label(QString(), Theme::TextStyle::Body);
    m_name->setFont(Theme::font(Theme::TextStyle::Body, QFont::DemiBold));
    m_email = Theme::label(QString(), Theme::TextStyle::Caption, true);
    names->addWidget(m_name);
    names->addWidget(m_email);
    accountRow->addLayout(names, 1);
    auto *signOutButton = new QPushButton(QStringLiteral("Sign Out"));
    signOutButton->setObjectName(QStringLiteral("windowSignOut"));
    Theme::setTextColor(signOutButton, Theme::destructive());
    connect(signOutButton, &QPushButton::clicked, this, &SettingsView::signOut);
    accountRow->addWidget(signOutButton);
    m_account->addWidget(signedIn);
    auto *accountLayout = new QVBoxLayout;
    accountLayout->addWidget(m_account);
    form->addWidget(section(QStringLiteral("Account"), accountLayout));

    auto *folders = new QVBoxLayout;
    folders->setSpacing(6);
    folders->addWidget(Theme::label(QStringLiteral("Add your main project root to speed up auto-detection."), Theme::TextStyle::Caption, true));
    m_folderRows = new QVBoxLayout;
    m_folderRows->setSpacing(2);
    folders->addLayout(m_folderRows);
    auto *add = new QPushButton(QStringLiteral("Add Folder..."));
    add->setObjectName(QStringLiteral("windowAddFolder"));
    connect(add, &QPushButton::clicked, this, [this] { SettingsActions::addFolder(m_state, m_desktop); });
    folders->addWidget(add, 0, Qt::AlignLeft);
    form->addWidget(section(QStringLiteral("Footage Folders"), folders));

    auto *editing = new QFormLayout;
    auto *nle = SettingsControls::nlePicker(m_state);
    nle->setObjectName(QStringLiteral("windowNlePicker"));
    editing->addRow(rowLabel(QStringLiteral("Preferred NLE")), nle);
    form->addWidget(section(QStringLiteral("Editing Software"), editing));

    auto *appearance = new QFormLayout;
    auto *theme = SettingsControls::themePicker(m_state);
    theme->setObjectName(QStringLiteral("windowThemePicker"));
    appearance->addRow(rowLabel(QStringLiteral("Theme")), theme);
    form->addWidget(section(QStringLiteral("Appearance"), appearance));
    form->addStretch(1);

    m_refresh = new CoalescedRefresh(this, [this] { refresh(); });
    m_refresh->watch(&m_state, &AppState::isLoggedInChanged, &AppState::userNameChanged, &AppState::userEmailChanged,
                     &AppState::footageFoldersChanged);
    refresh();
}

void SettingsView::refresh()
{
    m_account->setCurrentIndex(m_state.isLoggedIn() ? 1 : 0);
    m_name->setText(SettingsLogic::displayName(m_state.userName()));
    m_email->setText(m_state.userEmail());

    while (QLayoutItem *item = m_folderRows->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    const SettingsControls::FolderRowLook look{QStringLiteral("folder"), palette().color(QPalette::PlaceholderText), QStringLiteral("minus.circle"),
                                               Theme::destructive(), QStringLiteral("windowRemoveFolder"), 2};
    for (const QString &path : m_state.footageFolders()) {
        QWidget *row = SettingsControls::folderRow(m_state, path, look);
        row->setObjectName(QStringLiteral("windowFolderRow"));
        m_folderRows->addWidget(row);
    }
}

void SettingsView::signOut()
{
    signOutEverywhere(m_state, m_backend, SignOutScope::SettingsWindow);
}
