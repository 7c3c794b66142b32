// block/block.cpp — the text block: word boundaries, walking, in-place
// editing and doubled-word memory over one text buffer.
//
// (1) No byte at or past `size` is ever written: BlockReplaceWord checks that
//     length + delta < size before it moves anything, BlockDeleteWord only
//     shrinks the text, and the byte after the text moves along only while
//     length < size.
// (2) cursor <= length at all times: BlockOpen and BlockNextWord stop at the
//     end, BlockSetCursor refuses a larger cursor, and the editing functions
//     leave the cursor at the start of the edited word, inside the new text.
// (3) previousWord is always zero-terminated inside its 64 bytes; it is empty
//     when there is nothing to compare with (BlockOpen, BlockSetCursor,
//     skipped punctuation, a found doubled word, punctuation after a word).
// (4) ownsText is 1 exactly when BlockOpen allocated `text`; BlockClose frees
//     it once and leaves the record without a buffer.
// (5) Every word found has at least one character when extracted into a
//     64-byte buffer, so BlockNextWord always moves forward and every walk ends.
#include "block/block.h"

#include <cstdlib>
#include <cstring>

#include "check/chartab.h"
#include "engine/log.h"
#include "orth.h"

namespace {

bool isWordStart(int charSet, unsigned char c) {
    return (classOf(charSet, c) & (CC_LETTER | CC_DIGIT)) != 0;
}

// The same tests on a row of the class table.
bool startsWord(const uint8_t *cls, unsigned char c) { return (cls[c] & (CC_LETTER | CC_DIGIT)) != 0; }
bool inWord(const uint8_t *cls, unsigned char c) { return startsWord(cls, c) || isApostrophe(c); }

const uint8_t *classRow(const TextBlock *block) { return charClassTable[charSetRow(block->charSet)]; }

unsigned char byteAt(const TextBlock *block, uint32_t pos) {
    return static_cast<unsigned char>(block->text[pos]);
}

// The first position at or after pos that starts a word, or length.
uint32_t skipToWord(const TextBlock *block, uint32_t pos) {
    const uint8_t *cls = classRow(block);
    const auto *text = reinterpret_cast<const unsigned char *>(block->text);
    while (pos < block->length && !startsWord(cls, text[pos])) ++pos;
    return pos;
}

// Length of the word starting at start (a letter or digit) as it is extracted
// into a buffer with room for `room` characters: word characters, a period or
// hyphen between word characters, the final period of an abbreviation, and a
// trailing apostrophe dropped unless it follows s or S.
uint32_t measureWord(const TextBlock *block, uint32_t start, uint32_t room) {
    if (room == 0) return 0;
    const uint8_t *cs = classRow(block);
    const uint32_t length = block->length;
    const uint32_t stop = length - start < room ? length - start : room;  // n stays below it
    const auto *text = reinterpret_cast<const unsigned char *>(block->text) + start;
    uint32_t n = 1;
    bool periodInside = false;
    while (n < stop && startsWord(cs, text[n])) ++n;  // letters and digits, the common run
    // Most words end there: at the room or the text's end, or at a byte that
    // neither joins nor is an apostrophe. No character set counts a period,
    // hyphen or apostrophe as a letter or digit, so the run's last byte is no
    // apostrophe to drop and no period was inside.
    if (n == stop || (text[n] != '.' && text[n] != kHyphen && !isApostrophe(text[n]))) return n;
    while (n < room && start + n < length) {
        uint32_t i = start + n;
        unsigned char c = byteAt(block, i);
        if (!inWord(cs, c)) {
            bool joiner = (c == '.' || c == kHyphen) && inWord(cs, byteAt(block, i - 1)) &&
                          i + 1 < length && inWord(cs, byteAt(block, i + 1));
            if (!joiner) break;
            if (c == '.') periodInside = true;
        }
        ++n;
    }
    if (periodInside && n < room && start + n < length && byteAt(block, start + n) == '.') ++n;
    if (n > 1 && isApostrophe(byteAt(block, start + n - 1))) {
        unsigned char before = byteAt(block, start + n - 2);
        if (before != 's' && before != 'S') --n;
    }
    return n;
}

// measureWord, or its answer kept in memo for the same start and room.
uint32_t measureKept(const TextBlock *block, uint32_t start, uint32_t room, BlockMeasure *memo) {
    if (memo == nullptr) return measureWord(block, start, room);
    if (memo->start != start || memo->room != room) {
        memo->start = start;
        memo->room = room;
        memo->length = measureWord(block, start, room);
    }
    return memo->length;
}

// The byte after a word ending at end; the text is taken to end in a zero,
// whatever the buffer holds past length.
unsigned char byteAfter(const TextBlock *block, uint32_t end) {
    return end < block->length ? byteAt(block, end) : 0;
}

// Skips non-word characters from the cursor; skipped punctuation (not white
// space) forgets the remembered word. False when the end of the text is reached.
bool skipToCursorWord(TextBlock *block) {
    // Worked on in locals: a store into previousWord could otherwise alias
    // the cursor and length and make every step reload them.
    const uint8_t *row = classRow(block);
    const auto *text = reinterpret_cast<const unsigned char *>(block->text);
    const uint32_t length = block->length;
    uint32_t pos = block->cursor;
    bool forget = false;
    for (; pos < length; ++pos) {
        uint8_t cls = row[text[pos]];
        if (cls & (CC_LETTER | CC_DIGIT)) break;
        if ((cls & CC_PUNCT) && !(cls & CC_SPACE)) forget = true;
    }
    block->cursor = pos;
    if (forget) block->previousWord[0] = '\0';
    return pos < length;
}

}  // namespace

