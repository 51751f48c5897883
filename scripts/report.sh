#!/usr/bin/env bash
# Runs tovrel-report in the prefix that the main job kept, with the given
# arguments, and exits with its exit code:
#   scripts/report.sh                          the models that have a record
#   scripts/report.sh "Plenarc Demo 600"       that model's items, one a line
#   scripts/report.sh --json "Plenarc Demo 600"
# TOVREL_WINE_ARCH picks the prefix and the build, as for the main job.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/wine-env.sh
arch=$TOVREL_WINE_ARCH
job="$(tovrel_wine_root)/main-job-$arch"
report="build/$arch/bin/tovrel-report.exe"
[ -d "$job/prefix" ] || { echo "report: no prefix in $job; run scripts/main-job.sh first" >&2; exit 3; }
[ -f "$report" ] || { echo "report: $report not built" >&2; exit 3; }
export HOME="$job/home" WINEPREFIX="$job/prefix"
trap 'wineserver -k >/dev/null 2>&1 || true' EXIT
code=0
"$TOVREL_WINE" "$report" "$@" | tr -d '\r' || code=$?
exit "$code"
