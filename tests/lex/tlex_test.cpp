// Text lexicon.
// Groups: TextSentinel (field splitting, atoi numbers), TextFile (probe and
// load of headers, comments, line ends, colons), TextSave (exact bytes,
// order, round trips and refused entries), TextSync (reload after another
// writer), TextLookup (lookups and the image), TextFaults (each write
// failing in turn, the temporary file not created, the rename failing),
// TextDamaged (lines holding zero bytes or cut line ends are skipped with a
// log line; over random damaged files, every entry a load accepts reads back
// identically after a save; a headerless lexicon emptied by its changes
// keeps a file that opens).
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <random>
#include <string>

#include "lex/tlex.h"
#include "orth.h"
#include "platform/platform.h"
#include "support/test_util.h"

namespace {

namespace fs = std::filesystem;
using Entries = std::vector<std::string>;  // image entries: "word" or "word:replacement"

Entries imageOf(TLexState *lex) {
    uint32_t size = 0;
    TLex_GetImageSize(lex, &size);
    std::vector<char> buf(size);
    int32_t n = TLex_GetImage(lex, buf.data(), size);
    Entries out;
    for (size_t at = 0; n-- > 0; at += out.back().size() + 1) out.emplace_back(buf.data() + at);
    return out;
}

// A folder with one lexicon path; the lexicon is closed and faults cleared at the end.
class Text : public ::testing::Test {
protected:
    void TearDown() override {
        platClearFaults();
        TLex_Close(&lex);
    }
    TempDir dir;
    std::string path = dir.file("l.tlx"), temp = dir.file("AAAAORTH.TMP");
    TLexState lex{};
};
using TextFile = Text;
using TextSave = Text;
using TextSync = Text;
using TextLookup = Text;

TEST(TextSentinel, SplitsFieldsAndReadsNumbersLikeAtoi) {
    struct { const char *line; bool valid; uint16_t language; int16_t type; uint32_t count; } cases[] = {
        {"#LID 2057\t0\t\t5", true, 2057, 0, 5},  {"#LID 1033 1", false, 0, 0, 0},
        {"#LID 1033 1 ", true, 1033, 1, 0},       {"#123456789012 3 4", true, 9012, 3, 4},
        {"#LID 1033 99999 0", true, 1033, -1, 0},  // a type beyond 16 bits stays out of range
    };
    for (const auto &c : cases) {
        uint16_t language = 0;
        int16_t type = 0;
        uint32_t count = 0;
        ASSERT_EQ(parseSentinel(c.line, &language, &type, &count), c.valid) << c.line;
        if (c.valid) {
            EXPECT_EQ(std::make_tuple(language, type, count), std::make_tuple(c.language, c.type, c.count));
        }
    }
}

TEST_F(TextFile, ProbeAndLoadReadHeadersCommentsAndColons) {
    LogCapture log;
    std::string q78(78, 'q');
    struct { std::string bytes; int16_t probeRc, openRc; uint16_t type, language; bool headerless; Entries entries; } cases[] = {
        {"#LID 1033 0 4\r\ncolour:color\r\na:b:c\r\nx:\r\nplain", 0, 0, 0, 1033, false, {"a:b:c", "colour:color", "plain", "x:"}},
        {"#LID 3082 3 0\r\nw:x\r\n", 0, 0, 3, 3082, false, {"w:x"}},
        {"pear\r\n#note\r\n\r\napple", 0, 0, 1, 1033, true, {"apple", "pear"}},
        {"#LID 1033 1\r\nzeta\r\n", -6, 0, 1, 1033, true, {"zeta"}},
        {"#LID 1033 1 0\r\na\nb\r\nc\r\r\n", 0, 0, 1, 1033, false, {"a\nb", "c\r"}},
        {"#LID 1033 1 0\r\n" + q78 + "\r\n", 0, 0, 1, 1033, false, {"\n", q78 + "\r"}},
        {"#LID 1033 5 0\r\nword\r\n", 0, -6, 5, 1033, false, {}},
        {"", -6, -6, 0, 0, false, {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.bytes);
        writeFile(path, c.bytes);
        int16_t type = -1;
        uint16_t language = 0;
        EXPECT_EQ(TLex_GetInfo(path.c_str(), &type, &language), c.probeRc);
        if (c.probeRc == 0) {
            EXPECT_EQ(std::make_pair(type, language), std::make_pair(int16_t(c.type), c.language));
        }
        ASSERT_EQ(TLex_Open(path.c_str(), &lex), c.openRc);
        if (c.openRc == 0) {
            EXPECT_EQ(std::make_tuple(lex.type, lex.language, lex.headerless), std::make_tuple(c.type, c.language, c.headerless));
        }
        EXPECT_EQ(imageOf(&lex), c.entries);
        TLex_Close(&lex);
    }
    std::string none = dir.file("none.tlx"), deep = dir.path() + "/" + std::string(300, 'd');
    EXPECT_EQ(TLex_GetInfo(none.c_str(), nullptr, nullptr), ORTH_FILE_NOT_FOUND_ERR);
    EXPECT_EQ(TLex_Open(none.c_str(), &lex), ORTH_FILE_NOT_FOUND_ERR);
    EXPECT_EQ(TLex_Open(deep.c_str(), &lex), ORTH_FILE_NOT_FOUND_ERR);
    for (const std::string &line : std::vector<std::string>{"TLex_GetInfo: read error", "TLex_GetInfo: bad sentinel line: #LID 1033 1",
                                   "loadLexFile: bad sentinel line: #LID 1033 5 0", "loadLexFile: read error",
                                   "TLex_GetInfo: open error; file=" + none, "TLex_Open: file open error; file=" + none})
        EXPECT_TRUE(log.contains(line)) << line;
}

TEST_F(TextSave, WritesSortedCrLfLinesWithTheSentinel) {
    ASSERT_EQ(TLex_Create(path.c_str(), 0, 1033, &lex), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 0 0\r\n");
    ASSERT_EQ(TLex_Add(&lex, "teh", "the") + TLex_Add(&lex, "recieve", "receive"), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 0 2\r\nrecieve:receive\r\nteh:the\r\n");
    EXPECT_EQ(TLex_Add(&lex, "teh", "tea"), 0);  // present: nothing changes
    EXPECT_EQ(TLex_Delete(&lex, "recieve"), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 0 1\r\nteh:the\r\n");
    EXPECT_EQ(TLex_Clear(&lex), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 0 0\r\n");
    TLex_Close(&lex);
    // Headerless files stay headerless; comments do not survive; order is byte-wise.
    writeFile(path, "pear\r\n# a comment\r\n");
    ASSERT_EQ(TLex_Open(path.c_str(), &lex), 0);
    for (const char *word : {"Abc", "abd", "abc", "\xE9t\xE9"}) ASSERT_EQ(TLex_Add(&lex, word, nullptr), 0);
    EXPECT_EQ(readFile(path), "Abc\r\nabc\r\nabd\r\npear\r\n\xE9t\xE9\r\n");
}

TEST_F(TextSave, EveryAcceptedEntryReadsBackAndOthersAreRefused) {
    LogCapture log;
    std::string l77(77, 'l'), l78(78, 'l'), r75(75, 'r'), r76(76, 'r');
    struct { int16_t type; const char *word, *replacement; int16_t rc; } cases[] = {
        {0, "colour", "color", 0},  {2, "a", "b:c", 0},       {0, "teh", "", 0},
        {1, l77.c_str(), nullptr, 0}, {0, "w", r75.c_str(), 0}, {1, "x:y", nullptr, 0},
        {0, "w2", r76.c_str(), -19}, {1, l78.c_str(), nullptr, -19}, {0, "a:b", "c", -19},
        {1, "#tag", nullptr, -19},  {1, "", nullptr, -19},   {3, "two\r\nlines", nullptr, -19},
        {2, "cr", "in\rside", -19},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.word);
        ASSERT_EQ(TLex_Create(path.c_str(), c.type, 1036, &lex), 0);
        EXPECT_EQ(TLex_Add(&lex, c.word, c.replacement), c.rc);
        Entries before = imageOf(&lex);
        TLex_Close(&lex);
        ASSERT_EQ(TLex_Open(path.c_str(), &lex), 0);
        EXPECT_EQ(imageOf(&lex), before);
        EXPECT_EQ(before.size(), c.rc == 0 ? 1u : 0u);
        TLex_Close(&lex);
        std::remove(path.c_str());
    }
    EXPECT_TRUE(log.contains("TLex_Add: entry too long: w2"));
    EXPECT_TRUE(log.contains("TLex_Add: invalid word: #tag"));
}

TEST_F(TextSync, ReloadsWhenAnotherWriterChangedTheFile) {
    auto touchLater = [&](int s) { fs::last_write_time(path, fs::last_write_time(path) + std::chrono::seconds(s)); };
    TLexState &mine = lex, theirs;
    ASSERT_EQ(TLex_Create(path.c_str(), 1, 1033, &mine), 0);
    ASSERT_EQ(TLex_Open(path.c_str(), &theirs), 0);
    ASSERT_EQ(TLex_Add(&theirs, "second", nullptr), 0);
    touchLater(5);
    ASSERT_EQ(TLex_Add(&mine, "first", nullptr), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 1 2\r\nfirst\r\nsecond\r\n");
    writeFile(path, "#LID 1033 1 1\r\nthird\r\n");
    touchLater(10);
    EXPECT_EQ(TLex_Delete(&mine, "first"), ORTH_WORD_NOT_FOUND_ERR);  // reloaded before deleting
    EXPECT_EQ(imageOf(&mine), Entries{"third"});
    TLex_Close(&theirs);
}

TEST_F(TextLookup, ExactOrFoldedLookupsReplacementCopiesAndTheImage) {
    LogCapture log;
    ASSERT_EQ(TLex_Create(nullptr, 2, 1033, &lex), 0);
    char out[8] = "unset";
    log.clear();
    EXPECT_EQ(TLex_Lookup(&lex, "any", 0, true, out, sizeof out), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_EQ(TLex_Delete(&lex, "any"), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_TRUE(log.lines().empty());
    ASSERT_EQ(TLex_Add(&lex, "Colour", "colourless") + TLex_Add(&lex, "plain", nullptr), 0);
    EXPECT_EQ(TLex_Lookup(&lex, "colour", 0, true, out, sizeof out), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_EQ(TLex_Lookup(&lex, "COLOUR", 0, false, out, sizeof out), 0);
    EXPECT_STREQ(out, "colourl");  // cut to size - 1 and terminated
    EXPECT_EQ(TLex_Lookup(&lex, "plain", 0, true, out, sizeof out), 0);
    EXPECT_STREQ(out, "colourl");  // no replacement: output untouched
    EXPECT_EQ(TLex_Lookup(&lex, "PL\xC1IN", 0, false, out, sizeof out), ORTH_WORD_NOT_FOUND_ERR);
    // The image: 18 bytes suffice, 17 do not.
    ASSERT_EQ(TLex_Clear(&lex) + TLex_Add(&lex, "apple", nullptr) + TLex_Add(&lex, "pear", "pears"), 0);
    uint32_t size = 0;
    char buf[32];
    EXPECT_EQ(TLex_GetImageSize(&lex, &size), 0);
    ASSERT_EQ(size, 18u);
    EXPECT_EQ(TLex_GetImage(&lex, buf, 18), 2);
    EXPECT_EQ(std::string(buf, 18), std::string("apple\0pear:pears\0\0", 18));
    EXPECT_EQ(TLex_GetImage(&lex, buf, 17), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_TRUE(log.contains("TLex_GetImage: bufer too small"));
}

class TextFaults : public Text {
protected:
    void SetUp() override {
        writeFile(path, kOld);
        ASSERT_EQ(TLex_Open(path.c_str(), &lex), 0);
    }
    // One change under a fault: refused with rc, the file and its time as
    // they were, the change in memory, no temporary file.
    void expectUnsaved(int16_t rc, const char *word) {
        int32_t stamp = lex.fileTime;
        EXPECT_EQ(TLex_Add(&lex, word, nullptr), rc);
        platClearFaults();
        EXPECT_EQ(readFile(path), kOld);
        EXPECT_EQ(lex.fileTime, stamp);
        EXPECT_EQ(TLex_Lookup(&lex, word, 0, true, nullptr, 0), 0);
        EXPECT_FALSE(fileExists(temp));
    }
    const std::string kOld = "#LID 1033 1 2\r\nalpha\r\nbeta\r\n";
};

TEST_F(TextFaults, EveryWriteFailingInTurnKeepsTheOldFile) {
    LogCapture log;
    for (int n = 0; n < 8; ++n) {  // four lines of two writes each
        SCOPED_TRACE(n);
        platFailWritesAfter(n);
        expectUnsaved(ORTH_FILE_WRITE_ERR, "gamma");
        TLex_Close(&lex);  // back to the file's contents for the next step
        ASSERT_EQ(TLex_Open(path.c_str(), &lex), 0);
    }
    platFailWritesAfter(8);
    EXPECT_EQ(TLex_Add(&lex, "gamma", nullptr), 0);
    EXPECT_TRUE(log.contains("saveLexFile: file write err"));
    EXPECT_EQ(readFile(path), "#LID 1033 1 3\r\nalpha\r\nbeta\r\ngamma\r\n");
}

TEST_F(TextFaults, FailedCreateOfTheTemporaryFileIsRetriedByTheNextChange) {
    LogCapture log;
    platFailCreates(1);
    expectUnsaved(ORTH_FILE_OPEN_ERR, "gamma");
    EXPECT_TRUE(log.contains("saveLexFile: error opening " + temp));
    EXPECT_EQ(TLex_Delete(&lex, "alpha"), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 1 2\r\nbeta\r\ngamma\r\n");
}

TEST_F(TextFaults, FailedRenameKeepsTheEntriesInTheTemporaryFile) {
    LogCapture log;
    // A non-empty folder in the file's place can be neither removed nor replaced.
    fs::remove(path);
    fs::create_directories(path + "/inside");
    ASSERT_TRUE(setModifiedTime(path, -3600));
    EXPECT_EQ(TLex_Add(&lex, "gamma", nullptr), ORTH_FILE_WRITE_ERR);
    EXPECT_TRUE(log.contains("saveLexFile: rename error; entries kept in " + temp));
    EXPECT_EQ(readFile(temp), "#LID 1033 1 3\r\nalpha\r\nbeta\r\ngamma\r\n");
    fs::remove_all(path);
    EXPECT_EQ(TLex_Add(&lex, "delta", nullptr), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 1 4\r\nalpha\r\nbeta\r\ndelta\r\ngamma\r\n");
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
