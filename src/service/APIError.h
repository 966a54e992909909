#pragma once

#include <QByteArray>
#include <QString>
#include <exception>

// The one error the service calls raise. `description()` (and `what()`, in UTF-8) is the text a
// screen shows the user.
class APIError : public std::exception
{
public:
    enum class Kind {
        LoginFailed,     // a refusal worded by the service or the client
        InvalidResponse, // the answer was not an HTTP answer, or no request could be formed
        Transport,       // no answer: offline, refused, timed out, TLS
        Parse,           // the body was not JSON
    };

    static APIError loginFailed(const QString &message) { return {Kind::LoginFailed, message}; }
    static APIError invalidResponse() { return {Kind::InvalidResponse, QStringLiteral("Invalid server response")}; }
    static APIError transport(const QString &description) { return {Kind::Transport, description}; }
    static APIError parse(const QString &description) { return {Kind::Parse, description}; }

    Kind kind() const { return m_kind; }
    const QString &description() const { return m_description; }
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    APIError(Kind kind, const QString &description)
        : m_kind(kind), m_description(description), m_utf8(description.toUtf8())
    {
    }

    Kind m_kind;
    QString m_description;
    QByteArray m_utf8;
};
