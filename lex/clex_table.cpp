// lex/clex_table.cpp — word tables: each loaded segment's words decoded
// once, so that exact and case-insensitive lookups are hash probes and the
// candidate search reads words instead of decoding them again.
//
// (1) A table exists only for a segment whose data is loaded and decodes
//     cleanly, with block third bytes strictly ascending and the words of
//     each block strictly ascending (buildTable checks all of it, silently).
//     Over such data the walks of clex.cpp can neither fail nor stop early
//     for any reason but a word's order, so each answer below equals theirs:
//     - the exact walk finds a word iff it is one of the block's words
//       (tableHolds);
//     - the case-insensitive walk stops at the first word that folds equal
//       to or above the sought word and finds it iff that word folds equal.
//       That first word always folds above every word before it, so it is
//       one of the "records" the folded index holds, and at most one record
//       folds equal to any word (records rise strictly): the walk finds the
//       word iff a record folds equal to it (tableFindFolded);
//     - a visiting walk sees the same words in the same order (tableVisit).
// (2) With a budget, loaded data plus all tables stay within it: room for a
//     table is made by dropping the tables of the least recently used other
//     segments (reserveTableBytes); when even that cannot make room, the
//     segment goes without one. Dropping a table never drops data, so the
//     eviction of segments follows the budget rule of loadSeg unchanged.
// (3) state->tableBytes is the sum of the bytes of all attached tables.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "check/chartab.h"
#include "lex/clex_int.h"

namespace {

uint32_t readU32(const uint8_t *p) {
    return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) |
           (static_cast<uint32_t>(p[2]) << 16) | (static_cast<uint32_t>(p[3]) << 24);
}

// Little-endian loads of 8 and 4 bytes.
uint64_t load64(const uint8_t *p) {
    uint64_t v;
    std::memcpy(&v, p, 8);
    return v;
}
uint32_t load32(const uint8_t *p) {
    uint32_t v;
    std::memcpy(&v, p, 4);
    return v;
}

// A hash of n bytes (n >= 3) read eight at a time; the last eight (or, for
// shorter words, the first and last four) overlap what came before, so no
// byte past the word is read.
uint32_t hashBytes(const uint8_t *p, size_t n) {
    constexpr uint64_t k = 0x9E3779B97F4A7C15u;
    uint64_t h = n * k;
    if (n >= 8) {
        size_t i = 0;
        for (; i + 8 < n; i += 8) h = (h ^ load64(p + i)) * k;
        h = (h ^ load64(p + n - 8)) * k;
    } else if (n >= 4) {
        h = (h ^ ((uint64_t{load32(p)} << 32) | load32(p + n - 4))) * k;
    } else {
        h = (h ^ (p[0] | (p[1] << 8) | (uint64_t{p[2]} << 16))) * k;
    }
    h ^= h >> 32;
    return static_cast<uint32_t>(h);
}

// Whether n bytes (n >= 3) are equal, compared as hashBytes reads them.
bool sameBytes(const uint8_t *a, const uint8_t *b, size_t n) {
    if (n >= 8) {
        for (size_t i = 0; i + 8 < n; i += 8) {
            if (load64(a + i) != load64(b + i)) return false;
        }
        return load64(a + n - 8) == load64(b + n - 8);
    }
    if (n >= 4) return load32(a) == load32(b) && load32(a + n - 4) == load32(b + n - 4);
    return a[0] == b[0] && a[1] == b[1] && a[2] == b[2];
}

// FNV-1a over the bytes' folded forms under a class row.
uint32_t hashFolded(const uint8_t *p, const uint8_t *cls) {
    uint32_t h = 2166136261u;
    for (; *p != 0; ++p) {
        uint8_t c = (cls[*p] & CC_UPPER) ? static_cast<uint8_t>(*p + 32) : *p;
        h = (h ^ c) * 16777619u;
    }
    return h;
}

