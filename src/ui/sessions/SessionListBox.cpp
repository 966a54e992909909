#include "ui/sessions/SessionListBox.h"

#include "ui/sessions/SessionListModel.h"

namespace {

bool isSession(const QModelIndex &index)
{
    return index.isValid()
           && SessionListModel::RowKind(index.data(SessionListModel::KindRole).toInt()) == SessionListModel::RowKind::Session;
}

// The nearest session row from `row` on in `step` direction, or an invalid index.
QModelIndex sessionFrom(const QAbstractItemModel &model, int row, int step)
{
    for (; row >= 0 && row < model.rowCount(); row += step) {
        const QModelIndex index = model.index(row, 0);
        if (isSession(index))
            return index;
    }
    return {};
}

} // namespace

QModelIndex SessionListBox::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const QModelIndex target = QListView::moveCursor(action, modifiers);
    if (!target.isValid() || isSession(target) || !model())
        return target;
    // A header: go on the way the key points, or back when the list ends in that direction.
    const bool upwards = action == MoveUp || action == MovePageUp || action == MovePrevious || action == MoveLeft;
    const int step = upwards ? -1 : 1;
    QModelIndex session = sessionFrom(*model(), target.row() + step, step);
    if (!session.isValid())
        session = sessionFrom(*model(), target.row() - step, -step);
    return session.isValid() ? session : currentIndex();
}
