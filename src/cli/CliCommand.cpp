#include "cli/CliCommand.h"

#include "cli/CliIo.h"
#include "service/ServiceUrl.h"

namespace {

const QString program = QStringLiteral("vorlix-sync-cli");

QString commandHelp(const CliCommand &command)
{
    QString text = QStringLiteral("Usage: %1 [--service-url URL] %2 %3\n\n%4\n")
                       .arg(program, command.name, command.synopsis, command.summary);
    if (!command.positionals.isEmpty()) {
        text += QStringLiteral("\nArguments:\n");
        for (const auto &[name, description] : command.positionals)
            text += QStringLiteral("  %1  %2\n").arg(name, -14).arg(description);
    }
    text += QStringLiteral("\nOptions:\n");
    for (const QCommandLineOption &option : command.options) {
        QStringList names;
        for (const QString &name : option.names())
            names.append((name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name);
        QString left = names.join(QStringLiteral(", "));
        if (!option.valueName().isEmpty())
            left += QLatin1Char(' ') + option.valueName();
        text += QStringLiteral("  %1  %2\n").arg(left, -22).arg(option.description());
    }
    text += QStringLiteral("  %1  %2\n").arg(QStringLiteral("-h, --help"), -22).arg(QStringLiteral("Show this help."));
    return text;
}

// The listing for the whole tool (empty prefix) or for a group such as "export".
QString groupHelp(const QList<CliCommand> &commands, const QString &prefix)
{
    QString text = QStringLiteral("Usage: %1 [--service-url URL] %2<command> [options]\n\n")
                       .arg(program, prefix.isEmpty() ? QString() : prefix + QLatin1Char(' '));
    if (prefix.isEmpty())
        text += QStringLiteral("Exports, matches and probes shoot sessions and footage from the command line.\n\n");
    text += QStringLiteral("Commands:\n");
    for (const CliCommand &command : commands) {
        if (prefix.isEmpty() || command.name.startsWith(prefix + QLatin1Char(' ')))
            text += QStringLiteral("  %1  %2\n").arg(command.name + QLatin1Char(' ') + command.synopsis, -52).arg(command.summary);
    }
    text += QStringLiteral("\nGlobal options:\n"
                           "  --service-url URL   Service to talk to (default: $VORLIX_SERVICE_URL, else %1)\n"
                           "  -h, --help          Show help; after a command, that command's help.\n"
                           "The login is kept in the keyring item $VORLIX_KEYRING_SERVICE / $VORLIX_KEYRING_ACCOUNT "
                           "(default: the application's, %2 / %3).\n")
                .arg(QStringLiteral(VORLIX_DEFAULT_SERVICE_URL), CredentialStore().service(), CredentialStore().account());
    return text;
}

bool isHelp(const QString &argument)
{
    return argument == QLatin1String("--help") || argument == QLatin1String("-h");
}

QString environmentOr(const char *name, const QString &fallback)
{
    return qEnvironmentVariableIsEmpty(name) ? fallback : qEnvironmentVariable(name);
}

// The application's login item unless the environment names another, so that scripts and tests
// can sign the tool in and out without signing the application out.
CredentialStore credentialsFromEnvironment()
{
    const CredentialStore application;
    return CredentialStore(environmentOr("VORLIX_KEYRING_SERVICE", application.service()),
                           environmentOr("VORLIX_KEYRING_ACCOUNT", application.account()));
}

int usage(const QString &problem, const QString &help)
{
    CliIo::printError(problem + QStringLiteral("\n\n") + help);
    return 2;
}

} // namespace

int CliContext::fail(const QString &message) const
{
    CliIo::printError(message + QLatin1Char('\n'));
    return 1;
}

QCoro::Task<int> runCli(const QList<CliCommand> &commands, QStringList arguments)
{
    std::optional<QString> serviceUrlOption;
    while (!arguments.isEmpty() && arguments.first().startsWith(QLatin1String("--service-url"))) {
        const QString first = arguments.takeFirst();
        if (first.startsWith(QLatin1String("--service-url="))) {
            serviceUrlOption = first.mid(first.indexOf(QLatin1Char('=')) + 1);
        } else if (first == QLatin1String("--service-url") && !arguments.isEmpty()) {
            serviceUrlOption = arguments.takeFirst();
        } else {
            co_return usage(QStringLiteral("--service-url needs a URL."), groupHelp(commands, QString()));
        }
    }
    const CliContext context{resolveServiceUrl(serviceUrlOption), credentialsFromEnvironment(), ToolLocations::platformDefault()};
    if (arguments.isEmpty())
        co_return usage(QStringLiteral("No command given."), groupHelp(commands, QString()));
    if (isHelp(arguments.first())) {
        CliIo::printOut(groupHelp(commands, QString()).toUtf8());
        co_return 0;
    }

    // The longest command name that the arguments start with.
    const CliCommand *chosen = nullptr;
    qsizetype words = 0;
    for (const CliCommand &command : commands) {
        const QStringList nameWords = command.name.split(QLatin1Char(' '));
        if (nameWords.size() > words && arguments.mid(0, nameWords.size()) == nameWords) {
            chosen = &command;
            words = nameWords.size();
        }
    }
    if (!chosen) {
        const QString group = arguments.first();
        const bool isGroup = std::any_of(commands.begin(), commands.end(), [&](const CliCommand &command) {
            return command.name.startsWith(group + QLatin1Char(' '));
        });
        if (isGroup && arguments.size() > 1 && isHelp(arguments.at(1))) {
            CliIo::printOut(groupHelp(commands, group).toUtf8());
            co_return 0;
        }
        if (isGroup)
            co_return usage(QStringLiteral("Unknown or missing %1 command.").arg(group), groupHelp(commands, group));
        co_return usage(QStringLiteral("Unknown command \"%1\".").arg(group), groupHelp(commands, QString()));
    }

    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOptions(chosen->options);
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QString());
    parser.addOption(help);
    for (const auto &[name, description] : chosen->positionals)
        parser.addPositionalArgument(name, description);
    const QStringList rest = arguments.mid(words);
    if (!parser.parse(QStringList{program} + rest))
        co_return usage(parser.errorText(), commandHelp(*chosen));
    if (parser.isSet(help)) {
        CliIo::printOut(commandHelp(*chosen).toUtf8());
        co_return 0;
    }
    if (chosen->positionals.isEmpty() && !parser.positionalArguments().isEmpty())
        co_return usage(QStringLiteral("Unexpected argument \"%1\".").arg(parser.positionalArguments().first()),
                        commandHelp(*chosen));
    for (const QString &name : chosen->requiredOptions) {
        if (!parser.isSet(name))
            co_return usage(QStringLiteral("Missing --%1.").arg(name), commandHelp(*chosen));
    }
    if (parser.positionalArguments().size() < chosen->minimumPositionals)
        co_return usage(QStringLiteral("Missing %1.").arg(chosen->positionals.first().first), commandHelp(*chosen));
    co_return co_await chosen->run(context, parser);
}
