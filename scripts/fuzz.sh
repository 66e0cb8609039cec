#!/usr/bin/env bash
# Builds the fuzz targets and runs each for some seconds. A finding ends it; its input is kept in
# build/fuzz/findings. With CI set the inputs are those of one seed, so that a change is not refused
# for what chance finds in another place; run it longer and without CI to search.
# Usage: scripts/fuzz.sh [SECONDS]     (default: 60)
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
scripts/install-deps.sh
cmake --preset fuzz
cmake --build --preset fuzz
findings=$PWD/build/fuzz/findings
mkdir -p "$findings"
seed=(${CI:+-seed=1})
count=0
for target in build/fuzz/fuzzers/*_fuzzer; do
    name=$(basename "$target")
    corpus=build/fuzz/corpus/$name
    mkdir -p "$corpus"
    echo "== $name"
    known=()
    [ -d "fuzz/corpus/$name" ] && known=("fuzz/corpus/$name")
    "$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -close_fd_mask=3 \
        ${seed[@]+"${seed[@]}"} \
        -artifact_prefix="$findings/$name-" "$corpus" ${known[@]+"${known[@]}"} 2>&1 | tail -n 2
    count=$((count + 1))
done
[ "$count" -gt 0 ]
echo "$count fuzz targets found nothing"
