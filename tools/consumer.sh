#!/usr/bin/env bash
# Installs a build into a folder of its own and builds and runs tests/consumer against it, as a user's project would:
#   tools/consumer.sh linux|windows
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
prefix=$PWD/build/consumer-$preset
rm -rf "$prefix"
cmake --install "build/$preset" --prefix "$prefix/installed" >/dev/null
if [ "$preset" = windows ]; then toolchain=(--toolchain "$PWD/cmake/mingw-w64-x86_64.cmake"); else toolchain=(-DCMAKE_C_COMPILER=gcc-12 -DCMAKE_CXX_COMPILER=g++-12); fi
cmake -G Ninja -S tests/consumer -B "$prefix/build" "${toolchain[@]}" -DCMAKE_BUILD_TYPE=Release \
    -DKestra_DIR="$prefix/installed/lib/cmake/Kestra" >/dev/null
cmake --build "$prefix/build"
if [ "$preset" = windows ]; then
    cp "$prefix"/installed/bin/*.dll "$prefix/build/"
    tools/wine.sh "$prefix/build/consumer.exe"
else
    "$prefix/build/consumer"
fi
