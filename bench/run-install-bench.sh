#!/usr/bin/env bash
# An install's fixed cost and its cost per cabinet file, and the discovery of
# an INF, each beside the platform's own work in the same run
# (install_bench.exe), pinned to one CPU together with its wineserver in one
# throw-away prefix. Prints the figures, the ratios and whether each target
# is met:
#   Repair on a 100 KB INF at most half of SetupOpenInfFileA + close;
#   Repair on a 1 KB INF at most 2 ms;
#   Repair grows at most 11 times from 1 MB to 10 MB;
#   from 10,000 to 100,000 destination lines, Repair through every stage
#   grows at most 1.1 times as much as reading the INF alone does;
#   the copy stage's own copy and record of a file at most 1.3 times the
#   platform putting a file in place whole (CopyFileA to a temporary name,
#   FlushFileBuffers, MoveFileExA) plus one registry value (100 files);
#   from 100 to 1,000 files the stage's cost per file grows no more than
#   the platform's;
#   discovery finds the model in the last manufacturer of the large INF;
#   with 1,500 INFs its full search takes at most 0.2 times setupapi's walk;
#   it grows at most linearly from 100 to 1,500 INFs and from the large INF
#   to twice its size; INFs written just before cost at most 1.1 times
#   settled ones.
#   bench/run-install-bench.sh [BUILD_DIR] [REPEATS] [--setupapi-10mb] [--only open|destinations|copy|discovery]
# --setupapi-10mb also opens the 10 MB INF with setupapi (minutes); --only
# runs one part.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/.." && pwd)
. "$root/scripts/wine-env.sh"
build=${1:-$root/build/$TOVREL_WINE_ARCH}
repeats=${2:-9}
limit=$((2 * 1024 * 1024))
parts="open destinations copy discovery"
shift $(( $# < 2 ? $# : 2 ))
while [ $# -gt 0 ]; do
  case $1 in
    --setupapi-10mb) limit=$((11 * 1024 * 1024)) ;;
    --only) parts=$2; shift ;;
    *) echo "unknown argument $1" >&2; exit 2 ;;
  esac
  shift
done
bench="$build/bin/install_bench.exe"
[ -f "$bench" ] || { echo "no $bench: build the target install_bench first" >&2; exit 1; }

. "$here/bench-prefix.sh"
echo "install bench: $(date -u +%Y-%m-%d), $(nproc) CPUs, $(sed -n 's/^model name\t: //p' /proc/cpuinfo | head -1)," \
     "$TOVREL_WINE_ARCH build, medians of $repeats"

figures=$(for part in $parts; do
             case $part in
               open) $pin "$TOVREL_WINE" "$bench" open "$windata" "$repeats" "$limit" ;;
               destinations) $pin "$TOVREL_WINE" "$bench" destinations "$windata" 3 ;;
               *) $pin "$TOVREL_WINE" "$bench" "$part" "$windata" "$repeats" ;;
             esac
           done 2>/dev/null | tr -d '\r')
printf '%s\n' "$figures"

