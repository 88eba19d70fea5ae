#!/usr/bin/env bash
# Opens the window on the demo model. With no display to open it on, draws the
# demo to out/demo.png instead and says where the picture is.
#   scripts/run-window.sh BUILD_DIR
set -u
cd "$(dirname "$0")/.."
build="${1:-build}"

# The demo data set's world, once it has been made; else the built-in demo.
demo_args=(--demo)
for f in samples/demo/*.STATE samples/*.STATE; do
  if [ -f "$f" ]; then
    demo_args=("$f")
    break
  fi
done

have_display() {
  if [ -n "${WAYLAND_DISPLAY:-}" ]; then return 0; fi
  [ -n "${DISPLAY:-}" ] || return 1
  if command -v xdpyinfo >/dev/null 2>&1; then
    xdpyinfo >/dev/null 2>&1
  else
    return 0
  fi
}

if have_display && [ -x "$build/tarvik" ]; then
  exec "$build/tarvik" --fit "${demo_args[@]}"
fi

if [ ! -x "$build/tarvik-cli" ]; then
  echo "run-window: $build/tarvik-cli is missing: build first (make build)" >&2
  exit 1
fi
mkdir -p out
if [ "${demo_args[0]}" = "--demo" ]; then
  "$build/tarvik-cli" render --demo -o out/demo.png --size 1280x800 --view iso || exit 1
else
  "$build/tarvik-cli" render "${demo_args[0]}" -o out/demo.png --size 1280x800 --view iso || exit 1
fi
echo "No display to open the window on: the demo model is drawn in $(pwd)/out/demo.png"
