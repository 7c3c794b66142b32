// tests/tools/text_test.cpp — UTF-8 to character set 0 and back.
// Groups: TextEncode (bytes, origin map, foreign characters, invalid input,
// the plain ASCII run),
// TextDecode.
#include <gtest/gtest.h>

#include "tools/cli.h"

namespace {

TEST(TextEncode, MapsCharactersToSetZeroBytes) {
    struct Case { std::string utf8, bytes; std::vector<bool> foreign; } cases[] = {
        {"cat", "cat", {0, 0, 0}},
        {"caf\xC3\xA9", "caf\xE9", {0, 0, 0, 0}},
        {"doesn\xE2\x80\x99t", "doesn't", {0, 0, 0, 0, 0, 0, 0}},           // U+2019
        {"\xE2\x80\x9Chi\xE2\x80\x9D", "\x93hi\x94", {0, 0, 0, 0}},         // U+201C, U+201D
        {"a\xE2\x80\x93" "b\xE2\x80\x94" "c", "a\x96" "b\x97" "c", {0, 0, 0, 0, 0}},
        {"\xE2\x80\xA2", "\x95", {0}},                                      // bullet
        {"x\xE2\x86\x92y", "x y", {0, 0, 0}},                               // arrow separates
        {"\xD0\x96uk", "\xFEuk", {1, 0, 0}},                                // Cyrillic letter
        {"\xC5\xA1" "a", "\xFE" "a", {1, 0}},                               // s caron: no letter in the set
        {std::string("a\0b", 3), "a b", {0, 0, 0}},
        {"ab\xFF" "c", "ab\xFE" "c", {0, 0, 1, 0}},                         // invalid byte
        {"\xE2\x80", "\xFE\xFE", {1, 1}},                                   // cut-off sequence
        {"\xC0\xAF", "\xFE\xFE", {1, 1}},                                   // overlong slash
        {"\xED\xA0\x80", "\xFE\xFE\xFE", {1, 1, 1}},                        // surrogate
        {"\xF0\x9F\x98\x80!", " !", {0, 0}},                                // emoji
    };
    for (const Case &c : cases) {
        Encoded e = encodeUtf8(c.utf8);
        EXPECT_EQ(e.bytes, c.bytes) << c.utf8;
        EXPECT_EQ(e.foreign, c.foreign) << c.utf8;
        ASSERT_EQ(e.origin.size(), e.bytes.size() + 1) << c.utf8;
        EXPECT_EQ(e.origin.back(), c.utf8.size());
        EXPECT_EQ(e.sourceOf(c.utf8, 0, e.bytes.size()), c.utf8);
    }
}

TEST(TextEncode, OriginMapGivesBackTheWordAsWritten) {
    std::string text = "\xE2\x80\x9C" "Don\xE2\x80\x99t caf\xC3\xA9!";
    Encoded e = encodeUtf8(text);
    ASSERT_EQ(e.bytes, "\x93" "Don't caf\xE9!");
    EXPECT_EQ(e.sourceOf(text, 1, 6), "Don\xE2\x80\x99t");
    EXPECT_EQ(e.sourceOf(text, 7, 11), "caf\xC3\xA9");
    EXPECT_EQ(e.sourceOf(text, 9, 100), "f\xC3\xA9!");  // clamped to the end
    EXPECT_EQ(e.sourceOf(text, 5, 2), "");
    EXPECT_TRUE(encodeUtf8("a\xD0\x96").hasForeign(0, 2));
    EXPECT_FALSE(encodeUtf8("a\xD0\x96").hasForeign(0, 1));
}

TEST(TextDecode, WritesSetZeroAsUtf8) {
    struct Case { std::string bytes, utf8; bool typo; } cases[] = {
        {"caf\xE9", "caf\xC3\xA9", false},
        {"don't", "don't", false},
        {"don't", "don\xE2\x80\x99t", true},
        {"\x93q\x94", "\xE2\x80\x9Cq\xE2\x80\x9D", false},
        {"\x81", "\xEF\xBF\xBD", false},
        {"\xFF", "\xC3\xBF", false},
    };
    for (const Case &c : cases) EXPECT_EQ(decodeToUtf8(c.bytes, c.typo), c.utf8) << c.bytes;
}

// The plain ASCII run a line starts with: no byte above 0x7F and no zero,
// at every position of an 8-byte word and past its end.
TEST(TextEncode, PlainAsciiPrefixStopsAtTheFirstHighOrZeroByte) {
    const std::string base = "0123456789abcdefghij\x7F\x01";
    for (size_t at = 0; at <= base.size(); ++at) {
        for (char bad : {'\x80', '\xFF', '\0', '\xC3'}) {
            std::string text = base;
            if (at < text.size()) text[at] = bad;
            const size_t want = at < text.size() ? at : text.size();
            EXPECT_EQ(plainAsciiPrefix(text.data(), text.size()), want) << at << " " << int(bad);
            EXPECT_EQ(isPlainAscii(text.data(), text.size()), want == text.size()) << at;
            EXPECT_EQ(plainAsciiPrefix(text.data(), at / 2), at / 2) << at;  // the length bounds the scan
        }
    }
}

}  // namespace
