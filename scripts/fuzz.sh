#!/usr/bin/env bash
# Fuzzes the readers of untrusted bytes with libFuzzer:
#   scripts/fuzz.sh [TARGET] [SECONDS]
# TARGET is fuzz_reader (binary component streams), fuzz_objecttext (the text form) or
# fuzz_settings (the settings file); without one, each runs in turn. SECONDS defaults to 600.
# New inputs that reach new code are kept in build/fuzz/corpus/TARGET; crashes land in
# build/fuzz/artifacts. The library is built with coverage instrumentation in build/fuzz.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
bash "$root/scripts/setup.sh"

targets=(fuzz_reader fuzz_objecttext fuzz_settings)
if [[ $# -ge 1 ]]; then targets=("$1"); fi
seconds=${2:-600}

build=$root/build/fuzz
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DKV_SANITIZE=ON -DKV_FUZZ=ON \
    -DKV_BUILD_BENCH=OFF -DCMAKE_CXX_COMPILER=clang++-14 > /dev/null
cmake --build "$build" --target "${targets[@]}"

export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=detect_leaks=0:halt_on_error=1
for target in "${targets[@]}"; do
    seeds=${target#fuzz_}
    corpus=$build/corpus/$target
    mkdir -p "$corpus" "$build/artifacts"
    echo "== $target for $seconds s"
    "$build/bin/$target" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=2048 -timeout=10 \
        -artifact_prefix="$build/artifacts/$target-" -print_final_stats=1 \
        "$corpus" "$root/tests/fuzz/corpus/$seeds"
done
