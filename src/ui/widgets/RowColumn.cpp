#include "ui/widgets/RowColumn.h"

#include <QVBoxLayout>

RowColumn::RowColumn(int spacing, QWidget *parent) : QWidget(parent), m_spacing(spacing), m_holder(new QVBoxLayout(this))
{
    m_holder->setContentsMargins(0, 0, 0, 0);
}

void RowColumn::replaceRows(const QList<QWidget *> &rows)
{
    auto *list = new QWidget;
    auto *layout = new QVBoxLayout(list);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(m_spacing);
    for (QWidget *row : rows)
        layout->addWidget(row);
    delete m_list;
    m_list = list;
    m_holder->addWidget(list);
}
