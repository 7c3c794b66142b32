// tests/dict/dict_test.cpp — the exported Dict functions end to end over a
// small dictionary folder.
// Groups: DictPath (path builder with its 260-character limit, companion
// name), DictOpenClose (failures, the session limit, null and closed
// handles), DictCheck (number pre-filter, full stop), DictSuggest (threshold
// and order, state across checks, a list that does not fit).
#include "dict/dict_fixture.h"
#include "dict/dict_int.h"

namespace {

using DictOpenClose = DictFolder;
using DictCheck = DictFolder;
using DictSuggest = DictFolder;

TEST(DictPath, BuildsDriveDirectoryAndNameOrRefusesLongPathsCompanionReplacesTheExtension) {
    const std::string d249(249, 'd'), d251(251, 'd');
    const struct { std::string folder, name, expect; } paths[] = {
        {"C:\\DICT\\HOST.EXE", "MAIN.CLX", "C:\\DICT\\MAIN.CLX"}, {"HOST.EXE", "MAIN.CLX", "MAIN.CLX"},
        {"C:HOST.EXE", "MAIN.CLX", "C:MAIN.CLX"}, {"a/b\\c", "X", "a/b\\X"}, {"", "X", "X"},
        {d251 + "/", "MAIN.CLX", d251 + "/MAIN.CLX"}, {d251 + "d/", "MAIN.CLX", ""},  // 260 and 261
        {"C:" + d249 + "/x", "MAIN.CLX", "C:" + d249 + "/MAIN.CLX"}, {"C:" + d249 + "d/", "MAIN.CLX", ""},
        {"dir/", std::string(300, 'n'), ""},
    };
    for (const auto &c : paths) {
        char out[kDictPathBufSize];
        EXPECT_EQ(buildDictPath(c.folder.c_str(), c.name.c_str(), out), !c.expect.empty()) << c.folder;
        EXPECT_EQ(std::string(out), c.expect) << c.folder;
    }
    const struct { const char *main, *expect; } names[] = {
        {"MAIN.CLX", "MAIN.TLX"}, {"MAIN", ".TLX"}, {"A.B.CLX", "A.B.TLX"},
        {".CLX", ".TLX"}, {"X.", "X.TLX"}, {"ABCDEFGHIJKLMNOPQRSTUVW.CLX", ".TLX"},
    };
    for (const auto &c : names) {
        char out[kDictMainNameMax + 5];
        makeCompanionName(c.main, out);
        EXPECT_STREQ(out, c.expect) << c.main;
    }
}

TEST_F(DictOpenClose, OpensOnlyWithCompanionAndMainLexiconLeavingNoSessionOnFailure) {
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(DictClose(h), 1);
    EXPECT_EQ(open("OTHER.CLX"), nullptr);  // neither OTHER.TLX nor OTHER.CLX
    std::rename(dir.file("MAIN.TLX").c_str(), dir.file("OTHER.TLX").c_str());
    EXPECT_EQ(open("OTHER.CLX"), nullptr);  // companion present, main missing
    EXPECT_EQ(open("MAIN.CLX"), nullptr);   // main present, companion missing
    folder = std::string(300, 'x') + "/";   // a folder the path builder refuses
    EXPECT_EQ(open(), nullptr);
    EXPECT_EQ(DictOpen(nullptr, nullptr, 0), nullptr);
    int16_t s = ORTH_OpenSession();
    EXPECT_EQ(s, 0);
    ORTH_CloseSession(s);
}

TEST_F(DictOpenClose, SeventeenthHandleFailsUntilOneIsClosedNullAndClosedHandlesAreHarmless) {
    std::vector<DictHandle *> handles;
    for (int i = 0; i < 16; ++i) ASSERT_NE(handles.emplace_back(open()), nullptr) << i;
    EXPECT_EQ(open(), nullptr);
    DictHandle *closed = handles[3];
    EXPECT_EQ(DictClose(closed), 1);
    ASSERT_NE(handles[3] = open(), nullptr);
    for (DictHandle *h : handles) DictClose(h);
    char buf[64] = "untouched";
    for (DictHandle *h : {static_cast<DictHandle *>(nullptr), closed}) {
        EXPECT_EQ(DictCheckWord(h, "cat"), 1);
        EXPECT_EQ(DictGetNextSug(h, buf), 0);
        EXPECT_EQ(DictAddWord(h, "cat") + DictDeleteWord(h, "cat") + DictClose(h), 0);
    }
    EXPECT_STREQ(buf, "untouched");
}

TEST_F(DictCheck, NumbersAndAFullStopArePreFiltered) {
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    const std::string longWord(400, 'q');
    const struct { const char *word; int32_t expect; } cases[] = {
        {"", 0}, {"2024", 0}, {"12.", 0}, {"3-", 0}, {"7%", 0}, {"1999", 0}, {nullptr, 0},
        {"4th", 1},  // letters follow: looked up, and excluded by the companion
        {"12a", 1}, {"etc.", 0}, {"cat.", 0}, {"colr", 1}, {"doesn't", 0}, {longWord.c_str(), 1},
    };
    for (const auto &c : cases) EXPECT_EQ(DictCheckWord(h, c.word), c.expect) << (c.word ? c.word : "null");
    DictClose(h);
}

// The engine's own suggestions for word over the same folder, cut before the
// first score below 70.
std::vector<std::string> engineSuggestions(const std::string &dir, const char *word) {
    int16_t s = ORTH_OpenSession();
    ORTH_OpenLex(s, (dir + "/MAIN.TLX").c_str(), 0);
    ORTH_CreateLex(s, nullptr, ORTH_IGNORE_LEX_TYPE, 1033);
    ORTH_OpenLex(s, (dir + "/MAIN.CLX").c_str(), 0);
    char list[1250];
    int16_t scores[25];
    std::vector<std::string> out;
    if (ORTH_Suggest(s, word, -1, list, sizeof list, scores, 25) == 0)
        for (size_t pos = 0, n = 0; list[pos] != '\0' && scores[n] >= 70; pos += std::strlen(list + pos) + 1, ++n)
            out.emplace_back(list + pos);
    ORTH_CloseSession(s);
    return out;
}

TEST_F(DictSuggest, HandsOutTheEngineOrderUpToTheFirstScoreBelowSeventyThenNothing) {
    for (const char *word : {"helo", "wrold", "qqqqzzzz"}) {
        std::vector<std::string> expect = engineSuggestions(dir.path(), word);
        EXPECT_EQ(expect.empty(), std::string(word) == "qqqqzzzz") << word;
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

TEST_F(DictSuggest, CorrectWordKeepsTheRemainingSuggestionsANewRejectionRestarts) {
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

// 60 long words one letter apart: 25 suggestions of 56 characters do not fit
// in the handle's 1250-byte list, and the engine says so.
TEST_F(DictSuggest, ListThatDoesNotFitHandsOutOnlyWholeSuggestionsOfTheWord) {
    std::vector<std::string> lines = {"#LID 1033 1 60"};
    const std::string stem(54, 'k'), typo = stem + "zz";
    for (char a = 'a'; a < 'a' + 20; ++a)
        for (char b : {'a', 'b', 'c'}) lines.push_back(stem + a + b);
    writeFile(dir.file("LONG.LEX"), crlfLines(lines));
    writeFile(dir.file("LONG.TLX"), crlfLines({"#LID 1033 1 0"}));
    int16_t s = ORTH_OpenSession(), scores[25];
    char list[1250];
    ORTH_OpenLex(s, dir.file("LONG.LEX").c_str(), 0);
    EXPECT_EQ(ORTH_Suggest(s, typo.c_str(), -1, list, sizeof list, scores, 25), ORTH_BUFFER_TOO_SMALL_ERR);
    ORTH_CloseSession(s);
    DictHandle *h = open("LONG.LEX");
    ASSERT_NE(h, nullptr);
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(DictCheckWord(h, typo.c_str()), 1);
        std::vector<std::string> got = allSuggestions(h);
        EXPECT_TRUE(!got.empty() && got.size() <= 25u);  // the complete suggestions that fitted
        for (const std::string &sug : got) EXPECT_EQ(sug.substr(0, 54) + std::to_string(sug.size()), stem + "56");
        EXPECT_EQ(DictGetNextSug(h, list), 0);
    }
    DictClose(h);
}

}  // namespace
