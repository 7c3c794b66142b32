// engine/limits.h — the engine's fixed capacities, each with its reason.
// A leaf header: constants only, included from every layer.
#pragma once

#include <cstdint>

constexpr int kMaxSessions = 16;          // session ids are slot indexes 0 to 15
constexpr int kMaxLexPerSession = 16;     // lexicon ids are slot indexes; the lower id wins
constexpr int kMaxBlocksPerSession = 4;   // block ids 0 to 3
constexpr int kWordBufSize = 64;          // a word is at most 63 characters and a zero
constexpr int kMaxWordLen = kWordBufSize - 1;
constexpr int kPathBufSize = 260;         // a path is at most 259 characters and a zero
constexpr int kMaxPathLen = kPathBufSize - 1;
constexpr int kCharSetCount = 10;         // rows of the character tables
constexpr int kMaxSmallWords = 1024;      // one- and two-letter words of a compressed lexicon
constexpr int kPrimarySuffixes = 26;      // coded by one byte, 6 to 31
constexpr int kSecondarySuffixes = 256;   // coded by 4 and an index byte
constexpr int kSuffixEntrySize = 9;       // 8 characters and a zero
constexpr uint32_t kMaxSegmentLength = 65535;  // a segment is read in one 16-bit counted read
// Longest wait for another process that is saving into the same folder
// through the shared temporary file; a save takes milliseconds, a very
// large lexicon a fraction of a second.
constexpr uint32_t kSaveWaitMs = 10000;
