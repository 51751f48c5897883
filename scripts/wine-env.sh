# Sourced by the Wine scripts: the environment every prefix of the project runs with.
export WINEDEBUG="${WINEDEBUG:--all}"
# No desktop menu entries, and no Mono or Gecko installer dialogs.
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-winemenubuilder.exe=d;mscoree=d;mshtml=d}"
export LANG="${LANG:-C}"
unset DISPLAY WAYLAND_DISPLAY

# win32 where this machine runs 32-bit code; some hosts run 64-bit user code
# only (the kernel says "IA-32 emulation off"), and there 64-bit Wine runs the
# x86_64 build of the same sources instead.
tovrel_wine_arch() {
    if [ -n "${TOVREL_WINE_ARCH:-}" ]; then
        echo "$TOVREL_WINE_ARCH"
    elif [ -x /usr/lib/wine/wine ] && /usr/lib/wine/wine --version >/dev/null 2>&1; then
        echo win32
    else
        echo win64
    fi
}

TOVREL_WINE_ARCH=$(tovrel_wine_arch)
export TOVREL_WINE_ARCH WINEARCH=$TOVREL_WINE_ARCH
if [ "$TOVREL_WINE_ARCH" = win64 ]; then
    export WINELOADER=/usr/lib/wine/wine64
    TOVREL_WINE=/usr/lib/wine/wine64
else
    TOVREL_WINE=wine
fi

tovrel_wine_root() {
    echo "${TOVREL_WINE_ROOT:-$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build/wine}"
}
