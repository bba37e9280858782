#!/usr/bin/env bash
# Doxygen reference of the public headers, in build/docs/html; any warning is an error.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install.sh docs
mkdir -p build/docs
doxygen docs/Doxyfile
echo "build/docs/html/index.html"
