#pragma once

#include <QList>
#include <QWidget>

class QVBoxLayout;

// A column whose rows are replaced all at once. The new rows are laid out in a list that is not
// yet on screen, which then takes the old list's place whole: adding hundreds of rows one by one
// to a visible column would lay the column out again for each of them.
class RowColumn : public QWidget
{
    Q_OBJECT

public:
    explicit RowColumn(int spacing, QWidget *parent = nullptr);

    // The rows from now on, top to bottom; the column owns them.
    void replaceRows(const QList<QWidget *> &rows);

private:
    int m_spacing;
    QVBoxLayout *m_holder;
    QWidget *m_list = nullptr;
};
