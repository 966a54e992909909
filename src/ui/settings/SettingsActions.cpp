#include "ui/settings/SettingsActions.h"

#include "platform/Desktop.h"
#include "state/AppState.h"

#include <QPointer>

namespace SettingsActions {

void setTheme(AppState &state, const QString &appearance)
{
    state.setAppearance(appearance);
    state.saveSettings();
    state.applyAppearance();
}

void setPreferredNLE(AppState &state, const QString &nle)
{
    state.setPreferredNLE(nle);
    state.saveSettings();
}

void setDefaultFps(AppState &state, int fps)
{
    state.setDefaultFps(fps);
    state.saveSettings();
}

void addFolder(AppState &state, Desktop &desktop)
{
    QPointer<AppState> guard(&state);
    desktop.chooseFolder(QStringLiteral("Select your footage folder"), [guard](const QString &path) {
        if (guard)
            guard->addFootageFolder(path);
    });
}

} // namespace SettingsActions
