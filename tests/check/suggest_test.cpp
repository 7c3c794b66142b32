// Suggestion engine.
// Groups: Scorers (the typographical and phonetic arithmetic, phonetic
// keys); CandidateList (order, ties, duplicates, suppression, bounds);
// Suggest (ORTH_Suggest over text lexicons: change lexicons and case,
// precedence, exclusion, split words, scorer options, the packed buffer).
#include "check/suggest_int.h"
#include "lex_fixture.h"

namespace {

struct ScoreCase {
    const char *word, *candidate;
    int16_t score;
};

TEST(Scorers, TypographicalPhoneticAndKeys) {
    const ScoreCase typo[] = {
        {"teh", "the", 83},   {"helo", "hello", 90}, {"hello", "helo", 92}, {"cat", "cot", 83},
        {"cat", "cbt", 66},   {"Hello", "hello", 99}, {"cafe", "caf\xE9", 98}, {"cat", "cats", 86},
        {"cat", "catss", 0},  {"alot", "a lot", 90}, {"recieve", "receive", 92}, {"abc", "xyz", 33},
        {"12", "13", 97},     {"strength", "strenght", 93}, {"", "", 100},
    };
    for (const ScoreCase &c : typo) EXPECT_EQ(typographicalScore(c.word, c.candidate, 0), c.score) << c.word << "/" << c.candidate;
    EXPECT_EQ(typographicalScore("cafe", "caf\xE9", 4), 90);   // no base letter above 0x7F in set 4
    EXPECT_EQ(typographicalScoreAbove("teh", 3, "the", 0, 83), 0);
    EXPECT_EQ(typographicalScoreAbove("teh", 3, "the", 0, 82), 83);

    const ScoreCase sound[] = {
        {"fone", "phone", 66}, {"kat", "cat", 66}, {"smyth", "smith", 80}, {"tomson", "thompson", 85},
        {"knight", "nite", 0}, {"kat", "phone", 0},
    };
    for (const ScoreCase &c : sound) EXPECT_EQ(phoneticScore(c.word, c.candidate, 0), c.score) << c.word << "/" << c.candidate;
    const struct { const char *word, *key; } keys[] = {
        {"phone", "fm"}, {"knight", "mcd"}, {"edge", "aj"}, {"Smith", "smd"}, {"smyth", "smd"},
        {"Thompson", "dmsm"}, {"PHONE", "bm"}, {"tot", "d"}, {"hwy", ""}, {"\xC7" "a", "s"}, {"ice", "as"},
    };
    char key[64];
    for (const auto &k : keys) {
        phoneticKey(k.word, key);
        EXPECT_STREQ(key, k.key) << k.word;
    }
}

TEST(CandidateList, OrderTiesDuplicatesAndSuppression) {
    std::vector<Suggestion> entries(4);
    SuggestionList list{entries.data(), 0, 3};
    auto words = [&] {
        Words out;
        for (uint16_t i = 0; i < list.count; ++i) out.push_back(list.entries[i].word);
        return out;
    };
    for (const ScoreCase &o : {ScoreCase{"a", "", 90}, {"b", "", 80}, {"c", "", 90}, {"d", "", 70}, {"e", "", 95}}) {
        addCandidate(o.word, o.score, false, &list);
    }
    EXPECT_EQ(words(), (Words{"e", "a", "c"}));   // equal scores keep the order offered
    addCandidate("f", 90, false, &list);           // does not beat the last of a full list
    addCandidate("a", 99, false, &list);           // a listed word keeps its first score
    EXPECT_EQ(words(), (Words{"e", "a", "c"}));
    EXPECT_EQ(list.entries[1].score, 90);
    addCandidate("a", 91, true, &list);
    EXPECT_EQ(list.entries[1].suppressed, 1);
    list.capacity = 0;
    list.count = 0;
    addCandidate("x", 50, false, &list);
    EXPECT_EQ(list.count, 0);
}

using Suggest = LexFixture;

TEST_F(Suggest, ChangeLexiconsPrecedenceAndCase) {
    addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});
    addLex(ORTH_IGNORE_LEX_TYPE, {"the", "ten", "tech"});
    EXPECT_EQ(suggest("teh"), (Words{"the=99", "tech=86", "ten=83"}));
    EXPECT_EQ(suggest("Teh")[0], "The=99");
    EXPECT_EQ(suggest("TEH")[0], "THE=99");
    EXPECT_EQ(suggest("teh's")[0], "the's=99");
    EXPECT_EQ(suggest("tEH")[0], "tech=86");   // mixed case: no change entry
    ORTH_CloseLex(sid, 0);
    addLex(ORTH_IGNORE_LEX_TYPE, {});
    addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});   // slot 2, after the word list
    EXPECT_EQ(suggest("teh"), (Words{"tech=86", "ten=83", "the=83"}));
}

