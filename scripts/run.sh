#!/usr/bin/env bash
# Builds Meshwright and opens the editor on the bundled sample model.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$(nproc)"

# A settings file beside the program makes the build a portable install; unless one is there
# already, it points the game data at the sample's archive so the sample shows its textures.
ini=build/src/app/MWUIData.ini
[ -f "$ini" ] || printf '[Path Settings]\nD3HogPath=%s\n' "$PWD/samples/gamedata/d3.hog" > "$ini"
exec build/src/app/meshwright samples/ship.oof "$@"
