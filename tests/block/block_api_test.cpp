// The ORTH_ block calls.
// Groups: BlockSlots (four per session, reuse, failed opens, session close
// releasing blocks), BlockIds (every call's id validation and log lines),
// CheckBlock (the checking loop over memory lexicons: stops, numbers,
// doubled words within and across calls, capitalisation of the first word,
// caller buffers).
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "orth.h"
#include "support/test_util.h"

namespace {

// The logged messages, without the banner that starts a debug file.
std::vector<std::string> messages(const LogCapture &log) {
    std::vector<std::string> out;
    for (const std::string &line : log.lines()) {
        if (!line.empty() && line.rfind("Debugging started", 0) != 0) out.push_back(line);
    }
    return out;
}

class BlockApi : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        session = ORTH_OpenSession();
        ASSERT_EQ(session, 0);
    }
    void TearDown() override { closeAllSessions(); }

    int16_t open(const std::string &text, uint16_t copy = 1) {
        buffer.assign(text.begin(), text.end());
        buffer.resize(text.size() + 16, '\0');
        return ORTH_OpenBlock(session, buffer.data(), uint32_t(text.size()),
                              uint32_t(buffer.size()), copy);
    }
    // A memory-only accept list holding the given words.
    void knownWords(std::initializer_list<const char *> words) {
        int16_t lex = ORTH_CreateLex(session, nullptr, ORTH_IGNORE_LEX_TYPE, 1033);
        ASSERT_GE(lex, 0);
        for (const char *w : words) ASSERT_EQ(ORTH_AddToLex(session, lex, w, nullptr), 0) << w;
    }
    int16_t check(int16_t block, uint32_t mask = 0) {
        return ORTH_CheckBlock(session, block, mask, word, sizeof word, repl, sizeof repl);
    }
    uint32_t cursor(int16_t block) {
        uint32_t c = 0;
        ORTH_GetBlockInfo(session, block, nullptr, nullptr, &c, nullptr);
        return c;
    }

    int16_t session = -1;
    std::vector<char> buffer;
    char word[64] = {}, repl[64] = {};
};

using BlockSlots = BlockApi;
using BlockIds = BlockApi;
using CheckBlock = BlockApi;

TEST_F(BlockSlots, FourPerSessionLowestFreeFirst) {
    LogCapture log;
    char text[] = "abcdef";
    EXPECT_EQ(ORTH_OpenBlock(session, text, 6, 5, 0), ORTH_BUFFER_TOO_SMALL_ERR);  // no slot used
    EXPECT_TRUE(log.contains("BlockOpen: buffer too small"));
    for (int16_t i = 0; i < 4; ++i) EXPECT_EQ(open("text"), i);
    EXPECT_TRUE(log.contains("ORTH_OpenBlock: block 3 opened"));
    EXPECT_EQ(open("text"), ORTH_TOO_MANY_BLOCKS_ERR);
    EXPECT_TRUE(log.contains("ORTH_OpenBlock: too many blocks"));
    EXPECT_EQ(ORTH_CloseBlock(session, 1), 0);
    EXPECT_TRUE(log.contains("ORTH_CloseBlock: block 1 closed"));
    EXPECT_EQ(open("text"), 1);
    // Another session has slots of its own.
    int16_t other = ORTH_OpenSession();
    EXPECT_EQ(ORTH_OpenBlock(other, buffer.data(), 4, 20, 0), 0);
}

TEST_F(BlockSlots, CharacterSetIsTakenAtOpen) {
    ASSERT_EQ(ORTH_SetOption(session, ORTH_CHARSET_OPT, 1), 0);
    int16_t latin2 = open("x\xAAy");
    ASSERT_EQ(ORTH_SetOption(session, ORTH_CHARSET_OPT, 0), 1);
    EXPECT_EQ(ORTH_GetBlockWord(session, latin2, word, sizeof word), 0);
    EXPECT_STREQ(word, "x\xAAy");  // 0xAA stays a letter for this block
    int16_t latin1 = open("x\xAAy");
    EXPECT_EQ(ORTH_GetBlockWord(session, latin1, word, sizeof word), 0xAA);
    EXPECT_STREQ(word, "x");
}

