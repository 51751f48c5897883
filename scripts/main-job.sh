#!/usr/bin/env bash
# The main job: installs the demonstration printer INF into a private Wine
# prefix through tovrel.dll's Repair, then shows what the install left behind.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh >/dev/null
. scripts/wine-env.sh
arch=$TOVREL_WINE_ARCH

echo "== building tovrel.dll ($arch)"
cmake --preset "$arch" >/dev/null
cmake --build --preset "$arch" --target tovrel repair_cli >/dev/null

scripts/wine-prefix.sh winxp
root=$(tovrel_wine_root)
job="$root/main-job"
[ -d "$job/prefix" ] && WINEPREFIX="$job/prefix" wineserver -k >/dev/null 2>&1 || true
rm -rf "$job"
cp -a "$root/templates/$arch-winxp" "$job"
export HOME="$job/home" WINEPREFIX="$job/prefix"
trap 'wineserver -k >/dev/null 2>&1 || true' EXIT

mkdir -p "$WINEPREFIX/drive_c/demo"
cp -r tests/fixtures/demo/. "$WINEPREFIX/drive_c/demo/"
bin="build/$arch/bin"

echo "== Repair(C:\\demo\\plenarc.inf, Halvern, Plenarc Demo 600, Plenarc Demo)"
WINEDEBUG=-all,+debugstr "$TOVREL_WINE" "$bin/repair_cli.exe" 'C:\demo\plenarc.inf' Halvern 'Plenarc Demo 600' 'Plenarc Demo' 2>&1 \
    | sed -n 's/.*OutputDebugStringA "\(.*\)"$/debug output: \1/p; /^Repair/p; /repair_cli/p'

echo "== uninstall record"
"$TOVREL_WINE" reg query 'HKLM\SOFTWARE\Halvern\Plenarc\6.0\Uninstall Data' /s 2>/dev/null | tr -d '\r' || echo "(none)"
echo "== printers in the spooler"
"$TOVREL_WINE" reg query 'HKLM\System\CurrentControlSet\Control\Print\Printers' 2>/dev/null | tr -d '\r' | grep -v '^$' || echo "(none)"
echo "== prefix kept in $WINEPREFIX"
