#!/usr/bin/env bash
# Compares the names that the two shared libraries export, on both builds, with the lists in exports/:
#   tools/exports.sh            says what differs and fails
#   tools/exports.sh --update   writes the lists anew
# Plain names stand as they are, C++ names demangled. What the compiler's own library leaves in a Linux library (weak
# and unique std:: instances) is no part of the interface and left out.
set -euo pipefail
cd "$(dirname "$0")/.."

windows_names() { x86_64-w64-mingw32-objdump -p "$1" | sed -n '/\[Ordinal\/Name Pointer\]/,/^$/s/^[[:space:]]*\[ *[0-9]*\] //p' | c++filt; }
linux_names() {
    nm -D --defined-only "$1" | awk '$2 !~ /^[wVWu]$/ || $3 !~ /^_Z(N|NK|T[IVST]|St|TIN|TSN)?St|^_ZNK?St|^_ZNK?9__gnu_cxx|^_ZT[IS]/ {print $3}' |
        c++filt
}

status=0
check() {  # list names...
    local list=$1 actual
    actual=$(sort -u)
    if [ "${update:-}" = 1 ]; then
        mkdir -p exports
        printf '%s\n' "$actual" >"$list"
    elif ! diff -u "$list" <(printf '%s\n' "$actual"); then
        echo "$list: the exported names differ (tools/exports.sh --update writes the list anew)"
        status=1
    fi
}

if [ "${1:-}" = --update ]; then update=1; fi
windows_names build/windows/bin/Dorsel64.dll | check exports/Dorsel64.windows.txt
windows_names build/windows/bin/Kestra2007x64.dll | check exports/Kestra2007x64.windows.txt
linux_names build/linux/bin/libdorsel64.so | check exports/libdorsel64.linux.txt
linux_names build/linux/bin/libkestra2007x64.so | check exports/libkestra2007x64.linux.txt
exit $status
