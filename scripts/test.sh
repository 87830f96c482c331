#!/usr/bin/env bash
# Sets up the machine, builds the whole project (Debug, AddressSanitizer and
# UndefinedBehaviorSanitizer, clang) and runs every test headless through CTest.
# Any sanitizer report fails the run.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
bash "$root/scripts/setup.sh"

build=${KV_TEST_BUILD_DIR:-$root/build/test}
jobs=$(nproc)
cmake -S "$root" -B "$build" -G Ninja \
    -DCMAKE_BUILD_TYPE=Debug -DKV_SANITIZE=ON \
    -DCMAKE_CXX_COMPILER=clang++-14
cmake --build "$build" -j "$jobs"

cd "$build"
export QT_QPA_PLATFORM=offscreen
ctest --output-on-failure -j "$jobs" "$@"
