#!/usr/bin/env bash
# Runs every benchmark program of a build (bench/*_bench and bench/bench_*),
# then checks the ratios listed in bench/checks.tsv against their limits.
# Usage: bench/run.sh BUILD_DIR   (exit status 1 when a check fails)
# A new benchmark only needs its program in bench/CMakeLists.txt and, for each
# figure it claims, a line in bench/checks.tsv naming the counter it reports.
set -euo pipefail

here="$(cd "$(dirname "$0")" && pwd)"
build="${1:?usage: bench/run.sh BUILD_DIR}"
results="$build/bench-results"
mkdir -p "$results"

python=/usr/bin/python3
[[ -x "$python" ]] || python=python3

shopt -s nullglob
ran=0
for exe in "$build"/bench/*_bench "$build"/bench/bench_*; do
    [[ -f "$exe" && -x "$exe" ]] || continue
    name="$(basename "$exe")"
    echo "== $name"
    "$exe" --benchmark_out="$results/$name.json" --benchmark_out_format=json
    ran=$((ran + 1))
done
if [[ $ran -eq 0 ]]; then
    echo "no benchmark programs in $build/bench" >&2
    exit 1
fi

echo
exec "$python" "$here/check_ratios.py" "$results" "$here/checks.tsv"
