// The ORTH_ block calls.
// Groups: BlockSlots (four per session, lowest free first, the character set
// taken at open, session close releasing blocks), BlockIds (each call's id
// checks and log lines), CheckBlock (the checking loop over a memory lexicon:
// stops, numbers, doubled words across calls and punctuation, capitalisation
// of the first word only, a reported word repeating until stepped past,
// caller buffers); CheckPieces (a text checked in pieces that carry the word
// memory reports what the whole text reports).
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <functional>
#include <string>
#include <vector>

#include "block/block.h"
#include "orth.h"
#include "support/test_util.h"

namespace {

using Lines = std::vector<std::string>;

// The logged messages, without the banner that starts a debug file.
Lines messages(const LogCapture &log) {
    Lines out;
    for (const std::string &line : log.lines())
        if (!line.empty() && line.rfind("Debugging started", 0) != 0) out.push_back(line);
    return out;
}

class BlockApi : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        ASSERT_EQ(session = ORTH_OpenSession(), 0);
    }
    void TearDown() override { closeAllSessions(); }
    int16_t open(const std::string &text, uint16_t copy = 1) {
        buffer.assign(text.begin(), text.end());
        buffer.resize(text.size() + 16, '\0');
        return ORTH_OpenBlock(session, buffer.data(), uint32_t(text.size()), uint32_t(buffer.size()), copy);
    }
    // A memory-only accept list holding the given words.
    void knownWords(std::initializer_list<const char *> words) {
        int16_t lex = ORTH_CreateLex(session, nullptr, ORTH_IGNORE_LEX_TYPE, 1033);
        for (const char *w : words) ASSERT_EQ(ORTH_AddToLex(session, lex, w, nullptr), 0) << w;
    }
    int16_t check(int16_t block, uint32_t mask) {
        return ORTH_CheckBlock(session, block, mask, word, sizeof word, repl, sizeof repl);
    }
    // The words at which a whole-text run of checks stops, each with its result
    // and any replacement that differs, stepping on after every stop.
    Lines stops(int16_t block, uint32_t mask) {
        Lines out;
        for (int16_t r; out.size() < 50 && (r = check(block, mask)) != ORTH_CHK_END_OF_BLOCK;) {
            std::string changed = word != std::string(repl) ? ">" + std::string(repl) : "";
            out.push_back(word + (":" + std::to_string(r)) + changed);
            if (ORTH_NextBlockWord(session, block) != 0) break;  // that was the last word
        }
        return out;
    }
    int16_t session = -1;
    std::vector<char> buffer;
    char word[64] = {}, repl[64] = {};
};

using BlockSlots = BlockApi;
using BlockIds = BlockApi;
using CheckBlock = BlockApi;

TEST_F(BlockSlots, FourPerSessionLowestFreeFirstSessionCloseReleasesThemInOrder) {
    LogCapture log;
    char text[] = "abcdef";
    EXPECT_EQ(ORTH_OpenBlock(session, text, 6, 5, 0), ORTH_BUFFER_TOO_SMALL_ERR);  // no slot used
    for (int16_t i = 0; i < 4; ++i) EXPECT_EQ(i == 1 ? ORTH_OpenBlock(session, text, 6, 7, 0) : open("x"), i);
    EXPECT_TRUE(log.contains("ORTH_OpenBlock: block 3 opened"));
    EXPECT_EQ(open("text"), ORTH_TOO_MANY_BLOCKS_ERR);
    EXPECT_TRUE(log.contains("ORTH_OpenBlock: too many blocks"));
    EXPECT_EQ(ORTH_OpenBlock(ORTH_OpenSession(), text, 6, 7, 0), 0);  // a session's own slots
    EXPECT_EQ(ORTH_CloseBlock(session, 2), 0);
    EXPECT_EQ(open("text"), 2);
    EXPECT_EQ(ORTH_CloseBlock(session, 2), 0);
    log.clear();
    ASSERT_EQ(ORTH_CloseSession(session), 0);
    EXPECT_EQ(messages(log), (Lines{"ORTH_CloseBlock: block 0 closed", "ORTH_CloseBlock: block 1 closed",
                                    "ORTH_CloseBlock: block 3 closed",
                                    "ORTH_CloseSession: Session 0 closed"}));
    EXPECT_STREQ(text, "abcdef");  // a borrowed text is the caller's to keep
    ASSERT_EQ(ORTH_OpenSession(), 0);
    EXPECT_EQ(open("again"), 0);  // the slot's next session starts without blocks
}

TEST_F(BlockSlots, CharacterSetIsTakenAtOpen) {
    ASSERT_EQ(ORTH_SetOption(session, ORTH_CHARSET_OPT, 1), 0);
    int16_t latin2 = open("x\xAAy");
    ASSERT_EQ(ORTH_SetOption(session, ORTH_CHARSET_OPT, 0), 1);
    EXPECT_EQ(ORTH_GetBlockWord(session, latin2, word, sizeof word), 0);
    EXPECT_STREQ(word, "x\xAAy");  // 0xAA stays a letter for this block
}

