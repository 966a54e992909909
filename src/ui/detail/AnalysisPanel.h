#pragma once

#include "model/ShootSession.h"

#include <QCoro/QCoroTask>
#include <QList>
#include <QUrl>
#include <QWidget>
#include <functional>
#include <memory>

class AnalysisState;
class Desktop;
class QPushButton;
class QVBoxLayout;

// Runs the footage analysis of `files` for a session into `analysis`.
using AnalysisRunner = std::function<QCoro::Task<>(ShootSession session, QList<QUrl> files, AnalysisState &analysis)>;

// The analysis of footage for the session: the button that asks for files and shows the
// progress while a run goes on, and the result lines of the last run below it.
class AnalysisPanel : public QWidget
{
    Q_OBJECT

public:
    AnalysisPanel(Desktop &desktop, AnalysisRunner run, QWidget *parent = nullptr);

    // Shows `analysis`, the state of the runs for `session`.
    void showSession(const ShootSession &session, const std::shared_ptr<AnalysisState> &analysis);

    // Asks for footage files and analyses them for the session shown.
    void analyseFootage();
    // Analyses `files` for the session shown; the run goes on if the panel moves on or goes.
    void runAnalysis(const QList<QUrl> &files);

private:
    void updateAnalysis();

    Desktop &m_desktop;
    AnalysisRunner m_run;
    ShootSession m_session;
    std::shared_ptr<AnalysisState> m_analysis;

    QPushButton *m_button;
    QWidget *m_results;
    QVBoxLayout *m_resultLines;
};
