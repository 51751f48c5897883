#!/usr/bin/env bash
# Times the extraction of a cabinet set of about 20 MB (MSZIP, a few hundred
# files): the install's copy stage (CPrinterInf::CopyFiles), its extraction
# alone (CCabinetExtractor) and a bare FDICopy, all inside cabinet_bench.exe,
# and `wine cabarc X` of the same set. Everything is pinned to CPU 1 and runs
# in one throw-away prefix whose wineserver stays up between the runs. The
# extraction should take at most 1.1 times the bare FDICopy. Beside them, the
# set's source files are put in place one by one the way the install puts a
# file now (staged beside the target, flushed, renamed over it) and the way
# it did before (CopyFileA straight onto the target), and the two compared.
#   bench/run-cabinet-bench.sh [BUILD_DIR] [REPEATS]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/.." && pwd)
. "$root/scripts/wine-env.sh"
build=${1:-$root/build/$TOVREL_WINE_ARCH}
repeats=${2:-9}
bench="$build/bin/cabinet_bench.exe"
[ -f "$bench" ] || { echo "no $bench: build the bench first" >&2; exit 1; }

. "$here/bench-prefix.sh"

$pin "$TOVREL_WINE" "$bench" make "$windata" >/dev/null
echo "set: $(ls "$data"/set*.cab | wc -l) members, $(du -cb "$data"/set*.cab | tail -1 | cut -f1) bytes;" \
     "$(ls "$data/source" | wc -l) files, $(du -cb "$data"/source/* | tail -1 | cut -f1) bytes"
figures=$($pin "$TOVREL_WINE" "$bench" run "$windata" "$repeats")
echo "$figures"

# Best of the repeats, in seconds, of one command line.
best_of() {
    local best=""
    for _ in $(seq "$repeats"); do
        rm -rf "$data/cabarc"; mkdir -p "$data/cabarc"
        local start end
        start=$(date +%s.%N)
        "$@" >/dev/null 2>&1 || true
        end=$(date +%s.%N)
        best=$(awk -v b="$best" -v s="$start" -v e="$end" 'BEGIN { t = e - s; if (b == "" || t < b) b = t; print b }')
    done
    echo "$best"
}

cabarc=$(best_of $pin "$TOVREL_WINE" cabarc X "$windata\\set0.cab" "$windata\\cabarc\\")
cabarc_files=$(ls "$data/cabarc" | wc -l)
startup=$(best_of $pin "$TOVREL_WINE" cabarc)
echo "figure cabarc seconds $cabarc files $cabarc_files (process start alone: $startup)"

printf '%s\n' "$figures" | awk -v cabarc="$cabarc" -v startup="$startup" '
    $1 == "figure" { t[$2] = $4; m[$2] = $10; files[$2] = $8 }
    END {
        f = t["fdicopy"]; fm = m["fdicopy"]
        for (name in t)
            if (name != "fdicopy" && name != "staged" && name != "inplace")
                printf "ratio %s / fdicopy = %.3f (medians %.3f)\n", name, t[name] / f, m[name] / fm
        printf "ratio cabarc / fdicopy = %.3f (without process start %.3f)\n", cabarc / f, (cabarc - startup) / f
        printf "ratio extractor / cabarc = %.3f (without process start %.3f)\n", t["extractor"] / cabarc, t["extractor"] / (cabarc - startup)
        ratio = t["extractor"] / f
        printf "target extractor / fdicopy <= 1.10: %s (%.3f)\n", ratio <= 1.10 ? "met" : "NOT met", ratio
        printf "ratio staged / inplace = %.3f (medians %.3f): a file placed whole against one written in place\n", t["staged"] / t["inplace"], m["staged"] / m["inplace"]
        if (files["staged"] > 0)
            printf "per file: staged over inplace %.0f us (median %.0f)\n", (t["staged"] - t["inplace"]) / files["staged"] * 1e6, (m["staged"] - m["inplace"]) / files["staged"] * 1e6
        n = files["fdicopy"]
        if (n > 0) {
            # Microseconds per file, best and median.
            printf "per file: extractor over fdicopy %.0f us (median %.0f)\n", (t["extractor"] - f) / n * 1e6, (m["extractor"] - fm) / n * 1e6
            printf "per file: install copy and record (copyfiles - extractor) %.0f us (median %.0f)\n", (t["copyfiles"] - t["extractor"]) / n * 1e6, (m["copyfiles"] - m["extractor"]) / n * 1e6
        }
    }'
