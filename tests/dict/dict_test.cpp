// tests/dict/dict_test.cpp — the exported Dict functions end to end over a
// small dictionary folder.
// Groups: DictPath (path builder, companion name), DictOpenClose (opening,
// failures, the session limit, bad handles), DictCheck (number pre-filter,
// full stop, user words), DictSuggest (threshold, order, exhaustion, a list
// that does not fit).
#include <gtest/gtest.h>

#include "dict/dict_fixture.h"
#include "dict/dict_int.h"

namespace {

class DictTest : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        folder = dir.path() + "/";
        ASSERT_EQ(compressWords(dir.path(), dir.file("MAIN.CLX"), sampleWords()), 0);
        // The companion excludes some numbers and words, so a lookup of them
        // shows up as a rejection.
        writeFile(dir.file("MAIN.TLX"), crlfLines({"#LID 1033 3 4", "12", "2024", "3", "4th"}));
    }
    void TearDown() override { closeAllSessions(); }
    DictHandle *open(const char *mainName = "MAIN.CLX", const char *list = "USER.DIC") {
        HostRecord rec(mainName, 1033, list);
        return DictOpen(folder.c_str(), rec.bytes, 0);
    }
    TempDir dir;
    std::string folder;
};

TEST(DictPath, BuildsDriveDirectoryAndNameOrRefusesLongPaths) {
    struct Case { std::string folder, name, expect; bool built; } cases[] = {
        {"C:\\DICT\\HOST.EXE", "MAIN.CLX", "C:\\DICT\\MAIN.CLX", true},
        {"HOST.EXE", "MAIN.CLX", "MAIN.CLX", true},
        {"C:HOST.EXE", "MAIN.CLX", "C:MAIN.CLX", true},
        {"/usr/share/dict/", "MAIN.CLX", "/usr/share/dict/MAIN.CLX", true},
        {"a/b\\c", "X", "a/b\\X", true},
        {"", "X", "X", true},
        // 252 + 8 = 260 characters is the longest path built; 261 is refused
        {std::string(251, 'd') + "/", "MAIN.CLX", std::string(251, 'd') + "/MAIN.CLX", true},
        {std::string(252, 'd') + "/", "MAIN.CLX", "", false},
        {"C:" + std::string(249, 'd') + "/x", "MAIN.CLX", "C:" + std::string(249, 'd') + "/MAIN.CLX", true},
        {"C:" + std::string(250, 'd') + "/", "MAIN.CLX", "", false},
        {"dir/", std::string(300, 'n'), "", false},
    };
    for (const Case &c : cases) {
        char out[kDictPathBufSize];
        EXPECT_EQ(buildDictPath(c.folder.c_str(), c.name.c_str(), out), c.built) << c.folder;
        EXPECT_EQ(std::string(out), c.expect) << c.folder;
    }
}

TEST(DictPath, CompanionNameReplacesTheLastExtension) {
    struct Case { const char *main, *expect; } cases[] = {
        {"MAIN.CLX", "MAIN.TLX"}, {"MAIN", ".TLX"}, {"A.B.CLX", "A.B.TLX"},
        {".CLX", ".TLX"}, {"X.", "X.TLX"}, {"ABCDEFGHIJKLMNOPQRSTUVW.CLX", ".TLX"},
    };
    for (const Case &c : cases) {
        char out[kDictMainNameMax + 5];
        makeCompanionName(c.main, out);
        EXPECT_STREQ(out, c.expect) << c.main;
    }
}

TEST_F(DictTest, OpensOnlyWithBothCompanionAndMainLexicon) {
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(DictClose(h), 1);
    EXPECT_EQ(open("OTHER.CLX"), nullptr);  // neither OTHER.TLX nor OTHER.CLX
    std::rename(dir.file("MAIN.TLX").c_str(), dir.file("OTHER.TLX").c_str());
    EXPECT_EQ(open("OTHER.CLX"), nullptr);  // companion present, main missing
    EXPECT_EQ(open("MAIN.CLX"), nullptr);   // main present, companion missing
    folder = std::string(300, 'x') + "/";   // a folder the path builder refuses
    EXPECT_EQ(open(), nullptr);
    // A failed open leaves no session behind.
    int16_t s = ORTH_OpenSession();
    EXPECT_EQ(s, 0);
    ORTH_CloseSession(s);
}

TEST_F(DictTest, SeventeenthHandleFailsUntilOneIsClosed) {
    std::vector<DictHandle *> handles;
    for (int i = 0; i < 16; ++i) {
        handles.push_back(open());
        ASSERT_NE(handles.back(), nullptr) << i;
    }
    EXPECT_EQ(open(), nullptr);
    EXPECT_EQ(DictClose(handles[3]), 1);
    handles[3] = open();
    EXPECT_NE(handles[3], nullptr);
    for (DictHandle *h : handles) DictClose(h);
}

TEST_F(DictTest, NullAndClosedHandlesAreRefusedHarmlessly) {
    DictHandle *closed = open();
    ASSERT_NE(closed, nullptr);
    DictClose(closed);
    char buf[64] = "untouched";
    for (DictHandle *h : {static_cast<DictHandle *>(nullptr), closed}) {
        EXPECT_EQ(DictCheckWord(h, "cat"), 1);
        EXPECT_EQ(DictGetNextSug(h, buf), 0);
        EXPECT_EQ(DictAddWord(h, "cat"), 0);
        EXPECT_EQ(DictDeleteWord(h, "cat"), 0);
        EXPECT_EQ(DictClose(h), 0);
    }
    EXPECT_STREQ(buf, "untouched");
    EXPECT_EQ(DictOpen(nullptr, nullptr, 0), nullptr);
}

