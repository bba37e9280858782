#!/usr/bin/env bash
# Runs a Windows program under Wine in a prefix of the build folder:  tools/wine.sh PROGRAM [ARGUMENT ...]
# KESTRA_WINE_DRIVER is the display driver: "null" (the default, no display needed) or "x11" (needs DISPLAY).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
driver=${KESTRA_WINE_DRIVER:-null}
export WINEPREFIX="$root/build/wine-$driver" WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="
[ "$driver" = null ] && unset DISPLAY

wine=/usr/lib/wine/wine64
[ -x "$wine" ] || wine=wine
if [ ! -e "$WINEPREFIX/ready" ]; then
    mkdir -p "$WINEPREFIX"
    "$wine" wineboot -i >/dev/null 2>&1
    "$wine" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /t REG_SZ /d "$driver" /f >/dev/null 2>&1
    wineserver -w
    touch "$WINEPREFIX/ready"
fi
# Debian's Wine looks for its own fonts (captions, arrows and check marks are characters of Marlett) in the prefix only.
fonts="$WINEPREFIX/drive_c/windows/Fonts"
if [ -e /usr/share/wine/fonts/marlett.ttf ] && [ ! -e "$fonts/marlett.ttf" ]; then
    ln -sf /usr/share/wine/fonts/*.ttf "$fonts/"
fi
exec "$wine" "$@"
