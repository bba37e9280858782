#!/usr/bin/env bash
# Makes samples/ACCESS/saint-alvere.mdb, the sample affair's database, with the program of the Linux build.
set -euo pipefail
cd "$(dirname "$0")/.."
mkdir -p samples/ACCESS
build/linux/bin/kestra_sample_database samples/ACCESS/saint-alvere.mdb
