// lex/clex_int.h — the compressed reader's internals, for the candidate
// search and the module's tests: the file layout constants, segment loading
// and the block decoder.
#pragma once

#include <cstdint>

#include "lex/clex.h"

constexpr uint32_t kClexVersion = 0x57000402;
constexpr uint32_t kClexHeaderSize = 2806;
constexpr uint32_t kClexSegHeaderSize = 10;
constexpr uint32_t kClexBlockHeaderSize = 6;
constexpr uint32_t kClexBannerSize = 256;

// Header field offsets.
constexpr uint32_t kOffVersion = 256;
constexpr uint32_t kOffSmallCount = 260;
constexpr uint32_t kOffSegCount = 262;
constexpr uint32_t kOffLanguage = 264;
constexpr uint32_t kOffCharSet = 266;
constexpr uint32_t kOffPrimary = 268;
constexpr uint32_t kOffSecondary = 502;

// Coding bytes.
constexpr uint8_t kCodeEnd = 0x00;
constexpr uint8_t kCodeKeepAll = 0x01;
constexpr uint8_t kCodeKeepN = 0x02;
constexpr uint8_t kCodeKeepButLast = 0x03;
constexpr uint8_t kCodeSecondary = 0x04;
constexpr uint8_t kCodePad = 0x05;
constexpr uint8_t kCodePrimaryFirst = 0x06;
constexpr uint8_t kCodeLiteralFirst = 0x20;

// The outcome of decoding one word of a block.
enum DecodeStep { kWordDone, kBodyDone, kCorrupt };

// Decodes one word of a block body starting at *pos (below end) into buf,
// whose first three bytes are already set. Leading padding is skipped; a
// body holding only padding gives kBodyDone. On kWordDone, *len is the
// word's length (on entry: the previous word's, 0 at a block's start) and
// buf[*len] is zero. kCorrupt for a word over 63 bytes, a code running past
// end or a keep code that the previous word cannot satisfy; with report,
// the finding is logged.
DecodeStep decodeWord(const CLexState *state, const uint8_t *data, uint32_t *pos, uint32_t end,
                      char *buf, uint32_t *len, bool report);

// Makes a segment's data resident, evicting the least recently used
// segments under the budget. 0; ORTH_WORD_NOT_FOUND_ERR for an empty segment;
// ORTH_OUT_OF_MEMORY_ERR, ORTH_FILE_OPEN_ERR, or ORTH_UNKNOWN_LEXICON_TYPE_ERR
// on a failed seek or short read. The segment stays unloaded on failure.
int16_t loadSeg(CLexState *state, uint16_t seg);

// loadSeg for a segment index that findSegment gave: the same effect, with
// no call when the segment is loaded (the use counter and its last use rise
// as loadSeg raises them).
inline int16_t touchSeg(CLexState *state, uint16_t seg) {
    CLexSeg &s = state->segs[seg];
    if (s.data == nullptr) return loadSeg(state, seg);
    s.lastUse = ++state->useCounter;
    return 0;
}

// Visitor of decoded words: 0 stops the walk with a match, a negative value
// stops it without, a positive value goes on. decoded is valid only during the call.
typedef int (*DecodeVisitor)(const char *word, const char *decoded, void *context);

// Walks the coded words of a loaded segment. With sameThirdByte, only the
// block of word[2] is decoded. Without a visitor, compares each decoded word
// with word byte-wise. Returns 1 on a match, 0 otherwise, or
// ORTH_UNKNOWN_LEXICON_TYPE_ERR when the data is corrupt (a word over 63
// bytes, a code running past the segment, a suffix index out of range).
int decodeSeg(CLexState *state, uint16_t seg, const char *word, bool sameThirdByte,
              DecodeVisitor visitor, void *context);

// 1 when a one- or two-character word is in the small-words table, else 0.
int lookupSmallWord(const char *word, const uint8_t (*smallWords)[2], uint16_t count,
                    bool caseSensitive, int16_t charSet);

