// Suggestion engine.
// Groups: Scorers (typographical and phonetic arithmetic, phonetic keys),
// CandidateList (order, ties, duplicates, suppression, bounds),
// SuggestCall (ORTH_Suggest over text lexicons: change lexicons, case,
// split words, exclusion, the packed buffer and its failures).
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "check/suggest_int.h"
#include "orth.h"
#include "support/test_util.h"

namespace {

struct ScoreCase {
    const char *word;
    const char *candidate;
    int16_t score;
};

TEST(Scorers, TypographicalScoresChargeEachTypingError) {
    const ScoreCase cases[] = {
        {"teh", "the", 83},       {"helo", "hello", 90},   {"hello", "helo", 92},
        {"cat", "cot", 83},       {"cat", "cbt", 66},      {"Hello", "hello", 99},
        {"cafe", "caf\xE9", 98},  {"cat", "cats", 86},     {"cat", "catss", 0},
        {"alot", "a lot", 90},    {"recieve", "receive", 92}, {"word", "word", 100},
        {"abc", "xyz", 33},        {"", "", 100},           {"ab", "abcd", 0},
        {"12", "13", 97},         {"strength", "strenght", 93},
    };
    for (const ScoreCase &c : cases) {
        EXPECT_EQ(typographicalScore(c.word, c.candidate, 0), c.score) << c.word << " / " << c.candidate;
    }
}

TEST(Scorers, TypographicalScoreUsesTheSessionsBaseLetters) {
    // 0xE9 carries the base letter e in set 0 only; set 4 has no base letters above 0x7F.
    EXPECT_EQ(typographicalScore("cafe", "caf\xE9", 0), 98);
    EXPECT_EQ(typographicalScore("cafe", "caf\xE9", 4), 90);
}

TEST(Scorers, PhoneticKeysFoldSoundsAndDropLaterVowels) {
    const struct { const char *word, *key; } cases[] = {
        {"phone", "fm"}, {"fone", "fm"},  {"knight", "mcd"}, {"edge", "aj"},
        {"Smith", "smd"}, {"smyth", "smd"}, {"Thompson", "dmsm"}, {"tomson", "dmsm"},
        {"PHONE", "bm"}, {"tot", "d"},    {"", ""},          {"hwy", ""},
        {"\xC7" "a", "s"}, {"ice", "as"},
    };
    for (const auto &c : cases) {
        char key[64];
        phoneticKey(c.word, key);
        EXPECT_STREQ(key, c.key) << c.word;
    }
}

TEST(Scorers, PhoneticScoresCountEqualCharacters) {
    const ScoreCase cases[] = {
        {"fone", "phone", 66}, {"kat", "cat", 66},      {"smyth", "smith", 80},
        {"tomson", "thompson", 85}, {"knight", "nite", 0}, {"cat", "cat", 100},
        {"cat", "dog", 0},
    };
    for (const ScoreCase &c : cases) {
        EXPECT_EQ(phoneticScore(c.word, c.candidate, 0), c.score) << c.word << " / " << c.candidate;
    }
    // The word's key is cached between calls; a new word must not reuse it.
    EXPECT_EQ(phoneticScore("fone", "phone", 0), 66);
    EXPECT_EQ(phoneticScore("kat", "phone", 0), 0);
}

// A list over a vector, for tests.
struct TestList {
    explicit TestList(uint16_t capacity) : entries(capacity) {
        list.entries = entries.data();
        list.capacity = capacity;
        list.count = 0;
    }
    std::vector<std::string> words() const {
        std::vector<std::string> out;
        for (uint16_t i = 0; i < list.count; ++i) out.push_back(list.entries[i].word);
        return out;
    }
    std::vector<Suggestion> entries;
    SuggestionList list{};
};

TEST(CandidateList, KeepsTheBestInScoreOrderWithEarlierOffersFirstOnTies) {
    TestList t(3);
    const ScoreCase offers[] = {{"a", nullptr, 90}, {"b", nullptr, 80}, {"c", nullptr, 90},
                                {"d", nullptr, 70}, {"e", nullptr, 95}};
    for (const ScoreCase &o : offers) addCandidate(o.word, o.score, false, &t.list);
    EXPECT_EQ(t.words(), (std::vector<std::string>{"e", "a", "c"}));
    EXPECT_EQ(t.list.entries[2].score, 90);
    addCandidate("f", 90, false, &t.list);  // does not beat the last entry of a full list
    EXPECT_EQ(t.words(), (std::vector<std::string>{"e", "a", "c"}));
}

TEST(CandidateList, AWordIsListedOnceWithItsFirstScoreAndCanOnlyBeSuppressed) {
    TestList t(4);
    addCandidate("the", 83, false, &t.list);
    addCandidate("tea", 70, false, &t.list);
    addCandidate("the", 99, false, &t.list);
    ASSERT_EQ(t.words(), (std::vector<std::string>{"the", "tea"}));
    EXPECT_EQ(t.list.entries[0].score, 83);
    addCandidate("tea", 10, true, &t.list);
    EXPECT_EQ(t.list.entries[1].suppressed, 1);
    EXPECT_EQ(t.list.entries[1].score, 70);
    addCandidate("ten", 60, true, &t.list);  // a suppressed newcomer is listed, suppressed
    EXPECT_EQ(t.list.count, 3);
    EXPECT_EQ(t.list.entries[2].suppressed, 1);
}

TEST(CandidateList, ZeroCapacityTakesNothingAndLongWordsAreCut) {
    TestList none(0);
    addCandidate("word", 50, false, &none.list);
    EXPECT_EQ(none.list.count, 0);
    TestList t(2);
    std::string longWord(80, 'x');
    addCandidate(longWord.c_str(), 50, false, &t.list);
    ASSERT_EQ(t.list.count, 1);
    EXPECT_EQ(std::strlen(t.list.entries[0].word), 63u);
}

// ORTH_Suggest over memory-only text lexicons.
class SuggestCall : public ::testing::Test {
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

