#!/bin/sh
# tests/integration/install_test.sh BINARY_DIR SOURCE_DIR [CFLAGS]
# Installs the build tree into a temporary prefix, checks the installed
# layout (namespaced headers, versioned shared libraries with their SONAME
# and only the C interface exported, the provider, dictionaries, package
# files, man page), runs the installed orth on its built-in dictionary from
# another folder, then builds the README's host program against the
# installed tree twice, with pkg-config and with CMake's find_package, and
# runs both. CFLAGS: extra compiler flags (a sanitizer build's).
set -u
bin=$1 src=$2 cflags=${3:-}
prefix=$(mktemp -d "${TMPDIR:-/tmp}/orth-install-XXXXXX")
trap 'rm -rf "$prefix"' EXIT
cmake --install "$bin" --prefix "$prefix" >/dev/null || { echo "install failed"; exit 1; }
failures=0
fail() { echo "FAIL $*"; failures=$((failures + 1)); }

libdir=$(dirname "$(find "$prefix" -name liborth.so -print -quit)")
[ -d "$libdir" ] || { echo "no liborth.so installed"; exit 1; }
for f in include/orth/orth.h include/orth/tmspl32.h include/orth/orth_client.h share/orth/en_US/MAIN.CLX share/orth/en_GB/MAIN.CLX \
         share/orth/en_US.aff share/man/man1/orth.1 bin/orth; do
    [ -f "$prefix/$f" ] || fail "missing $f"
done
for f in liborth.a liborth.so libtmspl32.so pkgconfig/orth.pc cmake/orth/orthConfig.cmake \
         cmake/orth/orthConfigVersion.cmake cmake/orth/orthTargets.cmake; do
    [ -e "$libdir/$f" ] || fail "missing $libdir/$f"
done
[ -f "$libdir/enchant-2/enchant_orth.so" ] || ! pkg-config --exists enchant-2 || fail "missing the Enchant provider"
for lib in orth tmspl32; do
    soname=$(readelf -d "$libdir/lib$lib.so" | sed -n 's/.*Library soname: \[\(.*\)\]/\1/p')
    [ "$soname" = "lib$lib.so.4" ] || fail "lib$lib.so: SONAME '$soname'"
    [ -f "$libdir/$soname" ] || fail "no $soname beside lib$lib.so"
done
# Exported: exactly the functions the installed headers declare.
sed -n 's/.*_CALL \**\([A-Za-z_0-9]*\)(.*/\1/p' "$prefix"/include/orth/*.h | sort -u > "$prefix/declared"
nm -D --defined-only "$libdir/liborth.so" | awk '{print $3}' | sort -u > "$prefix/exported"
others=$(comm -13 "$prefix/declared" "$prefix/exported" | tr '\n' ' ')
[ -z "$others" ] || fail "liborth.so exports more than the C interface: $others"
grep -q '^ORTH_CheckWord$' "$prefix/exported" || fail "liborth.so does not export ORTH_CheckWord"

cd "$prefix" || exit 1
# The installed orth, run from another folder, finds its built-in dictionary.
out=$(printf 'The cat sat on teh mat.\n' | env -u ORTH_DICPATH "$prefix/bin/orth" list)
rc=$?
[ "$rc" -eq 1 ] && [ "$out" = "teh" ] || fail "installed orth list: status $rc, output '$out'"
out=$(env -u ORTH_DICPATH "$prefix/bin/orth" suggest hello)
[ "$out" = "* hello" ] || fail "installed orth suggest: '$out'"

export PKG_CONFIG_PATH="$libdir/pkgconfig" LD_LIBRARY_PATH="$libdir"
run_host() {  # run_host WHAT PROGRAM
    out=$("$2" "$prefix/share/orth/en_US" recieve Hello 2>&1)
    case "$out" in
        "recieve: receive ("*"Hello: ok") ;;
        *) fail "$1 consumer printed: $out" ;;
    esac
}
# shellcheck disable=SC2046
cc $cflags -o host_pc "$src/examples/host.c" $(pkg-config --cflags --libs orth) && run_host pkg-config ./host_pc ||
    fail "pkg-config consumer did not build"
[ "$(pkg-config --variable=dictdir orth)" -ef "$prefix/share/orth" ] || fail "orth.pc dictdir"

mkdir consumer
cat > consumer/CMakeLists.txt <<CMAKE
cmake_minimum_required(VERSION 3.16)
project(consumer C)
find_package(orth 4.0 REQUIRED)
add_executable(host_cmake "$src/examples/host.c")
target_link_libraries(host_cmake PRIVATE orth::orth)
if(NOT IS_DIRECTORY "\${ORTH_DICTIONARY_DIR}/en_US")
  message(FATAL_ERROR "ORTH_DICTIONARY_DIR: \${ORTH_DICTIONARY_DIR}")
endif()
CMAKE
if cmake -S consumer -B consumer/build -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_C_FLAGS="$cflags" >consumer/log 2>&1 &&
   cmake --build consumer/build >>consumer/log 2>&1; then
    run_host CMake consumer/build/host_cmake
else
    fail "CMake consumer did not build:"; cat consumer/log
fi
cat > consumer/CMakeLists.txt <<CMAKE
cmake_minimum_required(VERSION 3.16)
project(too_new C)
find_package(orth 5.0 REQUIRED)
CMAKE
cmake -S consumer -B consumer/build5 -DCMAKE_PREFIX_PATH="$prefix" >/dev/null 2>&1 && fail "find_package(orth 5.0) succeeded"

[ "$failures" -eq 0 ] && echo "install_test: all passed"
[ "$failures" -eq 0 ]