// Binary search of the segment table; the index, or -1 when the key is absent.
int32_t findSegment(const CLexState *state, uint8_t k0, uint8_t k1);

// Word tables (clex_table.cpp): a loaded segment's words decoded once, with
// hash indexes, so that lookups and candidate walks stop decoding blocks.
// A table is built only for data that decodes cleanly with words and blocks
// in strictly ascending order; then every answer it gives equals the walk
// over the coded data. Its memory counts against the lexicon's budget.
struct CLexBlockSpan {
    uint32_t first;   // offset in text of the block's first word
    uint32_t end;     // and one past its last
    uint8_t third;    // the block's third byte
};
struct CLexWordTable {
    // Per word, in segment order: its length, the length of the prefix it
    // shares with the word before it (0 for the segment's first), its bytes
    // and a zero. tableWord and tableNext read it.
    const uint8_t *text;
    uint32_t textSize;
    const CLexBlockSpan *blocks;
    uint16_t blockCount;
    uint16_t wordCount;
    const uint32_t *exact;   // open addressing by word hash (slot layout: clex_table.cpp)
    uint32_t exactMask;
    // Case-folded index, built on the first case-insensitive lookup: the
    // words that fold above every word before them, by their folded bytes
    // under the character-set row foldRow (-1: not built). Slots as in exact.
    uint32_t *folded;
    uint32_t foldedMask;
    int16_t foldRow;
    // The words grouped by a value that a caller above computes for each
    // (the candidate search's sound keys), built on request and named by
    // valuesKind (0: none): per word, its value << 32 | its offset in text,
    // in ascending order, so words of one value come together in table order.
    uint64_t *values;
    uint32_t valuesKind;
    uint32_t bytes;          // all memory the table holds
};

// The word at offset at of a table's text, its length, the prefix it shares
// with the word before, and the offset of the next word.
inline const char *tableWord(const CLexWordTable *t, uint32_t at) {
    return reinterpret_cast<const char *>(t->text + at + 2);
}
inline uint32_t tableLength(const CLexWordTable *t, uint32_t at) { return t->text[at]; }
inline uint32_t tableShared(const CLexWordTable *t, uint32_t at) { return t->text[at + 1]; }
inline uint32_t tableNext(const CLexWordTable *t, uint32_t at) { return at + t->text[at] + 3u; }

// Builds and attaches the table of a segment whose data was just loaded,
// making room within the budget by dropping the tables of the least
// recently used other segments; leaves none when it cannot. Never logs.
void attachWordTable(CLexState *state, uint16_t seg);
// Frees a segment's table and gives its memory back.
void dropWordTable(CLexState *state, CLexSeg *seg);
// Whether the segment holds word (len bytes, 3 to 63), as the exact walk says.
bool tableHolds(const CLexWordTable *table, const char *word, size_t len);
// The hash of a word's folded bytes under a class row, for tableFindFolded.
uint32_t foldedHash(const char *word, int row);
// The case-insensitive walk's answer from the folded index for the class
// row (of the lookup's character set), given the word's foldedHash: 1
// found, 0 not, -1 when there is no folded index for the row and no room
// to build one (the caller walks the data instead).
int tableFindFolded(CLexState *state, uint16_t seg, const char *word, int row, uint32_t hash);
// The span of the block of the table whose third byte is third, or false.
bool tableBlock(const CLexWordTable *table, uint8_t third, CLexBlockSpan *span);
// The table's words grouped by value (see CLexWordTable::values), for a
// kind of value computed with value(word, length, context) for every word
// when the table holds another kind or none; null when there is no room or
// memory for them. wordCount entries.
const uint64_t *tableValues(CLexState *state, uint16_t seg, uint32_t kind,
                            uint32_t (*value)(const char *word, uint32_t length, void *context),
                            void *context);
// decodeSeg over the table: the same words in the same order, the same results.
int tableVisit(const CLexWordTable *table, const char *word, bool sameThirdByte,
               DecodeVisitor visitor, void *context);
