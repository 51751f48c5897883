#!/usr/bin/env bash
# Installs one scenario in a fresh prefix of its Windows version, runs
# tovrel-report where the scenario says, and compares the transcript, made
# alike for every prefix and architecture, with NAME.expected beside it.
#   run-snapshot.sh BINDIR NAME.scenario
# TOVREL_SNAPSHOT_UPDATE=1 writes the transcript to NAME.expected instead;
# TOVREL_KEEP_PREFIX=1 keeps the prefix. A scenario is one step a line, in
# shell words; $sys and $drivers stand for the system and printer driver
# directories:
#   flavor winxp|nt40|win98    the prefix's Windows version (the first step)
#   inf FILE                   an INF of the source tree, copied to C:\demo
#   cab NAME MEMBER...         a cabinet in the driver directory; a MEMBER is
#   cabset NAME MEMBER...      STORED=BUILT (a file of BINDIR) or STORED, a
#                              line of text; cabset spreads them over two
#   put BUILT PATH             a file of BINDIR at a Windows path
#   rundll MFG MODEL PRINTER   rundll32 tovrel.dll,Repair_RunDll /INF ...
#   open INF                   rundll with an INF of the source tree and the
#                              demonstration model's names
#   call ENTRY TEXT            rundll32 tovrel.dll,ENTRY TEXT: the rest of the
#                              line as it stands, quotes and all
#   repair MFG MODEL PRINTER   Repair through repair_cli
#   hold PATH                  a process that keeps PATH loaded until restart
#   restart                    ends every program, then wineboot -r
#   delete PATH                removes a file
#   cut PATH BYTES             cuts a file short to its first BYTES bytes
#   wine PROGRAM ARGS...       a program of the prefix (reg, sc, net ...)
#   show PROGRAM ARGS...       the same, with what it prints and a failing exit
#   service NAME               the service's keys and, once it settles, its state
#   keys KEY                   the names and types under a registry key: reg
#                              shows a value shorter than its type garbled
#   copy FILE PATH             a file of the source tree at a Windows path
#   set NAME=VALUE             in the environment of every later step
#   report [--json] MODEL      tovrel-report: its lines and exit code
#   uninstall [ARGS] MODEL     tovrel-uninstall: its lines and exit code
#   interrupt POINT:SUBJECT MODEL
#                              the test build of tovrel-uninstall, which ends
#                              its process once it has dealt with the item
#                              of kind POINT whose subject ends in SUBJECT
#   machine mark|diff          ends the session as a restart does, then keeps
#                              every path under C: and every registry key and
#                              value (mark), or shows what differs from what
#                              mark kept (diff): + added, - gone
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
source_dir=$(cd "$here/../.." && pwd)
. "$source_dir/scripts/wine-env.sh"
bin=$(cd "$1" && pwd) scenario=$2
arguments=("$@")
expected=${scenario%.scenario}.expected
step_limit=${TOVREL_SNAPSHOT_STEP_SECONDS:-120}
flavor=$(awk '$1 == "flavor" { print $2; exit }' "$scenario")
"$source_dir/scripts/wine-prefix.sh" "$flavor" || { echo "snapshot: no template for $flavor" >&2; exit 1; }

root=$(tovrel_wine_root)
mkdir -p "$root/run"
run=$(mktemp -d "$root/run/snapshot-$flavor.XXXXXX")
cp -a "$root/templates/$TOVREL_WINE_ARCH-$flavor/." "$run/"
export HOME="$run/home" WINEPREFIX="$run/prefix"
holders=()
cleanup() {
    for pid in "${holders[@]}"; do kill "$pid" 2>/dev/null; done
    wineserver -k >/dev/null 2>&1
    if [ "${TOVREL_KEEP_PREFIX:-0}" = 1 ]; then echo "snapshot: prefix kept in $WINEPREFIX" >&2; else rm -rf "$run"; fi
}
trap cleanup EXIT

if [ "$TOVREL_WINE_ARCH" = win64 ]; then env_dir=x64; else env_dir=w32x86; fi
[ "$flavor" = win98 ] && env_dir=win40
sys='C:\windows\system32' drivers="C:\\windows\\system32\\spool\\drivers\\$env_dir"
c="$WINEPREFIX/drive_c"
mkdir -p "$c/demo" "$c/windows/system32/spool/drivers/$env_dir"
mkdir -p "$c/demo/interruptible"
cp "$bin/tovrel.dll" "$bin/repair_cli.exe" "$bin/holder.exe" "$bin/tovrel-report.exe" "$bin/tovrel-uninstall.exe" "$c/demo/"
cp "$bin/interruptible/tovrel-uninstall.exe" "$c/demo/interruptible/"
built=()  # the files of BINDIR that the scenario uses: their sizes differ by architecture

