#!/usr/bin/env bash
# Runs tovrel-uninstall in the prefix that the main job kept, with the given
# arguments, and exits with its exit code:
#   scripts/uninstall.sh --what-if "Plenarc Demo 600"   the plan; nothing changes
#   scripts/uninstall.sh "Plenarc Demo 600"             takes the model back
#   scripts/uninstall.sh --json "Plenarc Demo 600"
# Once it has run without --what-if, the model is gone from that prefix;
# scripts/main-job.sh installs it anew. TOVREL_WINE_ARCH picks the prefix
# and the build, as for the main job.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/wine-env.sh
arch=$TOVREL_WINE_ARCH
job="$(tovrel_wine_root)/main-job-$arch"
uninstall="build/$arch/bin/tovrel-uninstall.exe"
[ -d "$job/prefix" ] || { echo "uninstall: no prefix in $job; run scripts/main-job.sh first" >&2; exit 3; }
[ -f "$uninstall" ] || { echo "uninstall: $uninstall not built" >&2; exit 3; }
export HOME="$job/home" WINEPREFIX="$job/prefix"
trap 'wineserver -k >/dev/null 2>&1 || true' EXIT
code=0
"$TOVREL_WINE" "$uninstall" "$@" | tr -d '\r' || code=$?
exit "$code"