TEST_F(Suggest, ExclusionEqualNeighboursScorersAndSplits) {
    const uint32_t phoneticOnly = ORTH_SUGGEST_PHONETIC_OPT, split = ORTH_SUGGEST_SPLIT_WORDS_OPT;
    const struct { Words list, excluded; uint32_t options; const char *word; Words expected; } cases[] = {
        {{"alot", "slot"}, {"alot"}, 0, "alott", {"slot=72"}},
        {{"Paris", "paris"}, {}, 0, "Pariss", {"Paris=93"}},   // paris becomes Paris and goes
        {{"phone", "fine"}, {}, 0, "fone", {"fine=87", "phone=77"}},
        {{"phone", "fine"}, {}, phoneticOnly, "fone", {"fine=75", "phone=66"}},
        {{"a", "lot"}, {}, split, "alot", {"lot=90", "a lot=90"}},
        {{"a", "lot"}, {}, split, "'slot", {"lot=44"}},        // no "'s lot"
    };
    for (const auto &c : cases) {
        closeAllSessions();
        sid = ORTH_OpenSession();
        addLex(ORTH_IGNORE_LEX_TYPE, c.list);
        addLex(ORTH_EXCLUDE_LEX_TYPE, c.excluded);
        setOption(c.options, 1);
        if (c.options == phoneticOnly) setOption(ORTH_SUGGEST_TYPOGRAPHICAL_OPT, 0);
        EXPECT_EQ(suggest(c.word), c.expected) << c.word;
    }
}

TEST_F(Suggest, PackedBufferBoundsAndBadInput) {
    LogCapture log;
    addLex(ORTH_IGNORE_LEX_TYPE, {"cat", "cot"});
    EXPECT_EQ(suggest("cut", -1, true, 9), (Words{"cat=83", "cot=83"}));   // cat\0cot\0\0
    EXPECT_EQ(rc, 0);
    char buf[8];
    int16_t scores[25];
    std::memset(buf, '#', sizeof buf);
    EXPECT_EQ(ORTH_Suggest(sid, "cut", -1, buf, 8, scores, 25), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_EQ(std::string(buf, 8), std::string("cat\0\0\0\0\0", 8));
    EXPECT_TRUE(log.contains("ORTH_Suggest: buffer too small"));
    EXPECT_EQ(ORTH_Suggest(sid, "cut", -1, nullptr, 100, scores, 25), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_EQ(ORTH_Suggest(sid, "zzzzzzzz", -1, nullptr, 0, scores, 25), 0);
    EXPECT_EQ(suggest("cut", -1, true, 2048, 0), (Words{}));
    EXPECT_EQ(suggest("'s"), (Words{}));
    EXPECT_EQ(rc, 0);
    EXPECT_EQ(ORTH_Suggest(9, "word", -1, buf, 8, scores, 4), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_TRUE(log.contains("ORTH_Suggest: bad session id 9"));
    EXPECT_EQ(ORTH_Suggest(sid, nullptr, -1, buf, 8, scores, 4), ORTH_INVALID_WORD_ERR);
}

}  // namespace
