// check/rank.cpp — the ranked suggester, ORTH_SuggestRanked, beside the
// defined ORTH_Suggest: candidates are the words within a few typing errors
// of the word (weighted by how people mistype, ranksearch.cpp), ordered by
// that cost and by how common each word is; and ORTH_CompressLexFreq, which
// builds the commonness file a compressed lexicon is ranked with.
//
// (1) Lexicons are used as ORTH_Suggest uses them, in slot order: a change
//     lexicon's replacement of the word comes first, ignore lexicons and
//     compressed lexicons offer words, and a word an exclude lexicon holds
//     is never returned.
// (2) A compressed lexicon is searched through its trie (LexRankIndex),
//     made on its first ranked suggestion with the classes of its
//     commonness file. No file: every word ranks alike. A damaged file, or
//     one made for another word list, is refused with a log line and the
//     call (and every later one) returns ORTH_Suggest's list instead.
// (3) The search widens in passes of growing cost limits. The first finds
//     every word within its limit; the wider ones hold a candidate's first
//     letters to a tighter limit (RankLimit), so they stay cheap. Widening
//     stops once the best candidate ranks within both the pass's limit and
//     settleBelow: no word outside the limit can rank better, since a rank
//     is never below its cost.
#include <cstring>
#include <new>

#include "check/chartab.h"
#include "check/check.h"
#include "check/rank_int.h"
#include "check/suggest_int.h"
#include "engine/log.h"
#include "engine/session.h"
#include "lex/clex.h"
#include "lex/lexfreq.h"
#include "orth.h"

