#pragma once

#include "model/ShootSession.h"

#include <QDate>
#include <QLocale>
#include <QSet>
#include <optional>

// The session list's behaviour without widgets: grouping by day, the delete alert's texts and
// the reaction to selection.
namespace SessionListLogic {

struct DayGroup {
    QString label;
    QList<ShootSession> sessions;
};

// One group per local calendar day, newest day first; "Today", "Yesterday" or the medium date.
// Inside a group newest first, equal times in their list order.
QList<DayGroup> sessionsByDate(const QList<ShootSession> &sessions, const QDate &today, const QLocale &locale);

// The locale's date without weekday and with abbreviated month: 16 Nov 2026, Nov 16, 2026.
QString mediumDateFormat(const QLocale &locale);
// The date a session's row shows, the format worked out once for many rows.
class RowDate
{
public:
    explicit RowDate(const QLocale &locale);
    QString text(const ShootSession &session) const;

private:
    QLocale m_locale;
    QString m_format;
};

// The groups with the sessions whose title or row date contains `text`, ignoring case and the
// blanks around it; a day whose label matches ("Today") keeps all its sessions, a day left empty
// goes. Blank text filters nothing.
QList<DayGroup> filterGroups(const QList<DayGroup> &groups, const QString &text, const QLocale &locale);

// The sidebar's sync line: "Syncing…" while a sync runs, else "Synced" and the time of the last
// success (with its date when that was not today), else nothing.
QString syncStatusText(bool running, const QDateTime &lastSynced, const QDate &today, const QLocale &locale);

QString deleteAlertTitle(const QSet<QString> &selectedIds);
QString deleteAlertMessage(const QSet<QString> &selectedIds, const QList<ShootSession> &sessions);

// What a change of the list's selection does to the detail pane.
struct SelectionEffect {
    enum class Kind { Select, Clear, Keep } kind = Kind::Keep;
    std::optional<ShootSession> session; // for Select: the session, or none if the id is unknown
};
SelectionEffect selectionEffect(const QSet<QString> &selectedIds, const QList<ShootSession> &sessions);

} // namespace SessionListLogic
