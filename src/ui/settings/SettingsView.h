#pragma once

#include <QWidget>

class AppState;
class CoalescedRefresh;
class Desktop;
class ShellBackend;
class QLabel;
class QPushButton;
class QStackedWidget;
class QVBoxLayout;

// The application's preferences window: account, footage folders, editing software, appearance.
class SettingsView : public QWidget
{
    Q_OBJECT

public:
    SettingsView(AppState &state, ShellBackend &backend, Desktop &desktop, QWidget *parent = nullptr);

    void signOut();

private:
    void refresh();

    AppState &m_state;
    ShellBackend &m_backend;
    Desktop &m_desktop;
    CoalescedRefresh *m_refresh = nullptr;
    QStackedWidget *m_account = nullptr;
    QLabel *m_name = nullptr;
    QLabel *m_email = nullptr;
    QVBoxLayout *m_folderRows = nullptr;
};
