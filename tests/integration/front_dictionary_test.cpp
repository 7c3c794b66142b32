// tests/integration/front_dictionary_test.cpp — the front-end rule over the
// whole built-in American English dictionary (slow: ctest -L slow).
// Groups: FrontDictionary (every word's all-capitals form is accepted;
// suggestions for a possessive misspelling of every word come once each,
// with one possessive ending).
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <set>

#include "check/chartab.h"
#include "orth.h"
#include "tools/front.h"

namespace {

std::vector<std::string> dictionaryWords() {
    std::ifstream in(std::string(ORTH_SOURCE_DIR) + "/data/en_US.words", std::ios::binary);
    std::vector<std::string> words;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) words.push_back(line);
    }
    return words;
}

class FrontDictionary : public ::testing::Test {
protected:
    void SetUp() override {
        session = ORTH_OpenSession();
        std::string dir = std::string(ORTH_BINARY_DIR) + "/share/orth/en_US";
        ASSERT_GE(ORTH_OpenLex(session, (dir + "/MAIN.TLX").c_str(), 0), 0);
        ASSERT_GE(ORTH_OpenLex(session, (dir + "/MAIN.CLX").c_str(), 0), 0);
        words = dictionaryWords();
        ASSERT_GT(words.size(), 70000u);
    }
    void TearDown() override { ORTH_CloseSession(session); }
    int16_t session = -1;
    std::vector<std::string> words;
};

TEST_F(FrontDictionary, EveryWordIsAcceptedInAllCapitals) {
    CapsMemo memo;
    size_t engineRejected = 0;
    std::vector<std::string> rejected;
    for (const std::string &w : words) {
        std::string upper = w;
        for (char &c : upper) c = static_cast<char>(toUpperChar(0, static_cast<unsigned char>(c)));
        char r[64];
        if (ORTH_CheckWord(session, 0, upper.c_str(), r, sizeof r) != 0) ++engineRejected;
        if (frontCheckWord(session, upper.c_str(), r, &memo) != 0) rejected.push_back(w);
    }
    EXPECT_GT(engineRejected, 100u);  // the engine's walk gives up on these
    EXPECT_TRUE(rejected.empty()) << rejected.size() << " rejected, first " << rejected.front();
}

TEST_F(FrontDictionary, SuggestionsComeOnceWithOnePossessiveEnding) {
    size_t withSuggestions = 0;
    for (const std::string &w : words) {
        if (w.size() < 3 || w.size() > 60) continue;
        // A possessive misspelling: a letter doubled.
        std::string typo = w.substr(0, 2) + w[1] + w.substr(2) + "'s";
        std::vector<FrontSuggestion> sugs;
        ASSERT_EQ(frontSuggest(session, typo.c_str(), 15, &sugs), 0) << typo;
        std::set<std::string> seen;
        for (const FrontSuggestion &s : sugs) {
            EXPECT_TRUE(seen.insert(s.word).second) << typo << ": " << s.word << " twice";
            size_t n = s.word.size();
            bool doubled = n >= 4 && s.word.compare(n - 2, 2, "'s") == 0 &&
                           (s.word.compare(n - 4, 2, "'s") == 0 || s.word.compare(n - 4, 2, "s'") == 0);
            EXPECT_FALSE(doubled) << typo << ": " << s.word;
        }
        withSuggestions += !sugs.empty();
    }
    EXPECT_GT(withSuggestions, words.size() * 9 / 10);
}

}  // namespace
