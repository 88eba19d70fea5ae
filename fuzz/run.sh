#!/usr/bin/env bash
# Runs every fuzz harness of a fuzz build for a bounded time, each on its own
# corpus folder (seeded from fuzz/corpus/NAME when present).
set -euo pipefail
build="${1:-build-fuzz}"
seconds="${2:-30}"
here="$(cd "$(dirname "$0")" && pwd)"
status=0
for exe in "$build"/fuzz/*_fuzz; do
  [ -x "$exe" ] || continue
  name="$(basename "$exe")"
  corpus="$build/fuzz-corpus/$name"
  mkdir -p "$corpus"
  if [ -d "$here/corpus/$name" ]; then cp -n "$here/corpus/$name"/* "$corpus"/ 2>/dev/null || true; fi
  echo "== $name for ${seconds}s"
  if ! "$exe" -max_total_time="$seconds" -max_len=65536 -timeout=10 -rss_limit_mb=4096 "$corpus" \
      > "$build/$name.log" 2>&1; then
    echo "!! $name found a fault; see $build/$name.log"
    tail -30 "$build/$name.log"
    status=1
  else
    tail -1 "$build/$name.log"
  fi
done
exit $status
