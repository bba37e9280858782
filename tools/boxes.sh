#!/usr/bin/env bash
# Pictures of the dialogs under Wine, on a display of its own:  tools/boxes.sh [KIND ...]
# Leaves out/boxes/KIND-DPI.png for 96, 144 and 192 dots per inch; wants both build/windows/bin/kestra_boxes.exe and Xvfb.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install.sh demo
kinds=("$@")
[ $# -gt 0 ] || kinds=(word lines countdown held buttons scrolled text columns)
mkdir -p out/boxes

running=()
trap 'kill "${running[@]}" 2>/dev/null || true' EXIT
exec {display_pipe}<> <(:)
Xvfb -displayfd 3 -screen 0 1920x1080x24 -nolisten tcp >/dev/null 2>&1 3>&"$display_pipe" &
running+=($!)
read -r -t 20 -u "$display_pipe" number
export DISPLAY=:$number KESTRA_WINE_DRIVER=x11

set_dpi() { tools/wine.sh reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$1" /f >/dev/null; }

for dpi in 96 144 192; do
    set_dpi "$dpi"
    WINEPREFIX=$PWD/build/wine-x11 wineserver -k || true
    for kind in "${kinds[@]}"; do
        # A desktop of Wine's own gives the window its frame.
        tools/wine.sh explorer "/desktop=boxes,1920x1080" build/windows/bin/kestra_boxes.exe "$kind" >/dev/null 2>&1 &
        host=$!
        sleep "${BOX_SECONDS:-6}"
        import -window root "out/boxes/$kind-$dpi.png"
        kill "$host" 2>/dev/null || true
        wait "$host" 2>/dev/null || true
        WINEPREFIX=$PWD/build/wine-x11 wineserver -k || true
    done
done
set_dpi 96
