#include "ui/sessions/SessionRowDelegate.h"

#include "ui/sessions/SessionListModel.h"
#include "ui/widgets/Icons.h"
#include "ui/widgets/Theme.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int sideInset = 8;
constexpr int textInset = 12;
constexpr int sessionHeight = 50;
constexpr int titleTop = 8;
constexpr int titleHeight = 18;

SessionListModel::RowKind kindOf(const QModelIndex &index)
{
    return SessionListModel::RowKind(index.data(SessionListModel::KindRole).toInt());
}

QColor withAlpha(QColor color, qreal alpha)
{
    color.setAlphaF(alpha);
    return color;
}

} // namespace

QSize SessionRowDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    switch (kindOf(index)) {
    case SessionListModel::RowKind::Header:
        return {option.rect.width(), index.row() == 0 ? 30 : 38};
    case SessionListModel::RowKind::Placeholder:
        return {option.rect.width(), 70};
    case SessionListModel::RowKind::Session:
        break;
    }
    return {option.rect.width(), sessionHeight};
}

void SessionRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    switch (kindOf(index)) {
    case SessionListModel::RowKind::Header:
        paintHeader(painter, option, index);
        break;
    case SessionListModel::RowKind::Session:
        paintSession(painter, option, index);
        break;
    case SessionListModel::RowKind::Placeholder:
        paintPlaceholder(painter, option, index);
        break;
    }
    painter->restore();
}

void SessionRowDelegate::paintHeader(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QFont font = Theme::pixelFont(11, QFont::Bold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0.4);
    painter->setFont(font);
    painter->setPen(option.palette.color(QPalette::PlaceholderText));
    const QRect text = option.rect.adjusted(sideInset + textInset, 0, -sideInset, -6);
    painter->drawText(text, Qt::AlignLeft | Qt::AlignBottom, index.data().toString());
}

void SessionRowDelegate::paintPlaceholder(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QColor secondary = option.palette.color(QPalette::PlaceholderText);
    painter->setPen(secondary);
    const QRect area = option.rect.adjusted(sideInset, 12, -sideInset, -12);
    painter->setFont(Theme::font(Theme::TextStyle::Body));
    painter->drawText(area.adjusted(0, 0, 0, -area.height() / 2 - 4), Qt::AlignHCenter | Qt::AlignBottom, index.data().toString());
    painter->setFont(Theme::font(Theme::TextStyle::Caption));
    painter->drawText(area.adjusted(0, area.height() / 2 + 4, 0, 0), Qt::AlignHCenter | Qt::AlignTop,
                      index.data(SessionListModel::HintRole).toString());
}

void SessionRowDelegate::paintSession(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const bool selected = option.state & QStyle::State_Selected;
    const bool focused = option.state & QStyle::State_HasFocus || (option.widget && option.widget->hasFocus());
    const QRect card = option.rect.adjusted(sideInset, 1, -sideInset, -1);
    const QColor indigo = Theme::indigo();
    QColor text = option.palette.color(QPalette::Text);
    QColor secondary = option.palette.color(QPalette::PlaceholderText);
    QColor accent = Theme::indigoText();

    if (selected) {
        QPainterPath path;
        path.addRoundedRect(card, 7, 7);
        if (focused) {
            painter->fillPath(path, indigo);
            text = Qt::white;
            secondary = withAlpha(Qt::white, 0.78);
            accent = Qt::white;
        } else {
            painter->fillPath(path, withAlpha(indigo, Theme::isDark() ? 0.35 : 0.16));
        }
    } else if (option.state & QStyle::State_MouseOver) {
        QPainterPath path;
        path.addRoundedRect(card, 7, 7);
        painter->fillPath(path, withAlpha(option.palette.color(QPalette::Text), 0.05));
    }

    const int clipCount = index.data(SessionListModel::ClipCountRole).toInt();
    const QRect content = card.adjusted(textInset, 0, -textInset, 0);
    const QRect titleRect(content.left(), card.top() + titleTop, content.width() - (clipCount > 0 ? 20 : 0), titleHeight);
    const qreal ratio = painter->device()->devicePixelRatioF();

    painter->setPen(text);
    const QFont titleFont = Theme::pixelFont(13, QFont::DemiBold);
    painter->setFont(titleFont);
    const QString title = QFontMetrics(titleFont).elidedText(index.data().toString(), Qt::ElideRight, titleRect.width());
    painter->drawText(titleRect, Qt::AlignLeft | Qt::AlignVCenter, title);
    if (clipCount > 0) {
        const QColor green = selected && focused ? QColor(Qt::white) : Theme::color(Theme::Colour::green);
        painter->drawPixmap(QPoint(content.right() - 13, titleRect.top() + 2), Icons::pixmap(QStringLiteral("checkmark.circle.fill"), 14, green, ratio));
    }

    const QFont small = Theme::font(Theme::TextStyle::SmallCaption);
    const QFontMetrics metrics(small);
    painter->setFont(small);
    const int lineTop = titleRect.bottom() + 5;
    const int lineHeight = 14;
    int x = content.left();
    const auto drawItem = [&](const QString &symbol, const QString &label, const QColor &color) {
        if (!symbol.isEmpty()) {
            painter->drawPixmap(QPoint(x, lineTop + 1), Icons::pixmap(symbol, 12, color, ratio));
            x += 15;
        }
        painter->setPen(color);
        const int width = metrics.horizontalAdvance(label);
        painter->drawText(QRect(x, lineTop, width + 1, lineHeight), Qt::AlignLeft | Qt::AlignVCenter, label);
        x += width + 8;
    };
    drawItem(QStringLiteral("bookmark.fill"), QString::number(index.data(SessionListModel::MarkerCountRole).toInt()), accent);
    if (clipCount > 0)
        drawItem(QStringLiteral("film"), QStringLiteral("%1 clips").arg(clipCount), secondary);
    drawItem(QString(), index.data(SessionListModel::DateTextRole).toString(), secondary);
}

QWidget *SessionRowDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &index) const
{
    auto *editor = new QLineEdit(parent);
    editor->setObjectName(QStringLiteral("renameField"));
    editor->setPlaceholderText(QStringLiteral("Session name"));
    editor->setFrame(false);
    editor->setFont(Theme::pixelFont(13, QFont::DemiBold));
    editor->setProperty("sessionId", index.data(SessionListModel::SessionIdRole));
    return editor;
}

void SessionRowDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    // The editor keeps what the user typed when a sync repaints the row underneath it.
    auto *field = static_cast<QLineEdit *>(editor);
    if (!field->property("filled").toBool()) {
        field->setText(index.data(Qt::EditRole).toString());
        field->selectAll();
        field->setProperty("filled", true);
    }
}

void SessionRowDelegate::setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const
{
    // Renames go through renameCommitted, on Return only.
}

void SessionRowDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &) const
{
    const QRect card = option.rect.adjusted(sideInset, 1, -sideInset, -1);
    editor->setGeometry(card.left() + textInset - 3, card.top() + titleTop - 1, card.width() - 2 * textInset + 6, titleHeight + 2);
}

bool SessionRowDelegate::eventFilter(QObject *object, QEvent *event)
{
    auto *editor = qobject_cast<QLineEdit *>(object);
    if (editor && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            const QString id = editor->property("sessionId").toString();
            const QString text = editor->text();
            Q_EMIT closeEditor(editor, QAbstractItemDelegate::NoHint);
            Q_EMIT renameCommitted(id, text);
            return true;
        }
    }
    return QStyledItemDelegate::eventFilter(object, event);
}
