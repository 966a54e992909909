#pragma once

#include "HttpAnswer.h"
#include "service/APIError.h"
#include "support/AwaitTask.h"
#include "support/TestData.h"

#include <QAbstractHttpServer>
#include <QCoro/QCoroTask>
#include <QHttpServerRequest>
#include <QHttpServerResponder>
#include <optional>

// What a scripted server saw of one request.
struct SeenRequest {
    QHttpServerRequest::Method method = QHttpServerRequest::Method::Unknown;
    QString path; // percent-encoded as sent
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;

    // "METHOD path" and the values of these headers ("-" when absent), space-separated.
    QString line(const QList<QByteArray> &names) const
    {
        QStringList words{method == QHttpServerRequest::Method::Post ? QStringLiteral("POST") : QStringLiteral("GET"), path};
        for (const QByteArray &name : names) {
            const auto found = std::find_if(headers.begin(), headers.end(),
                                            [&](const auto &header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
            words.append(found == headers.end() ? QStringLiteral("-") : QString::fromUtf8(found->second));
        }
        return words.join(u' ');
    }
};

// A real HTTP server on loopback that gives every request the same scripted answer, or the one
// scripted for its path, for answers the stand-in would never give.
class ScriptedServer : public QAbstractHttpServer
{
public:
    explicit ScriptedServer(HttpAnswer answer = HttpAnswer::json({}), QHash<QString, HttpAnswer> byPath = {})
        : m_answer(std::move(answer)), m_byPath(std::move(byPath))
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
        m_byPath.value(m_seen.last().path, m_answer).writeTo(responder);
        return true;
    }
    void missingHandler(const QHttpServerRequest &, QTcpSocket *) override {}

private:
    quint16 m_port = 0;
    HttpAnswer m_answer;
    QHash<QString, HttpAnswer> m_byPath;
    QList<SeenRequest> m_seen;
};

// Runs a service call (or an analysis, ffmpeg included) to its end (see awaitTask) and gives the
// APIError it threw, if any.
template<typename T>
std::optional<APIError> await(QCoro::Task<T> task)
{
    try {
        awaitTask(std::move(task));
    } catch (const APIError &thrown) {
        return thrown;
    }
    return std::nullopt;
}
