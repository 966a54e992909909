#pragma once

#include <QSet>
#include <QWidget>

class AppState;
class CoalescedRefresh;
class ElidedLabel;
class Desktop;
class ShellBackend;
class QLabel;
class QLineEdit;
class QListView;
class QPushButton;
class SessionListBox;
class SessionListModel;
class SessionRowDelegate;
class Spinner;

// The sidebar: a filter over the sessions by day with multiple selection, in-place rename and
// delete, the scan progress while a scan runs, the account with sign-out, and the pinned settings
// button beside the sync line.
class SessionListView : public QWidget
{
    Q_OBJECT

public:
    SessionListView(AppState &state, ShellBackend &backend, Desktop &desktop, const QString &serviceHost, QWidget *parent = nullptr);

    QSet<QString> selectedIds() const { return m_selectedIds; }
    void setSelectedIds(const QSet<QString> &ids);
    std::optional<QString> editingSessionId() const { return m_editingSessionId; }

    void startRename(const QString &sessionId);
    void commitRename(const QString &sessionId, const QString &editingTitle);
    // The context menu's "Delete": selects just this session, then asks.
    void deleteFromRow(const QString &sessionId);
    // The Delete key: asks about the current selection, if any.
    void requestDelete();
    void signOut();
    void toggleSettings();

    QListView *listView() const;
    QLineEdit *filterField() const { return m_filter; }
    SessionListModel *model() const { return m_model; }
    // Regroups and relayouts now, without waiting for the coalesced refresh.
    void refresh();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *buildScanningSection();
    QWidget *buildAccountSection();
    QWidget *buildFilter();
    QWidget *buildBottomBar();
    void onSelectionChanged();
    void applySelectionToView();
    void deleteSelected();
    void showContextMenu(const QPoint &position);

    AppState &m_state;
    ShellBackend &m_backend;
    Desktop &m_desktop;
    QString m_serviceHost;

    QSet<QString> m_selectedIds;
    std::optional<QString> m_editingSessionId;
    bool m_applyingSelection = false;

    CoalescedRefresh *m_refresh = nullptr;
    QLineEdit *m_filter = nullptr;
    SessionListBox *m_list = nullptr;
    SessionListModel *m_model = nullptr;
    SessionRowDelegate *m_delegate = nullptr;
    QWidget *m_scanningSection = nullptr;
    Spinner *m_scanSpinner = nullptr;
    ElidedLabel *m_scanProgress = nullptr;
    QWidget *m_scanRow = nullptr;
    QWidget *m_unreadableRow = nullptr;
    ElidedLabel *m_unreadable = nullptr;
    QLabel *m_userName = nullptr;
    QLabel *m_userEmail = nullptr;
    QPushButton *m_settingsButton = nullptr;
    Spinner *m_syncSpinner = nullptr;
    QLabel *m_syncStatus = nullptr;
};
