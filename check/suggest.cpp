// check/suggest.cpp — the suggestion engine: the bounded candidate list, the
// typographical and phonetic scorers, the text-lexicon search, split-word
// candidates and the packed output of ORTH_Suggest.
//
// (1) The list is in descending score order and equal scores stay in the
//     order offered (addCandidate inserts after them), so slot order and
//     "typographical before phonetic" decide ties.
// (2) A word is in the list at most once; its first offer fixes its score
//     and place, and a suppressed offer only marks it (addCandidate).
// (3) ORTH_Suggest's buffer always holds a terminated list of what was copied
//     so far, even when it fails for room: the first copy zero-fills the
//     buffer and the final zero's byte is always kept free.
#include <cstring>
#include <new>

#include "check/chartab.h"
#include "check/check.h"
#include "check/suggest_int.h"
#include "engine/log.h"
#include "engine/session.h"
#include "lex/tlex.h"
#include "orth.h"

const uint8_t phoneticCodeTable[256] = {
    // 0x00 - 0x3F: no codes
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    // 0x40 @ A B C D E F G H I J K L M N O
    0, 'a', 'b', 'c', 'd', 'a', 'f', 'c', 0, 'a', 'j', 'c', 'l', 'm', 'm', 'a',
    // 0x50 P Q R S T U V W X Y Z
    'b', 'c', 'r', 's', 'd', 'a', 'f', 0, 's', 0, 's', 0, 0, 0, 0, 0,
    // 0x60 ` a b c d e f g h i j k l m n o
    0, 'a', 'b', 'c', 'd', 'a', 'f', 'c', 0, 'a', 'j', 'c', 'l', 'm', 'm', 'a',
    // 0x70 p q r s t u v w x y z
    'b', 'c', 'r', 's', 'd', 'a', 'f', 0, 's', 0, 's', 0, 0, 0, 0, 0,
    // 0x80 - 0xBF: no codes
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    // 0xC0 - 0xCF: accented vowels, C cedilla at 0xC7
    'a', 'a', 'a', 'a', 'a', 'a', 'a', 's', 'a', 'a', 'a', 'a', 'a', 'a', 'a', 'a',
    // 0xD0 - 0xDF: N tilde at 0xD1, sharp s at 0xDF
    0, 'm', 'a', 'a', 'a', 'a', 'a', 0, 'a', 'a', 'a', 'a', 'a', 'a', 'a', 's',
    // 0xE0 - 0xEF
    'a', 'a', 'a', 'a', 'a', 'a', 'a', 's', 'a', 'a', 'a', 'a', 'a', 'a', 'a', 'a',
    // 0xF0 - 0xFF
    0, 'm', 'a', 'a', 'a', 'a', 'a', 0, 'a', 'a', 'a', 'a', 'a', 'a', 'a', 0,
};

const PhoneticDigraph phoneticDigraphTable[kPhoneticDigraphs] = {
    {'c', 'e', 's'}, {'c', 'i', 's'}, {'c', 'k', 'c'}, {'d', 'g', 'j'},
    {'g', 'e', 'j'}, {'k', 'n', 'n'}, {'p', 'h', 'f'}, {'p', 's', 's'},
};

// Split-word candidates: the word cut in two known words, "first second".
void addSplitCandidates(Session *session, const char *word, SuggestionList *list) {
    size_t len = std::strlen(word);
    char first[kWordBufSize], candidate[kWordBufSize], scratch[kWordBufSize];
    for (size_t k = 1; k < len; ++k) {
        std::memcpy(first, word, k);
        first[k] = '\0';
        const char *second = word + k;
        // A part that normalises to nothing (such as 's) is accepted by the
        // checker but is no word to offer.
        if (normalizeWord(first, session->charSet, session->options, scratch) == 0 ||
            normalizeWord(second, session->charSet, session->options, scratch) == 0) {
            continue;
        }
        if (checkWord(session, ORTH_REPORT_SPELLING_OPT, first, scratch, kWordBufSize) &
            ORTH_CHK_MISSPELLED) {
            continue;
        }
        if (checkWord(session, ORTH_REPORT_SPELLING_OPT, second, scratch, kWordBufSize) &
            ORTH_CHK_MISSPELLED) {
            continue;
        }
        size_t n = 0;
        for (size_t i = 0; i < k && n < static_cast<size_t>(kMaxWordLen); ++i) candidate[n++] = first[i];
        if (n < static_cast<size_t>(kMaxWordLen)) candidate[n++] = ' ';
        for (const char *p = second; *p != '\0' && n < static_cast<size_t>(kMaxWordLen); ++p) {
            candidate[n++] = *p;
        }
        candidate[n] = '\0';
        addCandidate(candidate, typographicalScore(word, candidate, session->charSet), false, list);
    }
}

