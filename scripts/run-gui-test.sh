#!/usr/bin/env bash
# Runs a GUI test program under a real X server: the current display when there
# is one, else a private Xvfb. Exits 77 (skipped) when neither is possible.
set -u
prog="$1"; shift
export QT_QPA_PLATFORM=xcb
export LIBGL_ALWAYS_SOFTWARE=1
if [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; then
  exec "$prog" "$@"
fi
if command -v xvfb-run >/dev/null 2>&1; then
  exec xvfb-run -a -s "-screen 0 1280x1024x24" "$prog" "$@"
fi
echo "no X server and no xvfb-run: GUI tests skipped" >&2
exit 77
