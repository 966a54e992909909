#include "ServiceTestSupport.h"
#include "service/APIService.h"

#include <QJsonArray>
#include <QTcpServer>
#include <QTcpSocket>

using namespace std::chrono_literals;
using Kind = APIError::Kind;

namespace {

// The tests' own keyring item, so the application's login is never touched.
const CredentialStore testCredentials(QStringLiteral("io.vorlix.sync.test-api"));

HttpAnswer answer(int status, const QByteArray &body, QList<std::pair<QByteArray, QByteArray>> headers = {})
{
    headers.append(std::pair<QByteArray, QByteArray>("Content-Type", "application/json"));
    return {status, headers, body};
}

// What each of the four operations raises against the same server.
QList<std::optional<APIError>> errorsOfAllFour(APIService &api)
{
    return {await(api.requestLoginCode(QStringLiteral("a@b.c"))).error,
            await(api.login(QStringLiteral("a@b.c"), QStringLiteral("1"))).error,
            await(api.fetchShootSessions()).error,
            await(api.fetchTranscript(QStringLiteral("t"))).error};
}

QJsonObject bodyOf(const SeenRequest &request)
{
    return QJsonDocument::fromJson(request.body).object();
}

} // namespace

class APIServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { testCredentials.remove(); }
    void cleanupTestCase() { testCredentials.remove(); }

    void requestLoginCode_data()
    {
        QTest::addColumn<HttpAnswer>("reply");
        QTest::addColumn<QString>("error"); // empty: success
        QTest::newRow("ok") << answer(200, R"({"ok": true})") << "";
        QTest::newRow("status not examined") << answer(500, R"({"ok": true})") << "";
        QTest::newRow("refused without error") << answer(200, R"({"ok": false})") << "Failed to send code";
        QTest::newRow("refused with error") << answer(429, R"({"ok": false, "error": "Slow down"})") << "Slow down";
        QTest::newRow("array") << answer(200, R"([{"ok": true}])") << "Failed to send code";
        QTest::newRow("error not text") << answer(400, R"({"error": 5})") << "Failed to send code";
    }

    void requestLoginCode()
    {
        QFETCH(HttpAnswer, reply);
        QFETCH(QString, error);
        ScriptedServer server(reply);
        APIService api(server.url(), testCredentials);
        api.keychainWrite(QStringLiteral("sid=stored"));

        const auto outcome = await(api.requestLoginCode(QStringLiteral(" Ana@Example.org ")));
        QCOMPARE(outcome.error ? outcome.errorText() : QString(), error);
        if (outcome.error)
            QCOMPARE(outcome.error->kind(), Kind::LoginFailed);

        QCOMPARE(server.seen().size(), 1);
        const SeenRequest &request = server.seen().first();
        QCOMPARE(request.method, QHttpServerRequest::Method::Post);
        QCOMPARE(request.path, QStringLiteral("/auth/login"));
        QCOMPARE(request.header("Content-Type"), std::optional<QByteArray>("application/json"));
        QCOMPARE(request.header("x-vorlix-client"), std::nullopt);
        QCOMPARE(request.header("Cookie"), std::nullopt);
        QCOMPARE(bodyOf(request), (QJsonObject{{"email", " Ana@Example.org "}}));
    }

    void login_data()
    {
        QTest::addColumn<HttpAnswer>("reply");
        QTest::addColumn<QString>("error");      // empty: success
        QTest::addColumn<QString>("credential"); // what is stored afterwards
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("email");
        const QString typed = QStringLiteral("typed@example.org");
        QTest::newRow("sid beats the header")
            << answer(200, R"({"ok": true, "sid": "abc", "user": {"name": "Ana", "email": "ana@x.org"}})", {{"Set-Cookie", "sid=zzz; Path=/"}})
            << "" << "sid=abc" << "Ana" << "ana@x.org";
        QTest::newRow("header's first cookie")
            << answer(200, R"({"ok": true})", {{"Set-Cookie", "sid=xyz; Path=/; HttpOnly"}}) << "" << "sid=xyz" << "" << typed;
        QTest::newRow("name only") << answer(200, R"({"ok": true, "user": {"name": "Ana"}})") << "" << "sid=earlier" << "Ana" << typed;
        QTest::newRow("user not an object") << answer(200, R"({"ok": true, "sid": "s", "user": "Ana"})") << "" << "sid=s" << "" << typed;
        QTest::newRow("status not examined") << answer(500, R"({"ok": true, "sid": "s5"})") << "" << "sid=s5" << "" << typed;
        QTest::newRow("refused") << answer(401, R"({"ok": false, "error": "Wrong code", "sid": "no"})", {{"Set-Cookie", "sid=no"}})
                                 << "Wrong code" << "sid=earlier" << "" << "";
        QTest::newRow("refused without error") << answer(200, R"({"ok": "yes"})") << "Unknown error" << "sid=earlier" << "" << "";
        QTest::newRow("array") << answer(200, R"([{"ok": true, "sid": "a"}])") << "Unknown error" << "sid=earlier" << "" << "";
    }

    void login()
    {
        QFETCH(HttpAnswer, reply);
        QFETCH(QString, error);
        QFETCH(QString, credential);
        QFETCH(QString, name);
        QFETCH(QString, email);
        ScriptedServer server(reply);
        APIService api(server.url(), testCredentials);
        api.keychainWrite(QStringLiteral("sid=earlier"));

        const auto outcome = await(api.login(QStringLiteral("typed@example.org"), QStringLiteral(" 123 456 ")));
        QCOMPARE(outcome.error ? outcome.errorText() : QString(), error);
        if (outcome.value)
            QCOMPARE(*outcome.value, (LoginResult{name, email}));
        QCOMPARE(api.keychainRead(), std::optional(credential));

        const SeenRequest &request = server.seen().first();
        QCOMPARE(request.path, QStringLiteral("/auth/verify"));
        QCOMPARE(request.header("x-vorlix-client"), std::optional<QByteArray>("live"));
        QCOMPARE(request.header("Content-Type"), std::optional<QByteArray>("application/json"));
        QCOMPARE(request.header("Cookie"), std::nullopt);
        QCOMPARE(bodyOf(request), (QJsonObject{{"email", "typed@example.org"}, {"code", " 123 456 "}}));
    }

    // The GET requests carry exactly the stored text, and nothing else the service ever set.
    void downloadsCarryOnlyTheStoredCredential()
    {
        ScriptedServer server(answer(200, R"({"ok": true, "sessions": [], "segments": []})",
                                     {{"Set-Cookie", "tracker=1; Path=/"}}));
        APIService api(server.url(), testCredentials);
        const QString stored = QStringLiteral("sid=a b;c=d");
        api.keychainWrite(stored);

        QVERIFY(await(api.fetchShootSessions()).value);
        QVERIFY(await(api.fetchTranscript(QStringLiteral("tok"))).value);
        api.keychainDelete();
        QVERIFY(await(api.fetchShootSessions()).value);

        QCOMPARE(server.seen().size(), 3);
        QCOMPARE(server.seen()[0].header("Cookie"), std::optional(stored.toUtf8()));
        QCOMPARE(server.seen()[1].header("Cookie"), std::optional(stored.toUtf8()));
        QCOMPARE(server.seen()[1].header("Content-Type"), std::nullopt);
        QCOMPARE(server.seen()[2].header("Cookie"), std::nullopt);
    }

    // The two downloads: status, mapping and parse errors; `found` lists session tokens or
    // segment texts in their order.
    void downloadAnswers_data()
    {
        QTest::addColumn<bool>("transcript");
        QTest::addColumn<HttpAnswer>("reply");
        QTest::addColumn<QString>("error");
        QTest::addColumn<QStringList>("found");
        QTest::newRow("sessions mapped in order")
            << false << answer(200, R"({"sessions": [{"share_token": "b"}, {"title": "x"}, {"share_token": "a"}]})") << "" << QStringList{"b", "a"};
        QTest::newRow("expired login") << false << answer(401, R"({"sessions": [{"share_token": "a"}]})") << "Server returned status 401" << QStringList();
        QTest::newRow("server error, not JSON") << false << answer(502, "<html>") << "Server returned status 502" << QStringList();
        QTest::newRow("sessions not an array") << false << answer(200, R"({"sessions": "a"})") << "" << QStringList();
        QTest::newRow("top level is an array") << false << answer(200, R"([{"sessions": [{"share_token": "a"}]}])") << "" << QStringList();
        QTest::newRow("top level is a string") << false << answer(200, R"("sessions")")
                                               << "The server's answer is not valid JSON (illegal value)." << QStringList();
        QTest::newRow("segments") << true << answer(200, R"({"ok": true, "segments": [{"text": "a"}, {"text": "b"}]})") << "" << QStringList{"a", "b"};
        QTest::newRow("ok false") << true << answer(200, R"({"ok": false, "segments": [{}]})") << "" << QStringList();
        QTest::newRow("no segments") << true << answer(200, R"({"ok": true})") << "" << QStringList();
        QTest::newRow("transcript not found")
            << true << answer(404, R"({"ok": true, "segments": [{}]})") << "Transcript fetch failed with status 404" << QStringList();
    }

    void downloadAnswers()
    {
        QFETCH(bool, transcript);
        QFETCH(HttpAnswer, reply);
        QFETCH(QString, error);
        QFETCH(QStringList, found);
        ScriptedServer server(reply);
        APIService api(server.url(), testCredentials);
        QStringList seen;
        if (transcript) {
            const auto outcome = await(api.fetchTranscript(QStringLiteral("tok")));
            QCOMPARE(outcome.error ? outcome.errorText() : QString(), error);
            for (const TranscriptSegment &segment : outcome.value.value_or(QList<TranscriptSegment>()))
                seen.append(segment.text);
        } else {
            const auto outcome = await(api.fetchShootSessions());
            QCOMPARE(outcome.error ? outcome.errorText() : QString(), error);
            for (const ShootSession &session : outcome.value.value_or(QList<ShootSession>()))
                seen.append(session.id);
            QCOMPARE(server.seen().first().path, QStringLiteral("/api/shoot/sessions"));
        }
        QCOMPARE(seen, found);
    }

    void bodyNotJsonRaisesTheParserError_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("html") << QByteArray("<html>busy</html>");
        QTest::newRow("empty") << QByteArray();
    }

    void bodyNotJsonRaisesTheParserError()
    {
        QFETCH(QByteArray, body);
        ScriptedServer server(answer(200, body));
        APIService api(server.url(), testCredentials);
        for (const auto &error : errorsOfAllFour(api)) {
            QVERIFY(error);
            QCOMPARE(error->kind(), Kind::Parse);
            QVERIFY2(error->description().startsWith(QStringLiteral("The server's answer is not valid JSON (")),
                     qPrintable(error->description()));
        }
    }

    void hugeAnswer()
    {
        QJsonArray sessions;
        QJsonArray markers;
        for (int i = 0; i < 20; ++i)
            markers.append(QJsonObject{{"id", QString::number(i)}, {"timecode", "10:00:00:00"}});
        for (int i = 0; i < 10000; ++i)
            sessions.append(QJsonObject{{"share_token", QString::number(i)}, {"markers", markers}});
        ScriptedServer server(HttpAnswer::json({{"sessions", sessions}}));
        APIService api(server.url(), testCredentials);
        const auto outcome = await(api.fetchShootSessions());
        QVERIFY(outcome.value);
        QCOMPARE(outcome.value->size(), 10000);
        QCOMPARE(outcome.value->last().markers.size(), 20);
    }

    void transcriptTokenIsPercentEncoded_data()
    {
        QTest::addColumn<QString>("token");
        QTest::addColumn<QString>("path");
        QTest::newRow("space") << "a b" << "/api/ferro/a%20b/transcript";
        QTest::newRow("query and fragment") << "a?b#c" << "/api/ferro/a%3Fb%23c/transcript";
        QTest::newRow("path characters kept") << "a/b:c@d" << "/api/ferro/a/b:c@d/transcript";
        QTest::newRow("non-ASCII") << QStringLiteral("caf\u00e9") << "/api/ferro/caf%C3%A9/transcript";
    }

    void transcriptTokenIsPercentEncoded()
    {
        QFETCH(QString, token);
        QFETCH(QString, path);
        ScriptedServer server(answer(200, R"({"ok": true, "segments": []})"));
        APIService api(server.url(), testCredentials);
        QVERIFY(await(api.fetchTranscript(token)).value);
        QCOMPARE(server.seen().first().path, path);
    }

    // Nothing listening, a server that takes the connection and never answers within the time
    // limit, and one that answers something else than HTTP: every call fails with the platform's
    // description, and the stored credential stays.
    void transportFailures_data()
    {
        QTest::addColumn<QString>("server");
        QTest::addColumn<QString>("error"); // empty: whatever the platform says
        QTest::newRow("nothing listening") << "closed" << "Connection refused";
        QTest::newRow("never answers") << "silent" << "The request timed out.";
        QTest::newRow("not HTTP") << "garbage" << "";
    }

    void transportFailures()
    {
        QFETCH(QString, server);
        QFETCH(QString, error);
        QTcpServer tcp;
        QVERIFY(tcp.listen(QHostAddress::LocalHost, 0));
        const QString url = QStringLiteral("http://127.0.0.1:%1").arg(tcp.serverPort());
        if (server == "closed")
            tcp.close();
        if (server == "garbage") {
            connect(&tcp, &QTcpServer::newConnection, this, [&] {
                QTcpSocket *socket = tcp.nextPendingConnection();
                connect(socket, &QTcpSocket::readyRead, socket, [socket] {
                    socket->write("SSH-2.0-OpenSSH\r\n\r\n");
                    socket->disconnectFromHost();
                });
            });
        }
        const std::chrono::milliseconds limit = 300ms;
        APIService api(url, testCredentials, APITimeLimits{limit, limit, limit, limit});
        api.keychainWrite(QStringLiteral("sid=kept"));
        for (const auto &failure : errorsOfAllFour(api)) {
            QVERIFY(failure);
            QCOMPARE(failure->kind(), Kind::Transport);
            if (!error.isEmpty())
                QCOMPARE(failure->description(), error);
        }
        QCOMPARE(api.keychainRead(), std::optional(QStringLiteral("sid=kept")));
    }

    void invalidTranscriptUrl()
    {
        QCOMPARE(APIService::transcriptUrl(QStringLiteral("http://[::1"), QStringLiteral("t")), std::nullopt);
        APIService api(QStringLiteral("http://[::1"), testCredentials);
        QCOMPARE(await(api.fetchTranscript(QStringLiteral("t"))).errorText(), QStringLiteral("Invalid server response"));
    }

};

QTEST_GUILESS_MAIN(APIServiceTest)
#include "APIServiceTest.moc"
