#pragma once

#include <QString>
#include <QWidget>

class AppState;
class Desktop;
class ElidedLabel;
class QLabel;
class QLineEdit;
class QToolButton;
struct ShootSession;

// The top of the session screen: the title, renamed in place, with the rename and delete
// buttons, and the summary line (markers, clips, timecode range, date). Renaming and deleting
// go through the session library.
class SessionHeader : public QWidget
{
    Q_OBJECT

public:
    // The delete alert names `serviceHost`, where the markers stay.
    SessionHeader(AppState &state, Desktop &desktop, QString serviceHost, QWidget *parent = nullptr);

    // Another session ends a rename in progress; texts that stay the same are left alone.
    void showSession(const ShootSession &session);

    bool isRenaming() const { return m_isRenaming; }
    void startRenaming();
    // Escape: the title stays as it was.
    void cancelRenaming();
    // Gives the session the typed title without the spaces and tabs at its ends (a blank one
    // changes nothing) and ends renaming either way.
    void renameSession();
    // Asks first; the screen closes as the selection goes with the session.
    void deleteSession();

Q_SIGNALS:
    // The user confirmed and session `id` is gone.
    void sessionDeleted(const QString &id);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void updateTitleRow();

    AppState &m_state;
    Desktop &m_desktop;
    QString m_serviceHost;
    QString m_sessionId;
    bool m_isRenaming = false;

    QLabel *m_title;
    QLineEdit *m_titleField;
    QToolButton *m_renameButton;
    QLabel *m_markerCount;
    QLabel *m_clipCount;
    QLabel *m_tcRange;
    ElidedLabel *m_date;
};