printf '%s\n' "$figures" | awk '
    function verdict(ok) { return ok ? "met" : "NOT met" }
    $2 == "open" { n++; size[n] = $3; repair[n] = $5; setupapi[n] = $7; floor[n] = $9 }
    $2 == "destinations" { lines[$3] = $5; opened[$3] = $7 }
    $2 == "copy" { copies++; stage[$3] = $5; extract[$3] = $7; platform[$3] = $9; inplace[$3] = $11 }
    $2 == "discovery" {
        if (!($4 in large)) { large[$4] = ++larges; bytes[larges] = $4 }
        l = large[$4]; counts[$3] = 1; found[l, $3] = $8; nowhere[l, $3] = $10
        setupfound[l, $3] = $12; setupnowhere[l, $3] = $14; ok += $16; setupok += $17; searches++
    }
    $2 == "growth" { grown = 1; small = $3; smallms = $4; big = $5; bigms = $6 }
    $2 == "fresh" { fresh = 1; foundold = $5; foundfresh = $7; nowhereold = $9; nowherefresh = $11 }
    END {
        if (n) {
            for (i = 1; i <= n; i++)
                if (setupapi[i] >= 0)
                    printf "open %d bytes: Repair / setupapi = %.3f, Repair / floor = %.1f\n", size[i], repair[i] / setupapi[i], repair[i] / floor[i]
            printf "target Repair(1 KB) <= 2 ms: %s (%.3f ms)\n", verdict(repair[1] <= 2), repair[1]
            if (setupapi[2] > 0)
                printf "target Repair(100 KB) <= 0.5 x setupapi: %s (%.3f)\n", verdict(repair[2] / setupapi[2] <= 0.5), repair[2] / setupapi[2]
            printf "target Repair(10 MB) / Repair(1 MB) <= 11: %s (%.2f)\n", verdict(repair[4] / repair[3] <= 11), repair[4] / repair[3]
        }
        if (10000 in lines) {
            grow = lines[100000] / lines[10000]; ogrow = opened[100000] / opened[10000]
            printf "destination lines 10,000 -> 100,000: Repair %.0f -> %.0f ms (x %.2f), the INF alone %.0f -> %.0f ms (x %.2f)\n", lines[10000], lines[100000], grow, opened[10000], opened[100000], ogrow
            printf "target Repair growth <= 1.1 x the INF alone: %s (%.2f)\n", verdict(grow <= 1.1 * ogrow), grow / ogrow
        }
        if (copies) {
            for (f in stage)
                printf "copy %d files: stage own %.1f us, platform %.1f us a file, ratio %.2f; in place %.1f us, whole over in place %.2f\n", f, stage[f] - extract[f], platform[f], (stage[f] - extract[f]) / platform[f], inplace[f], platform[f] / inplace[f]
            own = stage[100] - extract[100]
            printf "target copy own / platform (100 files) <= 1.3: %s (%.2f)\n", verdict(own / platform[100] <= 1.3), own / platform[100]
            growth = (stage[1000] - extract[1000]) / own; pgrowth = platform[1000] / platform[100]
            printf "target copy growth 100 -> 1000 files <= platform growth: %s (%.2f against %.2f)\n", verdict(growth <= pgrowth), growth, pgrowth
        }
        if (searches) {
            printf "target discovery finds the model in the last manufacturer: %s (%d of %d searches; setupapi %d)\n", verdict(ok == searches), ok, searches, setupok
            for (l = 1; l <= larges; l++) {
                r = nowhere[l, 1500] / setupnowhere[l, 1500]
                printf "target full search (1,500 INFs, %d bytes) <= 0.2 x setupapi: %s (%.3f: %.0f ms, %.0f ms)\n", bytes[l], verdict(r <= 0.2), r, nowhere[l, 1500], setupnowhere[l, 1500]
                g = nowhere[l, 1500] / nowhere[l, 100]
                printf "target full search 100 -> 1,500 INFs (%d bytes) <= 15: %s (%.2f)\n", bytes[l], verdict(g <= 15), g
            }
            if (larges == 2)
                for (c in counts) {
                    g = nowhere[2, c] / nowhere[1, c]; b = bytes[2] / bytes[1]
                    printf "target full search (%d INFs) with the large INF at twice its size <= %.2f x: %s (%.2f)\n", c, b, verdict(g <= b), g
                }
        }
        if (grown)
            printf "MatchInf on the large INF alone: %.1f ms, at twice its size %.1f ms (%.2f x)\n", smallms, bigms, bigms / smallms
        if (fresh) {
            a = foundfresh / foundold; b = nowherefresh / nowhereold
            printf "target INFs written just before <= 1.1 x settled ones: %s (found %.2f, full search %.2f)\n", verdict(a <= 1.1 && b <= 1.1), a, b
        }
    }'
