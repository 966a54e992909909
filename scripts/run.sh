#!/usr/bin/env bash
# Sets up, builds and starts Vorlix Sync against the local service stand-in with its demo data.
# The demo keeps everything of its own under ~/.cache/vorlix-sync-demo (settings file, generated
# footage, a throw-away keyring when the desktop has none), so trying it never touches your own
# settings or login. Extra arguments go to the application.
# Stop it by closing the window (or Ctrl+C here); the stand-in stops with it.
# `scripts/run.sh --reset` removes everything the demo keeps, its login included, and exits.
#
# Against a real deployment, run the program itself: build/src/vorlix-sync --service-url URL
# (or set VORLIX_SERVICE_URL).
set -euo pipefail
cd "$(dirname "$0")/.."
build_dir=${VORLIX_BUILD_DIR:-build}
demo=${VORLIX_DEMO_DIR:-${XDG_CACHE_HOME:-$HOME/.cache}/vorlix-sync-demo}
code=123456
profile="$demo/demo-profile.ini"

if [ "${1:-}" = --reset ]; then
  # The login cookie of the demo profile may sit in the desktop's keyring (QtKeychain's item:
  # server = the application's service, user = the account of this profile).
  if command -v secret-tool >/dev/null && [ -n "${DBUS_SESSION_BUS_ADDRESS:-}" ]; then
    secret-tool clear server io.vorlix.sync user "session_cookie:$profile" 2>/dev/null || true
  fi
  rm -rf "$demo"
  echo "run: demo reset (removed $demo and its login); start it again with: bash scripts/run.sh"
  exit 0
fi

scripts/setup.sh
# Only what the demo runs: the program and the stand-in (no tests, benchmarks or tools).
scripts/build.sh vorlix-sync vorlix-service-standin

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ "${QT_QPA_PLATFORM:-}" != offscreen ]; then
  # A machine without a screen still runs the whole demo, on a virtual one (xvfb from setup).
  echo "run: no display found (neither DISPLAY nor WAYLAND_DISPLAY is set); starting on a virtual screen" >&2
  exec xvfb-run -a -s "-screen 0 1280x800x24" bash scripts/run.sh "$@"
fi

# Footage under every marker and utterance of harbour-day2 (one 21-minute interview take),
# workshop-walkthrough (two takes) and rooftop-broll (three short shots); market-vox-pops gets one
# minute around 11:33, so four of its five markers fall on no footage and the session says so; the
# last clip matches no session.
echo "run: demo footage in $demo/footage"
scripts/demo-footage.sh "$demo/footage" 10:00:00:00+1260 13:59:50:00+310 14:05:00:00+320 \
  16:00:05:00+60 16:02:20:00+20 16:04:50:00+20 11:33:00:00+60 08:00:00:00+40

if [ ! -f "$profile" ]; then
  printf '[General]\nvorlix_footage_folders=%s\n' "$demo/footage" > "$profile"
fi

log="$demo/standin.log"
"$build_dir/tools/service-standin/vorlix-service-standin" --port 0 --code "$code" > "$log" 2>&1 &
standin=$!
trap 'kill "$standin" 2>/dev/null || true' EXIT
trap 'exit 130' INT TERM
url=""
for _ in $(seq 1 50); do
  url=$(sed -n 's/^Listening on \(http[^ ]*\).*/\1/p' "$log" | head -n1)
  [ -n "$url" ] && break
  kill -0 "$standin" 2>/dev/null || { cat "$log" >&2; exit 1; }
  sleep 0.1
done
[ -n "$url" ] || { echo "run: the service stand-in did not start" >&2; cat "$log" >&2; exit 1; }

cat <<TEXT

Vorlix Sync demo, service stand-in at $url
Demo login: any e-mail address, code $code
Demo settings: $profile
Stop: close the window or press Ctrl+C here. Reset: bash scripts/run.sh --reset

TEXT

app=("$build_dir/src/vorlix-sync" --settings "$profile" --service-url "$url" --login-hint "Demo: any e-mail address, code $code" "$@")
if [ -n "${DBUS_SESSION_BUS_ADDRESS:-}" ]; then
  "${app[@]}"
else
  # No desktop session: give the login cookie a private, unlocked keyring of the demo's own.
  mkdir -p "$demo/keyring"
  dbus-run-session -- bash -c '
    export XDG_DATA_HOME="$1/keyring/data" XDG_RUNTIME_DIR="$1/keyring/run"
    mkdir -p "$XDG_DATA_HOME" "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
    eval "$(printf "vorlix-demo\n" | gnome-keyring-daemon --unlock --components=secrets)"
    shift
    exec "$@"' bash "$demo" "${app[@]}"
fi
