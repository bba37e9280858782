#!/usr/bin/env bash
# Installs what is missing of what a task needs:  tools/install.sh build|test|demo|bench|proj|docs|lint ...
# Needs root (or sudo) only when something is missing.
set -euo pipefail

# Configuring wants the libraries of the tests; the peers of the benchmarks are wanted by the benchmarks only.
build="git make cmake ninja-build libgtest-dev googletest g++-12 g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 libsqlite3-dev"
# What tools/sqlite_windows.sh needs.
build="$build gcc dpkg-dev tcl xz-utils"
peers="libfmt-dev libabsl-dev libjudy-dev libproj-dev proj-bin libssl-dev curl"
declare -A packages=(
    [build]="$build"
    [test]="$build wine wine64 clang-14 clang-format-14 libclang-rt-14-dev python3-aiosmtpd"
    [fuzz]="$build clang-14 libclang-rt-14-dev"
    [demo]="$build wine wine64 xvfb x11-utils xdotool imagemagick chromium fonts-liberation fonts-wine"
    [bench]="$build wine wine64 $peers"
    [proj]="$build proj-bin python3"
    [docs]="doxygen graphviz"
    [lint]="$build python3 clang-14 clang-format-14 clang-tidy-14"
)

wanted=""
for task in "$@"; do wanted="$wanted ${packages[$task]}"; done

missing=""
for package in $wanted; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing="$missing $package"
done
[ -z "$missing" ] && exit 0

as_root=""
[ "$(id -u)" -eq 0 ] || as_root=sudo
echo "Installing:$missing" >&2
export DEBIAN_FRONTEND=noninteractive
$as_root apt-get update -qq
$as_root apt-get install -y -qq --no-install-recommends $missing >/dev/null
