#include "ServiceStandin.h"
#include "ServiceTestSupport.h"
#include "service/APIService.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

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
        QTest::newRow("informational message") << answer(200, R"({"message": "Check your inbox"})") << "";
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

    void sessionsAnswers_data()
    {
        QTest::addColumn<HttpAnswer>("reply");
        QTest::addColumn<QString>("error");
        QTest::addColumn<QStringList>("tokens");
        QTest::newRow("mapped in order")
            << answer(200, R"({"sessions": [{"share_token": "b"}, {"title": "x"}, {"share_token": "a"}]})") << "" << QStringList{"b", "a"};
        QTest::newRow("expired login") << answer(401, R"({"sessions": [{"share_token": "a"}]})") << "Server returned status 401" << QStringList();
        QTest::newRow("no content") << answer(204, "") << "Server returned status 204" << QStringList();
        QTest::newRow("server error, not JSON") << answer(502, "<html>") << "Server returned status 502" << QStringList();
        QTest::newRow("wrong types everywhere")
            << answer(200, R"({"sessions": [{"share_token": 1}, {"share_token": "t", "title": [], "created_at": {}, "markers": "m"}]})")
            << "" << QStringList{"t"};
        QTest::newRow("sessions not an array") << answer(200, R"({"sessions": "a"})") << "" << QStringList();
        QTest::newRow("top level is an array") << answer(200, R"([{"sessions": [{"share_token": "a"}]}])") << "" << QStringList();
        QTest::newRow("top level is a string") << answer(200, R"("sessions")")
                                               << "The server's answer is not valid JSON (illegal value)." << QStringList();
    }

    void sessionsAnswers()
    {
        QFETCH(HttpAnswer, reply);
        QFETCH(QString, error);
        QFETCH(QStringList, tokens);
        ScriptedServer server(reply);
        APIService api(server.url(), testCredentials);
        const auto outcome = await(api.fetchShootSessions());
        QCOMPARE(outcome.error ? outcome.errorText() : QString(), error);
        QStringList seen;
        for (const ShootSession &session : outcome.value.value_or(QList<ShootSession>()))
            seen.append(session.id);
        QCOMPARE(seen, tokens);
        QCOMPARE(server.seen().first().path, QStringLiteral("/api/shoot/sessions"));
    }

    void bodyNotJsonRaisesTheParserError_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("html") << QByteArray("<html>busy</html>");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("cut short") << QByteArray(R"({"ok": true, "sessions": [)");
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

    void transcriptAnswers_data()
    {
        QTest::addColumn<HttpAnswer>("reply");
        QTest::addColumn<QString>("error");
        QTest::addColumn<int>("count");
        QTest::newRow("segments") << answer(200, R"({"ok": true, "segments": [{"text": "a"}, {"text": "b"}]})") << "" << 2;
        QTest::newRow("ok false") << answer(200, R"({"ok": false, "segments": [{}]})") << "" << 0;
        QTest::newRow("no segments") << answer(200, R"({"ok": true})") << "" << 0;
        QTest::newRow("not found") << answer(404, R"({"ok": true, "segments": [{}]})") << "Transcript fetch failed with status 404" << 0;
    }

    void transcriptAnswers()
    {
        QFETCH(HttpAnswer, reply);
        QFETCH(QString, error);
        QFETCH(int, count);
        ScriptedServer server(reply);
        APIService api(server.url(), testCredentials);
        const auto outcome = await(api.fetchTranscript(QStringLiteral("tok")));
        QCOMPARE(outcome.error ? outcome.errorText() : QString(), error);
        QCOMPARE(outcome.value.value_or(QList<TranscriptSegment>()).size(), count);
    }

    void transcriptTokenIsPercentEncoded_data()
    {
        QTest::addColumn<QString>("token");
        QTest::addColumn<QString>("path");
        QTest::newRow("plain") << "AbC-123_x.y~z" << "/api/ferro/AbC-123_x.y~z/transcript";
        QTest::newRow("space") << "a b" << "/api/ferro/a%20b/transcript";
        QTest::newRow("query and fragment") << "a?b#c" << "/api/ferro/a%3Fb%23c/transcript";
        QTest::newRow("percent") << "100%" << "/api/ferro/100%25/transcript";
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

    void noServiceListening()
    {
        QTcpServer probe;
        QVERIFY(probe.listen(QHostAddress::LocalHost, 0));
        const QString url = QStringLiteral("http://127.0.0.1:%1").arg(probe.serverPort());
        probe.close();
        APIService api(url, testCredentials);
        api.keychainWrite(QStringLiteral("sid=kept"));
        const auto login = await(api.login(QStringLiteral("a@b.c"), QStringLiteral("1")));
        QVERIFY(login.error);
        QCOMPARE(login.error->kind(), Kind::Transport);
        QCOMPARE(login.errorText(), QStringLiteral("Connection refused"));
        QCOMPARE(api.keychainRead(), std::optional(QStringLiteral("sid=kept")));
        QCOMPARE(await(api.fetchShootSessions()).error->kind(), Kind::Transport);
    }

    // A server that takes the connection and never answers: the time limit ends every call.
    void serverThatNeverAnswers()
    {
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost, 0));
        const std::chrono::milliseconds limit = 300ms;
        APIService api(QStringLiteral("http://127.0.0.1:%1").arg(silent.serverPort()), testCredentials,
                       APITimeLimits{limit, limit, limit, limit});
        for (const auto &error : errorsOfAllFour(api)) {
            QVERIFY(error);
            QCOMPARE(error->kind(), Kind::Transport);
            QCOMPARE(error->description(), QStringLiteral("The request timed out."));
        }
    }

    void answerThatIsNotHttp()
    {
        QTcpServer garbage;
        QVERIFY(garbage.listen(QHostAddress::LocalHost, 0));
        connect(&garbage, &QTcpServer::newConnection, this, [&] {
            QTcpSocket *socket = garbage.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [socket] {
                socket->write("SSH-2.0-OpenSSH\r\n\r\n");
                socket->disconnectFromHost();
            });
        });
        APIService api(QStringLiteral("http://127.0.0.1:%1").arg(garbage.serverPort()), testCredentials);
        const auto outcome = await(api.fetchShootSessions());
        QVERIFY(outcome.error);
        QCOMPARE(outcome.error->kind(), Kind::Transport);
    }

    // A base URL of another scheme gives answers without an HTTP status.
    void answerWithoutHttpStatus()
    {
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("api/shoot")));
        QFile file(dir.filePath(QStringLiteral("api/shoot/sessions")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(R"({"sessions": [{"share_token": "a"}]})");
        file.close();
        APIService api(QUrl::fromLocalFile(dir.path()).toString(), testCredentials);
        const auto outcome = await(api.fetchShootSessions());
        QVERIFY(outcome.error);
        QCOMPARE(outcome.error->kind(), Kind::InvalidResponse);
        QCOMPARE(outcome.errorText(), QStringLiteral("Invalid server response"));
    }

    void invalidTranscriptUrl()
    {
        QCOMPARE(APIService::transcriptUrl(QStringLiteral("http://[::1"), QStringLiteral("t")), std::nullopt);
        APIService api(QStringLiteral("http://[::1"), testCredentials);
        QCOMPARE(await(api.fetchTranscript(QStringLiteral("t"))).errorText(), QStringLiteral("Invalid server response"));
    }

    // The whole sign-in against the local stand-in: code, verification, downloads, sign-out.
    void signInFlowAgainstTheStandin()
    {
        QString error;
        auto data = StandinData::fromJson(R"({"user": {"name": "Demo"}, "sessions": [
            {"share_token": "s1", "title": "One", "created_days_ago": 1, "created_time": "09:00:00",
             "markers": [{"id": "m", "marker_type": "log", "timecode": "10:00:00:00"}],
             "transcript": [{"utterance_id": "u", "speaker": "A", "text": "Hi"}]}]})",
                                          QDateTime::currentDateTime(), &error);
        QVERIFY2(data, qPrintable(error));
        ServiceStandin standin(*data, QStringLiteral("424242"));
        const quint16 port = standin.listenOnLoopback(0);
        QVERIFY(port != 0);
        QStringList issued;
        connect(&standin, &ServiceStandin::loginCodeIssued, this, [&](const QString &, const QString &code) { issued.append(code); });
        APIService api(QStringLiteral("http://127.0.0.1:%1").arg(port), testCredentials);

        QCOMPARE(await(api.fetchShootSessions()).errorText(), QStringLiteral("Server returned status 401"));
        QVERIFY(await(api.requestLoginCode(QStringLiteral("ana@example.org"))).value);
        QCOMPARE(issued, QStringList{"424242"});
        QCOMPARE(await(api.login(QStringLiteral("ana@example.org"), QStringLiteral("000000"))).errorText(),
                 QStringLiteral("Invalid or expired code"));
        QCOMPARE(api.keychainRead(), std::nullopt);

        const auto login = await(api.login(QStringLiteral("ana@example.org"), QStringLiteral("424242")));
        QCOMPARE(login.value, std::optional(LoginResult{"Demo", "ana@example.org"}));
        QVERIFY(api.keychainRead().value_or(QString()).startsWith(QStringLiteral("sid=")));

        const auto sessions = await(api.fetchShootSessions());
        QVERIFY2(sessions.value, qPrintable(sessions.errorText()));
        QCOMPARE(sessions.value->size(), 1);
        const ShootSession &session = sessions.value->first();
        QCOMPARE(session.title, QStringLiteral("One"));
        QCOMPARE(session.createdAt.toLocalTime().date(), QDate::currentDate().addDays(-1));
        QCOMPARE(session.markers.first().createdAt.toLocalTime().time(), QTime(10, 0));
        const auto transcript = await(api.fetchTranscript(QStringLiteral("s1")));
        QCOMPARE(transcript.value.value_or(QList<TranscriptSegment>()).size(), 1);
        QCOMPARE(await(api.fetchTranscript(QStringLiteral("unknown"))).errorText(),
                 QStringLiteral("Transcript fetch failed with status 404"));

        api.keychainDelete();
        QCOMPARE(await(api.fetchShootSessions()).errorText(), QStringLiteral("Server returned status 401"));
    }
};

QTEST_GUILESS_MAIN(APIServiceTest)
#include "APIServiceTest.moc"
