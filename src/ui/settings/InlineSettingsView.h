#pragma once

#include "ui/shell/ServiceLinks.h"

#include <QWidget>

class AppState;
class CoalescedRefresh;
class Desktop;
class ShellBackend;
class QLabel;
class QPushButton;
class QVBoxLayout;

// The complete settings screen in the main window's detail pane: appearance, editing defaults,
// footage folders, account, recently deleted sessions and the about block.
class InlineSettingsView : public QWidget
{
    Q_OBJECT

public:
    InlineSettingsView(AppState &state, ShellBackend &backend, Desktop &desktop, const ServiceLinks &links, QWidget *parent = nullptr);

    void restore(const QString &sessionId);
    void signOut();

private:
    QWidget *block(const QString &title, QWidget *content);
    QWidget *buildEditing();
    QWidget *buildFolders();
    QWidget *buildAccount();
    QWidget *buildAbout(const ServiceLinks &links);
    void refresh();
    void refreshFolders();
    void refreshDeleted();

    AppState &m_state;
    ShellBackend &m_backend;
    Desktop &m_desktop;

    CoalescedRefresh *m_refresh = nullptr;
    QVBoxLayout *m_folderRows = nullptr;
    QPushButton *m_addFolder = nullptr;
    QLabel *m_avatar = nullptr;
    QLabel *m_name = nullptr;
    QLabel *m_email = nullptr;
    QWidget *m_deletedBlock = nullptr;
    QVBoxLayout *m_deletedRows = nullptr;
};
