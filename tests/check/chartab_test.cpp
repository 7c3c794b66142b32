// Character tables and word helpers.
// Groups: CharTables (per-row checksums, whole rows, the shared low half,
// safe access for any character set), CaseRules (class decides case and
// base letters, the compare functions), NormalizeWord, AdaptReplacement, LanguageNames.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "check/chartab.h"
#include "orth.h"

// Weighted sums of each row: sum of (byte value + 1) * entry. Taken from the
// published tables; a single wrong byte changes them.
const long kClassSums[10] = {1283444, 1159412, 1167360, 1432097, 1276756, 471124, 763793, 418646, 1278484, 1539492};
const long kBaseSums[10] = {1925516, 2409278, 2171444, 2398513, 541008, 541008, 541008, 541008, 2019220, 2572214};

// count bytes of a row from an index: two hex digits each, or letters with
// '-' for 0.
static std::string rowBytes(const uint8_t *row, int from, int count, bool hex) {
    std::string out;
    char buf[3];
    for (int i = from; i < from + count; ++i)
        out += hex ? (std::snprintf(buf, 3, "%02X", row[i]), buf) : std::string(1, row[i] ? char(row[i]) : '-');
    return out;
}

TEST(CharTables, RowChecksumsAndWholeRows) {
    auto sum = [](const uint8_t *row) { long s = 0; for (int i = 0; i < 256; ++i) s += (i + 1L) * row[i]; return s; };
    for (int r = 0; r < 10; ++r) EXPECT_EQ(sum(charClassTable[r]), kClassSums[r]) << "class row " << r;
    for (int r = 0; r < 10; ++r) EXPECT_EQ(sum(baseLetterTable[r]), kBaseSums[r]) << "base row " << r;
    const struct { const uint8_t *row; int from, count; bool hex; const char *bytes; } rows[] = {
        {charClassTable[1], 0xA0, 32, true, "0061042104212104042121212104212104510411041111040411111111041111"},
        {charClassTable[6], 0xC0, 32, true, "2161212121612121216121212121216121210021212121212121212151511151"},
        {charClassTable[7], 0xE0, 32, true, "2121212121212121212121212121212121212121212121212121210000000000"},
        {baseLetterTable[3], 0xA0, 96, false, "-akr-il--segt-z--a-r-il--segtnznaaaaaaaiceeeeiii"
                                              "dnokooo-ouuuuuusaaaaaaaiceeeeiiidnokooo-ouuuuuu-"},
        {baseLetterTable[9], 0xD0, 48, false, "dnooooououuuuypsaaaaaaaiceeeeiiidnooooououuuuypk"},
    };
    for (const auto &r : rows) EXPECT_EQ(rowBytes(r.row, r.from, r.count, r.hex), r.bytes) << std::hex << r.from;
}

TEST(CharTables, SharedLowHalfWindowsPunctuationOnlyInRowZeroAndAnyCharacterSetIsSafe) {
    const struct { unsigned char c; uint8_t cls; } low[] = {{'A', 0x61}, {'Y', 0x21}, {'e', 0x51}, {'5', CC_DIGIT},
        {'\t', CC_SPACE}, {'\'', CC_PUNCT}, {0x7F, CC_PUNCT}, {0x0B, 0}, {0x9D, 0}};
    for (int r = 0; r < 10; ++r) {
        for (const auto &l : low) EXPECT_EQ(classOf(r, l.c), l.cls) << r << ":" << int(l.c);
        for (unsigned char c = 0; c < 0x80; ++c) EXPECT_EQ(classOf(r, c), classOf(0, c)) << r << ":" << int(c);
        EXPECT_EQ(classOf(r, 0x92), r == 0 ? CC_PUNCT : 0) << r;
        EXPECT_EQ(baseLetterOf(r, 'Q'), 'q') << r;
    }
    for (int cs : {-1, 10, 255, -32768, 32767})   // outside the table: row zero
        EXPECT_EQ((std::vector<int>{classOf(cs, 0xE9), baseLetterOf(cs, 0xE9), toLowerChar(cs, 0xC9)}),
                  (std::vector<int>{classOf(0, 0xE9), 'e', 0xE9})) << cs;
}

