#!/usr/bin/env bash
# Sets up the machine, builds the package and the demo host (optimised, no sanitizers)
# and runs the demo host with the IDE inspector in its Tools menu. Arguments go to the
# demo host: --screenshot FILE saves a picture of the window and exits (works without a
# display), --extra-objects N adds N objects for scale tests, --help lists the rest.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
bash "$root/scripts/setup.sh"

build=${KV_DEMO_BUILD_DIR:-$root/build/release}
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DKV_SANITIZE=OFF -DKV_BUILD_TESTS=OFF -DKV_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" -j "$(nproc)" --target kvdemohost kvIDEInspD5

if [ -z "${QT_QPA_PLATFORM:-}" ] && [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    if [[ " $* " == *" --screenshot "* ]]; then
        export QT_QPA_PLATFORM=offscreen
    else
        echo "demo: no display; run with --screenshot FILE, or under xvfb-run" >&2
        exit 2
    fi
fi
exec "$build/bin/kvdemohost" "$@"
