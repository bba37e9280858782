#!/usr/bin/env bash
# Each fuzz target for FUZZ_SECONDS (60 by default):  tools/fuzz.sh [TARGET ...]
# What it finds of interest goes to build/fuzz/TARGET; a crash is left there as crash-*.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install.sh fuzz
tools/build.sh linux-fuzz
[ $# -gt 0 ] || set -- $(ls fuzz/corpus)
for target in "$@"; do
    mkdir -p "build/fuzz/$target"
    echo "== $target"
    "build/linux-fuzz/bin/fuzz_$target" -max_total_time="${FUZZ_SECONDS:-60}" -timeout=20 -rss_limit_mb=4096 \
        -print_final_stats=1 -artifact_prefix="build/fuzz/$target/" "build/fuzz/$target" "fuzz/corpus/$target" 2>&1 |
        grep -E 'stat::number_of_executed_units|stat::average_exec|SUMMARY|ERROR|Test unit written' || true
done