namespace {

// Binary search of the sorted entries, byte for byte.
const TLexEntry *findExact(const TLexState *state, const char *word) {
    uint32_t lo = 0, hi = state->count;
    while (lo < hi) {
        uint32_t mid = lo + (hi - lo) / 2;
        int cmp = compareBytes(state->entries[mid].word, word);
        if (cmp == 0) return &state->entries[mid];
        if (cmp < 0) lo = mid + 1; else hi = mid;
    }
    return nullptr;
}

}  // namespace

// The change entry for word: the exact entry; else, as the checker accepts
// them, for a capitalised word the entry of its lower-case-initial form, and
// for an all-capitals word the first entry equal to it ignoring case. So a
// sentence-initial "Teh" is offered the same "The" that checking it gives.
const TLexEntry *findChangeEntry(const TLexState *state, const char *word, int16_t charSet) {
    const TLexEntry *entry = findExact(state, word);
    if (entry != nullptr || word[0] == '\0') return entry;
    auto first = static_cast<unsigned char>(word[0]);
    if (classOf(charSet, first) & CC_UPPER) {
        char lowered[kWordBufSize];
        copyWord(lowered, word);
        lowered[0] = static_cast<char>(toLowerChar(charSet, first));
        entry = findExact(state, lowered);
        if (entry != nullptr) return entry;
    }
    for (auto *p = reinterpret_cast<const unsigned char *>(word); *p != 0; ++p) {
        uint8_t cls = classOf(charSet, *p);
        if ((cls & CC_LETTER) && !(cls & CC_UPPER)) return nullptr;
    }
    for (uint32_t i = 0; i < state->count; ++i) {
        if (compareNoCase(state->entries[i].word, word, charSet) == 0) return &state->entries[i];
    }
    return nullptr;
}

namespace {

// Whether two words are equal in their first 63 bytes.
bool sameWord(const char *a, const char *b) {
    int k = 0;
    while (k < kMaxWordLen && a[k] == b[k] && a[k] != '\0') ++k;
    return k == kMaxWordLen || a[k] == b[k];
}

void insertCandidate(const char *candidate, int16_t score, bool suppressed, bool mayBeListed,
                     SuggestionList *list) {
    if (list->capacity == 0) return;
    bool full = list->count >= list->capacity;
    if (full && list->entries[list->capacity - 1].score >= score) return;
    uint16_t place = 0;
    while (place < list->count && list->entries[place].score >= score) ++place;
    for (uint16_t i = 0; mayBeListed && i < list->count; ++i) {
        if (sameWord(list->entries[i].word, candidate)) {
            if (suppressed) list->entries[i].suppressed = 1;
            return;
        }
    }
    uint16_t last = full ? static_cast<uint16_t>(list->capacity - 1) : list->count;
    std::memmove(&list->entries[place + 1], &list->entries[place],
                 (last - place) * sizeof(Suggestion));
    Suggestion &s = list->entries[place];
    copyWord(s.word, candidate);
    s.score = score;
    s.suppressed = suppressed ? 1 : 0;
    if (!full) ++list->count;
}

}  // namespace

void addCandidate(const char *candidate, int16_t score, bool suppressed, SuggestionList *list) {
    insertCandidate(candidate, score, suppressed, true, list);
}

void addUnlistedCandidate(const char *candidate, int16_t score, SuggestionList *list) {
    insertCandidate(candidate, score, false, false, list);
}

