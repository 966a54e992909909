#pragma once

#include "ui/shell/ServiceLinks.h"

#include <QPixmap>
#include <QWidget>

class AppState;
class Desktop;
class ShellBackend;
class QLabel;
class QLineEdit;
class QPushButton;
class Spinner;

// The sign-in screen: e-mail, then the six-digit code the service mails. Fills the window while
// nobody is signed in; a successful code check signs the user in and the window switches away.
class LoginView : public QWidget
{
    Q_OBJECT

public:
    LoginView(AppState &state, ShellBackend &backend, Desktop &desktop, const ServiceLinks &links, QWidget *parent = nullptr);

    // An extra line under the tagline, e.g. the demo's code when running against the stand-in.
    void setHint(const QString &hint);

    void sendCode();
    void verify();
    void useDifferentEmail();

    bool codeSent() const { return m_codeSent; }
    bool loading() const { return m_loading; }
    QString error() const { return m_error; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QWidget *buildCard(const ServiceLinks &links);
    QWidget *buildFooter(const ServiceLinks &links);
    QPushButton *primaryButton(const QString &label, Spinner *&spinner);
    void setLoading(bool loading);
    void setError(const QString &error);
    void refresh();
    void rescaleBackground();

    AppState &m_state;
    ShellBackend &m_backend;
    Desktop &m_desktop;

    bool m_codeSent = false;
    bool m_loading = false;
    QString m_error;

    QPixmap m_hero;
    QPixmap m_scaledHero;
    QPixmap m_frostedHero;
    QWidget *m_card = nullptr;
    QWidget *m_emailStep = nullptr;
    QWidget *m_codeStep = nullptr;
    QLineEdit *m_emailField = nullptr;
    QLineEdit *m_codeField = nullptr;
    QPushButton *m_sendButton = nullptr;
    QPushButton *m_loginButton = nullptr;
    Spinner *m_sendSpinner = nullptr;
    Spinner *m_loginSpinner = nullptr;
    QLabel *m_errorLabel = nullptr;
    QLabel *m_hintLabel = nullptr;
};
