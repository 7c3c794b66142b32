// Word checker.
// Groups: WordShape (hasMixedCase, nextWordPart); CheckWord (one table over a
// fixed set of lexicons: ignore rules, case retries, exclusion, change
// lexicons, splits, report flags and the replacement they shape, over-long
// words, the replacement size and bad input, options that change the table;
// failing lexicons and slot order).
#include "check/check.h"
#include "engine/session.h"
#include "lex_fixture.h"

TEST(WordShape, MixedCaseAndParts) {
    Session s{};
    for (const char *w : {"BiCycle", "CAnada", "eMail", "o'Clock", "x-Ray", "12aB"}) EXPECT_TRUE(hasMixedCase(&s, w)) << w;
    for (const char *w : {"Canada", "", "A", "NASA", "I'm", "Q'"}) EXPECT_FALSE(hasMixedCase(&s, w)) << w;
    const uint32_t hy = ORTH_SPLIT_HYPHENATED_WORDS_OPT, ap = ORTH_SPLIT_CONTRACTED_WORDS_OPT;
    const struct { const char *word; uint32_t mask; Words parts; } cases[] = {
        {"well-known", hy, {"well", "known"}}, {"well-known", ap, {"well-known"}}, {"don\x92t", ap, {"don", "t"}},
        {"rock'n-roll", hy | ap, {"rock", "n", "roll"}}, {"dog-", hy, {"dog"}}, {"a--b", hy, {"a", "", "b"}},
    };
    for (const auto &c : cases) {
        Words parts;
        char part[64];
        for (const char *p = c.word; *p != '\0'; parts.push_back(part)) p = nextWordPart(p, c.mask, part);
        EXPECT_EQ(parts, c.parts) << c.word;
    }
}

class CheckWord : public LexFixture {
protected:
    int16_t check(const char *word, uint32_t mask = 0, uint16_t size = 64) {
        std::memset(rep, '#', sizeof rep);
        return ORTH_CheckWord(sid, mask, word, rep, size);
    }
};

