#!/usr/bin/env bash
# Builds Meshwright twice, plainly and with AddressSanitizer + UndefinedBehaviorSanitizer,
# and runs every test in both builds (under a virtual X display for the OpenGL tests).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/deps.sh
jobs="$(nproc)"

cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$jobs"
(cd build && xvfb-run -a ctest --output-on-failure -j"$jobs")

cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DMW_SANITIZE=ON >/dev/null
cmake --build build-asan -j"$jobs"
(cd build-asan && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
    UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 xvfb-run -a ctest --output-on-failure -j"$jobs")
