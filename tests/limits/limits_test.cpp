// tests/limits/limits_test.cpp — the engine at and past its limits: each
// limit works or is refused with a clear code, and nothing a call refuses
// is lost or corrupts a file.
// Groups: LimitWords and LimitDict (words of 63, 64, 255 and 10,000 bytes
// through every call that takes a word), LimitPaths (paths of 259 and 260
// characters). The largest sizes are in sizes_slow.cpp.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "dict/dict_fixture.h"

namespace {

namespace fs = std::filesystem;

const size_t kLengths[] = {63, 64, 255, 10000};

// A word of n bytes, of one letter per length (k, l, h, e for 63, 64, 255,
// 10000), so that words of different lengths differ in their first 63 bytes.
std::string wordOf(size_t n) { return std::string(n, n == 63 ? 'k' : n == 64 ? 'l' : n == 255 ? 'h' : 'e'); }

std::vector<std::string> entriesOf(int16_t session, int16_t lex) {
    uint32_t size = 0;
    ORTH_GetLexInfo(session, lex, &size, nullptr, nullptr, nullptr);
    std::vector<char> buf(size);
    int32_t n = ORTH_GetLex(session, lex, buf.data(), size);
    std::vector<std::string> out;
    for (size_t at = 0; n-- > 0; at += out.back().size() + 1) out.emplace_back(buf.data() + at);
    return out;
}

class LimitWords : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        session = ORTH_OpenSession();
    }
    void TearDown() override { closeAllSessions(); }
    TempDir dir;
    int16_t session = -1;
};

// Lexicon changes and lookups keep the first 63 bytes of a word; an entry
// whose line would not read back whole is refused; deletion does not shorten.
TEST_F(LimitWords, LexiconCallsKeep63BytesAndRefuseLinesThatWouldNotReadBack) {
    std::string ignorePath = dir.file("i.tlx"), changePath = dir.file("c.tlx");
    int16_t ignore = ORTH_CreateLex(session, ignorePath.c_str(), ORTH_IGNORE_LEX_TYPE, 1033);
    int16_t change = ORTH_CreateLex(session, changePath.c_str(), ORTH_AUTO_CHANGE_LEX_TYPE, 1033);
    ASSERT_GE(ignore + change, 1);
    std::vector<std::string> kept, changes;
    char replacement[64];
    char list[1250];
    int16_t scores[25];
    for (size_t n : kLengths) {
        SCOPED_TRACE(n);
        std::string w = wordOf(n);
        EXPECT_EQ(ORTH_AddToLex(session, ignore, w.c_str(), nullptr), 0);
        kept.push_back(w.substr(0, 63));
        // As a replacement: "x:" and the word must fit a 77-character line.
        EXPECT_EQ(ORTH_AddToLex(session, change, ("x" + std::to_string(n)).c_str(), w.c_str()),
                  n + 2 + std::to_string(n).size() <= 77 ? 0 : ORTH_INVALID_WORD_ERR);
        if (n <= 70) changes.push_back("x" + std::to_string(n) + ":" + w);
        // A word over 63 bytes can be in no lexicon: reported misspelled.
        EXPECT_EQ(ORTH_CheckWord(session, 0, w.c_str(), replacement, sizeof replacement),
                  n == 63 ? 0 : ORTH_CHK_MISSPELLED);
        EXPECT_EQ(ORTH_Suggest(session, w.c_str(), -1, list, sizeof list, scores, 25), 0);
        for (const char *s = list; *s != '\0'; s += std::strlen(s) + 1) EXPECT_LE(std::strlen(s), 63u);
        EXPECT_EQ(ORTH_DelFromLex(session, ignore, w.c_str()), n == 63 ? 0 : ORTH_WORD_NOT_FOUND_ERR);
        if (n == 63) {
            kept.pop_back();
            ASSERT_EQ(ORTH_AddToLex(session, ignore, w.c_str(), nullptr), 0);
            kept.push_back(w);
        }
    }
    std::sort(kept.begin(), kept.end());
    std::sort(changes.begin(), changes.end());
    EXPECT_EQ(entriesOf(session, ignore), kept);
    EXPECT_EQ(entriesOf(session, change), changes);
    // The files read back as memory holds them.
    int16_t again = ORTH_OpenLex(session, ignorePath.c_str(), 0), againChange = ORTH_OpenLex(session, changePath.c_str(), 0);
    EXPECT_EQ(entriesOf(session, again), kept);
    EXPECT_EQ(entriesOf(session, againChange), changes);
}

