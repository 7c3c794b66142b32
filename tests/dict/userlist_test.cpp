// tests/dict/userlist_test.cpp — the user word list file across DictOpen and
// DictClose.
// Groups: UserList (exact bytes across opens, saves that fail, a refused
// path; whole records only at load; the 16-bit count).
#include <cstdio>
#include <filesystem>

#include "dict/dict_fixture.h"

namespace {

using UserList = DictFolder;

// Each step opens a handle, checks "orthography" before and after its edits,
// closes it and finds the file's bytes, with no other file left beside it.
TEST_F(UserList, SavedAscendingWithCountAndLengthBytesReadBackOldListKeptWhenNotWritten) {
    const std::string two("\x02\x00\x06" "colour" "\x04" "grey", 14), longName(260, 'u');
    const struct { std::vector<const char *> add, del; int32_t before, after; void (*fail)();
                   const char *list; std::string bytes; } steps[] = {
        {{"orthography", "grey", "colour"}, {}, 1, 0, nullptr, "USER.DIC",
         std::string("\x03\x00\x06" "colour" "\x04" "grey" "\x0B" "orthography", 26)},
        {{}, {"orthography"}, 0, 1, nullptr, "USER.DIC", two},
        {{"zebra"}, {}, 1, 1, +[] { platFailWritesAfter(0); }, "USER.DIC", two},
        {{"zebra"}, {}, 1, 1, +[] { platFailCreates(1); }, "USER.DIC", two},
        {{"zebra"}, {}, 1, 1, nullptr, longName.c_str(), two},  // a name too long to build: untouched
        {{}, {"grey", "colour"}, 1, 1, nullptr, "USER.DIC", std::string("\x00\x00", 2)},
    };
    for (const auto &s : steps) {
        DictHandle *h = open("MAIN.CLX", s.list);
        ASSERT_NE(h, nullptr);
        EXPECT_EQ(DictCheckWord(h, "orthography"), s.before);
        for (const char *w : s.add) DictAddWord(h, w);
        for (const char *w : s.del) DictDeleteWord(h, w);
        EXPECT_EQ(DictCheckWord(h, "orthography"), s.after);
        if (s.fail != nullptr) s.fail();
        EXPECT_EQ(DictClose(h), 1);
        platClearFaults();
        EXPECT_EQ(readFile(dir.file("USER.DIC")), s.bytes);
        auto entries = std::filesystem::directory_iterator(dir.path());
        EXPECT_EQ(std::distance(begin(entries), end(entries)), 3);  // MAIN.CLX, MAIN.TLX, USER.DIC
    }
}

TEST_F(UserList, LoadAddsWholeRecordsOnly) {
    const struct { std::string bytes; const char *accepted, *rejected; } cases[] = {
        {std::string("\x01\x00\x03" "abc", 6), "abc", "abcd"},
        {std::string("\x03\x00\x03" "abc" "\x05" "de", 8), "abc", "de"},  // the second record is cut short
        {std::string("\x01", 1), "cat", "abc"},
        {std::string("\x02\x00\x00\xC8", 4) + std::string(200, 'w'), "cat", "abc"},  // lengths 0 and 200
    };
    for (const auto &c : cases) {
        writeFile(dir.file("USER.DIC"), c.bytes);
        DictHandle *h = open();
        ASSERT_NE(h, nullptr);
        EXPECT_EQ(DictCheckWord(h, c.accepted), 0) << c.bytes.size();
        EXPECT_EQ(DictCheckWord(h, c.rejected), 1) << c.bytes.size();
        DictClose(h);
    }
}

TEST_F(UserList, CountStopsAt65535Words) {
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    char word[16];
    for (int i = 0; i < 65537; ++i) {  // ascending, so each add appends
        std::snprintf(word, sizeof word, "w%06d", i);
        DictAddWord(h, word);
    }
    DictClose(h);
    std::string bytes = readFile(dir.file("USER.DIC"));
    ASSERT_EQ(bytes.size(), 2u + 65535u * 8u);
    EXPECT_EQ(bytes.substr(0, 2) + bytes.substr(bytes.size() - 8), std::string("\xFF\xFF\x07w065534", 10));
}

}  // namespace
