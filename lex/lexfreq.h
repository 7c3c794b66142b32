// lex/lexfreq.h — the commonness file of a compressed lexicon: how common
// each of the lexicon's words is, as a class from 0 (unknown) through 1
// (rarest) to 15 (most common), for the ranked suggester. It sits beside the
// .CLX under the same name with the extension FRQ (MAIN.CLX: MAIN.FRQ), is
// built from a frequency list when the lexicon is built, and is refused
// whole when it is damaged or belongs to another word list.
//
// File layout (integers little-endian):
//   0   8  magic "ORTH FRQ"
//   8   4  version, 1
//   12  4  word count N: the lexicon's small words and segment words
//   16  4  word-list hash (hashLexWord over the words in byte order)
//   20  4  CRC-32 of bytes 0 to 19 and of the classes
//   24  (N + 1) / 2  classes: word i (the lexicon's own order, small words
//           first) in the low half of byte i / 2 when i is even, else the high half
#pragma once

#include <cstdint>

#include "engine/limits.h"

constexpr uint32_t kFreqVersion = 1;
constexpr uint32_t kFreqHeaderSize = 24;
constexpr uint32_t kFreqMaxWords = 0x1000000;   // beyond any lexicon's reach: 2^16 segments of 64 KiB
constexpr uint8_t kFreqMaxClass = 15;

// A loaded commonness file.
struct LexFreq {
    uint32_t words;
    uint32_t hash;      // the word list's, to compare with the lexicon's
    uint8_t *classes;   // owned, (words + 1) / 2 bytes
};

// The commonness file's path for a lexicon path: its extension replaced by
// FRQ (frq when the extension starts in lower case), or .FRQ appended when it
// has none. False when the result would be over 259 characters.
bool commonnessPath(const char *lexPath, char out[kPathBufSize]);

// Reading. 0; ORTH_FILE_NOT_FOUND_ERR (silently) when there is no file;
// ORTH_UNKNOWN_LEXICON_TYPE_ERR for a damaged file (wrong magic or version,
// short, over-long, a count past kFreqMaxWords, a checksum that does not
// match), with reason set to a short text naming the fault;
// ORTH_OUT_OF_MEMORY_ERR. Nothing stays allocated on failure.
int16_t LexFreq_Read(const char *path, LexFreq *freq, const char **reason);
void LexFreq_Free(LexFreq *freq);

// The class of word i; 0 past the end.
inline uint8_t commonnessOf(const LexFreq &freq, uint32_t i) {
    if (freq.classes == nullptr || i >= freq.words) return 0;
    uint8_t b = freq.classes[i / 2];
    return static_cast<uint8_t>((i & 1) ? b >> 4 : b & 0x0F);
}

// The word-list hash: each word's index, its bytes four at a time and its
// length mixed in turn (multiply and shift), words taken in byte order as
// walkLexWords gives them. Starts at kWordHashSeed.
constexpr uint32_t kWordHashSeed = 2166136261u;
uint32_t hashLexWord(uint32_t hash, const uint8_t *word, int len, uint32_t index);

// Building: writes the file for a compressed lexicon from a frequency list.
// The list holds a word and a count on each line, separated by blanks or a
// tab (CR LF or LF ends; lines starting with # and empty lines skipped).
// A count is a whole number; larger means more common. Each word of the
// lexicon takes the count of the same word in the list, else of a word that
// differs only in case, else none (class 0); classes step down by one for
// every factor of four below the list's largest count (class 15), and stop at 1.
// 0; ORTH_FILE_NOT_FOUND_ERR (list or lexicon missing); the lexicon reader's
// codes for a lexicon it refuses; ORTH_INVALID_WORD_ERR for a line without a
// word and a count (its number in *lineNumber); ORTH_FILE_OPEN_ERR or
// ORTH_FILE_WRITE_ERR (the file is written beside the lexicon through a
// temporary file, so an old file stays whole on failure); ORTH_OUT_OF_MEMORY_ERR.
// Every failure is logged under caller's name.
int16_t LexFreq_Build(const char *caller, const char *lexPath, const char *listPath,
                      uint32_t *lineNumber);
