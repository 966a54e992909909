#pragma once

#include "model/ShootSession.h"

#include <QCoro/QCoroTask>
#include <QList>
#include <QString>
#include <QUrl>
#include <optional>

class AnalysisState;

// What the screens need from the service client, the credential store, the footage scanner and
// the footage analysis.
// Errors come back as the user-facing text the login screen shows in its error line.
class ShellBackend
{
public:
    struct SignedInUser {
        QString name;
        QString email;
    };
    struct LoginOutcome {
        std::optional<SignedInUser> user;
        QString error;
    };

    virtual ~ShellBackend() = default;

    // Empty on success, else the error's description.
    virtual QCoro::Task<QString> requestLoginCode(QString email) = 0;
    virtual QCoro::Task<LoginOutcome> login(QString email, QString code) = 0;
    // Forgets the stored login. Starting it is enough: it runs to its end on its own, whatever
    // becomes of the screen that started it.
    virtual QCoro::Task<> deleteCredential() = 0;

    // Fire-and-forget background work; both merge into AppState on the GUI thread when done.
    virtual void syncSessions() = 0;
    // A folder the user chose: it joins the saved folders and AppState shows the scan running.
    virtual void scanFootage(const QString &folder) = 0;
    // Stops the user's scan from starting further files; what it read is still merged.
    virtual void cancelScan() = 0;
    // One quiet scan per saved folder, all at once.
    virtual void rescanSavedFolders() = 0;
    // The service's transcript of a session; a failure is thrown.
    virtual QCoro::Task<QList<TranscriptSegment>> fetchTranscript(QString shareToken) = 0;
    // Analyses `files` for `session`, reporting into `analysis`, which must outlive the run; ends
    // after the session's markers were fetched again (unless the run stopped early).
    virtual QCoro::Task<> runAnalysis(ShootSession session, QList<QUrl> files, AnalysisState &analysis) = 0;
};
