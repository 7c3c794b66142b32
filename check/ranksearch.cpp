// check/ranksearch.cpp — the ranked suggester's cost model and searches: a
// weighted edit distance between the word as typed and a candidate, worked
// out row by row along the candidate's letters so that a trie of the
// lexicon's words shares the rows of common prefixes and drops every
// subtree whose row has grown past the limit.
//
// (1) Row d holds, for each length j of the word's prefix, the cheapest
//     cost of typing that prefix for the candidate's first d letters. Every
//     cost is positive except a match, so a row's minimum (with the swaps
//     of invariant 5) never falls further down a trie path: a subtree whose
//     row minimum is above the limit holds no candidate within it.
// (2) Letters are compared by base letter, so case and accents cost little:
//     a capital in the word is free (the suggestion takes the word's case
//     later), a capital only in the candidate costs upperCase.
// (3) The pool keeps the best kMaxRanked candidates by rank; once it is
//     full a search needs only candidates that beat its last entry, and,
//     since a rank is never below its cost, lowers its limit to match.
// (4) A row is worked out only over its band, the cells whose cost is within
//     the limit (lo to hi); the cells just outside hold kFar, so the next
//     row reads no stale cost. The limit only falls during a search, so a
//     cell once beyond it stays useless.
// (5) A swap reaches back two rows, over a row that may hold nothing within
//     the limit; so stepRow's result, which decides whether a trie node's
//     children are visited, also counts the swaps the next row could finish.
// (6) Before working out a child's row, the search asks whether its letter
//     can bring any cell within the limit (viableLetters): a match of the
//     word's next letter, a letter left out, a swap. Most children fail
//     that test, and skipping them changes no result.
#include <cstring>
#include <initializer_list>

#include "check/chartab.h"
#include "check/rank_int.h"
#include "lex/tlex.h"

// Tuned on bench/data/misspellings.txt (bench/suggest_bench.cpp).
const RankWeights kRankWeights = {
    /*sub*/ 100, /*subVowel*/ 90, /*subSound*/ 80, /*subKey*/ 90,
    /*omit*/ 70, /*omitVowel*/ 60, /*omitDouble*/ 20, /*omitH*/ 30,
    /*extra*/ 80, /*extraVowel*/ 80, /*extraDouble*/ 40,
    /*swap*/ 30, /*firstLetter*/ 40, /*firstLetterFar*/ 160, /*upperCase*/ 5, /*accent*/ 10,
    /*rareWord*/ 16, /*bounds*/ {180, 260, 320}, /*perLetter*/ 60,
    /*settle*/ 1, /*settleBelow*/ 100, /*rampBase*/ 120, /*rampSlope*/ 30,
};

namespace {

constexpr int kOther = 26;   // index of every character without a base letter
constexpr int16_t kFar = 0x3FFF;

int16_t min16(int16_t a, int16_t b) { return a < b ? a : b; }

// Kinds of letter pairs, for the substitution cost.
enum PairKind : uint8_t { kPairOther, kPairVowel, kPairSound, kPairKey };

constexpr bool isVowelLetter(char c) { return c == 'a' || c == 'e' || c == 'i' || c == 'o' || c == 'u'; }

// Letters that sound alike, pair by pair.
constexpr const char *kSoundPairs[] = {"ck", "cs", "kq", "cq", "sz", "gj", "fv", "mn", "dt", "bp", "iy", "sx"};

// Keyboard rows; a key's neighbours are beside it and touching it in the
// rows above and below (each row sits half a key further right).
constexpr const char *kKeyRows[3] = {"qwertyuiop", "asdfghjkl", "zxcvbnm"};

constexpr bool keysTouch(char a, char b) {
    int ra = -1, ia = 0, rb = -1, ib = 0;
    for (int r = 0; r < 3; ++r) {
        for (int i = 0; kKeyRows[r][i] != '\0'; ++i) {
            if (kKeyRows[r][i] == a) { ra = r; ia = i; }
            if (kKeyRows[r][i] == b) { rb = r; ib = i; }
        }
    }
    if (ra < 0 || rb < 0) return false;
    if (ra == rb) return ia - ib == 1 || ib - ia == 1;
    if (ra > rb) {
        int t = ra; ra = rb; rb = t;
        t = ia; ia = ib; ib = t;
    }
    // ib is in the row below ia's: it touches ia - 1 and ia of that row.
    return rb == ra + 1 && (ib == ia || ib == ia - 1);
}

constexpr PairKind pairKind(char a, char b) {
    if (isVowelLetter(a) && isVowelLetter(b)) return kPairVowel;
    for (const char *p : kSoundPairs) {
        if ((p[0] == a && p[1] == b) || (p[0] == b && p[1] == a)) return kPairSound;
    }
    return keysTouch(a, b) ? kPairKey : kPairOther;
}

struct PairTable {
    PairKind kind[26][26];
};
constexpr PairTable makePairTable() {
    PairTable t{};
    for (int a = 0; a < 26; ++a) {
        for (int b = 0; b < 26; ++b) t.kind[a][b] = pairKind(static_cast<char>('a' + a), static_cast<char>('a' + b));
    }
    return t;
}
constexpr PairTable kPairs = makePairTable();

}  // namespace

