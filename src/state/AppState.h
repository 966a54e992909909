#pragma once

#include "model/DeletedSessionInfo.h"
#include "model/MediaClip.h"
#include "model/ShootSession.h"

#include <QDateTime>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <functional>
#include <optional>

class Preferences;

// The one observable state of the application. It lives on the GUI thread; every assignment
// emits the property's change signal, equal value or not, and views coalesce their redraws.
// It reads and writes every preference a screen shows; only the dialogs' remembered folders
// are kept elsewhere.
class AppState : public QObject
{
    Q_OBJECT

public:
    // The current time: when a session is marked deleted, and which day the session list calls
    // today. Passed in so that tests choose it.
    using Clock = std::function<QDateTime()>;

    // Loads the deleted-session list (migrating the earlier form), the settings and a stored login.
    explicit AppState(Preferences &preferences, QObject *parent = nullptr,
                      Clock clock = &QDateTime::currentDateTimeUtc);

    QDateTime now() const { return m_clock(); }

    bool isLoggedIn() const { return m_isLoggedIn; }
    const QString &userEmail() const { return m_userEmail; }
    const QString &userName() const { return m_userName; }
    const QList<ShootSession> &sessions() const { return m_sessions; }
    const std::optional<ShootSession> &selectedSession() const { return m_selectedSession; }
    const QList<MediaClip> &clips() const { return m_clips; }
    bool isScanning() const { return m_isScanning; }
    const QString &scanProgress() const { return m_scanProgress; }
    // The files the latest scans of their folders could not read, until the user dismisses them.
    const QStringList &unreadableFootage() const { return m_unreadableFootage; }
    const QStringList &footageFolders() const { return m_footageFolders; }
    const QString &preferredNLE() const { return m_preferredNLE; }
    const QString &appearance() const { return m_appearance; }
    int defaultFps() const { return m_defaultFps; }
    bool showSettings() const { return m_showSettings; }
    const QList<DeletedSessionInfo> &deletedSessions() const { return m_deletedSessions; }
    // Syncs started and not yet ended; they may overlap.
    int syncsRunning() const { return m_syncsRunning; }
    // When a sync's answer was last merged; invalid until one was since signing in.
    const QDateTime &lastSynced() const { return m_lastSynced; }
    QSet<QString> deletedSessionIds() const;

    void setLoggedIn(bool value);
    void setUserEmail(const QString &value);
    void setUserName(const QString &value);
    void setSessions(const QList<ShootSession> &value);
    void setSelectedSession(const std::optional<ShootSession> &value);
    void setClips(const QList<MediaClip> &value);
    void setScanning(bool value);
    void setScanProgress(const QString &value);
    void setUnreadableFootage(const QStringList &value);
    void setFootageFolders(const QStringList &value);
    void setPreferredNLE(const QString &value);
    void setAppearance(const QString &value);
    void setDefaultFps(int value);
    void setShowSettings(bool value);
    void setSyncsRunning(int value);
    void setLastSynced(const QDateTime &value);

    void loadSettings();
    void saveSettings();

    // Applies `appearance` through the handler the GUI installs; the core has no palette of its own.
    void applyAppearance();
    void setAppearanceHandler(std::function<void(const QString &)> handler);

    void addFootageFolder(const QString &path);
    void removeFootageFolder(const QString &path);

    void markSessionsDeleted(const QList<ShootSession> &sessions);
    void restoreDeletedSession(const QString &id);

    // A successful code check: remembers the user so the next start is signed in.
    void signIn(const QString &email, const QString &name);
    // Clears the login, the stored e-mail and name and the last sync's time; the caller deletes
    // the credential and decides what else goes.
    void signOut();

Q_SIGNALS:
    void isLoggedInChanged();
    void userEmailChanged();
    void userNameChanged();
    void sessionsChanged();
    void selectedSessionChanged();
    void clipsChanged();
    void isScanningChanged();
    void scanProgressChanged();
    void unreadableFootageChanged();
    void footageFoldersChanged();
    void preferredNLEChanged();
    void appearanceChanged();
    void defaultFpsChanged();
    void showSettingsChanged();
    void deletedSessionsChanged();
    void syncsRunningChanged();
    void lastSyncedChanged();

private:
    void loadDeletedSessions();
    void saveDeletedSessions();
    void setDeletedSessions(const QList<DeletedSessionInfo> &value);

    Preferences &m_preferences;
    Clock m_clock;
    std::function<void(const QString &)> m_appearanceHandler;

    bool m_isLoggedIn = false;
    QString m_userEmail;
    QString m_userName;
    QList<ShootSession> m_sessions;
    std::optional<ShootSession> m_selectedSession;
    QList<MediaClip> m_clips;
    bool m_isScanning = false;
    QString m_scanProgress;
    QStringList m_unreadableFootage;
    QStringList m_footageFolders;
    QString m_preferredNLE = QStringLiteral("resolve");
    QString m_appearance = QStringLiteral("system");
    int m_defaultFps = 25;
    bool m_showSettings = false;
    QList<DeletedSessionInfo> m_deletedSessions;
    int m_syncsRunning = 0;
    QDateTime m_lastSynced;
};
