#!/usr/bin/env bash
# Builds the benchmarks in a release build and runs them: bench/run.sh [benchmark options]
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
cmake -S . -B build-release -DCMAKE_BUILD_TYPE=Release -DMW_BUILD_TESTS=OFF >/dev/null
cmake --build build-release -j"$(nproc)" --target mw_bench mw_soak_bench mw_view_bench mw_editor_bench mw_cli_bench
build-release/bench/mw_bench "$@"
build-release/bench/mw_soak_bench "$@"
# Sheets and thumbnails as a build server or a thumbnailer draws them: no display at all.
env -u DISPLAY -u WAYLAND_DISPLAY build-release/bench/mw_cli_bench "$@"
# The frame-rate benchmarks need a display.
if [ -n "${DISPLAY:-}" ]; then
    build-release/bench/mw_view_bench "$@"
    build-release/bench/mw_editor_bench "$@"
else
    xvfb-run -a build-release/bench/mw_view_bench "$@"
    xvfb-run -a build-release/bench/mw_editor_bench "$@"
fi