void prepareRankWord(RankWord *rw, const char *word, int16_t charSet, const RankWeights &weights) {
    rw->charSet = charSet;
    rw->weights = &weights;
    for (int c = 0; c < 256; ++c) {
        uint8_t base = baseLetterOf(charSet, static_cast<unsigned char>(c));
        uint8_t f = base != 0 ? base : toLowerChar(charSet, static_cast<unsigned char>(c));
        if (f == 0x92) f = 0x27;   // both apostrophes are one character here
        rw->foldTable[c] = f;
        rw->letterIndex[c] = (f >= 'a' && f <= 'z') ? static_cast<uint8_t>(f - 'a') : kOther;
    }
    for (int a = 0; a <= kOther; ++a) {
        for (int b = 0; b <= kOther; ++b) {
            int16_t cost = weights.sub;
            if (a < kOther && b < kOther) {
                switch (kPairs.kind[a][b]) {
                case kPairVowel: cost = weights.subVowel; break;
                case kPairSound: cost = weights.subSound; break;
                case kPairKey: cost = weights.subKey; break;
                default: break;
                }
            }
            rw->subCost[a][b] = cost;
        }
    }
    for (int c = 0; c < 256; ++c) {
        uint8_t f = rw->foldTable[c];
        rw->omitCost[c] = isVowelLetter(static_cast<char>(f)) ? weights.omitVowel : weights.omit;
        bool silent = f == 'h' || f == 'k' || f == 'p' || f == 'w';
        rw->omitFirstCost[c] = static_cast<int16_t>(rw->omitCost[c] + (silent ? weights.firstLetter : weights.firstLetterFar));
        rw->subFilled[c] = false;
    }
    int n = 0;
    for (auto *p = reinterpret_cast<const unsigned char *>(word); *p != 0 && n < kMaxWordLen; ++p, ++n) {
        rw->raw[n] = *p;
        rw->fold[n] = rw->foldTable[*p];
    }
    rw->len = n;
    for (uint64_t &bits : rw->at) bits = 0;
    for (int j = 1; j <= n; ++j) rw->at[rw->letterIndex[rw->raw[j - 1]]] |= uint64_t{1} << j;
    rw->cheapestSub = weights.sub;
    for (int16_t c : {weights.subVowel, weights.subSound, weights.subKey}) rw->cheapestSub = min16(rw->cheapestSub, c);
    // A letter typed in too many: cheap when it doubles the one before.
    rw->extraAt[0] = 0;
    for (int j = 1; j <= n; ++j) {
        bool vowel = isVowelLetter(static_cast<char>(rw->fold[j - 1]));
        int16_t cost = (j >= 2 && rw->fold[j - 2] == rw->fold[j - 1]) ? weights.extraDouble
                       : vowel                                         ? weights.extraVowel
                                                                       : weights.extra;
        rw->extraAt[j] = cost;
    }
}

