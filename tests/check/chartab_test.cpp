// Character tables and word helpers.
// Groups: CharTables (whole rows, per-row checksums, class invariants, safe
// access for any character set), CaseRules, NormalizeWord, AdaptReplacement,
// LanguageNames.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "check/chartab.h"
#include "orth.h"

namespace {

// Weighted sums of each row: sum of (byte value + 1) * entry. Taken from the
// published tables; a single wrong byte changes them.
const long kClassSums[10] = {1283444, 1159412, 1167360, 1432097, 1276756,
                             471124,  763793,  418646,  1278484, 1539492};
const long kBaseSums[10] = {1925516, 2409278, 2171444, 2398513, 541008,
                            541008,  541008,  541008,  2019220, 2572214};

long weightedSum(const uint8_t *row) {
    long sum = 0;
    for (int i = 0; i < 256; ++i) sum += static_cast<long>(i + 1) * row[i];
    return sum;
}

std::string hexRange(const uint8_t *row, int from, int count) {
    std::string out;
    char buf[4];
    for (int i = from; i < from + count; ++i) {
        std::snprintf(buf, sizeof buf, "%02X", row[i]);
        if (!out.empty()) out += ' ';
        out += buf;
    }
    return out;
}

std::string baseRange(const uint8_t *row, int from, int count) {
    std::string out;
    for (int i = from; i < from + count; ++i) out += row[i] ? static_cast<char>(row[i]) : '-';
    return out;
}

TEST(CharTables, RowChecksums) {
    for (int r = 0; r < 10; ++r) {
        EXPECT_EQ(weightedSum(charClassTable[r]), kClassSums[r]) << "class row " << r;
        EXPECT_EQ(weightedSum(baseLetterTable[r]), kBaseSums[r]) << "base row " << r;
    }
}

TEST(CharTables, WholeUpperHalvesOfSelectedRows) {
    EXPECT_EQ(hexRange(charClassTable[1], 0xA0, 32),
              "00 61 04 21 04 21 21 04 04 21 21 21 21 04 21 21 "
              "04 51 04 11 04 11 11 04 04 11 11 11 11 04 11 11");
    EXPECT_EQ(hexRange(charClassTable[6], 0xC0, 32),
              "21 61 21 21 21 61 21 21 21 61 21 21 21 21 21 61 "
              "21 21 00 21 21 21 21 21 21 21 21 21 51 51 11 51");
    EXPECT_EQ(hexRange(charClassTable[7], 0xE0, 32),
              "21 21 21 21 21 21 21 21 21 21 21 21 21 21 21 21 "
              "21 21 21 21 21 21 21 21 21 21 21 00 00 00 00 00");
    EXPECT_EQ(baseRange(baseLetterTable[3], 0xA0, 96),
              "-akr-il--segt-z--a-r-il--segtnznaaaaaaaiceeeeiii"
              "dnokooo-ouuuuuusaaaaaaaiceeeeiiidnokooo-ouuuuuu-");
    EXPECT_EQ(baseRange(baseLetterTable[9], 0xD0, 48),
              "dnooooououuuuypsaaaaaaaiceeeeiiidnooooououuuuypk");
}

TEST(CharTables, SharedLowHalfAndWindowsPunctuationOnlyInRowZero) {
    for (int r = 0; r < 10; ++r) {
        EXPECT_EQ(classOf(r, 'A'), 0x61);
        EXPECT_EQ(classOf(r, 'Y'), 0x21);
        EXPECT_EQ(classOf(r, 'e'), 0x51);
        EXPECT_EQ(classOf(r, '5'), CC_DIGIT);
        EXPECT_EQ(classOf(r, '\t'), CC_SPACE);
        EXPECT_EQ(classOf(r, '\''), CC_PUNCT);
        EXPECT_EQ(classOf(r, 0x7F), CC_PUNCT);
        EXPECT_EQ(classOf(r, 0x0B), 0);
        EXPECT_EQ(classOf(r, 0x92), r == 0 ? CC_PUNCT : 0) << r;
        EXPECT_EQ(classOf(r, 0x9D), 0);
        EXPECT_EQ(baseLetterOf(r, 'Q'), 'q');
        for (int c = 0; c < 256; ++c) {
            uint8_t cls = charClassTable[r][c];
            if (cls & CC_LETTER) {
                EXPECT_EQ(!!(cls & CC_LOWER) + !!(cls & CC_UPPER), 1) << r << ":" << c;
            }
        }
    }
}

TEST(CharTables, CharacterSetsOutsideTheTableReadRowZero) {
    for (int cs : {-1, 10, 255, -32768, 32767}) {
        EXPECT_EQ(classOf(cs, 0xE9), classOf(0, 0xE9));
        EXPECT_EQ(baseLetterOf(cs, 0xE9), 'e');
        EXPECT_EQ(toLowerChar(cs, 0xC9), 0xE9);
    }
}

TEST(CaseRules, PlusOrMinusThirtyTwoTestedByClass) {
    const unsigned char cafe[] = {'C', 'a', 'f', 0xE9};
    const uint8_t expect[] = {0x21, 0x51, 0x11, 0x51};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(classOf(0, cafe[i]), expect[i]);
        EXPECT_EQ(classOf(4, cafe[i]), expect[i]);
    }
    EXPECT_EQ(baseLetterOf(0, 0xE9), 'e');
    EXPECT_EQ(baseLetterOf(4, 0xE9), 0);
    EXPECT_EQ(toLowerChar(1, 0xA1), 0xC1);    // no table of partners
    EXPECT_EQ(toLowerChar(7, 0xE0), 0x00);    // caseless script: all upper case
    EXPECT_EQ(toUpperChar(0, 0xFF), 0xDF);
    EXPECT_EQ(toUpperChar(0, '1'), '1');
    EXPECT_LT(compareNoCase("ABC", "abd", 0), 0);
    EXPECT_EQ(compareNoCase("HeLLo", "hello", 0), 0);
    EXPECT_NE(compareNoCase("Stra\xDF" "e", "STRASSE", 0), 0);
    EXPECT_LT(compareBytes("ab", "abc"), 0);
    EXPECT_GT(compareBytes("\xE9", "z"), 0);  // unsigned bytes
}

