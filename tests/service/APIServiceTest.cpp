#include "service/APIService.h"
#include "ServiceTestSupport.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

using namespace std::chrono_literals;

namespace {

// The tests' own keyring item, so the application's login is never touched.
const CredentialStore testCredentials(QStringLiteral("io.vorlix.sync.test-api"), QStringLiteral("test-api"));

// Runs one of the operations by name; what it raised, if anything.
std::optional<APIError> errorOf(APIService &api, QStringView operation)
{
    if (operation == u"code")
        return await(api.requestLoginCode(QStringLiteral(" Ana@Example.org ")));
    if (operation == u"login")
        return await(api.login(QStringLiteral("typed@example.org"), QStringLiteral(" 123 456 ")));
    if (operation == u"sessions")
        return await(api.fetchShootSessions());
    if (operation == u"audio")
        return await(api.uploadAnalysisAudio({QStringLiteral("tok\u00e9n"), QStringLiteral("A 1.mov"), QStringLiteral("10:00:00:00"), 30, "RIFF"}));
    if (operation == u"frames")
        return await(api.uploadAnalysisFrames(R"({"frames":[]})"));
    return await(api.fetchTranscript(QStringLiteral("a b?c#/:@\u00e9")));
}

} // namespace

class APIServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanupTestCase() { awaitTask(testCredentials.remove()); }

    // Each operation's request as sent (the share token percent-encoded as a path segment). The
    // GET requests and the analysis uploads carry exactly the stored text as their cookie and
    // nothing the service set (the jar keeps nothing): a code check's Set-Cookie is stored as
    // the credential, and after a delete no cookie goes out at all.
    void requestsOnTheWire()
    {
        ScriptedServer server({200, {{"Content-Type", "application/json"}, {"Set-Cookie", "tracker=1; Path=/"}}, R"({"ok": true, "sessions": [], "segments": []})"});
        APIService api(server.url(), testCredentials);
        awaitTask(api.keychainWrite(QStringLiteral("sid=a-b.c")));
        for (const char *operation : {"code", "sessions", "transcript", "audio", "frames", "login", "sessions"})
            QCOMPARE(errorOf(api, QString::fromLatin1(operation)).has_value(), false);
        awaitTask(api.keychainDelete());
        QCOMPARE(errorOf(api, u"transcript").has_value(), false);

        QStringList requests;
        for (const SeenRequest &request : server.seen())
            requests.append(request.line({"Content-Type", "x-vorlix-client", "Cookie", "sessiontoken", "filename", "starttimecode", "fps"})
                            + u' ' + QString::fromUtf8(request.body));
        QCOMPARE(requests, (QStringList{R"(POST /auth/login application/json - - - - - - {"email":" Ana@Example.org "})",
                                        "GET /api/shoot/sessions - - sid=a-b.c - - - - ",
                                        "GET /api/ferro/a%20b%3Fc%23%2F:@%C3%A9/transcript - - sid=a-b.c - - - - ",
                                        "POST /api/shoot/analyse-audio audio/wav - sid=a-b.c tok\u00e9n A 1.mov 10:00:00:00 30 RIFF",
                                        R"(POST /api/shoot/analyse-frames application/json - sid=a-b.c - - - - {"frames":[]})",
                                        R"(POST /auth/verify application/json live - - - - - {"code":" 123 456 ","email":"typed@example.org"})",
                                        "GET /api/shoot/sessions - - tracker=1 - - - - ",
                                        "GET /api/ferro/a%20b%3Fc%23%2F:@%C3%A9/transcript - - - - - - - "}));
        QCOMPARE(APIService::transcriptUrl(server.url(), QStringLiteral("../x"))->path(QUrl::FullyEncoded), "/api/ferro/..%2Fx/transcript");
        QCOMPARE(APIService::transcriptUrl(server.url(), QStringLiteral("..")), std::nullopt);
    }

    // Whatever the service words, a description is one line of bounded length.
    void descriptionsAreBounded()
    {
        QCOMPARE(APIError::loginFailed(QString(5000, u'x')).description(), QString(APIError::maximumLength, u'x') + QChar(0x2026));
    }

    // How each operation judges an answer or its absence, and what stays stored afterwards.
    void answers_data() { addJsonCases(QStringLiteral("service/service-answers.json"), QStringLiteral("http")); }

    void answers()
    {
        QFETCH(QJsonObject, data);
        const QString server = data["server"].toString();
        const QByteArray body = data.contains(QLatin1StringView("json")) ? QJsonDocument::fromVariant(data["json"].toVariant()).toJson()
                                                                         : data["body"].toString().toUtf8();
        HttpAnswer reply{data["status"].toInt(), {{"Content-Type", "application/json"}}, body};
        if (data.contains(QLatin1StringView("setCookie")))
            reply.headers.append({"Set-Cookie", data["setCookie"].toString().toUtf8()});
        // A redirect sends every request to a second server, which must never see one, or to
        // "/moved", which gives the scripted answer.
        ScriptedServer elsewhere;
        const QStringList redirect = data["redirect"].toString().split(u' '); // "STATUS elsewhere" or "STATUS /moved"
        const bool redirects = redirect.size() == 2;
        const QString target = redirects && redirect[1] == u"elsewhere" ? elsewhere.url() + QStringLiteral("/moved") : QStringLiteral("/moved");
        ScriptedServer scripted(redirects ? HttpAnswer{redirect[0].toInt(), {{"Location", target.toUtf8()}}, {}} : reply,
                                {{QStringLiteral("/moved"), reply}});
        QTcpServer tcp;
        QVERIFY(tcp.listen(QHostAddress::LocalHost, 0));
        const QString socketUrl = QStringLiteral("http://127.0.0.1:%1").arg(tcp.serverPort());
        const QString url = server.isEmpty() ? scripted.url() : server.startsWith(u"http:") ? server : socketUrl;
        if (server == u"closed")
            tcp.close();
        connect(&tcp, &QTcpServer::newConnection, this, [&] {
            QTcpSocket *socket = tcp.nextPendingConnection();
            if (server == u"garbage")
                socket->write("SSH-2.0-OpenSSH\r\n\r\n");
            if (server == u"huge")
                socket->write("HTTP/1.1 200 OK\r\nContent-Length: 1500000000\r\n\r\n{");
            // A body that never ends: a byte or a 64 kB chunk every 50 ms.
            if (server == u"drip" || server == u"flood") {
                const bool drip = server == u"drip";
                socket->write(drip ? "HTTP/1.1 200 OK\r\nContent-Length: 900\r\n\r\n" : "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n");
                const QByteArray piece = drip ? " " : "10000\r\n" + QByteArray(65536, ' ') + "\r\n";
                auto *timer = new QTimer(socket);
                connect(timer, &QTimer::timeout, socket, [socket, piece] { socket->write(piece); });
                timer->start(50);
            }
        });
        // A raw socket gets limits small enough for a test: 0.3 s and 1000 bytes per call.
        const CallLimit small{300ms, 1000};
        const APILimits limits = server.isEmpty() ? APILimits{} : APILimits{small, small, small, small, small, small};
        APIService api(url, testCredentials, limits);
        awaitTask(api.keychainWrite(data["earlier"].toString(QStringLiteral("sid=earlier"))));
        const QString expected = data["error"].toString(QStringLiteral("none"));
        const QStringList kinds{"LoginFailed", "InvalidResponse", "Transport", "Parse"};
        for (const QJsonValue &operation : data.value(QLatin1StringView("operations")).toArray(QJsonArray{"code", "login", "sessions", "transcript", "audio", "frames"})) {
            const std::optional<APIError> raised = errorOf(api, operation.toString());
            const QString error = raised ? kinds.at(int(raised->kind())) + QStringLiteral(": ") + raised->description() : QStringLiteral("none");
            if (!expected.endsWith(u'*') || !error.startsWith(expected.chopped(1))) // "*": any description
                QCOMPARE(operation.toString() + u' ' + error, operation.toString() + u' ' + expected);
        }
        QCOMPARE(awaitTask(api.keychainRead()).value_or(QString()), data["stored"].toString(data["earlier"].toString(QStringLiteral("sid=earlier"))));
        QVERIFY2(elsewhere.seen().isEmpty(), "a request went to another origin");
        if (data.contains(QLatin1StringView("requests")))
            QCOMPARE(scripted.seen().size(), data["requests"].toInt());
    }
};

QTEST_GUILESS_MAIN(APIServiceTest)
#include "APIServiceTest.moc"
