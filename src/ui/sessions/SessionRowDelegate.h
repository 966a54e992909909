#pragma once

#include <QStyledItemDelegate>

// Draws the sidebar's day headers, session rows (title, matched badge, marker and clip counts,
// date) and the empty placeholder, and hosts the in-place rename field. Only Return commits a
// rename; Escape or leaving the field drops it.
class SessionRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

Q_SIGNALS:
    void renameCommitted(const QString &sessionId, const QString &text);

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void paintHeader(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
    void paintSession(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
    void paintPlaceholder(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
};
