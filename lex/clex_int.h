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

// Makes a segment's data resident, evicting the least recently used
// segments under the budget. 0; ORTH_WORD_NOT_FOUND_ERR for an empty segment;
// ORTH_OUT_OF_MEMORY_ERR, ORTH_FILE_OPEN_ERR, or ORTH_UNKNOWN_LEXICON_TYPE_ERR
// on a failed seek or short read. The segment stays unloaded on failure.
int16_t loadSeg(CLexState *state, uint16_t seg);

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
