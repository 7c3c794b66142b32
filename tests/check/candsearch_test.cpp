// Compressed lexicons in checking and suggesting.
// Groups: SegmentSelection (the four levels' rules, sound codes by
// language); Compressed (lexicons built by the compressor: case forms with
// and without case sensitivity, what each depth offers, segments that
// cannot be read, sound selection by language).
#include <set>

#include "check/suggest_int.h"
#include "lex_fixture.h"

namespace {

TEST(SegmentSelection, LevelsAndSoundCodes) {
    const Words keys = {"ab", "bo", "de", "eh", "et", "fo", "he", "ht", "ph", "po", "ta", "te", "th", "vo"};
    using Keys = std::set<std::string>;
    const struct { int level; const char *word; uint16_t language; Keys selected; } cases[] = {
        {0, "hte", 1033, {"ht", "th", "he"}},  {0, "teh", 1033, {"te", "et", "th"}},
        {0, "THE", 1033, {"th", "ht", "te"}},  {1, "teh", 1033, {"de", "et", "ta", "te", "th"}},
        {1, "phone", 1033, {"bo", "fo", "ph", "po", "vo"}},   // p codes as b, the pair ph as f
        {1, "phone", 1036, {"ph", "po"}},      {1, "oak", 1033, {"ab", "eh", "et"}},
        {2, "teh", 1033, {"de", "et", "ta", "te", "th"}}, {2, "hte", 1033, {"he", "ht", "th"}},
        {2, "phone", 1036, {"ph", "po"}},      {3, "q", 1033, Keys(keys.begin(), keys.end())},
        {4, "teh", 1033, {}},
    };
    for (const auto &c : cases) {
        Keys got;
        for (const std::string &k : keys) {
            const uint8_t kb[2] = {static_cast<uint8_t>(k[0]), static_cast<uint8_t>(k[1])};
            if (selectsSegment(c.level, kb, c.word, 0, c.language)) got.insert(k);
        }
        EXPECT_EQ(got, c.selected) << c.word << " level " << c.level << " language " << c.language;
    }
    EXPECT_EQ(letterCode('k', 2057), 'c');
    EXPECT_EQ(letterCode('k', 1031), 0);
    EXPECT_EQ(pairCode('k', 'n', 1033), 'n');   // the pair's letter, not its code
    EXPECT_EQ(pairCode('p', 'h', 1036), 0);
}

using Compressed = LexFixture;

TEST_F(Compressed, CaseFormsWithAndWithoutCaseSensitivity) {
    addCompressed({"NASA", "Paris", "abZoo", "abaa", "hello", "is", "\xE0\xE1\xE2"});
    char rep[64];
    // ABAA and abAA: the case-folding walk of segment ab stops at abZoo, which
    // folds above them, before it reaches abaa.
    const struct { const char *word; bool sensitiveAccepts, insensitiveAccepts; } cases[] = {
        {"hello", true, true}, {"Hello", true, true}, {"HELLO", true, true}, {"hELLO", false, true},
        {"IS", true, true}, {"iS", false, true}, {"PARIS", true, true}, {"paris", false, true},
        {"nasa", false, true}, {"abaa", true, false}, {"ABAA", false, false}, {"abZOO", false, true},
    };
    for (const auto &c : cases) EXPECT_EQ(ORTH_CheckWord(sid, 0, c.word, rep, 64), c.sensitiveAccepts ? 0 : 1) << c.word;
    setOption(ORTH_CASE_SENSITIVE_OPT, 0);
    for (const auto &c : cases) EXPECT_EQ(ORTH_CheckWord(sid, 0, c.word, rep, 64), c.insensitiveAccepts ? 0 : 1) << c.word;
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "hellos", rep, 64), ORTH_CHK_MISSPELLED);
    setOption(ORTH_CHARSET_OPT, 7);   // letters without a lower-case partner are looked up as they are
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "\xE0\xE1\xE2", rep, 64), 0);
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "ab\xE0", rep, 64), ORTH_CHK_MISSPELLED);
}

TEST_F(Compressed, LevelsDepthsAndSegmentsThatFail) {
    addCompressed({"cab", "cot", "cut", "he", "the", "then", "thy", "to"});
    auto offers = [&](const char *word, int16_t depth, const std::string &want) {
        Words s = suggest(word, depth, false);
        return std::find(s.begin(), s.end(), want) != s.end();
    };
    EXPECT_TRUE(offers("hte", 0, "the"));    // segment th, block e
    EXPECT_FALSE(offers("teh", 0, "the"));   // th has no block h
    EXPECT_TRUE(offers("teh", 1, "the") && offers("teh", -1, "the"));
    EXPECT_FALSE(offers("teh", -1, "cab"));  // level 1 yielded: no wider level
    EXPECT_EQ(suggest("teh", 4, false), (Words{"he", "to"}));   // small words only
    EXPECT_FALSE(offers("bat", 1, "cab"));
    EXPECT_TRUE(offers("bat", -1, "cab"));   // levels 1 and 2 yield nothing

    // Reopened with nothing loaded, then cut where segment co begins: ca
    // still loads, co and cu fail.
    ORTH_CloseLex(sid, 0);
    ASSERT_EQ(ORTH_OpenLex(sid, clxPath.c_str(), 0), 0);
    std::string file = readFile(clxPath);
    const size_t coRecord = 2806 + 2 * 2 + 10;
    uint32_t coOffset = 0;
    std::memcpy(&coOffset, file.data() + coRecord, 4);
    writeFile(clxPath, file.substr(0, coOffset));
    LogCapture log;
    EXPECT_EQ(suggest("cat", -1, false), (Words{"cab", "he", "to"}));   // the level and search end
    char rep[64];
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "cot", rep, 64), ORTH_CHK_MISSPELLED);
    EXPECT_STREQ(rep, "cot");
    EXPECT_TRUE(log.contains("checkWord: lex 0 failed (-6); word taken as not found there"));
    addLex(ORTH_IGNORE_LEX_TYPE, {"cot"});
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "cot", rep, 64), 0);   // a later lexicon still decides
}

TEST_F(Compressed, SoundSelectionInEnglishOnly) {
    addCompressed({"fone", "phony"});
    setOption(ORTH_SUGGEST_PHONETIC_OPT, 1);
    setOption(ORTH_SUGGEST_TYPOGRAPHICAL_OPT, 0);
    EXPECT_EQ(suggest("phone", -1, false), (Words{"phony", "fone"}));
    addCompressed({"fone", "phony"}, 1036);   // French: level 1 selects by letters only
    ORTH_CloseLex(sid, 0);
    EXPECT_EQ(suggest("phone", 1, false), (Words{"phony"}));
}

}  // namespace