namespace {

constexpr int16_t kReplacementScore = 99;   // as ORTH_Suggest scores a change lexicon's word
constexpr int16_t kBestScore = 98;          // a found word ranks below a replacement
constexpr int kSplitCandidates = 8;         // split-word candidates looked at

// Indexing a compressed lexicon: the trie builder, the commonness classes
// and the hash of the words walked, to match against the commonness file.
struct IndexWalk {
    TrieBuilder builder;
    const LexFreq *freq;
    uint32_t hash;
    uint32_t words;    // one past the highest word index seen
};

int16_t indexWord(const uint8_t *word, int len, uint32_t index, void *context) {
    auto *walk = static_cast<IndexWalk *>(context);
    uint8_t cls = walk->freq != nullptr ? commonnessOf(*walk->freq, index) : 0;
    int16_t rc = addTrieWord(&walk->builder, word, len, cls);
    if (rc < 0) return rc;
    walk->hash = hashLexWord(walk->hash, word, len, index);
    if (index + 1 > walk->words) walk->words = index + 1;
    return 0;
}

// A first guess of the trie's size: about one node per byte of coded words.
uint32_t estimateNodes(const CLexState &clex) {
    uint64_t bytes = 0;
    for (uint16_t i = 0; i < clex.segCount; ++i) bytes += clex.segs[i].length;
    return static_cast<uint32_t>(bytes > kTrieMaxNodes ? kTrieMaxNodes : bytes + 1024);
}

// Makes the lexicon's index (invariant 2). 0 with lex->rank set (its status
// may be refused or failed, each logged once); ORTH_OUT_OF_MEMORY_ERR leaves
// it unset, to be tried again on a later call.
int16_t makeRankIndex(LexEntry *lex) {
    auto *index = new (std::nothrow) LexRankIndex();
    if (index == nullptr) return ORTH_OUT_OF_MEMORY_ERR;
    CLexState &clex = lex->clex;
    char freqPath[kPathBufSize];
    LexFreq freq{};
    const char *reason = "";
    int16_t rc = commonnessPath(clex.path, freqPath) ? LexFreq_Read(freqPath, &freq, &reason)
                                                      : ORTH_FILE_NOT_FOUND_ERR;
    if (rc == ORTH_OUT_OF_MEMORY_ERR) {
        delete index;
        return rc;
    }
    index->commonness = rc == 0;
    if (rc == ORTH_UNKNOWN_LEXICON_TYPE_ERR) {
        index->status = kRankIndexRefused;
    } else {
        IndexWalk walk{};
        walk.freq = index->commonness ? &freq : nullptr;
        walk.hash = kWordHashSeed;
        walk.words = clex.smallCount;
        rc = beginTrie(&index->trie, &walk.builder, estimateNodes(clex));
        if (rc == 0) rc = walkLexWords(&clex, indexWord, &walk);
        if (rc == 0) rc = finishTrie(&walk.builder);
        if (rc == ORTH_OUT_OF_MEMORY_ERR) {
            LexFreq_Free(&freq);
            freeRankIndex(index);
            return rc;
        }
        if (rc < 0) {
            engineLog("ORTH_SuggestRanked: can't index %s (%hd); the defined order is used", clex.path, rc);
            index->status = kRankIndexFailed;
        } else if (index->commonness && (walk.words != freq.words || walk.hash != freq.hash)) {
            reason = "made for another word list";
            index->status = kRankIndexRefused;
        }
    }
    LexFreq_Free(&freq);
    if (index->status == kRankIndexRefused) {
        engineLog("ORTH_SuggestRanked: %s refused (%s); the defined order is used", freqPath, reason);
    }
    if (index->status != kRankIndexReady) freeTrie(&index->trie);
    lex->rank = index;
    return 0;
}

// Whether an exclude lexicon of the session holds word (as the checker
// would find it, under the session's case rule).
bool isExcluded(Session *session, const char *word) {
    bool caseSensitive = (session->options & ORTH_CASE_SENSITIVE_OPT) != 0;
    char scratch[kWordBufSize];
    for (LexEntry *lex : session->lexicons) {
        if (lex == nullptr || lex->format != ORTH_TEXT_LEX_FORMAT || lex->type != ORTH_EXCLUDE_LEX_TYPE) continue;
        if (check1Lex(session, lex, caseSensitive, word, scratch) == ORTH_CHK_EXCLUDED) return true;
    }
    return false;
}

// Score of a rank for a word of len letters: the share of the word's
// points (100 a letter) the rank leaves, as ORTH_Suggest's typographical
// score counts them; at most kBestScore, at least 0.
int16_t scoreOfRank(int16_t rank, int len) {
    int points = 100 * (len < 2 ? 2 : len);
    int score = (points - rank) * 100 / points;
    if (score > kBestScore) score = kBestScore;
    return static_cast<int16_t>(score < 0 ? 0 : score);
}

// The list of one call: the change lexicons' replacements, then the pool.
struct RankedCall {
    Session *session;
    const char *typed;     // the word as the caller gave it
    char word[kWordBufSize];
    RankWord rw;
    RankPool pool;
    char replacements[kMaxLexPerSession][kWordBufSize];
    int replacementCount;
};

void collectReplacements(RankedCall *call) {
    for (LexEntry *lex : call->session->lexicons) {
        if (lex == nullptr || lex->format != ORTH_TEXT_LEX_FORMAT) continue;
        if (lex->type != ORTH_AUTO_CHANGE_LEX_TYPE && lex->type != ORTH_CONDITIONAL_CHANGE_LEX_TYPE) continue;
        const TLexEntry *entry = findChangeEntry(&lex->tlex, call->word, call->session->charSet);
        if (entry == nullptr || entry->replacement == nullptr || entry->replacement[0] == '\0') continue;
        copyWord(call->replacements[call->replacementCount++], entry->replacement);
    }
}

// One pass over the lexicons within limit (invariant 3).
void searchLexicons(RankedCall *call, RankLimit limit) {
    for (LexEntry *lex : call->session->lexicons) {
        if (lex == nullptr) continue;
        if (lex->format == ORTH_COMPRESSED_LEX_FORMAT && lex->rank != nullptr) {
            searchTrie(call->rw, lex->rank->trie, lex->rank->commonness, limit, &call->pool);
        } else if (lex->format == ORTH_TEXT_LEX_FORMAT && lex->type == ORTH_IGNORE_LEX_TYPE) {
            searchEntries(call->rw, lex->tlex, limit.bound, &call->pool);
        }
    }
}

void searchWidening(RankedCall *call) {
    const RankWeights &w = *call->rw.weights;
    int settle = call->pool.capacity < w.settle ? call->pool.capacity : w.settle;
    int16_t cap = static_cast<int16_t>(w.perLetter * call->rw.len);
    bool first = true;
    int16_t last = 0;
    for (int16_t limit : w.bounds) {
        if (limit > cap) limit = cap;
        if (!first && limit <= last) return;   // nothing wider to search
        last = limit;
        RankLimit ramp{limit, first ? limit : w.rampBase, first ? static_cast<int16_t>(0) : w.rampSlope};
        first = false;
        searchLexicons(call, ramp);
        if (call->pool.count < settle) continue;
        const RankCandidate &c = call->pool.entries[settle - 1];
        if (c.rank <= limit && c.rank <= w.settleBelow) return;
    }
}

// Split-word candidates under ORTH_SUGGEST_SPLIT_WORDS_OPT, ranked by cost.
int16_t addSplitWords(RankedCall *call) {
    if (!(call->session->options & ORTH_SUGGEST_SPLIT_WORDS_OPT)) return 0;
    Suggestion found[kSplitCandidates];
    SuggestionList list{found, 0, kSplitCandidates};
    addSplitCandidates(call->session, call->word, &list);
    for (uint16_t i = 0; i < list.count; ++i) {
        int16_t cost = rankDistance(call->rw, found[i].word, INT16_MAX / 2);
        offerCandidate(&call->pool, found[i].word, cost, cost);
    }
    return 0;
}

// Copies one suggestion into the packed list. False when it and the final
// zero do not fit (the buffer then ends after the ones copied).
bool packSuggestion(const char *text, int16_t score, char *buffer, int32_t size, int32_t *used,
                    int16_t *scores, int *returned) {
    auto len = static_cast<int32_t>(std::strlen(text));
    if (*used + len + 1 >= size) return false;
    if (*used == 0) std::memset(buffer, 0, static_cast<size_t>(size));
    std::memcpy(buffer + *used, text, static_cast<size_t>(len));
    if (scores != nullptr) scores[*returned] = score;
    ++*returned;
    *used += len + 1;
    return true;
}

// Whether text is among the first n packed words of buffer.
bool isPacked(const char *buffer, int n, const char *text) {
    for (const char *p = buffer; n > 0; p += std::strlen(p) + 1, --n) {
        if (std::strcmp(p, text) == 0) return true;
    }
    return false;
}

// Packs the replacements, then the pool, each given the typed word's case
// and possessive ending; excluded words and repeats are left out.
int16_t packRanked(RankedCall *call, char *buffer, int32_t size, int16_t *scores, uint16_t max) {
    bool matchCase = (call->session->options & ORTH_MATCH_CASE_OPT) != 0;
    int16_t charSet = call->session->charSet;
    int32_t used = 0;
    int returned = 0;
    int total = call->replacementCount + call->pool.count;
    for (int i = 0; i < total && returned < max; ++i) {
        char text[kWordBufSize];
        int16_t score;
        if (i < call->replacementCount) {
            copyWord(text, call->replacements[i]);
            score = kReplacementScore;
        } else {
            const RankCandidate &c = call->pool.entries[i - call->replacementCount];
            copyWord(text, c.word);
            score = scoreOfRank(c.rank, call->rw.len);
        }
        if (isExcluded(call->session, text)) continue;
        adaptReplacement(call->typed, text, charSet, matchCase);
        if (returned > 0 && isPacked(buffer, returned, text)) continue;
        if (!packSuggestion(text, score, buffer, size, &used, scores, &returned)) {
            engineLog("ORTH_SuggestRanked: buffer too small");
            return ORTH_BUFFER_TOO_SMALL_ERR;
        }
    }
    if (size > 0) buffer[used] = '\0';
    return 0;
}

// Makes any missing index; false when one of the session's compressed
// lexicons is ranked in the defined order (a refused commonness file, words
// that could not be read, or no memory for the index).
bool prepareIndexes(Session *session) {
    for (LexEntry *lex : session->lexicons) {
        if (lex == nullptr || lex->format != ORTH_COMPRESSED_LEX_FORMAT) continue;
        if (lex->rank == nullptr && makeRankIndex(lex) < 0) {
            engineLog("ORTH_SuggestRanked: out of memory for the index; the defined order is used");
            return false;
        }
        if (lex->rank->status != kRankIndexReady) return false;
    }
    return true;
}

}  // namespace

