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

// Editing.
int16_t BlockReplaceWord(TextBlock *block, const char *newWord);
int16_t BlockDeleteWord(TextBlock *block);

// Reading back.
int32_t BlockGetText(TextBlock *block, char *buffer, uint32_t size);
int16_t BlockGetInfo(TextBlock *block, uint32_t *length, uint32_t *size, uint32_t *cursor,
                     uint32_t *wordCount);
