#!/bin/sh
# wine-run: runs a Windows program under 32-bit Wine; the emulator of cross-compiled tests. The Wine prefix is made on
# first use. C.UTF-8 makes the machine's code page 1252.
cache=${TELLAXIS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/tellaxis}
export WINEPREFIX="${TELLAXIS_WINEPREFIX:-$cache/wine32}"
export WINEARCH=win32 WINEDEBUG="${WINEDEBUG:--all}" LC_ALL="${TELLAXIS_WINE_LOCALE:-C.UTF-8}"
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree,mshtml=;winemenubuilder.exe=d}"
mkdir -p "$(dirname "$WINEPREFIX")"
if [ ! -f "$WINEPREFIX/.ready" ]; then
  (
    flock 9
    [ -f "$WINEPREFIX/.ready" ] || {
      wineboot -i >/dev/null 2>&1 </dev/null
      wineserver -w
      [ -f "$WINEPREFIX/system.reg" ] && touch "$WINEPREFIX/.ready"
    }
  ) 9>"$WINEPREFIX.lock"
fi
# Kept a while for the next program: starting it anew takes a second and more.
wineserver -p20 2>/dev/null
exec wine "$@"
