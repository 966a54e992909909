#!/usr/bin/env bash
# Sets up, builds and runs the whole test suite (the layer check of src/ included), then builds
# the core, the command-line tool and their tests under AddressSanitizer and
# UndefinedBehaviorSanitizer (the asan preset, build-asan/) and runs those tests again. Each run
# has its own D-Bus session with an unlocked keyring, so the credential tests use the real
# secret store; GUI tests use the offscreen platform. Extra arguments go to both CTest runs.
# A failure in the first run still lets the sanitizer run report; the exit status is a failure
# if either failed.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
scripts/build.sh
suite=0
dbus-run-session -- bash scripts/run-tests-in-session.sh "$@" || suite=$?

echo "test: the core and the command-line tool under the sanitizers (build-asan/)"
cmake --preset asan >/dev/null
cmake --build --preset asan
VORLIX_BUILD_DIR=build-asan dbus-run-session -- bash scripts/run-tests-in-session.sh -L '^core$' "$@"
if [ "$suite" -ne 0 ]; then
  echo "test: the suite in build/ failed, see its summary above" >&2
  exit "$suite"
fi
