#!/usr/bin/env bash
# Draws docs/contact-sheet.png: the sample and models made from it as the tests make them (a
# room conversion, edited and merged variants, a damaged file), through meshwright-cli sheet.
set -euo pipefail
cd "$(dirname "$0")/.."
cli=${CLI:-build/src/cli/meshwright-cli}
hog=samples/gamedata/d3.hog
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

cp samples/ship.oof "$dir/ship.oof"
"$cli" convert samples/ship.oof "$dir/ship_room.orf" --d3hog "$hog" >/dev/null
"$cli" edit samples/ship.oof "$dir/Hull_Only.OOF" --delete-sobj 6 --delete-sobj 5 \
    --delete-sobj 4 --delete-sobj 3 --delete-sobj 2 --delete-sobj 1 >/dev/null
"$cli" edit samples/ship.oof "$dir/no_wings.oof" --delete-sobj 2 --delete-sobj 1 >/dev/null
"$cli" edit samples/ship.oof "$dir/merged_wings.oof" --combine 1:2 --scale 150 >/dev/null
head -c 120 samples/ship.oof > "$dir/damaged.oof"
"$cli" sheet "$dir" --png docs/contact-sheet.png --columns 4 --size 160 --d3hog "$hog"
