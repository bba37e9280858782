#!/usr/bin/env bash
# Builds both sides, makes the sample affair's database and runs the window host on samples/ under Wine, on a display of
# its own. Leaves in out/: two HTML listings, the variables' and a table's, pictures of them as Chromium renders them,
# pictures of the window with both, a picture of each step in the table's grid, and the host's reports, which it prints.
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
start_host() {  # part of the demo
    timeout 300 tools/wine.sh explorer /desktop=kestra,860x530 "$(windows_path "$PWD/build/windows/bin/kestra_demo.exe")" \
        "$1" 'S:\saint-alvere.cht' "$(windows_path "$PWD/out/")" &
    host=$!
    running+=("$host")
}
start_host --demo

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

# The grid, with real keys and a real mouse: the host names a place ("x y"), the first word list is given to xdotool
# there, then the picture is taken, then the second one is given.
step() {  # name words-before words-after
    local x y
    until read -r x y 2>/dev/null <"out/$1.prete"; do
        kill -0 "$host" 2>/dev/null || return 0
        sleep 0.1
    done
    # shellcheck disable=SC2086 # the words are meant to be several
    xdotool mousemove "$x" "$y" sleep 0.3 $2 sleep 1
    import -window root "out/$1.png"
    # shellcheck disable=SC2086
    [ -z "$3" ] || xdotool $3 sleep 0.5
    rm -f "out/$1.prete"
}
start_host --demo-grid
step cellule 'click 1 sleep 0.3 type --args 1 BORNE12' 'key Tab'
step ligne 'key Down' ''
step case 'click 1' 'key Down'
step largeur 'mousedown 1 mousemove_relative 40 0 sleep 0.2 mousemove_relative 20 0 sleep 0.2 mouseup 1' ''
step menu 'click 3' 'key Down key Down key Down key Down key Return'
step ajout 'click 1 sleep 0.3 type --args 1 9001' 'key Tab type --args 1 AJOUT key Up'
step suppression 'click 1 sleep 0.3 key Delete' 'key Return'
wait "$host" || true
start_host --demo-again
step retour '' ''
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
page_picture impression.htm impression.png
rm -rf "$profile"

cat out/rapport.txt out/rapport_grille.txt
ls -l out
[ "$(grep -c '^ok ' out/rapport.txt)" -eq 14 ]
[ "$(grep -c '^ok ' out/rapport_grille.txt)" -eq 10 ]
