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

runner=build/demo/prefix/bin/morvexrunner
report=$(mktemp -d)/report

# Test cases of the demo fail on purpose, so that 1 is the status to expect.
run_demo_suite() {
    local status=0
    "$runner" --skip tst_skipped --timeout 2 --retry 1 --reportgen "html,$report" "$@" \
        examples/demo_suite || status=$?
    [ "$status" -eq 1 ] || exit "$status"
}

# Quietly: the web report shows the history of a test case when it holds more than one run.
(run_demo_suite) >build/demo-first-run.log 2>&1 || { tail -n 40 build/demo-first-run.log >&2; exit 1; }

echo "An application with windows, drawn into memory and compared with verification points:"
env -u QT_SCALE_FACTOR -u QT_AUTO_SCREEN_SCALE_FACTOR QT_QPA_PLATFORM=offscreen \
    "$runner" --reportgen stdout --reportgen "html,$report" examples/inventory_suite

echo
echo "A suite with one of everything that can go wrong:"
run_demo_suite --reportgen stdout "$@"
echo "A web report of these runs: $report/index.html"
