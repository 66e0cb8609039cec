#!/usr/bin/env bash
# Prints how many lines the code and its tests have, blank lines left out, and the share of the tests.
set -euo pipefail
cd "$(dirname "$0")/.."

lines() {
    git ls-files -z -- "$@" | grep -zE '\.(h|hpp|c|cc|cpp|js|py|css|html)$' |
        xargs -0 cat | grep -c '[^[:space:]]'
}

code=$(lines src runner webreport)
tests=$(lines tests)
printf 'code   %6d lines\ntests  %6d lines\nshare  %6d %%\n' \
    "$code" "$tests" $(((100 * tests + code / 2) / code))
