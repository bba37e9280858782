#!/usr/bin/env bash
# Builds both sides, makes the sample affair's database and runs the window host on samples/ under Wine, on a display of
# its own. Leaves in out/: two HTML listings, the variables' and a table's, pictures of them as Chromium renders them,
# pictures of the window with both, and the host's report, which it also prints.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install.sh demo
tools/build.sh linux windows
rm -rf out && mkdir -p out
tools/sample_database.sh

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
take_picture() {  # name
    for ((i = 0; i < 1200; i++)); do
        [ -e "out/$1.prete" ] && break
        kill -0 "$host" 2>/dev/null || return 0
        sleep 0.1
    done
    [ -e "out/$1.prete" ] && import -window root "out/$1.png"
    rm -f "out/$1.prete"
}
take_picture window
take_picture table
wait "$host" || true

# The pages declare no character set, as a page from the disk of a French Windows has it; what Chromium shows here is a
# copy that names Windows-1252.
profile=$(mktemp -d)
page_picture() {  # page picture
    { printf '<meta charset="windows-1252">'; cat "out/$1"; } >"$profile/$1"
    chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run --disable-background-networking \
        --disable-component-update --disable-sync --user-data-dir="$profile/chromium" --window-size=900,620 \
        --screenshot="$PWD/out/$2" "file://$profile/$1" >/dev/null 2>&1
}
page_picture listing.htm listing.png
page_picture table.htm table_page.png
rm -rf "$profile"

cat out/rapport.txt
ls -l out
[ "$(grep -c '^ok ' out/rapport.txt)" -eq 14 ]
