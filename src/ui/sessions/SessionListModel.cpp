#include "ui/sessions/SessionListModel.h"

SessionListModel::SessionListModel(QObject *parent) : QAbstractListModel(parent) {}

void SessionListModel::setGroups(const QList<SessionListLogic::DayGroup> &groups, const Placeholder &placeholder, const QLocale &locale)
{
    QList<Row> rows;
    if (groups.isEmpty()) {
        rows.append({RowKind::Header, QStringLiteral("Sessions"), {}, 0, 0, {}, {}});
        rows.append({RowKind::Placeholder, placeholder.text, {}, 0, 0, {}, placeholder.hint});
    }
    const SessionListLogic::RowDate rowDate(locale);
    for (const SessionListLogic::DayGroup &group : groups) {
        rows.append({RowKind::Header, group.label, {}, 0, 0, {}, {}});
        for (const ShootSession &session : group.sessions) {
            rows.append({RowKind::Session, session.title, session.id, int(session.markers.size()),
                         int(session.matchedClips.size()), rowDate.text(session), {}});
        }
    }

    const bool sameShape = rows.size() == m_rows.size()
                           && std::equal(rows.cbegin(), rows.cend(), m_rows.cbegin(), [](const Row &a, const Row &b) {
                                  return a.kind == b.kind && a.sessionId == b.sessionId
                                         && (a.kind != RowKind::Header || a.text == b.text);
                              });
    if (sameShape) {
        m_rows = std::move(rows);
        if (!m_rows.isEmpty())
            Q_EMIT dataChanged(index(0), index(int(m_rows.size()) - 1));
        return;
    }
    beginResetModel();
    m_rows = std::move(rows);
    m_rowOfSession.clear();
    for (int row = 0; row < m_rows.size(); ++row) {
        if (m_rows.at(row).kind == RowKind::Session)
            m_rowOfSession.insert(m_rows.at(row).sessionId, row);
    }
    endResetModel();
}

QModelIndex SessionListModel::indexOfSession(const QString &id) const
{
    const auto it = m_rowOfSession.constFind(id);
    return it == m_rowOfSession.cend() ? QModelIndex() : index(*it);
}

SessionListModel::RowKind SessionListModel::kindAt(int row) const
{
    return m_rows.at(row).kind;
}

int SessionListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant SessionListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows.size())
        return {};
    const Row &row = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return row.text;
    case KindRole:
        return int(row.kind);
    case SessionIdRole:
        return row.sessionId;
    case MarkerCountRole:
        return row.markerCount;
    case ClipCountRole:
        return row.clipCount;
    case DateTextRole:
        return row.dateText;
    case HintRole:
        return row.hint;
    default:
        return {};
    }
}

Qt::ItemFlags SessionListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    if (m_rows.at(index.row()).kind == RowKind::Session)
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable;
    return Qt::ItemIsEnabled;
}
