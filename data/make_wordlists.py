#!/usr/bin/env python3
"""Regenerates en_US.words and en_GB.words from Debian's wamerican and
wbritish lists (/usr/share/dict): every entry, UTF-8 to ISO-8859-1, sorted
byte-wise, CR LF line ends. The dictionary build (orth_mkdict --stems)
reduces possessive entries to the stems the checker looks up.

Usage: make_wordlists.py [source-folder] [output-folder]
"""
import os
import sys

LISTS = [("american-english", "en_US.words"), ("british-english", "en_GB.words")]


def convert(src, dst):
    words, unmappable = set(), 0
    with open(src, encoding="utf-8") as f:
        for line in f:
            word = line.rstrip("\r\n")
            if not word:
                continue
            try:
                words.add(word.encode("iso-8859-1"))
            except UnicodeEncodeError:
                unmappable += 1
    ordered = sorted(words)  # bytes sort by unsigned value
    with open(dst, "wb") as f:
        for w in ordered:
            f.write(w + b"\r\n")
    print(f"{dst}: {len(ordered)} words, {unmappable} outside ISO-8859-1 dropped")


def main():
    src = sys.argv[1] if len(sys.argv) > 1 else "/usr/share/dict"
    out = sys.argv[2] if len(sys.argv) > 2 else os.path.dirname(os.path.abspath(__file__))
    for name, target in LISTS:
        convert(os.path.join(src, name), os.path.join(out, target))


if __name__ == "__main__":
    main()