// 0; ORTH_BUFFER_TOO_SMALL_ERR when size < length (or a null text with a
// nonzero length); ORTH_OUT_OF_MEMORY_ERR when the copy cannot be allocated.
// A null text holds nothing: borrowed it gives a block of size 0, copied a
// fresh buffer of `size` bytes.
int16_t BlockOpen(char *text, uint32_t length, uint32_t size, uint16_t copy, int16_t charSet,
                  TextBlock *block) {
    if (text == nullptr && copy == 0) size = 0;
    if (size < length || (text == nullptr && length > 0)) {
        engineLog("BlockOpen: buffer too small");
        return ORTH_BUFFER_TOO_SMALL_ERR;
    }
    char *buffer = text;
    if (copy != 0) {
        // One byte at least, so a block of size 0 still owns a real buffer.
        buffer = static_cast<char *>(std::malloc(size > 0 ? size : 1));
        if (buffer == nullptr) {
            engineLog("BlockOpen: out of memory");
            return ORTH_OUT_OF_MEMORY_ERR;
        }
        if (length > 0) std::memcpy(buffer, text, length);
        if (length < size) buffer[length] = '\0';
    }
    block->text = buffer;
    block->ownsText = copy != 0 ? 1 : 0;
    block->length = length;
    block->size = size;
    block->firstWord = 1;
    block->previousWord[0] = '\0';
    block->previousWordPos = 0;
    block->charSet = charSet;
    block->cursor = skipToWord(block, 0);
    block->hadWord = block->cursor < block->length;
    return 0;
}

// 0 always; frees the text when the block owns it.
int16_t BlockClose(TextBlock *block) {
    if (block->ownsText) std::free(block->text);
    block->text = nullptr;
    block->ownsText = 0;
    block->length = 0;
    block->size = 0;
    block->cursor = 0;
    return 0;
}

// The byte after the copied word (0 at the end of the text), or
// ORTH_WORD_NOT_FOUND_ERR when no word is at or after the cursor, or
// ORTH_BUFFER_TOO_SMALL_ERR (logged) for a buffer of size 0, which gets
// nothing written. A buffer of size 1 receives an empty word.
int16_t BlockGetWord(TextBlock *block, char *buffer, uint16_t size) {
    return BlockGetWordMeasured(block, buffer, size, nullptr);
}

