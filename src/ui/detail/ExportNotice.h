#pragma once

#include <QFrame>
#include <QString>

class Desktop;
class QLabel;
class QPushButton;

// What an export did, told in the window: a sentence, the file it wrote (empty when nothing
// was written) and whether it failed.
struct ExportReport {
    QString message;
    QString file;
    bool failed = false;
};

// The band over the session screen that reports the last save or hand-off: what was written
// where, whether every marker made it, and a way to the file. It never takes the keyboard
// focus and stays until dismissed, replaced by the next report or the session changes.
class ExportNotice : public QFrame
{
    Q_OBJECT

public:
    explicit ExportNotice(Desktop &desktop, QWidget *parent = nullptr);

    void report(const ExportReport &report);
    void dismiss();

    // The report shown; empty once dismissed.
    const ExportReport &shownReport() const { return m_report; }

private:
    void applyColours();

    Desktop &m_desktop;
    ExportReport m_report;
    QLabel *m_icon;
    QLabel *m_message;
    QPushButton *m_reveal;
};
