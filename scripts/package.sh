#!/usr/bin/env bash
# Builds the release package of one preset and checks it: the zip holds the
# library, the report and uninstall programs, the header, the .def file, the
# import library, README.md, LICENSE and CHANGELOG.md; the binaries' version
# resources carry the version of project() in CMakeLists.txt, the one place
# it is written, and the changelog has an entry for that version.
#   scripts/package.sh [win32|win64]      (default win32)
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-win32}
fail() { echo "package: $*" >&2; exit 1; }

scripts/setup.sh >/dev/null
version=$(sed -n 's/^project(tovrel VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
[ -n "$version" ] || fail "no version in the project() line of CMakeLists.txt"
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target tovrel tovrel-report tovrel-uninstall >/dev/null
build=build/$preset
zip="$build/tovrel-$version-$preset.zip"
rm -f "$zip"
(cd "$build" && cpack -G ZIP >/dev/null)
[ -f "$zip" ] || fail "cpack made no $zip"
unzip -l "$zip"

listing=$(unzip -Z1 "$zip")
binaries=(bin/tovrel.dll bin/tovrel-report.exe bin/tovrel-uninstall.exe)
for entry in "${binaries[@]}" include/tovrel.h lib/tovrel.def lib/tovrel.lib README.md LICENSE CHANGELOG.md; do
    grep -qx "$entry" <<<"$listing" || fail "$entry is not in $zip"
done

# The fixed file version follows its signature 0xFEEF04BD and the structure
# version: the high and low words of the most, then the least significant half.
fixed_version() {
    local offset words
    offset=$(LC_ALL=C grep -obUaP '\xbd\x04\xef\xfe' "$1" | head -1 | cut -d: -f1)
    [ -n "$offset" ] || return 1
    read -r -a words <<<"$(od -An -tu2 -j $((offset + 8)) -N8 "$1")"
    echo "${words[1]}.${words[0]}.${words[3]}.${words[2]}"
}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unzip -q "$zip" "${binaries[@]}" CHANGELOG.md -d "$work"
grep -q "^## $version " "$work/CHANGELOG.md" || fail "CHANGELOG.md has no entry for $version"
for binary in "${binaries[@]}"; do
    fixed=$(fixed_version "$work/$binary") || fail "$binary has no version resource"
    text=$(strings -el "$work/$binary" | grep -A1 -x FileVersion | sed -n 2p)
    [ "$fixed" = "$version.0" ] || fail "$binary: fixed version $fixed, project() says $version"
    [ "$text" = "$version.0" ] || fail "$binary: FileVersion \"$text\", project() says $version"
    echo "$binary: version resource $fixed, FileVersion \"$text\""
done
echo "package: $zip holds what it should, version $version"
