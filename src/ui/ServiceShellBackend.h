#pragma once

#include "ui/ShellBackend.h"

class APIService;
class AppState;
class FootageScanner;

// The screens' backend in the running program: the service client with its credential store,
// the session sync, and the footage scanner.
class ServiceShellBackend : public ShellBackend
{
public:
    ServiceShellBackend(AppState &state, APIService &api, FootageScanner &scanner);

    QCoro::Task<QString> requestLoginCode(QString email) override;
    QCoro::Task<LoginOutcome> login(QString email, QString code) override;
    void deleteCredential() override;
    void syncSessions() override;
    void scanFootage(const QString &folder) override;
    void rescanSavedFolders() override;

private:
    AppState &m_state;
    APIService &m_api;
    FootageScanner &m_scanner;
};
