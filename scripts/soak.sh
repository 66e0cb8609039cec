#!/usr/bin/env bash
# Starts and ends applications again and again, killing the runner, the test case, both at once, a
# watcher or the application at random moments of its life, and looks for what is left: processes,
# directories with their sockets. The same seed chooses the same victims and moments.
# One file is excepted: the socket of the report of a runner that was killed.
# Usage: scripts/soak.sh [COUNT [SEED [BUILD]]]     (default: 1000, the time, build/release)
set -euo pipefail
cd "$(dirname "$0")/.."

count=${1:-1000}
seed=${2:-$(date +%s)}
prefix=$PWD/${3:-build/release}/prefix
RANDOM=$((seed % 32768))
echo "seed $seed"

work=$(mktemp -d /tmp/soak-XXXXXX)
mark=morvex-soak-$(basename "$work")
suite=$work/suite
mkdir -p "$suite/tst_a" "$work/tmp"
echo "VERSION = 3" >"$suite/suite.conf"
cat >"$suite/tst_a/script.js" <<SCRIPT
application.start("inventory");
find("name").type("Screws");
check.equal(find("name").get("text"), "Screws");
snooze(0.2);
SCRIPT

# Processes that have this run's mark in their environment. One that has ended has none.
ours() {
    grep -lsz "^SOAK_MARK=$mark\$" /proc/[0-9]*/environ 2>/dev/null | cut -d/ -f3 || true
}

# Those of one kind. A kind of their own are the first processes of test cases, with the program of
# the runner.
named() {
    local process program
    for process in $(ours); do
        program=$(basename "$(readlink "/proc/$process/exe" 2>/dev/null)")
        if [ "$program" = morvexrunner ] &&
            grep -qz -- '^--testcase$' "/proc/$process/cmdline" 2>/dev/null; then
            program=testcase
        fi
        [ "$program" != "$1" ] || echo "$process"
    done
}

# Those to kill now. Of the two watchers, one is for the program and one for its home.
victims_now() {
    case $victim in
    runner) named morvexrunner ;;
    testcase) named testcase ;;
    both) named morvexrunner && named testcase ;;
    watcher) named morvexwatcher | sed -n "$((1 + moment % 2))p" ;;
    application) named inventory ;;
    esac
}

# Until the victim is there. One may be too short for that: the run then ends by itself.
wait_for_victim() {
    while kill -0 "$runner" 2>/dev/null && [ -z "$(victims_now)" ]; do
        sleep 0.01
    done
}

# The socket of the report is the runner's own: one that was killed can't remove it, and later ones
# leave it alone.
left_files() {
    find "$work/tmp" -mindepth 1 ! -name 'morvexrunner_report_*'
}

fail() {
    echo "after round $round ($victim killed after $delay s): $1" >&2
    for process in $(ours); do
        ps -o pid,ppid,stat,args -p "$process" >&2 || true
    done
    find "$work/tmp" >&2
    exit 1
}

cleanup() {
    local process
    for process in $(ours); do
        [ "$process" = $$ ] || kill -9 "$process" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap cleanup EXIT

victims=(none runner testcase both watcher application)
declare -A killed
for ((round = 1; round <= count; ++round)); do
    victim=${victims[$((RANDOM % ${#victims[@]}))]}
    moment=$((RANDOM % 250))
    delay=0.$(printf '%03d' "$moment")
    SOAK_MARK=$mark TMPDIR=$work/tmp QT_QPA_PLATFORM=offscreen \
        "$prefix/bin/morvexrunner" --reportgen "json,$work/report" "$suite" >"$work/output" 2>&1 &
    runner=$!
    if [ "$victim" != none ]; then
        wait_for_victim
        sleep "$delay"
        found=$(victims_now)
        # shellcheck disable=SC2086 # The ids are words.
        [ -z "$found" ] || kill -9 $found 2>/dev/null || true
        [ -z "$found" ] || killed[$victim]=$((${killed[$victim]:-0} + 1))
    fi
    wait "$runner" 2>/dev/null && status=0 || status=$?
    if [ "$victim" = none ] && [ "$status" -ne 0 ]; then
        cat "$work/output" >&2
        fail "the run has failed with status $status"
    fi
    # Watchers end after what they watch.
    for ((wait = 0; wait < 300; ++wait)); do
        [ -n "$(ours)" ] || [ -n "$(left_files)" ] || break
        sleep 0.1
    done
    [ -z "$(ours)" ] || fail "processes are left"
    [ -z "$(left_files)" ] || fail "files are left"
    rm -rf "$work/report"
done
for victim in "${!killed[@]}"; do
    echo "$victim killed: ${killed[$victim]}"
done
echo "$count starts and ends have left nothing"