TEST(CaseRules, PlusOrMinusThirtyTwoTestedByClassAndTheCompareFunctions) {
    auto sign = [](int v) { return (v > 0) - (v < 0); };
    // Set 4 has no base letter above 0x7F; set 1 no table of partners; the
    // caseless script of set 7 is all upper case; bytes compare unsigned.
    const int got[] = {baseLetterOf(0, 0xE9), baseLetterOf(4, 0xE9), toLowerChar(1, 0xA1), toLowerChar(7, 0xE0),
                       toUpperChar(0, 0xFF), toUpperChar(0, '1'), sign(compareNoCase("ABC", "abd", 0)),
                       sign(compareNoCase("HeLLo", "hello", 0)), sign(compareNoCase("Stra\xDF" "e", "STRASSE", 0)),
                       sign(compareBytes("ab", "abc")), sign(compareBytes("\xE9", "z"))};
    EXPECT_EQ(std::vector<int>(got, got + 11), (std::vector<int>{'e', 0, 0xC1, 0x00, 0xDF, '1', -1, 0, 1, -1, 1}));
}

TEST(NormalizeWord, PossessivesAndLength) {
    const uint32_t P = ORTH_STRIP_POSSESSIVES_OPT;
    // A long word keeps its first 63 bytes, and the possessive test looks at the end of that copy.
    const std::string x61(61, 'x');
    const struct { std::string word; uint32_t mask; std::string out; } cases[] = {
        {"dog's", P, "dog"}, {"DOG'S", P, "DOG"}, {"dogs'", P, "dog"}, {"dog\x92s", P, "dog"}, {"s'", P, ""},
        {"'s", P, ""}, {"is", P, "is"}, {"s", P, "s"}, {"dog's", 0, "dog's"}, {"", P, ""}, {x61 + "'stail", P, x61},
    };
    char out[kWordBufSize];
    for (const auto &c : cases)   // "length:word"
        EXPECT_EQ(std::to_string(normalizeWord(c.word.c_str(), 0, c.mask, out)) + ":" + out,
                  std::to_string(c.out.size()) + ":" + c.out);
}

TEST(AdaptReplacement, CaseAndPossessive) {
    const std::string r62(62, 'r');
    const struct { const char *word; std::string replacement; bool matchCase; std::string out; } cases[] = {
        {"TEH", "the", true, "THE"}, {"Teh", "the", true, "The"}, {"teh", "the", true, "the"},
        {"teh's", "the", true, "the's"}, {"teh", "The", true, "The"},   // lower-case word: lexicon case kept
        {"hello", "Hello", true, "Hello"}, {"HELLO", "hello", true, "HELLO"}, {"Hello", "hello", true, "Hello"},
        {"123", "abc", true, "ABC"},   // no letters counts as all capitals
        {"TEH", "the", false, "the"}, {"dogs'", "cat", false, "cats'"},
        {"cat's", r62, false, r62 + "'"},   // the possessive never grows it past 63 characters
    };
    for (const auto &c : cases) {
        std::string buf = c.replacement + std::string(kWordBufSize - c.replacement.size(), '\0');
        adaptReplacement(c.word, &buf[0], 0, c.matchCase);
        EXPECT_EQ(buf.c_str(), c.out) << c.word << " -> " << c.replacement;
    }
}

TEST(LanguageNames, KnownIdsAndOther) {
    const std::pair<int16_t, std::string> names[] = {{1033, "American English"}, {2057, "British English"},
        {1044, "Norwegian (Bokmal)"}, {1053, "Swedish"}, {-1, "Other"}, {1234, "Other"}};
    for (const auto &n : names) EXPECT_EQ(languageName(n.first), n.second) << n.first;
}