// Percentage of the word's points left after charging each typing error:
// 1 for a case difference, 5 for another form of the same base letter, 50
// for swapped neighbours, 40 for an extra or a missing letter, 100 for a
// vowel typed for a consonant or the other way, 50 for another wrong letter,
// 40 for each character left over. 0 when the lengths differ by more than
// half the word's length.
int16_t typographicalScore(const char *word, const char *candidate, int16_t charSet) {
    return typographicalScoreAbove(word, static_cast<int>(std::strlen(word)), candidate, charSet, 0);
}

namespace {

// The typographical walk from a state (positions in word and candidate,
// running score) to its end: the score's percentage when the final running
// score reaches least, else 0. wb holds the base letters of the word and a
// 0 after them; the candidate ends in a zero, whose base letter is 0 too,
// so looking one character ahead needs no test of either length. Each step
// taken is recorded in resume when one is given, with the furthest
// candidate position it looked at; and when the walk gives 0 because its
// running score fell below least (or to 0, or is about to lose more than it
// can), resume->decided is the length of the candidate's prefix that decided it.
TypoStep packStep(int i, int j, int score, int read) {
    return TypoStep{static_cast<int16_t>(i), static_cast<int16_t>(j), static_cast<int16_t>(score),
                    static_cast<int16_t>(read)};
}

template <bool kRecord>
int16_t walkTypo(const unsigned char *w, const uint8_t *wb, int lw, const unsigned char *c, int lc,
                 int row, int16_t full, int least, TypoStep state, TypoResume *resume) {
    const uint8_t *base = baseLetterTable[row];
    const uint8_t *cls = charClassTable[row];
    int score = state.score;
    int i = state.i, j = state.j, read = state.read;
    // least is at least 1, so a score that reaches 0 is below it: the test
    // of the score ends the walk in every case where the walk's own test
    // (a score of 0 or less) would, and with the same result, 0.
    for (;;) {
        if (score < least) {
            if (kRecord) resume->decided = read + 1;
            return 0;
        }
        if (i >= lw || j >= lc) break;
        const unsigned char y = c[j];
        const uint8_t bx = wb[i], by = base[y];
        if (bx == by) {
            read = j;
            const unsigned char x = w[i];
            if (x != y) {
                if (((cls[x] ^ cls[y]) & CC_LOWER) != 0) score -= 1;
                if (toLowerChar(row, x) != toLowerChar(row, y)) score -= 5;
            }
        } else {
            // Every kind of difference costs at least 40: when that is more
            // than the score can lose, the candidate's character here has
            // decided the 0 already, whatever follows it.
            if (score - least < 40) {
                if (kRecord) resume->decided = j + 1;
                return 0;
            }
            read = j + 1;  // the candidate's next character, or its end
            const uint8_t bx1 = wb[i + 1], by1 = base[c[j + 1]];
            if (bx1 == by && by1 == bx) {
                score -= 50;
                if (i + 1 < lw) ++i;
                if (j + 1 < lc) ++j;
            } else if (bx1 == by) {
                score -= 40;
                if (i + 1 < lw) ++i;
            } else if (by1 == bx) {
                score -= 40;
                if (j + 1 < lc) ++j;
            } else {
                score -= ((cls[bx] ^ cls[by]) & CC_VOWEL) != 0 ? 100 : 50;
            }
        }
        ++i;
        ++j;
        if (kRecord) resume->steps[resume->count++] = packStep(i, j, score, read);
    }
    score -= 40 * (lc - j) + 40 * (lw - i);
    if (score <= 0 || score < least) return 0;
    return static_cast<int16_t>(score * 100 / full);
}

// The base letters of a word and a 0 after them.
void baseLettersOf(const unsigned char *w, int lw, int row, uint8_t out[kWordBufSize + 1]) {
    const uint8_t *base = baseLetterTable[row];
    for (int i = 0; i < lw; ++i) out[i] = base[w[i]];
    out[lw] = 0;
}

// The running score only falls, so the walk can stop as soon as the result
// can no longer exceed floor. Every step that changes the difference of the
// two positions costs at least 40, as does every character left over, so a
// length difference of d caps the score at base - 40d before any walking.
// False when the candidate is out of reach before walking.
bool typoBounds(int lw, int lc, int16_t floor, int16_t *full, int *least) {
    *full = static_cast<int16_t>(lw == 0 ? 1 : 100 * lw);
    // Smallest running score whose result is above floor.
    *least = ((floor + 1) * *full + 99) / 100;
    const int diff = lc > lw ? lc - lw : lw - lc;
    return typographicalLengthFits(lw, lc) && *full - 40 * diff >= *least;
}

}  // namespace

