#!/usr/bin/env bash
# Installs what is missing, builds a preset and runs all of its tests.
# Usage: scripts/test.sh [PRESET]     (default: release)
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:-release}
scripts/install-deps.sh
cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --preset "$preset"
