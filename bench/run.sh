#!/usr/bin/env bash
# Builds the benchmarks in a release build and runs them: bench/run.sh [benchmark options]
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
cmake -S . -B build-release -DCMAKE_BUILD_TYPE=Release -DMW_BUILD_TESTS=OFF >/dev/null
cmake --build build-release -j"$(nproc)" --target mw_bench
build-release/bench/mw_bench "$@"