// A hash slot: 0 when empty, else the word's offset in text + 1 in its low
// 24 bits and the top 8 bits of the word's hash above them, compared before
// the text is read (most probes that miss then touch no text).
constexpr uint32_t kSlotOffsetMask = 0xFFFFFF;
uint32_t makeSlot(uint32_t at, uint32_t hash) { return (at + 1) | (hash & ~kSlotOffsetMask); }
bool slotMayHold(uint32_t slot, uint32_t hash) { return ((slot ^ hash) & ~kSlotOffsetMask) == 0; }
uint32_t slotOffset(uint32_t slot) { return (slot & kSlotOffsetMask) - 1; }

// Slots for n entries at most half full: a power of two, at least 2.
uint32_t slotsFor(uint32_t n) {
    uint32_t slots = 2;
    while (slots < 2 * n) slots *= 2;
    return slots;
}

const char *wordAt(const CLexWordTable *t, uint32_t at) { return tableWord(t, at); }
uint32_t nextWord(const CLexWordTable *t, uint32_t at) { return tableNext(t, at); }

// Walks the segment's blocks and words as the decoder sees them, calling
// onBlock(third) and onWord(buf, len) for each; false (silently) when the
// data is not what invariant (1) asks.
template <typename OnBlock, typename OnWord>
bool walkCleanly(const CLexState *state, const CLexSeg &s, OnBlock onBlock, OnWord onWord) {
    char buf[kWordBufSize], prev[kWordBufSize];
    buf[0] = static_cast<char>(s.key[0]);
    buf[1] = static_cast<char>(s.key[1]);
    int lastThird = -1;
    for (uint32_t pos = 0; pos < s.length;) {
        if (s.length - pos < kClexBlockHeaderSize) return false;
        uint32_t bodyLen = readU32(s.data + pos);
        uint8_t third = s.data[pos + 4];
        uint32_t i = pos + kClexBlockHeaderSize;
        if (bodyLen > s.length - i || third <= lastThird) return false;
        lastThird = third;
        pos = i + bodyLen;
        if (!onBlock(third)) return false;
        buf[2] = static_cast<char>(third);
        uint32_t len = 0;
        bool first = true;
        for (;;) {
            DecodeStep step = decodeWord(state, s.data, &i, pos, buf, &len, false);
            if (step == kCorrupt) return false;
            if (step == kBodyDone) break;
            if (!first && compareBytes(prev, buf) >= 0) return false;
            std::memcpy(prev, buf, len + 1);
            first = false;
            if (!onWord(buf, len)) return false;
        }
    }
    return true;
}

CLexWordTable *buildTable(const CLexState *state, const CLexSeg &s) {
    uint32_t words = 0, textBytes = 0, blocks = 0;
    bool clean = walkCleanly(
        state, s, [&](uint8_t) { return ++blocks <= 0xFFFF; },
        [&](const char *, uint32_t len) {
            textBytes += len + 3;
            return ++words <= 0xFFFF;
        });
    if (!clean || words == 0 || textBytes >= kSlotOffsetMask) return nullptr;
    const uint32_t slots = slotsFor(words);
    // One allocation: the record, the hash slots, the blocks and the text,
    // each part aligned for its type.
    const size_t offExact = (sizeof(CLexWordTable) + 7) & ~size_t{7};
    const size_t offBlocks = offExact + slots * sizeof(uint32_t);
    const size_t offText = offBlocks + blocks * sizeof(CLexBlockSpan);
    const size_t total = offText + textBytes;
    auto *mem = static_cast<uint8_t *>(std::calloc(total, 1));
    if (mem == nullptr) return nullptr;
    auto *t = reinterpret_cast<CLexWordTable *>(mem);
    auto *exact = reinterpret_cast<uint32_t *>(mem + offExact);
    auto *spans = reinterpret_cast<CLexBlockSpan *>(mem + offBlocks);
    uint8_t *text = mem + offText;
    uint32_t at = 0, b = 0, n = 0;
    const uint8_t *prev = nullptr;
    walkCleanly(
        state, s,
        [&](uint8_t third) {
            if (b > 0) spans[b - 1].end = at;
            spans[b++] = CLexBlockSpan{at, at, third};
            return true;
        },
        [&](const char *word, uint32_t len) {
            uint8_t *entry = text + at;
            uint32_t shared = 0;
            if (prev != nullptr) {
                while (prev[shared] != 0 && prev[shared] == static_cast<uint8_t>(word[shared])) ++shared;
            }
            entry[0] = static_cast<uint8_t>(len);
            entry[1] = static_cast<uint8_t>(shared);
            std::memcpy(entry + 2, word, len + 1);
            prev = entry + 2;
            const uint32_t hash = hashBytes(entry + 2, len);
            uint32_t h = hash & (slots - 1);
            while (exact[h] != 0) h = (h + 1) & (slots - 1);
            exact[h] = makeSlot(at, hash);
            at += len + 3;
            ++n;
            return true;
        });
    spans[b - 1].end = at;
    t->text = text;
    t->textSize = textBytes;
    t->blocks = spans;
    t->blockCount = static_cast<uint16_t>(blocks);
    t->wordCount = static_cast<uint16_t>(words);
    t->exact = exact;
    t->exactMask = slots - 1;
    t->folded = nullptr;
    t->foldedMask = 0;
    t->foldRow = -1;
    t->values = nullptr;
    t->valuesKind = 0;
    t->bytes = static_cast<uint32_t>(total);
    return t;
}

