#!/usr/bin/env bash
# Runs a command in a fresh temporary folder (the library writes its logs to the current folder).
set -euo pipefail
dir=$(mktemp -d /tmp/gaengine-abi-XXXXXX)
trap 'rm -rf "$dir"' EXIT
cd "$dir"
"$@"
