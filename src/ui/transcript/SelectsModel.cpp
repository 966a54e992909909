#include "ui/transcript/SelectsModel.h"

void SelectsModel::setSelection(const SegmentSelection &selection)
{
    if (selection == m_selection)
        return;
    m_selection = selection;
    Q_EMIT selectionChanged();
}
