#include "ui/SignOut.h"

#include "ui/ShellBackend.h"

void signOutEverywhere(AppState &state, ShellBackend &backend, AppState::SignOutScope scope)
{
    state.signOut(scope);
    backend.deleteCredential();
}
