#!/usr/bin/env bash
# Takes the pictures of the user guide's window page from the real window,
# under a private X server, into docs/user/images/.
#   scripts/screenshots.sh [BUILD_DIR]      (BUILD_DIR holds the tarvik program)
set -euo pipefail
cd "$(dirname "$0")/.."
build="${1:-build}"
app="$build/tarvik"
if [ ! -x "$app" ]; then
  echo "screenshots: $app is missing: build the window first" >&2
  exit 1
fi
command -v xvfb-run >/dev/null || { echo "screenshots: xvfb-run is needed" >&2; exit 1; }

# The demo model when it has been made (make demo), else the built-in scene.
model=--demo
[ -f samples/demo/demo.STATE ] && model=samples/demo/demo.STATE

out=docs/user/images
mkdir -p "$out"
# A settings folder of its own, so no one's recent files show in the pictures.
config="$(mktemp -d)"
trap 'rm -rf "$config"' EXIT
export XDG_CONFIG_HOME="$config" QT_QPA_PLATFORM=xcb LIBGL_ALWAYS_SOFTWARE=1

shoot() {
  local name="$1"; shift
  timeout 60 xvfb-run -a -s "-screen 0 1280x1024x24" \
    "$app" --fit "$model" --size 1200x800 --screenshot "$out/$name" "$@"
}

shoot window.png
shoot window-info.png --info
shoot palette.png --palette "colour map"

for f in window.png window-info.png palette.png; do
  size=$(stat -c %s "$out/$f")
  echo "$out/$f: $size bytes"
  if [ "$size" -gt 204800 ]; then
    echo "screenshots: $f is over 200 KB" >&2
    exit 1
  fi
done
