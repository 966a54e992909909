#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <memory>

class APIService;
class AppState;
class ContentView;
class FootageScanner;
class Preferences;
class ShellBackend;
class WidgetDesktop;

// The application: the one AppState for the life of the process, the main window and the
// adapters they share.
class VorlixCompanionApp : public QObject
{
    Q_OBJECT

public:
    struct Options {
        QString settingsFile; // empty: the user's own preferences store
        QUrl serviceUrl;
        QString loginHint;    // shown on the login screen, e.g. the demo's code
    };
    // --settings FILE / $VORLIX_SETTINGS_FILE, --service-url URL / $VORLIX_SERVICE_URL / the
    // built-in URL, --login-hint TEXT / $VORLIX_LOGIN_HINT. Exits with usage on bad arguments.
    // A profile of its own (a settings file) also keeps its login apart in the credential store.
    static Options parseOptions(const QStringList &arguments);

    explicit VorlixCompanionApp(const Options &options, QObject *parent = nullptr);
    ~VorlixCompanionApp() override;

    AppState &state() { return *m_state; }
    ContentView &window() { return *m_window; }

private:
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<AppState> m_state;
    std::unique_ptr<WidgetDesktop> m_desktop;
    std::unique_ptr<APIService> m_api;
    std::unique_ptr<FootageScanner> m_scanner;
    std::unique_ptr<ShellBackend> m_backend;
    std::unique_ptr<ContentView> m_window;
};
