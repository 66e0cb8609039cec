#!/usr/bin/env bash
# Starts examples/resultserver, uploads a run of the demo suite to it and shows where its report is.
# Usage: scripts/demo-upload.sh [BUILD_DIRECTORY]     (default: build/demo, which is built)
set -euo pipefail
cd "$(dirname "$0")/.."

build=${1:-build/demo}
if [ $# -eq 0 ]; then
    scripts/install-deps.sh run
    cmake --preset release -DMORVEX_TESTS=OFF -DMORVEX_BENCHMARKS=OFF -B "$build" >/dev/null
    cmake --build "$build"
fi

data=$(mktemp -d)
"$build/examples/bin/resultserver" --port 0 --data "$data" >"$data/log" &
server=$!
trap 'kill "$server" 2>/dev/null; wait "$server" 2>/dev/null || true' EXIT
for ((i = 0; i < 100; ++i)); do
    grep -q quillbase "$data/log" && break
    sleep 0.1
done
value=$(sed -n "s/.*'\(quillbase,[^']*\)'.*/\1/p" "$data/log")

# Test cases of the demo fail on purpose, so that 1 is the status to expect.
status=0
"$build/prefix/bin/morvexrunner" --skip tst_skipped --timeout 2 --reportgen stdout \
    --reportgen "$value&batch=first&label=demo" examples/demo_suite 2>"$data/errors" || status=$?
report=$data/demo/batches/first/index.html
if [ "$status" -ne 1 ] || [ ! -f "$report" ]; then
    cat "$data/log" "$data/errors" >&2
    exit 2
fi
echo "The report that the server has made: $report"
[ -z "${DISPLAY:-}" ] || ! command -v xdg-open >/dev/null || xdg-open "$report"
