#pragma once

#include <QString>
#include <QStringList>

class Preferences;

// Where a file dialog opens: in the folder the user last went to for the same purpose, else in
// the first fall-back that exists (the user's Movies, then Documents folder), never in the
// program's working directory. Footage and exported documents keep separate folders, since
// cards and project folders rarely sit side by side.
class DialogFolders
{
public:
    enum class Purpose { Footage, Export };

    DialogFolders(Preferences &preferences, QStringList fallbacks);

    // The user's Movies, Documents and home folders as this platform names them.
    static QStringList standardFallbacks();

    QString startFolder(Purpose purpose) const;
    // Remembers the folder that holds `path`, a chosen file or folder.
    void rememberChosen(Purpose purpose, const QString &path);

private:
    Preferences &m_preferences;
    QStringList m_fallbacks;
};
