#!/usr/bin/env bash
# A repair over an older install, killed at each point of one table and then
# run again, ends as an uninterrupted one: every installed file equal to its
# cabinet member, tovrel-report at exit 0, no work directory, temporary name,
# .new_file or ledger line left, and %TEMP% as it was. Rows that take the
# work directory's name before the install chooses it must see the cabinet
# refused and nothing outside the work directory changed.
#   interrupted-install.sh BINDIR FLAVOR [ROW...]
# The first run of a row uses bin/interruptible/tovrel.dll, which ends its
# process (exit 75) at the point TOVREL_INTERRUPT_AT names and takes its work
# directory's name from TOVREL_WORK_DIRECTORY; the second the shipped DLL.
set -uo pipefail
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
. "$source_dir/scripts/wine-env.sh"
bin=$(cd "$1" && pwd) flavor=$2
shift 2
"$source_dir/scripts/wine-prefix.sh" "$flavor" || exit 1

# ROW        KILL AT (POINT:FILE)       BEFORE THE RUN   WHY
rows='
none         -                          -                what every other row must match
extract      extract:big.dat            -                a member half out of its cabinet
write-dll    write:big.dll              -                the first write of each large target
write-dat    write:big.dat              -
busy-copy    write:system32\busy.dll    -                the new copy of a busy file
busy-named   pending:system32\busy.dll  -                that copy named .new_file, not yet scheduled
copied       copied:                    -                the copy stage over, the spooler not yet told
taken-dir    -                          directory        a directory, a file or a link stands at the
taken-file   -                          file             work directory name: the cabinet is refused
taken-link   -                          link
exhausted    -                          exhausted        every name of a four-hex-digit scheme taken
unlisted     -                          unlisted         a directory of our shape that no run made
'
taken_name='~tvr00000000deadbeef'
members=(big.dll big.dat busy.dll KILL.DRV KILL.PPD KILLU.CFG KILL.HLP)

root=$(tovrel_wine_root)
mkdir -p "$root/run"
run=$(mktemp -d "$root/run/interrupted-$flavor.XXXXXX")
holder=
cleanup() {
    [ -n "$holder" ] && kill "$holder" 2>/dev/null
    wineserver -k >/dev/null 2>&1
    rm -rf "$run"
}
trap cleanup EXIT

env_dir=w32x86 cab=KILLNT.CAB version=3
[ "$TOVREL_WINE_ARCH" = win64 ] && env_dir=x64
[ "$flavor" = win98 ] && env_dir=win40 cab=KILL9X.CAB version=
in_prefix() { timeout 120 "$TOVREL_WINE" "$@"; }
use_prefix() {
    export HOME="$run/$1/home" WINEPREFIX="$run/$1/prefix"
    c="$WINEPREFIX/drive_c" temp="$WINEPREFIX/drive_c/users/$(id -un)/Temp"
    drivers="$c/windows/system32/spool/drivers/$env_dir"
    destinations=("$c/windows/system32" "$drivers${version:+/$version}")
}
# DLL is demo (the shipped library) or demo/interruptible.
run_repair() {
    (cd "$c/$1" && in_prefix repair_cli.exe 'C:\demo\interrupted.inf' Halvern "Plenarc Kill 600" "Plenarc Kill") \
        >/dev/null 2>&1
}

