#include "ui/widgets/DialogFolders.h"

#include "platform/Preferences.h"
#include "state/PreferenceKeys.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

const QString &keyFor(DialogFolders::Purpose purpose)
{
    return purpose == DialogFolders::Purpose::Footage ? PreferenceKeys::footageDialogFolder : PreferenceKeys::exportDialogFolder;
}

} // namespace

DialogFolders::DialogFolders(Preferences &preferences, QStringList fallbacks)
    : m_preferences(preferences), m_fallbacks(std::move(fallbacks))
{
}

QStringList DialogFolders::standardFallbacks()
{
    return {QStandardPaths::writableLocation(QStandardPaths::MoviesLocation),
            QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), QDir::homePath()};
}

QString DialogFolders::startFolder(Purpose purpose) const
{
    QStringList candidates = m_fallbacks;
    if (const std::optional<QString> last = m_preferences.string(keyFor(purpose)))
        candidates.prepend(*last);
    for (const QString &candidate : std::as_const(candidates)) {
        if (!candidate.isEmpty() && QFileInfo(candidate).isDir())
            return candidate;
    }
    return QString();
}

void DialogFolders::rememberChosen(Purpose purpose, const QString &path)
{
    m_preferences.setString(keyFor(purpose), QFileInfo(path).absolutePath());
}
