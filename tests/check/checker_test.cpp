// Word checker.
// Groups: WordShape (hasMixedCase, nextWordPart), CheckRules (ORTH_CheckWord
// over memory-only text lexicons: ignore rules, case-sensitive retries,
// precedence and exclusion, change lexicons, splits, report flags and the
// replacement they shape, over-long words, failing lexicons, bad input).
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "check/check.h"
#include "engine/session.h"
#include "orth.h"
#include "support/test_util.h"

namespace {

TEST(WordShape, MixedCaseIgnoresTheFirstCharacterAndApostrophes) {
    Session s{};
    const struct { const char *word; bool mixed; } cases[] = {
        {"Canada", false}, {"BiCycle", true}, {"CAnada", true}, {"eMail", true},
        {"o'Clock", true}, {"", false},       {"A", false},     {"NASA", false},
        {"I'm", false},    {"x-Ray", true},   {"12aB", true},   {"Q'", false},
    };
    for (const auto &c : cases) EXPECT_EQ(hasMixedCase(&s, c.word), c.mixed) << c.word;
}

TEST(WordShape, PartsEndAtTheSeparatorsTheOptionsName) {
    const uint32_t hy = ORTH_SPLIT_HYPHENATED_WORDS_OPT, ap = ORTH_SPLIT_CONTRACTED_WORDS_OPT;
    const struct { const char *word; uint32_t mask; std::vector<std::string> parts; } cases[] = {
        {"well-known", hy, {"well", "known"}},
        {"well-known", ap, {"well-known"}},
        {"don't", ap, {"don", "t"}},
        {"don\x92t", ap, {"don", "t"}},
        {"rock'n-roll", hy | ap, {"rock", "n", "roll"}},
        {"dog-", hy, {"dog"}},
        {"well--known", hy, {"well", "", "known"}},
        {"plain", 0, {"plain"}},
    };
    for (const auto &c : cases) {
        std::vector<std::string> parts;
        char part[64];
        for (const char *p = c.word; *p != '\0';) {
            p = nextWordPart(p, c.mask, part);
            parts.push_back(part);
        }
        EXPECT_EQ(parts, c.parts) << c.word;
    }
}

class CheckRules : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        sid = ORTH_OpenSession();
        ASSERT_GE(sid, 0);
    }
    void TearDown() override { closeAllSessions(); }

    // Entries are "word" or "word:replacement".
    int16_t addLex(int16_t type, const std::vector<std::string> &entries) {
        int16_t id = ORTH_CreateLex(sid, nullptr, type, 1033);
        EXPECT_GE(id, 0);
        for (const std::string &e : entries) {
            size_t colon = e.find(':');
            std::string word = e.substr(0, colon);
            std::string rep = colon == std::string::npos ? "" : e.substr(colon + 1);
            EXPECT_EQ(ORTH_AddToLex(sid, id, word.c_str(), rep.empty() ? nullptr : rep.c_str()), 0) << e;
        }
        return id;
    }

    int16_t check(const char *word, uint32_t mask = 0) {
        std::memset(replacement, '#', sizeof replacement);
        return ORTH_CheckWord(sid, mask, word, replacement, 64);
    }

    void setOption(uint32_t option, uint32_t value) { ORTH_SetOption(sid, option, value); }

    int16_t sid = -1;
    char replacement[80];
};

struct RuleCase {
    uint32_t mask;
    const char *word;
    int16_t result;
};

