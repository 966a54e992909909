#include "ui/shell/SignOut.h"

#include "state/AppState.h"
#include "state/SessionLibrary.h"
#include "ui/shell/ShellBackend.h"

void signOutEverywhere(AppState &state, ShellBackend &backend, SignOutScope scope)
{
    state.signOut();
    if (scope != SignOutScope::SettingsWindow)
        SessionLibrary(state).clearSessions();
    if (scope == SignOutScope::InlineSettings)
        state.setShowSettings(false);
    backend.deleteCredential();
}
