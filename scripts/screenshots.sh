#!/usr/bin/env bash
# Takes pictures of the library's two boxes, the reboot prompt and the
# Repair_RunDll help box, as Wine draws them with its X11 driver on a virtual
# screen, and saves them as docs/reboot-prompt.png and docs/help-box.png.
# Not part of the tests. Needs a win64 or win32 build and Xvfb, xwd, ImageMagick.
#   scripts/screenshots.sh [BUILD_DIR]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
top=$(cd "$here/.." && pwd)
. "$here/wine-env.sh"
build=${1:-$top/build/$TOVREL_WINE_ARCH}
bin="$build/bin"
[ -f "$bin/tovrel.dll" ] && [ -f "$bin/entry_host.exe" ] || { echo "screenshots: build $build first" >&2; exit 1; }

"$here/wine-prefix.sh" winxp
root=$(tovrel_wine_root)
mkdir -p "$root/run"
run=$(mktemp -d "$root/run/shots.XXXXXX")
cp -a "$root/templates/$TOVREL_WINE_ARCH-winxp/." "$run/"
export HOME="$run/home" WINEPREFIX="$run/prefix"

display=:$((90 + RANDOM % 100))
Xvfb "$display" -screen 0 800x600x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
cleanup() {
    wineserver -k >/dev/null 2>&1 || true
    kill "$xvfb" 2>/dev/null || true
    rm -rf "$run"
}
trap cleanup EXIT
export DISPLAY=$display
sleep 1
# The templates use the null driver; these pictures need the real one.
"$TOVREL_WINE" reg delete 'HKCU\Software\Wine\Drivers' /v Graphics /f >/dev/null 2>&1 || true
wineserver -w

winpath() { echo "Z:${1//\//\\}"; }

# Inside a Wine virtual desktop the boxes get Wine's own title bars, so the
# caption shows without a window manager.
shoot() {
    local out=$1 pid; shift
    "$TOVREL_WINE" explorer /desktop=shots,640x400 "$@" >/dev/null 2>&1 &
    pid=$!
    sleep 8
    xwd -root -display "$display" -silent | convert xwd:- -trim +repage "$out"
    wineserver -k >/dev/null 2>&1 || true
    wait "$pid" 2>/dev/null || true
    echo "screenshots: $out"
}

mkdir -p "$top/docs"
shoot "$top/docs/reboot-prompt.png" "$(winpath "$bin/entry_host.exe")" RebootPrompt
shoot "$top/docs/help-box.png" rundll32.exe "$(winpath "$bin/tovrel.dll"),Repair_RunDll" /?