unix_path() { local p=${1#[Cc]:\\}; echo "$c/${p//\\//}"; }
# The same, its directory made.
new_path() { local path; path=$(unix_path "$1") && mkdir -p "$(dirname "$path")" && echo "$path"; }
in_prefix() { timeout "$step_limit" "$TOVREL_WINE" "$@"; }
# What a program of the prefix prints, with Unix line ends.
printed() { in_prefix "$@" 2>&1 | tr -d '\r'; }
# An install, with what the library wrote to the debug output.
install() {
    WINEDEBUG=-all,+debugstr printed "$@" |
        sed -E 's/^.*OutputDebugStringA "(.*)"$/debug output: \1/'
}

# Fills a staging directory with the members of a cabinet.
stage_members() {
    local dir=$1 member; shift
    rm -rf "$dir" && mkdir -p "$dir"
    for member in "$@"; do
        if [ "${member#*=}" != "$member" ]; then
            cp "$bin/${member#*=}" "$dir/${member%%=*}" && built+=("${member#*=}")
        else
            printf 'Plenarc demo %s\r\n' "$member" >"$dir/$member"
        fi
    done
}

# A cabinet, or a set of two members (stored, so that their size is known),
# moved into the driver directory under NAME and NAME's stem with 2.
make_cabinet() {
    local kind=$1 name=$2 stage="$run/cab" total; shift 2
    stage_members "$stage" "$@"
    if [ "$kind" = cab ]; then
        (cd "$stage" && in_prefix cabarc -m mszip N "$name" "${@%%=*}" >/dev/null 2>&1)
    else
        total=$(cat "$stage"/* | wc -c)
        (cd "$stage" && in_prefix cabarc -m none -d $((total * 6 / 10)) N "${name%.*}*.${name##*.}" "${@%%=*}" \
            >/dev/null 2>&1 && mv "${name%.*}1.${name##*.}" "$name")
    fi
    (cd "$stage" && echo "in the driver directory:" *.[Cc][Aa][Bb] && mv ./*.[Cc][Aa][Bb] "$(unix_path "$drivers")/")
}

# A RunDll entry given its text exactly: Wine would quote the words of a
# command line anew, so the line goes through a batch file, where an & must
# be escaped to stay in the text.
call_entry() {
    printf '@rundll32.exe C:\\demo\\tovrel.dll,%s\r\n' "${1//&/^&}" >"$c/demo/call.bat"
    install cmd.exe /c 'C:\demo\call.bat'
}

# The service manager answers at once and the service gets there later, so
# its state is read once it no longer says pending. Of a dependency list only
# the first name is shown: what Wine 8 stores after it is not the list.
show_service() {
    local state=
    for _ in $(seq 100); do
        state=$(printed sc query "$1" | awk '$1 == "STATE" { print $4 }')
        case $state in *PENDING) sleep 0.2 ;; *) break ;; esac
    done
    printed reg query "HKLM\\System\\CurrentControlSet\\Services\\$1" |
        awk '/^    / && $1 != "PreshutdownTimeout"' |
        sed -E 's/^( +DependOnService +REG_MULTI_SZ +[^\\]*)\\0.*/\1/'
    echo "state ${state:-none}"
}

hold_library() {
    in_prefix 'C:\demo\holder.exe' "$1" >"$run/held" 2>/dev/null &
    holders+=($!)
    for _ in $(seq 100); do grep -q held "$run/held" 2>/dev/null && return 0; sleep 0.2; done
    echo "(the holder did not load $1)"
}

# A restart ends every program; Wine carries out the renames left for it
# when the next session starts.
end_session() {
    for pid in "${holders[@]}"; do kill "$pid" 2>/dev/null; wait "$pid" 2>/dev/null; done
    holders=()
    wineserver -k >/dev/null 2>&1; wineserver -w
}

# The machine as lines: each path under C: but the runner's own, and each
# registry key and value of the hives, with the times Wine notes left out
# and a value that runs over several lines joined. The display's classes
# are left out too: every session of Wine writes them anew.
machine_state() {
    (cd "$c" && find . -mindepth 1 ! -path './demo' ! -path './demo/*' | sed -e 's|^\.|path C:|' -e 's|/|\\|g') || true
    local hive
    for hive in system user; do
        awk -v hive="$hive" '
            /^\[/ { key = $0; sub(/\] [0-9]+$/, "]", key); print hive " " key; next }
            /^#/ || /^$/ || /^WINE REGISTRY/ || /^;/ { next }
            { line = $0
              while (line ~ /\\$/ && (getline more) > 0) { sub(/\\$/, "", line); sub(/^ +/, "", more); line = line more }
              print hive " " key " " line }' "$WINEPREFIX/$hive.reg" |
            grep -v -F -e '\\Control\\Class\\{4D36E968-' -e '\\Control\\Class\\{4D36E96E-'
    done
}

machine() {
    end_session
    case $1 in
    mark) machine_state | LC_ALL=C sort >"$run/machine" ;;
    diff) machine_state | LC_ALL=C sort | LC_ALL=C comm -3 "$run/machine" - |
            sed -E -e 's/^\t/+ /' -e 's/^([^+])/- \1/' ;;
    esac
}

run_step() {
    local verb=$1; shift
    case $verb in
    flavor) ;;
    inf) inf="C:\\demo\\$(basename "$1")"; cp "$source_dir/$1" "$c/demo/" ;;
    cab | cabset) make_cabinet "$verb" "$@" ;;
    put) cp "$bin/$1" "$(new_path "$2")" && built+=("$1") ;;
    rundll) install rundll32.exe 'C:\demo\tovrel.dll,Repair_RunDll' /INF "$inf" /MFG "$1" /DRV "$2" /NAME "$3" ;;
    open) run_step inf "$1" && run_step rundll Halvern "Plenarc Demo 600" "Plenarc Demo" ;;
    repair) (cd "$c/demo" && install repair_cli.exe "$inf" "$@") ;;
    hold) hold_library "$1" ;;
    restart) end_session && in_prefix wineboot -r >/dev/null 2>&1 ;;
    delete) rm "$(unix_path "$1")" ;;
    cut) truncate -s "$2" "$(unix_path "$1")" ;;
    wine) in_prefix "$@" >/dev/null 2>&1 ;;
    show) local code=0; printed "$@" | sed '/^$/d' || code=$?; [ "$code" = 0 ] || echo "exit $code" ;;
    service) show_service "$1" ;;
    keys) printed reg query "$1" /s | sed -E -n -e '/^HKEY/p' \
            -e 's/^    (.*)    (REG_[A-Z_]+)    .*$/    \1  \2/p' ;;
    copy) cp "$source_dir/$1" "$(new_path "$2")" ;;
    set) export "$1" 2>/dev/null ;;
    report) local code=0; printed 'C:\demo\tovrel-report.exe' "$@" || code=$?; echo "exit $code" ;;
    uninstall) local code=0; printed 'C:\demo\tovrel-uninstall.exe' "$@" || code=$?; echo "exit $code" ;;
    interrupt) local code=0; TOVREL_INTERRUPT_AT=$1 printed 'C:\demo\interruptible\tovrel-uninstall.exe' "$2" ||
            code=$?; echo "exit $code" ;;
    machine) machine "$1" ;;
    *) echo "snapshot: unknown step '$verb'" >&2; return 1 ;;
    esac
}

