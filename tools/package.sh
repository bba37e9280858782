#!/usr/bin/env bash
# The installable archives of both sides, in dist/.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/build.sh linux windows
tools/sample_database.sh
for preset in linux windows; do (cd "build/$preset" && cpack >/dev/null); done
ls -l dist
