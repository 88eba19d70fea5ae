#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the tools need.
# Idempotent and non-interactive: does nothing when everything is there.
set -euo pipefail

PACKAGES=(
  build-essential cmake ninja-build pkg-config ccache
  qt6-base-dev libqt6opengl6-dev libqt6openglwidgets6 qt6-charts-dev
  xvfb xauth libgl1-mesa-dri libegl1 libegl-dev libgles-dev libgl-dev
  libembree-dev libnanoflann-dev libtbb-dev libfast-float-dev libfmt-dev libcli11-dev
  nlohmann-json3-dev libgtest-dev libgmock-dev libbenchmark-dev libassimp-dev libstb-dev
  clang libclang-rt-14-dev python3
)

missing=()
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "install-deps: installing ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
