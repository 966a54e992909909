#include "ui/login/LoginView.h"

#include "platform/Desktop.h"
#include "state/AppState.h"
#include "ui/login/LoginRules.h"
#include "ui/shell/ShellBackend.h"
#include "ui/widgets/Icons.h"
#include "ui/widgets/Spinner.h"
#include "ui/widgets/Theme.h"

#include <QCoro/QCoroTask>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int cardRadius = 20;

QColor white(qreal opacity)
{
    return Theme::color(Theme::Colour::white, opacity);
}

QLabel *whiteLabel(const QString &text, const QFont &font, qreal opacity)
{
    auto *label = new QLabel(text);
    label->setFont(font);
    label->setAlignment(Qt::AlignCenter);
    Theme::setTextColor(label, white(opacity));
    return label;
}

QString fieldStyle()
{
    using namespace Theme;
    return QStringLiteral("QLineEdit { background: %1; color: %2; border: 1px solid %3;"
                          " border-radius: 9px; padding: 8px 12px; selection-background-color: %4; }"
                          "QLineEdit:focus { border: 2px solid %4; padding: 7px 11px; }")
        .arg(css(Colour::white, 235), css(Colour::fieldText), css(Colour::white, 90), css(Colour::indigo));
}

QString primaryStyle()
{
    using namespace Theme;
    return QStringLiteral("QPushButton { background: %1; color: white; border: none; border-radius: 9px; padding: 9px 0; }"
                          "QPushButton:hover { background: %2; }"
                          "QPushButton:pressed { background: %3; }"
                          "QPushButton:disabled { background: %4; color: %5; }")
        .arg(css(Colour::indigo), css(Colour::indigoHover), css(Colour::indigoPressed), css(Colour::indigo, 110),
             css(Colour::white, 140));
}

QLineEdit *roundedField(const QString &placeholder)
{
    auto *field = new QLineEdit;
    field->setPlaceholderText(placeholder);
    field->setFixedWidth(280);
    field->setFont(Theme::pixelFont(14));
    field->setStyleSheet(fieldStyle());
    return field;
}

} // namespace

LoginView::LoginView(AppState &state, ShellBackend &backend, Desktop &desktop, const ServiceLinks &links, QWidget *parent)
    : QWidget(parent), m_state(state), m_backend(backend), m_desktop(desktop)
{
    Icons::ensureResources();
    m_hero.load(QStringLiteral(":/hero.jpg"));

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(24, 24, 24, 20);
    column->setSpacing(0);
    column->addStretch(1);
    m_card = buildCard(links);
    column->addWidget(m_card, 0, Qt::AlignHCenter);
    column->addStretch(1);
    column->addWidget(buildFooter(links), 0, Qt::AlignHCenter);
    refresh();
}

QPushButton *LoginView::primaryButton(const QString &label, Spinner *&spinner)
{
    auto *button = new QPushButton(label);
    button->setFixedWidth(250);
    button->setFont(Theme::pixelFont(13, QFont::DemiBold));
    button->setStyleSheet(primaryStyle());
    button->setCursor(Qt::PointingHandCursor);
    spinner = new Spinner(16, button);
    spinner->setColor(Qt::white);
    spinner->hide();
    auto *layout = new QHBoxLayout(button);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(spinner, 0, Qt::AlignCenter);
    return button;
}

