#!/bin/sh
# tests/dict/exports.sh LIBRARY — the dictionary library exports exactly the
# five Dict functions.
set -eu
got=$(nm -D --defined-only "$1" | awk '$2 ~ /^[TtWDdBb]$/ {print $3}' | sort | tr '\n' ' ')
want="DictAddWord DictCheckWord DictClose DictGetNextSug DictOpen "
if [ "$got" != "$want" ]; then
    echo "exports: got '$got', want '$want'" >&2
    exit 1
fi
