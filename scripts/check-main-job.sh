#!/usr/bin/env bash
# Runs the main job on every Wine architecture this host can run (the one
# scripts/wine-env.sh picks and, where that is win32, win64 as well) and
# fails unless each run exits 0 within its time, tovrel-report keeps a
# baseline after the install and after the repair, and its report shows the
# printer, the driver, the files, the service and the uninstall tree, and
# finds every item of the record held against the baseline; and the
# uninstall's plan that ends it would take back every item and change nothing.
#   check-main-job.sh [SECONDS]    time allowed for one run (default 900)
set -uo pipefail
cd "$(dirname "$0")/.."
limit=${1:-900}
. scripts/wine-env.sh
arches=("$TOVREL_WINE_ARCH")
[ "$TOVREL_WINE_ARCH" = win32 ] && arches+=(win64)

# The lines of one "== TITLE" part of the report.
report_part() {
    awk -v title="$2" 'index($0, "== ") == 1 { inside = index($0, "== " title) == 1; next } inside' "$1"
}

# Fails the check with a message unless the part holds a line matching PATTERN.
expect() {
    local log=$1 part=$2 pattern=$3
    # grep reads to the end: one that quit at its match would leave awk
    # writing into a closed pipe, which pipefail counts as a failure.
    if ! report_part "$log" "$part" | grep -E -- "$pattern" >/dev/null; then
        echo "check-main-job: '$part' lacks /$pattern/" >&2
        return 1
    fi
}

# The report after the install and after the repair: every kind of item
# there and held, nothing drifted or waiting for a restart.
check_report() {
    local log=$1 arch=$2 env_name env_dir ok=0 part
    if [ "$arch" = win64 ]; then env_name="Windows x64" env_dir=x64; else env_name="Windows NT x86" env_dir=w32x86; fi
    expect "$log" "a second Repair" "^Repair ran through to its end" || ok=1
    for part in "the baseline after the install" "the baseline after the repair"; do
        expect "$log" "$part" "^baseline +Plenarc Demo 600: 20 files, 1 service, 1 printer kept under HKLM" || ok=1
        expect "$log" "$part" "^exit 0$" || ok=1
    done
    local held=", as at the baseline$"
    for part in "the report after the install" "the report after the repair"; do
        expect "$log" "$part" "^printer +Plenarc Demo +port LPT1:, IsPlenarcValid 1$held" || ok=1
        expect "$log" "$part" "^driver +Plenarc Demo 600 +in \"$env_name\", version 3$" || ok=1
        expect "$log" "$part" "^file +C:.windows.system32.spool.drivers.$env_dir.3.PLENARC.DRV +present 26 bytes$held" || ok=1
        expect "$log" "$part" "^file +C:.windows.system32.plensvc.exe +present [0-9]+ bytes$held" || ok=1
        expect "$log" "$part" "^service +PlenarcDemo +installed, demand start, stopped$held" || ok=1
        expect "$log" "$part" "^registry +HKLM,Software.Halvern.Plenarc Demo,Model,0,Plenarc Demo 600 +REG_SZ" || ok=1
        expect "$log" "$part" "^shortcut .*Plenarc Driver Help.lnk -> C:.windows.system32.PLENARC.HLP, starts in " || ok=1
        expect "$log" "$part" "^summary +Plenarc Demo 600: [0-9]+ items, [0-9]+ held, 0 drifted, 0 pending" || ok=1
        expect "$log" "$part" "^exit 0$" || ok=1
        if report_part "$log" "$part" | grep -E "no baseline|not in the baseline" >/dev/null; then
            echo "check-main-job: '$part' compares an item with no baseline" >&2
            ok=1
        fi
    done
    expect "$log" "the report after the repair, as JSON" "\"drifted\": 0, \"pending\": 0" || ok=1
    local plan="what the uninstall would take back"
    expect "$log" "$plan" "^printer +Plenarc Demo +would be removed" || ok=1
    expect "$log" "$plan" "^driver +Plenarc Demo 600 in \"$env_name\" +would be removed$" || ok=1
    expect "$log" "$plan" "^service +PlenarcDemo +would be removed" || ok=1
    expect "$log" "$plan" "^file +C:.windows.system32.plensvc.exe +would be removed$" || ok=1
    expect "$log" "$plan" "^record +HKLM.SOFTWARE.Halvern.Plenarc.6.0.Uninstall Data.Plenarc Demo 600 +would be removed" || ok=1
    expect "$log" "$plan" "^summary +Plenarc Demo 600: [0-9]+ items, [0-9]+ would be removed, [0-9]+ shared, [0-9]+ absent already, 0 failed, 0 refused; nothing changed$" || ok=1
    expect "$log" "$plan" "^exit 0$" || ok=1
    return $ok
}

status=0
for arch in "${arches[@]}"; do
    log=build/main-job-$arch.log
    mkdir -p build
    echo "== main job, $arch (at most $limit s)"
    start=$SECONDS
    TOVREL_WINE_ARCH=$arch timeout "$limit" scripts/main-job.sh >"$log" 2>&1
    code=$?
    if [ $code -ne 0 ]; then
        echo "check-main-job: $arch run exited $code after $((SECONDS - start)) s; its output:" >&2
        tail -40 "$log" >&2
        status=1
    elif ! check_report "$log" "$arch"; then
        status=1
    else
        echo "main job $arch: passed in $((SECONDS - start)) s (report in $log)"
    fi
done
exit $status