namespace {

// The cost of typing word letter x for candidate letter y.
int16_t substitution(const RankWord &rw, uint8_t x, uint8_t y) {
    if (x == y) return 0;
    uint8_t fx = rw.foldTable[x], fy = rw.foldTable[y];
    if (fx == fy) {
        if (toLowerChar(rw.charSet, x) != toLowerChar(rw.charSet, y)) return rw.weights->accent;
        bool upperOnlyInCandidate = (classOf(rw.charSet, y) & CC_UPPER) && !(classOf(rw.charSet, x) & CC_UPPER);
        return upperOnlyInCandidate ? rw.weights->upperCase : 0;
    }
    return rw.subCost[rw.letterIndex[x]][rw.letterIndex[y]];
}

// The substitution costs of candidate letter y against every letter of the
// word, position j at index j, the first letter's with its extra charge.
const int16_t *substitutionsFor(RankWord &rw, uint8_t y) {
    int16_t *costs = rw.subAt[y];
    if (!rw.subFilled[y]) {
        for (int j = 1; j <= rw.len; ++j) costs[j] = substitution(rw, rw.raw[j - 1], y);
        if (rw.len >= 1 && costs[1] > rw.weights->accent) {
            bool related = costs[1] < rw.weights->sub;
            costs[1] = static_cast<int16_t>(costs[1] + (related ? rw.weights->firstLetter : rw.weights->firstLetterFar));
        }
        rw.subFilled[y] = true;
    }
    return costs;
}

}  // namespace

void startRows(const RankWord &rw, RankRows *rows, int16_t limit) {
    int16_t *r0 = rows->r[0];
    r0[0] = 0;
    int hi = 0;
    for (int j = 1; j <= rw.len; ++j) {
        int16_t cost = rw.extraAt[j];
        if (j == 1) cost = static_cast<int16_t>(cost + rw.weights->firstLetter);
        r0[j] = min16(kFar, static_cast<int16_t>(r0[j - 1] + cost));
        if (r0[j] <= limit) hi = j;
    }
    rows->lo[0] = 0;
    rows->hi[0] = static_cast<int8_t>(hi);
    if (hi + 1 <= rw.len) r0[hi + 1] = kFar;
}

