#!/usr/bin/env bash
# clang-format and clang-tidy over every portable source of the house (the fuzz build's compile commands; what speaks
# Win32 is compiled with warnings as errors, not linted):  tools/lint.sh [FILE ...]
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install.sh lint
tools/format.sh --check
tools/build.sh linux-fuzz >/dev/null
if [ $# -eq 0 ]; then
    set -- $(python3 -c '
import json, os
root = os.getcwd() + "/"
for entry in json.load(open("build/linux-fuzz/compile_commands.json")):
    path = os.path.relpath(entry["file"], root)
    if path.split("/")[0] in ("platform", "dorsel", "kestra", "apps"): print(path)')
fi
# One file a process: the analyzer of va_list arguments trips over what it remembers of the file before.
printf '%s\n' "$@" | xargs -P "$(nproc)" -n 1 clang-tidy-14 -p build/linux-fuzz --quiet
