#pragma once

#include "model/ShootSession.h"
#include "ui/detail/AnalysisPanel.h"
#include "ui/detail/ExportEnvironment.h"
#include "ui/transcript/SegmentSelection.h"
#include "ui/transcript/TranscriptSource.h"

#include <QHash>
#include <QWidget>
#include <memory>

class AnalysisState;
class AppState;
class CoverageStrip;
class Desktop;
class ExportActions;
class ExportNotice;
class MarkerList;
class MatchedFootageList;
class PendingAnalyses;
class QScrollArea;
class QTabBar;
class QVBoxLayout;
class SelectsModel;
class ServiceLinks;
class SessionHeader;
class ShellBackend;
class TranscriptView;

// What the session screen reaches outside itself: the transcript service, the footage analysis,
// what the exports write to and launch, and the service host the delete alert names.
struct SessionDetailEnvironment {
    TranscriptLoader loadTranscript;
    AnalysisRunner runAnalysis;
    ExportEnvironment exports;
    QString serviceHost;

    static SessionDetailEnvironment forBackend(ShellBackend &backend, const ServiceLinks &links, ExportEnvironment exports);
};

// The selected session: the header with title and counts, matched footage, markers or
// transcript, the selects the editor picked in the transcript, the exports to the editing
// applications and the footage analysis. One screen follows AppState's selected session and
// updates only the parts whose data changed; each session keeps its tab, selects and analysis
// for as long as the program runs, so an editor can look at another session and come back to
// the picks they were making or the analysis still running.
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
    void selectTab(const QString &tab);

    SessionHeader *header() const { return m_header; }
    AnalysisPanel *analysisPanel() const { return m_analysisPanel; }
    ExportActions *exportActions() const { return m_exports; }
    CoverageStrip *coverage() const { return m_coverage; }
    ExportNotice *notice() const { return m_notice; }

private:
    struct SessionMemory {
        QString selectedTab;
        SegmentSelection selection;
        QList<TranscriptSegment> transcript;
        std::shared_ptr<AnalysisState> analysis;
    };

    void refresh();
    void switchTo(const ShootSession &session);
    void updateTabs();
    void takePendingAnalysis();
    void showMarkerRow(qsizetype index);

    AppState &m_state;
    PendingAnalyses &m_pending;
    TranscriptLoader m_loadTranscript;

    ShootSession m_session;
    bool m_showsSession = false;
    QString m_selectedTab;
    std::shared_ptr<AnalysisState> m_analysis;
    QHash<QString, SessionMemory> m_memory;

    SelectsModel *m_selects;
    ExportNotice *m_notice;
    QScrollArea *m_scroll;
    SessionHeader *m_header;
    CoverageStrip *m_coverage;
    MatchedFootageList *m_footage;
    QTabBar *m_tabs;
    MarkerList *m_markers;
    QWidget *m_transcriptPage;
    QVBoxLayout *m_transcriptHolder;
    TranscriptView *m_transcript = nullptr;
    ExportActions *m_exports;
    AnalysisPanel *m_analysisPanel;
};
