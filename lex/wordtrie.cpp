// lex/wordtrie.cpp — the compact trie of a compressed lexicon's words and
// the walk that feeds it the lexicon's words in byte order.
//
// (1) Words arrive in ascending byte order, so each word's new nodes are
//     appended after everything before them: appending is preorder. A node's
//     subtree is complete when a later word leaves its path (or at the end);
//     closeNodes then stores its size, the skip to its next sibling, in the
//     bits that will later hold its first child.
// (2) A node closed because the next word leaves its path above its depth has
//     no sibling after it (kTrieLastSibling); one closed because the next
//     word branches at its own depth has one.
// (4) finishTrie copies the preorder nodes breadth first: each node taken
//     from the queue appends its children (found by their skips) at the end,
//     so a node's children end up side by side and its first child's index
//     is known when it is appended.
// (3) The lexicon's small words (one or two bytes) are kept apart from its
//     segments; walkLexWords merges them into the segments' order, so the
//     trie sees one sorted stream, and reports each word's index in the
//     file's own order for the commonness data.
#include "lex/wordtrie.h"

#include <cstdlib>
#include <cstring>

#include "engine/log.h"
#include "lex/clex_int.h"
#include "orth.h"

namespace {

// Grows the node arrays to hold at least need nodes. False when memory is short.
bool growTrie(WordTrie *t, uint32_t need) {
    if (need <= t->capacity) return true;
    if (need > kTrieMaxNodes) return false;
    uint32_t cap = t->capacity < 1024 ? 1024 : t->capacity;
    while (cap < need) cap = cap > kTrieMaxNodes / 2 ? kTrieMaxNodes : cap * 2;
    auto *nodes = static_cast<uint32_t *>(std::realloc(t->nodes, cap * sizeof(uint32_t)));
    if (nodes == nullptr) return false;
    t->nodes = nodes;
    auto *info = static_cast<uint8_t *>(std::realloc(t->info, cap));
    if (info == nullptr) return false;
    t->info = info;
    t->capacity = cap;
    return true;
}

// Closes the nodes of the last word's path from depth `from` down (invariants
// 1 and 2): the next word shares only the first `keep` bytes of the path.
void closeNodes(TrieBuilder *b, int from, int keep) {
    WordTrie *t = b->trie;
    for (int d = b->lastLen - 1; d >= from; --d) {
        uint32_t node = b->path[d];
        t->nodes[node] = (t->nodes[node] & 0xFFu) | ((t->count - node) << 8);
        if (d > keep) t->info[node] |= kTrieLastSibling;
    }
}

}  // namespace

