#include "ui/shell/ServiceShellBackend.h"

#include "media/FootageScanner.h"
#include "service/APIService.h"
#include "service/SessionSync.h"
#include "state/AppState.h"
#include "state/SessionLibrary.h"
#include "ui/detail/AnalysisState.h"

#include <QPointer>

ServiceShellBackend::ServiceShellBackend(AppState &state, APIService &api, FootageScanner &scanner, ToolLocations tools)
    : m_state(state), m_api(api), m_scanner(scanner), m_analysis(api, std::move(tools))
{
}

QCoro::Task<QString> ServiceShellBackend::requestLoginCode(QString email)
{
    try {
        co_await m_api.requestLoginCode(email);
    } catch (const APIError &error) {
        co_return error.description();
    }
    co_return QString();
}

QCoro::Task<ShellBackend::LoginOutcome> ServiceShellBackend::login(QString email, QString code)
{
    try {
        const LoginResult result = co_await m_api.login(email, code);
        co_return LoginOutcome{SignedInUser{result.name, result.email}, QString()};
    } catch (const APIError &error) {
        co_return LoginOutcome{std::nullopt, error.description()};
    }
}

QCoro::Task<> ServiceShellBackend::deleteCredential()
{
    return m_api.keychainDelete();
}

void ServiceShellBackend::syncSessions()
{
    countRunningSync(SessionSync::syncSessions(m_state, m_api));
}

QCoro::Task<> ServiceShellBackend::countRunningSync(QCoro::Task<> sync)
{
    const QPointer<AppState> state(&m_state);
    m_state.setSyncsRunning(m_state.syncsRunning() + 1);
    co_await std::move(sync);
    if (state)
        state->setSyncsRunning(state->syncsRunning() - 1);
}

void ServiceShellBackend::scanFootage(const QString &folder)
{
    m_scanner.scanFootage(folder);
}

void ServiceShellBackend::cancelScan()
{
    m_scanner.cancelUserScan();
}

void ServiceShellBackend::rescanSavedFolders()
{
    m_scanner.rescanSavedFolders();
}

QCoro::Task<QList<TranscriptSegment>> ServiceShellBackend::fetchTranscript(QString shareToken)
{
    return m_api.fetchTranscript(std::move(shareToken));
}

QCoro::Task<> ServiceShellBackend::runAnalysis(ShootSession session, QList<QUrl> files, AnalysisState &analysis)
{
    const QString sessionId = session.id;
    QCoro::Task<AnalysisOutcome> run = m_analysis.analyse(std::move(session), std::move(files),
                                                          [&analysis](const AnalysisUpdate &update) { analysis.apply(update); });
    const AnalysisOutcome outcome = co_await std::move(run);
    if (!outcome.wentThroughAllFiles)
        co_return;
    // What the service derived comes back with the session's markers; a failed fetch shows nothing.
    QList<ShootSession> fetched;
    try {
        QCoro::Task<QList<ShootSession>> fetch = m_api.fetchShootSessions();
        fetched = co_await std::move(fetch);
    } catch (const APIError &) {
        co_return;
    }
    SessionLibrary(m_state).applyAnalysisReload(fetched, sessionId);
}
