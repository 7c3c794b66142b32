// Word checker.
// Groups: WordShape (hasMixedCase, nextWordPart); CheckWord (one table over a
// fixed set of lexicons: ignore rules, case retries, exclusion, change
// lexicons, splits, report flags and the replacement they shape, over-long
// words); CheckWordLexicons (slot order, options that change the table,
// failing lexicons, the replacement size, bad input).
#include "check/check.h"
#include "engine/session.h"
#include "lex_fixture.h"

namespace {

TEST(WordShape, MixedCaseAndParts) {
    Session s{};
    for (const char *mixed : {"BiCycle", "CAnada", "eMail", "o'Clock", "x-Ray", "12aB"}) {
        EXPECT_TRUE(hasMixedCase(&s, mixed)) << mixed;
    }
    for (const char *plain : {"Canada", "", "A", "NASA", "I'm", "Q'"}) EXPECT_FALSE(hasMixedCase(&s, plain)) << plain;

    const uint32_t hy = ORTH_SPLIT_HYPHENATED_WORDS_OPT, ap = ORTH_SPLIT_CONTRACTED_WORDS_OPT;
    const struct { const char *word; uint32_t mask; Words parts; } cases[] = {
        {"well-known", hy, {"well", "known"}},   {"well-known", ap, {"well-known"}},
        {"don\x92t", ap, {"don", "t"}},          {"rock'n-roll", hy | ap, {"rock", "n", "roll"}},
        {"dog-", hy, {"dog"}},                   {"well--known", hy, {"well", "", "known"}},
    };
    for (const auto &c : cases) {
        Words parts;
        char part[64];
        for (const char *p = c.word; *p != '\0';) {
            p = nextWordPart(p, c.mask, part);
            parts.push_back(part);
        }
        EXPECT_EQ(parts, c.parts) << c.word;
    }
}

class CheckWord : public LexFixture {
protected:
    int16_t check(const char *word, uint32_t mask = 0, uint16_t size = 64) {
        std::memset(rep, '#', sizeof rep);
        return ORTH_CheckWord(sid, mask, word, rep, size);
    }
    char rep[80];
};

TEST_F(CheckWord, RulesLookupsAndTheReplacement) {
    addLex(ORTH_EXCLUDE_LEX_TYPE, {"alot", "well-known"});
    addLex(ORTH_IGNORE_LEX_TYPE, {"a", "alot", "hello", "Paris", "well", "known", "dog", "abc", "ab", "cd",
                                  "new", "york", "the", "ab1c", "don", "t"});
    addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});
    addLex(ORTH_CONDITIONAL_CHANGE_LEX_TYPE, {"irregardless:regardless"});
    const int16_t M = ORTH_CHK_MISSPELLED;
    const std::string longWord(70, 'a'), kept(63, 'a'), digitLate = std::string(66, 'a') + "7";
    const struct { uint32_t mask; const char *word; int16_t result; const char *rep; } cases[] = {
        {0, "", 0, nullptr}, {0, "'s", 0, nullptr},
        {ORTH_IGNORE_CAPPED_WORDS_OPT, "Canada", 0, "Canada"}, {ORTH_IGNORE_CAPPED_WORDS_OPT, "canada", M, nullptr},
        {ORTH_IGNORE_ALL_CAPS_WORDS_OPT, "DOG'S", 0, nullptr}, {ORTH_IGNORE_ALL_CAPS_WORDS_OPT, "U.S.A.", M, nullptr},
        {ORTH_IGNORE_MIXED_DIGITS_OPT, "abc123", 0, nullptr}, {ORTH_IGNORE_MIXED_DIGITS_OPT, "well-knwn", M, nullptr},
        {ORTH_IGNORE_MIXED_CASE_OPT, "eMail", 0, nullptr}, {ORTH_IGNORE_MIXED_CASE_OPT, "Email", M, nullptr},
        {0, "Hello", 0, "Hello"}, {0, "HELLO", 0, nullptr}, {0, "hELLO", M, nullptr},
        {0, "PARIS", 0, nullptr}, {0, "paris", M, nullptr},
        {0, "alot", M, "alot"}, {0, "well-known", 0, nullptr},   // excluded, yet accepted by its parts
        {0, "teh", ORTH_CHK_AUTO_CHANGE, "the"}, {0, "teh's", ORTH_CHK_AUTO_CHANGE, "the's"},
        {0, "Teh", ORTH_CHK_AUTO_CHANGE, "The"}, {0, "TEH", ORTH_CHK_AUTO_CHANGE, "THE"},
        {0, "irregardless", ORTH_CHK_CONDITIONAL_CHANGE, "regardless"},
        {0, "newyork", M, nullptr}, {ORTH_SPLIT_WORDS_OPT, "NewYork", 0, nullptr},
        {ORTH_SPLIT_WORDS_OPT, "nEwyork", M, nullptr}, {ORTH_SPLIT_WORDS_OPT, "abcd", M, nullptr},
        {ORTH_SPLIT_WORDS_OPT, "cdabc", 0, nullptr},
        {0, "dog-", 0, nullptr}, {0, "well--known", M, nullptr}, {0, "-dog", M, nullptr},
        {0, "don't", M, nullptr}, {ORTH_SPLIT_CONTRACTED_WORDS_OPT, "don\x92t", 0, nullptr},
        {ORTH_REPORT_UNCAPPED_WORDS_OPT, "the", ORTH_CHK_UNCAPITALIZED, "The"},
        {ORTH_REPORT_UNCAPPED_WORDS_OPT, "teh", ORTH_CHK_AUTO_CHANGE | ORTH_CHK_UNCAPITALIZED, "The"},
        {ORTH_REPORT_MIXED_CASE_OPT, "HeLLo", M | ORTH_CHK_MIXED_CASE, "Hello"},
        {ORTH_IGNORE_CAPPED_WORDS_OPT | ORTH_REPORT_MIXED_CASE_OPT, "BiCycle", 0, "BiCycle"},
        {ORTH_REPORT_MIXED_DIGITS_OPT, "ab2c", M | ORTH_CHK_NON_LETTERS, "ab2c"},
        {ORTH_REPORT_MIXED_DIGITS_OPT, "ab1c", 0, nullptr},
        {ORTH_REPORT_MIXED_DIGITS_OPT, "dog-x", M | ORTH_CHK_NON_LETTERS, nullptr},
        {ORTH_SPLIT_WORDS_OPT, longWord.c_str(), M, kept.c_str()},
        {ORTH_IGNORE_MIXED_DIGITS_OPT, digitLate.c_str(), 0, nullptr},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(check(c.word, c.mask), c.result) << c.word << " mask " << c.mask;
        if (c.rep != nullptr) {
            EXPECT_STREQ(rep, c.rep) << c.word;
        }
    }
    setOption(ORTH_MATCH_CASE_OPT, 0);
    EXPECT_EQ(check("Teh"), ORTH_CHK_AUTO_CHANGE);
    EXPECT_STREQ(rep, "the");
    setOption(ORTH_SPLIT_HYPHENATED_WORDS_OPT, 0);
    EXPECT_EQ(check("well-known"), M);
    setOption(ORTH_CASE_SENSITIVE_OPT, 0);
    EXPECT_EQ(check("hELLO") | check("paris"), 0);
    setOption(ORTH_REPORT_SPELLING_OPT, 0);
    EXPECT_EQ(check("xyzzy"), 0);
}

