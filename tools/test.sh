#!/usr/bin/env bash
# Builds and runs everything: the native tests, the native tests under sanitizers, the Windows tests under Wine, and a
# short run of each fuzz target over its corpus. Ends with "N passed, N failed" summed over all of them.
set -uo pipefail
cd "$(dirname "$0")/.."
tools/install.sh test || exit 1
tools/build.sh linux linux-asan windows linux-fuzz || exit 1

passed=0
failed=0
results=$(mktemp -d)
# Relative: a Windows GoogleTest does not take "/tmp" for a full path.
report=build/report.xml
trap 'rm -rf "$results"' EXIT

# Runs one GoogleTest program and adds its counts; one that dies or runs no test counts as a failure.
run_tests() {  # name command...
    local name=$1 output="$results/output.txt" status total bad
    shift
    rm -f "$report"
    echo "== $name"
    GTEST_OUTPUT="xml:$report" "$@" >"$output" 2>&1
    status=$?
    total=$(sed -n 's/^<testsuites tests="\([0-9]*\)".*/\1/p' "$report" 2>/dev/null)
    bad=$(sed -n 's/^<testsuites tests="[0-9]*" failures="\([0-9]*\)".*/\1/p' "$report" 2>/dev/null)
    if [ "${total:-0}" -eq 0 ]; then total=1 bad=1; elif [ "$status" -ne 0 ] && [ "${bad:-0}" -eq 0 ]; then bad=1; fi
    passed=$((passed + total - bad))
    failed=$((failed + bad))
    echo "   $((total - bad)) passed, $bad failed"
    if [ "$bad" -ne 0 ]; then tail -n 200 "$output"; fi
}

run_check() {  # name command...
    local name=$1
    shift
    echo "== $name"
    if "$@" >"$results/output.txt" 2>&1; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        tail -n 60 "$results/output.txt"
    fi
}

export UBSAN_OPTIONS=print_stacktrace=1
for preset in linux linux-asan; do
    run_tests "$preset dorsel_tests" "build/$preset/bin/dorsel_tests"
    run_tests "$preset kestra_tests" tools/with_mail_server.sh "build/$preset/bin/kestra_tests"
done
for program in dorsel_tests kestra_tests kestra_ui_tests; do
    run_tests "windows $program" tools/with_mail_server.sh tools/wine.sh "build/windows/bin/$program.exe"
done

for corpus in fuzz/corpus/*/; do
    target=$(basename "$corpus")
    run_check "fuzz $target" "build/linux-fuzz/bin/fuzz_$target" -max_total_time="${FUZZ_SECONDS:-3}" -timeout=20 \
        -rss_limit_mb=4096 -verbosity=0 -artifact_prefix="$results/" "$(mktemp -d -p "$results")" "$corpus"
    run_check "replay $target (linux-asan)" "build/linux-asan/bin/replay_$target" "$corpus"
    run_check "replay $target (windows)" tools/wine.sh "build/windows/bin/replay_$target.exe" "$corpus"
done
run_check "nothing committed is lost, linux" tools/kill_loop.sh linux 8
run_check "nothing committed is lost, windows" tools/kill_loop.sh windows 4
run_check "exported names" tools/exports.sh
run_check "arrows between the rooms" tools/arrows.sh
run_check "format" tools/format.sh --check
run_check "installed package, linux" tools/consumer.sh linux
run_check "installed package, windows" tools/consumer.sh windows

echo
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
