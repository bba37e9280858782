#!/usr/bin/env bash
# Configures and builds presets:  tools/build.sh linux windows linux-asan linux-fuzz
# The benchmark programs, whose peers are packages of their own, come with KESTRA_BENCHMARKS=ON.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install.sh build
for preset in "$@"; do
    if [ "$preset" = windows ]; then tools/sqlite_windows.sh; fi
    cmake --preset "$preset" -DKESTRA_BENCHMARKS="${KESTRA_BENCHMARKS:-OFF}" >"/tmp/kestra-configure.$$" 2>&1 || { cat "/tmp/kestra-configure.$$"; exit 1; }
    rm -f "/tmp/kestra-configure.$$"
    cmake --build --preset "$preset"
done
