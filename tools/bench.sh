#!/usr/bin/env bash
# Builds with optimisation and prints one line a workload: name, ours, peer, ratio, the ratio wanted.
# tools/bench.sh [PROGRAM ...]: only those, by their names in bench/.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install.sh bench
KESTRA_BENCHMARKS=ON tools/build.sh linux windows >/dev/null
wanted() { [ $# -eq 1 ] || [[ " ${*:2} " == *" $1 "* ]]; }
for program in build/linux/bin/bench_*; do
    name=$(basename "$program")
    if wanted "${name#bench_}" "$@"; then "$program"; fi
done
for program in build/windows/bin/bench_*.exe; do
    name=$(basename "$program" .exe)
    if wanted "${name#bench_}" "$@"; then tools/wine.sh "$program"; fi
done
