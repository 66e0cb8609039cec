#!/usr/bin/env bash
# Installs what is missing, builds Morvex and runs the demo suites.
# Usage: scripts/demo.sh [options of morvexrunner]
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh run
log=build/demo-build.log
mkdir -p build
if ! { cmake --preset release -DMORVEX_TESTS=OFF -DMORVEX_BENCHMARKS=OFF -B build/demo \
        && cmake --build build/demo; } >"$log" 2>&1; then
    tail -n 40 "$log" >&2
    echo "The build failed; all of its output is in $log" >&2
    exit 1
fi

report=$(mktemp -d)/report
# Test cases of the demo fail on purpose, so that 1 is the status to expect.
status=0
build/demo/prefix/bin/morvexrunner --skip tst_skipped --timeout 2 --retry 1 \
    --reportgen stdout --reportgen "html,$report" "$@" examples/demo_suite || status=$?
[ "$status" -eq 1 ] || exit "$status"
echo "A web report of this run: $report/index.html"

echo
echo "An application with windows, compared with verification points:"
build/demo/prefix/bin/morvexrunner examples/inventory_suite
