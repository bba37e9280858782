#!/usr/bin/env bash
# Builds both sides and runs the window host on samples/ under Wine, on a display of its own. Leaves in out/: the HTML
# listing, a picture of it as Chromium renders it, a picture of the window, and the host's report, which it also prints.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install.sh demo
tools/build.sh linux windows
rm -rf out && mkdir -p out

windows_path() { local path=Z:$1; echo "${path//\//\\}"; }
running=()
trap 'kill "${running[@]}" 2>/dev/null || true' EXIT

exec {display_pipe}<> <(:)
Xvfb -displayfd 3 -screen 0 860x530x24 -nolisten tcp >/dev/null 2>&1 3>&"$display_pipe" &
running+=($!)
read -r -t 20 -u "$display_pipe" number
export DISPLAY=:$number KESTRA_WINE_DRIVER=x11 KESTRA_LOCAL=S:\\ KESTRA_NETWORK=S:\\
tools/wine.sh cmd /c exit
ln -sfn "$PWD/samples" build/wine-x11/dosdevices/s:

# A desktop of Wine's own gives the window its frame; it ends with the host.
tools/wine.sh explorer /desktop=kestra,860x530 "$(windows_path "$PWD/build/windows/bin/kestra_demo.exe")" \
    --demo 'S:\saint-alvere.cht' "$(windows_path "$PWD/out/")" &
host=$!
running+=("$host")

# The host shows its window and waits until this file is gone.
for ((i = 0; i < 1200; i++)); do
    [ -e out/fenetre.prete ] && break
    kill -0 "$host" 2>/dev/null || break
    sleep 0.1
done
[ -e out/fenetre.prete ] && import -window root out/window.png
rm -f out/fenetre.prete
wait "$host" || true

# The page declares no character set, as a page from the disk of a French Windows has it; what Chromium shows here is a
# copy that names Windows-1252.
profile=$(mktemp -d)
{ printf '<meta charset="windows-1252">'; cat out/listing.htm; } >"$profile/listing.htm"
chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run --disable-background-networking \
    --disable-component-update --disable-sync --user-data-dir="$profile/chromium" --window-size=900,620 \
    --screenshot="$PWD/out/listing.png" "file://$profile/listing.htm" >/dev/null 2>&1
rm -rf "$profile"

cat out/rapport.txt
ls -l out
[ "$(grep -c '^ok ' out/rapport.txt)" -eq 10 ]
