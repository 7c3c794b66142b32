// block/block.h — text block and word scanner. A TextBlock walks a text
// buffer word by word with a cursor, extracts words under the engine's word
// rules, replaces or deletes the current word in place, and remembers the
// previous word for doubled-word detection. The text is either the caller's
// buffer (edited in place) or a copy the block owns. No write ever goes past
// the block's size.
#pragma once

#include <cstdint>

#include "engine/limits.h"

struct TextBlock {
    char *text;             // the caller's buffer, or a copy owned by the block
    uint32_t length;        // text bytes; not zero-terminated by the block
    uint32_t size;          // capacity of the text buffer
    uint32_t cursor;        // 0 to length
    int16_t firstWord;      // 1 until the scanner first steps to a next word
    char previousWord[kWordBufSize];
    uint32_t previousWordPos;
    int16_t ownsText;
    int16_t charSet;
    bool hadWord;           // the text (or a piece carried into it) had a word
};

// Opening and closing.
int16_t BlockOpen(char *text, uint32_t length, uint32_t size, uint16_t copy, int16_t charSet,
                  TextBlock *block);
int16_t BlockClose(TextBlock *block);

// Walking.
int16_t BlockGetWord(TextBlock *block, char *buffer, uint16_t size);
int16_t BlockNextWord(TextBlock *block);
int16_t BlockSetCursor(TextBlock *block, uint32_t cursor);
int16_t BlockDoubledWord(TextBlock *block, bool caseSensitive);
int16_t BlockAtFirstWord(const TextBlock *block);

// The same three for a caller that takes several steps over a text that
// cannot change in between (one block-checking call): the last measure of a
// word is kept in memo and not worked out again.
struct BlockMeasure {
    uint32_t start = UINT32_MAX;  // the word measured, its room and length
    uint32_t room = 0;
    uint32_t length = 0;
};
int16_t BlockGetWordMeasured(TextBlock *block, char *buffer, uint16_t size, BlockMeasure *memo);
int16_t BlockNextWordMeasured(TextBlock *block, BlockMeasure *memo);
int16_t BlockDoubledWordMeasured(TextBlock *block, bool caseSensitive, BlockMeasure *memo);
// BlockDoubledWord given what BlockGetWord gave for the word at the cursor
// with a 64-byte buffer: the word and the byte after it.
int16_t BlockDoubledWordOf(TextBlock *block, bool caseSensitive, const char *word, int16_t follow);
// The same for a word whose length (at most kMaxWordLen) is known.
int16_t BlockDoubledWordOfLength(TextBlock *block, bool caseSensitive, const char *word, uint32_t length,
                                 int16_t follow);

// Editing.
int16_t BlockReplaceWord(TextBlock *block, const char *newWord);
int16_t BlockDeleteWord(TextBlock *block);

// Reading back.
int32_t BlockGetText(TextBlock *block, char *buffer, uint32_t size);
int16_t BlockGetInfo(TextBlock *block, uint32_t *length, uint32_t *size, uint32_t *cursor,
                     uint32_t *wordCount);

// Checking one text in pieces (the orth command's list, reading a line of
// any length with bounded memory). A piece ends where the walk of the whole
// text puts a word start, or inside a run of characters that start no word,
// and reaches far enough past its last word start for that word to be
// measured as in the whole text. After a piece's walk has ended, its word
// memory is saved; the block opened over the next piece takes it over, and
// then walks on exactly as the block over the whole text would have.
struct BlockCarry {
    char previousWord[kWordBufSize];  // the remembered word ("" none)
    bool hadWord;                     // some piece so far had a word
};
void BlockSaveCarry(const TextBlock *block, BlockCarry *carry);
void BlockTakeCarry(TextBlock *block, const BlockCarry *carry);
// The same by session and block ids: 0, ORTH_BAD_SESSION_ID_ERR or
// ORTH_BAD_BLOCK_ID_ERR (block_api.cpp; not exported).
int16_t saveBlockCarry(int16_t sessionId, int16_t blockId, BlockCarry *carry);
int16_t takeBlockCarry(int16_t sessionId, int16_t blockId, const BlockCarry *carry);
// An open block put over another borrowed text, as ORTH_CloseBlock and then
// ORTH_OpenBlock without a copy would (the same slot, nothing logged): 0,
// ORTH_BAD_SESSION_ID_ERR or ORTH_BAD_BLOCK_ID_ERR (block_api.cpp).
int16_t reopenBlock(int16_t sessionId, int16_t blockId, char *text, uint32_t length);
