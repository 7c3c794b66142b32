// tests/dict/userlist_test.cpp — the user word list file across DictOpen and
// DictClose.
// Groups: UserList (exact bytes and round trip, truncated and odd files, saves
// that fail, a refused path, the 16-bit count).
#include <cstdio>
#include <filesystem>

#include "dict/dict_fixture.h"
#include "dict/dict_int.h"

namespace {

class UserList : public DictFolder {
protected:
    std::string listFile() const { return dir.file("USER.DIC"); }
};

TEST_F(UserList, SavedInAscendingOrderWithCountAndLengthBytesAndReadBack) {
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    ASSERT_EQ(DictCheckWord(h, "orthography"), 1);
    for (const char *w : {"orthography", "grey", "colour"}) EXPECT_EQ(DictAddWord(h, w), 0);
    EXPECT_EQ(DictCheckWord(h, "orthography"), 0);
    EXPECT_EQ(DictClose(h), 1);
    EXPECT_EQ(readFile(listFile()), std::string("\x03\x00\x06" "colour" "\x04" "grey" "\x0B" "orthography", 26));
    EXPECT_FALSE(fileExists(listFile() + ".tmp"));
    ASSERT_NE(h = open(), nullptr);
    EXPECT_EQ(DictCheckWord(h, "orthography"), 0);  // read back at the next open
    EXPECT_EQ(DictDeleteWord(h, "orthography"), 0);
    EXPECT_EQ(DictCheckWord(h, "orthography"), 1);
    DictClose(h);
    EXPECT_EQ(readFile(listFile()), std::string("\x02\x00\x06" "colour" "\x04" "grey", 14));
    ASSERT_NE(h = open(), nullptr);
    for (const char *w : {"grey", "colour"}) DictDeleteWord(h, w);
    DictClose(h);
    EXPECT_EQ(readFile(listFile()), std::string("\x00\x00", 2));  // replaces the longer list
}

TEST_F(UserList, LoadAddsWholeRecordsOnly) {
    const struct { std::string bytes; std::vector<const char *> accepted, rejected; } cases[] = {
        {std::string("\x01\x00\x03" "abc", 6), {"abc"}, {}},
        // count 3, but the second record stops after two of five bytes
        {std::string("\x03\x00\x03" "abc" "\x05" "de", 8), {"abc"}, {"de", "dexyz"}},
        // the count promises more than the file holds; a length byte is missing
        {std::string("\x02\x00\x03" "xyz", 6), {"xyz"}, {}},
        {std::string("\x01", 1), {}, {"abc"}}, {std::string(), {}, {"abc"}},
        // a record of length 0 and one longer than a word: neither harms
        {std::string("\x02\x00\x00\xC8", 4) + std::string(200, 'w'), {}, {"abc"}},
    };
    for (const auto &c : cases) {
        writeFile(listFile(), c.bytes);
        DictHandle *h = open();
        ASSERT_NE(h, nullptr);
        for (const char *w : c.accepted) EXPECT_EQ(DictCheckWord(h, w), 0) << w;
        for (const char *w : c.rejected) EXPECT_EQ(DictCheckWord(h, w), 1) << w;
        DictClose(h);
    }
}

TEST_F(UserList, FailedWriteOrCreateKeepsTheOldList) {
    const std::string old("\x01\x00\x03" "abc", 6);
    writeFile(listFile(), old);
    for (auto fail : {+[] { platFailWritesAfter(0); }, +[] { platFailCreates(1); }}) {
        DictHandle *h = open();
        ASSERT_NE(h, nullptr);
        DictAddWord(h, "zebra");
        fail();
        EXPECT_EQ(DictClose(h), 1);
        platClearFaults();
        EXPECT_EQ(readFile(listFile()), old);
        EXPECT_FALSE(fileExists(listFile() + ".tmp"));
    }
}

TEST_F(UserList, RefusedPathIsNeitherReadNorWritten) {
    std::string name(260, 'u');  // folder + name add up to more than 260
    DictHandle *h = open("MAIN.CLX", name.c_str());
    ASSERT_NE(h, nullptr);
    DictAddWord(h, "zebra");
    EXPECT_EQ(DictClose(h), 1);
    auto entries = std::filesystem::directory_iterator(dir.path());
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 2);  // MAIN.CLX and MAIN.TLX only
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
    std::string bytes = readFile(listFile());
    ASSERT_EQ(bytes.size(), 2u + 65535u * 8u);
    EXPECT_EQ(bytes.substr(0, 2) + bytes.substr(bytes.size() - 8), std::string("\xFF\xFF\x07w065534", 10));
}

}  // namespace