TEST_F(CheckWord, TheFirstLexiconHoldingTheWordDecides) {
    addLex(ORTH_IGNORE_LEX_TYPE, {"alot"});
    addLex(ORTH_EXCLUDE_LEX_TYPE, {"alot"});
    EXPECT_EQ(check("alot"), 0);
}

TEST_F(CheckWord, AFailingLexiconNeitherAcceptsNorSetsChangeFlags) {
    LogCapture log;
    int16_t broken = addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});
    sessionTable[sid]->lexicons[broken]->type = 7;   // -6 has the auto-change bit
    EXPECT_EQ(check("teh"), ORTH_CHK_MISSPELLED);
    EXPECT_STREQ(rep, "teh");
    EXPECT_TRUE(log.contains("check1Lex: bad lex type 7"));
    Words lines = log.lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "checkWord: lex 0 failed (-6); word taken as not found there"), 1);
    addLex(ORTH_IGNORE_LEX_TYPE, {"teh"});   // a later lexicon still decides
    EXPECT_EQ(check("teh"), 0);
}

TEST_F(CheckWord, TheReplacementBufferAndBadInput) {
    LogCapture log;
    addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:thereafter"});
    EXPECT_EQ(check("teh", 0, 0), ORTH_CHK_AUTO_CHANGE);
    EXPECT_EQ(std::string(rep, 16), std::string(16, '#'));
    EXPECT_EQ(check("teh", 0, 5), ORTH_CHK_AUTO_CHANGE);
    EXPECT_EQ(std::string(rep, 16), std::string("ther\0###########", 16));
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "teh", nullptr, 64), ORTH_CHK_AUTO_CHANGE);
    EXPECT_EQ(ORTH_CheckWord(5, 0, "word", rep, 64), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_TRUE(log.contains("ORTH_CheckWord: bad session id 5"));
    EXPECT_EQ(ORTH_CheckWord(sid, 0, nullptr, rep, 64), ORTH_INVALID_WORD_ERR);
    EXPECT_TRUE(log.contains("ORTH_CheckWord: null word"));
}

}  // namespace
