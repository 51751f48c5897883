# Sourced by the bench scripts: one throw-away winxp prefix of the host's
# Wine architecture under the build tree, ended and removed on exit, and
# the pinning that every figure runs under. Leaves root, pin, data (a
# directory in the run) and windata (the same as Wine sees it).
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$root/scripts/wine-env.sh"
"$root/scripts/wine-prefix.sh" winxp >/dev/null
wroot=$(tovrel_wine_root)
mkdir -p "$wroot/run"
run=$(mktemp -d "$wroot/run/bench.XXXXXX")
cp -a "$wroot/templates/$TOVREL_WINE_ARCH-winxp/." "$run/"
export HOME="$run/home" WINEPREFIX="$run/prefix"
trap 'wineserver -k >/dev/null 2>&1; rm -rf "$run"' EXIT

# The bench and its wineserver on one CPU: crossing CPUs adds 80-100
# microseconds to every server call. TOVREL_BENCH_CPU picks it (default 1),
# for a machine where another program keeps that one busy.
pin="taskset -c ${TOVREL_BENCH_CPU:-1}"
data="$run/data"
mkdir -p "$data"
windata="Z:$(printf '%s' "$data" | tr / '\\')"
$pin wineserver -p