namespace {

// Puts cost v at cell k of a row whose band is lo to hi (empty when lo > hi),
// widening the band over kFar cells, then lowers the cells after k that a
// letter typed in too many now makes cheaper. False when v changes nothing.
bool placeCell(const RankWord &rw, int16_t *cur, int *lo, int *hi, int k, int16_t v, int16_t limit) {
    if (*lo > *hi) {
        *lo = *hi = k;
    } else if (k > *hi) {
        for (int g = *hi + 1; g < k; ++g) cur[g] = kFar;
        *hi = k;
    } else if (k < *lo) {
        for (int g = k + 1; g < *lo; ++g) cur[g] = kFar;
        *lo = k;
    } else if (v >= cur[k]) {
        return false;
    }
    cur[k] = v;
    for (int m = k + 1; m <= rw.len; ++m) {
        int16_t e = static_cast<int16_t>(cur[m - 1] + rw.extraAt[m]);
        if (m <= *hi) {
            if (e >= cur[m]) break;
        } else {
            if (e > limit) break;
            *hi = m;
        }
        cur[m] = e;
    }
    return true;
}

// stepRow's body, for the trie search to have inlined.
inline int16_t workOutRow(RankWord &rw, RankRows *rows, int d, uint8_t y, int16_t limit) {
    const RankWeights &w = *rw.weights;
    const int n = rw.len;
    rows->raw[d - 1] = y;
    const uint8_t fy = rw.foldTable[y];
    rows->fold[d - 1] = fy;
    const int16_t *prev = rows->r[d - 1];
    int16_t *cur = rows->r[d];
    const int plo = rows->lo[d - 1], phi = rows->hi[d - 1];
    const uint8_t fyPrev = d >= 2 ? rows->fold[d - 2] : 0;
    int lo = n + 1, hi = -1;   // the band being worked out, empty so far
    if (plo <= phi) {
        const int16_t *sub = substitutionsFor(rw, y);
        const int16_t *extra = rw.extraAt;
        // Leaving out candidate letter y: cheap when it doubles the one
        // before, or for an h after a letter it often follows unheard.
        int16_t omit = rw.omitCost[y];
        if (d >= 2 && fyPrev == fy) omit = w.omitDouble;
        else if (fy == 'h' && fyPrev != 0 && std::strchr("cgprstw", fyPrev) != nullptr) omit = w.omitH;
        // The cells worked out run from plo to phi + 1 and then on while a
        // letter typed in too many keeps them within the limit (invariant 4).
        int j = plo;
        if (j == 0) {
            cur[0] = min16(kFar, static_cast<int16_t>(prev[0] + (d == 1 ? rw.omitFirstCost[y] : omit)));
            j = 1;
        } else {
            cur[j - 1] = kFar;
        }
        const int end = phi + 1 < n ? phi + 1 : n;
        for (; j <= end; ++j) {
            int16_t v = static_cast<int16_t>(prev[j - 1] + sub[j]);
            v = min16(v, static_cast<int16_t>(prev[j] + omit));
            v = min16(v, static_cast<int16_t>(cur[j - 1] + extra[j]));
            cur[j] = min16(v, kFar);
        }
        for (; j <= n; ++j) {
            int16_t v = static_cast<int16_t>(cur[j - 1] + extra[j]);
            if (v > limit) break;
            cur[j] = v;
        }
        lo = plo;
        hi = j - 1;
    }
    // Two neighbours swapped: the word has fy fyPrev where the candidate has
    // fyPrev fy; the cost comes from row d - 2 (invariant 5).
    if (d >= 2 && fy != fyPrev && rows->lo[d - 2] <= rows->hi[d - 2] &&
        (rw.at[rw.letterIndex[fyPrev]] & (rw.at[rw.letterIndex[fy]] << 1)) != 0) {
        const int16_t *prev2 = rows->r[d - 2];
        const int last = rows->hi[d - 2] + 2 < n ? rows->hi[d - 2] + 2 : n;
        for (int k = rows->lo[d - 2] + 2; k <= last; ++k) {
            if (rw.fold[k - 1] != fyPrev || rw.fold[k - 2] != fy) continue;
            int16_t swap = (k == 2 && d == 2) ? static_cast<int16_t>(w.swap + w.firstLetter) : w.swap;
            int16_t v = static_cast<int16_t>(prev2[k - 2] + swap);
            if (v <= limit) placeCell(rw, cur, &lo, &hi, k, v, limit);
        }
    }
    // Trim the band to the cells within the limit.
    while (lo <= hi && cur[lo] > limit) ++lo;
    while (hi >= lo && cur[hi] > limit) --hi;
    int16_t best = kFar;
    if (lo <= hi) {
        for (int k = lo; k <= hi; ++k) best = min16(best, cur[k]);
        if (lo > 0) cur[lo - 1] = kFar;
        if (hi + 1 <= n) cur[hi + 1] = kFar;
    } else {
        lo = 1;
        hi = 0;
    }
    rows->lo[d] = static_cast<int8_t>(lo);
    rows->hi[d] = static_cast<int8_t>(hi);
    // A swap the next row may finish: the word has a letter, then fy, where
    // the candidate will have fy, then that letter.
    const bool fyInWord = rw.at[rw.letterIndex[y]] != 0;
    for (int k = plo + 2 > 2 ? plo + 2 : 2; fyInWord && k <= phi + 2 && k <= n; ++k) {
        if (rw.fold[k - 1] == fy && rw.fold[k - 2] != fy) {
            int16_t swap = (k == 2 && d == 1) ? static_cast<int16_t>(w.swap + w.firstLetter) : w.swap;
            best = min16(best, static_cast<int16_t>(prev[k - 2] + swap));
        }
    }
    return best;
}

}  // namespace

