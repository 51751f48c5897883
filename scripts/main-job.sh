#!/usr/bin/env bash
# The main job: installs the demonstration printer INF into a private Wine
# prefix through RunDll32 and tovrel.dll's Repair_RunDll, repairs it once
# more through Repair, and shows what the install left behind as tovrel-report
# sees it, after the install and after the repair. As a deployment script
# should, it has tovrel-report keep a baseline right after each of the two.
# It ends with what tovrel-uninstall would take back (--what-if), so that
# the prefix it keeps stays installed for scripts/report.sh and
# scripts/uninstall.sh.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh >/dev/null
. scripts/wine-env.sh
arch=$TOVREL_WINE_ARCH

echo "== building tovrel.dll and the fixture files ($arch)"
cmake --preset "$arch" >/dev/null
cmake --build --preset "$arch" --target tovrel repair_cli selfreg_a versioned_2_0_0_0 tovrel_monitor \
    fixture_service tovrel-report tovrel-uninstall >/dev/null

scripts/wine-prefix.sh winxp
root=$(tovrel_wine_root)
job="$root/main-job-$arch"
[ -d "$job/prefix" ] && WINEPREFIX="$job/prefix" wineserver -k >/dev/null 2>&1 || true
rm -rf "$job"
cp -a "$root/templates/$arch-winxp" "$job"
export HOME="$job/home" WINEPREFIX="$job/prefix"
trap 'wineserver -k >/dev/null 2>&1 || true' EXIT
# Named apart from the commands they wrap: where TOVREL_WINE is plain "wine",
# a function called wine would call itself without end.
run_wine() { "$TOVREL_WINE" "$@" 2>/dev/null | tr -d '\r'; }

bin="build/$arch/bin"
c="$WINEPREFIX/drive_c"
if [ "$arch" = win64 ]; then env_dir=x64; else env_dir=w32x86; fi
drivers="$c/windows/system32/spool/drivers/$env_dir"
mkdir -p "$c/demo" "$drivers" "$job/cab"
cp tests/fixtures/demo/plenarc.inf "$bin/tovrel.dll" "$bin/repair_cli.exe" "$c/demo/"

# The cabinet that the INF takes from the driver directory: the driver's
# files (text, so that the spooler loads none of them) and the fixture
# libraries and service program of the build under the INF's names.
cd "$job/cab"
printf '[Plenarc Demo 600]\r\nInstallINF=C:\\demo\\plenarc.inf\r\n' >PLENARC.PPD
for f in PLENARC.DRV PLENARCU.CFG PLENARC.HLP; do printf 'Plenarc demo %s\r\n' "$f" >"$f"; done
cp "$OLDPWD/$bin/selfreg_a.dll" plenreg.dll
cp "$OLDPWD/$bin/versioned_2_0_0_0.dll" plenver.dll
cp "$OLDPWD/$bin/tovrel_monitor.dll" tovrel_monitor.dll
cp "$OLDPWD/$bin/fixture_service.exe" plensvc.exe
run_wine cabarc -m mszip N PLENARC.CAB ./* >/dev/null
mv PLENARC.CAB "$drivers/"
cd "$OLDPWD"
echo "== PLENARC.CAB in the driver directory: $(ls "$job/cab" | tr '\n' ' ')"

echo "== rundll32.exe C:\\demo\\tovrel.dll,Repair_RunDll /INF C:\\demo\\plenarc.inf /MFG Halvern /DRV \"Plenarc Demo 600\" /NAME \"Plenarc Demo\""
WINEDEBUG=-all,+debugstr "$TOVREL_WINE" rundll32.exe 'C:\demo\tovrel.dll,Repair_RunDll' /INF 'C:\demo\plenarc.inf' \
    /MFG Halvern /DRV "Plenarc Demo 600" /NAME "Plenarc Demo" >"$job/rundll.log" 2>&1 || true
debug=$(sed -n 's/.*OutputDebugStringA "\(.*\)"$/debug output: \1/p' "$job/rundll.log")
echo "${debug:-debug output: none (Open accepted the INF; no stage reports)}"

# What the install left, checked item by item against its record by
# tovrel-report, which shares no code with the install; its exit code says
# whether every item held.
show_report() {
    local code=0
    run_wine "$bin/tovrel-report.exe" "$@" "Plenarc Demo 600" || code=$?
    echo "exit $code"
}

echo "== the baseline after the install"
show_report --baseline
echo "== the report after the install"
show_report
echo "== a second Repair over it (repair_cli)"
(cd "$c/demo" && "$TOVREL_WINE" repair_cli.exe 'C:\demo\plenarc.inf' Halvern 'Plenarc Demo 600' 'Plenarc Demo' 2>/dev/null | tr -d '\r')
# Against the install's baseline: a repair of an intact install changes nothing.
echo "== the report after the repair"
show_report
echo "== the baseline after the repair"
show_report --baseline
echo "== the report after the repair, as JSON"
show_report --json
echo "== what the uninstall would take back (--what-if)"
code=0
run_wine "$bin/tovrel-uninstall.exe" --what-if "Plenarc Demo 600" || code=$?
echo "exit $code"
echo "== prefix kept in $WINEPREFIX"
