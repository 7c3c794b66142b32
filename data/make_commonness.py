#!/usr/bin/env python3
"""Regenerates en.freq, the frequency list the built-in dictionaries are
ranked with, from Debian's scowl package (/usr/share/dict/scowl).

SCOWL sorts English words into size levels (10, 20, 35, 40, 50, ... 95): a
word at a small level is common, one at a large level rare. Each word of
en_US.words and en_GB.words gets the smallest level of any SCOWL list that
holds it (word lists, proper names, abbreviations, contractions, any
spelling region), written as a count that grows four times per level step,
so that the dictionary build (orth_mkdict --freq, or orth compress
--frequencies) turns each level into its own commonness class:

    level 10: 64, 20: 16, 35: 4, 40: 1

Words of level 50 and above, the rest of the dictionaries, are left out:
the build ranks unlisted words one class below the rarest listed ones,
which is where level 50 belongs, and the file stays half the size.

Output: ISO-8859-1, "word count" with a tab between, byte-wise word order,
CR LF line ends, a comment header naming the source.

Usage: make_commonness.py [scowl-folder] [data-folder]
"""
import os
import sys

LEVELS = [10, 20, 35, 40, 50, 55, 60, 70, 80, 95]
LISTED = [10, 20, 35, 40]


def scowl_levels(folder):
    best = {}
    for name in os.listdir(folder):
        stem, _, level = name.rpartition(".")
        if not level.isdigit() or int(level) not in LEVELS:
            continue
        with open(os.path.join(folder, name), encoding="utf-8", errors="replace") as f:
            for line in f:
                word = line.rstrip("\r\n")
                try:
                    key = word.encode("iso-8859-1")
                except UnicodeEncodeError:
                    continue
                if key and (key not in best or best[key] > int(level)):
                    best[key] = int(level)
    return best


def main():
    scowl = sys.argv[1] if len(sys.argv) > 1 else "/usr/share/dict/scowl"
    data = sys.argv[2] if len(sys.argv) > 2 else os.path.dirname(os.path.abspath(__file__))
    levels = scowl_levels(scowl)
    words = set()
    for name in ("en_US.words", "en_GB.words"):
        with open(os.path.join(data, name), "rb") as f:
            words.update(line.rstrip(b"\r\n") for line in f if line.strip())
    out = os.path.join(data, "en.freq")
    listed = 0
    with open(out, "wb") as f:
        f.write(b"# Word commonness for the built-in dictionaries, from SCOWL size levels\r\n")
        f.write(b"# (Debian package scowl) by data/make_commonness.py; see COPYING.wordlists.\r\n")
        for word in sorted(words):
            level = levels.get(word)
            if level not in LISTED:
                continue
            count = 4 ** (len(LISTED) - 1 - LISTED.index(level))
            f.write(word + b"\t" + str(count).encode() + b"\r\n")
            listed += 1
    print(f"{out}: {listed} of {len(words)} words listed")


if __name__ == "__main__":
    main()
