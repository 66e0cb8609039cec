#!/usr/bin/env bash
# Runs the commands of docs/recording.md in order, as a user under a display of its own would, and takes the page's
# pictures on the way. Ends with an error when a command does, or when the page shows another script than was recorded.
# Usage: scripts/recording-pictures.sh PREFIX [DIRECTORY]
#   PREFIX     where bin/morvexrunner is, such as build/release/prefix
#   DIRECTORY  where the pictures go; docs/pictures is the default
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
prefix=$(cd "$1" && pwd)
mkdir -p "${2:-$root/docs/pictures}"
pictures=$(cd "${2:-$root/docs/pictures}" && pwd)
page=$root/docs/recording.md
export PATH=$prefix/bin:$PATH

for program in chromium kcalc openbox scrot xdotool Xvfb; do
    command -v "$program" >/dev/null && continue
    echo "recording-pictures: $program is missing; scripts/install-deps.sh installs it" >&2
    # For CTest: skipped, but not where all is to be installed.
    [ -n "${CI:-}" ] && exit 1
    exit 77
done

work=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; wait; rm -rf "$work"' EXIT
cd "$work"

# Waits at most 30 seconds for a command to succeed.
until_true() {
    for ((tries = 0; tries < 300; ++tries)); do
        if "$@" >/dev/null 2>&1; then return; fi
        sleep 0.1
    done
    echo "recording-pictures: this did not come about: $*" >&2
    [ ! -f recorder.log ] || cat recorder.log >&2
    exit 1
}

# The blocks of the page that are marked with language $1, each ended by a zero byte.
blocks() {
    awk -v start="^\`\`\`$1\$" '
        $0 ~ start { inside = 1; next }
        /^```$/ && inside { inside = 0; printf "%c", 0 }
        inside' "$page"
}

start_display() {
    # Without -noreset, the server throws out whoever connects while its only client leaves. Without -r, it repeats a key
    # when whoever presses it is held up.
    Xvfb -displayfd 3 -noreset -r -screen 0 480x380x24 -nolisten tcp 3>display 2>xvfb.log &
    until_true test -s display
    export DISPLAY=:$(cat display)
    unset QT_QPA_PLATFORM WAYLAND_DISPLAY
    openbox 2>openbox.log &
    # Only a window manager answers this.
    until_true xdotool get_desktop
}

window() {
    xdotool search --onlyvisible --class kcalc | head -1 | grep .
}

has_menu() {
    [ "$(xdotool search --onlyvisible --class kcalc | wc -l)" -gt "$windows" ]
}

has_ended() {
    ! kill -0 "$1"
}

# What the page asks the user to do.
use_calculator() {
    until_true window
    xdotool windowfocus --sync "$(window)"
    xdotool type --delay 100 '12+30'
    xdotool key Return
    until_true grep -q Return suite_calc/tst_sum.recording
    windows=$(xdotool search --onlyvisible --class kcalc | wc -l)
    xdotool mousemove --sync --window "$(window)" 84 72
    xdotool key ctrl+alt+shift+v
    until_true has_menu
    sleep 1
    scrot --overwrite "$pictures/recording-check.png"
    xdotool key Down Down Return
    until_true grep -q 'verification point' recorder.log
    xdotool key alt+F4
    until_true has_ended "$recorder"
}

run_command() {
    if [[ $1 != *--record* ]]; then
        bash -euc "$1"
        return
    fi
    bash -euc "$1" >recorder.log 2>&1 &
    recorder=$!
    use_calculator
    wait "$recorder"
}

start_display
while IFS= read -r -d '' commands; do
    run_command "$commands"
done < <(blocks sh)
IFS= read -r -d '' script < <(blocks js)
diff -u <(printf %s "$script") suite_calc/tst_sum/script.js
chromium --headless --no-sandbox --disable-gpu --hide-scrollbars --window-size=900,420 --virtual-time-budget=5000 \
    --user-data-dir="$work/profile" --screenshot="$pictures/recording-report.png" \
    "file://$work/report/index.html" >chromium.log 2>&1
