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
// (4) A segment with a word table is walked over the table (walkTable), with
//     exactly the scores, offers and count of the walk over its coded words
//     (visitCandidate): the typographical scorer resumes each walk over the
//     prefix a word shares with the one before, and the phonetic scorer
//     passes over words whose sound key differs from the word's, which it
//     would score 0.
#include <algorithm>
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
    bool unlisted;   // no word of the level's segments was in the list when it began
};

// Once the level has found a candidate (so its count is no longer 0) and
// the list is full, only a score above the list's last one can change the
// list, so lower scores need not be worked out in full.
int16_t floorOf(const LevelVisit &visit) {
    const SuggestionList *list = visit.list;
    if (visit.found > 0 && list->capacity > 0 && list->count >= list->capacity) {
        return list->entries[list->capacity - 1].score;
    }
    return 0;
}

// A walk meets every word once, so while the list held none of the level's
// words at its start, it holds none that the walk has not offered yet.
void offer(LevelVisit *visit, const char *candidate, int16_t score) {
    if (score > 0) {
        if (visit->unlisted) addUnlistedCandidate(candidate, score, visit->list);
        else addCandidate(candidate, score, false, visit->list);
        ++visit->found;
    }
}

int visitCandidate(const char *word, const char *decoded, void *context) {
    auto *visit = static_cast<LevelVisit *>(context);
    offer(visit, decoded, scoreCandidate(*visit->scorer, decoded, floorOf(*visit)));
    return 1;
}

// Hashes of phonetic keys: words whose keys hash apart have different
// keys, and the phonetic scorer scores such a word 0.
uint32_t keyHash(const char *key) {
    uint32_t h = 2166136261u;
    for (const char *p = key; *p != '\0'; ++p) h = (h ^ static_cast<uint8_t>(*p)) * 16777619u;
    return h;
}
uint32_t soundHash(const char *word, uint32_t, void *) {
    char key[kWordBufSize];
    phoneticKey(word, key);
    return keyHash(key);
}
constexpr uint32_t kSoundHashes = 0x534E4431;  // the kind of tableValues held: "SND1"