TEST_F(DictTest, NumbersAndFullStopsArePreFiltered) {
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    struct Case { const char *word; int32_t expect; } cases[] = {
        {"", 0}, {"2024", 0}, {"12.", 0}, {"3-", 0}, {"7%", 0}, {"1999", 0},
        {"4th", 1},   // letters follow: looked up, and excluded by the companion
        {"12a", 1},   // two characters follow the digits
        {"etc.", 0},  // checked as "etc"
        {"cat.", 0}, {"colour", 0}, {"colr", 1},
        {"doesn't", 0},
    };
    for (const Case &c : cases) EXPECT_EQ(DictCheckWord(h, c.word), c.expect) << c.word;
    EXPECT_EQ(DictCheckWord(h, nullptr), 0);
    std::string longWord(400, 'q');
    EXPECT_EQ(DictCheckWord(h, longWord.c_str()), 1);
    DictClose(h);
}

// Suggestions the engine gives for word in a session over the same folder.
std::vector<std::pair<std::string, int16_t>> engineSuggestions(const std::string &dir, const char *word) {
    int16_t s = ORTH_OpenSession();
    ORTH_OpenLex(s, (dir + "/MAIN.TLX").c_str(), 0);
    ORTH_CreateLex(s, nullptr, ORTH_IGNORE_LEX_TYPE, 1033);
    ORTH_OpenLex(s, (dir + "/MAIN.CLX").c_str(), 0);
    char list[1250];
    int16_t scores[25];
    std::vector<std::pair<std::string, int16_t>> out;
    if (ORTH_Suggest(s, word, -1, list, sizeof list, scores, 25) == 0)
        for (size_t pos = 0, n = 0; list[pos] != '\0'; pos += std::strlen(list + pos) + 1, ++n)
            out.emplace_back(list + pos, scores[n]);
    ORTH_CloseSession(s);
    return out;
}

std::vector<std::string> allSuggestions(DictHandle *h) {
    std::vector<std::string> out;
    char buf[64];
    while (DictGetNextSug(h, buf) == 1 && out.size() < 100) out.push_back(buf);
    return out;
}

TEST_F(DictTest, SuggestionsStopBeforeTheFirstScoreBelowSeventy) {
    for (const char *word : {"helo", "wrold", "qqqqzzzz"}) {
        std::vector<std::string> expect;
        for (const auto &[sug, score] : engineSuggestions(dir.path(), word)) {
            if (score < 70) break;
            expect.push_back(sug);
        }
        if (std::string(word) == "helo") {
            ASSERT_FALSE(expect.empty());
        }
        DictHandle *h = open();
        ASSERT_NE(h, nullptr);
        char buf[64];
        EXPECT_EQ(DictGetNextSug(h, buf), 0);  // nothing rejected yet
        EXPECT_EQ(DictCheckWord(h, word), 1);
        EXPECT_EQ(allSuggestions(h), expect) << word;
        EXPECT_EQ(DictGetNextSug(h, buf), 0) << word;
        DictClose(h);
    }
}

TEST_F(DictTest, CorrectWordKeepsTheRemainingSuggestionsAndANewRejectionRestarts) {
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    char first[64], next[64];
    ASSERT_EQ(DictCheckWord(h, "helo"), 1);
    ASSERT_EQ(DictGetNextSug(h, first), 1);
    std::vector<std::string> rest = allSuggestions(h);
    ASSERT_EQ(DictCheckWord(h, "helo"), 1);
    ASSERT_EQ(DictGetNextSug(h, next), 1);
    EXPECT_STREQ(next, first);
    EXPECT_EQ(DictCheckWord(h, "cat"), 0);
    EXPECT_EQ(allSuggestions(h), rest);
    DictClose(h);
}

// A main lexicon of 60 long words one letter apart: 25 suggestions of 56
// characters do not fit in the handle's 1250-byte list.
TEST_F(DictTest, ListThatDoesNotFitHandsOutOnlyWholeSuggestions) {
    std::vector<std::string> lines = {"#LID 1033 1 60"};
    std::string stem(54, 'k');
    for (char a = 'a'; a < 'a' + 20; ++a)
        for (char b : {'a', 'b', 'c'}) lines.push_back(stem + a + b);
    writeFile(dir.file("LONG.LEX"), crlfLines(lines));
    writeFile(dir.file("LONG.TLX"), crlfLines({"#LID 1033 1 0"}));
    std::string typo = stem + "zz";
    {
        // The engine itself runs out of room for this word.
        int16_t s = ORTH_OpenSession();
        ORTH_OpenLex(s, dir.file("LONG.LEX").c_str(), 0);
        char list[1250];
        int16_t scores[25];
        EXPECT_EQ(ORTH_Suggest(s, typo.c_str(), -1, list, sizeof list, scores, 25), ORTH_BUFFER_TOO_SMALL_ERR);
        ORTH_CloseSession(s);
    }
    DictHandle *h = open("LONG.LEX");
    ASSERT_NE(h, nullptr);
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(DictCheckWord(h, typo.c_str()), 1);
        std::vector<std::string> got = allSuggestions(h);
        EXPECT_FALSE(got.empty());  // the complete suggestions that fitted
        EXPECT_LE(got.size(), 25u);
        for (const std::string &s : got) {
            EXPECT_EQ(s.size(), 56u) << s;
            EXPECT_EQ(s.compare(0, 54, stem), 0) << s;
        }
        char buf[64];
        EXPECT_EQ(DictGetNextSug(h, buf), 0);
    }
    DictClose(h);
}

}  // namespace
