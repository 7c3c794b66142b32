// tests/dict/userlist_test.cpp — the user word list file across DictOpen and
// DictClose.
// Groups: UserList (exact bytes, round trip, truncated and odd files, a save
// that fails, a refused path, the 16-bit count).
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "dict/dict_fixture.h"
#include "dict/dict_int.h"
#include "platform/platform.h"

namespace {

class UserList : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        folder = dir.path() + "/HOST.EXE";
        ASSERT_EQ(compressWords(dir.path(), dir.file("MAIN.CLX"), sampleWords()), 0);
        writeFile(dir.file("MAIN.TLX"), crlfLines({"#LID 1033 1 0"}));
    }
    void TearDown() override {
        platClearFaults();
        closeAllSessions();
    }
    DictHandle *open(const char *list = "USER.DIC") {
        HostRecord rec("MAIN.CLX", 2057, list);
        return DictOpen(folder.c_str(), rec.bytes, 0);
    }
    std::string listFile() const { return dir.file("USER.DIC"); }
    TempDir dir;
    std::string folder;
};

TEST_F(UserList, SavedInAscendingOrderWithCountAndLengthBytes) {
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    DictAddWord(h, "grey");
    DictAddWord(h, "colour");
    EXPECT_EQ(DictClose(h), 1);
    EXPECT_EQ(readFile(listFile()), std::string("\x02\x00\x06" "colour" "\x04" "grey", 14));
    EXPECT_FALSE(fileExists(listFile() + ".tmp"));
}

TEST_F(UserList, WordsSurviveCloseAndReopen) {
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    ASSERT_EQ(DictCheckWord(h, "orthography"), 1);
    DictAddWord(h, "orthography");
    DictClose(h);
    h = open();
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(DictCheckWord(h, "orthography"), 0);
    DictDeleteWord(h, "orthography");
    DictClose(h);
    EXPECT_EQ(readFile(listFile()), std::string("\x00\x00", 2));  // replaces the longer list
}

TEST_F(UserList, LoadAddsWholeRecordsOnly) {
    struct Case { std::string bytes; std::vector<const char *> accepted, rejected; } cases[] = {
        {std::string("\x01\x00\x03" "abc", 6), {"abc"}, {}},
        // count 3, but the second record stops after two of five bytes
        {std::string("\x03\x00\x03" "abc" "\x05" "de", 8), {"abc"}, {"de", "dexyz"}},
        // the count promises more than the file holds; a length byte is missing
        {std::string("\x02\x00\x03" "xyz", 6), {"xyz"}, {}},
        {std::string("\x01", 1), {}, {"abc"}},
        {std::string(), {}, {"abc"}},
        // a record of length 0 and one longer than a word: neither harms
        {std::string("\x02\x00\x00\xC8", 4) + std::string(200, 'w'), {}, {"abc"}},
    };
    for (const Case &c : cases) {
        writeFile(listFile(), c.bytes);
        DictHandle *h = open();
        ASSERT_NE(h, nullptr);
        for (const char *w : c.accepted) EXPECT_EQ(DictCheckWord(h, w), 0) << w;
        for (const char *w : c.rejected) EXPECT_EQ(DictCheckWord(h, w), 1) << w;
        DictClose(h);
    }
}

TEST_F(UserList, FailedSaveKeepsTheOldList) {
    const std::string old("\x01\x00\x03" "abc", 6);
    writeFile(listFile(), old);
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    DictAddWord(h, "zebra");
    platFailWritesAfter(0);
    EXPECT_EQ(DictClose(h), 1);
    platClearFaults();
    EXPECT_EQ(readFile(listFile()), old);
    EXPECT_FALSE(fileExists(listFile() + ".tmp"));

    h = open();
    ASSERT_NE(h, nullptr);
    DictAddWord(h, "zebra");
    platFailCreates(1);
    EXPECT_EQ(DictClose(h), 1);
    EXPECT_EQ(readFile(listFile()), old);
}

TEST_F(UserList, RefusedPathIsNeitherReadNorWritten) {
    std::string name(260, 'u');  // folder + name add up to more than 260
    DictHandle *h = open(name.c_str());
    ASSERT_NE(h, nullptr);
    DictAddWord(h, "zebra");
    EXPECT_EQ(DictClose(h), 1);
    size_t files = 0;
    for (const auto &entry : std::filesystem::directory_iterator(dir.path())) {
        (void)entry;
        ++files;
    }
    EXPECT_EQ(files, 2u);  // MAIN.CLX and MAIN.TLX only
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
    EXPECT_EQ(bytes.substr(0, 2), std::string("\xFF\xFF", 2));
    EXPECT_EQ(bytes.substr(bytes.size() - 8), std::string("\x07w065534", 8));
}

}  // namespace
