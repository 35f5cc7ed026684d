#!/usr/bin/env bash
# Builds Meshwright and shows the bundled sample model.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$(nproc)"
build/src/cli/meshwright-cli info samples/ship.oof "$@"