bool typographicalLengthFits(int wordLen, int candidateLen) {
    const int diff = candidateLen > wordLen ? candidateLen - wordLen : wordLen - candidateLen;
    return diff <= wordLen / 2;
}

int16_t typographicalScoreAbove(const char *word, int wordLen, const char *candidate,
                                int16_t charSet, int16_t floor) {
    const int lc = static_cast<int>(std::strlen(candidate));
    int16_t full;
    int least;
    if (!typoBounds(wordLen, lc, floor, &full, &least)) return 0;
    const auto *w = reinterpret_cast<const unsigned char *>(word);
    const int row = charSetRow(charSet);
    uint8_t wb[kWordBufSize + 1];
    baseLettersOf(w, wordLen, row, wb);
    return walkTypo<false>(w, wb, wordLen, reinterpret_cast<const unsigned char *>(candidate), lc, row, full,
                           least, packStep(0, 0, full, -1), nullptr);
}

// A walk's step depends on the candidate only up to the furthest position
// it looked at, so the steps of the last walk that looked no further than
// the prefix it shares with this candidate are this candidate's first steps
// too; the walk resumes after them, with the same outcome as from the start.
int16_t walkResumed(const Scorer &scorer, TypoResume *resume, const char *candidate, int lc) {
    int kept = resume->count;
    while (kept > 0 && resume->steps[kept - 1].read >= static_cast<int>(resume->shared)) --kept;
    const int16_t full = resume->full;
    TypoStep from = kept > 0 ? resume->steps[kept - 1] : packStep(0, 0, full, -1);
    resume->count = kept;
    resume->shared = ~0u;  // the next candidate's shared prefix is with this one
    resume->decided = 0;
    // The running score only falls: below least already, the walk ends at 0.
    if (from.score < resume->least) {
        resume->decided = from.read + 1;
        return 0;
    }
    return walkTypo<true>(reinterpret_cast<const unsigned char *>(scorer.word), resume->wordBase,
                          scorer.wordLen, reinterpret_cast<const unsigned char *>(candidate), lc,
                          charSetRow(scorer.charSet), full, resume->least, from, resume);
}

void setTypoFloor(const Scorer &scorer, TypoResume *resume, int16_t floor) {
    const int lw = scorer.wordLen;
    int16_t full;
    int least;
    typoBounds(lw, lw, floor, &full, &least);
    // typoBounds passes a length difference d when d <= lw / 2 and
    // full - 40 d >= least.
    int most = lw / 2;
    if (full < least) most = -1;
    else if ((full - least) / 40 < most) most = (full - least) / 40;
    resume->floor = floor;
    resume->full = full;
    resume->least = least;
    resume->minLength = lw - most;
    resume->lengthSpan = most < 0 ? -1 : 2 * most;
}

void startTypoResume(const Scorer &scorer, TypoResume *resume) {
    resume->count = 0;
    resume->shared = 0;
    baseLettersOf(reinterpret_cast<const unsigned char *>(scorer.word), scorer.wordLen,
                  charSetRow(scorer.charSet), resume->wordBase);
    setTypoFloor(scorer, resume, 0);
}

namespace {

// The code that position i of w adds to a phonetic key (0: none): a pair
// of the digraph table, else the character's own code, vowels only first.
uint8_t phoneticStep(const unsigned char *w, int i) {
    if (w[i + 1] != 0) {
        for (const PhoneticDigraph &d : phoneticDigraphTable) {
            if (w[i] == static_cast<unsigned char>(d.first) &&
                w[i + 1] == static_cast<unsigned char>(d.second)) {
                return phoneticCodeTable[static_cast<unsigned char>(d.letter)];
            }
        }
    }
    uint8_t code = phoneticCodeTable[w[i]];
    return (code == 'a' && i != 0) ? 0 : code;
}

// Whether candidate's phonetic key is key, stopping at the first difference.
bool phoneticKeyIs(const char *candidate, const char *key) {
    auto *w = reinterpret_cast<const unsigned char *>(candidate);
    auto *k = reinterpret_cast<const unsigned char *>(key);
    int n = 0;
    for (int i = 0; w[i] != 0 && i < kMaxWordLen; ++i) {
        uint8_t code = phoneticStep(w, i);
        if (code == 0 || (n > 0 && k[n - 1] == code)) continue;
        if (k[n] != code) return false;
        ++n;
    }
    return k[n] == 0;
}

}  // namespace

