#!/usr/bin/env bash
# Kills a program that writes to a database, again and again, and checks each time that what it had committed is there:
#   tools/kill_loop.sh [linux|windows] [ROUNDS]
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-linux}
rounds=${2:-200}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
if [ "$preset" = windows ]; then
    program=(tools/wine.sh build/windows/bin/kestra_kill_writer.exe)
    file=Z:${folder//\//\\}\\essai.mdb
    least=600
else
    program=("build/$preset/bin/kestra_kill_writer")
    file=$folder/essai.mdb
    least=10
fi

lost=0
hit=0
for ((round = 1; round <= rounds; round++)); do
    "${program[@]}" write "$file" >"$folder/committed" 2>"$folder/errors" &
    writer=$!
    delay=$((least + RANDOM % 300))
    sleep "$(printf '%d.%03d' $((delay / 1000)) $((delay % 1000)))"
    kill -9 "$writer" 2>/dev/null || { echo "round $round: the writer ended by itself"; cat "$folder/errors"; lost=$((lost + 1)); }
    wait "$writer" 2>/dev/null || true
    committed=$(tr -d '\r' <"$folder/committed" | { grep -E '^[0-9]+$' || echo 0; } | tail -n 1)
    if [ "$committed" -gt "${before:-0}" ]; then hit=$((hit + 1)); fi
    found=$("${program[@]}" check "$file" "$committed" 2>"$folder/errors" | tr -d '\r') || {
        echo "round $round: $committed committed, ${found:-none} found, exit $?"
        lost=$((lost + 1))
    }
    before=${found:-0}
    # A fresh file now and then, so that making one is hit as well.
    if ((round % 20 == 0)); then rm -f "$folder"/essai.mdb*; before=0; fi
done
echo "$preset: $rounds kills, $hit of them after new commits, $lost with losses"
[ "$lost" -eq 0 ] && [ "$hit" -gt 0 ]
