// check/suggest_int.h — the suggestion engine's internals, for the
// compressed-lexicon candidate search and the module's tests: the bounded
// candidate list, the two similarity scorers with the phonetic tables, the
// per-lexicon searches and the level search over compressed segments.
#pragma once

#include <cstdint>

#include "engine/limits.h"

struct Session;
struct LexEntry;
struct CLexState;
struct TLexState;

// One candidate of the list.
struct Suggestion {
    char word[kWordBufSize];
    int16_t score;       // 0 to 100; 99 for a change lexicon's replacement
    int16_t suppressed;  // nonzero: excluded, never returned
};

// Candidates of one ORTH_Suggest call, best first; equal scores keep the
// order in which they were offered.
struct SuggestionList {
    Suggestion *entries;  // capacity entries
    uint16_t count;
    uint16_t capacity;
};

// How the candidates of one search are scored against the word: the
// measure, and what it needs of the word worked out once (its length, its
// phonetic key). Scores run 0 to 100; a candidate counts only above 0.
enum ScoreMeasure : uint8_t { kTypographical, kPhonetic };
struct Scorer {
    ScoreMeasure measure;
    const char *word;
    int wordLen;
    int16_t charSet;
    char wordKey[kWordBufSize];  // the word's phonetic key (kPhonetic only)
};

// Phonetic tables: a code letter per byte value (0 for none), and the eight
// lower-case letter pairs with the letter each stands for.
extern const uint8_t phoneticCodeTable[256];
struct PhoneticDigraph {
    char first;
    char second;
    char letter;   // mapped through phoneticCodeTable when a key is built
};
constexpr int kPhoneticDigraphs = 8;
extern const PhoneticDigraph phoneticDigraphTable[kPhoneticDigraphs];

// The list.
// Inserts after every entry of the same or a higher score; a word already in
// the list keeps its place and score (a suppressed offer marks it
// suppressed). A full list drops its last entry, or ignores a candidate that
// does not beat it. A list of capacity 0 takes nothing.
void addCandidate(const char *candidate, int16_t score, bool suppressed, SuggestionList *list);
// addCandidate of an unsuppressed word that the caller knows is not in the
// list (it skips the search for it).
void addUnlistedCandidate(const char *candidate, int16_t score, SuggestionList *list);

// Scorers.
int16_t typographicalScore(const char *word, const char *candidate, int16_t charSet);
// The typographical score when it is above floor, else 0; wordLen is the
// word's length, measured once for a whole search.
int16_t typographicalScoreAbove(const char *word, int wordLen, const char *candidate,
                                int16_t charSet, int16_t floor);
// Whether lengths let the typographical score be above 0 at all: it is 0
// when they differ by more than half the word's length.
bool typographicalLengthFits(int wordLen, int candidateLen);
// Typographical scoring of candidates met in sorted order, resuming the
// last walk over the prefix a candidate shares with the one before it.
struct TypoStep {
    int16_t i, j;     // positions in word and candidate after the step
    int16_t score;    // running score after the step
    int16_t read;     // the furthest candidate position the step looked at (-1: none)
};
struct TypoResume {
    uint8_t wordBase[kWordBufSize + 1];  // base letters of the scorer's word, then 0
    TypoStep steps[2 * kWordBufSize];  // of the last candidate walked
    int count;
    uint32_t shared;   // bytes the coming candidate shares with that one
    // For the floor last asked for: the word's full score, the least final
    // running score above the floor, and the candidate lengths that can
    // reach it (minLength to minLength + lengthSpan; a span of -1: none).
    int16_t floor;
    int16_t full;
    int least;
    int minLength;
    int lengthSpan;
    // After a score of 0: when nonzero, every candidate sharing its first
    // decided bytes with that one scores 0 too, under the same floor.
    int decided;
};
void startTypoResume(const Scorer &scorer, TypoResume *resume);   // nothing walked yet
void setTypoFloor(const Scorer &scorer, TypoResume *resume, int16_t floor);
int16_t walkResumed(const Scorer &scorer, TypoResume *resume, const char *candidate, int lc);
// typographicalScoreAbove of a candidate of length lc that shares its first
// sharedWithPrevious bytes with the candidate scored just before it (through
// the same resume record, for the same scorer).
inline int16_t typographicalScoreResumed(const Scorer &scorer, TypoResume *resume, const char *candidate,
                                         int lc, uint32_t sharedWithPrevious, int16_t floor) {
    if (sharedWithPrevious < resume->shared) resume->shared = sharedWithPrevious;
    if (floor != resume->floor) setTypoFloor(scorer, resume, floor);
    if (static_cast<unsigned>(lc - resume->minLength) > static_cast<unsigned>(resume->lengthSpan)) {
        resume->decided = 0;
        return 0;
    }
    return walkResumed(scorer, resume, candidate, lc);
}
int16_t phoneticScore(const char *word, const char *candidate, int16_t charSet);
void phoneticKey(const char *word, char key[kWordBufSize]);
void prepareScorer(Scorer *scorer, ScoreMeasure measure, const char *word, int16_t charSet);
// The candidate's score under the scorer's measure, or 0 when it is not
// above floor (the typographical walk stops as soon as it cannot get there).
int16_t scoreCandidate(const Scorer &scorer, const char *candidate, int16_t floor);

// Searches.
int16_t collectSuggestions(Session *session, const char *word, int16_t depth, SuggestionList *list);
int16_t suggestFromLexicon(Session *session, LexEntry *lex, const char *word, int16_t depth,
                           SuggestionList *list);
void searchTextLexicon(const TLexState *state, int16_t type, const char *word, int16_t charSet,
                       const Scorer &scorer, SuggestionList *list);
// Split-word candidates ("a lot" for "alot"), typographically scored.
void addSplitCandidates(Session *session, const char *word, SuggestionList *list);
// A change lexicon's entry for word: the exact one; for a capitalised word
// that of its lower-case-initial form; for an all-capitals word the first
// equal ignoring case. Null when there is none.
struct TLexEntry;
const TLexEntry *findChangeEntry(const TLexState *state, const char *word, int16_t charSet);

// Compressed-lexicon candidate search. Depth -1 widens from level 1 to 3
// until a level yields a candidate; 0 to 3 search that level alone; any
// other depth only the small-words table. Failures end the search silently.
void searchCompressedLexicon(int16_t depth, const char *word, int16_t charSet, const Scorer &scorer,
                             SuggestionList *list, CLexState *state);
// Candidates scored above 0 in the segments the level selects, or the
// negative code of a segment that could not be loaded or decoded.
int32_t searchLevel(CLexState *state, const char *word, int16_t charSet, const Scorer &scorer,
                    SuggestionList *list, int level);
// Sound codes used to select segments; 0 for lexicons not in English.
uint8_t letterCode(uint8_t letter, uint16_t language);
uint8_t pairCode(uint8_t first, uint8_t second, uint16_t language);
// Whether the level's rule selects the segment with this key for word.
bool selectsSegment(int level, const uint8_t key[2], const char *word, int16_t charSet,
                    uint16_t language);
