#pragma once

#include <QString>

class AppState;
class Desktop;

// The reactions both settings surfaces share: every change is applied and stored at once.
namespace SettingsActions {
void setTheme(AppState &state, const QString &appearance);
void setPreferredNLE(AppState &state, const QString &nle);
void setDefaultFps(AppState &state, int fps);
// Opens the folder chooser; a confirmed folder is added to the saved footage folders.
void addFolder(AppState &state, Desktop &desktop);
} // namespace SettingsActions
