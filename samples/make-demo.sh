#!/usr/bin/env bash
# Writes the demo mine's data into samples/demo/ and builds samples/demo/demo.STATE.
#   samples/make-demo.sh [BUILD_DIR] [OUT_DIR]
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
build="${1:-build}"
out="${2:-$here/demo}"
case "$build" in /*) ;; *) build="$(cd "$here/.." && pwd)/$build" ;; esac
cli="$build/tarvik-cli"
if [ ! -x "$cli" ]; then
  echo "make-demo: $cli is missing: build first (make build)" >&2
  exit 1
fi
# The system's own interpreter: the first python3 on PATH may be another one.
py=/usr/bin/python3
[ -x "$py" ] || py="$(command -v python3)"
"$py" "$here/make_demo.py" "$out" --cli "$cli"
echo "make-demo: the demo world is $out/demo.STATE"