TEST_F(BlockSlots, SessionCloseReleasesEveryBlockInOrder) {
    static char borrowed[] = "two";
    ASSERT_EQ(open("one", 1), 0);
    ASSERT_EQ(ORTH_OpenBlock(session, borrowed, 3, 4, 0), 1);
    ASSERT_EQ(open("three", 1), 2);
    ASSERT_EQ(open("four", 1), 3);
    ASSERT_EQ(ORTH_CloseBlock(session, 2), 0);
    LogCapture log;
    ASSERT_EQ(ORTH_CloseSession(session), 0);
    EXPECT_EQ(messages(log), (std::vector<std::string>{"ORTH_CloseBlock: block 0 closed",
                                                     "ORTH_CloseBlock: block 1 closed",
                                                     "ORTH_CloseBlock: block 3 closed",
                                                     "ORTH_CloseSession: Session 0 closed"}));
    EXPECT_STREQ(borrowed, "two");  // a borrowed text is the caller's to keep
    // The slot's next session starts without blocks.
    ASSERT_EQ(ORTH_OpenSession(), 0);
    EXPECT_EQ(open("again"), 0);
}

TEST_F(BlockIds, EveryCallValidatesSessionThenBlock) {
    ASSERT_EQ(open("some text"), 0);
    ASSERT_EQ(open("more text"), 1);
    ASSERT_EQ(ORTH_CloseBlock(session, 1), 0);
    char *buf = word;
    uint32_t n = 0;
    struct Call {
        const char *name;
        std::function<int32_t(int16_t, int16_t)> run;
    } calls[] = {
        {"ORTH_CloseBlock", [](int16_t s, int16_t b) { return ORTH_CloseBlock(s, b); }},
        {"ORTH_CheckBlock",
         [&](int16_t s, int16_t b) { return ORTH_CheckBlock(s, b, 0, buf, 64, buf, 64); }},
        {"ORTH_NextBlockWord", [](int16_t s, int16_t b) { return ORTH_NextBlockWord(s, b); }},
        {"ORTH_GetBlockWord",
         [&](int16_t s, int16_t b) { return ORTH_GetBlockWord(s, b, buf, 64); }},
        {"ORTH_ReplaceBlockWord",
         [](int16_t s, int16_t b) { return ORTH_ReplaceBlockWord(s, b, "x"); }},
        {"ORTH_DelBlockWord", [](int16_t s, int16_t b) { return ORTH_DelBlockWord(s, b); }},
        {"ORTH_GetBlock", [&](int16_t s, int16_t b) { return ORTH_GetBlock(s, b, buf, 64); }},
        {"ORTH_GetBlockInfo",
         [&](int16_t s, int16_t b) { return ORTH_GetBlockInfo(s, b, &n, &n, &n, &n); }},
        {"ORTH_SetBlockCursor", [](int16_t s, int16_t b) { return ORTH_SetBlockCursor(s, b, 0); }},
    };
    for (const Call &call : calls) {
        using Lines = std::vector<std::string>;
        const std::string name = call.name;
        for (int16_t bad : {-1, 5, 16}) {
            LogCapture log;
            EXPECT_EQ(call.run(bad, 0), ORTH_BAD_SESSION_ID_ERR) << name;
            EXPECT_EQ(messages(log), Lines{name + ": bad session id " + std::to_string(bad)});
        }
        for (int16_t bad : {-1, 1, 4, 32767}) {  // 1 was closed
            LogCapture log;
            EXPECT_EQ(call.run(session, bad), ORTH_BAD_BLOCK_ID_ERR) << name;
            EXPECT_EQ(messages(log), Lines{name + ": bad block id " + std::to_string(bad)});
        }
    }
    LogCapture log;
    char text[] = "x";
    EXPECT_EQ(ORTH_OpenBlock(7, text, 1, 2, 0), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_TRUE(log.contains("ORTH_OpenBlock: bad session id 7"));
    EXPECT_EQ(ORTH_GetBlock(session, 0, buf, 64), 9);  // block 0 untouched by it all
}

// The words at which a whole-text run of ORTH_CheckBlock stops, each with
// its result, stepping on after every stop.
std::vector<std::string> stops(int16_t session, int16_t block, uint32_t mask) {
    std::vector<std::string> out;
    char word[64], repl[64];
    for (int guard = 0; guard < 50; ++guard) {
        int16_t r = ORTH_CheckBlock(session, block, mask, word, 64, repl, 64);
        if (r == ORTH_CHK_END_OF_BLOCK) return out;
        out.push_back(std::string(word) + ":" + std::to_string(r));
        if (ORTH_NextBlockWord(session, block) != 0) return out;  // that was the last word
    }
    return {"<no end>"};
}

TEST_F(CheckBlock, DoubledWordPunctuationAndCaseRules) {
    knownWords({"hello", "world", "the", "end", "a"});
    const std::string d = ":" + std::to_string(ORTH_CHK_DOUBLED_WORD);
    const struct {
        const char *text;
        bool caseSensitive;
        std::vector<std::string> stops;
    } cases[] = {
        {"Hello world 1999 the the end.", true, {"the" + d}},
        {"the, the", true, {}},  {"the. The", true, {}},  {"the the the", true, {"the" + d}},
        {"The the", true, {}},   {"The the", false, {"the" + d}},
        {"1999 1999 a", true, {}},  {"", true, {}},  {" -- ... ", true, {}},
        {"the zork zork", true, {"zork:1", "zork:" + std::to_string(1 | ORTH_CHK_DOUBLED_WORD)}},
    };
    for (const auto &c : cases) {
        ORTH_SetOption(session, ORTH_CASE_SENSITIVE_OPT, c.caseSensitive);
        int16_t b = open(c.text);
        EXPECT_EQ(stops(session, b, ORTH_REPORT_DOUBLED_WORDS_OPT), c.stops) << c.text;
        ORTH_CloseBlock(session, b);
    }
}

TEST_F(CheckBlock, ReportedWordRepeatsUntilSteppedPastDoubledOnlyOnce) {
    knownWords({"fine"});
    int16_t b = open("fine zork zork fine");
    const uint32_t mask = ORTH_REPORT_DOUBLED_WORDS_OPT;
    EXPECT_EQ(check(b, mask), ORTH_CHK_MISSPELLED);
    EXPECT_EQ(cursor(b), 5u);
    EXPECT_EQ(check(b, mask), ORTH_CHK_MISSPELLED);
    ASSERT_EQ(ORTH_NextBlockWord(session, b), 0);
    EXPECT_EQ(check(b, mask), ORTH_CHK_MISSPELLED | ORTH_CHK_DOUBLED_WORD);
    EXPECT_EQ(check(b, mask), ORTH_CHK_MISSPELLED);
    ASSERT_EQ(ORTH_NextBlockWord(session, b), 0);
    EXPECT_EQ(check(b, mask), ORTH_CHK_END_OF_BLOCK);
}

TEST_F(CheckBlock, OnlyTheFirstWordMustBeCapitalised) {
    knownWords({"the", "cat"});
    int16_t b = open("the cat");
    EXPECT_EQ(check(b, ORTH_REPORT_UNCAPPED_WORDS_OPT), ORTH_CHK_UNCAPITALIZED);
    EXPECT_STREQ(word, "the");
    EXPECT_STREQ(repl, "The");
    ASSERT_EQ(ORTH_NextBlockWord(session, b), 0);
    EXPECT_EQ(check(b, ORTH_REPORT_UNCAPPED_WORDS_OPT), ORTH_CHK_END_OF_BLOCK);
}

TEST_F(CheckBlock, ReplaceAndDeleteThenCheckOnEditTheCallersText) {
    knownWords({"the", "cat"});
    int16_t b = open("teh cat", 0);
    EXPECT_EQ(check(b), ORTH_CHK_MISSPELLED);
    EXPECT_EQ(ORTH_ReplaceBlockWord(session, b, "these"), 0);
    EXPECT_EQ(check(b), ORTH_CHK_MISSPELLED);
    EXPECT_STREQ(word, "these");
    EXPECT_EQ(ORTH_DelBlockWord(session, b), 0);
    EXPECT_EQ(check(b), ORTH_CHK_END_OF_BLOCK);
    EXPECT_STREQ(buffer.data(), "cat");  // borrowed: the zero moved along
    char out[8];
    EXPECT_EQ(ORTH_GetBlock(session, b, out, sizeof out), 3);
    uint32_t length = 0, size = 0, count = 0;
    EXPECT_EQ(ORTH_GetBlockInfo(session, b, &length, &size, nullptr, &count), 0);
    EXPECT_EQ(std::vector<uint32_t>({length, size, count}), std::vector<uint32_t>({3, 23, 1}));
}

TEST_F(CheckBlock, CallerBuffersAreNeverOverrun) {
    knownWords({"fine"});
    int16_t b = open("fine misspeltword");
    EXPECT_EQ(ORTH_CheckBlock(session, b, 0, word, 0, nullptr, 0), ORTH_BUFFER_TOO_SMALL_ERR);
    std::vector<char> w(5 + 8, 0x5A), r(4 + 8, 0x5A);
    EXPECT_EQ(ORTH_CheckBlock(session, b, 0, w.data(), 5, r.data(), 4), ORTH_CHK_MISSPELLED);
    EXPECT_STREQ(w.data(), "miss");  // the word is checked as far as the buffer holds it
    EXPECT_STREQ(r.data(), "mis");
    EXPECT_EQ(std::string(w.begin() + 5, w.end()) + std::string(r.begin() + 4, r.end()),
              std::string(16, 0x5A));
}

}  // namespace