TEST_F(CheckRules, IgnoreRulesAcceptWithoutLookupEachUnderItsOwnOption) {
    addLex(ORTH_IGNORE_LEX_TYPE, {"the"});
    const RuleCase cases[] = {
        {0, "", 0},
        {0, "'s", 0},
        {0, "Canada", ORTH_CHK_MISSPELLED},
        {ORTH_IGNORE_CAPPED_WORDS_OPT, "Canada", 0},
        {ORTH_IGNORE_CAPPED_WORDS_OPT, "canada", ORTH_CHK_MISSPELLED},
        {ORTH_IGNORE_ALL_CAPS_WORDS_OPT, "ASAP", 0},
        {ORTH_IGNORE_ALL_CAPS_WORDS_OPT, "DOG'S", 0},
        {ORTH_IGNORE_ALL_CAPS_WORDS_OPT, "U.S.A.", ORTH_CHK_MISSPELLED},
        {ORTH_IGNORE_MIXED_DIGITS_OPT, "abc123", 0},
        {ORTH_IGNORE_MIXED_DIGITS_OPT, "well-known", ORTH_CHK_MISSPELLED},
        {ORTH_IGNORE_MIXED_DIGITS_OPT, "don't", ORTH_CHK_MISSPELLED},
        {ORTH_IGNORE_MIXED_CASE_OPT, "eMail", 0},
        {ORTH_IGNORE_MIXED_CASE_OPT, "Email", ORTH_CHK_MISSPELLED},
        {ORTH_IGNORE_CAPPED_WORDS_OPT | ORTH_REPORT_MIXED_CASE_OPT, "BiCycle", 0},
    };
    for (const RuleCase &c : cases) EXPECT_EQ(check(c.word, c.mask), c.result) << c.word << " " << c.mask;
    setOption(ORTH_REPORT_SPELLING_OPT, 0);
    EXPECT_EQ(check("xyzzy"), 0);
}

TEST_F(CheckRules, CaseSensitiveLookupsAcceptCapitalisedAndAllCapitalForms) {
    addLex(ORTH_IGNORE_LEX_TYPE, {"hello", "Paris"});
    const RuleCase sensitive[] = {{0, "hello", 0}, {0, "Hello", 0}, {0, "HELLO", 0},
                                  {0, "hELLO", ORTH_CHK_MISSPELLED}, {0, "PARIS", 0},
                                  {0, "paris", ORTH_CHK_MISSPELLED}};
    for (const RuleCase &c : sensitive) EXPECT_EQ(check(c.word), c.result) << c.word;
    setOption(ORTH_CASE_SENSITIVE_OPT, 0);
    for (const char *word : {"hello", "Hello", "HELLO", "hELLO", "paris"}) EXPECT_EQ(check(word), 0) << word;
}

TEST_F(CheckRules, TheFirstLexiconHoldingTheWordDecides) {
    int16_t excl = addLex(ORTH_EXCLUDE_LEX_TYPE, {"alot"});
    int16_t list = addLex(ORTH_IGNORE_LEX_TYPE, {"alot"});
    EXPECT_EQ(check("alot"), ORTH_CHK_MISSPELLED);
    EXPECT_STREQ(replacement, "alot");
    ORTH_CloseLex(sid, excl);
    ORTH_CloseLex(sid, list);
    EXPECT_EQ(addLex(ORTH_IGNORE_LEX_TYPE, {"alot"}), 0);
    EXPECT_EQ(addLex(ORTH_EXCLUDE_LEX_TYPE, {"alot"}), 1);
    EXPECT_EQ(check("alot"), 0);
}

TEST_F(CheckRules, AnExcludedWordMayStillBeAcceptedByItsParts) {
    addLex(ORTH_EXCLUDE_LEX_TYPE, {"well-known"});
    addLex(ORTH_IGNORE_LEX_TYPE, {"well", "known"});
    EXPECT_EQ(check("well-known"), 0);
}

