#include "ui/WidgetDesktop.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

WidgetDesktop::WidgetDesktop(QWidget *window) : m_window(window) {}

void WidgetDesktop::setWindow(QWidget *window)
{
    m_window = window;
}

void WidgetDesktop::chooseFolder(const QString &message, std::function<void(const QString &path)> onChosen)
{
    auto *dialog = new QFileDialog(m_window, message);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setLabelText(QFileDialog::Accept, QObject::tr("Choose"));
    QObject::connect(dialog, &QFileDialog::fileSelected, dialog, [onChosen](const QString &path) {
        if (!path.isEmpty())
            onChosen(path);
    });
    dialog->open();
}

void WidgetDesktop::confirm(const Confirmation &question, std::function<void()> onConfirmed)
{
    auto *box = new QMessageBox(QMessageBox::Warning, question.title, question.message, QMessageBox::NoButton, m_window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton *confirmButton = box->addButton(question.confirmLabel, QMessageBox::DestructiveRole);
    QPushButton *cancelButton = box->addButton(QObject::tr("Cancel"), QMessageBox::RejectRole);
    box->setDefaultButton(cancelButton);
    box->setEscapeButton(cancelButton);
    QObject::connect(box, &QMessageBox::buttonClicked, box, [confirmButton, onConfirmed](QAbstractButton *button) {
        if (button == confirmButton)
            onConfirmed();
    });
    box->open();
}

void WidgetDesktop::openUrl(const QUrl &url)
{
    QDesktopServices::openUrl(url);
}
