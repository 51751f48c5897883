#!/usr/bin/env bash
# Runs one Windows program in a fresh copy of a template prefix, then ends
# that prefix's wineserver and removes the copy.
#   wine-test.sh FLAVOR PROGRAM [ARGS...]
# TOVREL_KEEP_PREFIX=1 keeps the copy for a look afterwards.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/wine-env.sh"
flavor=$1; shift
root=$(tovrel_wine_root)

"$here/wine-prefix.sh" "$flavor" || { echo "wine-test: no template for $flavor" >&2; exit 1; }

mkdir -p "$root/run"
run=$(mktemp -d "$root/run/$flavor.XXXXXX")
cp -a "$root/templates/$TOVREL_WINE_ARCH-$flavor/." "$run/"
export HOME="$run/home" WINEPREFIX="$run/prefix"

cleanup() {
    wineserver -k >/dev/null 2>&1
    if [ "${TOVREL_KEEP_PREFIX:-0}" = 1 ]; then
        echo "wine-test: prefix kept in $WINEPREFIX" >&2
    else
        rm -rf "$run"
    fi
}
trap cleanup EXIT

"$TOVREL_WINE" "$@"
