#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

// The per-user key-value store. A thin, typed face over QSettings: a value of the wrong type
// reads as absent, so callers apply their own fall-back.
class Preferences
{
public:
    // The user's own store (QSettings' native location for this application).
    Preferences();
    // An ini file of its own: the tests' temporary store and the demo profile.
    explicit Preferences(const QString &iniFile);

    std::optional<QString> string(const QString &key) const;
    std::optional<QStringList> stringList(const QString &key) const;
    std::optional<qint64> integer(const QString &key) const;
    std::optional<QByteArray> data(const QString &key) const;

    void setString(const QString &key, const QString &value);
    void setStringList(const QString &key, const QStringList &value);
    void setInteger(const QString &key, qint64 value);
    void setData(const QString &key, const QByteArray &value);
    void remove(const QString &key);

    // Writes pending changes to disk now; the store also does this on its own.
    void sync();

private:
    std::unique_ptr<QSettings> m_settings;
};