void phoneticKey(const char *word, char key[kWordBufSize]) {
    auto *w = reinterpret_cast<const unsigned char *>(word);
    int n = 0;
    for (int i = 0; w[i] != 0 && i < kMaxWordLen; ++i) {
        uint8_t code = phoneticStep(w, i);
        if (code != 0 && (n == 0 || static_cast<uint8_t>(key[n - 1]) != code)) {
            key[n++] = static_cast<char>(code);
        }
    }
    key[n] = '\0';
}

// 0 unless both words have the same phonetic key; then the share of the
// characters of both words whose byte values occur equally often in each.
int16_t phoneticScore(const char *word, const char *candidate, int16_t charSet) {
    Scorer scorer;
    prepareScorer(&scorer, kPhonetic, word, charSet);
    return scoreCandidate(scorer, candidate, 0);
}

void prepareScorer(Scorer *scorer, ScoreMeasure measure, const char *word, int16_t charSet) {
    scorer->measure = measure;
    scorer->word = word;
    scorer->wordLen = static_cast<int>(std::strlen(word));
    scorer->charSet = charSet;
    scorer->wordKey[0] = '\0';
    if (measure == kPhonetic) phoneticKey(word, scorer->wordKey);
}

namespace {

// The phonetic measure: 0 unless both words have the same key; then the
// share of the characters of both words whose byte values occur equally
// often in each.
int16_t phoneticSimilarity(const Scorer &scorer, const char *candidate) {
    const char *word = scorer.word;
    if (!phoneticKeyIs(candidate, scorer.wordKey)) return 0;
    int counts[256] = {};
    int total = 0;
    for (auto *p = reinterpret_cast<const unsigned char *>(word); *p != 0; ++p, ++total) ++counts[*p];
    for (auto *p = reinterpret_cast<const unsigned char *>(candidate); *p != 0; ++p, ++total) --counts[*p];
    if (total == 0) return 0;
    int d = total;
    for (int b = 0; b < 255; ++b) {
        if (counts[b] != 0) --d;
    }
    return static_cast<int16_t>(d * 100 / total);
}

}  // namespace

int16_t scoreCandidate(const Scorer &scorer, const char *candidate, int16_t floor) {
    if (scorer.measure == kTypographical) {
        return typographicalScoreAbove(scorer.word, scorer.wordLen, candidate, scorer.charSet, floor);
    }
    int16_t score = phoneticSimilarity(scorer, candidate);
    return score > floor ? score : 0;
}

// Ignore lexicons offer every entry, exclude lexicons every entry as
// suppressed, change lexicons their replacement of the word itself at 99
// (findChangeEntry).
void searchTextLexicon(const TLexState *state, int16_t type, const char *word, int16_t charSet,
                       const Scorer &scorer, SuggestionList *list) {
    switch (type) {
    case ORTH_IGNORE_LEX_TYPE:
    case ORTH_EXCLUDE_LEX_TYPE:
        for (uint32_t i = 0; i < state->count; ++i) {
            const char *entry = state->entries[i].word;
            int16_t score = scoreCandidate(scorer, entry, 0);
            if (score > 0) addCandidate(entry, score, type == ORTH_EXCLUDE_LEX_TYPE, list);
        }
        break;
    case ORTH_AUTO_CHANGE_LEX_TYPE:
    case ORTH_CONDITIONAL_CHANGE_LEX_TYPE: {
        const TLexEntry *entry = findChangeEntry(state, word, charSet);
        if (entry != nullptr && entry->replacement != nullptr && entry->replacement[0] != '\0') {
            addCandidate(entry->replacement, 99, false, list);
        }
        break;
    }
    default:
        break;
    }
}