    // The returned words with their scores, "word=score".
    std::vector<std::string> suggest(const char *word, uint16_t max = 25, int32_t size = 1024) {
        std::vector<char> buf(static_cast<size_t>(size) + 1, '#');
        std::vector<int16_t> scores(max + 1, -1);
        rc = ORTH_Suggest(sid, word, -1, buf.data(), size, scores.data(), max);
        std::vector<std::string> out;
        size_t pos = 0;
        for (int i = 0; size > 0 && buf[pos] != '\0'; ++i) {
            std::string w(buf.data() + pos);
            out.push_back(w + "=" + std::to_string(scores[i]));
            pos += w.size() + 1;
        }
        return out;
    }

    int16_t sid = -1;
    int16_t rc = 0;
};

TEST_F(SuggestCall, ChangeLexiconReplacementComesFirstAtNinetyNineWithTheWordsCase) {
    addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});
    addLex(ORTH_IGNORE_LEX_TYPE, {"the", "ten", "tech"});
    EXPECT_EQ(suggest("teh"), (std::vector<std::string>{"the=99", "tech=86", "ten=83"}));
    EXPECT_EQ(rc, 0);
    EXPECT_EQ(suggest("Teh")[0], "The=99");
    EXPECT_EQ(suggest("TEH")[0], "THE=99");
    EXPECT_EQ(suggest("tEH")[0], "tech=86");   // mixed case: no change entry
    EXPECT_EQ(suggest("teh's")[0], "the's=99");
}

TEST_F(SuggestCall, AnEarlierLexiconsOfferKeepsItsScore) {
    addLex(ORTH_IGNORE_LEX_TYPE, {"the"});
    addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});
    EXPECT_EQ(suggest("teh"), (std::vector<std::string>{"the=83"}));
}

TEST_F(SuggestCall, ExcludedWordsAreNeverReturnedWhicheverLexiconOffersThemFirst) {
    addLex(ORTH_IGNORE_LEX_TYPE, {"alot", "slot"});
    addLex(ORTH_EXCLUDE_LEX_TYPE, {"alot"});
    EXPECT_EQ(suggest("alott"), (std::vector<std::string>{"slot=72"}));
}

