#pragma once

#include "ui/detail/ExportEnvironment.h"
#include "ui/shell/ServiceLinks.h"

#include <QMainWindow>
#include <QPointer>

class AppState;
class CoalescedRefresh;
class Desktop;
class LoginView;
class SettingsView;
class ShellBackend;
class SignedInView;

// The main window: the login screen while nobody is signed in, else the signed-in split view
// with its toolbar. Each sign-in builds a fresh signed-in view, so its triggers start anew.
class ContentView : public QMainWindow
{
    Q_OBJECT

public:
    ContentView(AppState &state, ShellBackend &backend, Desktop &desktop, const ServiceLinks &links, ExportEnvironment exports,
                QWidget *parent = nullptr);

    LoginView *loginView() const;
    SignedInView *signedInView() const;
    void setLoginHint(const QString &hint);
    void openSettingsWindow();
    SettingsView *settingsWindow() const;

private:
    void refresh();

    AppState &m_state;
    ShellBackend &m_backend;
    Desktop &m_desktop;
    ServiceLinks m_links;
    ExportEnvironment m_exports;
    QString m_loginHint;

    CoalescedRefresh *m_refresh = nullptr;
    QPointer<LoginView> m_login;
    QPointer<SignedInView> m_signedIn;
    QPointer<SettingsView> m_settingsWindow;
};