# The members, old or new: the two versioned libraries with megabytes of
# data behind them, megabytes without a version, and four small text files.
make_members() {
    local dir=$1 age=$2 version=1_0_0_5 megabytes=3
    [ "$age" = new ] && version=2_0_0_0 megabytes=4
    mkdir -p "$dir"
    cat "$bin/versioned_$version.dll" <(head -c $((megabytes << 20)) /dev/urandom) >"$dir/big.dll"
    head -c $(((megabytes + 1) << 20)) /dev/urandom >"$dir/big.dat"
    cp "$bin/versioned_$version.dll" "$dir/busy.dll"
    for name in KILL.DRV KILL.PPD KILLU.CFG KILL.HLP; do printf 'Plenarc %s %s\r\n' "$age" "$name" >"$dir/$name"; done
    [ "$age" = old ] && touch -d 2001-01-01 "$dir"/*
    (cd "$dir" && in_prefix cabarc -m mszip N "$cab" "${members[@]}" >/dev/null 2>&1)
}

# The older install, made once; each row starts from a copy of it, with the
# new cabinet in the driver directory.
make_base() {
    cp -a "$root/templates/$TOVREL_WINE_ARCH-$flavor/." "$run/base/" && use_prefix base
    mkdir -p "$c/demo/interruptible" "${destinations[1]}"
    cp "$bin/tovrel.dll" "$bin/repair_cli.exe" "$bin/tovrel-report.exe" "$bin/holder.exe" "$c/demo/"
    cp "$bin/interruptible/tovrel.dll" "$bin/repair_cli.exe" "$c/demo/interruptible/"
    cp "$source_dir/tests/files/interrupted.inf" "$c/demo/"
    make_members "$run/old" old && make_members "$run/new" new
    cp "$run/old/$cab" "$drivers/" && run_repair demo || return 1
    cp "$run/new/$cab" "$drivers/"
    wineserver -k
}

take_name() {
    case $1 in
    directory) mkdir "$temp/$taken_name" && echo decoy >"$temp/$taken_name/big.dat" ;;
    file) echo decoy >"$temp/$taken_name" ;;
    link) mkdir "$c/victim" && echo victim >"$c/victim/big.dat" && ln -s "$c/victim" "$temp/$taken_name" ;;
    exhausted) (cd "$temp" && printf '~~%X.tmp\n' $(seq 0 65535) | xargs touch) ;;
    unlisted) mkdir "$temp/~tvr0123456789abcdef" && echo decoy >"$temp/~tvr0123456789abcdef/big.dat" ;;
    esac
}

# What no install may change: %TEMP% and the victim of the link row.
outside() { find "$temp" "$c/victim" -mindepth 1 -printf '%P %y %s %T@\n' 2>/dev/null | sort; }

# Each failed check is one line; a row passes when it prints none.
targets_are() {
    local name dir
    for name in "${members[@]}"; do
        for dir in "${destinations[@]}"; do
            cmp -s "$run/$1/$name" "$dir/$name" || echo "${dir#"$c"/}/$name is not the $1 member"
        done
    done
}
leftovers() { find "$c" -name '~tvr*' -o -name '*.new_file' -o -name '*.delete_on_reboot' | sed "s|^$c/||"; }
# What the machine must show once the rows' runs are over; $1 lists what a
# row put there itself.
converged() {
    local code=0
    targets_are new
    in_prefix 'C:\demo\tovrel-report.exe' "Plenarc Kill 600" >"$run/report" 2>&1 || code=$?
    [ "$code" = 0 ] || { echo "the report exits $code:"; grep -v '^file\|^model' "$run/report"; }
    leftovers | grep -vxF "$1" | sed 's/^/left behind: /'
    in_prefix reg query 'HKLM\Software\Halvern\Plenarc\6.0\Work Directories' 2>/dev/null | grep -i 'tvr' |
        sed 's/^ */ledger still lists: /'
}

run_row() {
    local kill=$1 taken=$2 before made code=0 work=
    rm -rf "$run/row" && cp -a "$run/base/." "$run/row/" && use_prefix row
    [ "$taken" = - ] || take_name "$taken"
    before=$(outside) made=$(leftovers)
    # The busy library is held through the first run only, as a program
    # that ends before the next run leaves it.
    "$TOVREL_WINE" 'C:\demo\holder.exe' 'C:\windows\system32\busy.dll' >"$run/held" 2>/dev/null &
    holder=$!
    for _ in $(seq 100); do grep -q held "$run/held" && break; sleep 0.2; done
    [ "$kill" = - ] && kill=
    case $taken in directory | file | link) work=$taken_name ;; esac
    TOVREL_INTERRUPT_AT=$kill TOVREL_WORK_DIRECTORY=$work run_repair demo/interruptible || code=$?
    [ "$code" = "$([ -n "$kill" ] && echo 75 || echo 0)" ] || echo "the first run exits $code"
    kill "$holder" && wait "$holder" 2>/dev/null
    holder=
    case $taken in directory | file | link) targets_are old ;; esac
    run_repair demo || echo "the second run exits $?"
    # A restart: what waits for one is carried out as the next session starts.
    wineserver -k && wineserver -w && in_prefix wineboot -r >/dev/null 2>&1
    converged "$made"
    [ "$(outside)" = "$before" ] || diff <(echo "$before") <(outside) | sed 's/^/%TEMP% changed: /'
    wineserver -k
}

make_base >"$run/base.log" 2>&1 || { echo "interrupted-install: the older install failed" >&2; exit 1; }
failed=0
while read -r row kill taken _; do
    [ -n "$row" ] || continue
    [ $# = 0 ] || [[ " $* " = *" $row "* ]] || continue
    problems=$(run_row "$kill" "$taken")
    if [ -z "$problems" ]; then
        echo "ok    $flavor $row"
    else
        failed=1 && echo "FAIL  $flavor $row" && echo "$problems" | sed 's/^/      /'
    fi
done <<<"$rows"
exit $failed
