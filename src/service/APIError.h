#pragma once

#include <QByteArray>
#include <QString>
#include <exception>

// The one error the service calls raise. `description()` (and `what()`, in UTF-8) is the text a
// screen shows the user, always one line of bounded length: it often quotes the service, whose
// text must not be able to add lines to a terminal, send it escape codes or flood it.
class APIError : public std::exception
{
public:
    enum class Kind {
        LoginFailed,     // a refusal worded by the service or the client
        InvalidResponse, // not an HTTP answer, a redirect, no request could be formed or no cookie
        Transport,       // no answer: offline, refused, timed out, too large, TLS
        Parse,           // the body was not JSON
    };

    // The longest description kept, in UTF-16 code units, before the ellipsis.
    static constexpr qsizetype maximumLength = 300;

    static APIError loginFailed(const QString &message) { return {Kind::LoginFailed, message}; }
    static APIError invalidResponse() { return {Kind::InvalidResponse, QStringLiteral("Invalid server response")}; }
    static APIError transport(const QString &description) { return {Kind::Transport, description}; }
    static APIError parse(const QString &description) { return {Kind::Parse, description}; }

    Kind kind() const { return m_kind; }
    const QString &description() const { return m_description; }
    const char *what() const noexcept override { return m_utf8.constData(); }

    // Line breaks and tabs as spaces, every other control character dropped, cut to
    // maximumLength with an ellipsis.
    static QString oneLine(const QString &text);

private:
    APIError(Kind kind, const QString &description)
        : m_kind(kind), m_description(oneLine(description)), m_utf8(m_description.toUtf8())
    {
    }

    Kind m_kind;
    QString m_description;
    QByteArray m_utf8;
};
