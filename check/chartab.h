// check/chartab.h — character classes, base letters, case rules and the word
// helpers shared by every layer. Two fixed tables of 10 rows (character sets
// 0 to 9) by 256 byte values are the engine's whole knowledge of the
// alphabet. A character-set id outside 0 to 9 reads row 0, so no table
// access can leave the tables.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/limits.h"

// Class flags.
constexpr uint8_t CC_LETTER = 0x01;
constexpr uint8_t CC_DIGIT = 0x02;
constexpr uint8_t CC_PUNCT = 0x04;
constexpr uint8_t CC_SPACE = 0x08;
constexpr uint8_t CC_LOWER = 0x10;
constexpr uint8_t CC_UPPER = 0x20;
constexpr uint8_t CC_VOWEL = 0x40;

// The characters that word rules test by value, in every character set.
constexpr unsigned char kApostrophe = 0x27;
constexpr unsigned char kTypoApostrophe = 0x92;
constexpr unsigned char kHyphen = 0x2D;
inline bool isApostrophe(unsigned char c) { return c == kApostrophe || c == kTypoApostrophe; }

extern const uint8_t charClassTable[kCharSetCount][256];
extern const uint8_t baseLetterTable[kCharSetCount][256];

// The table row for a character-set id: ids outside 0 to 9 use row 0.
inline int charSetRow(int charSet) { return (charSet >= 0 && charSet < kCharSetCount) ? charSet : 0; }

inline uint8_t classOf(int charSet, unsigned char c) { return charClassTable[charSetRow(charSet)][c]; }
inline uint8_t baseLetterOf(int charSet, unsigned char c) { return baseLetterTable[charSetRow(charSet)][c]; }

// Case changes are plus or minus 32 on the byte, tested with the class flags.
inline unsigned char toLowerChar(int charSet, unsigned char c) {
    return (classOf(charSet, c) & CC_UPPER) ? static_cast<unsigned char>(c + 32) : c;
}
inline unsigned char toUpperChar(int charSet, unsigned char c) {
    return (classOf(charSet, c) & CC_LOWER) ? static_cast<unsigned char>(c - 32) : c;
}

// Compares two words after lower-casing both; 0 when equal ignoring case,
// else the difference of the first unequal lower-cased bytes.
int compareNoCase(const char *a, const char *b, int charSet);

// Plain byte-wise comparison (unsigned, the shorter word first).
int compareBytes(const char *a, const char *b);

// Copies word (its first 63 bytes) into out and, with ORTH_STRIP_POSSESSIVES_OPT
// in mask, removes a possessive ending ('s or s'). Returns the length.
// A longer word is judged by the end of its 63-byte copy.
uint16_t normalizeWord(const char *word, int charSet, uint32_t mask, char out[kWordBufSize]);

// Gives replacement (a 64-byte buffer, changed in place) the capitalisation
// of word when matchCase is set, and always the word's possessive ending.
void adaptReplacement(const char *word, char replacement[kWordBufSize], int charSet,
                      bool matchCase);

// Display name of a Windows language id ("American English", ..., "Other").
const char *languageName(int16_t language);

struct LanguageName {
    int16_t id;
    const char *name;
};
extern const LanguageName languageNameTable[20];

// Copies at most 63 bytes of src into a 64-byte buffer, always terminated;
// returns the length copied.
size_t copyWord(char dst[kWordBufSize], const char *src);
