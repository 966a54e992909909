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
    // Not awaited: the deletion goes on in the background, and the credential store serves it
    // before any later login's write.
    backend.deleteCredential();
}
