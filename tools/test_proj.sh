#!/usr/bin/env bash
# Compares every system with PROJ (proj-bin) over a grid of points of France, both ways, with explicit pipelines and no
# grid; fails above 0.1 mm.  tools/test_proj.sh
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install.sh proj
tools/build.sh linux >/dev/null
python3 tools/test_proj.py build/linux/bin/kestra
