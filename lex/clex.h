// lex/clex.h — compressed lexicon reader. One CLexState per open .CLX file;
// only the header tables stay in memory, and segments of coded words load on
// demand within a memory budget (least recently used evicted first). The
// file is never written, and no handle stays open between calls.
#pragma once

#include <cstdint>

#include "engine/limits.h"

// One block of a loaded segment, for the lookup accelerator below.
struct CLexBlockRef {
    uint16_t offset;        // of the block header within the segment's data
    uint16_t firstRestart;  // index of the block's first entry in restarts
    uint8_t third;          // the block's third byte
};

// One segment: all words of three or more bytes sharing the two-byte key.
struct CLexSeg {
    uint32_t offset;      // file offset of the segment's data
    uint32_t length;      // bytes of segment data
    uint8_t *data;        // owned; null while unloaded
    uint32_t lastUse;     // use counter at the last access; 0 until first loaded
    uint8_t key[2];
    // Lookup accelerator, built when the data loads and freed with it: the
    // offsets of the words coded without a sharing code (each decodable on
    // its own), ascending. Null when not built (short memory, odd data);
    // lookups then walk blocks from their start. Not counted in the budget:
    // at most two bytes per coded word.
    uint16_t *restarts;
    uint16_t restartCount;
    // Built and freed with the restarts: the blocks in order.
    CLexBlockRef *blocks;
    uint16_t blockCount;
};

struct CLexState {
    uint16_t smallCount;
    uint8_t smallWords[kMaxSmallWords][2];   // sorted (first byte, second byte or 0)
    CLexSeg *segs;                           // owned, key order
    uint16_t segCount;
    uint16_t firstByteStart[257];            // segments by the first byte of their key
    uint32_t budget;                         // 0: no limit
    uint32_t freeBudget;                     // budget minus loaded bytes (budget != 0)
    uint32_t useCounter;
    uint16_t language;
    uint8_t primary[kPrimarySuffixes][kSuffixEntrySize];
    uint8_t secondary[kSecondarySuffixes][kSuffixEntrySize];
    char path[kPathBufSize];                 // reopened for every segment load
};

// Opening and closing.
// 0 with type 1 and the header's language; ORTH_UNKNOWN_LEXICON_TYPE_ERR
// (silently) when the file is not a compressed lexicon; ORTH_FILE_NOT_FOUND_ERR.
int16_t CLex_GetInfo(const char *path, int16_t *type, uint16_t *language);
int16_t CLex_Open(const char *path, uint32_t budget, CLexState *state);
void CLex_Close(CLexState *state);

// Lookups: 0 found, ORTH_WORD_NOT_FOUND_ERR, or the failure of a segment load.
int16_t CLex_Lookup(const char *word, int16_t charSet, bool caseSensitive, CLexState *state);
