// lex/lexsq.h — lexicon compressor. Builds a .CLX file from sorted word files
// and an optional suffix file: coded words collect in a temporary file beside
// the output while word files are read; the end step writes the header and
// tables and copies the data behind them. One run per session.
#pragma once

#include <cstdint>

#include "engine/limits.h"

struct CompressSegNode {
    uint32_t offset;     // relative to the temporary file until the end step
    uint32_t length;
    uint8_t key[2];
    CompressSegNode *next;
};

struct CompressState {
    char tempPath[kPathBufSize];    // empty once deleted
    char outputPath[kPathBufSize];
    uint16_t language;
    uint16_t charSet;
    CompressSegNode *segments;      // owned, ascending by key
    uint16_t segCount;
    uint8_t primary[kPrimarySuffixes][kSuffixEntrySize];
    uint16_t primaryCount;
    uint8_t secondary[kSecondarySuffixes][kSuffixEntrySize];
    uint16_t secondaryCount;
    uint8_t smallWords[kMaxSmallWords][2];
    uint16_t smallCount;
    int32_t tempFile;
    bool tempOpen;
};

int16_t LexSqInit(CompressState *state, const char *outputPath, const char *suffixPath,
                  uint16_t language, uint16_t charSet, uint32_t *lineNumber);
int16_t LexSqFile(CompressState *state, const char *wordFile, uint32_t *lineNumber);
int16_t LexSqEnd(CompressState *state);
// Closes and deletes the temporary file and frees the segment list.
void lexSqCleanup(CompressState *state);