int16_t stepRow(RankWord &rw, RankRows *rows, int d, uint8_t y, int16_t limit) {
    return workOutRow(rw, rows, d, y, limit);
}

int16_t rankDistance(RankWord &rw, const char *candidate, int16_t limit) {
    RankRows rows;
    startRows(rw, &rows, limit);
    int d = 0;
    for (auto *p = reinterpret_cast<const unsigned char *>(candidate); *p != 0; ++p) {
        if (d >= kMaxWordLen) return kFar;
        ++d;
        if (stepRow(rw, &rows, d, *p, limit) > limit) return kFar;
    }
    return rows.hi[d] == rw.len ? rows.r[d][rw.len] : kFar;
}

void offerCandidate(RankPool *pool, const char *word, int16_t cost, int16_t rank) {
    for (int i = 0; i < pool->count; ++i) {
        if (std::strcmp(pool->entries[i].word, word) != 0) continue;
        if (pool->entries[i].rank <= rank) return;
        // A better offer of a listed word: take it out and place it anew.
        std::memmove(&pool->entries[i], &pool->entries[i + 1],
                     static_cast<size_t>(pool->count - i - 1) * sizeof(RankCandidate));
        --pool->count;
        break;
    }
    if (pool->count >= pool->capacity && pool->entries[pool->capacity - 1].rank <= rank) return;
    int place = pool->count < pool->capacity ? pool->count : pool->capacity - 1;
    while (place > 0 && pool->entries[place - 1].rank > rank) --place;
    int last = pool->count < pool->capacity ? pool->count : pool->capacity - 1;
    std::memmove(&pool->entries[place + 1], &pool->entries[place],
                 static_cast<size_t>(last - place) * sizeof(RankCandidate));
    RankCandidate &c = pool->entries[place];
    copyWord(c.word, word);
    c.cost = cost;
    c.rank = rank;
    if (pool->count < pool->capacity) ++pool->count;
}

int16_t limitAt(const RankLimit &limit, int depth) {
    int v = limit.base + limit.slope * depth;
    return static_cast<int16_t>(v < limit.bound ? v : limit.bound);
}

int16_t poolLimit(const RankPool &pool) {
    return pool.count >= pool.capacity ? pool.entries[pool.capacity - 1].rank : INT16_MAX;
}