QWidget *LoginView::buildCard(const ServiceLinks &)
{
    auto *card = new QWidget;
    card->setObjectName(QStringLiteral("loginCard"));
    auto *stack = new QVBoxLayout(card);
    stack->setContentsMargins(48, 48, 48, 48);
    stack->setSpacing(20);

    // The logo and "SYNC" sit closer than the card's other items: one block with 10 of spacing.
    auto *brand = new QVBoxLayout;
    brand->setSpacing(10);
    QPixmap logo(QStringLiteral(":/nav-logo.png"));
    if (!logo.isNull()) {
        const qreal ratio = devicePixelRatioF();
        logo = logo.scaledToWidth(int(200 * ratio), Qt::SmoothTransformation);
        logo.setDevicePixelRatio(ratio);
        auto *logoLabel = new QLabel;
        logoLabel->setObjectName(QStringLiteral("logo"));
        logoLabel->setPixmap(logo);
        logoLabel->setAlignment(Qt::AlignCenter);
        brand->addWidget(logoLabel, 0, Qt::AlignHCenter);
    }

    QFont syncFont = Theme::pixelFont(18, QFont::Bold);
    syncFont.setLetterSpacing(QFont::AbsoluteSpacing, 6);
    auto *sync = whiteLabel(QStringLiteral("SYNC"), syncFont, 0.7);
    sync->setContentsMargins(6, 0, 0, 0); // letter spacing also trails the last letter
    brand->addWidget(sync, 0, Qt::AlignHCenter);
    stack->addLayout(brand);

    m_emailStep = new QWidget;
    auto *emailLayout = new QVBoxLayout(m_emailStep);
    emailLayout->setContentsMargins(0, 0, 0, 0);
    emailLayout->setSpacing(12);
    m_emailField = roundedField(QStringLiteral("Email address"));
    m_sendButton = primaryButton(QStringLiteral("Send login code"), m_sendSpinner);
    emailLayout->addWidget(m_emailField, 0, Qt::AlignHCenter);
    emailLayout->addWidget(m_sendButton, 0, Qt::AlignHCenter);

    m_codeStep = new QWidget;
    auto *codeLayout = new QVBoxLayout(m_codeStep);
    codeLayout->setContentsMargins(0, 0, 0, 0);
    codeLayout->setSpacing(12);
    m_codeField = roundedField(QStringLiteral("6-digit code"));
    m_loginButton = primaryButton(QStringLiteral("Log in"), m_loginSpinner);
    auto *differentEmail = Theme::textButton(QStringLiteral("Use a different email"), Theme::font(Theme::TextStyle::Caption), white(0.6));
    differentEmail->setObjectName(QStringLiteral("differentEmail"));
    codeLayout->addWidget(whiteLabel(QStringLiteral("Check your email for a code"), Theme::font(Theme::TextStyle::Body), 0.7));
    codeLayout->addWidget(m_codeField, 0, Qt::AlignHCenter);
    codeLayout->addWidget(m_loginButton, 0, Qt::AlignHCenter);
    codeLayout->addWidget(differentEmail, 0, Qt::AlignHCenter);

    stack->addWidget(m_emailStep, 0, Qt::AlignHCenter);
    stack->addWidget(m_codeStep, 0, Qt::AlignHCenter);

    m_errorLabel = new QLabel;
    m_errorLabel->setObjectName(QStringLiteral("error"));
    m_errorLabel->setFont(Theme::font(Theme::TextStyle::Caption, QFont::Medium));
    m_errorLabel->setAlignment(Qt::AlignCenter);
    m_errorLabel->setWordWrap(true);
    m_errorLabel->setFixedWidth(300);
    // Two lines are reserved whether or not an error shows, so the card keeps its place.
    m_errorLabel->setMinimumHeight(2 * m_errorLabel->fontMetrics().lineSpacing());
    Theme::setTextColor(m_errorLabel, Theme::color(Theme::Colour::errorOnPicture));
    stack->addWidget(m_errorLabel, 0, Qt::AlignHCenter);

    auto *tagline = whiteLabel(QStringLiteral("Log your shoot. Mark the moments that matter."), Theme::pixelFont(13, QFont::Medium), 0.7);
    tagline->setContentsMargins(0, 8, 0, 0);
    stack->addWidget(tagline, 0, Qt::AlignHCenter);

    m_hintLabel = whiteLabel(QString(), Theme::font(Theme::TextStyle::Caption, QFont::DemiBold), 0.85);
    m_hintLabel->setObjectName(QStringLiteral("hint"));
    m_hintLabel->setStyleSheet(QStringLiteral("QLabel { background: %1; border-radius: 8px; padding: 6px 12px; }")
                                  .arg(Theme::css(Theme::Colour::indigo, 150)));
    m_hintLabel->hide();
    stack->addWidget(m_hintLabel, 0, Qt::AlignHCenter);

    connect(m_emailField, &QLineEdit::textChanged, this, &LoginView::refresh);
    connect(m_codeField, &QLineEdit::textChanged, this, &LoginView::refresh);
    connect(m_sendButton, &QPushButton::clicked, this, &LoginView::sendCode);
    connect(m_loginButton, &QPushButton::clicked, this, &LoginView::verify);
    connect(differentEmail, &QPushButton::clicked, this, &LoginView::useDifferentEmail);
    return card;
}

QWidget *LoginView::buildFooter(const ServiceLinks &links)
{
    auto *footer = new QWidget;
    auto *stack = new QVBoxLayout(footer);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(8);
    stack->addWidget(whiteLabel(QStringLiteral("Sign in with your %1 account").arg(links.domain), Theme::font(Theme::TextStyle::Caption), 0.5));

    auto *row = new QHBoxLayout;
    row->setSpacing(16);
    const QFont small = Theme::font(Theme::TextStyle::SmallCaption);
    const std::pair<QString, QUrl> targets[] = {
        {QStringLiteral("Privacy Policy"), links.privacyPolicy},
        {QStringLiteral("Terms"), links.terms},
        {links.domain, links.home},
    };
    row->addStretch(1);
    for (const auto &[label, url] : targets) {
        auto *link = Theme::textButton(label, small, white(0.35));
        connect(link, &QPushButton::clicked, this, [this, url] { m_desktop.openUrl(url); });
        row->addWidget(link);
    }
    row->addStretch(1);
    stack->addLayout(row);
    return footer;
}