// A block holds words of any length. Its scanner hands out their first 63
// bytes, and a replacement replaces those 63 (the rest of the word stays);
// a replacement fits while the text stays shorter than the block's size,
// and is refused with the text untouched when it would not.
TEST_F(LimitWords, BlocksCarryLongWordsAndRefuseReplacementsWithoutRoom) {
    for (size_t n : kLengths) {
        SCOPED_TRACE(n);
        std::string w = wordOf(n), text = "go " + w + " on";
        std::vector<char> buf(text.begin(), text.end());
        buf.resize(text.size() + 20);
        int16_t block = ORTH_OpenBlock(session, buf.data(), static_cast<uint32_t>(text.size()),
                                       static_cast<uint32_t>(text.size()) + 10, 0);
        ASSERT_GE(block, 0);
        char word[64], replacement[64];
        ASSERT_EQ(ORTH_NextBlockWord(session, block), 0);
        int16_t rc = ORTH_CheckBlock(session, block, 0, word, sizeof word, replacement, sizeof replacement);
        EXPECT_EQ(rc, ORTH_CHK_MISSPELLED);
        EXPECT_EQ(std::string(word), w.substr(0, 63));
        std::string fits(63 + 9, 'z'), tooLong(63 + 10, 'z');
        EXPECT_EQ(ORTH_ReplaceBlockWord(session, block, tooLong.c_str()), ORTH_BUFFER_TOO_SMALL_ERR);
        EXPECT_EQ(std::string(buf.data(), text.size()), text);
        EXPECT_EQ(ORTH_ReplaceBlockWord(session, block, fits.c_str()), 0);
        std::vector<char> out(text.size() + 10);
        ASSERT_EQ(ORTH_GetBlock(session, block, out.data(), static_cast<uint32_t>(out.size())),
                  static_cast<int32_t>(text.size() + 9));
        EXPECT_EQ(std::string(out.data(), text.size() + 9), "go " + fits + w.substr(63) + " on");
        ORTH_CloseBlock(session, block);
    }
}

// Dict keeps 255 bytes of a checked word and the engine 63 of an added one;
// the list file then holds the 63-byte words, whole.
using LimitDict = DictFolder;
TEST_F(LimitDict, DictChecksAddsAndSavesLongWordsAs63Bytes) {
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    for (size_t n : kLengths) {
        std::string w = wordOf(n);
        EXPECT_EQ(DictCheckWord(h, w.c_str()), 1) << n;
        DictAddWord(h, w.c_str());
        EXPECT_EQ(DictCheckWord(h, w.c_str()), n == 63 ? 0 : 1) << n;  // over 63: in no lexicon
    }
    EXPECT_EQ(DictClose(h), 1);
    std::string expected("\x04\x00", 2);
    for (char letter : {'e', 'h', 'k', 'l'}) expected += "\x3F" + std::string(63, letter);
    EXPECT_EQ(readFile(dir.file("USER.DIC")), expected);
}

// The compressor takes words of up to 63 bytes; a longer line is refused at
// its own line, whatever its length.
TEST_F(LimitWords, CompressorRefusesWordsOver63AtTheirLine) {
    for (size_t n : kLengths) {
        SCOPED_TRACE(n);
        std::string words = dir.file("w.txt"), out = dir.file("o.clx");
        writeFile(words, "aaa\r\nbbb\r\n" + wordOf(n) + "zz\r\n");
        uint32_t line = 0;
        ASSERT_EQ(ORTH_CompressLexInit(session, out.c_str(), nullptr, 1033, 0, &line), 0);
        EXPECT_EQ(ORTH_CompressLexFile(session, words.c_str(), &line), ORTH_INVALID_WORD_ERR);
        EXPECT_EQ(line, 3u);
        ORTH_CompressLexAbort(session);
    }
}

// A folder whose files have paths of exactly 259 and 260 characters.
class LimitPaths : public LimitWords {
protected:
    std::string pathOf(size_t total) {
        std::string folder = dir.path() + "/" + std::string(200 - dir.path().size(), 'f');
        fs::create_directories(folder);
        return folder + "/" + std::string(total - folder.size() - 1 - 4, 'n') + ".tlx";
    }
};

TEST_F(LimitPaths, Paths259WorkAnd260AreRefusedWithoutTouchingAFile) {
    std::string p259 = pathOf(259), p260 = pathOf(260);
    ASSERT_EQ(p259.size(), 259u);
    ASSERT_EQ(p260.size(), 260u);
    int16_t lex = ORTH_CreateLex(session, p259.c_str(), ORTH_IGNORE_LEX_TYPE, 1033);
    ASSERT_GE(lex, 0);
    EXPECT_EQ(ORTH_AddToLex(session, lex, "word", nullptr), 0);
    EXPECT_EQ(readFile(p259), "#LID 1033 1 1\r\nword\r\n");
    EXPECT_GE(ORTH_OpenLex(session, p259.c_str(), 0), 0);
    EXPECT_EQ(ORTH_CreateLex(session, p260.c_str(), ORTH_IGNORE_LEX_TYPE, 1033), ORTH_FILE_NOT_FOUND_ERR);
    EXPECT_FALSE(fileExists(p260));
    writeFile(p260, "#LID 1033 1 1\r\nword\r\n");
    EXPECT_LT(ORTH_OpenLex(session, p260.c_str(), 0), 0);
    uint32_t line = 0;
    std::string c259 = p259.substr(0, 255) + ".clx", c260 = p260.substr(0, 256) + ".clx";
    EXPECT_EQ(ORTH_CompressLexInit(session, c259.c_str(), nullptr, 1033, 0, &line), 0);
    EXPECT_EQ(ORTH_CompressLexEnd(session), 0);
    EXPECT_TRUE(fileExists(c259));
    EXPECT_EQ(ORTH_CompressLexInit(session, c260.c_str(), nullptr, 1033, 0, &line), ORTH_FILE_OPEN_ERR);
    EXPECT_EQ(ORTH_CompressLexFile(session, p260.c_str(), &line), ORTH_UNSUPPORTED_ACTION_ERR);
    EXPECT_FALSE(fileExists(c260));
}

}  // namespace
