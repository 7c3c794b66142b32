#!/usr/bin/env python3
"""Chooses the suffix table for a word list by measurement.

Models the compressor's word coding (sharing code, literals, then a suffix
code or the end byte) and picks suffixes greedily: each round takes the
ending that saves the most coded bytes given the suffixes already chosen,
re-measured lazily (a suffix's saving can only shrink as others are added).
The first 26 picks cost one byte per use (primary table), the next 256 two
(secondary table).

Usage: choose_suffixes.py <words file> > en.suffixes
"""
import heapq
import sys
from collections import defaultdict

PRIMARY, SECONDARY, MAX_LEN, MIN_USES = 26, 256, 8, 20


def coded_starts(words):
    """(word, start) pairs: start is where literals begin after any sharing code."""
    out, prev, block = [], b"", None
    for w in words:
        if len(w) < 3:
            continue
        if w[:3] != block:
            block, prev = w[:3], b""
        k = 0
        while 3 + k < len(w) and 3 + k < len(prev) and w[3 + k] == prev[3 + k]:
            k += 1
        out.append((w, 3 + k if k >= 2 else 3))
        prev = w
    return out


def main():
    words = open(sys.argv[1], "rb").read().split(b"\r\n")
    coded = coded_starts([w for w in words if w])
    uses = defaultdict(list)  # ending -> [(word index, position)]
    for n, (w, s) in enumerate(coded):
        for i in range(max(s, len(w) - MAX_LEN), len(w)):
            uses[w[i:]].append((n, i))
    candidates = {x: u for x, u in uses.items() if len(u) >= MIN_USES}
    match = [len(w) for w, _ in coded]  # position of the current suffix match
    cost = [1] * len(coded)             # byte cost of the current ending code

    def saving(x, c):
        total = 0
        for n, i in candidates[x]:
            if i < match[n]:
                total += (match[n] - i + cost[n]) - c
        return total

    chosen = []
    for c, count in ((1, PRIMARY), (2, SECONDARY)):
        heap = [(-saving(x, c), x) for x in candidates if x not in chosen]
        heapq.heapify(heap)
        picked = 0
        while heap and picked < count:
            neg, x = heapq.heappop(heap)
            now = saving(x, c)
            if heap and now < -heap[0][0]:
                heapq.heappush(heap, (-now, x))
                continue
            if now <= 0:
                break
            chosen.append(x)
            picked += 1
            for n, i in candidates[x]:
                if i < match[n]:
                    match[n], cost[n] = i, c
            print(f"{x.decode('latin-1')}\t{now}", file=sys.stderr)
    sys.stdout.buffer.write(b"# English suffixes chosen by measurement on en_US.words\r\n")
    for x in chosen:
        sys.stdout.buffer.write(x + b"\r\n")


if __name__ == "__main__":
    main()