TEST_F(CheckRules, ChangeLexiconsGiveTheirFlagAndAReplacementInTheWordsCase) {
    addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});
    addLex(ORTH_CONDITIONAL_CHANGE_LEX_TYPE, {"irregardless:regardless"});
    const struct { const char *word; int16_t result; const char *rep; } cases[] = {
        {"teh", ORTH_CHK_AUTO_CHANGE, "the"},
        {"teh's", ORTH_CHK_AUTO_CHANGE, "the's"},
        {"Teh", ORTH_CHK_AUTO_CHANGE, "The"},
        {"TEH", ORTH_CHK_AUTO_CHANGE, "THE"},
        {"irregardless", ORTH_CHK_CONDITIONAL_CHANGE, "regardless"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(check(c.word), c.result) << c.word;
        EXPECT_STREQ(replacement, c.rep) << c.word;
    }
    setOption(ORTH_MATCH_CASE_OPT, 0);
    EXPECT_EQ(check("Teh"), ORTH_CHK_AUTO_CHANGE);
    EXPECT_STREQ(replacement, "the");
}

TEST_F(CheckRules, RunOfWordsSplitIsGreedyWithoutBacktracking) {
    addLex(ORTH_IGNORE_LEX_TYPE, {"abc", "ab", "cd", "new", "york"});
    const RuleCase cases[] = {
        {0, "newyork", ORTH_CHK_MISSPELLED},
        {ORTH_SPLIT_WORDS_OPT, "newyork", 0},
        {ORTH_SPLIT_WORDS_OPT, "NewYork", 0},       // later pieces ignore case
        {ORTH_SPLIT_WORDS_OPT, "nEwyork", ORTH_CHK_MISSPELLED},  // the first does not
        {ORTH_SPLIT_WORDS_OPT, "abcd", ORTH_CHK_MISSPELLED},     // abc taken, d fails
        {ORTH_SPLIT_WORDS_OPT, "abcdab", ORTH_CHK_MISSPELLED},
        {ORTH_SPLIT_WORDS_OPT, "abcab", 0},
        {ORTH_SPLIT_WORDS_OPT, "cdabc", 0},
    };
    for (const RuleCase &c : cases) EXPECT_EQ(check(c.word, c.mask), c.result) << c.word;
}

TEST_F(CheckRules, PartsSplitNeedsEveryPartFound) {
    addLex(ORTH_IGNORE_LEX_TYPE, {"well", "known", "dog", "don", "t"});
    const RuleCase cases[] = {
        {0, "well-known", 0},
        {0, "dog-", 0},
        {0, "well--known", ORTH_CHK_MISSPELLED},
        {0, "-dog", ORTH_CHK_MISSPELLED},
        {0, "well-knwn", ORTH_CHK_MISSPELLED},
        {0, "don't", ORTH_CHK_MISSPELLED},
        {ORTH_SPLIT_CONTRACTED_WORDS_OPT, "don't", 0},
        {ORTH_SPLIT_CONTRACTED_WORDS_OPT, "don\x92t", 0},
    };
    for (const RuleCase &c : cases) EXPECT_EQ(check(c.word, c.mask), c.result) << c.word;
    setOption(ORTH_SPLIT_HYPHENATED_WORDS_OPT, 0);
    EXPECT_EQ(check("well-known"), ORTH_CHK_MISSPELLED);
}

TEST_F(CheckRules, ReportFlagsAndTheReplacementTheyShape) {
    addLex(ORTH_IGNORE_LEX_TYPE, {"the", "ab1c", "hello"});
    addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});
    const struct { uint32_t mask; const char *word; int16_t result; const char *rep; } cases[] = {
        {ORTH_REPORT_UNCAPPED_WORDS_OPT, "the", ORTH_CHK_UNCAPITALIZED, "The"},
        {ORTH_REPORT_UNCAPPED_WORDS_OPT, "teh", ORTH_CHK_AUTO_CHANGE | ORTH_CHK_UNCAPITALIZED, "The"},
        {ORTH_REPORT_UNCAPPED_WORDS_OPT, "The", 0, "The"},
        {ORTH_REPORT_MIXED_CASE_OPT, "HeLLo", ORTH_CHK_MIXED_CASE, "Hello"},
        {ORTH_REPORT_MIXED_CASE_OPT, "heLLo", ORTH_CHK_MIXED_CASE, "hello"},
        {ORTH_REPORT_MIXED_DIGITS_OPT, "ab2c", ORTH_CHK_MISSPELLED | ORTH_CHK_NON_LETTERS, "ab2c"},
        {ORTH_REPORT_MIXED_DIGITS_OPT, "ab1c", 0, "ab1c"},
        {ORTH_REPORT_MIXED_DIGITS_OPT, "the-x", ORTH_CHK_MISSPELLED | ORTH_CHK_NON_LETTERS, "the-x"},
        {ORTH_REPORT_MIXED_DIGITS_OPT, "thex's", ORTH_CHK_MISSPELLED, "thex's"},
    };
    setOption(ORTH_CASE_SENSITIVE_OPT, 0);
    for (const auto &c : cases) {
        EXPECT_EQ(check(c.word, c.mask), c.result) << c.word;
        EXPECT_STREQ(replacement, c.rep) << c.word;
    }
}