namespace {

struct TrieSearch {
    RankWord *rw;
    const WordTrie *trie;
    bool commonness;
    RankLimit limit;
    RankPool *pool;
    RankRows rows;
};

// The limit in force at a depth: the caller's, or below the pool's last
// rank (invariant 3).
int16_t currentLimit(const TrieSearch &s, int depth) {
    int16_t worst = poolLimit(*s.pool);
    int16_t limit = limitAt(s.limit, depth);
    return worst <= limit ? static_cast<int16_t>(worst - 1) : limit;
}

void offerNode(TrieSearch &s, uint32_t node, int depth) {
    if (s.rows.hi[depth] != s.rw->len) return;
    int16_t cost = s.rows.r[depth][s.rw->len];
    if (cost > currentLimit(s, kMaxWordLen)) return;
    int16_t rank = cost;
    if (s.commonness) {
        int cls = s.trie->info[node] >> kTrieClassShift;
        rank = static_cast<int16_t>(cost + s.rw->weights->rareWord * (kCommonnessClasses - 1 - cls));
    }
    char word[kWordBufSize];
    std::memcpy(word, s.rows.raw, static_cast<size_t>(depth));
    word[depth] = '\0';
    offerCandidate(s.pool, word, cost, rank);
}

// Visits the siblings starting at node first, the children of a node at depth.
constexpr uint32_t kAllLetters = (1u << 27) - 1;
constexpr uint32_t kVowelBits = 1u << ('a' - 'a') | 1u << ('e' - 'a') | 1u << ('i' - 'a') | 1u << ('o' - 'a') |
                                1u << ('u' - 'a');

// The letters (bits by letter index; bit 26 for every other character)
// that a child of a node at depth d can have and still come within limit:
// those the word has next to a cell that can afford a match, those a cell
// can afford to have left out, and those that finish a swap (invariant 6).
uint32_t viableLetters(const RankWord &rw, const RankRows &rows, int d, int16_t limit) {
    const RankWeights &w = *rw.weights;
    const int lo = rows.lo[d], hi = rows.hi[d];
    uint32_t mask = 1u << kOther;
    int16_t least = kFar;
    for (int j = lo; j <= hi; ++j) {
        int16_t cost = rows.r[d][j];
        least = min16(least, cost);
        if (j < rw.len && cost <= limit) {
            if (cost + rw.cheapestSub <= limit) return kAllLetters;
            mask |= 1u << rw.letterIndex[rw.raw[j]];
        }
    }
    const uint8_t fy = rows.fold[d - 1];
    if (least + w.omit <= limit) return kAllLetters;
    if (least + w.omitVowel <= limit) mask |= kVowelBits;
    if (least + w.omitDouble <= limit) mask |= 1u << rw.letterIndex[fy];
    if (least + w.omitH <= limit) mask |= 1u << ('h' - 'a');
    // Swaps from row d - 1 finished by the child, and swaps the child starts.
    const int plo = rows.lo[d - 1], phi = rows.hi[d - 1];
    const bool fyInWord = rw.at[rw.letterIndex[fy]] != 0;
    for (int k = plo + 2 > 2 ? plo + 2 : 2; fyInWord && k <= phi + 2 && k <= rw.len; ++k) {
        if (rw.fold[k - 1] == fy && rows.r[d - 1][k - 2] + w.swap <= limit) mask |= 1u << rw.letterIndex[rw.raw[k - 2]];
    }
    for (int j = lo; j <= hi && j + 2 <= rw.len; ++j) {
        if (rows.r[d][j] + w.swap <= limit) mask |= 1u << rw.letterIndex[rw.raw[j + 1]];
    }
    return mask;
}

void visitSiblings(TrieSearch &s, uint32_t first, int depth) {
    const WordTrie &t = *s.trie;
    int16_t limit = currentLimit(s, depth + 1);   // falls only when a word is offered
    const uint32_t viable = depth == 0 ? kAllLetters : viableLetters(*s.rw, s.rows, depth, limit);
    for (uint32_t node = first; node < t.count; ++node) {
        uint32_t child = trieFirstChild(t, node);
        uint8_t info = t.info[node];
        uint8_t label = trieLabel(t, node);
        int16_t best = (viable >> s.rw->letterIndex[label] & 1) ? workOutRow(*s.rw, &s.rows, depth + 1, label, limit)
                                                                 : kFar;
        if (best <= limit) {
            if (info & kTrieTerminal) offerNode(s, node, depth + 1);
            if (child != 0 && depth + 1 < kMaxWordLen) visitSiblings(s, child, depth + 1);
            limit = currentLimit(s, depth + 1);
        }
        if (info & kTrieLastSibling) break;
    }
}

}  // namespace

void searchTrie(RankWord &rw, const WordTrie &trie, bool commonness, RankLimit limit,
                RankPool *pool) {
    if (trie.count == 0 || rw.len == 0) return;
    TrieSearch s{&rw, &trie, commonness, limit, pool, {}};
    startRows(rw, &s.rows, limitAt(limit, 0));
    visitSiblings(s, 0, 0);
}

void searchEntries(RankWord &rw, const TLexState &lex, int16_t limit, RankPool *pool) {
    for (uint32_t i = 0; i < lex.count; ++i) {
        const char *word = lex.entries[i].word;
        int16_t worst = poolLimit(*pool);
        int16_t cap = worst <= limit ? static_cast<int16_t>(worst - 1) : limit;
        int16_t cost = rankDistance(rw, word, cap);
        if (cost <= cap) offerCandidate(pool, word, cost, cost);
    }
}
