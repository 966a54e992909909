#!/usr/bin/env bash
# Inside dbus-run-session: start a keyring daemon unlocked with a throw-away password, then CTest.
set -euo pipefail
cd "$(dirname "$0")/.."
keyring_home=$(mktemp -d)
trap 'rm -rf "$keyring_home"' EXIT
export XDG_DATA_HOME="$keyring_home/data" XDG_RUNTIME_DIR="$keyring_home/run"
mkdir -p "$XDG_DATA_HOME" "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
eval "$(printf 'vorlix-test\n' | gnome-keyring-daemon --unlock --components=secrets)"
export GNOME_KEYRING_CONTROL SSH_AUTH_SOCK 2>/dev/null || true
export QT_QPA_PLATFORM=offscreen
cd "${VORLIX_BUILD_DIR:-build}"
ctest --output-on-failure -j2 "$@"
