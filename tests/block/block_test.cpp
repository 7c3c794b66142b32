// The text block on its own.
// Groups: BlockWords (boundary table, buffer sizes, long runs, character
// sets), BlockWalk (cursor at open, stepping, word count), BlockDoubled,
// BlockEdit (replace and delete at start, middle, end and the size limit,
// guard bytes past the buffer), BlockOpenAndRead (open failures, borrowed
// and copied texts, cursor setting, reading back).
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "block/block.h"
#include "orth.h"
#include "support/test_util.h"

namespace {

constexpr char kGuard = 0x5A;
constexpr uint32_t kGuards = 8;

// A caller's buffer of `size` bytes: the text, a zero after it while there is
// room, then guard bytes that no block operation may touch.
struct CallerText {
    std::vector<char> bytes;
    uint32_t length, size;
    CallerText(const std::string &text, uint32_t extra)
        : bytes(text.size() + extra + kGuards, kGuard), length(uint32_t(text.size())),
          size(uint32_t(text.size() + extra)) {
        std::memcpy(bytes.data(), text.data(), length);
        if (extra > 0) bytes[length] = '\0';
    }
    bool guardsIntact() const {
        return std::string(bytes.end() - kGuards, bytes.end()) == std::string(kGuards, kGuard);
    }
};

// A copied block over text (with room for one more byte).
struct Block {
    TextBlock b{};
    explicit Block(const std::string &text, int16_t charSet = 0) {
        std::string src = text;
        uint32_t length = uint32_t(text.size());
        EXPECT_EQ(BlockOpen(&src[0], length, length + 1, 1, charSet, &b), 0);
    }
    ~Block() { BlockClose(&b); }
    std::string word(int16_t *follow = nullptr) {
        char w[kWordBufSize];
        int16_t rc = BlockGetWord(&b, w, sizeof w);
        if (follow != nullptr) *follow = rc;
        return rc < 0 ? "<none>" : w;
    }
    std::vector<std::string> words() {
        std::vector<std::string> out;
        for (std::string w = word(); w != "<none>"; w = word()) {
            out.push_back(w);
            if (BlockNextWord(&b) != 0) break;
        }
        return out;
    }
};

TEST(BlockWords, BoundaryTable) {
    const struct { const char *text, *word; int follow; } cases[] = {
        {"don't", "don't", 0},         {"well-known", "well-known", 0}, {"U.S.A.", "U.S.A.", 0},
        {"U.S.A. now", "U.S.A.", ' '}, {"abc123", "abc123", 0},         {"e.g. this", "e.g.", ' '},
        {"well- known", "well", '-'},  {"'tis", "tis", 0}, {"end.Start", "end.Start", 0},
        {"He said", "He", ' '},        {"abc.", "abc", '.'},            {"rock' on", "rock", '\''},
        {"dogs' bone", "dogs'", ' '},  {"BOSS' desk", "BOSS'", ' '},    {"I' x", "I", '\''},
        {"rock\x92", "rock", 0x92},    {"o\x92" "clock", "o\x92" "clock", 0}, {"a'-b", "a'-b", 0},
        {"a--b", "a", '-'},            {"x-", "x", '-'},                {"1,000", "1", ','},
        {"3.14", "3.14", 0},           {"  ,(Hello)", "Hello", ')'}, {"caf\xE9 au", "caf\xE9", ' '},
    };
    for (const auto &c : cases) {
        Block blk(c.text);
        int16_t follow = -100;
        EXPECT_EQ(blk.word(&follow), c.word) << c.text;
        EXPECT_EQ(follow, c.follow) << c.text;
    }
    // 0xAA is punctuation in ISO 8859-1 and a letter in ISO 8859-2.
    EXPECT_EQ(Block("x\xAAy", 0).word(), "x");
    EXPECT_EQ(Block("x\xAAy", 1).word(), "x\xAAy");
}

TEST(BlockWords, SmallBuffersNeverWritePastTheirSize) {
    Block blk("U.S.A. rock'");
    const struct { uint16_t size; int16_t result; const char *word; } cases[] = {
        {0, ORTH_BUFFER_TOO_SMALL_ERR, nullptr}, {1, 'U', ""}, {2, '.', "U"},
        {4, '.', "U.S"}, {6, '.', "U.S.A"}, {7, ' ', "U.S.A."},
    };
    for (const auto &c : cases) {
        std::vector<char> buf(c.size + kGuards, kGuard);
        LogCapture log;
        EXPECT_EQ(BlockGetWord(&blk.b, buf.data(), c.size), c.result) << c.size;
        EXPECT_EQ(std::string(buf.begin() + c.size, buf.end()), std::string(kGuards, kGuard));
        if (c.word != nullptr) {
            EXPECT_STREQ(buf.data(), c.word);
        }
        EXPECT_EQ(log.contains("BlockGetWord: buffer too small"), c.word == nullptr);
    }
    ASSERT_EQ(BlockNextWord(&blk.b), 0);
    char buf[6];
    EXPECT_EQ(BlockGetWord(&blk.b, buf, 6), '\'');  // "rock'" fits, then loses its apostrophe
    EXPECT_STREQ(buf, "rock");
}

TEST(BlockWalk, OpenStepAndCount) {
    Block hello("  Hello world");
    EXPECT_EQ(hello.b.cursor, 2u);
    Block none(" ,;- ... ");
    EXPECT_EQ(none.b.cursor, none.b.length);
    EXPECT_EQ(none.word(), "<none>");
    EXPECT_EQ(BlockNextWord(&none.b), ORTH_WORD_NOT_FOUND_ERR);

    Block prose("Hello, world! It's U.S.A. time-out 42...");
    EXPECT_EQ(BlockAtFirstWord(&prose.b), 1);
    EXPECT_EQ(prose.words(),
              (std::vector<std::string>{"Hello", "world", "It's", "U.S.A.", "time-out", "42"}));
    EXPECT_EQ(prose.b.cursor, prose.b.length);
    EXPECT_EQ(BlockAtFirstWord(&prose.b), 0);

    Block single("Alone.");
    EXPECT_EQ(BlockNextWord(&single.b), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_EQ(BlockAtFirstWord(&single.b), 1);  // never reached a next word

    Block longRun(std::string(70, 'a') + " b");  // runs past 63 characters split
    EXPECT_EQ(longRun.words(), (std::vector<std::string>{std::string(63, 'a'), "aaaaaaa", "b"}));

    Block counted("one, two three 4 e.g. five");
    ASSERT_EQ(BlockNextWord(&counted.b), 0);
    uint32_t length = 0, size = 0, cursor = 0, count = 0;
    EXPECT_EQ(BlockGetInfo(&counted.b, &length, &size, &cursor, &count), 0);
    EXPECT_EQ(std::vector<uint32_t>({length, size, cursor, count, counted.b.cursor}),
              std::vector<uint32_t>({26, 27, 5, 6, 5}));
}

// Word indexes at which BlockDoubledWord reports a repeat over a whole walk.
std::vector<int> doubledAt(const std::string &text, bool caseSensitive) {
    Block blk(text);
    std::vector<int> hits;
    for (int i = 0; blk.word() != "<none>"; ++i) {
        if (BlockDoubledWord(&blk.b, caseSensitive)) hits.push_back(i);
        if (BlockNextWord(&blk.b) != 0) break;
    }
    return hits;
}

TEST(BlockDoubled, PunctuationCaseAndCursorRules) {
    const struct { const char *text; bool caseSensitive; std::vector<int> hits; } cases[] = {
        {"the the", false, {1}},     {"the, the", false, {}},    {"the. The", false, {}},
        {"the the the", false, {1}}, {"the the the the", false, {1, 3}},
        {"The the", false, {1}},     {"The the", true, {}},      {"the\r\n\tthe", false, {1}},
        {"the 'the", false, {}},     {"rock' rock", false, {}},  {"a b a b", false, {}},
    };
    for (const auto &c : cases) EXPECT_EQ(doubledAt(c.text, c.caseSensitive), c.hits) << c.text;

    Block blk("go go");
    EXPECT_EQ(BlockDoubledWord(&blk.b, false), 0);
    EXPECT_EQ(BlockDoubledWord(&blk.b, false), 0);  // the same position is no repeat
    EXPECT_EQ(BlockSetCursor(&blk.b, 3), 0);         // forgets the remembered word
    EXPECT_EQ(BlockDoubledWord(&blk.b, false), 0);
}

struct EditCase {
    const char *text;
    uint32_t cursor;
    const char *newWord;  // null: delete
    uint32_t extra;       // size - length
    int16_t result;
    const char *after;
    uint32_t cursorAfter;
};

TEST(BlockEdit, ReplaceAndDeleteStayInsideTheBuffer) {
    const EditCase cases[] = {
        {"teh cat", 0, "the", 1, 0, "the cat", 0},
        {"teh cat", 0, "the", 0, ORTH_BUFFER_TOO_SMALL_ERR, "teh cat", 0},  // no room at all
        {"teh cat", 0, "these", 2, ORTH_BUFFER_TOO_SMALL_ERR, "teh cat", 0},
        {"teh cat", 0, "these", 3, 0, "these cat", 0},
        {"a wonderful day", 2, "good", 0, 0, "a good day", 2},
        {"one two.", 4, "three", 4, 0, "one three.", 4},
        {"one two", 3, "six", 1, 0, "one six", 4},                        // in white space
        {"one two", 7, "six", 5, ORTH_WORD_NOT_FOUND_ERR, "one two", 7},  // at the end
        {"U.S.A. x", 0, "USA", 1, 0, "USA x", 0},
        {"one  two three", 0, nullptr, 1, 0, "two three", 0},
        {"one two three", 4, nullptr, 1, 0, "one three", 4},
        {"one two three", 8, nullptr, 0, 0, "one two ", 8},
        {"one, two", 0, nullptr, 1, 0, "two", 0},
        {"one two", 3, nullptr, 1, 0, "one ", 4},     // in white space: the next word
        {"one two", 7, nullptr, 1, 0, "one two", 7},  // at the end: nothing to delete
    };
    for (const EditCase &c : cases) {
        CallerText t(c.text, c.extra);
        TextBlock b{};
        ASSERT_EQ(BlockOpen(t.bytes.data(), t.length, t.size, 0, 0, &b), 0);
        ASSERT_EQ(BlockSetCursor(&b, c.cursor), 0);
        LogCapture log;
        int16_t rc = c.newWord ? BlockReplaceWord(&b, c.newWord) : BlockDeleteWord(&b);
        EXPECT_EQ(rc, c.result) << c.text;
        EXPECT_EQ(std::string(t.bytes.data(), b.length), c.after) << c.text;
        EXPECT_EQ(b.cursor, c.cursorAfter) << c.text;
        if (c.extra > 0) {
            EXPECT_EQ(t.bytes[b.length], '\0') << c.text;  // the zero moved along
        }
        EXPECT_TRUE(t.guardsIntact()) << c.text;
        EXPECT_EQ(log.contains("BlockReplaceWord: buffer too small"),
                  rc == ORTH_BUFFER_TOO_SMALL_ERR);
        BlockClose(&b);
    }
    Block blk("word");
    LogCapture log;
    EXPECT_EQ(BlockReplaceWord(&blk.b, nullptr), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_TRUE(log.contains("BlockReplaceWord: no new word"));
}

TEST(BlockOpenAndRead, OpenFailuresAndEmptyBlocks) {
    char text[] = "abc";
    const struct { char *text; uint32_t length, size; uint16_t copy; int16_t result; } cases[] = {
        {text, 3, 2, 0, ORTH_BUFFER_TOO_SMALL_ERR}, {text, 3, 2, 1, ORTH_BUFFER_TOO_SMALL_ERR},
        {nullptr, 3, 10, 1, ORTH_BUFFER_TOO_SMALL_ERR},
        {nullptr, 3, 10, 0, ORTH_BUFFER_TOO_SMALL_ERR},
        {nullptr, 0, 10, 0, 0}, {nullptr, 0, 10, 1, 0}, {text, 0, 0, 0, 0}, {text, 3, 3, 1, 0},
    };
    for (const auto &c : cases) {
        LogCapture log;
        TextBlock b{};
        EXPECT_EQ(BlockOpen(c.text, c.length, c.size, c.copy, 0, &b), c.result);
        EXPECT_EQ(log.contains("BlockOpen: buffer too small"), c.result != 0);
        if (c.result != 0) continue;
        EXPECT_EQ(BlockReplaceWord(&b, "longer"),
                  c.length ? ORTH_BUFFER_TOO_SMALL_ERR : ORTH_WORD_NOT_FOUND_ERR);
        EXPECT_EQ(BlockGetText(&b, nullptr, 0), c.length ? ORTH_BUFFER_TOO_SMALL_ERR : 0);
        EXPECT_EQ(BlockDeleteWord(&b), 0);
        BlockClose(&b);
    }
}

TEST(BlockOpenAndRead, BorrowedTextIsEditedInPlaceCopiedTextIsNot) {
    for (uint16_t copy : {0, 1}) {
        CallerText t("teh cat", 9);
        TextBlock b{};
        ASSERT_EQ(BlockOpen(t.bytes.data(), t.length, t.size, copy, 0, &b), 0);
        ASSERT_EQ(BlockReplaceWord(&b, "the"), 0);
        EXPECT_STREQ(t.bytes.data(), copy ? "teh cat" : "the cat");
        std::vector<char> out(7 + kGuards, kGuard);
        LogCapture log;
        EXPECT_EQ(BlockGetText(&b, out.data(), 6), ORTH_BUFFER_TOO_SMALL_ERR);
        EXPECT_TRUE(log.contains("BlockGetText: buffer too small"));
        EXPECT_EQ(BlockGetText(&b, out.data(), 7), 7);
        EXPECT_EQ(std::string(out.data(), 8), "the cat" + std::string(1, kGuard));  // no zero added
        EXPECT_EQ(BlockClose(&b), 0);
    }
}

TEST(BlockOpenAndRead, SetCursorAcceptsZeroToLength) {
    Block blk("He said");
    LogCapture log;
    EXPECT_EQ(BlockSetCursor(&blk.b, 7), 0);
    EXPECT_EQ(blk.word(), "<none>");
    EXPECT_EQ(BlockSetCursor(&blk.b, 4), 0);
    EXPECT_EQ(blk.word(), "aid");  // inside a word: the rest of it
    EXPECT_EQ(BlockSetCursor(&blk.b, 8), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_TRUE(log.contains("BlockSetCursor: cursor 8 > text length 7"));
    EXPECT_EQ(blk.b.cursor, 4u);
}

}  // namespace
