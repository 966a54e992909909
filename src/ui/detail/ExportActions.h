#pragma once

#include "model/ShootSession.h"
#include "ui/detail/ExportEnvironment.h"
#include "ui/detail/ExportNotice.h"

#include <QCoro/QCoroTask>
#include <QFuture>
#include <QWidget>
#include <functional>

class AppState;
class Desktop;
class QLabel;
class QPushButton;
class QToolButton;
class QVBoxLayout;
class SelectsModel;
struct SaveRequest;

// The session's way into the editing applications: the selects picked in the transcript (shown
// while there are any) for Premiere Pro, then the hand-offs to DaVinci Resolve and Premiere Pro
// with the preferred editing application's first (Final Cut Pro's only while it is the preferred
// one), and one Export menu that saves every document where the user chooses. None is ever
// disabled; each exports whatever the session holds. Every save and hand-off is reported, and a
// hand-off to an application that is not installed saves where the user chooses instead.
class ExportActions : public QWidget
{
    Q_OBJECT

public:
    // Reads the picks from `selects` and the preferred editing application from `state`; both
    // must outlive this widget.
    ExportActions(AppState &state, Desktop &desktop, ExportEnvironment environment, SelectsModel &selects, QWidget *parent = nullptr);

    void showSession(const ShootSession &session) { m_session = session; }

    void exportEDL();
    void exportXML();
    void exportFCPXML();
    void exportAvidMarkers();
    void exportCSV();
    void exportSRT();
    void exportWebVTT();
    void openInPremiere();
    void openInResolve();
    void openInFinalCutPro();
    void exportSelectsToPremiereAction();

Q_SIGNALS:
    void reported(const ExportReport &report);

private:
    struct Handoff;

    void updateSelects();
    void followPreferredEditor();
    // Hands the document to `use` once the tool pool has built it, if this widget still exists.
    QCoro::Task<> whenBuilt(QFuture<QString> building, std::function<void(const QString &)> use);
    void handOff(const Handoff &target, const QString &document, const QString &check);
    // `extension`, when not empty, replaces whatever extension the chosen name has.
    void saveThroughPanel(const QString &document, const SaveRequest &request, const QString &extension, const QString &check,
                          const QString &note);
    QList<TranscriptSegment> shownTranscript() const;

    AppState &m_state;
    Desktop &m_desktop;
    ExportEnvironment m_environment;
    SelectsModel &m_selects;
    ShootSession m_session;

    QWidget *m_selectsSection;
    QLabel *m_selectsCount;
    QPushButton *m_selectsButton;
    QVBoxLayout *m_handoffs;
    QPushButton *m_resolve;
    QPushButton *m_premiere;
    QPushButton *m_finalCut;
    QToolButton *m_exportMenu;
};