TEST_F(CheckRules, TheReplacementBufferIsNeverWrittenPastItsSize) {
    addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:thereafter"});
    char buf[16];
    std::memset(buf, '#', sizeof buf);
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "teh", buf, 0), ORTH_CHK_AUTO_CHANGE);
    EXPECT_EQ(std::string(buf, 16), std::string(16, '#'));
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "teh", buf, 5), ORTH_CHK_AUTO_CHANGE);
    EXPECT_EQ(std::string(buf, 16), std::string("ther\0###########", 16));
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "teh", nullptr, 64), ORTH_CHK_AUTO_CHANGE);
}

TEST_F(CheckRules, WordsLongerThanTheLexiconsHoldAreMisspelledUnlessIgnored) {
    addLex(ORTH_IGNORE_LEX_TYPE, {"a"});
    std::string longWord(70, 'a');
    EXPECT_EQ(check(longWord.c_str(), ORTH_SPLIT_WORDS_OPT), ORTH_CHK_MISSPELLED);
    EXPECT_EQ(std::strlen(replacement), 63u);
    std::string digitLate = std::string(66, 'a') + "7";
    EXPECT_EQ(check(digitLate.c_str(), ORTH_IGNORE_MIXED_DIGITS_OPT), 0);
    EXPECT_EQ(check(digitLate.c_str(), ORTH_REPORT_MIXED_DIGITS_OPT),
              ORTH_CHK_MISSPELLED | ORTH_CHK_NON_LETTERS);
}

TEST_F(CheckRules, AFailingLexiconNeverAcceptsAndNeverSetsChangeFlags) {
    LogCapture log;
    int16_t broken = addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});
    sessionTable[sid]->lexicons[broken]->type = 7;
    EXPECT_EQ(check("teh"), ORTH_CHK_MISSPELLED);
    EXPECT_STREQ(replacement, "teh");
    EXPECT_TRUE(log.contains("check1Lex: bad lex type 7"));
    int failures = 0;
    for (const std::string &line : log.lines()) {
        failures += line == "checkWord: lex 0 failed (-6); word taken as not found there";
    }
    EXPECT_EQ(failures, 1);
    addLex(ORTH_IGNORE_LEX_TYPE, {"teh"});   // a later lexicon still decides
    EXPECT_EQ(check("teh"), 0);
}

TEST_F(CheckRules, BadSessionAndNullWordAreRefusedAndLogged) {
    LogCapture log;
    EXPECT_EQ(ORTH_CheckWord(5, 0, "word", replacement, 64), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_TRUE(log.contains("ORTH_CheckWord: bad session id 5"));
    EXPECT_EQ(ORTH_CheckWord(-1, 0, "word", replacement, 64), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_EQ(ORTH_CheckWord(sid, 0, nullptr, replacement, 64), ORTH_INVALID_WORD_ERR);
    EXPECT_TRUE(log.contains("ORTH_CheckWord: null word"));
}

}  // namespace
