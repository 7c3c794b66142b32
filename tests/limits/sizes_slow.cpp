// tests/limits/sizes_slow.cpp — the largest sizes, run with the label slow
// (in the release tree only): a text lexicon of 100,000 entries, a user
// word list of 70,000 words, a 100 MB text block. Timings are printed for
// the record, never checked.
// Groups: LimitSizes, LimitDictSizes.
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "dict/dict_fixture.h"

namespace {

using Clock = std::chrono::steady_clock;

double msSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

std::string numbered(const char *prefix, int n) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%s%07d", prefix, n);
    return buf;
}

class LimitSizes : public ::testing::Test {
protected:
    void SetUp() override { closeAllSessions(); }
    void TearDown() override { closeAllSessions(); }
    TempDir dir;
};

// Every add rewrites the whole file: the add's time grows with the lexicon.
TEST_F(LimitSizes, TextLexiconOf100000EntriesTakesChangesAndReadsBackWhole) {
    std::string path = dir.file("big.tlx"), bytes = "#LID 1033 1 100000\r\n";
    for (int i = 0; i < 100000; ++i) bytes += numbered("w", 2 * i) + "\r\n";
    writeFile(path, bytes);
    int16_t session = ORTH_OpenSession();
    auto start = Clock::now();
    int16_t lex = ORTH_OpenLex(session, path.c_str(), 0);
    ASSERT_GE(lex, 0);
    double openMs = msSince(start);
    start = Clock::now();
    for (int i = 0; i < 10; ++i) ASSERT_EQ(ORTH_AddToLex(session, lex, numbered("w", 20000 * i + 1).c_str(), nullptr), 0);
    double addMs = msSince(start) / 10;
    ASSERT_EQ(ORTH_DelFromLex(session, lex, numbered("w", 0).c_str()), 0);
    std::printf("100,000-entry text lexicon: open %.0f ms, add %.0f ms each\n", openMs, addMs);
    // A second session reads the saved file: every old entry but the
    // deleted one, and the new ones, in order.
    int16_t other = ORTH_OpenSession();
    int16_t again = ORTH_OpenLex(other, path.c_str(), 0);
    ASSERT_GE(again, 0);
    uint32_t size = 0;
    ASSERT_EQ(ORTH_GetLexInfo(other, again, &size, nullptr, nullptr, nullptr), 0);
    std::vector<char> image(size);
    ASSERT_EQ(ORTH_GetLex(other, again, image.data(), size), 100009);
    std::string expected;
    for (int i = 1; i < 100000; ++i) {
        expected += numbered("w", 2 * i) + '\0';
        if (i % 10000 == 0 && i < 100000) expected += numbered("w", 2 * i + 1) + '\0';
    }
    expected.insert(0, numbered("w", 1) + '\0');
    expected += '\0';
    EXPECT_EQ(std::string(image.data(), size), expected);
}

// The list file counts its words in 16 bits: a list of 70,000 words is saved
// with its first 65,535 in byte order, whole, and reads back as those.
using LimitDictSizes = DictFolder;
TEST_F(LimitDictSizes, UserListOf70000WordsKeepsItsFirst65535Whole) {
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    for (int i = 0; i < 70000; ++i) DictAddWord(h, numbered("u", i).c_str());
    auto start = Clock::now();
    EXPECT_EQ(DictClose(h), 1);
    std::printf("70,000-word user list: DictClose %.0f ms\n", msSince(start));
    std::string bytes = readFile(dir.file("USER.DIC"));
    ASSERT_EQ(bytes.size(), 2 + 65535 * 9u);
    EXPECT_EQ(bytes.substr(0, 2), "\xFF\xFF");
    EXPECT_EQ(bytes.substr(bytes.size() - 9), "\x08" + numbered("u", 65534));
    ASSERT_NE(h = open(), nullptr);
    EXPECT_EQ(DictCheckWord(h, numbered("u", 65534).c_str()), 0);
    EXPECT_EQ(DictCheckWord(h, numbered("u", 65535).c_str()), 1);
    DictClose(h);
}

// A borrowed block of 100 MB: checked from its start to the one misspelling
// at its end, edited there, and copied back whole.
TEST_F(LimitSizes, TextBlockOf100MBIsWalkedEditedAndCopiedBack) {
    int16_t session = ORTH_OpenSession();
    int16_t lex = ORTH_CreateLex(session, nullptr, ORTH_IGNORE_LEX_TYPE, 1033);
    for (const char *w : {"lorem", "ipsum", "dolor", "sit", "amet"}) ORTH_AddToLex(session, lex, w, nullptr);
    const std::string piece = "lorem ipsum dolor sit amet ";
    const size_t length = 100u << 20;
    std::vector<char> text(length + 64, ' ');
    for (size_t at = 0; at + piece.size() <= length - 6; at += piece.size())
        std::memcpy(text.data() + at, piece.data(), piece.size());
    std::memcpy(text.data() + length - 6, " wrng.", 6);
    std::string original(text.data(), length);
    auto start = Clock::now();
    int16_t block = ORTH_OpenBlock(session, text.data(), static_cast<uint32_t>(length), static_cast<uint32_t>(length) + 64, 0);
    ASSERT_GE(block, 0);
    char word[64], replacement[64];
    ASSERT_EQ(ORTH_CheckBlock(session, block, 0, word, sizeof word, replacement, sizeof replacement), ORTH_CHK_MISSPELLED);
    EXPECT_STREQ(word, "wrng");
    double walkMs = msSince(start);
    ASSERT_EQ(ORTH_ReplaceBlockWord(session, block, "wrong"), 0);
    std::vector<char> copy(length + 1);
    ASSERT_EQ(ORTH_GetBlock(session, block, copy.data(), static_cast<uint32_t>(copy.size())),
              static_cast<int32_t>(length + 1));
    EXPECT_EQ(std::memcmp(copy.data(), original.data(), length - 5), 0);
    EXPECT_EQ(std::string(copy.data() + length - 5, 6), "wrong.");
    ORTH_NextBlockWord(session, block);  // past the last word
    EXPECT_EQ(ORTH_CheckBlock(session, block, 0, word, sizeof word, replacement, sizeof replacement),
              ORTH_CHK_END_OF_BLOCK);
    std::printf("100 MB block: checked through in %.0f ms\n", walkMs);
}

}  // namespace
