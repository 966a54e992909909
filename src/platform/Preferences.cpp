#include "platform/Preferences.h"

#include "time/NumberText.h"

#include <QMetaType>
#include <QVariant>

// QSettings' ini format keeps only text and byte arrays apart: numbers come back as text, a
// one-element string list as a plain string and an empty one as nothing. The getters read those
// forms back and treat anything else as absent.
Preferences::Preferences()
    : m_settings(std::make_unique<QSettings>(QStringLiteral("Vorlix"), QStringLiteral("Vorlix Sync")))
{
}

Preferences::Preferences(const QString &iniFile)
    : m_settings(std::make_unique<QSettings>(iniFile, QSettings::IniFormat))
{
}

std::optional<QString> Preferences::string(const QString &key) const
{
    const QVariant value = m_settings->value(key);
    if (value.typeId() != QMetaType::QString)
        return std::nullopt;
    return value.toString();
}

std::optional<QStringList> Preferences::stringList(const QString &key) const
{
    const QVariant value = m_settings->value(key);
    if (value.typeId() == QMetaType::QStringList || value.typeId() == QMetaType::QString)
        return value.toStringList();
    return std::nullopt;
}

std::optional<qint64> Preferences::integer(const QString &key) const
{
    const QVariant value = m_settings->value(key);
    if (value.typeId() != QMetaType::QString && value.typeId() != QMetaType::Int
        && value.typeId() != QMetaType::LongLong)
        return std::nullopt;
    return parseBase10Integer(value.toString());
}

std::optional<QByteArray> Preferences::data(const QString &key) const
{
    const QVariant value = m_settings->value(key);
    if (value.typeId() != QMetaType::QByteArray)
        return std::nullopt;
    return value.toByteArray();
}

void Preferences::setString(const QString &key, const QString &value)
{
    m_settings->setValue(key, value);
}

void Preferences::setStringList(const QString &key, const QStringList &value)
{
    m_settings->setValue(key, value);
}

void Preferences::setInteger(const QString &key, qint64 value)
{
    m_settings->setValue(key, value);
}

void Preferences::setData(const QString &key, const QByteArray &value)
{
    m_settings->setValue(key, value);
}

void Preferences::remove(const QString &key)
{
    m_settings->remove(key);
}

void Preferences::sync()
{
    m_settings->sync();
}
