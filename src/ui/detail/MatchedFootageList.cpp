#include "ui/detail/MatchedFootageList.h"

#include "ui/widgets/Icons.h"
#include "ui/widgets/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {

QWidget *footageRow(const MediaClip &clip, const QPixmap &film)
{
    auto *row = new QWidget;
    row->setObjectName(QStringLiteral("footageRow"));
    row->setAttribute(Qt::WA_StyledBackground);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(10);
    auto *icon = new QLabel;
    icon->setPixmap(film);
    layout->addWidget(icon);
    auto *names = new QVBoxLayout;
    names->setSpacing(2);
    auto *name = new QLabel(clip.filename);
    name->setFont(Theme::pixelFont(13, QFont::Medium));
    names->addWidget(name);
    QLabel *timecode = Theme::label(clip.timecode.value_or(QStringLiteral("No TC")), Theme::TextStyle::Caption, true);
    timecode->setObjectName(QStringLiteral("footageTimecode"));
    names->addWidget(timecode);
    layout->addLayout(names, 1);
    layout->addWidget(Theme::label(QString::asprintf("%.0fs", clip.duration), Theme::TextStyle::Caption, true));
    return row;
}

} // namespace

MatchedFootageList::MatchedFootageList(QWidget *parent) : RowColumn(6, parent)
{
    setStyleSheet(QStringLiteral("#footageRow { background: palette(alternate-base); border-radius: 8px; }"));
    hide();
}

void MatchedFootageList::showClips(const QList<MediaClip> &clips)
{
    if (clips == m_clips)
        return;
    m_clips = clips;
    setVisible(!clips.isEmpty());
    QList<QWidget *> rows;
    if (!clips.isEmpty()) {
        QLabel *heading = Theme::heading(QStringLiteral("MATCHED FOOTAGE"), Theme::indigoText());
        heading->setObjectName(QStringLiteral("matchedFootageHeading"));
        rows.append(heading);
        const QPixmap film = Icons::symbol(QStringLiteral("film"), Theme::color(Theme::Colour::green)).pixmap(16, 16); // drawn once, not per clip
        for (const MediaClip &clip : clips)
            rows.append(footageRow(clip, film));
    }
    replaceRows(rows);
}