// Each call with one bad session id and then one bad block id (block 1 was
// closed; sessions 1 to 15 are not open).
TEST_F(BlockIds, EveryCallChecksTheSessionThenTheBlockAndNamesItselfInTheLog) {
    ASSERT_EQ(open("some text"), 0);
    ASSERT_EQ(open("more text"), 1);
    ASSERT_EQ(ORTH_CloseBlock(session, 1), 0);
    static char b[64];
    static uint32_t n;
    using Call = std::function<int32_t(int16_t, int16_t)>;
    const struct { const char *name; int16_t badSession, badBlock; Call run; } calls[] = {
        {"ORTH_CloseBlock", -1, 1, [](auto s, auto k) { return ORTH_CloseBlock(s, k); }},
        {"ORTH_CheckBlock", 16, 4, [](auto s, auto k) { return ORTH_CheckBlock(s, k, 0, b, 64, b, 64); }},
        {"ORTH_NextBlockWord", 5, -1, [](auto s, auto k) { return ORTH_NextBlockWord(s, k); }},
        {"ORTH_GetBlockWord", 32767, 32767, [](auto s, auto k) { return ORTH_GetBlockWord(s, k, b, 64); }},
        {"ORTH_ReplaceBlockWord", 1, 1, [](auto s, auto k) { return ORTH_ReplaceBlockWord(s, k, "x"); }},
        {"ORTH_DelBlockWord", -32768, -32768, [](auto s, auto k) { return ORTH_DelBlockWord(s, k); }},
        {"ORTH_GetBlock", 15, 3, [](auto s, auto k) { return ORTH_GetBlock(s, k, b, 64); }},
        {"ORTH_GetBlockInfo", 2, 1, [](auto s, auto k) { return ORTH_GetBlockInfo(s, k, &n, &n, &n, &n); }},
        {"ORTH_SetBlockCursor", -1, 1, [](auto s, auto k) { return ORTH_SetBlockCursor(s, k, 0); }},
    };
    for (const auto &call : calls) {
        LogCapture log;
        EXPECT_EQ(call.run(call.badSession, 0), ORTH_BAD_SESSION_ID_ERR) << call.name;
        EXPECT_EQ(call.run(0, call.badBlock), ORTH_BAD_BLOCK_ID_ERR) << call.name;
        EXPECT_EQ(messages(log), (Lines{call.name + (": bad session id " + std::to_string(call.badSession)),
                                        call.name + (": bad block id " + std::to_string(call.badBlock))}));
    }
    LogCapture log;
    EXPECT_EQ(ORTH_OpenBlock(7, b, 1, 2, 0), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_TRUE(log.contains("ORTH_OpenBlock: bad session id 7"));
    EXPECT_EQ(ORTH_GetBlock(session, 0, b, 64), 9);  // block 0 untouched by it all
}

TEST_F(CheckBlock, StopsAtDoubledMisspelledAndUncappedFirstWordsOnly) {
    knownWords({"hello", "world", "the", "end", "a", "cat"});
    ASSERT_EQ(ORTH_SetOption(session, ORTH_CASE_SENSITIVE_OPT, 0), 1);
    const uint32_t d = ORTH_REPORT_DOUBLED_WORDS_OPT, ds = d | ORTH_CASE_SENSITIVE_OPT;  // the session's
    // case sensitivity is turned off, so only the per-call mask sets it
    const std::string dw = ":" + std::to_string(ORTH_CHK_DOUBLED_WORD);
    const struct { const char *text; uint32_t mask; Lines stops; } cases[] = {
        {"Hello world 1999 the the end.", ds, {"the" + dw}}, {"the, the", ds, {}}, {"the. The", ds, {}},
        {"the the the", ds, {"the" + dw}}, {"The the", ds, {}}, {"The the", d, {"the" + dw}},
        {"1999 1999 a", ds, {}}, {"", ds, {}}, {" -- ... ", ds, {}}, {"the the", 0, {}},
        {"the zork zork", ds, {"zork:1", "zork:" + std::to_string(1 | ORTH_CHK_DOUBLED_WORD)}},
        {"the cat", ORTH_REPORT_UNCAPPED_WORDS_OPT, {"the:8>The"}},  // "cat" needs no capital
    };
    for (const auto &c : cases) {
        int16_t b = open(c.text);
        EXPECT_EQ(stops(b, c.mask), c.stops) << c.text;
        ORTH_CloseBlock(session, b);
    }
}

TEST_F(CheckBlock, ReportedWordRepeatsUntilSteppedPastOrReplacedDoubledOnlyOnce) {
    knownWords({"fine", "the"});
    int16_t b = open("fine zork zork teh", 0);
    const uint32_t mask = ORTH_REPORT_DOUBLED_WORDS_OPT;
    for (int16_t expect : {1, 1, -1, 1 | ORTH_CHK_DOUBLED_WORD, 1, -1, 1}) {
        if (expect < 0) ASSERT_EQ(ORTH_NextBlockWord(session, b), 0);
        else EXPECT_EQ(check(b, mask), expect);
    }
    EXPECT_STREQ(word, "teh");
    EXPECT_EQ(ORTH_ReplaceBlockWord(session, b, "thee"), 0);
    EXPECT_EQ(check(b, mask), ORTH_CHK_MISSPELLED);  // the replacement itself is checked
    EXPECT_STREQ(word, "thee");
    EXPECT_EQ(ORTH_DelBlockWord(session, b), 0);
    EXPECT_EQ(check(b, mask), ORTH_CHK_END_OF_BLOCK);
    EXPECT_STREQ(buffer.data(), "fine zork zork ");  // borrowed: edited in place, the zero moved along
    uint32_t info[4] = {};
    EXPECT_EQ(ORTH_GetBlockInfo(session, b, &info[0], &info[1], &info[2], &info[3]), 0);
    EXPECT_EQ(std::vector<uint32_t>(info, info + 4), (std::vector<uint32_t>{15, 34, 15, 3}));
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

using CheckPieces = BlockApi;

// Reports as "position:word:result", over the whole text or in pieces cut at
// the given positions, each piece taking over the word memory of the last.
Lines reportsInPieces(int16_t session, std::string text, const std::vector<uint32_t> &cuts, uint32_t mask) {
    Lines out;
    BlockCarry carry{};
    for (size_t k = 0; k <= cuts.size(); ++k) {
        const uint32_t from = k == 0 ? 0 : cuts[k - 1], to = k == cuts.size() ? uint32_t(text.size()) : cuts[k];
        int16_t b = ORTH_OpenBlock(session, &text[from], to - from, to - from, 0);
        if (k > 0) {
            EXPECT_EQ(takeBlockCarry(session, b, &carry), 0);
        }
        char w[64];
        for (int16_t r; (r = ORTH_CheckBlock(session, b, mask, w, sizeof w, nullptr, 0)) != ORTH_CHK_END_OF_BLOCK;) {
            uint32_t cursor = 0;
            ORTH_GetBlockInfo(session, b, nullptr, nullptr, &cursor, nullptr);
            out.push_back(std::to_string(from + cursor) + ":" + w + ":" + std::to_string(r));
            if (ORTH_NextBlockWord(session, b) != 0) break;
        }
        EXPECT_EQ(saveBlockCarry(session, b, &carry), 0);
        ORTH_CloseBlock(session, b);
    }
    return out;
}

TEST_F(CheckPieces, PiecesCutAtWordStartsOrBetweenWordsReportAsTheWholeText) {
    knownWords({"the", "cat", "sat", "on", "mat", "e.g", "well", "known", "dog's"});
    const std::string text = "the cat the cat, cat -- cat... "
                             "e.g. well-known well-known; dog's dog's "
                             "zork zork\tthe\n\n the " + std::string(70, 'x') + " " +
                             std::string(63, 'y') + "yy cat-. mat";
    // The walk's word starts, and positions inside runs that start no word.
    std::vector<uint32_t> cuts;
    int16_t b = open(text, 0);
    for (;;) {
        uint32_t cursor = 0;
        ORTH_GetBlockInfo(session, b, nullptr, nullptr, &cursor, nullptr);
        if (cursor > 0 && cursor < text.size()) cuts.push_back(cursor);
        if (ORTH_NextBlockWord(session, b) != 0) break;
    }
    ORTH_CloseBlock(session, b);
    for (uint32_t i = 1; i < text.size(); ++i) {
        auto c = static_cast<unsigned char>(text[i]), before = static_cast<unsigned char>(text[i - 1]);
        if (!std::isalnum(c) && !std::isalnum(before) && c != '\'' && before != '\'') cuts.push_back(i);
    }
    std::sort(cuts.begin(), cuts.end());
    cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());
    ASSERT_GT(cuts.size(), 30u);
    for (uint32_t mask : {ORTH_REPORT_DOUBLED_WORDS_OPT | ORTH_REPORT_UNCAPPED_WORDS_OPT, 0u}) {
        const Lines whole = reportsInPieces(session, text, {}, mask);
        ASSERT_GE(whole.size(), 7u) << ::testing::PrintToString(whole);
        for (uint32_t cut : cuts) EXPECT_EQ(reportsInPieces(session, text, {cut}, mask), whole) << "cut at " << cut;
        for (size_t k = 0; k + 7 < cuts.size(); k += 3) {
            EXPECT_EQ(reportsInPieces(session, text, {cuts[k], cuts[k + 3], cuts[k + 7]}, mask), whole) << cuts[k];
        }
    }
    // A piece without a word passes the memory on, and a first piece
    // without one leaves the next piece's first word the text's first.
    EXPECT_EQ(reportsInPieces(session, "  , the  the", {1, 4}, ORTH_REPORT_DOUBLED_WORDS_OPT | ORTH_REPORT_UNCAPPED_WORDS_OPT),
              (Lines{"4:the:8", "9:the:128"}));
}

}  // namespace
