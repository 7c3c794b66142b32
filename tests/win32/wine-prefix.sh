#!/bin/sh
# tests/win32/wine-prefix.sh PREFIX ARCH — makes a fresh wine prefix for the
# tests (ARCH win32, or win64 where only 64-bit wine can be had), with the
# crash dialog off, and waits for its wineserver to end. One program,
# win32_client_ini.exe, is told a Win32s 3.10 version word (non-NT, below
# 3.95), under which the settings store uses INI files instead of the
# registry.
#
# For the dialogs: the wine fonts are copied into the prefix's Fonts folder
# (Debian's wine does not find them otherwise, and MS Sans Serif falls back
# to a wider font), and the X11 driver draws its own window frames instead
# of waiting for a window manager (there is none under Xvfb; every EndDialog
# would wait for one for about 2 s).
set -eu
prefix=$1 arch=$2
case "$prefix" in
*/wineprefix) ;;
*) echo "wine-prefix: refusing to remake $prefix (not a .../wineprefix folder)" >&2; exit 1 ;;
esac
. "$(dirname "$0")/wine-env.sh"
if [ -d "$prefix" ]; then
    timeout 30 wineserver -k 2>/dev/null || true
    rm -rf "$prefix"
fi
mkdir -p "$prefix/home"
timeout 150 wine wineboot --init >"$prefix/wineboot.log" 2>&1 || {
    cat "$prefix/wineboot.log"; echo "wine-prefix: wineboot failed" >&2; exit 1; }
cat >"$prefix/orth-tests.reg" <<'REG'
REGEDIT4

[HKEY_CURRENT_USER\Software\Wine\WineDbg]
"ShowCrashDialog"=dword:00000000

[HKEY_CURRENT_USER\Software\Wine\AppDefaults\win32_client_ini.exe]
"Version"="win31"

[HKEY_CURRENT_USER\Software\Wine\X11 Driver]
"Managed"="N"
REG
fonts="$prefix/drive_c/windows/Fonts"
if [ -d /usr/share/wine/fonts ] && [ -d "$fonts" ]; then
    cp /usr/share/wine/fonts/* "$fonts/"
fi
timeout 60 wine regedit /S "$prefix/orth-tests.reg"
timeout 60 wineserver -w
test -f "$prefix/system.reg" || { echo "wine-prefix: no registry in $prefix" >&2; exit 1; }
echo "wine-prefix: $prefix ready ($arch)"
