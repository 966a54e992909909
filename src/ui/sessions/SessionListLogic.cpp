#include "ui/sessions/SessionListLogic.h"

#include <QMap>
#include <QRegularExpression>
#include <algorithm>

namespace SessionListLogic {

QList<DayGroup> sessionsByDate(const QList<ShootSession> &sessions, const QDate &today, const QLocale &locale)
{
    QMap<QDate, QList<ShootSession>> byDay;
    for (const ShootSession &session : sessions)
        byDay[session.createdAt.toLocalTime().date()].append(session);

    const QString format = mediumDateFormat(locale);
    QList<DayGroup> groups;
    groups.reserve(byDay.size());
    for (auto it = byDay.end(); it != byDay.begin();) {
        --it;
        const QDate &day = it.key();
        QString label;
        if (day == today)
            label = QStringLiteral("Today");
        else if (day == today.addDays(-1))
            label = QStringLiteral("Yesterday");
        else
            label = locale.toString(day, format);
        QList<ShootSession> members = it.value();
        std::stable_sort(members.begin(), members.end(), [](const ShootSession &a, const ShootSession &b) {
            return a.createdAt > b.createdAt;
        });
        groups.append({label, members});
    }
    return groups;
}

QString mediumDateFormat(const QLocale &locale)
{
    QString format = locale.dateFormat(QLocale::LongFormat);
    static const QRegularExpression weekday(QStringLiteral("d{4}[,.]?\\s*"));
    format.remove(weekday);
    format.replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
    return format.trimmed();
}

RowDate::RowDate(const QLocale &locale) : m_locale(locale), m_format(mediumDateFormat(locale)) {}

QString RowDate::text(const ShootSession &session) const
{
    return m_locale.toString(session.createdAt.toLocalTime().date(), m_format);
}

QList<DayGroup> filterGroups(const QList<DayGroup> &groups, const QString &text, const QLocale &locale)
{
    const QString needle = text.trimmed();
    if (needle.isEmpty())
        return groups;
    const RowDate rowDate(locale);
    QList<DayGroup> kept;
    for (const DayGroup &group : groups) {
        if (group.label.contains(needle, Qt::CaseInsensitive)) {
            kept.append(group);
            continue;
        }
        DayGroup matching{group.label, {}};
        for (const ShootSession &session : group.sessions) {
            if (session.title.contains(needle, Qt::CaseInsensitive) || rowDate.text(session).contains(needle, Qt::CaseInsensitive))
                matching.sessions.append(session);
        }
        if (!matching.sessions.isEmpty())
            kept.append(matching);
    }
    return kept;
}

QString syncStatusText(bool running, const QDateTime &lastSynced, const QDate &today, const QLocale &locale)
{
    if (running)
        return QStringLiteral("Syncing…");
    if (!lastSynced.isValid())
        return QString();
    // Seconds would change the line at every sync; some locales' short times carry them.
    static const QRegularExpression seconds(QStringLiteral("[:.]ss"));
    QString time = locale.timeFormat(QLocale::ShortFormat);
    time.remove(seconds);
    const QDateTime local = lastSynced.toLocalTime();
    if (local.date() == today)
        return QStringLiteral("Synced %1").arg(locale.toString(local.time(), time));
    return QStringLiteral("Synced %1 %2").arg(locale.toString(local.date(), QLocale::ShortFormat), locale.toString(local.time(), time));
}

QString deleteAlertTitle(const QSet<QString> &selectedIds)
{
    if (selectedIds.size() == 1)
        return QStringLiteral("Delete session?");
    return QStringLiteral("Delete %1 sessions?").arg(selectedIds.size());
}

QString deleteAlertMessage(const QSet<QString> &selectedIds, const QList<ShootSession> &sessions)
{
    if (selectedIds.size() == 1) {
        const QString &id = *selectedIds.cbegin();
        for (const ShootSession &session : sessions) {
            if (session.id == id)
                return QStringLiteral("Are you sure you want to delete \"%1\"? This can't be undone.").arg(session.title);
        }
    }
    return QStringLiteral("Are you sure you want to delete %1 sessions? This can't be undone.").arg(selectedIds.size());
}

SelectionEffect selectionEffect(const QSet<QString> &selectedIds, const QList<ShootSession> &sessions)
{
    if (selectedIds.isEmpty())
        return {SelectionEffect::Kind::Clear, std::nullopt};
    if (selectedIds.size() > 1)
        return {SelectionEffect::Kind::Keep, std::nullopt};
    const QString &id = *selectedIds.cbegin();
    for (const ShootSession &session : sessions) {
        if (session.id == id)
            return {SelectionEffect::Kind::Select, session};
    }
    return {SelectionEffect::Kind::Select, std::nullopt};
}

} // namespace SessionListLogic
