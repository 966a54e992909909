#include "ui/settings/SettingsLogic.h"

#include <algorithm>

namespace SettingsLogic {

const QList<Choice<QString>> &themeChoices()
{
    static const QList<Choice<QString>> choices{
        {QStringLiteral("System"), QStringLiteral("system")},
        {QStringLiteral("Light"), QStringLiteral("light")},
        {QStringLiteral("Dark"), QStringLiteral("dark")},
    };
    return choices;
}

const QList<Choice<QString>> &nleChoices()
{
    static const QList<Choice<QString>> choices{
        {QStringLiteral("DaVinci Resolve"), QStringLiteral("resolve")},
        {QStringLiteral("Adobe Premiere Pro"), QStringLiteral("premiere")},
        {QStringLiteral("Final Cut Pro"), QStringLiteral("fcp")},
    };
    return choices;
}

const QList<Choice<int>> &frameRateChoices()
{
    static const QList<Choice<int>> choices{
        {QStringLiteral("23.976 / 24"), 24},
        {QStringLiteral("25"), 25},
        {QStringLiteral("29.97 / 30"), 30},
        {QStringLiteral("50"), 50},
        {QStringLiteral("59.94 / 60"), 60},
    };
    return choices;
}

QString initials(const QString &userName, const QString &userEmail)
{
    const QString &source = userName.isEmpty() ? userEmail : userName;
    const QStringList words = source.split(u' ', Qt::SkipEmptyParts);
    QString result;
    for (qsizetype i = 0; i < std::min<qsizetype>(2, words.size()); ++i)
        result += words.at(i).left(words.at(i).at(0).isHighSurrogate() ? 2 : 1);
    return result.toUpper();
}

QString displayName(const QString &userName)
{
    return userName.isEmpty() ? QStringLiteral("User") : userName;
}

QList<DeletedSessionInfo> newestFirst(QList<DeletedSessionInfo> deleted)
{
    std::stable_sort(deleted.begin(), deleted.end(), [](const DeletedSessionInfo &a, const DeletedSessionInfo &b) {
        return a.deletedAt > b.deletedAt;
    });
    return deleted;
}

} // namespace SettingsLogic
