#include "ui/shell/VorlixCompanionApp.h"

#include "media/FootageScanner.h"
#include "platform/Preferences.h"
#include "platform/ProcessWorkspace.h"
#include "service/APIService.h"
#include "service/ServiceUrl.h"
#include "state/AppState.h"
#include "ui/shell/ContentView.h"
#include "ui/shell/ServiceShellBackend.h"
#include "ui/shell/WidgetDesktop.h"
#include "ui/widgets/Theme.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QProcessEnvironment>

VorlixCompanionApp::Options VorlixCompanionApp::parseOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Vorlix Sync: shoot markers from the logging service into your edit."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption settings(QStringLiteral("settings"), QStringLiteral("Keep settings in this ini file instead of the user's own store."), QStringLiteral("file"));
    const QCommandLineOption serviceUrl(QStringLiteral("service-url"), QStringLiteral("Base URL of the shoot-logging service."), QStringLiteral("url"));
    const QCommandLineOption loginHint(QStringLiteral("login-hint"), QStringLiteral("A line shown on the login screen."), QStringLiteral("text"));
    parser.addOptions({settings, serviceUrl, loginHint});
    parser.process(arguments);

    const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const auto pick = [&](const QCommandLineOption &option, const QString &variable, const QString &fallback) {
        if (parser.isSet(option))
            return parser.value(option);
        return environment.value(variable, fallback);
    };
    Options options;
    options.settingsFile = pick(settings, QStringLiteral("VORLIX_SETTINGS_FILE"), QString());
    options.serviceUrl = QUrl(resolveServiceUrl(parser.isSet(serviceUrl) ? std::optional<QString>(parser.value(serviceUrl)) : std::nullopt));
    options.loginHint = pick(loginHint, QStringLiteral("VORLIX_LOGIN_HINT"), QString());
    return options;
}

VorlixCompanionApp::VorlixCompanionApp(const Options &options, QObject *parent) : QObject(parent)
{
    m_preferences = options.settingsFile.isEmpty() ? std::make_unique<Preferences>() : std::make_unique<Preferences>(options.settingsFile);
    m_state = std::make_unique<AppState>(*m_preferences);
    m_state->setAppearanceHandler([](const QString &appearance) { Theme::applyAppearance(appearance); });
    m_desktop = std::make_unique<WidgetDesktop>(DialogFolders(*m_preferences, DialogFolders::standardFallbacks()));
    // A separate profile signs in separately: its cookie is a credential item of its own.
    const QString account = options.settingsFile.isEmpty()
                                ? QStringLiteral("session_cookie")
                                : QStringLiteral("session_cookie:") + QFileInfo(options.settingsFile).absoluteFilePath();
    m_api = std::make_unique<APIService>(options.serviceUrl.toString(QUrl::StripTrailingSlash),
                                         CredentialStore(QStringLiteral("io.vorlix.sync"), account));
    const ToolLocations tools = ToolLocations::platformDefault();
    m_scanner = std::make_unique<FootageScanner>(*m_state, tools, ScanOptions::platformDefault());
    m_backend = std::make_unique<ServiceShellBackend>(*m_state, *m_api, *m_scanner, tools);
    ExportEnvironment exports{std::make_shared<ProcessWorkspace>(), QDir::tempPath(), EditorLocations::forThisPlatform(), tools};
    m_window = std::make_unique<ContentView>(*m_state, *m_backend, *m_desktop, ServiceLinks::forBaseUrl(options.serviceUrl), std::move(exports));
    m_window->setLoginHint(options.loginHint);
    m_desktop->setWindow(m_window.get());
}

VorlixCompanionApp::~VorlixCompanionApp() = default;
