#pragma once

class AppState;
class ShellBackend;

// Where the user signed out: the surfaces differ in what else goes.
enum class SignOutScope {
    SessionList,    // also empties sessions and the selection
    InlineSettings, // as SessionList, and leaves the settings pane
    SettingsWindow, // keeps sessions: the next login merges into them
};

// Every sign-out: the login, what the surface clears, then the credential.
void signOutEverywhere(AppState &state, ShellBackend &backend, SignOutScope scope);
