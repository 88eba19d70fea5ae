#!/usr/bin/env bash
# Builds the demo data set in samples/ when its generator is present.
set -euo pipefail
cd "$(dirname "$0")/.."
if [ -x samples/make-demo.sh ]; then
  samples/make-demo.sh "$@"
fi
