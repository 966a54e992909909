#!/usr/bin/env bash
# Sets up, builds and runs the whole test suite. The suite runs inside its own D-Bus session
# with an unlocked keyring, so the credential tests use the real secret store; GUI tests use
# the offscreen platform. CTest's summary is the last thing printed.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
scripts/build.sh
exec dbus-run-session -- bash scripts/run-tests-in-session.sh "$@"
