#pragma once

#include "platform/Desktop.h"
#include "ui/widgets/DialogFolders.h"

#include <QPointer>
#include <QWidget>

// The desktop adapter on Qt Widgets: a window-modal folder dialog, a message box, the browser.
// File dialogs open where `folders` says and tell it where the user went.
class WidgetDesktop : public Desktop
{
public:
    // Dialogs are parented to the given window so they stay on top of it.
    explicit WidgetDesktop(DialogFolders folders, QWidget *window = nullptr);
    void setWindow(QWidget *window);

    void chooseFolder(const QString &message, std::function<void(const QString &path)> onChosen) override;
    void confirm(const Confirmation &question, std::function<void()> onConfirmed) override;
    void openUrl(const QUrl &url) override;
    void chooseSaveFile(const SaveRequest &request, std::function<void(const QString &path)> onChosen) override;
    void inform(const Notice &notice, std::function<void()> onPrimary) override;
    void chooseFiles(const OpenRequest &request, std::function<void(const QList<QUrl> &chosen)> onChosen) override;
    void revealFile(const QString &path) override;

private:
    QPointer<QWidget> m_window;
    DialogFolders m_folders;
};
