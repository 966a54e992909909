#pragma once

#include "HttpAnswer.h"
#include "service/APIError.h"

#include <QAbstractHttpServer>
#include <QCoro/QCoroTask>
#include <QEventLoop>
#include <QHttpServerRequest>
#include <QHttpServerResponder>
#include <QTest>
#include <functional>
#include <optional>
#include <variant>

// What a scripted server saw of one request.
struct SeenRequest {
    QHttpServerRequest::Method method = QHttpServerRequest::Method::Unknown;
    QString path; // percent-encoded as sent
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;

    std::optional<QByteArray> header(const QByteArray &name) const
    {
        for (const auto &[key, value] : headers) {
            if (key.compare(name, Qt::CaseInsensitive) == 0)
                return value;
        }
        return std::nullopt;
    }
};

// A real HTTP server on loopback that answers every request with what the test scripts, for
// answers the stand-in would never give.
class ScriptedServer : public QAbstractHttpServer
{
public:
    explicit ScriptedServer(HttpAnswer answer = HttpAnswer::json({}))
        : m_answer([answer](const SeenRequest &) { return answer; })
    {
        m_port = listen(QHostAddress::LocalHost, 0);
        if (m_port == 0)
            qFatal("cannot listen on loopback");
    }

    QString url() const { return QStringLiteral("http://127.0.0.1:%1").arg(m_port); }
    const QList<SeenRequest> &seen() const { return m_seen; }

protected:
    bool handleRequest(const QHttpServerRequest &request, QTcpSocket *socket) override
    {
        m_seen.append({request.method(), request.url().path(QUrl::FullyEncoded), request.headers(), request.body()});
        QHttpServerResponder responder = makeResponder(request, socket);
        m_answer(m_seen.last()).writeTo(responder);
        return true;
    }
    void missingHandler(const QHttpServerRequest &, QTcpSocket *) override {}

private:
    quint16 m_port = 0;
    std::function<HttpAnswer(const SeenRequest &)> m_answer;
    QList<SeenRequest> m_seen;
};

// The result of one awaited service call: its value, or the APIError it threw.
template<typename T>
struct Outcome {
    std::optional<std::conditional_t<std::is_void_v<T>, std::monostate, T>> value;
    std::optional<APIError> error;

    QString errorText() const { return error ? error->description() : QStringLiteral("<no error>"); }
};

// Runs a service call to its end on a local event loop, as a test needs it.
template<typename T>
Outcome<T> await(QCoro::Task<T> task)
{
    Outcome<T> outcome;
    QEventLoop loop;
    bool done = false;
    auto run = [&]() -> QCoro::Task<> {
        try {
            if constexpr (std::is_void_v<T>) {
                co_await std::move(task);
                outcome.value.emplace();
            } else {
                outcome.value = co_await std::move(task);
            }
        } catch (const APIError &error) {
            outcome.error = error;
        }
        done = true;
        loop.quit();
    };
    auto running = run();
    if (!done)
        loop.exec();
    return outcome;
}