int16_t suggestRanked(Session *session, const char *word, const RankWeights &weights, char *buffer,
                      int32_t size, int16_t *scores, uint16_t maxSuggestions, bool *defined) {
    *defined = false;
    if (buffer == nullptr || size < 0) size = 0;
    if (size > 0) buffer[0] = '\0';
    auto *call = new (std::nothrow) RankedCall;   // filled below, not zeroed: it is large
    if (call == nullptr) {
        engineLog("ORTH_SuggestRanked: out of memory");
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    call->session = session;
    call->typed = word;
    call->pool.count = 0;
    call->replacementCount = 0;
    if (maxSuggestions == 0 || normalizeWord(word, session->charSet, session->options, call->word) == 0) {
        delete call;
        return 0;
    }
    if (!prepareIndexes(session)) {
        delete call;
        *defined = true;
        return 0;
    }
    prepareRankWord(&call->rw, call->word, session->charSet, weights);
    int capacity = maxSuggestions + 4;   // room for a few excluded words
    call->pool.capacity = capacity > kMaxRanked ? kMaxRanked : capacity;
    collectReplacements(call);
    searchWidening(call);
    addSplitWords(call);
    int16_t rc = packRanked(call, buffer, size, scores, maxSuggestions);
    delete call;
    return rc;
}

// 0 with the packed list in buffer and the scores in scores (null: not
// stored); ORTH_BAD_SESSION_ID_ERR; ORTH_INVALID_WORD_ERR for a null word;
// ORTH_OUT_OF_MEMORY_ERR; ORTH_BUFFER_TOO_SMALL_ERR with the suggestions
// that fitted left in the buffer. When a compressed lexicon's commonness
// file was refused, ORTH_Suggest's list (depth -1) is returned instead.
extern "C" ORTH_API int16_t ORTH_CALL ORTH_SuggestRanked(int16_t sessionId, const char *word, char *buffer,
                                                        int32_t size, int16_t *scores,
                                                        uint16_t maxSuggestions) noexcept {
    Session *session = sessionFor(sessionId, "ORTH_SuggestRanked");
    if (session == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (word == nullptr) {
        engineLog("ORTH_SuggestRanked: null word");
        return ORTH_INVALID_WORD_ERR;
    }
    bool defined = false;
    int16_t rc = suggestRanked(session, word, kRankWeights, buffer, size, scores, maxSuggestions, &defined);
    if (defined) return ORTH_Suggest(sessionId, word, -1, buffer, size, scores, maxSuggestions);
    return rc;
}

// 0; ORTH_BAD_SESSION_ID_ERR; ORTH_FILE_NOT_FOUND_ERR for a null path; or
// LexFreq_Build's codes (the line of a bad list entry in *lineNumber).
extern "C" ORTH_API int16_t ORTH_CALL ORTH_CompressLexFreq(int16_t sessionId, const char *lexPath,
                                                          const char *listPath,
                                                          uint32_t *lineNumber) noexcept {
    if (lineNumber != nullptr) *lineNumber = 0;
    if (sessionFor(sessionId, "ORTH_CompressLexFreq") == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (lexPath == nullptr || listPath == nullptr) {
        engineLog("ORTH_CompressLexFreq: no file name");
        return ORTH_FILE_NOT_FOUND_ERR;
    }
    return LexFreq_Build("ORTH_CompressLexFreq", lexPath, listPath, lineNumber);
}
