// tests/dict/dict_test.cpp — the exported Dict functions end to end over a
// small dictionary folder.
// Groups: DictPath (path builder with its 260-character limit, companion
// name), DictHandles (the 17th handle, open failures, null and closed
// handles), DictWords (number and full-stop pre-filter, suggestions cut below
// 70 and kept across accepted words, a suggestion list that does not fit).
#include "dict/dict_fixture.h"
#include "dict/dict_int.h"

namespace {

using DictHandles = DictFolder;
using DictWords = DictFolder;

TEST(DictPath, JoinsDriveAndDirectoryWithTheNameUpTo260CharactersCompanionEndsInTLX) {
    const std::string d251(251, 'd');
    const struct { std::string folder; const char *name; std::string path, companion; } cases[] = {
        {"C:\\DICT\\HOST.EXE", "MAIN.CLX", "C:\\DICT\\MAIN.CLX", "MAIN.TLX"},
        {"HOST.EXE", "MAIN", "MAIN", ".TLX"},
        {"C:HOST.EXE", "A.B.CLX", "C:A.B.CLX", "A.B.TLX"},
        {"a/b\\c", ".CLX", "a/b\\.CLX", ".TLX"},  // a dot at the first character does not count
        {d251 + "/", "MAIN.CLX", d251 + "/MAIN.CLX", "MAIN.TLX"},  // 260 characters
        {d251 + "d/", "MAIN.CLX", "", "MAIN.TLX"},                 // 261: refused
        {"x/", "ABCDEFGHIJKLMNOPQRSTUVW.CLX", "x/ABCDEFGHIJKLMNOPQRSTUVW.CLX", ".TLX"},  // 19 read
    };
    for (const auto &c : cases) {
        char path[kDictPathBufSize], companion[kDictMainNameMax + 5];
        EXPECT_EQ(buildDictPath(c.folder.c_str(), c.name, path), !c.path.empty()) << c.folder;
        makeCompanionName(c.name, companion);
        EXPECT_EQ(std::string(path) + " " + companion, c.path + " " + c.companion) << c.folder;
    }
}

TEST_F(DictHandles, SeventeenthFailsUntilOneClosesFailedOpensLeaveNoSessionBadHandlesRefused) {
    std::vector<DictHandle *> handles;
    for (int i = 0; i < 16; ++i) ASSERT_NE(handles.emplace_back(open()), nullptr) << i;
    EXPECT_EQ(open(), nullptr);
    DictHandle *closed = handles[3];
    EXPECT_EQ(DictClose(closed), 1);
    ASSERT_NE(handles[3] = open(), nullptr);
    for (DictHandle *h : handles) EXPECT_EQ(DictClose(h), 1);
    char buf[64] = "untouched";
    for (DictHandle *h : {static_cast<DictHandle *>(nullptr), closed}) {
        EXPECT_EQ(DictCheckWord(h, "cat"), 1);
        EXPECT_EQ(DictGetNextSug(h, buf) + DictAddWord(h, "cat") + DictDeleteWord(h, "cat"), 0);
        EXPECT_EQ(DictClose(h), 0);
    }
    EXPECT_STREQ(buf, "untouched");
    folder = std::string(300, 'x') + "/";  // a folder the path builder refuses
    EXPECT_EQ(open(), nullptr);
    folder = dir.path() + "/";
    std::rename(dir.file("MAIN.TLX").c_str(), dir.file("OTHER.TLX").c_str());
    EXPECT_EQ(open("OTHER.CLX"), nullptr);  // companion present, main missing
    EXPECT_EQ(open(), nullptr);             // main present, companion missing
    EXPECT_EQ(ORTH_OpenSession(), 0);
}

// Each word is checked, then up to take suggestions are fetched.
TEST_F(DictWords, NumbersSkipTheLookupSuggestionsStopBelow70AndSurviveAcceptedWords) {
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    const std::string longWord(400, 'q');
    using Words = std::vector<std::string>;
    const struct { const char *word; int32_t rejected; size_t take; Words sugs; } steps[] = {
        {"", 0, 9, {}},  // nothing rejected since the open
        {"helo", 1, 1, {"hello"}},  // the engine's list: hello 90, hell 75, help 75, an 30, is 30
        {"2024", 0, 0, {}}, {"12.", 0, 0, {}}, {"3-", 0, 0, {}}, {nullptr, 0, 0, {}}, {"etc.", 0, 0, {}},
        {"cat", 0, 9, {"hell", "help"}},
        {"helo", 1, 9, {"hello", "hell", "help"}},
        {"teh", 1, 9, {"the"}},   // etc scores 66
        {"qqqqzzzz", 1, 9, {}},  // grey scores 48
        {"4th", 1, 0, {}},       // letters follow the digits: looked up, and excluded by the companion
        {longWord.c_str(), 1, 0, {}},
    };
    for (const auto &s : steps) {
        EXPECT_EQ(DictCheckWord(h, s.word), s.rejected) << (s.word ? s.word : "null");
        EXPECT_EQ(suggestions(h, s.take), s.sugs) << (s.word ? s.word : "null");
    }
    DictClose(h);
}

// 60 user words of 56 characters one letter apart: 25 suggestions do not fit
// in the handle's 1250-byte list, 21 whole ones do.
TEST_F(DictWords, ListThatDoesNotFitHandsOutOnlyWholeSuggestionsOfTheNewWord) {
    const std::string stem(54, 'k');
    std::string list("\x3C\x00", 2);
    for (char a = 'a'; a < 'a' + 20; ++a)
        for (char b : {'a', 'b', 'c'}) list += "\x38" + stem + a + b;
    writeFile(dir.file("USER.DIC"), list);
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    ASSERT_EQ(DictCheckWord(h, "helo"), 1);
    ASSERT_EQ(suggestions(h, 1).size(), 1u);  // the cursor now inside the old list
    ASSERT_EQ(DictCheckWord(h, (stem + "zz").c_str()), 1);
    std::vector<std::string> got = suggestions(h);
    EXPECT_EQ(got.size(), 21u);
    for (const std::string &sug : got) EXPECT_EQ(sug.substr(0, 54) + std::to_string(sug.size()), stem + "56");
    DictClose(h);
}

}  // namespace