// visitCandidate over every word of a segment's table (or of the block of
// the word's third byte), in table order: invariant (4).
void walkTable(CLexState *state, uint16_t seg, const char *word, bool sameThirdByte,
               LevelVisit *visit) {
    const CLexWordTable *t = state->segs[seg].table;
    uint32_t at = 0, end = t->textSize;
    if (sameThirdByte) {
        CLexBlockSpan span;
        if (!tableBlock(t, static_cast<uint8_t>(word[2]), &span)) return;
        at = span.first;
        end = span.end;
    }
    const Scorer &scorer = *visit->scorer;
    if (scorer.measure == kTypographical) {
        TypoResume resume;
        startTypoResume(scorer, &resume);
        int16_t floor = floorOf(*visit);
        for (bool first = true; at < end; at = tableNext(t, at), first = false) {
            const char *candidate = tableWord(t, at);
            uint32_t shared = first ? 0 : tableShared(t, at);  // nothing was scored before the first
            int lc = static_cast<int>(tableLength(t, at));
            int16_t score = typographicalScoreResumed(scorer, &resume, candidate, lc, shared, floor);
            if (score > 0) {
                offer(visit, candidate, score);
                floor = floorOf(*visit);
                continue;
            }
            if (resume.decided == 0) continue;
            // The words after it that share the prefix that decided this 0
            // score 0 as well (the floor cannot change meanwhile).
            const uint32_t decided = static_cast<uint32_t>(resume.decided);
            for (uint32_t next = tableNext(t, at); next < end && tableShared(t, next) >= decided;
                 next = tableNext(t, next)) {
                if (tableShared(t, next) < resume.shared) resume.shared = tableShared(t, next);
                at = next;
            }
        }
        return;
    }
    const uint64_t *sounds = tableValues(state, seg, kSoundHashes, soundHash, nullptr);
    if (sounds == nullptr) {
        for (; at < end; at = tableNext(t, at)) {
            const char *candidate = tableWord(t, at);
            offer(visit, candidate, scoreCandidate(scorer, candidate, floorOf(*visit)));
        }
        return;
    }
    // Only the words of the word's sound key are scored, found by their
    // key's hash, in table order.
    const uint64_t from = uint64_t{keyHash(scorer.wordKey)} << 32;
    for (const uint64_t *p = std::lower_bound(sounds, sounds + t->wordCount, from);
         p < sounds + t->wordCount && (*p >> 32) == (from >> 32); ++p) {
        const auto offset = static_cast<uint32_t>(*p);
        if (offset < at || offset >= end) continue;
        const char *candidate = tableWord(t, offset);
        offer(visit, candidate, scoreCandidate(scorer, candidate, floorOf(*visit)));
    }
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

// A test of the first byte of a key that every segment the level selects
// passes (by the rules of selects), so that the segments of other first
// bytes are passed over together.
bool firstByteMaySelect(int level, uint8_t b, const WordStart &ws, int16_t charSet, uint16_t language) {
    const uint8_t *w = ws.w;
    uint8_t s0 = baseLetterOf(charSet, b);
    bool close = s0 == w[0] || s0 == w[1];
    switch (level) {
    case 0:
        return close;
    case 1: {
        uint8_t ps = letterCode(s0, language);
        bool mayPair = false;
        for (const PhoneticDigraph &d : phoneticDigraphTable) {
            if (s0 == static_cast<uint8_t>(d.first)) mayPair = true;
        }
        return close || sameCode(ps, ws.pw) || sameCode(ps, ws.dw) || (mayPair && ws.pw != 0);
    }
    case 2:
        return close || sameCode(letterCode(s0, language), ws.pw);
    default:
        return true;
    }
}

// Whether no word now in the list is a word of a segment the level selects
// (a segment that is not loaded, or has no table to ask, might hold any).
bool listHoldsNoneOf(CLexState *state, const SuggestionList *list, int level, const WordStart &ws,
                     int16_t charSet) {
    for (uint16_t i = 0; i < list->count; ++i) {
        const char *w = list->entries[i].word;
        size_t len = strnlen(w, kWordBufSize);
        if (len < 3 || len > static_cast<size_t>(kMaxWordLen)) continue;
        int32_t seg = findSegment(state, static_cast<uint8_t>(w[0]), static_cast<uint8_t>(w[1]));
        if (seg < 0 || !selects(level, state->segs[seg].key, ws, charSet, state->language)) continue;
        const CLexWordTable *t = state->segs[seg].table;
        if (t == nullptr || tableHolds(t, w, len)) return false;
    }
    return true;
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
    bool sameThirdByte = level == 0;
    if (sameThirdByte && (word[0] == '\0' || word[1] == '\0' || word[2] == '\0')) return 0;
    const WordStart ws = foldWord(word, charSet, state->language);
    LevelVisit visit{&scorer, list, charSet, 0, listHoldsNoneOf(state, list, level, ws, charSet)};
    for (int b = 0; b < 256; ++b) {
        const uint16_t first = state->firstByteStart[b], end = state->firstByteStart[b + 1];
        if (first == end || !firstByteMaySelect(level, static_cast<uint8_t>(b), ws, charSet, state->language)) {
            continue;
        }
        for (uint16_t seg = first; seg < end; ++seg) {
            if (!selects(level, state->segs[seg].key, ws, charSet, state->language)) continue;
            int16_t rc = loadSeg(state, seg);
            if (rc == ORTH_WORD_NOT_FOUND_ERR) continue;
            if (rc < 0) return rc;
            if (state->segs[seg].table != nullptr) {
                walkTable(state, seg, word, sameThirdByte, &visit);
                continue;
            }
            int walk = decodeSeg(state, seg, word, sameThirdByte, visitCandidate, &visit);
            if (walk < 0) return walk;
        }
    }
    return visit.found;
}

void searchCompressedLexicon(int16_t depth, const char *word, int16_t charSet, const Scorer &scorer,
                             SuggestionList *list, CLexState *state) {
    // The small words in table order: the typographical walks resume over
    // the prefix a word shares with the one before. A full list ignores what
    // does not beat its last entry; a length the typographical score rules
    // out scores 0 whatever the letters, so when no small word's length can
    // score, none is looked at.
    const bool typo = scorer.measure == kTypographical;
    bool any = !typo;
    for (int n = 1; n <= 2; ++n) any = any || typographicalLengthFits(scorer.wordLen, n);
    TypoResume resume;
    if (typo && any) startTypoResume(scorer, &resume);
    char small[3] = {0, 0, 0};
    for (uint16_t i = 0; any && i < state->smallCount && i < kMaxSmallWords; ++i) {
        uint32_t shared = 0;
        while (shared < 2 && small[shared] != 0 && small[shared] == static_cast<char>(state->smallWords[i][shared]))
            ++shared;
        if (i == 0) shared = 0;
        small[0] = static_cast<char>(state->smallWords[i][0]);
        small[1] = static_cast<char>(state->smallWords[i][1]);
        const bool full = list->capacity > 0 && list->count >= list->capacity;
        const int16_t floor = full ? list->entries[list->capacity - 1].score : 0;
        const int length = small[0] == 0 ? 0 : small[1] == 0 ? 1 : 2;
        int16_t score = typo ? typographicalScoreResumed(scorer, &resume, small, length, shared, floor)
                             : scoreCandidate(scorer, small, floor);
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
