#!/usr/bin/env bash
# Builds and runs all benchmarks. Each prints its ratio to the limit of the same work.
# Usage: scripts/benchmark.sh [SECONDS]     how long each measures (default: 1)
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --preset release
cmake --build --preset release
for program in build/release/benchmarks/*_benchmark; do
    echo "== $(basename "$program")"
    "$program" --benchmark_min_time="${1:-1}" 2>/dev/null
done
