#!/usr/bin/env bash
# Installs what the build and the tests need, and nothing when all is present.
# Safe to run again: every step checks before it acts.
set -euo pipefail

need=()
have() { command -v "$1" >/dev/null 2>&1; }

have cmake || need+=(cmake)
have ninja || need+=(ninja-build)
have i686-w64-mingw32-g++-posix || need+=(g++-mingw-w64-i686-posix)
have x86_64-w64-mingw32-g++-posix || need+=(g++-mingw-w64-x86-64-posix)
have i686-w64-mingw32-windres || need+=(binutils-mingw-w64-i686)
have g++ || need+=(g++)
[ -f /usr/src/googletest/CMakeLists.txt ] || need+=(googletest)
# scripts/fuzz.sh: clang with its libFuzzer and sanitizer runtimes.
have clang++ || need+=(clang)
dpkg -s libclang-rt-14-dev >/dev/null 2>&1 || need+=(libclang-rt-14-dev)
# The cabinet fuzz target holds the MSZIP check against zlib.
dpkg -s zlib1g-dev >/dev/null 2>&1 || need+=(zlib1g-dev)
have xvfb-run || need+=(xvfb)
# scripts/package.sh: cpack -G ZIP and the check of the zip's contents.
have zip || need+=(zip)
have unzip || need+=(unzip)
# scripts/screenshots.sh: xwd grabs the virtual screen, ImageMagick makes PNGs.
have xwd || need+=(x11-apps)
dpkg -s imagemagick >/dev/null 2>&1 || need+=(imagemagick)

# wine32 runs the i686 build; wine64 stands in on hosts that run no 32-bit
# user code (scripts/wine-env.sh picks the one that works).
wine_ok() {
  have wine && have wineserver && dpkg -s wine64 >/dev/null 2>&1 && dpkg -s wine32:i386 >/dev/null 2>&1
}

SUDO=""
[ "$(id -u)" -eq 0 ] || SUDO="sudo"

if [ ${#need[@]} -gt 0 ] || ! wine_ok; then
  export DEBIAN_FRONTEND=noninteractive
  if ! dpkg --print-foreign-architectures | grep -x i386 >/dev/null; then
    $SUDO dpkg --add-architecture i386
  fi
  # A lagging mirror index makes update exit non-zero while the others are fine.
  $SUDO apt-get update -qq || echo "setup: apt-get update reported errors; going on with the indexes it got"
  if [ ${#need[@]} -gt 0 ]; then
    $SUDO apt-get install -y -qq --no-install-recommends "${need[@]}"
  fi
  if ! wine_ok; then
    if ! $SUDO apt-get install -y -qq wine wine64 wine32:i386; then
      # The i386 security index can lag behind amd64; Multi-Arch: same
      # libraries must then match the older release exactly.
      pref=/etc/apt/preferences.d/tovrel-wine32
      $SUDO tee "$pref" >/dev/null <<'PIN'
Package: *
Pin: release l=Debian-Security
Pin-Priority: 100

Package: *
Pin: release n=bookworm
Pin-Priority: 1001

Package: *
Pin: release n=bookworm-updates
Pin-Priority: 1001
PIN
      $SUDO apt-get update -qq || true
      $SUDO apt-get install -y -qq --allow-downgrades wine wine64 wine32:i386
    fi
  fi
fi

wine_ok || { echo "setup: wine32 is still missing" >&2; exit 1; }
echo "setup: toolchain and wine $(dpkg-query -W -f '${Version}' wine) ready"
