// check/rank_int.h — the ranked suggester's internals, for its modules, its
// tests and the benchmark that tunes it: the cost model, the candidate
// pool, and the searches over a compressed lexicon's trie and over a text
// lexicon's entries.
#pragma once

#include <cstdint>

#include "engine/limits.h"
#include "lex/wordtrie.h"

struct TLexState;
struct Session;

// Costs of typing errors, in hundredths of a plain one-letter error. The
// rank of a candidate is the cheapest way the word could have been typed
// for it (a weighted edit distance) plus a small charge for a rare word.
struct RankWeights {
    int16_t sub;            // a wrong letter
    int16_t subVowel;       // a vowel for another vowel
    int16_t subSound;       // a letter for one that sounds alike (c k, s z, ...)
    int16_t subKey;         // a letter for its neighbour on the keyboard
    int16_t omit;           // a letter left out
    int16_t omitVowel;      // a vowel left out
    int16_t omitDouble;     // one of a doubled letter left out
    int16_t omitH;          // an h left out after c, g, p, r, s, t or w
    int16_t extra;          // a letter typed in too many
    int16_t extraVowel;     // a vowel typed in too many
    int16_t extraDouble;    // a letter doubled that is single
    int16_t swap;           // two neighbours swapped
    int16_t firstLetter;    // added to an error at the word's first letter
    int16_t firstLetterFar; // added instead when the first letter is unrelated
                            // (not a vowel, sound or key neighbour) or a
                            // letter other than h, k, p, w is left out before it
    int16_t upperCase;      // the candidate has a capital where the word has none
    int16_t accent;         // another form of the same base letter
    int16_t rareWord;       // per commonness class below the most common
    int16_t bounds[3];      // the widening search's cost limits, in order
    int16_t perLetter;      // no limit above this many per letter of the word
    int16_t settle;         // candidates that must rank within a limit to stop widening
    int16_t settleBelow;    // ... and within this rank
    int16_t rampBase;       // the widening passes' limit for a candidate's
    int16_t rampSlope;      //   first d letters: rampBase + rampSlope * d
};
extern const RankWeights kRankWeights;

// The most suggestions the ranked suggester returns, whatever the caller asks.
constexpr int kMaxRanked = 64;

// One candidate: the word, its edit cost and rank (edit cost plus the
// rarity charge); kept in ascending rank.
struct RankCandidate {
    char word[kWordBufSize];
    int16_t cost;
    int16_t rank;
};

struct RankPool {
    RankCandidate entries[kMaxRanked];
    int count;
    int capacity;    // 1 to kMaxRanked
};

// Adds a candidate unless the pool is full of better ones; a word already
// in the pool keeps the better of its two ranks. Equal ranks keep the order
// offered.
void offerCandidate(RankPool *pool, const char *word, int16_t cost, int16_t rank);
// The rank a candidate must beat to enter the pool (INT16_MAX while it has room).
int16_t poolLimit(const RankPool &pool);

// The word being corrected, worked out once per call: its bytes and their
// base letters, the cost tables of its character set, and for each
// candidate letter met so far the cost of each of the word's letters typed
// for it (filled on first use: a search meets few distinct letters).
struct RankWord {
    uint8_t raw[kWordBufSize];
    uint8_t fold[kWordBufSize];
    int len;
    int16_t charSet;
    const RankWeights *weights;
    uint8_t foldTable[256];      // base letter, else the lower-case byte
    uint8_t letterIndex[256];    // a to z as 0 to 25, anything else 26
    int16_t subCost[27][27];     // by letter index, for different base letters
    int16_t omitCost[256];
    int16_t omitFirstCost[256];       // left out before the word's first letter
    uint64_t at[27];                  // by letter index: bit j set when the word's letter j - 1 has it
    int16_t cheapestSub;              // the cheapest change of one letter for another
    int16_t extraAt[kWordBufSize];    // the word's letter j - 1 typed in too many
    bool subFilled[256];
    int16_t subAt[256][kWordBufSize]; // [y][j]: the word's letter j - 1 typed for y
};
void prepareRankWord(RankWord *rw, const char *word, int16_t charSet, const RankWeights &weights);

// Rows of the distance table along a candidate: r[d][j] is the cost of the
// word's first j letters typed for the candidate's first d (raw, fold).
// Only a band of each row is worked out: the cells lo to hi, whose costs
// are within the search's limit.
struct RankRows {
    int16_t r[kWordBufSize][kWordBufSize];
    int8_t lo[kWordBufSize];
    int8_t hi[kWordBufSize];   // below lo when no cell is within the limit
    uint8_t raw[kWordBufSize];
    uint8_t fold[kWordBufSize];
};
// Row 0: the word's letters all typed in too many.
void startRows(const RankWord &rw, RankRows *rows, int16_t limit);
// Row d (1 to 63) for candidate letter y at position d - 1; returns its
// minimum, or a value above limit when no cell is within it.
int16_t stepRow(RankWord &rw, RankRows *rows, int d, uint8_t y, int16_t limit);

// The weighted edit distance from the word to a candidate, or a value above
// limit once it can no longer be limit or less.
int16_t rankDistance(RankWord &rw, const char *candidate, int16_t limit);

// A search's cost limit: bound for a whole candidate, and base + slope * d
// for its first d letters, so that wide searches do not branch out near
// the trie's root (people seldom make several errors in a word's first
// letters).
struct RankLimit {
    int16_t bound;
    int16_t base;
    int16_t slope;
};
int16_t limitAt(const RankLimit &limit, int depth);

// Searches a trie for words within limit of the word and offers each to the
// pool with its rank. commonness tells whether the trie's classes are real
// (else every word ranks as most common).
void searchTrie(RankWord &rw, const WordTrie &trie, bool commonness, RankLimit limit,
                RankPool *pool);
// The same over a text lexicon's entries (each taken as most common).
void searchEntries(RankWord &rw, const TLexState &lex, int16_t limit, RankPool *pool);

// The ranked list for word under weights, packed as ORTH_SuggestRanked
// returns it. *defined is set (and nothing packed) when a compressed
// lexicon's words rank in the defined order, for the caller to use
// ORTH_Suggest instead.
int16_t suggestRanked(Session *session, const char *word, const RankWeights &weights, char *buffer,
                      int32_t size, int16_t *scores, uint16_t maxSuggestions, bool *defined);