// 0 always: a lexicon's failures cost its candidates, not the run.
int16_t suggestFromLexicon(Session *session, LexEntry *lex, const char *word, int16_t depth,
                           SuggestionList *list) {
    uint32_t opts = session->options;
    int16_t charSet = session->charSet;
    // Typographical candidates are offered before phonetic ones.
    const struct { uint32_t option; ScoreMeasure measure; } passes[2] = {
        {ORTH_SUGGEST_TYPOGRAPHICAL_OPT, kTypographical}, {ORTH_SUGGEST_PHONETIC_OPT, kPhonetic}};
    for (const auto &pass : passes) {
        if (!(opts & pass.option)) continue;
        Scorer scorer;
        prepareScorer(&scorer, pass.measure, word, charSet);
        if (lex->format == ORTH_COMPRESSED_LEX_FORMAT) {
            searchCompressedLexicon(depth, word, charSet, scorer, list, &lex->clex);
        } else if (lex->format == ORTH_TEXT_LEX_FORMAT) {
            searchTextLexicon(&lex->tlex, lex->type, word, charSet, scorer, list);
        }
    }
    return 0;
}

int16_t collectSuggestions(Session *session, const char *word, int16_t depth, SuggestionList *list) {
    for (int16_t slot = 0; slot < kMaxLexPerSession; ++slot) {
        LexEntry *lex = session->lexicons[slot];
        if (lex != nullptr) suggestFromLexicon(session, lex, word, depth, list);
    }
    if (session->options & ORTH_SUGGEST_SPLIT_WORDS_OPT) addSplitCandidates(session, word, list);
    return 0;
}

// 0 with the packed list in buffer and the scores in scores (null: not
// stored); ORTH_BAD_SESSION_ID_ERR; ORTH_INVALID_WORD_ERR for a null word;
// ORTH_OUT_OF_MEMORY_ERR when the list cannot be allocated;
// ORTH_BUFFER_TOO_SMALL_ERR when a suggestion and the final zero do not fit,
// the buffer then holding the ones that did. A null buffer counts as size 0:
// nothing is written, and any suggestion makes the buffer too small.
// A maximum of 0 gives an empty list.
extern "C" ORTH_API int16_t ORTH_CALL ORTH_Suggest(int16_t sessionId, const char *word, int16_t depth, char *buffer,
                                int32_t size, int16_t *scores, uint16_t maxSuggestions) noexcept {
    Session *session = sessionFor(sessionId, "ORTH_Suggest");
    if (session == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (word == nullptr) {
        engineLog("ORTH_Suggest: null word");
        return ORTH_INVALID_WORD_ERR;
    }
    if (buffer == nullptr || size < 0) size = 0;
    if (size > 0) buffer[0] = '\0';
    char normal[kWordBufSize];
    if (normalizeWord(word, session->charSet, session->options, normal) == 0) return 0;
    if (maxSuggestions == 0) return 0;

    SuggestionList list{};
    list.entries = new (std::nothrow) Suggestion[maxSuggestions];
    if (list.entries == nullptr) {
        engineLog("ORTH_Suggest: out of memory");
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    list.capacity = maxSuggestions;
    collectSuggestions(session, normal, depth, &list);

    bool matchCase = (session->options & ORTH_MATCH_CASE_OPT) != 0;
    int32_t used = 0;
    int returned = 0;
    for (uint16_t i = 0; i < list.count; ++i) {
        Suggestion &s = list.entries[i];
        if (s.suppressed) continue;
        adaptReplacement(word, s.word, session->charSet, matchCase);
        if (i > 0 && std::strcmp(s.word, list.entries[i - 1].word) == 0) continue;
        auto len = static_cast<int32_t>(std::strlen(s.word));
        if (used + len + 1 >= size) {
            delete[] list.entries;
            engineLog("ORTH_Suggest: buffer too small");
            return ORTH_BUFFER_TOO_SMALL_ERR;
        }
        if (used == 0) std::memset(buffer, 0, static_cast<size_t>(size));  // invariant 3
        std::memcpy(buffer + used, s.word, static_cast<size_t>(len));
        if (scores != nullptr) scores[returned] = s.score;
        ++returned;
        used += len + 1;
    }
    if (size > 0) buffer[used] = '\0';
    delete[] list.entries;
    return 0;
}
