#!/usr/bin/env bash
# Configures and builds everything (program, command-line tool, stand-in, tests, benchmarks).
set -euo pipefail
cd "$(dirname "$0")/.."
build_dir=${VORLIX_BUILD_DIR:-build}
cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build_dir"
