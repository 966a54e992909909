#include "state/AppState.h"

#include "model/RecordJson.h"
#include "platform/Preferences.h"
#include "state/PreferenceKeys.h"

#include <QJsonDocument>
#include <QJsonParseError>

AppState::AppState(Preferences &preferences, QObject *parent, Clock clock)
    : QObject(parent), m_preferences(preferences), m_clock(std::move(clock))
{
    loadDeletedSessions();
    loadSettings();
    const QString email = m_preferences.string(PreferenceKeys::email).value_or(QString());
    if (!email.isEmpty()) {
        m_userEmail = email;
        m_userName = m_preferences.string(PreferenceKeys::name).value_or(QString());
        m_isLoggedIn = true;
    }
}

QSet<QString> AppState::deletedSessionIds() const
{
    QSet<QString> ids;
    ids.reserve(m_deletedSessions.size());
    for (const DeletedSessionInfo &info : m_deletedSessions)
        ids.insert(info.id);
    return ids;
}

#define VORLIX_SETTER(Setter, member, signal, Type) \
    void AppState::Setter(Type value)               \
    {                                               \
        member = value;                             \
        Q_EMIT signal();                            \
    }

VORLIX_SETTER(setLoggedIn, m_isLoggedIn, isLoggedInChanged, bool)
VORLIX_SETTER(setUserEmail, m_userEmail, userEmailChanged, const QString &)
VORLIX_SETTER(setUserName, m_userName, userNameChanged, const QString &)
VORLIX_SETTER(setSessions, m_sessions, sessionsChanged, const QList<ShootSession> &)
VORLIX_SETTER(setSelectedSession, m_selectedSession, selectedSessionChanged, const std::optional<ShootSession> &)
VORLIX_SETTER(setClips, m_clips, clipsChanged, const QList<MediaClip> &)
VORLIX_SETTER(setScanning, m_isScanning, isScanningChanged, bool)
VORLIX_SETTER(setScanProgress, m_scanProgress, scanProgressChanged, const QString &)
VORLIX_SETTER(setUnreadableFootage, m_unreadableFootage, unreadableFootageChanged, const QStringList &)
VORLIX_SETTER(setFootageFolders, m_footageFolders, footageFoldersChanged, const QStringList &)
VORLIX_SETTER(setPreferredNLE, m_preferredNLE, preferredNLEChanged, const QString &)
VORLIX_SETTER(setAppearance, m_appearance, appearanceChanged, const QString &)
VORLIX_SETTER(setDefaultFps, m_defaultFps, defaultFpsChanged, int)
VORLIX_SETTER(setShowSettings, m_showSettings, showSettingsChanged, bool)
VORLIX_SETTER(setDeletedSessions, m_deletedSessions, deletedSessionsChanged, const QList<DeletedSessionInfo> &)
VORLIX_SETTER(setSyncsRunning, m_syncsRunning, syncsRunningChanged, int)
VORLIX_SETTER(setLastSynced, m_lastSynced, lastSyncedChanged, const QDateTime &)

#undef VORLIX_SETTER

void AppState::loadSettings()
{
    setFootageFolders(m_preferences.stringList(PreferenceKeys::footageFolders).value_or(QStringList()));
    setPreferredNLE(m_preferences.string(PreferenceKeys::preferredNLE).value_or(QStringLiteral("resolve")));
    setAppearance(m_preferences.string(PreferenceKeys::appearance).value_or(QStringLiteral("system")));
    const qint64 fps = m_preferences.integer(PreferenceKeys::defaultFps).value_or(0);
    setDefaultFps(fps > 0 && fps <= 1000 ? int(fps) : 25);
}

void AppState::saveSettings()
{
    m_preferences.setStringList(PreferenceKeys::footageFolders, m_footageFolders);
    m_preferences.setString(PreferenceKeys::preferredNLE, m_preferredNLE);
    m_preferences.setString(PreferenceKeys::appearance, m_appearance);
    m_preferences.setInteger(PreferenceKeys::defaultFps, m_defaultFps);
}

void AppState::applyAppearance()
{
    if (m_appearanceHandler)
        m_appearanceHandler(m_appearance);
}

void AppState::setAppearanceHandler(std::function<void(const QString &)> handler)
{
    m_appearanceHandler = std::move(handler);
}

void AppState::addFootageFolder(const QString &path)
{
    if (m_footageFolders.contains(path))
        return;
    setFootageFolders(m_footageFolders + QStringList{path});
    saveSettings();
}

void AppState::removeFootageFolder(const QString &path)
{
    QStringList folders = m_footageFolders;
    folders.removeAll(path);
    setFootageFolders(folders);
    saveSettings();
}

void AppState::markSessionsDeleted(const QList<ShootSession> &sessions)
{
    const QSet<QString> known = deletedSessionIds();
    QList<DeletedSessionInfo> list = m_deletedSessions;
    const QDateTime now = m_clock();
    for (const ShootSession &session : sessions) {
        if (!known.contains(session.id))
            list.append({session.id, session.title, now});
    }
    setDeletedSessions(list);
    saveDeletedSessions();
}

void AppState::restoreDeletedSession(const QString &id)
{
    QList<DeletedSessionInfo> list = m_deletedSessions;
    list.removeIf([&](const DeletedSessionInfo &info) { return info.id == id; });
    setDeletedSessions(list);
    saveDeletedSessions();
}

void AppState::signIn(const QString &email, const QString &name)
{
    setUserEmail(email);
    setUserName(name);
    setLoggedIn(true);
    m_preferences.setString(PreferenceKeys::email, email);
    m_preferences.setString(PreferenceKeys::name, name);
}

void AppState::signOut()
{
    setLoggedIn(false);
    setUserEmail(QString());
    setUserName(QString());
    setLastSynced(QDateTime());
    m_preferences.remove(PreferenceKeys::email);
    m_preferences.remove(PreferenceKeys::name);
}

void AppState::loadDeletedSessions()
{
    if (const auto bytes = m_preferences.data(PreferenceKeys::deletedSessions)) {
        QJsonParseError parseError;
        const QJsonDocument document = QJsonDocument::fromJson(*bytes, &parseError);
        if (parseError.error == QJsonParseError::NoError) {
            const QJsonValue value = document.isArray() ? QJsonValue(document.array()) : QJsonValue();
            if (const auto list = RecordJson::deletedSessionsFromJson(value))
                m_deletedSessions = *list;
        }
    }

    const QStringList legacyIds = m_preferences.stringList(PreferenceKeys::legacyDeletedSessions).value_or(QStringList());
    if (legacyIds.isEmpty())
        return;
    const QSet<QString> known = deletedSessionIds();
    const QDateTime now = m_clock();
    for (const QString &id : legacyIds) {
        if (!known.contains(id))
            m_deletedSessions.append({id, QStringLiteral("Deleted session"), now});
    }
    m_preferences.remove(PreferenceKeys::legacyDeletedSessions);
    saveDeletedSessions();
}

void AppState::saveDeletedSessions()
{
    const QJsonDocument document(RecordJson::toJsonArray(m_deletedSessions));
    m_preferences.setData(PreferenceKeys::deletedSessions, document.toJson(QJsonDocument::Compact));
}
