// Text lexicon.
// Groups: TextSentinel (field splitting and numbers), TextProbe (first-line
// probe), TextLoad (headers, comments, line ends, colons, order), TextSave
// (exact bytes, round trips, refused entries, create), TextSync (reload after
// another writer), TextLookup and TextImage, TextFaults (every write failing
// in turn, the temporary file not created, the rename failing).
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "lex/tlex.h"
#include "orth.h"
#include "platform/platform.h"
#include "support/test_util.h"

namespace {

namespace fs = std::filesystem;
using Entries = std::vector<std::string>;  // image entries, "word" or "word:replacement"

Entries imageOf(TLexState *lex) {
    uint32_t size = 0;
    TLex_GetImageSize(lex, &size);
    std::vector<char> buf(size);
    int32_t n = TLex_GetImage(lex, buf.data(), size);
    EXPECT_GE(n, 0);
    Entries out;
    for (size_t at = 0; n-- > 0; at += out.back().size() + 1) out.emplace_back(buf.data() + at);
    return out;
}

// Moves a file's modification time forward, as a later writer would.
void touchLater(const std::string &path, int seconds) {
    fs::last_write_time(path, fs::last_write_time(path) + std::chrono::seconds(seconds));
}

TEST(TextSentinel, SplitsFieldsAndReadsNumbersLikeAtoi) {
    struct Case {
        const char *line;
        bool valid;
        uint16_t language;
        int16_t type;
        uint32_t count;
    } cases[] = {
        {"#LID 1033 1 0", true, 1033, 1, 0},
        {"#LID 2057\t0\t\t5", true, 2057, 0, 5},
        {"#LID 1033 1 ", true, 1033, 1, 0},         // a blank after field 3 is enough
        {"#LID 1033 1", false, 0, 0, 0},
        {"#LID 1033", false, 0, 0, 0},
        {"#123456789012 3 4", true, 9012, 3, 4},    // field 1 cut at 9 characters
        {"#LID 12ab 2x 9z", true, 12, 2, 9},
        {"#LID -25536 -1 +7", true, 40000, -1, 7},  // the language wraps as it was written
        {"#LID 1033 99999 0", true, 1033, -1, 0},   // a type beyond 16 bits is out of range
    };
    for (const Case &c : cases) {
        uint16_t language = 0;
        int16_t type = 0;
        uint32_t count = 0;
        ASSERT_EQ(parseSentinel(c.line, &language, &type, &count), c.valid) << c.line;
        if (!c.valid) continue;
        EXPECT_EQ(language, c.language) << c.line;
        EXPECT_EQ(type, c.type) << c.line;
        EXPECT_EQ(count, c.count) << c.line;
    }
}

TEST(TextProbe, ReadsTheFirstLineOnly) {
    TempDir dir;
    LogCapture log;
    struct Case {
        std::string bytes;
        int16_t rc, type;
        uint16_t language;
        std::string logLine;
    } cases[] = {
        {"#LID 2057 3 0\r\nword\r\n", 0, 3, 2057, ""},
        {"apple\r\n", 0, 1, 1033, ""},
        {"#LID 1033 7 0\r\n", 0, 7, 1033, ""},  // the probe does not check the type
        {"", -6, 0, 0, "TLex_GetInfo: read error"},
        {"#LID 1033 1\r\n", -6, 0, 0, "TLex_GetInfo: bad sentinel line: #LID 1033 1"},
    };
    for (const Case &c : cases) {
        writeFile(dir.file("p.tlx"), c.bytes);
        log.clear();
        int16_t type = 0;
        uint16_t language = 0;
        EXPECT_EQ(TLex_GetInfo(dir.file("p.tlx").c_str(), &type, &language), c.rc) << c.bytes;
        if (c.rc == 0) {
            EXPECT_EQ(std::make_pair(type, language), std::make_pair(c.type, c.language));
        } else {
            EXPECT_TRUE(log.contains(c.logLine)) << c.logLine;
        }
    }
    EXPECT_EQ(TLex_GetInfo(dir.file("none.tlx").c_str(), nullptr, nullptr), ORTH_FILE_NOT_FOUND_ERR);
    EXPECT_TRUE(log.contains("TLex_GetInfo: open error; file=" + dir.file("none.tlx")));
}

TEST(TextLoad, HeadersCommentsLineEndsAndColons) {
    TempDir dir;
    LogCapture log;
    struct Case {
        std::string bytes;
        int16_t rc;
        uint16_t type, language;
        bool headerless;
        Entries entries;
    } cases[] = {
        {"#LID 1033 0 4\r\ncolour:color\r\na:b:c\r\nx:\r\nplain\r\n", 0, 0, 1033, false,
         {"a:b:c", "colour:color", "plain", "x:"}},
        {"#LID 3082 3 0\r\nw:x\r\n", 0, 3, 3082, false, {"w:x"}},   // no split outside change types
        {"pear\r\n#note\r\n\r\napple", 0, 1, 1033, true, {"apple", "pear"}},
        {"#LID 1033 1\r\nzeta\r\n", 0, 1, 1033, true, {"zeta"}},  // a bad sentinel is a comment
        {"#LID 1033 1 0\r\na\nb\r\nc\r\r\n", 0, 1, 1033, false, {"a\nb", "c\r"}},
        {"#LID 1033 1 0\r\n" + std::string(78, 'q') + "\r\n", 0, 1, 1033, false, {"\n", std::string(78, 'q') + "\r"}},
        {"#LID 1033 5 0\r\nword\r\n", -6, 0, 0, false, {}},
        {"", -6, 0, 0, false, {}},
    };
    for (const Case &c : cases) {
        writeFile(dir.file("l.tlx"), c.bytes);
        TLexState lex;
        ASSERT_EQ(TLex_Open(dir.file("l.tlx").c_str(), &lex), c.rc) << c.bytes;
        if (c.rc == 0) {
            EXPECT_EQ(lex.type, c.type);
            EXPECT_EQ(lex.language, c.language);
            EXPECT_EQ(lex.headerless, c.headerless);
        }
        EXPECT_EQ(imageOf(&lex), c.entries) << c.bytes;
        TLex_Close(&lex);
    }
    EXPECT_TRUE(log.contains("loadLexFile: bad sentinel line: #LID 1033 5 0"));
    EXPECT_TRUE(log.contains("loadLexFile: read error"));
    TLexState lex;
    EXPECT_EQ(TLex_Open(dir.file("none.tlx").c_str(), &lex), ORTH_FILE_NOT_FOUND_ERR);
    EXPECT_TRUE(log.contains("TLex_Open: file open error; file=" + dir.file("none.tlx")));
    std::string deep = dir.path() + "/" + std::string(300, 'd');
    EXPECT_EQ(TLex_Open(deep.c_str(), &lex), ORTH_FILE_NOT_FOUND_ERR);
}

TEST(TextSave, WritesSortedCrLfLinesWithTheSentinel) {
    TempDir dir;
    std::string path = dir.file("auto.tlx");
    TLexState lex;
    ASSERT_EQ(TLex_Create(path.c_str(), 0, 1033, &lex), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 0 0\r\n");
    ASSERT_EQ(TLex_Add(&lex, "teh", "the"), 0);
    ASSERT_EQ(TLex_Add(&lex, "recieve", "receive"), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 0 2\r\nrecieve:receive\r\nteh:the\r\n");
    // A word already present changes nothing, even with another replacement.
    EXPECT_EQ(TLex_Add(&lex, "teh", "tea"), 0);
    EXPECT_EQ(TLex_Delete(&lex, "recieve"), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 0 1\r\nteh:the\r\n");
    EXPECT_EQ(TLex_Clear(&lex), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 0 0\r\n");
    EXPECT_FALSE(fileExists(dir.file("AAAAORTH.TMP")));
    TLex_Close(&lex);

    writeFile(path, "pear\r\n# kept out of the next save\r\n");
    ASSERT_EQ(TLex_Open(path.c_str(), &lex), 0);
    ASSERT_EQ(TLex_Add(&lex, "Abc", nullptr), 0);
    ASSERT_EQ(TLex_Add(&lex, "abd", nullptr), 0);
    ASSERT_EQ(TLex_Add(&lex, "abc", nullptr), 0);
    ASSERT_EQ(TLex_Add(&lex, "\xE9t\xE9", nullptr), 0);  // bytes above 0x7F sort last
    EXPECT_EQ(readFile(path), "Abc\r\nabc\r\nabd\r\npear\r\n\xE9t\xE9\r\n");
    TLex_Close(&lex);
}

TEST(TextSave, EveryAcceptedEntryReadsBackAndOthersAreRefused) {
    TempDir dir;
    LogCapture log;
    std::string longest(77, 'l'), tooLong(78, 'l'), r75(75, 'r'), r76(76, 'r');
    struct Case {
        int16_t type;
        const char *word, *replacement;
        int16_t rc;
    } cases[] = {
        {0, "colour", "color", 0},
        {2, "a", "b:c", 0},
        {0, "teh", "", 0},  // an empty replacement is stored as none
        {1, longest.c_str(), nullptr, 0},
        {0, "w", r75.c_str(), 0},
        {1, "x:y", nullptr, 0},
        {0, "w2", r76.c_str(), ORTH_INVALID_WORD_ERR},
        {1, tooLong.c_str(), nullptr, ORTH_INVALID_WORD_ERR},
        {0, "a:b", "c", ORTH_INVALID_WORD_ERR},
        {1, "#tag", nullptr, ORTH_INVALID_WORD_ERR},
        {1, "", nullptr, ORTH_INVALID_WORD_ERR},
        {3, "two\r\nlines", nullptr, ORTH_INVALID_WORD_ERR},
        {2, "cr", "in\rside", ORTH_INVALID_WORD_ERR},
    };
    for (const Case &c : cases) {
        std::string path = dir.file("r" + std::to_string(&c - cases) + ".tlx");
        TLexState lex;
        ASSERT_EQ(TLex_Create(path.c_str(), c.type, 1036, &lex), 0);
        EXPECT_EQ(TLex_Add(&lex, c.word, c.replacement), c.rc) << c.word;
        Entries before = imageOf(&lex);
        TLex_Close(&lex);
        ASSERT_EQ(TLex_Open(path.c_str(), &lex), 0);
        EXPECT_EQ(imageOf(&lex), before) << c.word;
        EXPECT_EQ(lex.type, c.type);
        EXPECT_EQ(lex.language, 1036);
        TLex_Close(&lex);
    }
    EXPECT_TRUE(log.contains("TLex_Add: entry too long: w2"));
    EXPECT_TRUE(log.contains("TLex_Add: invalid word: #tag"));
}

TEST(TextSave, CreateRefusesExistingFilesAndBadFolders) {
    TempDir dir;
    LogCapture log;
    TLexState lex;
    writeFile(dir.file("there.tlx"), "keep\r\n");
    EXPECT_EQ(TLex_Create(dir.file("there.tlx").c_str(), 1, 1033, &lex), ORTH_LEXICON_EXISTS_ERR);
    EXPECT_TRUE(log.contains("TLex_Create: " + dir.file("there.tlx") + " exists"));
    EXPECT_EQ(readFile(dir.file("there.tlx")), "keep\r\n");
    std::string bad = dir.file("no/such.tlx");
    EXPECT_EQ(TLex_Create(bad.c_str(), 1, 1033, &lex), ORTH_FILE_NOT_FOUND_ERR);
    EXPECT_TRUE(log.contains("TLex_Create: file open(" + bad + ") error"));
}

TEST(TextSync, ReloadsWhenAnotherWriterChangedTheFile) {
    TempDir dir;
    std::string path = dir.file("shared.tlx");
    TLexState mine, theirs;
    ASSERT_EQ(TLex_Create(path.c_str(), 1, 1033, &mine), 0);
    ASSERT_EQ(TLex_Open(path.c_str(), &theirs), 0);
    ASSERT_EQ(TLex_Add(&theirs, "second", nullptr), 0);
    touchLater(path, 5);
    ASSERT_EQ(TLex_Add(&mine, "first", nullptr), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 1 2\r\nfirst\r\nsecond\r\n");
    writeFile(path, "#LID 1033 1 1\r\nthird\r\n");
    touchLater(path, 10);
    EXPECT_EQ(TLex_Delete(&mine, "first"), ORTH_WORD_NOT_FOUND_ERR);  // reloaded before deleting
    EXPECT_EQ(imageOf(&mine), Entries{"third"});
    TLex_Close(&mine);
    TLex_Close(&theirs);
}

TEST(TextLookup, ExactOrFoldedAndReplacementCopies) {
    TLexState lex;
    ASSERT_EQ(TLex_Create(nullptr, 2, 1033, &lex), 0);
    char out[8] = "unset";
    EXPECT_EQ(TLex_Lookup(&lex, "any", 0, true, out, sizeof out), ORTH_WORD_NOT_FOUND_ERR);
    {
        LogCapture log;
        log.clear();
        EXPECT_EQ(TLex_Delete(&lex, "any"), ORTH_WORD_NOT_FOUND_ERR);
        EXPECT_TRUE(log.lines().empty());
    }
    ASSERT_EQ(TLex_Add(&lex, "Colour", "colourless-ish"), 0);
    ASSERT_EQ(TLex_Add(&lex, "plain", nullptr), 0);
    EXPECT_EQ(TLex_Lookup(&lex, "colour", 0, true, out, sizeof out), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_EQ(TLex_Lookup(&lex, "COLOUR", 0, false, out, sizeof out), 0);
    EXPECT_STREQ(out, "colourl");  // cut to size - 1 and terminated
    std::string untouched = "keep";
    EXPECT_EQ(TLex_Lookup(&lex, "plain", 0, true, untouched.data(), 5), 0);
    EXPECT_EQ(untouched, "keep");
    EXPECT_EQ(TLex_Lookup(&lex, "PL\xC1IN", 0, false, out, sizeof out), ORTH_WORD_NOT_FOUND_ERR);
    TLex_Close(&lex);
}

TEST(TextImage, SizeSufficesAndOneByteLessFails) {
    LogCapture log;
    TLexState lex;
    ASSERT_EQ(TLex_Create(nullptr, 0, 1033, &lex), 0);
    uint32_t size = 0;
    TLex_GetImageSize(&lex, &size);
    EXPECT_EQ(size, 1u);
    char buf[32];
    EXPECT_EQ(TLex_GetImage(&lex, buf, 0), ORTH_BUFFER_TOO_SMALL_ERR);
    ASSERT_EQ(TLex_Add(&lex, "apple", nullptr), 0);
    ASSERT_EQ(TLex_Add(&lex, "pear", "pears"), 0);
    TLex_GetImageSize(&lex, &size);
    ASSERT_EQ(size, 18u);
    EXPECT_EQ(TLex_GetImage(&lex, buf, 18), 2);
    EXPECT_EQ(std::string(buf, 18), std::string("apple\0pear:pears\0\0", 18));
    EXPECT_EQ(TLex_GetImage(&lex, buf, 17), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_TRUE(log.contains("TLex_GetImage: bufer too small"));
    log.clear();
    EXPECT_EQ(TLex_GetImage(&lex, buf, 10), ORTH_BUFFER_TOO_SMALL_ERR);  // "pear" does not fit
    EXPECT_EQ(TLex_GetImage(&lex, nullptr, 18), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_TRUE(log.lines().empty());
    TLex_Close(&lex);
}

class TextFaults : public ::testing::Test {
protected:
    void SetUp() override {
        path = dir.file("faults.tlx");
        writeFile(path, "#LID 1033 1 2\r\nalpha\r\nbeta\r\n");
        ASSERT_EQ(TLex_Open(path.c_str(), &lex), 0);
        stamp = lex.fileTime;
    }
    void TearDown() override {
        platClearFaults();
        TLex_Close(&lex);
    }
    void expectUnsavedChange(const char *word) {
        EXPECT_EQ(readFile(path), "#LID 1033 1 2\r\nalpha\r\nbeta\r\n");
        EXPECT_EQ(lex.fileTime, stamp);
        EXPECT_EQ(TLex_Lookup(&lex, word, 0, true, nullptr, 0), 0);
        EXPECT_FALSE(fileExists(dir.file("AAAAORTH.TMP")));
    }
    TempDir dir;
    std::string path;
    TLexState lex;
    int32_t stamp = 0;
};

TEST_F(TextFaults, EveryWriteFailingInTurnKeepsTheOldFile) {
    LogCapture log;
    int16_t rc = 0;
    for (int n = 0;; ++n) {
        platFailWritesAfter(n);
        rc = TLex_Add(&lex, "gamma", nullptr);
        platClearFaults();
        if (rc == 0) break;
        ASSERT_EQ(rc, ORTH_FILE_WRITE_ERR) << n;
        expectUnsavedChange("gamma");
        TLex_Close(&lex);  // back to what the file holds for the next step
        ASSERT_EQ(TLex_Open(path.c_str(), &lex), 0);
    }
    EXPECT_TRUE(log.contains("saveLexFile: file write err"));
    EXPECT_EQ(readFile(path), "#LID 1033 1 3\r\nalpha\r\nbeta\r\ngamma\r\n");
}

TEST_F(TextFaults, FailedSaveIsRetriedByTheNextChange) {
    LogCapture log;
    platFailCreates(1);
    EXPECT_EQ(TLex_Add(&lex, "gamma", nullptr), ORTH_FILE_OPEN_ERR);
    EXPECT_TRUE(log.contains("saveLexFile: error opening " + dir.file("AAAAORTH.TMP")));
    expectUnsavedChange("gamma");
    platFailWritesAfter(3);
    EXPECT_EQ(TLex_Add(&lex, "delta", nullptr), ORTH_FILE_WRITE_ERR);
    expectUnsavedChange("delta");
    platClearFaults();
    EXPECT_EQ(TLex_Delete(&lex, "alpha"), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 1 3\r\nbeta\r\ndelta\r\ngamma\r\n");
}

TEST_F(TextFaults, FailedRenameKeepsTheEntriesInTheTemporaryFile) {
    LogCapture log;
    // A non-empty folder in the file's place can be neither removed nor replaced.
    fs::remove(path);
    fs::create_directories(path + "/inside");
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
    EXPECT_EQ(TLex_Add(&lex, "gamma", nullptr), ORTH_FILE_WRITE_ERR);
    std::string temp = dir.file("AAAAORTH.TMP");
    EXPECT_TRUE(log.contains("saveLexFile: rename error; entries kept in " + temp));
    EXPECT_EQ(readFile(temp), "#LID 1033 1 3\r\nalpha\r\nbeta\r\ngamma\r\n");
    fs::remove_all(path);
    EXPECT_EQ(TLex_Add(&lex, "delta", nullptr), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 1 4\r\nalpha\r\nbeta\r\ndelta\r\ngamma\r\n");
}

}  // namespace
