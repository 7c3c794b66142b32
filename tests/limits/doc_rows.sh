#!/bin/sh
# Every test docs/robustness.md names still exists: Group.Name as a TEST or
# TEST_F under tests/, fuzz_<name> as fuzz/<name>_fuzz.cpp.
# Usage: doc_rows.sh SOURCE_DIR
src="$1"
doc="$src/docs/robustness.md"
[ -f "$doc" ] || { echo "missing $doc"; exit 1; }
missing=0
names=$(grep -o '`[A-Za-z_][A-Za-z0-9_]*\.[A-Za-z0-9_]*`\|`fuzz_[a-z]*`' "$doc" | tr -d '`' | sort -u)
for n in $names; do
  case "$n" in
    fuzz_*) [ -f "$src/fuzz/${n#fuzz_}_fuzz.cpp" ] && continue ;;
    *.md) continue ;;
    *) grep -rqE "TEST(_F)?\(${n%%.*}, ${n#*.}\)" "$src/tests" && continue ;;
  esac
  echo "docs/robustness.md names $n, which no longer exists"
  missing=1
done
[ -n "$names" ] || { echo "no test names found"; exit 1; }
exit $missing
