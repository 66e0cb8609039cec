#!/usr/bin/env bash
# Makes a certificate for "localhost" and its key in DIRECTORY, for a day: server.crt, server.key.
# Usage: scripts/make-certificate.sh DIRECTORY
set -euo pipefail

mkdir -p "${1:?usage: scripts/make-certificate.sh DIRECTORY}"
openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj /CN=localhost \
    -keyout "$1/server.key" -out "$1/server.crt" 2>/dev/null
