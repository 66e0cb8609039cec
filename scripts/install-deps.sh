#!/usr/bin/env bash
# Installs the Debian packages that Morvex needs and asks for nothing that is there already.
# Usage: scripts/install-deps.sh [run|all]     run: to build and run it; all: tests and checks too (the default)
set -euo pipefail

run=(
    ccache cmake g++ libexpat1-dev libminizip-dev libqt5websockets5-dev libtinyxml-dev
    libxcb1-dev ninja-build pkg-config qtbase5-dev qtbase5-private-dev qtdeclarative5-dev qtdeclarative5-dev-tools
    qtdeclarative5-private-dev
)
tests=(
    bsdutils chromium clang clang-format dbus-daemon gdb gnumeric libbenchmark-dev libclang-rt-14-dev libgtest-dev
    libjsoncpp-dev libxml2-dev libxml2-utils openbox openssl python3-openpyxl python3-websockets
    python3-xlsxwriter python3-xlwt unzip
    scrot xdotool xvfb zip
    # Programs that tests drive, and what they need.
    featherpad kcalc keepassxc pyqt5-examples python3-pyqt5 qml-module-qtquick-controls2
    qml-module-qtquick-layouts qml-module-qtquick-window2 qtquickcontrols2-5-examples speedcrunch
)
# A node of any other origin will do.
command -v npm >/dev/null || tests+=(nodejs npm)

wanted=("${run[@]}")
[ "${1:-all}" = run ] || wanted+=("${tests[@]}")

missing=()
for package in "${wanted[@]}"; do
    status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

sudo=()
[ "$(id -u)" -eq 0 ] || sudo=(sudo)
echo "Installing ${missing[*]}" >&2
"${sudo[@]}" apt-get update -q >&2
"${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -q --no-install-recommends "${missing[@]}" >&2
