#pragma once

#include <QListView>

// The sidebar's list: the keyboard cursor moves over session rows only, so arrow keys, Page Up
// and Home step across the day headers instead of stopping on them and clearing the selection.
class SessionListBox : public QListView
{
    Q_OBJECT

public:
    using QListView::QListView;

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
};
