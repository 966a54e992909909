#pragma once

#include "model/MediaClip.h"
#include "ui/widgets/RowColumn.h"

// The clips matched to the session under the "MATCHED FOOTAGE" heading: file name, timecode and
// length of each. Hidden while there are none; built again only when the clips change.
class MatchedFootageList : public RowColumn
{
    Q_OBJECT

public:
    explicit MatchedFootageList(QWidget *parent = nullptr);

    void showClips(const QList<MediaClip> &clips);

private:
    QList<MediaClip> m_clips;
};