int16_t BlockGetWordMeasured(TextBlock *block, char *buffer, uint16_t size, BlockMeasure *memo) {
    uint32_t start = skipToWord(block, block->cursor);
    if (start >= block->length) return ORTH_WORD_NOT_FOUND_ERR;
    if (buffer == nullptr || size == 0) {
        engineLog("BlockGetWord: buffer too small");
        return ORTH_BUFFER_TOO_SMALL_ERR;
    }
    uint32_t n = measureKept(block, start, size - 1u, memo);
    const char *from = block->text + start;
    for (uint32_t i = 0; i < n; ++i) buffer[i] = from[i];  // short words: no call
    buffer[n] = '\0';
    return byteAfter(block, start + n);
}

// 0 with the cursor on the next word's first character and firstWord 0, or
// ORTH_WORD_NOT_FOUND_ERR with the cursor at the end of the text.
int16_t BlockNextWord(TextBlock *block) { return BlockNextWordMeasured(block, nullptr); }

int16_t BlockNextWordMeasured(TextBlock *block, BlockMeasure *memo) {
    if (!skipToCursorWord(block)) return ORTH_WORD_NOT_FOUND_ERR;
    block->cursor += measureKept(block, block->cursor, kMaxWordLen, memo);
    if (!skipToCursorWord(block)) return ORTH_WORD_NOT_FOUND_ERR;
    block->firstWord = 0;
    return 0;
}

// 0, or ORTH_BUFFER_TOO_SMALL_ERR (logged, cursor unchanged) past the end.
int16_t BlockSetCursor(TextBlock *block, uint32_t cursor) {
    if (cursor > block->length) {
        engineLog("BlockSetCursor: cursor %lu > text length %lu",
                  static_cast<unsigned long>(cursor), static_cast<unsigned long>(block->length));
        return ORTH_BUFFER_TOO_SMALL_ERR;
    }
    block->cursor = cursor;
    block->previousWord[0] = '\0';
    return 0;
}

// 1 when the word at the cursor repeats the remembered word (which is then
// forgotten), else 0; otherwise remembers the word unless punctuation follows it.
int16_t BlockDoubledWord(TextBlock *block, bool caseSensitive) {
    return BlockDoubledWordMeasured(block, caseSensitive, nullptr);
}

int16_t BlockDoubledWordMeasured(TextBlock *block, bool caseSensitive, BlockMeasure *memo) {
    char word[kWordBufSize];
    int16_t follow = BlockGetWordMeasured(block, word, kWordBufSize, memo);
    if (follow < 0) return 0;
    return BlockDoubledWordOf(block, caseSensitive, word, follow);
}

int16_t BlockDoubledWordOf(TextBlock *block, bool caseSensitive, const char *word, int16_t follow) {
    return BlockDoubledWordOfLength(block, caseSensitive, word, strnlen(word, kMaxWordLen), follow);
}

int16_t BlockDoubledWordOfLength(TextBlock *block, bool caseSensitive, const char *word, uint32_t length,
                                 int16_t follow) {
    // (A first character that differs decides the case-sensitive test.)
    bool same = caseSensitive ? word[0] == block->previousWord[0] && std::strcmp(word, block->previousWord) == 0
                              : compareNoCase(word, block->previousWord, block->charSet) == 0;
    if (block->cursor != block->previousWordPos && same) {
        block->previousWord[0] = '\0';
        return 1;
    }
    if (classOf(block->charSet, static_cast<unsigned char>(follow)) & CC_PUNCT) {
        block->previousWord[0] = '\0';
    } else {
        std::memcpy(block->previousWord, word, length);  // copyWord, its length known
        block->previousWord[length] = '\0';
        block->previousWordPos = block->cursor;
    }
    return 0;
}

int16_t BlockAtFirstWord(const TextBlock *block) { return block->firstWord; }

