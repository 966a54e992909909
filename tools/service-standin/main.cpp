// vorlix-service-standin: the shoot-logging service on this machine's loopback interface, for
// the demo and the tests. Prints the address it listens on, then each login code it "e-mails".
#include "ServiceStandin.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <cstdio>

namespace {

void print(FILE *stream, const QString &line)
{
    std::fputs(qPrintable(line + QLatin1Char('\n')), stream);
    std::fflush(stream);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vorlix-service-standin"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Local stand-in of the shoot-logging service (loopback only)."));
    parser.addHelpOption();
    const QCommandLineOption portOption(QStringLiteral("port"), QStringLiteral("Port to listen on; 0 picks a free one (default 8765)."),
                                        QStringLiteral("PORT"), QStringLiteral("8765"));
    const QCommandLineOption codeOption(QStringLiteral("code"), QStringLiteral("The login code it accepts (default 123456)."),
                                        QStringLiteral("CODE"), QStringLiteral("123456"));
    const QCommandLineOption dataOption(QStringLiteral("data"), QStringLiteral("JSON data file to serve (default: the built-in demo data)."),
                                        QStringLiteral("FILE"), QStringLiteral(":/standin/demo-data.json"));
    parser.addOptions({portOption, codeOption, dataOption});
    parser.process(app);

    bool portOk = false;
    const uint port = parser.value(portOption).toUInt(&portOk);
    if (!portOk || port > 65535) {
        print(stderr, QStringLiteral("--port needs a number from 0 to 65535."));
        return 2;
    }
    QFile file(parser.value(dataOption));
    if (!file.open(QIODevice::ReadOnly)) {
        print(stderr, QStringLiteral("%1: %2").arg(file.fileName(), file.errorString()));
        return 1;
    }
    QString error;
    auto data = StandinData::fromJson(file.readAll(), QDateTime::currentDateTime(), &error);
    if (!data) {
        print(stderr, QStringLiteral("%1: %2").arg(file.fileName(), error));
        return 1;
    }

    ServiceStandin standin(std::move(*data), parser.value(codeOption));
    QObject::connect(&standin, &ServiceStandin::loginCodeIssued, [](const QString &email, const QString &code) {
        print(stdout, QStringLiteral("Login code for %1: %2").arg(email, code));
    });
    const quint16 actualPort = standin.listenOnLoopback(quint16(port));
    if (actualPort == 0) {
        print(stderr, QStringLiteral("Cannot listen on 127.0.0.1:%1.").arg(port));
        return 1;
    }
    print(stdout, QStringLiteral("Listening on http://127.0.0.1:%1").arg(actualPort));
    return app.exec();
}
