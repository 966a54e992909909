#!/usr/bin/env bash
# Configures the default preset (build/, or $VORLIX_BUILD_DIR) and builds the given targets,
# everything when none is given.
set -euo pipefail
cd "$(dirname "$0")/.."
build_dir=${VORLIX_BUILD_DIR:-build}
cmake --preset default -B "$build_dir" >/dev/null
if [ $# -gt 0 ]; then
  cmake --build "$build_dir" --target "$@"
else
  cmake --build "$build_dir"
fi
