// tests/tools/front_test.cpp — the front-end rule and dictionary finding
// (tools/front.h) over small dictionaries built in the test.
// Groups: FrontCheck (all-capitals forms, the engine's verdict kept
// otherwise, split words), FrontSuggest (repeats and doubled possessives,
// the likely-suggestion cut), FrontDicts (names, ORTH_DICPATH, personal
// lists).
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "dict/dict_fixture.h"
#include "tools/front.h"

namespace {

// A session over a compressed list whose case-folding walk gives up early:
// DeKalb comes before December in segment "De", MySQL before MySpace.
class Front : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        ASSERT_EQ(compressWords(dir.path(), dir.file("MAIN.CLX"),
                                {"DeKalb", "December", "King", "Kinko", "MySQL", "MySpace", "cat", "king", "known",
                                 "parties", "well"}),
                  0);
        session = ORTH_OpenSession();
        ASSERT_GE(ORTH_OpenLex(session, dir.file("MAIN.CLX").c_str(), 0), 0);
    }
    void TearDown() override { closeAllSessions(); }
    bool engineAccepts(const char *word) {
        char r[64];
        return ORTH_CheckWord(session, 0, word, r, sizeof r) == 0;
    }
    bool frontAccepts(const char *word) {
        char r[64];
        return frontCheckWord(session, word, r, &memo) == 0;
    }
    TempDir dir;
    int16_t session = -1;
    CapsMemo memo;
};

TEST_F(Front, AllCapitalsPluralPossessivesOrdinalsAreAccepted) {
    struct Case { const char *word; bool engine, front; } cases[] = {
        {"DECEMBER", false, true},    // through December
        {"MYSPACE", false, true},     // through the dictionary's own MySpace
        {"DECEMBER'S", false, true},
        {"MYSQL", true, true},
        {"KING", true, true},
        {"DECEMBR", false, false},
        {"DeCEMBER", false, false},   // not all capitals: the engine's verdict
        {"december", false, false},
        {"MYSPACES", false, false},
        {"1999", false, true},
        {"kings'", true, true},
        {"parties'", false, true},    // the engine strips s' and looks up "partie"
        {"PARTIES'", false, true},
        {"partys'", false, false},
        {"21st", false, true},
        {"112th", false, true},
        {"2ND", false, true},
        {"1990s", false, true},
        {"3th", false, false},
        {"11st", false, false},
        {"2nds", false, false},
    };
    for (int pass = 0; pass < 2; ++pass) {  // the second pass answers from the memo
        for (const Case &c : cases) {
            EXPECT_EQ(engineAccepts(c.word), c.engine) << c.word;
            EXPECT_EQ(frontAccepts(c.word), c.front) << c.word;
        }
    }
    EXPECT_TRUE(frontAcceptsRejected(session, "DECEMBER", nullptr));
}

TEST_F(Front, SplitWordsAreToldFromWholeOnesAndOptionsAreRestored) {
    uint32_t before = static_cast<uint32_t>(ORTH_GetOption(session, ORTH_SPLIT_HYPHENATED_WORDS_OPT));
    EXPECT_TRUE(acceptedBySplitting(session, "well-known"));
    EXPECT_FALSE(acceptedBySplitting(session, "cat"));
    EXPECT_EQ(static_cast<uint32_t>(ORTH_GetOption(session, ORTH_SPLIT_HYPHENATED_WORDS_OPT)), before);
    EXPECT_EQ(ORTH_GetOption(session, ORTH_SPLIT_WORDS_OPT), 0);
}

TEST_F(Front, SuggestionsComeOnceWithOnePossessiveEnding) {
    // A hand-written list may hold a possessive (Kinko's); the engine gives
    // it the word's ending again, which repeats the suggestion from Kinko.
    writeFile(dir.file("names.tlx"), crlfLines({"#LID 1033 1 1", "Kinko's"}));
    ASSERT_GE(ORTH_OpenLex(session, dir.file("names.tlx").c_str(), 0), 0);
    std::vector<FrontSuggestion> sugs;
    std::vector<std::string> words;
    ASSERT_EQ(frontSuggest(session, "Kinkoo's", 10, &sugs, SuggestRanking::Defined), 0);
    for (const FrontSuggestion &s : sugs) words.push_back(s.word);
    EXPECT_EQ(words, (std::vector<std::string>{"Kinko's", "King's", "Known's", "Cat's"}));
    ASSERT_EQ(frontSuggest(session, "Kinkoo's", 10, &sugs), 0);
    ASSERT_FALSE(sugs.empty());
    EXPECT_EQ(sugs.front().word, "Kinko's");

    char raw[1000];
    int16_t scores[10];
    ASSERT_EQ(ORTH_Suggest(session, "Kinkoo's", -1, raw, sizeof raw, scores, 10), 0);
    std::string engine;
    for (size_t p = 0; raw[p] != '\0'; p += std::strlen(raw + p) + 1) engine += std::string(raw + p) + " ";
    EXPECT_EQ(engine, "Kinko's Kinko's's King's Known's Cat's ");  // what the rule repairs

    EXPECT_EQ(frontSuggest(session, "Kinkoo's", 0, &sugs), 0);
    EXPECT_TRUE(sugs.empty());
    EXPECT_EQ(frontSuggest(99, "cat", 5, &sugs), ORTH_BAD_SESSION_ID_ERR);
}

