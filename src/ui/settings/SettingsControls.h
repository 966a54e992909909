#pragma once

#include <QColor>
#include <QString>

class AppState;
class QComboBox;
class QWidget;

// The controls both settings surfaces share. The choice controls show the state's current value,
// follow later changes of it, and apply the user's choice through SettingsActions.
namespace SettingsControls {
QWidget *themeSegments(AppState &state);
QComboBox *themePicker(AppState &state);
QComboBox *nlePicker(AppState &state);
QComboBox *frameRatePicker(AppState &state);

struct FolderRowLook {
    QString icon;
    QColor iconColor;
    QString removeIcon;
    QColor removeColor;
    QString removeButtonName;
    int verticalPadding = 4;
};
// One saved footage folder: its icon, the path shortened in the middle, and a button that
// removes every entry of that path.
QWidget *folderRow(AppState &state, const QString &path, const FolderRowLook &look);
} // namespace SettingsControls
