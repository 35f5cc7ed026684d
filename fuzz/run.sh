#!/usr/bin/env bash
# Builds the fuzz targets with clang and libFuzzer (with ASan and UBSan) and runs each for
# SECONDS on its corpus: fuzz/run.sh SECONDS [TARGET...]. Exits non-zero on any finding;
# the input that caused it is kept in build-fuzz/findings/.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:?usage: fuzz/run.sh SECONDS [TARGET...]}"
shift
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(oof orf hog ogf oaf gam pages settings targa gltf edits)

MW_FUZZ=1 scripts/deps.sh
flags="-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer"
cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMW_FUZZ=ON \
    -DCMAKE_CXX_COMPILER=clang++-14 -DCMAKE_C_COMPILER=clang-14 \
    -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=address,undefined" >/dev/null
cmake --build build-fuzz -j"$(nproc)" --target make_fuzz_seeds $(printf 'fuzz_%s ' "${targets[@]}")

corpus=build-fuzz/corpus
build-fuzz/fuzz/make_fuzz_seeds build-fuzz/seeds
mkdir -p build-fuzz/findings
status=0
for t in "${targets[@]}"; do
    mkdir -p "$corpus/$t"
    echo "== fuzz_$t for ${seconds}s"
    if ! build-fuzz/fuzz/fuzz_$t "$corpus/$t" "build-fuzz/seeds/$t" -max_total_time="$seconds" \
        -rss_limit_mb=2048 -malloc_limit_mb=512 -timeout=10 -print_final_stats=1 \
        -artifact_prefix="build-fuzz/findings/${t}-" 2>"build-fuzz/fuzz_$t.log"; then
        echo "fuzz_$t found a problem:"
        tail -n 40 "build-fuzz/fuzz_$t.log"
        status=1
    fi
    grep -E 'stat::number_of_executed_units|stat::new_units_added' "build-fuzz/fuzz_$t.log" || true
done
exit $status
