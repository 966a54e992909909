#include "ui/shell/SignOut.h"

#include "ui/shell/ShellBackend.h"

void signOutEverywhere(AppState &state, ShellBackend &backend, AppState::SignOutScope scope)
{
    state.signOut(scope);
    backend.deleteCredential();
}
