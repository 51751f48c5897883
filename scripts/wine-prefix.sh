#!/usr/bin/env bash
# Makes the template prefixes that every test copies: one per Windows version.
#   wine-prefix.sh FLAVOR...      (winxp, win98, nt40)
# A template is made once and reused while it is complete; making one takes
# about 13 s, copying it about 2 s.
set -euo pipefail
. "$(dirname "$0")/wine-env.sh"
root=$(tovrel_wine_root)
mkdir -p "$root/templates"

make_template() {
    local flavor=$1 dir="$root/templates/$TOVREL_WINE_ARCH-$1"
    [ -f "$dir/.complete" ] && return 0
    (
        # Two tests may ask for the same template at once: one makes it.
        exec 9>"$root/templates/$TOVREL_WINE_ARCH-$flavor.lock"
        flock 9
        [ -f "$dir/.complete" ] && exit 0
        rm -rf "$dir"
        mkdir -p "$dir/home"
        export HOME="$dir/home" WINEPREFIX="$dir/prefix"
        "$TOVREL_WINE" wineboot -i >/dev/null 2>&1
        "$TOVREL_WINE" reg add 'HKCU\Software\Wine' /v Version /d "$flavor" /f >/dev/null 2>&1
        # The null driver: windows and message boxes work without a display.
        "$TOVREL_WINE" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1
        wineserver -w || true
        wineserver -k || true
        # Shell folders are links into the HOME the template was made with;
        # a copied prefix must not write through them into the template.
        find "$WINEPREFIX/drive_c/users" -type l | while read -r link; do
            rm -f "$link"
            mkdir -p "$link"
        done
        touch "$dir/.complete"
    )
}

[ $# -gt 0 ] || set -- winxp
pids=()
for flavor in "$@"; do
    make_template "$flavor" &
    pids+=($!)
done
status=0
for pid in "${pids[@]}"; do wait "$pid" || status=1; done
exit $status
