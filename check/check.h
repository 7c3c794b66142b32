// check/check.h — the word checker and the suggestion engine as the other
// layers call them. checkWord applies the option rules and looks the word up
// in the session's lexicons in slot order; the first lexicon holding the
// word decides.
#pragma once

#include <cstdint>

#include "engine/limits.h"

struct Session;
struct LexEntry;

// Lexicon verdict of an exclude lexicon that holds the word: bit 15 alone.
// lookupAllLexicons turns it into "not found" (bit 0 set, bit 15 clear).
constexpr int16_t ORTH_CHK_EXCLUDED = static_cast<int16_t>(0x8000);

// Checking one word.
// Check result (0 accepted, else ORTH_CHK_* flags), never negative. The
// replacement buffer receives the word, then any replacement, adjusted for
// case; at most replacementSize - 1 bytes and a zero are written, and a size
// of 0 writes nothing.
int16_t checkWord(Session *session, uint32_t mask, const char *word, char *replacement,
                  uint16_t replacementSize);

// The session's open lexicons in slot order, as a check consults them.
// Gathered once, they serve a run of checks during which no lexicon opens,
// closes or gains words (one block-checking call).
struct CheckLexicons {
    const LexEntry *lex[kMaxLexPerSession];
    int16_t slot[kMaxLexPerSession];
    int count;
    int texts;            // how many are text lexicons (the only ones that write a replacement)
    uint32_t evictions;   // segments the compressed ones had evicted when gathered
};
void gatherLexicons(const Session *session, CheckLexicons *list);
// checkWord over lexicons gathered before (null: gathered for this check).
int16_t checkWordGathered(Session *session, const CheckLexicons *gathered, uint32_t mask, const char *word,
                          char *replacement, uint16_t replacementSize);

// Checker internals, for the suggestion engine and the module's tests.

// Looks word up in slots 0 to 15 under sessionOptions (the session's mask,
// possibly with ORTH_CASE_SENSITIVE_OPT cleared for one lookup). Never
// negative: bit 0 clear is the finding lexicon's check result; bit 0 set is
// "not found" (also for an excluded word). A lexicon that fails (a segment
// that cannot be loaded, a corrupt segment, an unknown type) counts as not
// holding the word; the first such failure of a call is logged, and
// *failureLogged records that. replacement is a 64-byte buffer.
int16_t lookupAllLexicons(Session *session, uint32_t sessionOptions, const char *word,
                          char replacement[kWordBufSize], bool *failureLogged);

// Lexicon verdict of one lexicon: 0 or a check flag when found (by its
// type), ORTH_CHK_EXCLUDED, ORTH_WORD_NOT_FOUND_ERR or -1 when it does not
// hold the word, another negative code when the lexicon failed.
int16_t check1Lex(Session *session, const LexEntry *lex, bool caseSensitive, const char *word,
                  char replacement[kWordBufSize]);

// Whether word mixes cases after its first character (apostrophes skipped).
bool hasMixedCase(const Session *session, const char *word);

// Copies the part of the word at cursor into part (at most 63 characters),
// ending at the word's end, at a hyphen under ORTH_SPLIT_HYPHENATED_WORDS_OPT
// or at an apostrophe under ORTH_SPLIT_CONTRACTED_WORDS_OPT. Returns the
// cursor just past the separator, or at the end.
const char *nextWordPart(const char *cursor, uint32_t mask, char part[kWordBufSize]);
