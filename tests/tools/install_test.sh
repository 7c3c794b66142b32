#!/bin/sh
# tests/tools/install_test.sh BINARY_DIR — installs the build tree into a
# temporary prefix and runs the installed orth from another folder on its
# built-in dictionary.
set -u
bin=$1
prefix=$(mktemp -d "${TMPDIR:-/tmp}/orth-install-XXXXXX")
trap 'rm -rf "$prefix"' EXIT
cmake --install "$bin" --prefix "$prefix" >/dev/null || { echo "install failed" >&2; exit 1; }
orth="$prefix/bin/orth"
[ -x "$orth" ] || { echo "no $orth" >&2; exit 1; }
cd "$prefix" || exit 1
unset ORTH_DICPATH
out=$(printf 'The cat sat on teh mat.\n' | "$orth" list)
rc=$?
if [ "$rc" -ne 1 ] || [ "$out" != "teh" ]; then
    echo "installed orth list: status $rc, output '$out'" >&2
    exit 1
fi
out=$("$orth" suggest hello)
if [ "$?" -ne 0 ] || [ "$out" != "* hello" ]; then
    echo "installed orth suggest: '$out'" >&2
    exit 1
fi