// Invariant (2): room for need more bytes of tables beside seg's.
bool reserveTableBytes(CLexState *state, uint16_t seg, uint32_t need) {
    if (state->budget == 0) return true;
    for (;;) {
        uint64_t used = uint64_t{state->budget - state->freeBudget} + state->tableBytes;
        if (used + need <= state->budget) return true;
        int32_t victim = -1;
        for (uint16_t i = 0; i < state->segCount; ++i) {
            const CLexSeg &c = state->segs[i];
            if (i != seg && c.table != nullptr &&
                (victim < 0 || c.lastUse < state->segs[victim].lastUse)) {
                victim = i;
            }
        }
        if (victim < 0) return false;
        dropWordTable(state, &state->segs[victim]);
    }
}

// Builds the folded index of a table for a class row (replacing one for
// another row); false when there is no room or memory for it.
bool buildFolded(CLexState *state, uint16_t seg, int row) {
    CLexWordTable *t = state->segs[seg].table;
    const uint8_t *cls = charClassTable[row];
    if (t->folded != nullptr) {
        const uint32_t had = (t->foldedMask + 1) * sizeof(uint32_t);
        std::free(t->folded);
        t->folded = nullptr;
        t->foldRow = -1;
        t->bytes -= had;
        state->tableBytes -= had;
    }
    uint32_t records = 0;
    const char *top = nullptr;
    for (uint32_t at = 0; at < t->textSize; at = nextWord(t, at)) {
        const char *w = wordAt(t, at);
        if (top == nullptr || compareNoCase(w, top, row) > 0) {
            top = w;
            ++records;
        }
    }
    const uint32_t slots = slotsFor(records);
    const uint32_t need = slots * sizeof(uint32_t);
    if (!reserveTableBytes(state, seg, need)) return false;
    auto *folded = static_cast<uint32_t *>(std::calloc(slots, sizeof(uint32_t)));
    if (folded == nullptr) return false;
    top = nullptr;
    for (uint32_t at = 0; at < t->textSize; at = nextWord(t, at)) {
        const char *w = wordAt(t, at);
        if (top != nullptr && compareNoCase(w, top, row) <= 0) continue;
        top = w;
        const uint32_t hash = hashFolded(reinterpret_cast<const uint8_t *>(w), cls);
        uint32_t h = hash & (slots - 1);
        while (folded[h] != 0) h = (h + 1) & (slots - 1);
        folded[h] = makeSlot(at, hash);
    }
    t->folded = folded;
    t->foldedMask = slots - 1;
    t->foldRow = static_cast<int16_t>(row);
    t->bytes += need;
    state->tableBytes += need;
    return true;
}

}  // namespace

