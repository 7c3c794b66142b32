// Text lexicons loaded from damaged files.
// Groups: TextDamaged (lines holding zero bytes or cut line ends are skipped
// with a log line; over random damaged files, every entry a load accepts
// reads back identically after a save, with the word added by that save; a
// headerless lexicon emptied by its changes keeps a file that opens).
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "lex/tlex.h"
#include "orth.h"
#include "support/test_util.h"

namespace {

using Entries = std::vector<std::string>;

Entries imageOf(TLexState *lex) {
    uint32_t size = 0;
    TLex_GetImageSize(lex, &size);
    std::vector<char> buf(size);
    int32_t n = TLex_GetImage(lex, buf.data(), size);
    Entries out;
    for (size_t at = 0; n-- > 0; at += out.back().size() + 1) out.emplace_back(buf.data() + at);
    return out;
}

// Opens bytes as a lexicon, adds word, and opens the saved file again: the
// second load must give the first load's entries with word among them.
// Returns the first load's entries; fails the test when they don't read back.
Entries expectReadsBack(const TempDir &dir, const std::string &bytes, const char *word) {
    std::string path = dir.file("d.tlx");
    writeFile(path, bytes);
    TLexState lex{};
    Entries loaded;
    if (TLex_Open(path.c_str(), &lex) == 0) {
        loaded = imageOf(&lex);
        bool change = lex.type == ORTH_AUTO_CHANGE_LEX_TYPE || lex.type == ORTH_CONDITIONAL_CHANGE_LEX_TYPE;
        EXPECT_EQ(TLex_Add(&lex, word, change ? "r" : nullptr), 0);
        Entries expected = imageOf(&lex);
        TLex_Close(&lex);
        EXPECT_EQ(TLex_Open(path.c_str(), &lex), 0);
        EXPECT_EQ(imageOf(&lex), expected);
    }
    TLex_Close(&lex);
    return loaded;
}

TEST(TextDamaged, LinesWithZeroBytesOrCutLineEndsAreSkipped) {
    LogCapture log;
    TempDir dir;
    std::string x78(78, 'x'), y79(79, 'y');
    const struct { std::string bytes; Entries loaded; int skipped; } cases[] = {
        {std::string("#LID 1033 1 0\r\nab\0cd\r\nok\r\n", 24), {"ok"}, 1},
        // The zero lies in the first 79-byte piece; the rest is the next piece.
        {"#LID 1033 1 0\r\n" + std::string("z\0", 2) + std::string(90, 'q') + "\r\nok\r\n", {"ok", std::string(13, 'q')}, 1},
        {"#LID 1033 1 0\r\nok\r\n" + x78, {"ok"}, 1},                    // 78 at the end, no CR LF
        {"#LID 1033 1 0\r\nok\r\n" + y79, {"ok", y79}, 0},               // 79 reads back whole
        {"#LID 1033 0 0\r\n" + std::string("a:\0b", 4) + "\r\n", {}, 1},  // a zero in the replacement
        {std::string("w\0o\0r\0d\0\r\0\n\0", 12), {}, 1},                // UTF-16: one line
    };
    for (const auto &c : cases) {
        log.clear();
        EXPECT_EQ(expectReadsBack(dir, c.bytes, "fresh"), c.loaded) << c.bytes;
        Entries expectedLog;
        if (c.skipped > 0) expectedLog.push_back("loadLexFile: " + std::to_string(c.skipped) + " unreadable lines skipped");
        EXPECT_EQ(log.lines(), expectedLog) << c.bytes;
    }
}

// Files of random lines over a small alphabet rich in the bytes that matter:
// zero, CR, LF, '#', ':' and long runs near the line reader's limits.
TEST(TextDamaged, EveryAcceptedEntryReadsBackAfterASave) {
    TempDir dir;
    std::mt19937 rng(20261123);
    const std::string alphabet = std::string("ab:#\r\n\0 ", 8);
    const char *heads[] = {"#LID 1033 1 0\r\n", "#LID 2057 0 3\r\n", "#LID 1036 2 1\r\n", "", "#LID 1033 1\r\n"};
    for (int round = 0; round < 400; ++round) {
        std::string bytes = heads[rng() % 5];
        int lines = static_cast<int>(rng() % 8);
        for (int i = 0; i < lines; ++i) {
            size_t len = rng() % 4 == 0 ? 74 + rng() % 10 : rng() % 6;
            for (size_t k = 0; k < len; ++k) bytes += rng() % 3 == 0 ? alphabet[rng() % alphabet.size()] : 'a' + rng() % 26;
            if (rng() % 6 != 0) bytes += "\r\n";
        }
        SCOPED_TRACE(::testing::PrintToString(bytes));
        expectReadsBack(dir, bytes, "zzfresh");
        if (HasFailure()) return;
    }
}

// Found by fuzzing: a headerless lexicon that lost its last entry was saved
// as an empty file, which no open accepts.
TEST(TextDamaged, HeaderlessLexiconEmptiedKeepsAFileThatOpens) {
    TempDir dir;
    std::string path = dir.file("h.tlx");
    for (bool clear : {true, false}) {
        writeFile(path, "pear\r\n#note\r\n");
        TLexState lex{};
        ASSERT_EQ(TLex_Open(path.c_str(), &lex), 0);
        ASSERT_TRUE(lex.headerless);
        EXPECT_EQ(clear ? TLex_Clear(&lex) : TLex_Delete(&lex, "pear"), 0);
        EXPECT_EQ(readFile(path), "#LID 1033 1 0\r\n");
        EXPECT_EQ(TLex_Add(&lex, "plum", nullptr), 0);
        EXPECT_EQ(readFile(path), "plum\r\n");  // headerless again once it has entries
        TLex_Close(&lex);
        ASSERT_EQ(TLex_Open(path.c_str(), &lex), 0);
        EXPECT_EQ(imageOf(&lex), Entries{"plum"});
        TLex_Close(&lex);
    }
}

}  // namespace
