#!/usr/bin/env bash
# The uninstall's cost per file beside the platform's own work in the same
# run (uninstall_bench.exe), pinned to one CPU together with its wineserver
# in one throw-away prefix. Prints the figures, the ratios and whether each
# target is met:
#   the uninstall's own cost per file, its run less that of the same model
#   without the files, at most 1.3 times the platform's DeleteFileA and one
#   registry value deleted per file (1,000 files);
#   from 100 to 1,000 files that cost per file grows no more than the
#   platform's.
#   bench/run-uninstall-bench.sh [BUILD_DIR] [REPEATS]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/.." && pwd)
. "$root/scripts/wine-env.sh"
build=${1:-$root/build/$TOVREL_WINE_ARCH}
repeats=${2:-7}
bench="$build/bin/uninstall_bench.exe"
[ -f "$bench" ] || { echo "no $bench: build the target uninstall_bench first" >&2; exit 1; }

. "$here/bench-prefix.sh"
echo "uninstall bench: $(date -u +%Y-%m-%d), $(nproc) CPUs, $(sed -n 's/^model name\t: //p' /proc/cpuinfo | head -1)," \
     "$TOVREL_WINE_ARCH build, medians of $repeats, load $(cut -d' ' -f1-3 /proc/loadavg)"

figures=$($pin "$TOVREL_WINE" "$bench" "$windata" "$repeats" 2>/dev/null | tr -d '\r')
printf '%s\n' "$figures"

printf '%s\n' "$figures" | awk '
    function verdict(ok) { return ok ? "met" : "NOT met" }
    $2 == "uninstall" { own[$3] = ($5 - $7) * 1000 / $3; platform[$3] = $9 * 1000 / $3 }
    END {
        for (f in own)
            printf "uninstall %d files: own %.1f us a file, platform %.1f us a file, ratio %.2f\n", f, own[f], platform[f], own[f] / platform[f]
        printf "target own / platform (1,000 files) <= 1.3: %s (%.2f)\n", verdict(own[1000] / platform[1000] <= 1.3), own[1000] / platform[1000]
        growth = own[1000] / own[100]; pgrowth = platform[1000] / platform[100]
        printf "target growth 100 -> 1,000 files <= platform growth: %s (%.2f against %.2f)\n", verdict(growth <= pgrowth), growth, pgrowth
    }'
