#pragma once

#include "HttpAnswer.h"
#include "service/APIError.h"

#include <QAbstractHttpServer>
#include <QCoro/QCoroTask>
#include <QEventLoop>
#include <QFile>
#include <QHttpServerRequest>
#include <QHttpServerResponder>
#include <QJsonArray>
#include <QJsonObject>
#include <QTest>
#include <QTimer>
#include <optional>

// One data row, in the column "data", per case of `group` in tests/data/service/service-answers.json.
inline void addServiceCases(QLatin1StringView group)
{
    QTest::addColumn<QJsonObject>("data");
    QFile file(QStringLiteral(VORLIX_TEST_DATA "/service/service-answers.json"));
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName() + QStringLiteral(" cannot be read")));
    const QJsonArray cases = QJsonDocument::fromJson(file.readAll())[group].toArray();
    QVERIFY2(!cases.isEmpty(), "the data file has no cases of this group");
    for (const QJsonValue &data : cases)
        QTest::newRow(qPrintable(data["name"].toString())) << data.toObject();
}

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

    // "METHOD path" and the values of these headers ("-" when absent), space-separated.
    QString line(const QList<QByteArray> &names) const
    {
        QStringList words{method == QHttpServerRequest::Method::Post ? QStringLiteral("POST") : QStringLiteral("GET"), path};
        for (const QByteArray &name : names)
            words.append(QString::fromUtf8(header(name).value_or("-")));
        return words.join(u' ');
    }
};

// A real HTTP server on loopback that gives every request the same scripted answer, for answers
// the stand-in would never give.
class ScriptedServer : public QAbstractHttpServer
{
public:
    explicit ScriptedServer(HttpAnswer answer = HttpAnswer::json({})) : m_answer(std::move(answer))
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
        m_answer.writeTo(responder);
        return true;
    }
    void missingHandler(const QHttpServerRequest &, QTcpSocket *) override {}

private:
    quint16 m_port = 0;
    HttpAnswer m_answer;
    QList<SeenRequest> m_seen;
};

// Runs a service call (or an analysis, ffmpeg included) to its end on a local event loop and
// gives the APIError it threw, if any. One still running after two minutes ends the test
// program, since its coroutine refers to this frame and cannot be left behind.
template<typename T>
std::optional<APIError> await(QCoro::Task<T> task)
{
    std::optional<APIError> error;
    QEventLoop loop;
    bool done = false;
    auto run = [&]() -> QCoro::Task<> {
        try {
            co_await std::move(task);
        } catch (const APIError &thrown) {
            error = thrown;
        }
        done = true;
        loop.quit();
    };
    auto running = run();
    if (!done) {
        QTimer::singleShot(120000, &loop, [] { qFatal("an awaited service call did not finish within 120 s"); });
        loop.exec();
    }
    return error;
}
