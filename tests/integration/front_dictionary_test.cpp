// tests/integration/front_dictionary_test.cpp — the front-end rule over the
// whole built-in American English dictionary (slow: ctest -L slow).
// Groups: FrontDictionary (every word's all-capitals form is accepted; the
// case forms the engine finds for all-capitals words, dictionary words and
// misspellings, against a plain search of the word list; suggestions for a
// possessive misspelling of every word come once each, with one possessive
// ending).
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <map>
#include <set>

#include "check/chartab.h"
#include "orth.h"
#include "tools/front.h"

namespace {

std::vector<std::string> wordList(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::vector<std::string> words;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) words.push_back(line);
    }
    return words;
}

std::vector<std::string> dictionaryWords() { return wordList(std::string(ORTH_SOURCE_DIR) + "/data/en_US.words"); }

std::string upperCase(std::string w) {
    for (char &c : w) c = static_cast<char>(toUpperChar(0, static_cast<unsigned char>(c)));
    return w;
}
std::string lowerCase(std::string w) {
    for (char &c : w) c = static_cast<char>(toLowerChar(0, static_cast<unsigned char>(c)));
    return w;
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

// ORTH_FindCaseForm against a plain search: the smallest word of the list
// compressed into MAIN.CLX (MAIN.TLX is empty) that folds equal to the word
// (its possessive ending cut) and that the session accepts with the ending
// given back. The words asked: every word's all-capitals form, with a
// possessive ending for some, and misspellings in capitals.
TEST_F(FrontDictionary, CaseFormsOfAllCapitalsWordsMatchAPlainSearch) {
    const std::vector<std::string> stems = wordList(std::string(ORTH_BINARY_DIR) + "/data/en_US.stems");
    ASSERT_GT(stems.size(), 70000u);
    std::map<std::string, std::vector<std::string>> byFolded;  // each list in byte order, as stems are
    for (const std::string &w : stems) byFolded[lowerCase(w)].push_back(w);
    std::vector<std::string> asked;
    for (size_t k = 0; k < stems.size(); ++k) {
        const std::string upper = upperCase(stems[k]);
        asked.push_back(upper);
        if (k % 5 == 0) asked.push_back(upper + "'S");
        if (k % 3 == 0) asked.push_back(upper.substr(0, upper.size() - 1) + (upper.back() == 'Q' ? "X" : "Q"));
    }
    for (const std::string &line : wordList(std::string(ORTH_SOURCE_DIR) + "/bench/data/misspellings.txt"))
        if (line[0] != '#') asked.push_back(upperCase(line.substr(0, line.find('\t'))));
    size_t found = 0, pastTheWalk = 0;
    char r[64];
    for (const std::string &w : asked) {
        const bool possessive = w.size() > 2 && w.compare(w.size() - 2, 2, "'S") == 0;
        const std::string stem = possessive ? w.substr(0, w.size() - 2) : w, ending = possessive ? "'S" : "";
        std::string expected = "-3";
        auto it = byFolded.find(lowerCase(stem));
        for (size_t i = 0; it != byFolded.end() && i < it->second.size() && expected == "-3"; ++i) {
            const std::string spelled = it->second[i] + ending;
            if (ORTH_CheckWord(session, 0, spelled.c_str(), r, sizeof r) == 0) expected = "0 " + spelled;
        }
        char form[64] = "";
        int16_t rc = ORTH_FindCaseForm(session, w.c_str(), form, sizeof form);
        ASSERT_EQ(rc == 0 ? "0 " + std::string(form) : std::to_string(rc), expected) << w;
        found += rc == 0;
        pastTheWalk += rc == 0 && ORTH_CheckWord(session, 0, w.c_str(), r, sizeof r) != 0;
    }
    EXPECT_GT(found, stems.size());
    EXPECT_GT(pastTheWalk, 100u);  // words the engine's own lookup rejects
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
