#include "ui/shell/WidgetDesktop.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QFileDialog>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>

namespace {

// Qt's own file dialog opens a folder when it is confirmed; with `takesFolders` this one takes
// the selected folders along with the files, so a folder can be chosen as a whole.
class FilesDialog : public QFileDialog
{
public:
    FilesDialog(QWidget *parent, const QString &caption, bool takesFolders)
        : QFileDialog(parent, caption), m_takesFolders(takesFolders)
    {
    }

    void accept() override
    {
        if (!m_takesFolders)
            QFileDialog::accept();
        else if (!selectedFiles().isEmpty())
            QDialog::accept();
    }

private:
    bool m_takesFolders;
};

} // namespace

WidgetDesktop::WidgetDesktop(DialogFolders folders, QWidget *window) : m_window(window), m_folders(std::move(folders)) {}

void WidgetDesktop::setWindow(QWidget *window)
{
    m_window = window;
}

void WidgetDesktop::chooseFolder(const QString &message, std::function<void(const QString &path)> onChosen)
{
    auto *dialog = new QFileDialog(m_window, message, m_folders.startFolder(DialogFolders::Purpose::Footage));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setLabelText(QFileDialog::Accept, QObject::tr("Choose"));
    QObject::connect(dialog, &QFileDialog::fileSelected, dialog, [this, onChosen](const QString &path) {
        if (path.isEmpty())
            return;
        m_folders.rememberChosen(DialogFolders::Purpose::Footage, path);
        onChosen(path);
    });
    dialog->open();
}

void WidgetDesktop::confirm(const Confirmation &question, std::function<void()> onConfirmed)
{
    // The question goes in the text too: most desktops show a dialog's title small or not at all.
    auto *box = new QMessageBox(QMessageBox::Warning, question.title, question.title, QMessageBox::NoButton, m_window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(question.message);
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

void WidgetDesktop::chooseSaveFile(const SaveRequest &request, std::function<void(const QString &path)> onChosen)
{
    auto *dialog = new QFileDialog(m_window, request.caption, m_folders.startFolder(DialogFolders::Purpose::Export));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->selectFile(request.defaultName);
    if (!request.nameFilter.isEmpty()) {
        // A panel restricted to one type completes a bare name with that type's extension.
        dialog->setNameFilter(request.nameFilter);
        dialog->setDefaultSuffix(QFileInfo(request.defaultName).suffix());
    }
    QObject::connect(dialog, &QFileDialog::fileSelected, dialog, [this, onChosen](const QString &path) {
        if (path.isEmpty())
            return;
        m_folders.rememberChosen(DialogFolders::Purpose::Export, path);
        onChosen(path);
    });
    dialog->open();
}

void WidgetDesktop::inform(const Notice &notice, std::function<void()> onPrimary)
{
    auto *box = new QMessageBox(QMessageBox::Information, notice.title, notice.title, QMessageBox::NoButton, m_window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(notice.message);
    QPushButton *primary = box->addButton(notice.primaryLabel, QMessageBox::AcceptRole);
    QPushButton *secondary = box->addButton(notice.secondaryLabel, QMessageBox::RejectRole);
    box->setDefaultButton(primary);
    box->setEscapeButton(secondary);
    QObject::connect(box, &QMessageBox::buttonClicked, box, [primary, onPrimary](QAbstractButton *button) {
        if (button == primary)
            onPrimary();
    });
    box->open();
}

void WidgetDesktop::chooseFiles(const OpenRequest &request, std::function<void(const QList<QUrl> &chosen)> onChosen)
{
    auto *dialog = new FilesDialog(m_window, request.message, request.allowsFolders);
    dialog->setDirectory(m_folders.startFolder(DialogFolders::Purpose::Footage));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    if (request.allowsFolders)
        dialog->setOption(QFileDialog::DontUseNativeDialog); // a native panel would bypass accept()
    QObject::connect(dialog, &QDialog::accepted, dialog, [this, dialog, onChosen] {
        QList<QUrl> urls;
        for (const QString &path : dialog->selectedFiles())
            urls.append(QUrl::fromLocalFile(path));
        if (urls.isEmpty())
            return;
        m_folders.rememberChosen(DialogFolders::Purpose::Footage, urls.first().toLocalFile());
        onChosen(urls);
    });
    dialog->open();
}

// Finder selects the file; elsewhere there is no portable way to, so the folder opens.
void WidgetDesktop::revealFile(const QString &path)
{
#if defined(Q_OS_MACOS)
    QProcess::startDetached(QStringLiteral("open"), {QStringLiteral("-R"), path});
#else
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
#endif
}