void LoginView::setHint(const QString &hint)
{
    m_hintLabel->setText(hint);
    m_hintLabel->setVisible(!hint.isEmpty());
}

void LoginView::sendCode()
{
    if (!LoginRules::isValidEmail(m_emailField->text()) || m_loading)
        return;
    setError(QString());
    setLoading(true);
    QCoro::connect(m_backend.requestLoginCode(m_emailField->text()), this, [this](const QString &error) {
        if (error.isEmpty())
            m_codeSent = true;
        setError(error);
        setLoading(false);
        // Hiding the address step would otherwise pass the focus on to the footer's links.
        if (m_codeSent)
            m_codeField->setFocus();
    });
}

void LoginView::verify()
{
    if (!LoginRules::isValidCode(m_codeField->text()) || m_loading)
        return;
    setError(QString());
    setLoading(true);
    QCoro::connect(m_backend.login(m_emailField->text(), m_codeField->text()), this,
                   [this](const ShellBackend::LoginOutcome &outcome) {
                       setError(outcome.error);
                       setLoading(false);
                       // Last: signing in replaces this screen.
                       if (outcome.user)
                           m_state.signIn(outcome.user->email, outcome.user->name);
                   });
}

void LoginView::useDifferentEmail()
{
    m_codeSent = false;
    m_codeField->clear();
    setError(QString());
}

void LoginView::setLoading(bool loading)
{
    m_loading = loading;
    refresh();
}

void LoginView::setError(const QString &error)
{
    m_error = error;
    refresh();
}

void LoginView::refresh()
{
    m_emailStep->setVisible(!m_codeSent);
    m_codeStep->setVisible(m_codeSent);
    m_sendButton->setEnabled(LoginRules::isValidEmail(m_emailField->text()) && !m_loading);
    m_loginButton->setEnabled(LoginRules::isValidCode(m_codeField->text()) && !m_loading);
    m_sendButton->setText(m_loading ? QString() : QStringLiteral("Send login code"));
    m_loginButton->setText(m_loading ? QString() : QStringLiteral("Log in"));
    m_sendSpinner->setVisible(m_loading);
    m_loginSpinner->setVisible(m_loading);
    m_errorLabel->setText(m_error);
    update();
}

void LoginView::rescaleBackground()
{
    if (m_hero.isNull() || size().isEmpty())
        return;
    const QSize target = size() * devicePixelRatioF();
    m_scaledHero = m_hero.scaled(target, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    // The card's frosted glass: the background seen through heavy blur, approximated by a round
    // trip through a tiny copy.
    const QPixmap tiny = m_scaledHero.scaled(m_scaledHero.size() / 28, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    m_frostedHero = tiny.scaled(m_scaledHero.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

void LoginView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    rescaleBackground();
}

void LoginView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal ratio = devicePixelRatioF();
    const auto drawCentred = [&](const QPixmap &pixmap) {
        const QSizeF logical = QSizeF(pixmap.size()) / ratio;
        const QPointF origin((width() - logical.width()) / 2, (height() - logical.height()) / 2);
        painter.drawPixmap(QRectF(origin, logical), pixmap, QRectF(pixmap.rect()));
    };

    if (m_scaledHero.isNull()) {
        painter.fillRect(rect(), Theme::color(Theme::Colour::charcoal));
    } else {
        drawCentred(m_scaledHero);
        painter.fillRect(rect(), QColor(0, 0, 0, 102));
    }

    const QRectF card = QRectF(m_card->geometry());
    for (int i = 1; i <= 18; ++i) {
        QPainterPath ring;
        ring.addRoundedRect(card.adjusted(-i, -i + 8, i, i + 8), cardRadius + i, cardRadius + i);
        painter.fillPath(ring, QColor(0, 0, 0, int(0.30 * 255 / 18.0 * (1.0 - i / 19.0))));
    }
    QPainterPath glass;
    glass.addRoundedRect(card, cardRadius, cardRadius);
    painter.save();
    painter.setClipPath(glass);
    if (m_frostedHero.isNull()) {
        painter.fillRect(card, Theme::color(Theme::Colour::charcoal).lighter(130));
    } else {
        drawCentred(m_frostedHero);
        painter.fillRect(card, QColor(0, 0, 0, 70));
    }
    painter.fillRect(card, white(0.08));
    painter.restore();
    painter.setPen(QPen(white(0.18), 1));
    painter.drawPath(glass);
}
