#pragma once

#include <QString>
#include <optional>

// One secret text in the user's secret store (QtKeychain: Secret Service or KWallet on Linux,
// Keychain on macOS, Credential Manager on Windows), addressed by service and account. Calls
// wait for the store on a local event loop and never raise: a store that cannot be reached
// reads as empty and ignores writes. The secret is never written anywhere else — in particular
// QtKeychain's plain-text fallback into QSettings stays off.
class CredentialStore
{
public:
    explicit CredentialStore(QString service = QStringLiteral("io.vorlix.sync"),
                             QString account = QStringLiteral("session_cookie"));

    const QString &service() const { return m_service; }
    const QString &account() const { return m_account; }

    std::optional<QString> read() const;
    // Deletes first, so a failed write leaves no secret rather than the old one.
    void write(const QString &text) const;
    void remove() const;

private:
    QString m_service;
    QString m_account;
};
