#include "ui/detail/SessionHeader.h"

#include "model/ShootSession.h"
#include "platform/Desktop.h"
#include "state/AppState.h"
#include "state/SessionLibrary.h"
#include "ui/widgets/Buttons.h"
#include "ui/widgets/ElidedLabel.h"
#include "ui/widgets/Icons.h"
#include "ui/widgets/Theme.h"
#include "ui/widgets/TrimSpacesAndTabs.h"

#include <QEvent>
#include <QKeyEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPointer>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

// A grey symbol beside its text, like a labelled icon; gives the text's label.
QLabel *addIconLabel(QHBoxLayout *row, const QString &symbol, const QString &name)
{
    auto *widget = new QWidget;
    auto *pair = new QHBoxLayout(widget);
    pair->setContentsMargins(0, 0, 0, 0);
    pair->setSpacing(5);
    auto *icon = new QLabel;
    icon->setPixmap(Icons::symbol(symbol, Theme::color(Theme::Colour::symbolGrey)).pixmap(14, 14));
    pair->addWidget(icon);
    QLabel *label = Theme::label(QString(), Theme::TextStyle::Body);
    label->setObjectName(name);
    pair->addWidget(label);
    row->addWidget(widget);
    return label;
}

} // namespace

SessionHeader::SessionHeader(AppState &state, Desktop &desktop, QString serviceHost, QWidget *parent)
    : QWidget(parent), m_state(state), m_desktop(desktop), m_serviceHost(std::move(serviceHost))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(20);

    auto *titleRow = new QHBoxLayout;
    m_title = new QLabel;
    m_title->setObjectName(QStringLiteral("detailTitle"));
    m_title->setFont(Theme::pixelFont(22, QFont::Bold));
    m_title->setWordWrap(true);
    m_title->installEventFilter(this);
    m_titleField = new QLineEdit;
    m_titleField->setObjectName(QStringLiteral("detailTitleField"));
    m_titleField->setPlaceholderText(QStringLiteral("Session name"));
    m_titleField->setFont(Theme::pixelFont(22));
    connect(m_titleField, &QLineEdit::returnPressed, this, &SessionHeader::renameSession);
    m_titleField->installEventFilter(this);
    m_renameButton = Buttons::symbol(QStringLiteral("pencil"), Theme::indigo(), QStringLiteral("Rename"));
    m_renameButton->setObjectName(QStringLiteral("renameButton"));
    connect(m_renameButton, &QToolButton::clicked, this, [this] { m_isRenaming ? renameSession() : startRenaming(); });
    QToolButton *deleteButton = Buttons::symbol(QStringLiteral("trash"), Theme::destructive(), QStringLiteral("Delete"));
    deleteButton->setObjectName(QStringLiteral("deleteButton"));
    connect(deleteButton, &QToolButton::clicked, this, &SessionHeader::deleteSession);
    titleRow->addWidget(m_title, 1);
    titleRow->addWidget(m_titleField, 1);
    titleRow->addWidget(m_renameButton);
    titleRow->addWidget(deleteButton);
    column->addLayout(titleRow);

    auto *summary = new QHBoxLayout;
    summary->setSpacing(16);
    m_markerCount = addIconLabel(summary, QStringLiteral("bookmark.fill"), QStringLiteral("markerCount"));
    m_clipCount = addIconLabel(summary, QStringLiteral("film"), QStringLiteral("clipCount"));
    m_tcRange = addIconLabel(summary, QStringLiteral("clock"), QStringLiteral("tcRange"));
    // The date gives way first when the window is at its narrowest (shortened with "…"), so the
    // column never needs a sideways scroll.
    m_date = new ElidedLabel(Qt::ElideRight);
    m_date->setFont(Theme::font(Theme::TextStyle::Body));
    Theme::setSecondary(m_date);
    m_date->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    summary->addWidget(m_date);
    summary->addStretch(1);
    column->addLayout(summary);
    updateTitleRow();
}

void SessionHeader::showSession(const ShootSession &session)
{
    if (session.id != m_sessionId) {
        m_sessionId = session.id;
        m_isRenaming = false;
        updateTitleRow();
    }
    m_title->setText(session.title);
    m_markerCount->setText(QStringLiteral("%1 markers").arg(session.markers.size()));
    m_clipCount->setText(QStringLiteral("%1 clips").arg(session.matchedClips.size()));
    m_tcRange->setText(session.tcRange());
    m_date->setText(QLocale().toString(session.createdAt.toLocalTime().date(), QStringLiteral("d MMM yyyy")));
}

void SessionHeader::updateTitleRow()
{
    m_title->setVisible(!m_isRenaming);
    m_titleField->setVisible(m_isRenaming);
    m_renameButton->setIcon(Icons::symbol(m_isRenaming ? QStringLiteral("checkmark.circle.fill") : QStringLiteral("pencil"), Theme::indigo()));
}

void SessionHeader::startRenaming()
{
    m_isRenaming = true;
    m_titleField->setText(m_title->text());
    updateTitleRow();
    m_titleField->setFocus();
    m_titleField->selectAll();
}

void SessionHeader::cancelRenaming()
{
    m_isRenaming = false;
    updateTitleRow();
}

void SessionHeader::renameSession()
{
    m_isRenaming = false;
    updateTitleRow();
    SessionLibrary(m_state).renameSession(m_sessionId, trimSpacesAndTabs(m_titleField->text()).toString());
}

void SessionHeader::deleteSession()
{
    const QString message = QStringLiteral("This will remove the session from Vorlix Edit. Your markers on ") + m_serviceHost
                            + QStringLiteral(" are not affected.");
    QPointer<SessionHeader> self(this);
    const QString id = m_sessionId;
    m_desktop.confirm({QStringLiteral("Delete this session?"), message, QStringLiteral("Delete")}, [self, id] {
        if (!self)
            return;
        SessionLibrary(self->m_state).deleteSessions({id});
        self->m_state.setSelectedSession(std::nullopt);
        Q_EMIT self->sessionDeleted(id);
    });
}

bool SessionHeader::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_title && event->type() == QEvent::MouseButtonDblClick) {
        startRenaming();
        return true;
    }
    if (watched == m_titleField && event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        cancelRenaming();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
