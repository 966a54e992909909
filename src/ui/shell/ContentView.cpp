#include "ui/shell/ContentView.h"

#include "state/AppState.h"
#include "ui/login/LoginView.h"
#include "ui/settings/SettingsView.h"
#include "ui/shell/SignedInView.h"
#include "ui/widgets/CoalescedRefresh.h"

#include <QApplication>
#include <QMenuBar>

ContentView::ContentView(AppState &state, ShellBackend &backend, Desktop &desktop, const ServiceLinks &links, ExportEnvironment exports,
                         QWidget *parent)
    : QMainWindow(parent), m_state(state), m_backend(backend), m_desktop(desktop), m_links(links), m_exports(std::move(exports))
{
    setWindowTitle(QStringLiteral("Vorlix Sync"));
    setMinimumSize(800, 500);
    resize(1000, 650);
    setUnifiedTitleAndToolBarOnMac(true);

    QMenu *appMenu = menuBar()->addMenu(QStringLiteral("Vorlix Sync"));
    QAction *settings = appMenu->addAction(QStringLiteral("Settings…"), this, &ContentView::openSettingsWindow);
    settings->setMenuRole(QAction::PreferencesRole);
    // Qt names a preferences key only on macOS; elsewhere Ctrl+, is the common choice.
    QList<QKeySequence> preferences = QKeySequence::keyBindings(QKeySequence::Preferences);
    if (preferences.isEmpty())
        preferences.append(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    settings->setShortcuts(preferences);
    appMenu->addSeparator();
    QAction *quit = appMenu->addAction(QStringLiteral("Quit Vorlix Sync"), qApp, &QApplication::quit);
    quit->setMenuRole(QAction::QuitRole);
    quit->setShortcut(QKeySequence::Quit);

    m_refresh = new CoalescedRefresh(this, [this] { refresh(); });
    m_refresh->watch(&m_state, &AppState::isLoggedInChanged);
    m_state.applyAppearance();
    refresh();
}

LoginView *ContentView::loginView() const
{
    return m_login;
}

SignedInView *ContentView::signedInView() const
{
    return m_signedIn;
}

SettingsView *ContentView::settingsWindow() const
{
    return m_settingsWindow;
}

void ContentView::setLoginHint(const QString &hint)
{
    m_loginHint = hint;
    if (m_login)
        m_login->setHint(hint);
}

void ContentView::refresh()
{
    if (m_state.isLoggedIn() && !m_signedIn) {
        m_signedIn = new SignedInView(m_state, m_backend, m_desktop, m_links, m_exports);
        addToolBar(Qt::TopToolBarArea, m_signedIn->toolBar());
        setCentralWidget(m_signedIn); // deletes the login screen
    } else if (!m_state.isLoggedIn() && !m_login) {
        m_login = new LoginView(m_state, m_backend, m_desktop, m_links);
        m_login->setHint(m_loginHint);
        setCentralWidget(m_login); // deletes the signed-in view with its toolbar and triggers
    }
}

void ContentView::openSettingsWindow()
{
    if (!m_settingsWindow) {
        m_settingsWindow = new SettingsView(m_state, m_backend, m_desktop, this);
        m_settingsWindow->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_settingsWindow->show();
    m_settingsWindow->raise();
    m_settingsWindow->activateWindow();
}
