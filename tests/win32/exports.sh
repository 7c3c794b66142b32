#!/bin/sh
# tests/win32/exports.sh OBJDUMP POINTER-SIZE TMSPL32.DLL TMSPL32.DEF ORTH32.DLL ORTH32.DEF HEADER...
# Both DLLs are PE32 files (PE32+ in a 64-bit build) that export exactly the
# names of their .def files at the .def's ordinals, and import system DLLs
# only, so no MinGW runtime DLL has to ship beside them. TMSPL32.DLL exports
# the five Dict functions and nothing else, and carries no code of the client
# layer; ORTH32.DLL exports every function the HEADERs declare with ORTH_CALL.
set -eu
objdump=$1 ptrsize=$2 tmspl32=$3 tmspl32_def=$4 orth32=$5 orth32_def=$6
shift 6
if [ "$ptrsize" = 4 ]; then magic='010b' kind=PE32; else magic='020b' kind=PE32+; fi
system_dlls=' advapi32.dll comctl32.dll comdlg32.dll gdi32.dll kernel32.dll msvcrt.dll shell32.dll user32.dll version.dll '
failed=0
fail() { echo "exports: $*" >&2; failed=1; }

# "name ordinal" lines, sorted, of a .def (suffixes @N stripped) ...
def_exports() {
    sed -e 's/;.*//' "$1" | awk '
        $1 == "LIBRARY" || $1 == "EXPORTS" || NF == 0 { next }
        { name = $1; sub(/@[0-9]+$/, "", name); ord = $2; sub(/^@/, "", ord); print name, ord }' | sort
}
# ... and of a DLL's export table ("[index] name", ordinal = base + index).
dll_exports() {
    "$objdump" -p "$1" | awk '
        /Ordinal Base/ { base = $NF }
        /^\[Ordinal\/Name Pointer\] Table/ { on = 1; next }
        on && NF == 0 { on = 0 }
        on { i = $0; sub(/^[[:space:]]*\[[[:space:]]*/, "", i); sub(/\].*/, "", i); print $NF, i + base }' | sort
}

check_dll() {
    dll=$1 def=$2
    dump=$("$objdump" -p "$dll")
    echo "$dump" | grep -Eq "^Magic[[:space:]]+$magic" || fail "$dll is not $kind"
    want=$(def_exports "$def")
    got=$(dll_exports "$dll")
    [ -n "$want" ] || fail "no exports in $def"
    [ "$got" = "$want" ] || fail "$dll: exports differ from $def
--- want
$want
--- got
$got"
    for imp in $(echo "$dump" | awk '/DLL Name:/ { print tolower($NF) }'); do
        case "$system_dlls" in
        *" $imp "*) ;;
        *) fail "$dll imports $imp, not a system DLL" ;;
        esac
    done
}

check_dll "$tmspl32" "$tmspl32_def"
check_dll "$orth32" "$orth32_def"

names=$(dll_exports "$tmspl32" | awk '{ print $1 }' | tr '\n' ' ')
[ "$names" = "DictAddWord DictCheckWord DictClose DictGetNextSug DictOpen " ] ||
    fail "$tmspl32 exports '$names', not the five Dict functions"

# A log text of the client context marks the client layer's code.
marker='OpenORTH: client id'
grep -aqF "$marker" "$orth32" || fail "$orth32 does not hold the client layer"
if grep -aqF "$marker" "$tmspl32"; then fail "$tmspl32 holds code of the client layer"; fi

exported=" $(dll_exports "$orth32" | awk '{ print $1 }' | tr '\n' ' ') "
declared=$(cat "$@" | grep -Eo 'ORTH_CALL[[:space:]]+[A-Za-z_][A-Za-z_0-9]*[[:space:]]*\(' |
           sed -E 's/ORTH_CALL[[:space:]]+//; s/[[:space:]]*\($//' | sort -u)
[ -n "$declared" ] || fail "no ORTH_CALL functions declared in $*"
for name in $declared; do
    case "$exported" in
    *" $name "*) ;;
    *) fail "$orth32 does not export $name" ;;
    esac
done

if [ "$failed" -ne 0 ]; then exit 1; fi
echo "exports: $kind, exact export tables, system imports only, no client layer in TMSPL32"
