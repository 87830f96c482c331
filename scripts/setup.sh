#!/usr/bin/env bash
# Installs the Debian packages the project needs, only those that are missing.
# Safe to run any number of times; does nothing when everything is present.
set -euo pipefail

packages=(
  build-essential cmake ninja-build ccache
  qt6-base-dev qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools
  libqt6opengl6-dev libgl-dev libbenchmark-dev
  clang-14 libclang-rt-14-dev
  xvfb xauth
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "setup: installing ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
