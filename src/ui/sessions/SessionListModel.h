#pragma once

#include "ui/sessions/SessionListLogic.h"

#include <QAbstractListModel>

// The sidebar's rows: a header per day followed by that day's sessions, or the "Sessions"
// placeholder when there are none. Rebuilding with the same rows only repaints, so a sync does
// not close a rename editor or lose the scroll position.
class SessionListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum class RowKind { Header, Session, Placeholder };
    enum Role {
        KindRole = Qt::UserRole + 1,
        SessionIdRole,
        MarkerCountRole,
        ClipCountRole,
        DateTextRole,
        HintRole,
    };

    // What shows under the "Sessions" header when no group has a session.
    struct Placeholder {
        QString text;
        QString hint;
    };

    explicit SessionListModel(QObject *parent = nullptr);

    void setGroups(const QList<SessionListLogic::DayGroup> &groups, const Placeholder &placeholder, const QLocale &locale);

    QModelIndex indexOfSession(const QString &id) const;
    RowKind kindAt(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    struct Row {
        RowKind kind;
        QString text; // header label, session title, or the placeholder's text
        QString sessionId;
        int markerCount = 0;
        int clipCount = 0;
        QString dateText;
        QString hint;
    };

    QList<Row> m_rows;
    QHash<QString, int> m_rowOfSession;
};
