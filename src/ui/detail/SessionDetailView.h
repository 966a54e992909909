#pragma once

#include "export/EditorHandoff.h"
#include "model/ShootSession.h"
#include "ui/transcript/SegmentSelection.h"
#include "ui/transcript/TranscriptSource.h"

#include <QHash>
#include <QStringList>
#include <QUrl>
#include <QWidget>
#include <memory>

class AnalysisState;
class AppState;
class CoalescedRefresh;
class Desktop;
class PendingAnalyses;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabBar;
class QToolButton;
class QVBoxLayout;
class SelectsModel;
class ServiceLinks;
class ShellBackend;
class TranscriptView;

// Runs the footage analysis of `files` for a session into `analysis`.
using AnalysisRunner = std::function<QCoro::Task<>(ShootSession session, QList<QUrl> files, AnalysisState &analysis)>;

// What the session screen reaches outside itself: the transcript service, the footage analysis,
// the workspace that opens the editing applications, where hand-off files go, and the service
// host the delete alert names.
struct SessionDetailEnvironment {
    TranscriptLoader loadTranscript;
    AnalysisRunner runAnalysis;
    std::shared_ptr<Workspace> workspace;
    QString temporaryDirectory;
    EditorLocations editors;
    QString serviceHost;

    static SessionDetailEnvironment forBackend(ShellBackend &backend, const ServiceLinks &links);
};

// The selected session: title (renamable), counts, matched footage, markers or transcript, the
// selects the editor picked in the transcript, and the exports to the editing applications.
// One screen follows AppState's selected session; each session keeps its tab, selects and
// analysis for as long as the program runs, so an editor can look at another session and come
// back to the picks they were making or the analysis still running.
class SessionDetailView : public QWidget
{
    Q_OBJECT

public:
    // Takes the analysis requests `pending` keeps for the session it shows.
    SessionDetailView(AppState &state, Desktop &desktop, SessionDetailEnvironment environment,
                      PendingAnalyses &pending, QWidget *parent = nullptr);
    ~SessionDetailView() override;

    const ShootSession &session() const { return m_session; }
    SelectsModel *selects() const { return m_selects; }
    QString selectedTab() const { return m_selectedTab; }
    bool isRenaming() const { return m_isRenaming; }

    void selectTab(const QString &tab);
    void startRenaming();
    void setNewTitle(const QString &title);
    void renameSession();
    void deleteSession();
    void exportXML();
    void exportEDL();
    void openInPremiere();
    void openInResolve();
    void exportSelectsToPremiereAction();
    // Asks for footage files and analyses them for the shown session.
    void analyseFootage();
    // Analyses `files` for the shown session; the run goes on if the screen moves on.
    void runAnalysis(const QList<QUrl> &files);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct SessionMemory {
        QString selectedTab;
        SegmentSelection selection;
        std::shared_ptr<AnalysisState> analysis;
    };

    void refresh();
    void showSession(const ShootSession &session);
    void rebuildSessionContent();
    void updateTitleRow();
    void updateTabs();
    void updateSelects();
    void updateAnalysis();
    void takePendingAnalysis();
    QCoro::Task<> exportXMLTask();
    QCoro::Task<> openInPremiereTask();
    EditorHandoff handoff() const;

    AppState &m_state;
    Desktop &m_desktop;
    SessionDetailEnvironment m_environment;
    PendingAnalyses &m_pending;
    CoalescedRefresh *m_refresh = nullptr;

    ShootSession m_session;
    bool m_showsSession = false;
    QString m_selectedTab;
    bool m_isRenaming = false;
    QString m_newTitle;
    std::shared_ptr<AnalysisState> m_analysis;
    SelectsModel *m_selects = nullptr;
    QHash<QString, SessionMemory> m_memory;

    QLabel *m_title = nullptr;
    QLineEdit *m_titleField = nullptr;
    QToolButton *m_renameButton = nullptr;
    QWidget *m_summary = nullptr;
    QVBoxLayout *m_summaryHolder = nullptr;
    QWidget *m_footage = nullptr;
    QVBoxLayout *m_footageHolder = nullptr;
    QTabBar *m_tabs = nullptr;
    QWidget *m_markers = nullptr;
    QVBoxLayout *m_markersHolder = nullptr;
    QVBoxLayout *m_transcriptHolder = nullptr;
    TranscriptView *m_transcript = nullptr;
    QWidget *m_selectsSection = nullptr;
    QLabel *m_selectsCount = nullptr;
    QPushButton *m_analyseButton = nullptr;
    QWidget *m_analysisResults = nullptr;
    QVBoxLayout *m_analysisResultsLayout = nullptr;
};
