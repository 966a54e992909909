#include "cli/CliCommand.h"
#include "cli/CliIo.h"
#include "model/RecordJson.h"
#include "service/APIService.h"

#include <QJsonObject>

namespace {

const QCommandLineOption emailOption(QStringLiteral("email"), QStringLiteral("E-mail address of the account."), QStringLiteral("E"));
const QCommandLineOption codeOption(QStringLiteral("code"), QStringLiteral("The code from the e-mail; without it a code is requested."), QStringLiteral("C"));

QCoro::Task<int> login(const CliContext &context, const QCommandLineParser &parser)
{
    APIService api(context.serviceUrl, context.credentials);
    const QString email = parser.value(emailOption);
    try {
        if (!parser.isSet(codeOption)) {
            co_await api.requestLoginCode(email);
            co_return 0;
        }
        const LoginResult user = co_await api.login(email, parser.value(codeOption));
        CliIo::printJson(QJsonObject{{QStringLiteral("name"), user.name}, {QStringLiteral("email"), user.email}});
    } catch (const APIError &error) {
        co_return context.fail(error.description());
    }
    co_return 0;
}

QCoro::Task<int> sessions(const CliContext &context, const QCommandLineParser &)
{
    APIService api(context.serviceUrl, context.credentials);
    try {
        const QList<ShootSession> fetched = co_await api.fetchShootSessions();
        CliIo::printJson(RecordJson::toJsonArray(fetched));
    } catch (const APIError &error) {
        co_return context.fail(error.description());
    }
    co_return 0;
}

QCoro::Task<int> transcript(const CliContext &context, const QCommandLineParser &parser)
{
    APIService api(context.serviceUrl, context.credentials);
    try {
        const QList<TranscriptSegment> segments = co_await api.fetchTranscript(parser.positionalArguments().first());
        CliIo::printJson(RecordJson::toJsonArray(segments));
    } catch (const APIError &error) {
        co_return context.fail(error.description());
    }
    co_return 0;
}

QCoro::Task<int> logout(const CliContext &context, const QCommandLineParser &)
{
    QCoro::Task<> removal = context.credentials.remove();
    co_await std::move(removal);
    co_return 0;
}

} // namespace

QList<CliCommand> serviceCommands()
{
    return {{QStringLiteral("login"),
             QStringLiteral("--email E [--code C]"),
             QStringLiteral("Request a login code by e-mail, or sign in with it and print who signed in."),
             {emailOption, codeOption},
             {},
             {QStringLiteral("email")},
             0,
             login},
            {QStringLiteral("sessions"),
             QString(),
             QStringLiteral("Print the signed-in user's shoot sessions with their markers."),
             {},
             {},
             {},
             0,
             sessions},
            {QStringLiteral("transcript"),
             QStringLiteral("TOKEN"),
             QStringLiteral("Print the transcript of the session with this share token."),
             {},
             {{QStringLiteral("TOKEN"), QStringLiteral("The session's share token.")}},
             {},
             1,
             transcript},
            {QStringLiteral("logout"),
             QString(),
             QStringLiteral("Forget the stored login."),
             {},
             {},
             {},
             0,
             logout}};
}