TEST(FrontLikely, KeepsScoresWithinTwentyOfTheBestAndAtLeastFifty) {
    struct Case { std::vector<int16_t> scores; size_t maxShown, kept; } cases[] = {
        {{95, 80, 75, 74, 60}, 10, 3},
        {{60, 55, 50, 49}, 10, 3},
        {{99, 98, 97}, 2, 2},
        {{40}, 10, 0},
        {{}, 10, 0},
    };
    for (const Case &c : cases) {
        std::vector<FrontSuggestion> sugs;
        for (int16_t s : c.scores) sugs.push_back({"w", s});
        keepLikelySuggestions(&sugs, c.maxShown);
        EXPECT_EQ(sugs.size(), c.kept) << c.scores.size();
    }
}

// ORTH_DICPATH and HOME are changed for the test's process only.
class FrontDicts : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char *d : {"a/en_US", "a/en_GB", "b/en_US", "b/xx", "own"}) {
            std::filesystem::create_directories(dir.file(d));
            if (std::string(d) != "b/xx") writeFile(dir.file(d) + "/MAIN.CLX", "");
        }
        roots.folders = {dir.file("b")};
    }
    void TearDown() override { unsetenv("ORTH_DICPATH"); }
    TempDir dir;
    DictRoots roots;
};

TEST_F(FrontDicts, NamesAreLookedUpInDicPathThenInTheRoots) {
    setenv("ORTH_DICPATH", (dir.file("nowhere") + ":" + dir.file("a")).c_str(), 1);
    struct Case { std::string name, found; } cases[] = {
        {"en_GB", dir.file("a/en_GB")},
        {"en_US", dir.file("a/en_US")},   // ORTH_DICPATH first
        {"", dir.file("a/en_US")},        // the default name
        {"xx", ""},                       // a folder without MAIN.CLX
        {"fr_FR", ""},
        {dir.file("own"), dir.file("own")},
        {"/no/such/folder", "/no/such/folder"},  // a path is the user's word
    };
    for (const Case &c : cases) EXPECT_EQ(findDictionary(c.name, roots), c.found) << c.name;
    EXPECT_EQ(listDictionaries(roots), (std::vector<std::string>{"en_GB", "en_US"}));

    setenv("ORTH_DICPATH", dir.file("own").c_str(), 1);  // a dictionary folder itself
    EXPECT_EQ(findDictionary("", roots), dir.file("own"));
    EXPECT_EQ(findDictionary("en_US", roots), dir.file("b/en_US"));
}

TEST_F(FrontDicts, PersonalListsLiveInTheConfigurationFolder) {
    std::string home = std::getenv("HOME") ? std::getenv("HOME") : "";
    setenv("XDG_CONFIG_HOME", dir.file("cfg").c_str(), 1);
    EXPECT_EQ(defaultPersonalList(dir.file("a/en_GB/")), dir.file("cfg/orth/en_GB.tlx"));
    setenv("XDG_CONFIG_HOME", "relative", 1);  // not absolute: ignored
    setenv("HOME", dir.path().c_str(), 1);
    EXPECT_EQ(defaultPersonalList("en_US"), dir.file(".config/orth/en_US.tlx"));
    unsetenv("HOME");
    unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(defaultPersonalList("en_US"), "");
    setenv("HOME", home.c_str(), 1);

    closeAllSessions();
    int16_t session = ORTH_OpenSession(), lex = -1;
    std::string path = dir.file("cfg/orth/en_GB.tlx");
    EXPECT_GE(openPersonalList(session, path, &lex), 0);
    EXPECT_EQ(readFile(path), crlfLines({"#LID 1033 1 0"}));
    int16_t first = lex;
    EXPECT_EQ(openPersonalList(session, path, &lex), first);  // already open
    EXPECT_EQ(addToMemoryList(session, &lex, "zebra"), 0);    // a file list works as well
    int16_t mem = -1;
    EXPECT_EQ(addToMemoryList(session, &mem, "zebra"), 0);
    EXPECT_GE(mem, 0);
    int16_t blocked = -1;
    writeFile(dir.file("file"), "");
    EXPECT_LT(openPersonalList(session, dir.file("file/x.tlx"), &blocked), 0);
    EXPECT_EQ(blocked, -1);
    closeAllSessions();
}

}  // namespace