# The parts of a transcript that differ by prefix and architecture.
normalise() {
    local args=(-e "s/(\\\\+)users\\1$(id -un)\\1/\\1users\\1<user>\\1/Ig" -e "s/ of user $(id -un)\\b/ of user <user>/g"
        -e 's/\\(w32x86|x64)\\/\\<envdir>\\/Ig' -e 's/Windows NT x86|Windows x64/<environment>/g')
    local file
    for file in $(printf '%s\n' "${built[@]}" | sort -u); do
        args+=(-e "s/\\b$(stat -c %s "$bin/$file") bytes/<built size> bytes/g")
    done
    sed -E "${args[@]}" | sort_file_runs
}

# The report lists files in the order of their real paths, which differ by
# architecture; each run of file lines is sorted again once made alike.
sort_file_runs() {
    awk -v OFS='\t' '{ if ($1 != "file" || !in_run) group++; in_run = $1 == "file"; print group, $0 }' |
        LC_ALL=C sort -t "$(printf '\t')" -k1,1n -k2 -s | cut -f2-
}

transcript="$run/transcript"
while IFS= read -r line || [ -n "$line" ]; do
    case $line in '' | '#'*) continue ;; esac
    echo "> $line"
    case $line in
    'call '*) call_entry "${line#call }" ;;
    *) eval "set -- $line" && run_step "$@" ;;
    esac || echo "(step failed: $?)"
done <"$scenario" >"$transcript.raw" 2>&1
normalise <"$transcript.raw" >"$transcript"

# Wine's device host (winedevice.exe) now and then faults inside its kernel,
# ntoskrnl.exe, while a session starts on a busy machine; its message and
# the console settings its debugger leaves land in the transcript. Such a
# run says nothing of the scenario: it is run once more in a fresh prefix.
device_host_fault() {
    local image=$c/windows/system32/ntoskrnl.exe base size address
    read -r base size < <(x86_64-w64-mingw32-objdump -p "$image" |
        awk '$1 == "ImageBase" { b = $2 } $1 == "SizeOfImage" { s = $2 } END { print b, s }')
    [ -n "$base" ] || return 1
    for address in $(sed -nE 's/^wine: Unhandled .* at address ([0-9A-Fa-f]+) .*/\1/p' "$transcript.raw"); do
        (( 16#$address >= 16#$base && 16#$address < 16#$base + 16#$size )) && return 0
    done
    return 1
}
if [ -z "${TOVREL_SNAPSHOT_AGAIN:-}" ] && device_host_fault; then
    echo "snapshot: Wine's device host faulted in ntoskrnl.exe during the run; running it again" >&2
    cleanup
    trap - EXIT
    TOVREL_SNAPSHOT_AGAIN=1 exec "$here/$(basename "$0")" "${arguments[@]}"
fi

if [ "${TOVREL_SNAPSHOT_UPDATE:-0}" = 1 ]; then
    cp "$transcript" "$expected" && echo "snapshot: wrote $expected"
    exit 0
fi
diff -u --label "$expected" --label "this run ($TOVREL_WINE_ARCH)" "$expected" "$transcript"
