#pragma once

#include <QList>
#include <QString>
#include <QUrl>
#include <functional>

// A question the user answers with the destructive button or "Cancel".
struct Confirmation {
    QString title;
    QString message;
    QString confirmLabel;
};

// A save panel: the proposed file name and, when not empty, the only file type offered
// ("XML (*.xml)"); an empty filter lets the user pick any name. A caption, when given, tells
// why the panel asks (the platform's own title otherwise).
struct SaveRequest {
    QString defaultName;
    QString nameFilter;
    QString caption;
};

// An open panel for several items at once: files only, or files and folders together.
struct OpenRequest {
    QString message;
    bool allowsFolders = false;
};

// An informational alert with a main button and a dismissing one.
struct Notice {
    QString title;
    QString message;
    QString primaryLabel;
    QString secondaryLabel;
};

// The desktop's panels, alerts and browser. Screens receive one at construction, so a test can
// script a chosen folder, a cancelled panel or an answer to an alert.
class Desktop
{
public:
    virtual ~Desktop() = default;

    // Asks for one folder without blocking; `onChosen` runs only when the user confirms a folder.
    virtual void chooseFolder(const QString &message, std::function<void(const QString &path)> onChosen) = 0;
    // Shows a modal alert; `onConfirmed` runs only when the destructive button is pressed.
    virtual void confirm(const Confirmation &question, std::function<void()> onConfirmed) = 0;
    virtual void openUrl(const QUrl &url) = 0;
    // Asks where to save without blocking; `onChosen` runs only when the user confirms a path.
    virtual void chooseSaveFile(const SaveRequest &request, std::function<void(const QString &path)> onChosen) = 0;
    // Shows a modal informational alert; `onPrimary` runs only when the main button is pressed.
    virtual void inform(const Notice &notice, std::function<void()> onPrimary) = 0;
    // Asks for files (and folders, when allowed) without blocking; `onChosen` runs only when the
    // user confirms at least one item.
    virtual void chooseFiles(const OpenRequest &request, std::function<void(const QList<QUrl> &chosen)> onChosen) = 0;
    // Shows a written file to the user in the platform's file manager.
    virtual void revealFile(const QString &path) = 0;
};
