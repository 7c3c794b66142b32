# tests/win32/wine-env.sh — sourced by the wine scripts with $prefix and
# $arch set: the environment of every wine run of the tests. The prefix and
# the home, config and cache folders all live inside the build tree, so no
# run touches the user's own files; the debug channels, the crash dialog
# (also switched off in the prefix's registry), the desktop menu builder and
# the offers to install .NET and HTML engines are all off. Programs run
# without a display unless ORTH_WINE_DISPLAY names one (the dialog tests'
# own Xvfb server, dialogs-run.sh).
export WINEPREFIX="$prefix"
export WINEARCH="$arch"
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="
export HOME="$prefix/home"
export XDG_CONFIG_HOME="$prefix/home/.config"
export XDG_DATA_HOME="$prefix/home/.local/share"
export XDG_CACHE_HOME="$prefix/home/.cache"
unset WAYLAND_DISPLAY
if [ -n "${ORTH_WINE_DISPLAY:-}" ]; then
    export DISPLAY="$ORTH_WINE_DISPLAY"
else
    unset DISPLAY
fi
