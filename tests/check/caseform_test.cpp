// The session's spelling of a word in another case (ORTH_FindCaseForm).
// Groups: CaseForm (one table over lexicons of every type: forms past the
// case-insensitive walk's early stop, slot order and lexicon types,
// possessives, short buffers and bad input; more forms than one round
// holds; a lexicon that fails is passed over).
#include <algorithm>
#include <string>

#include "lex_fixture.h"

namespace {

class CaseForm : public LexFixture {
protected:
    // "rc form" of one call with a 64-byte buffer (or a smaller one).
    std::string find(const char *word, uint16_t size = 64) {
        char form[64];
        std::memset(form, '#', sizeof form);
        int16_t got = ORTH_FindCaseForm(sid, word, form, size);
        return std::to_string(got) + (got == 0 && size > 0 ? " " + std::string(form) : "");
    }
};

TEST_F(CaseForm, FormsOfEveryLexiconInSlotOrderAndBadInput) {
    addLex(ORTH_EXCLUDE_LEX_TYPE, {"iPod"});
    addLex(ORTH_IGNORE_LEX_TYPE, {"FooBar", "fOObar"});
    addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});
    addCompressed({"DeKalb", "December", "MySpace", "abZoo", "abaa", "iPod", "ok"});
    const struct { const char *word; std::string result; } cases[] = {
        {"DECEMBER", "0 December"}, {"ABAA", "0 abaa"}, {"MYSPACE", "0 MySpace"}, {"MYSPACE'S", "0 MySpace'S"},
        {"myspace", "0 MySpace"}, {"MYSPACES", "-3"}, {"OK", "0 ok"},
        {"FOOBAR", "0 FooBar"},  // both forms are accepted: the smaller in byte order
        {"IPOD", "-3"},          // excluded before the word list
        {"TEH", "-3"},           // a change lexicon's word is not accepted as it is
        {"'S", "-3"}, {"", "-3"},
    };
    for (const auto &c : cases) EXPECT_EQ(find(c.word), c.result) << c.word;
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "DECEMBER", rep, 64), ORTH_CHK_MISSPELLED);  // the walk stops at DeKalb
    EXPECT_EQ(find("MYSPACE", 4), "0 MyS");
    EXPECT_EQ(find("MYSPACE", 0), "0");
    EXPECT_EQ(ORTH_FindCaseForm(sid, "MYSPACE", nullptr, 64), 0);
    EXPECT_EQ(find(std::string(70, 'A').c_str()), "-3");
    setOption(ORTH_STRIP_POSSESSIVES_OPT, 0);
    EXPECT_EQ(find("MYSPACE'S"), "-3");  // no such word, and MySpace'S'S is no form of it

    LogCapture log;
    EXPECT_EQ(ORTH_FindCaseForm(99, "WORD", nullptr, 0), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_TRUE(log.contains("ORTH_FindCaseForm: bad session id 99"));
    EXPECT_EQ(ORTH_FindCaseForm(sid, nullptr, nullptr, 0), ORTH_INVALID_WORD_ERR);
    EXPECT_TRUE(log.contains("ORTH_FindCaseForm: null word"));
}

TEST_F(CaseForm, FormsBeyondOneRoundAreAllLookedAt) {
    // Sixteen case forms of 1abcd, all but the last in byte order excluded
    // (a leading digit keeps the checker from retrying a capital at the start).
    Words all, excluded;
    for (int bits = 0; bits < 16; ++bits) {
        std::string w = "1abcd";
        for (int i = 0; i < 4; ++i)
            if (bits & (8 >> i)) w[i + 1] = static_cast<char>(w[i + 1] - 32);
        all.push_back(w);
        if (w != "1abcd") excluded.push_back(w);
    }
    addLex(ORTH_EXCLUDE_LEX_TYPE, excluded);
    int16_t words = addLex(ORTH_IGNORE_LEX_TYPE, all);
    EXPECT_EQ(find("1ABCD"), "0 1abcd");
    EXPECT_EQ(find("1aBcD"), "0 1abcd");
    ORTH_DelFromLex(sid, words, "1abcd");
    EXPECT_EQ(find("1ABCD"), "-3");
    // A compressed lexicon hands its forms over in no set order.
    std::sort(all.begin(), all.end());
    addCompressed(all);
    EXPECT_EQ(find("1ABCD"), "0 1abcd");
}

TEST_F(CaseForm, AFailingLexiconIsPassedOver) {
    addCompressed({"MySpace", "iPod"});
    addLex(ORTH_IGNORE_LEX_TYPE, {"iPod"});
    std::remove(clxPath.c_str());  // no segment was loaded yet
    LogCapture log;
    EXPECT_EQ(find("IPOD"), "0 iPod");
    EXPECT_EQ(find("MYSPACE"), "-3");
    EXPECT_TRUE(log.contains("ORTH_FindCaseForm: lex 0 failed (-24); its forms are passed over"));
}

}  // namespace
