// lex/clex.h — compressed lexicon reader. One CLexState per open .CLX file;
// only the header tables stay in memory, and segments of coded words load on
// demand within a memory budget (least recently used evicted first). The
// file is never written, and no handle stays open between calls.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/limits.h"

struct CLexWordTable;

// One segment: all words of three or more bytes sharing the two-byte key.
struct CLexSeg {
    uint32_t offset;      // file offset of the segment's data
    uint32_t length;      // bytes of segment data
    uint8_t *data;        // owned; null while unloaded
    uint32_t lastUse;     // use counter at the last access; 0 until first loaded
    uint8_t key[2];
    // The segment's words decoded once when its data loads (clex_table.cpp),
    // freed with the data or earlier to make room; null when there is none
    // (no room in the budget, short memory, data that only the plain walk
    // reads). Lookups and walks give the same answers with or without it.
    CLexWordTable *table;
};

struct CLexState {
    uint16_t smallCount;
    uint8_t smallWords[kMaxSmallWords][2];   // sorted (first byte, second byte or 0)
    bool smallIndexed;                       // smallPairs is set: the table is sorted
    uint64_t smallPairs[1024];               // bit (first << 8 | second) for each small word
    CLexSeg *segs;                           // owned, key order
    uint16_t segCount;
    uint16_t firstByteStart[257];            // segments by the first byte of their key
    uint64_t secondBytes[256][4];            // per first byte: the second bytes of keys
    uint16_t keysBefore[256][4];             // firstByteStart plus the keys in earlier words
    uint32_t budget;                         // 0: no limit
    uint32_t freeBudget;                     // budget minus loaded bytes (budget != 0)
    uint32_t useCounter;
    uint16_t language;
    uint8_t primary[kPrimarySuffixes][kSuffixEntrySize];
    uint8_t secondary[kSecondarySuffixes][kSuffixEntrySize];
    char path[kPathBufSize];                 // reopened for every segment load
    uint32_t tableBytes;                     // memory held by the segments' word tables
    uint32_t evictions;                      // segments evicted by loadSeg since opening
    bool plainWalks;                         // never build word tables (the defined
                                             // walks alone; set by tests after opening)
};

// Opening and closing.
// 0 with type 1 and the header's language; ORTH_UNKNOWN_LEXICON_TYPE_ERR
// (silently) when the file is not a compressed lexicon; ORTH_FILE_NOT_FOUND_ERR.
int16_t CLex_GetInfo(const char *path, int16_t *type, uint16_t *language);
int16_t CLex_Open(const char *path, uint32_t budget, CLexState *state);
void CLex_Close(CLexState *state);

// Lookups: 0 found, ORTH_WORD_NOT_FOUND_ERR, or the failure of a segment load.
int16_t CLex_Lookup(const char *word, int16_t charSet, bool caseSensitive, CLexState *state);
// The same for a caller that knows the word's length (strlen of word).
int16_t CLex_LookupLength(const char *word, size_t length, int16_t charSet, bool caseSensitive,
                          CLexState *state);
