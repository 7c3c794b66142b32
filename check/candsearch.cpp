// check/candsearch.cpp — candidates from a compressed lexicon. Scoring every
// word would load the whole lexicon, so the search visits only the segments
// that a level selects by their two-character key, widening from close key
// matches (level 0) through keys that sound alike (1) and keys sharing the
// first letter (2) to every segment (3).
//
// (1) Keys and word are compared by base letter, so case and accents do not
//     change the selection; sound codes exist only for English lexicons.
// (2) Each selected segment is loaded once per level and walked while it is
//     resident; the visitor loads nothing, so the walk's data stays valid.
// (3) A segment that cannot be loaded or decoded ends its level and, in
//     progressive mode, the search; candidates found so far stay listed.
#include <cstring>

#include "check/chartab.h"
#include "check/suggest_int.h"
#include "lex/clex_int.h"
#include "orth.h"

namespace {

// Search context of one level.
struct LevelVisit {
    const Scorer *scorer;
    SuggestionList *list;
    int16_t charSet;
    int32_t found;
};

// Once the level has found a candidate (so its count is no longer 0) and
// the list is full, only a score above the list's last one can change the
// list, so lower scores need not be worked out in full.
int visitCandidate(const char *word, const char *decoded, void *context) {
    auto *visit = static_cast<LevelVisit *>(context);
    const SuggestionList *list = visit->list;
    int16_t floor = 0;
    if (visit->found > 0 && list->capacity > 0 && list->count >= list->capacity) {
        floor = list->entries[list->capacity - 1].score;
    }
    int16_t score = scoreCandidate(*visit->scorer, decoded, floor);
    if (score > 0) {
        addCandidate(decoded, score, false, visit->list);
        ++visit->found;
    }
    return 1;
}

bool isEnglish(uint16_t language) { return language == 1033 || language == 2057; }

// Base letters of the word's first three characters, 0 past its end.
void foldWordStart(const char *word, int16_t charSet, uint8_t w[3]) {
    auto *p = reinterpret_cast<const unsigned char *>(word);
    for (int i = 0; i < 3; ++i) {
        w[i] = *p != 0 ? baseLetterOf(charSet, *p) : 0;
        if (*p != 0) ++p;
    }
}

// Both codes nonzero and equal.
bool sameCode(uint8_t a, uint8_t b) { return a != 0 && a == b; }

}  // namespace

uint8_t letterCode(uint8_t letter, uint16_t language) {
    return isEnglish(language) ? phoneticCodeTable[letter] : 0;
}

uint8_t pairCode(uint8_t first, uint8_t second, uint16_t language) {
    if (!isEnglish(language)) return 0;
    for (const PhoneticDigraph &d : phoneticDigraphTable) {
        if (first == static_cast<uint8_t>(d.first) && second == static_cast<uint8_t>(d.second)) {
            return static_cast<uint8_t>(d.letter);
        }
    }
    return 0;
}

namespace {

// What the selection rules need of the word: its folded first three
// letters and their sound codes under the lexicon's language.
struct WordStart {
    uint8_t w[3];
    uint8_t pw;   // letter code of W0
    uint8_t dw;   // pair code of W0 W1
};

WordStart foldWord(const char *word, int16_t charSet, uint16_t language) {
    WordStart ws{};
    foldWordStart(word, charSet, ws.w);
    ws.pw = letterCode(ws.w[0], language);
    ws.dw = pairCode(ws.w[0], ws.w[1], language);
    return ws;
}

bool selects(int level, const uint8_t key[2], const WordStart &ws, int16_t charSet,
             uint16_t language) {
    const uint8_t *w = ws.w;
    uint8_t s0 = baseLetterOf(charSet, key[0]);
    uint8_t s1 = baseLetterOf(charSet, key[1]);
    bool close = (s0 == w[0] && s1 == w[1]) || (s0 == w[1] && s1 == w[0]) ||
                 (s0 == w[0] && s1 == w[2]);
    switch (level) {
    case 0:
        return close;
    case 1: {
        uint8_t ps = letterCode(s0, language), ds = pairCode(s0, s1, language);
        return close || sameCode(ps, ws.pw) || sameCode(ps, ws.dw) || sameCode(ds, ws.pw);
    }
    case 2:
        return s0 == w[0] || (s0 == w[1] && s1 == w[0]) || sameCode(letterCode(s0, language), ws.pw);
    case 3:
        return true;
    default:
        return false;
    }
}

}  // namespace

bool selectsSegment(int level, const uint8_t key[2], const char *word, int16_t charSet,
                    uint16_t language) {
    return selects(level, key, foldWord(word, charSet, language), charSet, language);
}

// Count of candidates scored above 0 (kept by the list or not; once the
// list is full, only those that could enter it), so 0 exactly when nothing
// scored above 0; or the
// negative code of the first segment that could not be loaded or decoded.
// An empty segment (ORTH_WORD_NOT_FOUND_ERR from loadSeg) has nothing to
// offer and is passed over. At level 0 only the block of the word's third
// character is visited, so a word shorter than three characters gets
// nothing there and its segments are not loaded.
int32_t searchLevel(CLexState *state, const char *word, int16_t charSet, const Scorer &scorer,
                    SuggestionList *list, int level) {
    LevelVisit visit{&scorer, list, charSet, 0};
    bool sameThirdByte = level == 0;
    if (sameThirdByte && (word[0] == '\0' || word[1] == '\0' || word[2] == '\0')) return 0;
    const WordStart ws = foldWord(word, charSet, state->language);
    for (uint16_t seg = 0; seg < state->segCount; ++seg) {
        if (!selects(level, state->segs[seg].key, ws, charSet, state->language)) continue;
        int16_t rc = loadSeg(state, seg);
        if (rc == ORTH_WORD_NOT_FOUND_ERR) continue;
        if (rc < 0) return rc;
        int walk = decodeSeg(state, seg, word, sameThirdByte, visitCandidate, &visit);
        if (walk < 0) return walk;
    }
    return visit.found;
}

void searchCompressedLexicon(int16_t depth, const char *word, int16_t charSet, const Scorer &scorer,
                             SuggestionList *list, CLexState *state) {
    char small[3] = {0, 0, 0};
    for (uint16_t i = 0; i < state->smallCount && i < kMaxSmallWords; ++i) {
        small[0] = static_cast<char>(state->smallWords[i][0]);
        small[1] = static_cast<char>(state->smallWords[i][1]);
        int16_t score = scoreCandidate(scorer, small, 0);
        if (score > 0) addCandidate(small, score, false, list);
    }
    if (depth == -1) {
        for (int level = 1; level <= 3; ++level) {
            int32_t found = searchLevel(state, word, charSet, scorer, list, level);
            if (found != 0) return;  // a yield or a failure ends the widening
        }
    } else if (depth >= 0 && depth <= 3) {
        searchLevel(state, word, charSet, scorer, list, depth);
    }
}
