// The text block on its own: word boundaries, walking, doubled-word memory,
// editing in place and reading back.
// Groups: BlockWords (boundary table, buffer sizes, long words),
// BlockWalk (opening cursor, next word, word count), BlockDoubled,
// BlockEdit (replace and delete at start, middle, end and the size limit,
// with guard bytes past the buffer), BlockOpenAndRead (open failures,
// borrowed and copied texts, cursor setting, reading the text back).
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "block/block.h"
#include "orth.h"
#include "support/test_util.h"

namespace {

constexpr char kGuard = 0x5A;
constexpr uint32_t kGuardBytes = 8;

// A caller's buffer: the text, a zero after it while room remains, free
// space up to `size`, then guard bytes that must never change.
struct CallerText {
    std::vector<char> bytes;
    uint32_t length;
    uint32_t size;

    CallerText(const std::string &text, uint32_t size_)
        : bytes(size_ + kGuardBytes, '#'), length(uint32_t(text.size())), size(size_) {
        std::memcpy(bytes.data(), text.data(), text.size());
        if (length < size) bytes[length] = '\0';
        for (uint32_t i = 0; i < kGuardBytes; ++i) bytes[size + i] = kGuard;
    }
    char *data() { return bytes.data(); }
    bool guardsIntact() const {
        for (uint32_t i = 0; i < kGuardBytes; ++i)
            if (bytes[size + i] != kGuard) return false;
        return true;
    }
};

struct OpenBlock {
    TextBlock block{};
    explicit OpenBlock(const std::string &text, int16_t charSet = 0)
        : copy(text.begin(), text.end()) {
        copy.push_back('\0');
        EXPECT_EQ(BlockOpen(copy.data(), uint32_t(text.size()), uint32_t(copy.size()), 1, charSet,
                            &block),
                  0);
    }
    ~OpenBlock() { BlockClose(&block); }
    std::string text() {
        std::vector<char> out(block.length + 1);
        int32_t n = BlockGetText(&block, out.data(), uint32_t(out.size()));
        return n < 0 ? "<error>" : std::string(out.data(), size_t(n));
    }
    std::vector<char> copy;
};

std::string wordAt(TextBlock *block, int16_t *follow = nullptr) {
    char word[kWordBufSize];
    int16_t rc = BlockGetWord(block, word, sizeof word);
    if (follow != nullptr) *follow = rc;
    return rc < 0 ? "<none>" : std::string(word);
}

std::vector<std::string> allWords(TextBlock *block) {
    std::vector<std::string> words;
    for (;;) {
        std::string w = wordAt(block);
        if (w == "<none>") break;
        words.push_back(w);
        if (BlockNextWord(block) != 0) break;
    }
    return words;
}

struct WordCase {
    const char *text;
    const char *word;
    int follow;  // the byte after the word, 0 at the end of the text
};

TEST(BlockWords, BoundaryTable) {
    const WordCase cases[] = {
        {"don't", "don't", 0},
        {"well-known", "well-known", 0},
        {"U.S.A.", "U.S.A.", 0},
        {"U.S.A. now", "U.S.A.", ' '},
        {"abc123", "abc123", 0},
        {"e.g. this", "e.g.", ' '},
        {"well- known", "well", '-'},
        {"'tis", "tis", 0},
        {"end.Start", "end.Start", 0},
        {"He said", "He", ' '},
        {"abc.", "abc", '.'},
        {"rock' on", "rock", '\''},
        {"dogs' bone", "dogs'", ' '},
        {"BOSS' desk", "BOSS'", ' '},
        {"I' x", "I", '\''},
        {"rock\x92", "rock", 0x92},
        {"o\x92" "clock", "o\x92" "clock", 0},
        {"a'-b", "a'-b", 0},
        {"a--b", "a", '-'},
        {"x-", "x", '-'},
        {"1,000", "1", ','},
        {"3.14", "3.14", 0},
        {"  ,(Hello)", "Hello", ')'},
        {"caf\xE9 au", "caf\xE9", ' '},
        {"a.b.c.d", "a.b.c.d", 0},
    };
    for (const WordCase &c : cases) {
        OpenBlock b(c.text);
        int16_t follow = -100;
        EXPECT_EQ(wordAt(&b.block, &follow), c.word) << c.text;
        EXPECT_EQ(follow, c.follow) << c.text;
    }
}

TEST(BlockWords, CharacterSetDecidesWhatIsALetter) {
    // 0xAA is punctuation in ISO 8859-1 and a letter in ISO 8859-2.
    OpenBlock latin1("x\xAAy", 0);
    EXPECT_EQ(wordAt(&latin1.block), "x");
    OpenBlock latin2("x\xAAy", 1);
    EXPECT_EQ(wordAt(&latin2.block), "x\xAAy");
    OpenBlock greek("\xD2x", 6);  // 0xD2 has no class in the Greek row
    EXPECT_EQ(greek.block.cursor, 1u);
    EXPECT_EQ(wordAt(&greek.block), "x");
}

TEST(BlockWords, SmallBuffersNeverWritePastTheirSize) {
    OpenBlock b("U.S.A. rock'");
    struct Case {
        uint16_t size;
        int16_t result;
        const char *word;
    } cases[] = {
        {0, ORTH_BUFFER_TOO_SMALL_ERR, nullptr},
        {1, 'U', ""},
        {2, '.', "U"},
        {4, '.', "U.S"},  // the joined period after S needs a fifth byte
        {6, '.', "U.S.A"},
        {7, ' ', "U.S.A."},
    };
    for (const Case &c : cases) {
        std::vector<char> buf(c.size + kGuardBytes, kGuard);
        LogCapture log;
        EXPECT_EQ(BlockGetWord(&b.block, buf.data(), c.size), c.result) << c.size;
        for (uint32_t i = c.size; i < buf.size(); ++i) EXPECT_EQ(buf[i], kGuard) << c.size;
        if (c.word != nullptr) EXPECT_STREQ(buf.data(), c.word);
        else EXPECT_TRUE(log.contains("BlockGetWord: buffer too small"));
    }
    ASSERT_EQ(BlockNextWord(&b.block), 0);
    char buf[6];
    EXPECT_EQ(BlockGetWord(&b.block, buf, 6), '\'');  // "rock'" fits, then loses its apostrophe
    EXPECT_STREQ(buf, "rock");
}

TEST(BlockWords, OverlongRunIsWalkedAsSeveralWords) {
    std::string text(70, 'a');
    text += " b";
    OpenBlock b(text);
    int16_t follow = 0;
    EXPECT_EQ(wordAt(&b.block, &follow), std::string(63, 'a'));
    EXPECT_EQ(follow, 'a');
    EXPECT_EQ(allWords(&b.block), (std::vector<std::string>{std::string(63, 'a'), "aaaaaaa", "b"}));
}

TEST(BlockWalk, OpeningPutsTheCursorOnTheFirstWordOrAtTheEnd) {
    OpenBlock hello("  Hello world");
    EXPECT_EQ(hello.block.cursor, 2u);
    EXPECT_EQ(BlockAtFirstWord(&hello.block), 1);
    OpenBlock none(" ,;- ... ");
    EXPECT_EQ(none.block.cursor, none.block.length);
    EXPECT_EQ(wordAt(&none.block), "<none>");
    EXPECT_EQ(BlockNextWord(&none.block), ORTH_WORD_NOT_FOUND_ERR);
    OpenBlock empty("");
    EXPECT_EQ(empty.block.cursor, 0u);
    EXPECT_EQ(BlockNextWord(&empty.block), ORTH_WORD_NOT_FOUND_ERR);
}

TEST(BlockWalk, NextWordStepsOverPunctuationAndClearsFirstWord) {
    OpenBlock b("Hello, world! It's U.S.A. time-out 42...");
    EXPECT_EQ(allWords(&b.block),
              (std::vector<std::string>{"Hello", "world", "It's", "U.S.A.", "time-out", "42"}));
    EXPECT_EQ(b.block.cursor, b.block.length);
    EXPECT_EQ(BlockAtFirstWord(&b.block), 0);

    OpenBlock single("Alone.");
    EXPECT_EQ(BlockNextWord(&single.block), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_EQ(BlockAtFirstWord(&single.block), 1);  // never reached a next word
    EXPECT_EQ(single.block.cursor, single.block.length);
}

TEST(BlockWalk, WordCountWalksFromTheStartAndKeepsTheCursor) {
    OpenBlock b("one, two three 4 e.g. five");
    ASSERT_EQ(BlockNextWord(&b.block), 0);
    ASSERT_EQ(BlockNextWord(&b.block), 0);
    uint32_t length = 0, size = 0, cursor = 0, count = 0;
    EXPECT_EQ(BlockGetInfo(&b.block, &length, &size, &cursor, &count), 0);
    EXPECT_EQ(count, 6u);
    EXPECT_EQ(cursor, 9u);
    EXPECT_EQ(b.block.cursor, 9u);
    EXPECT_EQ(length, 26u);
    EXPECT_EQ(size, 27u);
    EXPECT_EQ(BlockGetInfo(&b.block, nullptr, nullptr, nullptr, nullptr), 0);
}

// Positions (word indexes) at which BlockDoubledWord reports a repeat while
// the whole text is walked.
std::vector<int> doubledAt(const std::string &text, bool caseSensitive) {
    OpenBlock b(text);
    std::vector<int> hits;
    for (int i = 0; wordAt(&b.block) != "<none>"; ++i) {
        if (BlockDoubledWord(&b.block, caseSensitive)) hits.push_back(i);
        if (BlockNextWord(&b.block) != 0) break;
    }
    return hits;
}

TEST(BlockDoubled, PunctuationAndCaseRules) {
    struct Case {
        const char *text;
        bool caseSensitive;
        std::vector<int> hits;
    } cases[] = {
        {"the the", false, {1}},
        {"the, the", false, {}},
        {"the. The", false, {}},
        {"the the the", false, {1}},
        {"the the the the", false, {1, 3}},
        {"The the", false, {1}},
        {"The the", true, {}},
        {"the\r\n\tthe", false, {1}},
        {"the 'the", false, {}},   // the skipped apostrophe is punctuation
        {"rock' rock", false, {}}, // the dropped apostrophe follows the word
        {"a b a b", false, {}},
        {"1999 1999", false, {1}}, // the scanner itself does not skip numbers
    };
    for (const Case &c : cases) EXPECT_EQ(doubledAt(c.text, c.caseSensitive), c.hits) << c.text;
}

TEST(BlockDoubled, SameCursorAndCursorMovesForgetNothingTwice) {
    OpenBlock b("go go");
    EXPECT_EQ(BlockDoubledWord(&b.block, false), 0);
    EXPECT_EQ(BlockDoubledWord(&b.block, false), 0);  // same position: not a repeat
    ASSERT_EQ(BlockNextWord(&b.block), 0);
    EXPECT_EQ(BlockSetCursor(&b.block, 3), 0);        // forgets the remembered word
    EXPECT_EQ(BlockDoubledWord(&b.block, false), 0);
}

struct EditCase {
    const char *text;
    uint32_t cursor;
    const char *newWord;
    uint32_t extra;  // size - length
    int16_t result;
    const char *after;
    uint32_t cursorAfter;
};

TEST(BlockEdit, ReplaceAtStartMiddleEndAndTheSizeLimit) {
    const EditCase cases[] = {
        {"teh cat", 0, "the", 1, 0, "the cat", 0},
        {"teh cat", 0, "the", 0, ORTH_BUFFER_TOO_SMALL_ERR, "teh cat", 0},  // no room at all
        {"teh cat", 0, "these", 2, ORTH_BUFFER_TOO_SMALL_ERR, "teh cat", 0},
        {"teh cat", 0, "these", 3, 0, "these cat", 0},
        {"a wonderful day", 2, "good", 0, 0, "a good day", 2},               // shrinking fits
        {"a wonderful day", 2, "good", 1, 0, "a good day", 2},
        {"one two", 4, "three", 3, 0, "one three", 4},
        {"one two.", 4, "2", 1, 0, "one 2.", 4},
        {"one two", 3, "six", 1, 0, "one six", 4},                           // in white space
        {"one two", 7, "six", 5, ORTH_WORD_NOT_FOUND_ERR, "one two", 7},     // at the end
        {"one ...", 4, "six", 5, ORTH_WORD_NOT_FOUND_ERR, "one ...", 4},
        {"U.S.A. x", 0, "USA", 1, 0, "USA x", 0},
        {"word", 0, "", 1, 0, "", 0},
    };
    for (const EditCase &c : cases) {
        CallerText t(c.text, uint32_t(std::strlen(c.text)) + c.extra);
        TextBlock b{};
        ASSERT_EQ(BlockOpen(t.data(), t.length, t.size, 0, 0, &b), 0);
        ASSERT_EQ(BlockSetCursor(&b, c.cursor), 0);
        LogCapture log;
        EXPECT_EQ(BlockReplaceWord(&b, c.newWord), c.result) << c.text << " -> " << c.newWord;
        EXPECT_EQ(std::string(t.data(), b.length), c.after) << c.text;
        EXPECT_EQ(b.cursor, c.cursorAfter) << c.text;
        if (c.extra > 0) {
            EXPECT_EQ(t.bytes[b.length], '\0') << c.text;  // the caller's zero moved along
        }
        EXPECT_TRUE(t.guardsIntact()) << c.text;
        EXPECT_EQ(log.contains("BlockReplaceWord: buffer too small"),
                  c.result == ORTH_BUFFER_TOO_SMALL_ERR)
            << c.text;
        BlockClose(&b);
    }
}

TEST(BlockEdit, DeleteTakesTheFollowingWhiteSpace) {
    const EditCase cases[] = {
        {"one  two three", 0, nullptr, 1, 0, "two three", 0},
        {"one two three", 4, nullptr, 1, 0, "one three", 4},
        {"one two three", 8, nullptr, 0, 0, "one two ", 8},
        {"one, two", 0, nullptr, 1, 0, "two", 0},          // up to what follows the blank
        {"one two", 3, nullptr, 1, 0, "one ", 4},          // in white space: the next word
        {"one two", 7, nullptr, 1, 0, "one two", 7},       // at the end: nothing to delete
        {"one \t\r\n two", 0, nullptr, 0, 0, "two", 0},
    };
    for (const EditCase &c : cases) {
        CallerText t(c.text, uint32_t(std::strlen(c.text)) + c.extra);
        TextBlock b{};
        ASSERT_EQ(BlockOpen(t.data(), t.length, t.size, 0, 0, &b), 0);
        ASSERT_EQ(BlockSetCursor(&b, c.cursor), 0);
        EXPECT_EQ(BlockDeleteWord(&b), c.result) << c.text;
        EXPECT_EQ(std::string(t.data(), b.length), c.after) << c.text;
        EXPECT_EQ(b.cursor, c.cursorAfter) << c.text;
        if (c.extra > 0) {
            EXPECT_EQ(t.bytes[b.length], '\0') << c.text;
        }
        EXPECT_TRUE(t.guardsIntact()) << c.text;
        BlockClose(&b);
    }
}

TEST(BlockEdit, NullNewWordIsRefusedAndLogged) {
    OpenBlock b("word");
    LogCapture log;
    EXPECT_EQ(BlockReplaceWord(&b.block, nullptr), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_TRUE(log.contains("BlockReplaceWord: no new word"));
    EXPECT_EQ(b.text(), "word");
}

TEST(BlockOpenAndRead, OpenFailuresAreLoggedAndLeaveNothingOpen) {
    char text[] = "abc";
    struct Case {
        char *text;
        uint32_t length, size;
        uint16_t copy;
        int16_t result;
    } cases[] = {
        {text, 3, 2, 0, ORTH_BUFFER_TOO_SMALL_ERR},
        {text, 3, 2, 1, ORTH_BUFFER_TOO_SMALL_ERR},
        {nullptr, 3, 10, 1, ORTH_BUFFER_TOO_SMALL_ERR},
        {nullptr, 3, 10, 0, ORTH_BUFFER_TOO_SMALL_ERR},
        {nullptr, 0, 10, 0, 0},  // an empty block without room
        {nullptr, 0, 10, 1, 0},  // an empty block with a fresh buffer
        {text, 0, 0, 0, 0},
        {text, 3, 3, 1, 0},
    };
    for (const Case &c : cases) {
        LogCapture log;
        TextBlock b{};
        EXPECT_EQ(BlockOpen(c.text, c.length, c.size, c.copy, 0, &b), c.result);
        EXPECT_EQ(log.contains("BlockOpen: buffer too small"), c.result != 0);
        if (c.result == 0) BlockClose(&b);
    }
}

TEST(BlockOpenAndRead, EmptyBlocksRefuseEditsSafely) {
    TextBlock borrowed{};
    ASSERT_EQ(BlockOpen(nullptr, 0, 10, 0, 0, &borrowed), 0);
    EXPECT_EQ(borrowed.size, 0u);
    EXPECT_EQ(BlockReplaceWord(&borrowed, "x"), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_EQ(BlockDeleteWord(&borrowed), 0);
    EXPECT_EQ(BlockGetText(&borrowed, nullptr, 0), 0);
    BlockClose(&borrowed);
}

TEST(BlockOpenAndRead, BorrowedTextIsEditedInPlaceCopiedTextIsNot) {
    for (uint16_t copy : {0, 1}) {
        CallerText t("teh cat", 16);
        TextBlock b{};
        ASSERT_EQ(BlockOpen(t.data(), t.length, t.size, copy, 0, &b), 0);
        EXPECT_EQ(b.ownsText, copy);
        ASSERT_EQ(BlockReplaceWord(&b, "the"), 0);
        EXPECT_EQ(std::string(t.data()), copy ? "teh cat" : "the cat");
        char out[16];
        EXPECT_EQ(BlockGetText(&b, out, sizeof out), 7);
        EXPECT_EQ(std::string(out, 7), "the cat");
        EXPECT_EQ(BlockClose(&b), 0);
    }
}

TEST(BlockOpenAndRead, GetTextNeedsRoomForTheTextOnlyAndAddsNoZero) {
    OpenBlock b("He said");
    std::vector<char> out(7 + kGuardBytes, kGuard);
    LogCapture log;
    EXPECT_EQ(BlockGetText(&b.block, out.data(), 6), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_TRUE(log.contains("BlockGetText: buffer too small"));
    EXPECT_EQ(out[0], kGuard);
    EXPECT_EQ(BlockGetText(&b.block, out.data(), 7), 7);
    EXPECT_EQ(std::string(out.data(), 7), "He said");
    EXPECT_EQ(out[7], kGuard);
}

TEST(BlockOpenAndRead, SetCursorAcceptsZeroToLength) {
    OpenBlock b("He said");
    LogCapture log;
    EXPECT_EQ(BlockSetCursor(&b.block, 7), 0);
    EXPECT_EQ(wordAt(&b.block), "<none>");
    EXPECT_EQ(BlockSetCursor(&b.block, 4), 0);
    EXPECT_EQ(wordAt(&b.block), "aid");  // inside a word: the rest of it
    EXPECT_EQ(BlockSetCursor(&b.block, 8), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_TRUE(log.contains("BlockSetCursor: cursor 8 > text length 7"));
    EXPECT_EQ(b.block.cursor, 4u);
}

}  // namespace
