#pragma once

#include "state/AppState.h"

class ShellBackend;

// Every sign-out: the state's own clearing for the surface it came from, then the credential.
void signOutEverywhere(AppState &state, ShellBackend &backend, AppState::SignOutScope scope);