TEST_F(SuggestCall, SplitWordCandidatesJoinTwoKnownWords) {
    addLex(ORTH_IGNORE_LEX_TYPE, {"a", "lot"});
    EXPECT_EQ(suggest("alot"), (std::vector<std::string>{"lot=90"}));
    ORTH_SetOption(sid, ORTH_SUGGEST_SPLIT_WORDS_OPT, 1);
    EXPECT_EQ(suggest("alot"), (std::vector<std::string>{"lot=90", "a lot=90"}));
    EXPECT_EQ(suggest("'slot"), (std::vector<std::string>{"lot=44"}));   // no "'s lot"
}

TEST_F(SuggestCall, EachScorerRunsUnderItsOwnOption) {
    addLex(ORTH_IGNORE_LEX_TYPE, {"phone", "fine"});
    EXPECT_EQ(suggest("fone"), (std::vector<std::string>{"fine=87", "phone=77"}));
    ORTH_SetOption(sid, ORTH_SUGGEST_PHONETIC_OPT, 1);
    ORTH_SetOption(sid, ORTH_SUGGEST_TYPOGRAPHICAL_OPT, 0);
    EXPECT_EQ(suggest("fone"), (std::vector<std::string>{"fine=75", "phone=66"}));
}

TEST_F(SuggestCall, NeighboursThatBecomeEqualAfterCasingAreReturnedOnce) {
    addLex(ORTH_IGNORE_LEX_TYPE, {"Paris", "paris"});
    EXPECT_EQ(suggest("Pariss"), (std::vector<std::string>{"Paris=93"}));
}

TEST_F(SuggestCall, EmptyResultsForNothingToSuggestAndZeroMaximum) {
    addLex(ORTH_IGNORE_LEX_TYPE, {"cat"});
    EXPECT_EQ(suggest("'s"), (std::vector<std::string>{}));
    EXPECT_EQ(rc, 0);
    EXPECT_EQ(suggest("cot", 0), (std::vector<std::string>{}));
    EXPECT_EQ(rc, 0);
}

TEST_F(SuggestCall, ATooSmallBufferKeepsATerminatedListOfWhatFitted) {
    LogCapture log;
    addLex(ORTH_IGNORE_LEX_TYPE, {"cat", "cot"});
    // "cat\0cot\0\0" needs 9 bytes; 8 fits only the first word.
    EXPECT_EQ(suggest("cut", 25, 9), (std::vector<std::string>{"cat=83", "cot=83"}));
    EXPECT_EQ(rc, 0);
    char buf[8];
    std::memset(buf, '#', sizeof buf);
    int16_t scores[25];
    EXPECT_EQ(ORTH_Suggest(sid, "cut", -1, buf, 8, scores, 25), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_EQ(std::string(buf, 8), std::string("cat\0\0\0\0\0", 8));
    EXPECT_TRUE(log.contains("ORTH_Suggest: buffer too small"));
    // A null buffer or a size of 0 is never written.
    EXPECT_EQ(ORTH_Suggest(sid, "cut", -1, nullptr, 100, scores, 25), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_EQ(ORTH_Suggest(sid, "cut", -1, buf, 0, scores, 25), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_EQ(ORTH_Suggest(sid, "zzzzzzzz", -1, nullptr, 0, scores, 25), 0);
}

TEST_F(SuggestCall, BadSessionAndNullWordAreRefused) {
    LogCapture log;
    char buf[16];
    int16_t scores[4];
    EXPECT_EQ(ORTH_Suggest(9, "word", -1, buf, 16, scores, 4), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_TRUE(log.contains("ORTH_Suggest: bad session id 9"));
    EXPECT_EQ(ORTH_Suggest(sid, nullptr, -1, buf, 16, scores, 4), ORTH_INVALID_WORD_ERR);
}

}  // namespace