void attachWordTable(CLexState *state, uint16_t seg) {
    CLexSeg &s = state->segs[seg];
    if (state->plainWalks || s.data == nullptr || s.table != nullptr) return;
    CLexWordTable *t = buildTable(state, s);
    if (t == nullptr) return;
    if (!reserveTableBytes(state, seg, t->bytes)) {
        std::free(t);
        return;
    }
    s.table = t;
    state->tableBytes += t->bytes;
}

void dropWordTable(CLexState *state, CLexSeg *seg) {
    CLexWordTable *t = seg->table;
    if (t == nullptr) return;
    state->tableBytes -= t->bytes;
    std::free(t->folded);
    std::free(t->values);
    std::free(t);
    seg->table = nullptr;
}

bool tableHolds(const CLexWordTable *t, const char *word, size_t len) {
    auto *w = reinterpret_cast<const uint8_t *>(word);
    const uint32_t hash = hashBytes(w, len);
    for (uint32_t h = hash & t->exactMask;; h = (h + 1) & t->exactMask) {
        uint32_t slot = t->exact[h];
        if (slot == 0) return false;
        if (!slotMayHold(slot, hash)) continue;
        const uint8_t *entry = t->text + slotOffset(slot);
        if (entry[0] == len && sameBytes(entry + 2, w, len)) return true;
    }
}

uint32_t foldedHash(const char *word, int row) {
    return hashFolded(reinterpret_cast<const uint8_t *>(word), charClassTable[charSetRow(row)]);
}

int tableFindFolded(CLexState *state, uint16_t seg, const char *word, int row, uint32_t hash) {
    CLexWordTable *t = state->segs[seg].table;
    if (t->foldRow != row && !buildFolded(state, seg, row)) return -1;
    for (uint32_t h = hash & t->foldedMask;; h = (h + 1) & t->foldedMask) {
        uint32_t slot = t->folded[h];
        if (slot == 0) return 0;
        if (slotMayHold(slot, hash) && compareNoCase(word, wordAt(t, slotOffset(slot)), row) == 0) return 1;
    }
}

bool tableBlock(const CLexWordTable *t, uint8_t third, CLexBlockSpan *span) {
    uint32_t b = 0;
    while (b < t->blockCount && t->blocks[b].third < third) ++b;
    if (b == t->blockCount || t->blocks[b].third != third) return false;
    *span = t->blocks[b];
    return true;
}

const uint64_t *tableValues(CLexState *state, uint16_t seg, uint32_t kind,
                            uint32_t (*value)(const char *word, uint32_t length, void *context),
                            void *context) {
    CLexWordTable *t = state->segs[seg].table;
    if (t->valuesKind == kind) return t->values;
    const uint32_t need = t->wordCount * sizeof(uint64_t);
    if (t->values == nullptr) {
        if (!reserveTableBytes(state, seg, need)) return nullptr;
        t->values = static_cast<uint64_t *>(std::malloc(need));
        if (t->values == nullptr) return nullptr;
        t->bytes += need;
        state->tableBytes += need;
    }
    uint32_t i = 0;
    for (uint32_t at = 0; at < t->textSize; at = nextWord(t, at)) {
        t->values[i++] = (uint64_t{value(wordAt(t, at), tableLength(t, at), context)} << 32) | at;
    }
    std::sort(t->values, t->values + t->wordCount);
    t->valuesKind = kind;
    return t->values;
}

int tableVisit(const CLexWordTable *t, const char *word, bool sameThirdByte, DecodeVisitor visitor,
               void *context) {
    uint32_t first = 0, end = t->textSize;
    if (sameThirdByte) {
        auto *w = reinterpret_cast<const uint8_t *>(word);
        CLexBlockSpan span;
        if (!tableBlock(t, (w[0] != 0 && w[1] != 0) ? w[2] : 0, &span)) return 0;
        first = span.first;
        end = span.end;
    }
    for (uint32_t at = first; at < end; at = nextWord(t, at)) {
        const char *decoded = wordAt(t, at);
        int d = visitor != nullptr ? visitor(word, decoded, context) : compareBytes(word, decoded);
        if (d == 0) return 1;
        if (d < 0) return 0;
    }
    return 0;
}
