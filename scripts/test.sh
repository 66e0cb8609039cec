#!/usr/bin/env bash
# Installs what is missing, builds a preset and runs all of its tests.
# Usage: scripts/test.sh [PRESET]     (default: release)
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:-release}
scripts/install-deps.sh
if [ tests/webreport/package-lock.json -nt tests/webreport/node_modules/.package-lock.json ]; then
    (cd tests/webreport && npm ci --no-audit --no-fund)
fi
cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --preset "$preset"