// 0 with the new word in place and the cursor on its first character;
// ORTH_WORD_NOT_FOUND_ERR when no word is at or after the cursor (or newWord
// is null, logged); ORTH_BUFFER_TOO_SMALL_ERR (logged, text unchanged) when
// the result would not leave length < size. A cursor in white space or
// punctuation acts on the next word, the one BlockGetWord shows.
int16_t BlockReplaceWord(TextBlock *block, const char *newWord) {
    if (newWord == nullptr) {
        engineLog("BlockReplaceWord: no new word");
        return ORTH_WORD_NOT_FOUND_ERR;
    }
    uint32_t start = skipToWord(block, block->cursor);
    if (start >= block->length) return ORTH_WORD_NOT_FOUND_ERR;
    uint32_t oldLen = measureWord(block, start, kMaxWordLen);
    size_t newLen = std::strlen(newWord);
    int64_t newLength = static_cast<int64_t>(block->length) - oldLen + static_cast<int64_t>(newLen);
    if (newLength >= static_cast<int64_t>(block->size)) {
        engineLog("BlockReplaceWord: buffer too small");
        return ORTH_BUFFER_TOO_SMALL_ERR;
    }
    uint32_t tail = block->length - (start + oldLen);
    if (block->length < block->size) ++tail;  // the caller's zero after the text moves along
    std::memmove(block->text + start + newLen, block->text + start + oldLen, tail);
    std::memcpy(block->text + start, newWord, newLen);
    block->length = static_cast<uint32_t>(newLength);
    block->cursor = start;
    return 0;
}

// 0. Removes the word at the cursor and the white space after it, up to the
// first character that follows white space; the cursor stays where the word
// began. A cursor in white space or punctuation acts on the next word; with
// no word left nothing changes. The byte after the text moves along, as in
// BlockReplaceWord.
int16_t BlockDeleteWord(TextBlock *block) {
    uint32_t start = block->cursor;
    if (start < block->length && !isWordStart(block->charSet, byteAt(block, start))) {
        start = skipToWord(block, start);
    }
    if (start >= block->length) return 0;
    uint32_t end = start;
    bool seenSpace = false;
    while (end < block->length) {
        bool space = (classOf(block->charSet, byteAt(block, end)) & CC_SPACE) != 0;
        if (space) seenSpace = true;
        else if (seenSpace) break;
        ++end;
    }
    uint32_t tail = block->length - end;
    if (block->length < block->size) ++tail;
    std::memmove(block->text + start, block->text + end, tail);
    block->length -= end - start;
    block->cursor = start;
    return 0;
}

// The length copied (no zero is added), or ORTH_BUFFER_TOO_SMALL_ERR (logged)
// when the text is longer than the buffer.
int32_t BlockGetText(TextBlock *block, char *buffer, uint32_t size) {
    if (buffer == nullptr) size = 0;
    if (block->length > size) {
        engineLog("BlockGetText: buffer too small");
        return ORTH_BUFFER_TOO_SMALL_ERR;
    }
    if (block->length > 0) std::memcpy(buffer, block->text, block->length);
    return static_cast<int32_t>(block->length);
}

// The previous piece's walk ended in BlockNextWord's search for a next word,
// which goes on here (punctuation met forgets the remembered word); finding
// one after a word of an earlier piece clears firstWord as it would have.
// The remembered word's position lies before this piece.
void BlockTakeCarry(TextBlock *block, const BlockCarry *carry) {
    copyWord(block->previousWord, carry->previousWord);
    block->previousWordPos = UINT32_MAX;
    block->cursor = 0;
    if (skipToCursorWord(block) && carry->hadWord) block->firstWord = 0;
    block->hadWord = block->hadWord || carry->hadWord;
}

void BlockSaveCarry(const TextBlock *block, BlockCarry *carry) {
    copyWord(carry->previousWord, block->previousWord);
    carry->hadWord = block->hadWord;
}

// 0. The word count walks the text from its start and puts the cursor back;
// the walk may forget the remembered word and clear firstWord.
int16_t BlockGetInfo(TextBlock *block, uint32_t *length, uint32_t *size, uint32_t *cursor,
                     uint32_t *wordCount) {
    if (length != nullptr) *length = block->length;
    if (size != nullptr) *size = block->size;
    if (cursor != nullptr) *cursor = block->cursor;
    if (wordCount != nullptr) {
        uint32_t saved = block->cursor;
        uint32_t count = 0;
        char word[kWordBufSize];
        block->cursor = 0;
        while (BlockGetWord(block, word, kWordBufSize) >= 0) {
            ++count;
            BlockNextWord(block);
        }
        block->cursor = saved;
        *wordCount = count;
    }
    return 0;
}