TEST(NormalizeWord, PossessivesAndLength) {
    struct Case {
        const char *word;
        uint32_t mask;
        const char *out;
    } cases[] = {
        {"dog's", ORTH_STRIP_POSSESSIVES_OPT, "dog"},
        {"DOG'S", ORTH_STRIP_POSSESSIVES_OPT, "DOG"},
        {"dogs'", ORTH_STRIP_POSSESSIVES_OPT, "dog"},
        {"dog\x92s", ORTH_STRIP_POSSESSIVES_OPT, "dog"},
        {"s'", ORTH_STRIP_POSSESSIVES_OPT, ""},
        {"'s", ORTH_STRIP_POSSESSIVES_OPT, ""},
        {"is", ORTH_STRIP_POSSESSIVES_OPT, "is"},
        {"s", ORTH_STRIP_POSSESSIVES_OPT, "s"},
        {"dog's", 0, "dog's"},
        {"", ORTH_STRIP_POSSESSIVES_OPT, ""},
    };
    for (const Case &c : cases) {
        char out[kWordBufSize];
        EXPECT_EQ(normalizeWord(c.word, 0, c.mask, out), std::strlen(c.out)) << c.word;
        EXPECT_STREQ(out, c.out) << c.word;
    }
    // A long word keeps its first 63 bytes, and the possessive test looks at
    // the end of that copy.
    std::string longWord = std::string(61, 'x') + "'s" + "tail";
    char out[kWordBufSize];
    EXPECT_EQ(normalizeWord(longWord.c_str(), 0, ORTH_STRIP_POSSESSIVES_OPT, out), 61);
    EXPECT_EQ(std::string(out), std::string(61, 'x'));
}

TEST(AdaptReplacement, CaseAndPossessive) {
    struct Case {
        const char *word;
        const char *replacement;
        bool matchCase;
        const char *out;
    } cases[] = {
        {"TEH", "the", true, "THE"},
        {"Teh", "the", true, "The"},
        {"teh", "the", true, "the"},
        {"teh's", "the", true, "the's"},
        {"teh", "The", true, "The"},      // lower-case word: lexicon case kept
        {"hello", "Hello", true, "Hello"},
        {"HELLO", "hello", true, "HELLO"},
        {"Hello", "hello", true, "Hello"},
        {"123", "abc", true, "ABC"},      // no letters counts as all capitals
        {"TEH", "the", false, "the"},
        {"dogs'", "cat", false, "cats'"},
    };
    for (const Case &c : cases) {
        char buf[kWordBufSize] = {};
        std::strcpy(buf, c.replacement);
        adaptReplacement(c.word, buf, 0, c.matchCase);
        EXPECT_STREQ(buf, c.out) << c.word << " -> " << c.replacement;
    }
    // The possessive never grows the replacement past 63 characters.
    char buf[kWordBufSize];
    std::memset(buf, 'r', 62);
    buf[62] = '\0';
    adaptReplacement("cat's", buf, 0, false);
    EXPECT_EQ(std::strlen(buf), 63u);
    EXPECT_EQ(buf[62], '\'');
}

TEST(LanguageNames, KnownIdsAndOther) {
    EXPECT_STREQ(languageName(1033), "American English");
    EXPECT_STREQ(languageName(2057), "British English");
    EXPECT_STREQ(languageName(1044), "Norwegian (Bokmal)");
    EXPECT_STREQ(languageName(1053), "Swedish");
    EXPECT_STREQ(languageName(-1), "Other");
    EXPECT_STREQ(languageName(1234), "Other");
}

}  // namespace
