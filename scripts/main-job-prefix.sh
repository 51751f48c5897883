# Sourced by the scripts that run one of the built programs in the prefix
# that the main job kept (TOVREL_WINE_ARCH picks the prefix and the build).
#   run_in_main_job_prefix NAME PROGRAM.exe ARGS...
# prints what the program prints, with Unix line ends, and exits with its
# exit code; 3 when there is no such prefix or no such build.
. "$(dirname "${BASH_SOURCE[0]}")/wine-env.sh"

run_in_main_job_prefix() {
    local name=$1 program="build/$TOVREL_WINE_ARCH/bin/$2" job code=0
    shift 2
    job="$(tovrel_wine_root)/main-job-$TOVREL_WINE_ARCH"
    [ -d "$job/prefix" ] || { echo "$name: no prefix in $job; run scripts/main-job.sh first" >&2; exit 3; }
    [ -f "$program" ] || { echo "$name: $program not built" >&2; exit 3; }
    export HOME="$job/home" WINEPREFIX="$job/prefix"
    trap 'wineserver -k >/dev/null 2>&1 || true' EXIT
    "$TOVREL_WINE" "$program" "$@" | tr -d '\r' || code=$?
    exit "$code"
}
