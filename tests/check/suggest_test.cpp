// Suggestion engine.
// Groups: Scorers (the typographical and phonetic arithmetic, phonetic
// keys); CandidateList (order, ties, duplicates, suppression, capacity);
// Suggest (ORTH_Suggest over text lexicons: change lexicons and case,
// precedence, exclusion, split words, scorer options, the packed buffer).
#include "check/suggest_int.h"
#include "lex_fixture.h"

struct ScoreCase { const char *word, *candidate; int score; };

TEST(Scorers, TypographicalPhoneticAndKeys) {
    const ScoreCase typo[] = {
        {"teh", "the", 83}, {"helo", "hello", 90}, {"hello", "helo", 92}, {"cat", "cot", 83}, {"cat", "cbt", 66},
        {"", "", 100}, {"Hello", "hello", 99}, {"cafe", "caf\xE9", 98}, {"cat", "cats", 86}, {"cat", "catss", 0},
        {"alot", "a lot", 90}, {"recieve", "receive", 92}, {"abc", "xyz", 33}, {"12", "13", 97}, {"strength", "strenght", 93}};
    for (const ScoreCase &c : typo) EXPECT_EQ(typographicalScore(c.word, c.candidate, 0), c.score) << c.word;
    EXPECT_EQ((Ints{typographicalScore("cafe", "caf\xE9", 4),   // no base letter above 0x7F in set 4
                    typographicalScoreAbove("teh", 3, "the", 0, 83), typographicalScoreAbove("teh", 3, "the", 0, 82)}),
              (Ints{90, 0, 83}));
    const ScoreCase sound[] = {{"fone", "phone", 66}, {"kat", "cat", 66}, {"smyth", "smith", 80},
                               {"tomson", "thompson", 85}, {"knight", "nite", 0}, {"kat", "phone", 0}};
    for (const ScoreCase &c : sound) EXPECT_EQ(phoneticScore(c.word, c.candidate, 0), c.score) << c.word;
    const std::pair<const char *, std::string> keys[] = {{"phone", "fm"}, {"knight", "mcd"}, {"edge", "aj"},
        {"Smith", "smd"}, {"smyth", "smd"}, {"Thompson", "dmsm"}, {"PHONE", "bm"}, {"tot", "d"}, {"hwy", ""},
        {"\xC7" "a", "s"}, {"ice", "as"}};
    char key[64];
    for (const auto &k : keys) EXPECT_EQ((phoneticKey(k.first, key), key), k.second) << k.first;
}

TEST(CandidateList, OrderTiesDuplicatesAndSuppression) {
    std::vector<Suggestion> entries(4);
    SuggestionList list{entries.data(), 0, 3};
    // Equal scores keep the order offered; f does not beat the last of a full
    // list; a listed word keeps its first score but takes the suppression.
    for (const ScoreCase &o : {ScoreCase{"a", "", 90}, {"b", "", 80}, {"c", "", 90}, {"d", "", 70}, {"e", "", 95},
                               {"f", "", 90}, {"a", "", 99}})
        addCandidate(o.word, o.score, false, &list);
    addCandidate("a", 91, true, &list);
    std::string got;   // the fourth entry is never written
    for (const Suggestion &e : entries) got += e.word + ("=" + std::to_string(e.score)) + (e.suppressed ? "! " : " ");
    EXPECT_EQ(got, "e=95 a=90! c=90 =0 ");
}

using Suggest = LexFixture;

TEST_F(Suggest, ChangeLexiconsPrecedenceAndCase) {
    addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});
    addLex(ORTH_IGNORE_LEX_TYPE, {"the", "ten", "tech"});
    EXPECT_EQ(suggest("teh"), (Words{"the=99", "tech=86", "ten=83"}));
    // Case follows the word; mixed case has no change entry.
    const Words firsts = {suggest("Teh")[0], suggest("TEH")[0], suggest("teh's")[0], suggest("tEH")[0]};
    EXPECT_EQ(firsts, (Words{"The=99", "THE=99", "the's=99", "tech=86"}));
    ORTH_CloseLex(sid, 0);
    addLex(ORTH_IGNORE_LEX_TYPE, {});
    addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});   // slot 2, after the word list
    EXPECT_EQ(suggest("teh"), (Words{"tech=86", "ten=83", "the=83"}));
}

TEST_F(Suggest, ExclusionEqualNeighboursScorersAndSplits) {
    const uint32_t phoneticOnly = ORTH_SUGGEST_PHONETIC_OPT, split = ORTH_SUGGEST_SPLIT_WORDS_OPT;
    // Paris and paris: paris becomes Paris and goes. No "'s lot".
    const struct { Words list, excluded; uint32_t options; const char *word; Words expected; } cases[] = {
        {{"alot", "slot"}, {"alot"}, 0, "alott", {"slot=72"}}, {{"Paris", "paris"}, {}, 0, "Pariss", {"Paris=93"}},
        {{"phone", "fine"}, {}, 0, "fone", {"fine=87", "phone=77"}},
        {{"phone", "fine"}, {}, phoneticOnly, "fone", {"fine=75", "phone=66"}},
        {{"a", "lot"}, {}, split, "alot", {"lot=90", "a lot=90"}}, {{"a", "lot"}, {}, split, "'slot", {"lot=44"}},
    };
    for (const auto &c : cases) {
        SetUp();
        addLex(ORTH_IGNORE_LEX_TYPE, c.list);
        addLex(ORTH_EXCLUDE_LEX_TYPE, c.excluded);
        setOption(c.options, 1);
        setOption(ORTH_SUGGEST_TYPOGRAPHICAL_OPT, c.options != phoneticOnly);
        EXPECT_EQ(suggest(c.word), c.expected) << c.word;
    }
}

TEST_F(Suggest, PackedBufferBoundsAndBadInput) {
    LogCapture log;
    addLex(ORTH_IGNORE_LEX_TYPE, {"cat", "cot"});
    EXPECT_EQ(suggest("cut", -1, true, 9), (Words{"cat=83", "cot=83"}));   // cat\0cot\0\0
    EXPECT_EQ(suggest("cut", -1, true, 2048, 0).size() + suggest("'s").size() + rc, 0u);   // no room; nothing to suggest
    char buf[9] = "########";
    int16_t scores[25];
    EXPECT_EQ((Ints{ORTH_Suggest(sid, "cut", -1, buf, 8, scores, 25), ORTH_Suggest(sid, "cut", -1, nullptr, 99, scores, 25),
                    ORTH_Suggest(sid, "zzzzzzzz", -1, nullptr, 0, scores, 25), ORTH_Suggest(9, "w", -1, buf, 8, scores, 4),
                    ORTH_Suggest(sid, nullptr, -1, buf, 8, scores, 4)}),
              (Ints{ORTH_BUFFER_TOO_SMALL_ERR, -8, 0, ORTH_BAD_SESSION_ID_ERR, ORTH_INVALID_WORD_ERR}));
    EXPECT_EQ(std::string(buf, 8), std::string("cat\0\0\0\0\0", 8));
    EXPECT_TRUE(log.contains("ORTH_Suggest: buffer too small") && log.contains("ORTH_Suggest: bad session id 9"));
}
