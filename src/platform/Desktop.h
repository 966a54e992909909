#pragma once

#include <QString>
#include <QUrl>
#include <functional>

// A question the user answers with the destructive button or "Cancel".
struct Confirmation {
    QString title;
    QString message;
    QString confirmLabel;
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
};
