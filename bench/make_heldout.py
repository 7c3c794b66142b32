#!/usr/bin/env python3
"""Writes the held-out misspellings the ranked suggester is judged on (it
is tuned on bench/data/misspellings.txt only).

Source: codespell's dictionary (Debian package codespell,
codespell_lib/data/dictionary.txt), the same list misspellings.txt was
taken from. Kept: entries with a single correction that is a word of
data/en_US.words while the misspelling is not (both taken as ISO-8859-1),
minus every pair of bench/data/misspellings.txt. Output: one pair a line,
misspelling, a tab, the word; ISO-8859-1; source order.

Usage: make_heldout.py OUTPUT [codespell-dictionary]
"""
import os
import sys

SOURCE = "/usr/lib/python3/dist-packages/codespell_lib/data/dictionary.txt"
ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    source = sys.argv[2] if len(sys.argv) > 2 else SOURCE
    with open(os.path.join(ROOT, "data", "en_US.words"), "rb") as f:
        words = {line.rstrip(b"\r\n") for line in f}
    tuned = set()
    with open(os.path.join(ROOT, "bench", "data", "misspellings.txt"), "rb") as f:
        for line in f:
            if line.startswith(b"#") or b"\t" not in line:
                continue
            tuned.add(tuple(line.rstrip(b"\r\n").split(b"\t", 1)))
    kept = []
    with open(source, encoding="utf-8") as f:
        for line in f:
            wrong, arrow, right = line.rstrip("\n").partition("->")
            fixes = [p.strip() for p in right.split(",") if p.strip()]
            if not arrow or len(fixes) != 1:
                continue
            try:
                pair = (wrong.encode("iso-8859-1"), fixes[0].encode("iso-8859-1"))
            except UnicodeEncodeError:
                continue
            if pair[1] in words and pair[0] not in words and pair not in tuned:
                kept.append(pair)
    with open(sys.argv[1], "wb") as f:
        f.write(b"# Held-out misspellings: made by bench/make_heldout.py from codespell's dictionary.\n")
        for wrong, right in kept:
            f.write(wrong + b"\t" + right + b"\n")
    print(f"{sys.argv[1]}: {len(kept)} pairs")


if __name__ == "__main__":
    main()