int16_t beginTrie(WordTrie *trie, TrieBuilder *builder, uint32_t expectedNodes) {
    *trie = WordTrie{};
    *builder = TrieBuilder{};
    builder->trie = trie;
    if (!growTrie(trie, expectedNodes == 0 ? 1 : expectedNodes)) {
        freeTrie(trie);
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    return 0;
}

int16_t addTrieWord(TrieBuilder *b, const uint8_t *word, int len, uint8_t commonness) {
    if (len <= 0 || len > kMaxWordLen) return ORTH_INVALID_WORD_ERR;
    int shared = 0;
    while (shared < len && shared < b->lastLen && word[shared] == b->last[shared]) ++shared;
    WordTrie *t = b->trie;
    uint8_t cls = static_cast<uint8_t>((commonness & 0x0F) << kTrieClassShift);
    if (shared == len && shared == b->lastLen) {  // the same word again
        uint8_t &info = t->info[b->path[len - 1]];
        if ((info & 0xF0) < cls) info = static_cast<uint8_t>((info & 0x0F) | cls);
        return 0;
    }
    // Below the last word: a prefix of it, or smaller at the first difference.
    if (shared == len || (shared < b->lastLen && word[shared] < b->last[shared])) {
        return ORTH_WORD_ORDER_ERR;
    }
    if (!growTrie(t, t->count + static_cast<uint32_t>(len - shared))) return ORTH_OUT_OF_MEMORY_ERR;
    closeNodes(b, shared, shared);
    for (int d = shared; d < len; ++d) {
        uint32_t node = t->count++;
        t->nodes[node] = word[d] | (1u << 8);
        t->info[node] = 0;
        b->path[d] = node;
        b->last[d] = word[d];
    }
    t->info[b->path[len - 1]] |= static_cast<uint8_t>(kTrieTerminal | cls);
    b->lastLen = len;
    ++t->words;
    return 0;
}

int16_t finishTrie(TrieBuilder *b) {
    WordTrie *t = b->trie;
    closeNodes(b, 0, -1);
    b->lastLen = 0;
    const uint32_t n = t->count;
    auto *nodes = static_cast<uint32_t *>(std::malloc((n == 0 ? 1 : n) * sizeof(uint32_t)));
    auto *info = static_cast<uint8_t *>(std::malloc(n == 0 ? 1 : n));
    auto *from = static_cast<uint32_t *>(std::malloc((n == 0 ? 1 : n) * sizeof(uint32_t)));
    if (nodes == nullptr || info == nullptr || from == nullptr) {
        std::free(nodes);
        std::free(info);
        std::free(from);
        freeTrie(t);
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    // Invariant 4: from[i] is the preorder index of breadth-first node i.
    uint32_t added = 0;
    auto appendSiblings = [&](uint32_t pre) {
        for (;;) {
            from[added] = pre;
            nodes[added] = t->nodes[pre] & 0xFFu;
            info[added] = t->info[pre];
            ++added;
            uint32_t skip = t->nodes[pre] >> 8;
            if ((t->info[pre] & kTrieLastSibling) || skip == 0 || pre + skip >= n) break;
            pre += skip;
        }
    };
    if (n > 0) appendSiblings(0);
    for (uint32_t i = 0; i < added; ++i) {
        uint32_t pre = from[i];
        if ((t->nodes[pre] >> 8) > 1 && pre + 1 < n) {
            nodes[i] |= added << 8;
            appendSiblings(pre + 1);
        }
    }
    std::free(from);
    std::free(t->nodes);
    std::free(t->info);
    t->nodes = nodes;
    t->info = info;
    t->capacity = n;
    return 0;
}

void freeTrie(WordTrie *trie) {
    if (trie == nullptr) return;
    std::free(trie->nodes);
    std::free(trie->info);
    *trie = WordTrie{};
}

void freeRankIndex(LexRankIndex *index) {
    if (index == nullptr) return;
    freeTrie(&index->trie);
    delete index;
}

namespace {

// Walk state: the small words not yet passed on, and the running index.
struct LexWalk {
    const CLexState *state;
    LexWordVisitor visitor;
    void *context;
    uint16_t nextSmall;     // next small word to merge in
    uint32_t segIndex;      // index of the next segment word
    int16_t rc;             // the visitor's code that ended the walk
};

// The small word at i as bytes; its length (1 or 2).
int smallWordAt(const CLexState *s, uint16_t i, uint8_t out[2]) {
    out[0] = s->smallWords[i][0];
    out[1] = s->smallWords[i][1];
    return out[1] == 0 ? 1 : 2;
}

// Byte-wise order of a and b, the shorter first when one is a prefix.
int compareWords(const uint8_t *a, int la, const uint8_t *b, int lb) {
    int n = la < lb ? la : lb;
    int c = std::memcmp(a, b, static_cast<size_t>(n));
    if (c != 0) return c;
    return la - lb;
}

// Passes on the small words below word (all of them for a null word).
int16_t flushSmallWords(LexWalk *walk, const uint8_t *word, int len) {
    const CLexState *s = walk->state;
    uint16_t count = s->smallCount < kMaxSmallWords ? s->smallCount : kMaxSmallWords;
    while (walk->nextSmall < count) {
        uint8_t small[2];
        int sl = smallWordAt(s, walk->nextSmall, small);
        if (word != nullptr && (small[0] > word[0] || compareWords(small, sl, word, len) > 0)) break;
        if (small[0] < kCodeLiteralFirst || (sl == 2 && small[1] < kCodeLiteralFirst)) {
            ++walk->nextSmall;   // no word holds a byte below 0x20
            continue;
        }
        int16_t rc = walk->visitor(small, sl, walk->nextSmall, walk->context);
        if (rc < 0) return rc;
        ++walk->nextSmall;
    }
    return 0;
}

int visitSegmentWord(const char *, const char *decoded, void *context) {
    auto *walk = static_cast<LexWalk *>(context);
    auto *word = reinterpret_cast<const uint8_t *>(decoded);
    int len = static_cast<int>(std::strlen(decoded));
    int16_t rc = flushSmallWords(walk, word, len);
    if (rc == 0) rc = walk->visitor(word, len, walk->segIndex, walk->context);
    if (rc < 0) {
        walk->rc = rc;
        return -1;
    }
    ++walk->segIndex;
    return 1;
}

}  // namespace

int16_t walkLexWords(CLexState *state, LexWordVisitor visitor, void *context) {
    LexWalk walk{state, visitor, context, 0, state->smallCount, 0};
    for (uint16_t seg = 0; seg < state->segCount; ++seg) {
        int16_t rc = loadSeg(state, seg);
        if (rc == ORTH_WORD_NOT_FOUND_ERR) continue;   // an empty segment
        if (rc < 0) return rc;
        int walked = decodeSeg(state, seg, "", false, visitSegmentWord, &walk);
        if (walk.rc < 0) return walk.rc;
        if (walked < 0) return static_cast<int16_t>(walked);
    }
    return flushSmallWords(&walk, nullptr, 0);
}
