// Compressed lexicons in checking and suggesting.
// Groups: SegmentSelection (the four levels' rules, sound codes by
// language); Compressed (lexicons built by the compressor: case forms with
// and without case sensitivity, what each depth offers, segments that
// cannot be read, sound selection by language).
#include <set>

#include "check/suggest_int.h"
#include "lex_fixture.h"

TEST(SegmentSelection, LevelsAndSoundCodes) {
    using Keys = std::set<std::string>;
    const Keys all = {"ab", "bo", "de", "eh", "et", "fo", "he", "ht", "ph", "po", "ta", "te", "th", "vo"};
    const struct { int level; const char *word; uint16_t language; Keys selected; } cases[] = {
        {0, "hte", 1033, {"ht", "th", "he"}}, {0, "teh", 1033, {"te", "et", "th"}}, {0, "THE", 1033, {"th", "ht", "te"}},
        {1, "teh", 1033, {"de", "et", "ta", "te", "th"}}, {1, "phone", 1036, {"ph", "po"}}, {4, "teh", 1033, {}},
        {1, "phone", 1033, {"bo", "fo", "ph", "po", "vo"}},   // p codes as b, the pair ph as f
        {1, "oak", 1033, {"ab", "eh", "et"}}, {2, "hte", 1033, {"he", "ht", "th"}}, {2, "phone", 1036, {"ph", "po"}},
        {2, "teh", 1033, {"de", "et", "ta", "te", "th"}}, {3, "q", 1033, all},
    };
    for (const auto &c : cases) {
        Keys got;
        for (const std::string &k : all)
            if (selectsSegment(c.level, reinterpret_cast<const uint8_t *>(k.data()), c.word, 0, c.language)) got.insert(k);
        EXPECT_EQ(got, c.selected) << c.word << " level " << c.level << " language " << c.language;
    }
    // k codes as c in English only; a pair yields its letter, not its code.
    EXPECT_EQ((Ints{letterCode('k', 2057), letterCode('k', 1031), pairCode('k', 'n', 1033), pairCode('p', 'h', 1036)}),
              (Ints{'c', 0, 'n', 0}));
}

using Compressed = LexFixture;

TEST_F(Compressed, CaseFormsWithAndWithoutCaseSensitivity) {
    addCompressed({"NASA", "Paris", "abZoo", "abaa", "hello", "is", "\xE0\xE1\xE2"});
    // Accepted with and without case sensitivity. ABAA and abAA: the
    // case-folding walk of segment ab stops at abZoo, which folds above them,
    // before it reaches abaa.
    const struct { const char *word; bool sensitive, insensitive; } cases[] = {
        {"hello", 1, 1}, {"Hello", 1, 1}, {"HELLO", 1, 1}, {"hELLO", 0, 1}, {"IS", 1, 1}, {"iS", 0, 1}, {"PARIS", 1, 1},
        {"paris", 0, 1}, {"nasa", 0, 1}, {"abaa", 1, 0}, {"ABAA", 0, 0}, {"abZOO", 0, 1}, {"hellos", 0, 0},
    };
    for (const auto &c : cases) EXPECT_EQ(ORTH_CheckWord(sid, 0, c.word, rep, 64), c.sensitive ? 0 : 1) << c.word;
    setOption(ORTH_CASE_SENSITIVE_OPT, 0);
    for (const auto &c : cases) EXPECT_EQ(ORTH_CheckWord(sid, 0, c.word, rep, 64), c.insensitive ? 0 : 1) << c.word;
    setOption(ORTH_CHARSET_OPT, 7);   // letters without a lower-case partner are looked up as they are
    EXPECT_EQ((Ints{ORTH_CheckWord(sid, 0, "\xE0\xE1\xE2", rep, 64), ORTH_CheckWord(sid, 0, "ab\xE0", rep, 64)}),
              (Ints{0, ORTH_CHK_MISSPELLED}));
}

TEST_F(Compressed, LevelsDepthsAndSegmentsThatFail) {
    addCompressed({"cab", "cot", "cut", "he", "the", "then", "thy", "to"});
    auto offers = [&](const char *word, int16_t depth, const char *want) {
        const Words s = suggest(word, depth, false);
        return std::count(s.begin(), s.end(), want) > 0;
    };
    // hte finds the in segment th, block e; th has no block h for teh, so
    // level 1 finds it, and a level that yields stops the search; for bat
    // levels 1 and 2 yield nothing.
    EXPECT_EQ((std::vector<bool>{offers("hte", 0, "the"), offers("teh", 0, "the"), offers("teh", 1, "the"),
                                 offers("teh", -1, "the"), offers("teh", -1, "cab"), offers("bat", 1, "cab"),
                                 offers("bat", -1, "cab")}),
              (std::vector<bool>{true, false, true, true, false, false, true}));
    EXPECT_EQ(suggest("teh", 4, false), (Words{"he", "to"}));   // small words only

    // Reopened with nothing loaded, then cut where segment co begins: ca
    // still loads, co and cu fail.
    ORTH_CloseLex(sid, 0);
    ASSERT_EQ(ORTH_OpenLex(sid, clxPath.c_str(), 0), 0);
    std::string file = readFile(clxPath);
    uint32_t coOffset = 0;
    std::memcpy(&coOffset, file.data() + 2806 + 2 * 2 + 10, 4);   // the second segment record's offset
    writeFile(clxPath, file.substr(0, coOffset));
    LogCapture log;
    EXPECT_EQ(suggest("cat", -1, false), (Words{"cab", "he", "to"}));   // the level and search end
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "cot", rep, 64), ORTH_CHK_MISSPELLED);
    EXPECT_STREQ(rep, "cot");
    EXPECT_TRUE(log.contains("checkWord: lex 0 failed (-6); word taken as not found there"));
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
