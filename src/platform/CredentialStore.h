#pragma once

#include <QCoro/QCoroTask>
#include <QString>
#include <optional>

// One secret text in the user's secret store (QtKeychain: Secret Service or KWallet on Linux,
// Keychain on macOS, Credential Manager on Windows), addressed by service and account. Each call
// is a coroutine that suspends while the store works and never raises: a store that cannot be
// reached reads as empty and ignores writes. The secret is never written anywhere else — in
// particular QtKeychain's plain-text fallback into QSettings stays off.
//
// A call does not refer to the store object once started, so a caller may drop the task or the
// object; the store runs calls one after another in the order they were made.
class CredentialStore
{
public:
    explicit CredentialStore(QString service = QStringLiteral("io.vorlix.sync"),
                             QString account = QStringLiteral("session_cookie"));

    const QString &service() const { return m_service; }
    const QString &account() const { return m_account; }

    QCoro::Task<std::optional<QString>> read() const;
    // Deletes first, so a failed write leaves no secret rather than the old one.
    QCoro::Task<> write(QString text) const;
    QCoro::Task<> remove() const;

private:
    QString m_service;
    QString m_account;
};
