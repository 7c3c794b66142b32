// The text block on its own.
// Groups: BlockWords (boundary table under both character sets, small
// extraction buffers with guard bytes), BlockWalk (cursor at open, stepping,
// 63/64-character runs, word count, doubled words and punctuation), BlockEdit
// (replace and delete at start, middle, end, in white space and at the size
// limit, guard bytes), BlockOpenAndRead (open failures, copies, reading back,
// cursor setting).
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "block/block.h"
#include "orth.h"
#include "support/test_util.h"

namespace {

const std::string kGuards(8, 0x5A);  // bytes past a caller's buffer that nothing may touch

// A copied block over text (with room for one more byte).
struct Block {
    TextBlock b{};
    explicit Block(std::string text, int16_t charSet = 0) {
        EXPECT_EQ(BlockOpen(&text[0], uint32_t(text.size()), uint32_t(text.size()) + 1, 1, charSet, &b), 0);
    }
    ~Block() { BlockClose(&b); }
    // The words from the cursor on, stepping after each; a doubled one gets a '*'.
    std::vector<std::string> words(bool caseSensitive = false) {
        std::vector<std::string> out;
        char w[kWordBufSize];
        while (BlockGetWord(&b, w, sizeof w) >= 0) {
            out.push_back(BlockDoubledWord(&b, caseSensitive) ? w + std::string("*") : w);
            if (BlockNextWord(&b) != 0) break;
        }
        return out;
    }
};

TEST(BlockWords, BoundaryTableAndSmallBuffersNeverWritingPastTheSize) {
    const struct { const char *text, *word; int follow; uint16_t size = 64; int16_t charSet = 0; } cases[] = {
        {"don't", "don't", 0}, {"well-known", "well-known", 0}, {"U.S.A.", "U.S.A.", 0},
        {"abc123", "abc123", 0}, {"e.g. this", "e.g.", ' '}, {"well- known", "well", '-'},
        {"'tis", "tis", 0}, {"end.Start", "end.Start", 0}, {"He said", "He", ' '}, {"abc.", "abc", '.'},
        {"rock' on", "rock", '\''}, {"dogs' bone", "dogs'", ' '}, {"BOSS' x", "BOSS'", ' '},
        {"rock\x92", "rock", 0x92}, {"a'-b", "a'-b", 0}, {"x-", "x", '-'},
        {"caf\xE9 au", "caf\xE9", ' '}, {"x\xAAy", "x", 0xAA},
        {"x\xAAy", "x\xAAy", 0, 64, 1},  // 0xAA is a letter only in ISO 8859-2
        {"U.S.A. x", nullptr, ORTH_BUFFER_TOO_SMALL_ERR, 0}, {"U.S.A. x", "", 'U', 1},
        {"U.S.A. x", "U.S.A", '.', 6}, {"U.S.A. x", "U.S.A.", ' ', 7},
        {"abcdef", "abc", 'd', 4}, {"abc-", "abc", '-', 4}, {"ab's", "ab's", 0}, {"ab-", "ab", '-'},
        {"abc\x92s x", "abc\x92s", ' '},
    };
    for (const auto &c : cases) {
        Block blk(c.text, c.charSet);
        std::vector<char> buf(c.size + kGuards.size(), kGuards[0]);
        LogCapture log;
        EXPECT_EQ(BlockGetWord(&blk.b, buf.data(), c.size), c.follow) << c.text << c.size;
        EXPECT_EQ(std::string(buf.begin() + c.size, buf.end()), kGuards) << c.text;
        if (c.word != nullptr) { EXPECT_STREQ(buf.data(), c.word); }
        EXPECT_EQ(log.contains("BlockGetWord: buffer too small"), c.word == nullptr);
    }
}

TEST(BlockWalk, OpenFindsTheFirstWordSteppingEndsAtTheEndCountPutsTheCursorBack) {
    const std::string a63(63, 'a');
    const struct { std::string text; uint32_t cursor; std::vector<std::string> words; int first; } cases[] = {
        {"  Hello world", 2, {"Hello", "world"}, 0}, {" ,;- ... ", 9, {}, 1},
        {"Alone.", 0, {"Alone"}, 1},  // never reached a next word
        {"Hi, all! It's U.S.A. time-out 42...", 0, {"Hi", "all", "It's", "U.S.A.", "time-out", "42"}, 0},
        {a63, 0, {a63}, 1}, {a63 + "a b", 0, {a63, "a", "b"}, 0},
        // Doubled words: punctuation after or between the words and a detected repeat forget.
        {"the the the the", 0, {"the", "the*", "the", "the*"}, 0}, {"The the", 0, {"The", "the*"}, 0},
        {"the, the. the", 0, {"the", "the", "the"}, 0}, {"the\r\n\tthe", 0, {"the", "the*"}, 0},
        {"the 'the", 0, {"the", "the"}, 0},
    };
    for (const auto &c : cases) {
        Block counted(c.text), blk(c.text);
        uint32_t n[4] = {}, size = uint32_t(c.text.size());
        EXPECT_EQ(BlockGetInfo(&counted.b, &n[0], &n[1], &n[2], &n[3]), 0);
        EXPECT_EQ(std::vector<uint32_t>(n, n + 4),
                  (std::vector<uint32_t>{size, size + 1, c.cursor, uint32_t(c.words.size())}));
        EXPECT_EQ(counted.b.cursor, c.cursor) << c.text;  // put back after counting
        EXPECT_EQ(blk.words(), c.words) << c.text;
        EXPECT_EQ(BlockAtFirstWord(&blk.b), c.first) << c.text;
        EXPECT_EQ(BlockNextWord(&blk.b), ORTH_WORD_NOT_FOUND_ERR) << c.text;
    }
    EXPECT_EQ(Block("The the").words(true), (std::vector<std::string>{"The", "the"}));
    Block blk("go go");
    EXPECT_EQ(BlockDoubledWord(&blk.b, false) + BlockDoubledWord(&blk.b, false), 0);  // same position
    EXPECT_EQ(BlockSetCursor(&blk.b, 3), 0);  // forgets the remembered word
    EXPECT_EQ(BlockDoubledWord(&blk.b, false), 0);
}

TEST(BlockEdit, ReplaceAndDeleteEditTheCallersBufferWithinItsSize) {
    const struct { const char *text; uint32_t cursor; const char *newWord; uint32_t extra;
                   int16_t result; const char *after; uint32_t cursorAfter; } cases[] = {
        // newWord null: delete; extra: size - length
        {"teh cat", 0, "the", 1, 0, "the cat", 0},
        {"teh cat", 0, "the", 0, ORTH_BUFFER_TOO_SMALL_ERR, "teh cat", 0},  // no room at all
        {"teh cat", 0, "these", 2, ORTH_BUFFER_TOO_SMALL_ERR, "teh cat", 0},
        {"teh cat", 0, "these", 3, 0, "these cat", 0},
        {"a wonderful day", 2, "good", 0, 0, "a good day", 2},
        {"one two", 3, "six", 1, 0, "one six", 4},                        // in white space
        {"one two", 7, "six", 5, ORTH_WORD_NOT_FOUND_ERR, "one two", 7},  // at the end
        {"one  two three", 0, nullptr, 1, 0, "two three", 0},
        {"one two three", 8, nullptr, 0, 0, "one two ", 8},
        {"one two", 3, nullptr, 1, 0, "one ", 4},     // in white space: the next word
        {"one two", 7, nullptr, 1, 0, "one two", 7},  // at the end: nothing to delete
    };
    for (const auto &c : cases) {
        std::string text = c.text + std::string(c.extra, '\0') + kGuards;
        uint32_t length = uint32_t(std::strlen(c.text));
        TextBlock b{};
        ASSERT_EQ(BlockOpen(&text[0], length, length + c.extra, 0, 0, &b), 0);
        ASSERT_EQ(BlockSetCursor(&b, c.cursor), 0);
        LogCapture log;
        int16_t rc = c.newWord ? BlockReplaceWord(&b, c.newWord) : BlockDeleteWord(&b);
        EXPECT_EQ(rc, c.result) << c.text;
        EXPECT_EQ(log.contains("BlockReplaceWord: buffer too small"), rc == ORTH_BUFFER_TOO_SMALL_ERR);
        EXPECT_EQ(b.cursor, c.cursorAfter) << c.text;
        EXPECT_EQ(text.substr(0, b.length), c.after) << c.text;
        if (c.extra > 0) { EXPECT_EQ(text[b.length], '\0') << c.text; }  // the zero moved along
        EXPECT_EQ(text.substr(length + c.extra), kGuards) << c.text;
        BlockClose(&b);
    }
    Block blk("word");
    LogCapture log;
    EXPECT_EQ(BlockReplaceWord(&blk.b, nullptr), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_TRUE(log.contains("BlockReplaceWord: no new word"));
}

TEST(BlockOpenAndRead, OpenRefusesAShortSizeCopiesSpareTheTextGetTextAndSetCursorCheckLength) {
    char text[] = "He said";
    LogCapture log;
    TextBlock b{};
    EXPECT_EQ(BlockOpen(text, 7, 6, 1, 0, &b), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_EQ(BlockOpen(nullptr, 3, 10, 0, 0, &b), ORTH_BUFFER_TOO_SMALL_ERR);  // no text to hold
    EXPECT_TRUE(log.contains("BlockOpen: buffer too small"));
    ASSERT_EQ(BlockOpen(text, 7, 7, 1, 0, &b), 0);
    EXPECT_EQ(BlockDeleteWord(&b), 0);
    std::string out(8, '#');
    EXPECT_EQ(BlockGetText(&b, &out[0], 3), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_TRUE(log.contains("BlockGetText: buffer too small"));
    EXPECT_EQ(BlockGetText(&b, &out[0], 4), 4);
    EXPECT_EQ(out, "said####");  // no zero added
    EXPECT_STREQ(text, "He said");  // the copy was edited, never the caller's text
    EXPECT_EQ(BlockSetCursor(&b, 1), 0);
    char w[8];
    EXPECT_EQ(BlockGetWord(&b, w, sizeof w), 0);
    EXPECT_STREQ(w, "aid");  // inside a word: the rest of it
    EXPECT_EQ(BlockSetCursor(&b, 5), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_TRUE(log.contains("BlockSetCursor: cursor 5 > text length 4"));
    EXPECT_EQ(b.cursor, 1u);
    EXPECT_EQ(BlockClose(&b), 0);
    ASSERT_EQ(BlockOpen(nullptr, 0, 0, 1, 0, &b), 0);  // an empty block
    EXPECT_EQ(BlockReplaceWord(&b, "x") + BlockGetText(&b, nullptr, 0), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_EQ(BlockClose(&b), 0);
}

}  // namespace
