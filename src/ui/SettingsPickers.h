#pragma once

class AppState;
class QComboBox;
class QWidget;

// The choice controls of both settings surfaces. Each shows the state's current value, follows
// later changes of it, and applies the user's choice through SettingsActions.
namespace SettingsPickers {
QWidget *themeSegments(AppState &state);
QComboBox *themePicker(AppState &state);
QComboBox *nlePicker(AppState &state);
QComboBox *frameRatePicker(AppState &state);
} // namespace SettingsPickers
