#!/usr/bin/env bash
# Holds the includes of every room against the arrows of the house (docs/architecture.md), and keeps the operating system
# in its room: no system switch or header outside platform/ but in controls/ and dialogs/, which exist on Windows only.
set -euo pipefail
cd "$(dirname "$0")/.."

# A room may include itself, and the rooms named behind it.
declare -A may=(
    [platform]=""
    [dorsel]="platform"
    [kestra/frame]="platform dorsel"
    [kestra/containers]="platform dorsel kestra/frame"
    [kestra/variables]="platform dorsel kestra/frame kestra/containers"
    [kestra/text]="platform dorsel kestra/frame kestra/containers"
    [kestra/net]="platform dorsel kestra/frame kestra/containers kestra/text"
    [kestra/project]="platform dorsel kestra/frame kestra/containers kestra/variables kestra/text kestra/net"
    [kestra/database]="platform dorsel kestra/frame kestra/containers kestra/variables kestra/text kestra/net kestra/project"
)
below="platform dorsel kestra/frame kestra/containers kestra/variables kestra/text kestra/net kestra/project kestra/database"
may[kestra/controls]="$below kestra/dialogs"
may[kestra/dialogs]="$below kestra/controls"

status=0
complain() { echo "$1"; status=1; }

for room in "${!may[@]}"; do
    [ -d "$room" ] || continue
    files=$(git ls-files --cached --others --exclude-standard "$room/*.h" "$room/*.cpp")
    [ -n "$files" ] || continue
    while IFS=: read -r file line include; do
        target=$(sed -E 's/.*[<"]((platform|dorsel)|kestra\/[a-z]+)\/.*/\1/' <<<"$include")
        case " $room ${may[$room]} " in
            *" $target "*) ;;
            *) complain "$file:$line: $room must not include $target" ;;
        esac
    done < <(grep -nHE '#include [<"](platform|dorsel|kestra/[a-z]+)/' $files || true)
    case $room in platform | kestra/controls | kestra/dialogs) continue ;; esac
    leaks=$(grep -nHE '#[[:space:]]*if(def|ndef)?.*(_WIN32|__linux__|WIN64)|#[[:space:]]*include[[:space:]]*<(windows|winsock2|commctrl|unistd|sys/[a-z]+|dirent)\.h>' $files || true)
    [ -z "$leaks" ] || complain "$leaks"
done

# The database engines hide theirs: SQLite is known to the embedded engine only, the engines' own headers to platform/ado.
sqlite=$(git grep -nE '#include <sqlite3\.h>' -- platform dorsel kestra apps | grep -v '^platform/ado/embedded/' || true)
[ -z "$sqlite" ] || complain "$sqlite"
engines=$(git grep -nE '#include <platform/ado/(embedded|com)/' -- platform dorsel kestra apps | grep -v '^platform/ado/' || true)
[ -z "$engines" ] || complain "$engines"
exit $status
