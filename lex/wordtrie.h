// lex/wordtrie.h — a compact trie of a compressed lexicon's words, for the
// ranked suggester's edit-distance search. Built once from the lexicon's
// segments (on the first ranked suggestion, not when the lexicon opens) and
// kept with the lexicon until it closes. Each word carries its commonness
// class (0 unknown, 1 rarest to 15 most common) from the lexicon's
// commonness file.
//
// Layout: five bytes a node, the children of a node side by side (breadth
// first), so that a search runs along a node's children through adjacent
// memory. A node holds its label and the index of its first child (0: none,
// since the root's children, the top-level nodes, start at index 0); the
// last child of a node carries kTrieLastSibling.
#pragma once

#include <cstdint>

#include "engine/limits.h"

struct CLexState;

constexpr uint8_t kTrieTerminal = 0x01;     // a word ends at this node
constexpr uint8_t kTrieLastSibling = 0x02;  // no sibling follows
constexpr int kTrieClassShift = 4;          // commonness class in bits 4 to 7
constexpr uint32_t kTrieMaxNodes = (1u << 24) - 1;  // node indexes are 24 bits
constexpr int kCommonnessClasses = 16;

struct WordTrie {
    uint32_t *nodes;    // owned; label in bits 0-7, first child in bits 8-31
    uint8_t *info;      // owned; kTrieTerminal, kTrieLastSibling, class
    uint32_t count;     // nodes in use
    uint32_t capacity;
    uint32_t words;     // distinct words stored
};

inline uint8_t trieLabel(const WordTrie &t, uint32_t node) { return static_cast<uint8_t>(t.nodes[node]); }
inline uint32_t trieFirstChild(const WordTrie &t, uint32_t node) { return t.nodes[node] >> 8; }

// Building from words given in ascending byte order. The builder appends
// each word's new nodes in preorder, keeping the path of the last word (a
// word equal to the last one only raises its class); finishTrie then lays
// the nodes out breadth first.
struct TrieBuilder {
    WordTrie *trie;
    uint32_t path[kWordBufSize];   // node at each depth of the last word
    uint8_t last[kWordBufSize];    // the last word's bytes
    int lastLen;
};

// Starts an empty trie with room for expectedNodes. 0, or ORTH_OUT_OF_MEMORY_ERR.
int16_t beginTrie(WordTrie *trie, TrieBuilder *builder, uint32_t expectedNodes);
// Adds a word of 1 to 63 bytes with its class. 0; ORTH_WORD_ORDER_ERR for a
// word below the last one (the input was not sorted); ORTH_INVALID_WORD_ERR
// for an empty or over-long word; ORTH_OUT_OF_MEMORY_ERR (also past
// kTrieMaxNodes). On failure the trie is as before the call.
int16_t addTrieWord(TrieBuilder *builder, const uint8_t *word, int len, uint8_t commonness);
// Closes the open nodes and lays the trie out breadth first. 0, or
// ORTH_OUT_OF_MEMORY_ERR with the trie emptied.
int16_t finishTrie(TrieBuilder *builder);
void freeTrie(WordTrie *trie);

// What the ranked suggester keeps with a compressed lexicon, made on the
// lexicon's first ranked suggestion and freed when it closes.
enum RankIndexStatus : int16_t {
    kRankIndexReady = 0,     // the trie holds every word
    kRankIndexRefused = 1,   // the commonness file was refused: the defined order is used
    kRankIndexFailed = 2,    // the lexicon's words could not be read: likewise
};
struct LexRankIndex {
    int16_t status;
    bool commonness;    // the trie's classes come from a commonness file
    WordTrie trie;
};
void freeRankIndex(LexRankIndex *index);

// The words of a compressed lexicon in byte order, each with its index in
// the lexicon's own order (the small words first, then the segments in table
// order): what the commonness file is indexed by. The visitor returns 0 to
// go on, or a negative code that ends the walk with that code.
typedef int16_t (*LexWordVisitor)(const uint8_t *word, int len, uint32_t index, void *context);
// 0 after the last word; the visitor's code; or a segment's load or decode
// failure. Loads every segment in turn (under the lexicon's budget).
int16_t walkLexWords(CLexState *state, LexWordVisitor visitor, void *context);
