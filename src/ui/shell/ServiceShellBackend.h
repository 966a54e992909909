#pragma once

#include "analysis/AnalysisService.h"
#include "ui/shell/ShellBackend.h"

class APIService;
class AppState;
class FootageScanner;

// The screens' backend in the running program: the service client with its credential store,
// the session sync, the footage scanner and the one analysis service.
class ServiceShellBackend : public ShellBackend
{
public:
    ServiceShellBackend(AppState &state, APIService &api, FootageScanner &scanner, ToolLocations tools);

    QCoro::Task<QString> requestLoginCode(QString email) override;
    QCoro::Task<LoginOutcome> login(QString email, QString code) override;
    QCoro::Task<> deleteCredential() override;
    void syncSessions() override;
    void scanFootage(const QString &folder) override;
    void cancelScan() override;
    void rescanSavedFolders() override;
    QCoro::Task<QList<TranscriptSegment>> fetchTranscript(QString shareToken) override;
    QCoro::Task<> runAnalysis(ShootSession session, QList<QUrl> files, AnalysisState &analysis) override;

private:
    // Shows `sync` as running in the state until it ends, whatever its outcome.
    QCoro::Task<> countRunningSync(QCoro::Task<> sync);

    AppState &m_state;
    APIService &m_api;
    FootageScanner &m_scanner;
    AnalysisService m_analysis;
};