TEST_F(CheckWord, RulesLookupsTheReplacementAndBadInput) {
    LogCapture log;
    addLex(ORTH_EXCLUDE_LEX_TYPE, {"alot", "well-known"});
    addLex(ORTH_IGNORE_LEX_TYPE, {"a", "alot", "hello", "Paris", "well", "known", "dog", "abc", "ab", "cd",
                                  "new", "york", "the", "ab1c", "don", "t"});
    addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});
    addLex(ORTH_CONDITIONAL_CHANGE_LEX_TYPE, {"irregardless:regardless"});
    const int16_t M = ORTH_CHK_MISSPELLED, AC = ORTH_CHK_AUTO_CHANGE, UC = ORTH_CHK_UNCAPITALIZED, NL = ORTH_CHK_NON_LETTERS;
    const uint32_t capped = ORTH_IGNORE_CAPPED_WORDS_OPT, caps = ORTH_IGNORE_ALL_CAPS_WORDS_OPT, split = ORTH_SPLIT_WORDS_OPT,
        mixed = ORTH_IGNORE_MIXED_CASE_OPT, digits = ORTH_IGNORE_MIXED_DIGITS_OPT, rDigits = ORTH_REPORT_MIXED_DIGITS_OPT;
    const std::string longWord(70, 'a'), kept(63, 'a'), digitLate = std::string(66, 'a') + "7";
    const struct { uint32_t mask; const char *word; int16_t result; const char *rep; } cases[] = {
        {0, "", 0, nullptr}, {0, "'s", 0, nullptr}, {capped, "Canada", 0, "Canada"}, {capped, "canada", M, nullptr},
        {caps, "DOG'S", 0, nullptr}, {caps, "U.S.A.", M, nullptr}, {digits, "abc123", 0, nullptr},
        {digits, "well-knwn", M, nullptr}, {mixed, "eMail", 0, nullptr}, {mixed, "Email", M, nullptr},
        {0, "Hello", 0, "Hello"}, {0, "HELLO", 0, nullptr}, {0, "hELLO", M, nullptr}, {0, "PARIS", 0, nullptr},
        {0, "paris", M, nullptr}, {0, "alot", M, "alot"}, {0, "well-known", 0, nullptr},   // excluded; its parts pass
        {0, "teh", AC, "the"}, {0, "teh's", AC, "the's"}, {0, "Teh", AC, "The"}, {0, "TEH", AC, "THE"},
        {0, "irregardless", ORTH_CHK_CONDITIONAL_CHANGE, "regardless"}, {0, "newyork", M, nullptr},
        {split, "NewYork", 0, nullptr}, {split, "nEwyork", M, nullptr}, {split, "abcd", M, nullptr},
        {split, "cdabc", 0, nullptr}, {0, "dog-", 0, nullptr}, {0, "well--known", M, nullptr}, {0, "-dog", M, nullptr},
        {0, "don't", M, nullptr}, {ORTH_SPLIT_CONTRACTED_WORDS_OPT, "don\x92t", 0, nullptr},
        {ORTH_REPORT_UNCAPPED_WORDS_OPT, "the", UC, "The"}, {ORTH_REPORT_UNCAPPED_WORDS_OPT, "teh", AC | UC, "The"},
        {ORTH_REPORT_MIXED_CASE_OPT, "HeLLo", M | ORTH_CHK_MIXED_CASE, "Hello"},
        {capped | ORTH_REPORT_MIXED_CASE_OPT, "BiCycle", 0, "BiCycle"},
        {rDigits, "ab2c", M | NL, "ab2c"}, {rDigits, "ab1c", 0, nullptr}, {rDigits, "dog-x", M | NL, nullptr},
        {split, longWord.c_str(), M, kept.c_str()}, {digits, digitLate.c_str(), 0, nullptr},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(check(c.word, c.mask), c.result) << c.word << " mask " << c.mask;
        if (c.rep != nullptr) { EXPECT_STREQ(rep, c.rep) << c.word; }
    }
    // A buffer of 0 bytes is left alone; a short one gets a cut, terminated copy.
    for (const auto &b : {std::make_pair(0, std::string(8, '#')), {3, std::string("th\0#####", 8)}}) {
        EXPECT_EQ(check("teh", 0, b.first), AC);
        EXPECT_EQ(std::string(rep, 8), b.second) << b.first;
    }
    EXPECT_EQ((Ints{ORTH_CheckWord(sid, 0, "teh", nullptr, 64), ORTH_CheckWord(5, 0, "word", rep, 64),
                                ORTH_CheckWord(sid, 0, nullptr, rep, 64)}),
              (Ints{AC, ORTH_BAD_SESSION_ID_ERR, ORTH_INVALID_WORD_ERR}));
    EXPECT_TRUE(log.contains("ORTH_CheckWord: bad session id 5") && log.contains("ORTH_CheckWord: null word"));
    // Options that change the table, each turned off for good.
    const struct { uint32_t option; const char *word; int16_t result; const char *rep; } offs[] = {
        {ORTH_MATCH_CASE_OPT, "Teh", AC, "the"}, {ORTH_SPLIT_HYPHENATED_WORDS_OPT, "well-known", M, nullptr},
        {ORTH_CASE_SENSITIVE_OPT, "hELLO", 0, nullptr}, {0, "paris", 0, nullptr},
        {ORTH_REPORT_SPELLING_OPT, "xyzzy", 0, nullptr}};
    for (const auto &o : offs) {
        setOption(o.option, 0);
        EXPECT_EQ(check(o.word), o.result) << o.word;
        if (o.rep != nullptr) { EXPECT_STREQ(rep, o.rep); }
    }
}

TEST_F(CheckWord, AFailingLexiconNeitherAcceptsNorSetsChangeFlagsAndTheFirstHolderDecides) {
    LogCapture log;
    int16_t broken = addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});
    sessionTable[sid]->lexicons[broken]->type = 7;   // -6 has the auto-change bit
    EXPECT_EQ(check("teh"), ORTH_CHK_MISSPELLED);
    EXPECT_STREQ(rep, "teh");
    EXPECT_TRUE(log.contains("check1Lex: bad lex type 7"));
    Words lines = log.lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "checkWord: lex 0 failed (-6); word taken as not found there"), 1);
    addLex(ORTH_IGNORE_LEX_TYPE, {"teh", "alot"});   // a later lexicon still decides
    addLex(ORTH_EXCLUDE_LEX_TYPE, {"alot"});
    EXPECT_EQ(check("teh") | check("alot"), 0);
}
