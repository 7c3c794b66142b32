// The fast paths against the defined ones, word by word, over the built-in
// American dictionary (slow). Three sessions open the same MAIN.CLX: one as
// it comes (word tables), one whose lexicon walks only the coded data (the
// defined walks), one under a budget so tight that tables come and go.
// Groups: FastPaths (checking every dictionary word in several forms, the
// words of running text and of misspellings, against each other and against
// a plain restatement of the checker's rules; suggestions with their scores;
// every case form of every word; the key and small-word indexes against
// plain searches; the budget kept);
// BuiltInDictionaries (every word of both source lists is accepted with the
// default options).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "check/chartab.h"
#include "check/check.h"
#include "engine/session.h"
#include "lex/clex_int.h"
#include "orth.h"
#include "support/test_util.h"

namespace {

const std::string kBuilt = ORTH_BINARY_DIR;
const std::string kSource = ORTH_SOURCE_DIR;
constexpr uint32_t kTightBudget = 70000;  // above the longest segment, far below the whole file

std::vector<std::string> crlfLines(const std::string &path) {
    std::vector<std::string> out;
    std::string text = readFile(path), line;
    std::istringstream in(text);
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) out.push_back(line);
    }
    return out;
}

// The words of a text: runs of ISO 8859-1 letters with inner apostrophes
// and hyphens, as a block scanner would roughly cut them.
std::vector<std::string> wordsOf(const std::string &text) {
    std::vector<std::string> out;
    std::string w;
    for (size_t i = 0; i <= text.size(); ++i) {
        unsigned char c = i < text.size() ? static_cast<unsigned char>(text[i]) : ' ';
        if ((classOf(0, c) & CC_LETTER) || ((c == '\'' || c == '-') && !w.empty())) {
            w += static_cast<char>(c);
            continue;
        }
        while (!w.empty() && (w.back() == '\'' || w.back() == '-')) w.pop_back();
        if (!w.empty()) out.push_back(w);
        w.clear();
    }
    return out;
}

// The checker's rules as the definition states them, looking up through
// check1Lex on the session's lexicons (a failing lexicon is passed over).
int16_t modelLookupOnce(Session *s, bool cs, const char *word, char rep[kWordBufSize]) {
    for (int slot = 0; slot < kMaxLexPerSession; ++slot) {
        if (s->lexicons[slot] == nullptr) continue;
        int16_t v = check1Lex(s, s->lexicons[slot], cs, word, rep);
        if (v & 1) continue;
        if (v == ORTH_CHK_EXCLUDED) return 1;
        if (v < 0) continue;
        return v;
    }
    return 1;
}

int16_t modelLookupAll(Session *s, uint32_t options, const char *word, char rep[kWordBufSize]) {
    const bool cs = (options & ORTH_CASE_SENSITIVE_OPT) != 0;
    int16_t v = modelLookupOnce(s, cs, word, rep);
    if (!(v & 1) || !cs) return v & 1 ? 1 : v;
    if (classOf(s->charSet, static_cast<unsigned char>(word[0])) & CC_UPPER) {
        char lowered[kWordBufSize];
        copyWord(lowered, word);
        lowered[0] = static_cast<char>(toLowerChar(s->charSet, static_cast<unsigned char>(lowered[0])));
        v = modelLookupOnce(s, true, lowered, rep);
        if (!(v & 1)) return v;
    }
    for (const char *p = word; *p != '\0'; ++p) {
        uint8_t c = classOf(s->charSet, static_cast<unsigned char>(*p));
        if ((c & CC_LETTER) && !(c & CC_UPPER)) return 1;
    }
    v = modelLookupOnce(s, false, word, rep);
    return v & 1 ? 1 : v;
}

int16_t modelCheck(Session *s, uint32_t mask, const char *word, std::string *replacement) {
    const int cs = s->charSet;
    const uint32_t options = s->options;
    bool mixed = hasMixedCase(s, word);
    char normal[kWordBufSize], rep[kWordBufSize];
    uint16_t length = normalizeWord(word, cs, options, normal);
    *replacement = "";  // nothing written
    if (length == 0) return 0;
    copyWord(rep, word);
    bool overLong = std::strlen(word) > static_cast<size_t>(kMaxWordLen);
    const char *view = overLong ? word : normal;
    auto cls = [&](unsigned char c) { return classOf(cs, c); };
    bool firstUpper = cls(view[0]) & CC_UPPER, onlyWordChars = true, onlyLetters = true, allUpper = true;
    for (const char *p = view; *p != '\0'; ++p) {
        auto c = static_cast<unsigned char>(*p);
        if (!(cls(c) & CC_LETTER) && !isApostrophe(c)) {
            onlyLetters = false;
            if (c != kHyphen) onlyWordChars = false;
        }
        if (!(cls(c) & CC_UPPER)) allUpper = false;
    }
    *replacement = rep;
    if (((mask & ORTH_IGNORE_CAPPED_WORDS_OPT) && firstUpper) || ((mask & ORTH_IGNORE_MIXED_CASE_OPT) && mixed) ||
        ((mask & ORTH_IGNORE_MIXED_DIGITS_OPT) && !onlyWordChars) || ((mask & ORTH_IGNORE_ALL_CAPS_WORDS_OPT) && allUpper))
        return 0;
    int16_t result = 0;
    if (mask & ORTH_REPORT_SPELLING_OPT) {
        if (overLong) {
            result |= ORTH_CHK_MISSPELLED;
        } else {
            int16_t r = modelLookupAll(s, options, normal, rep);
            bool found = !(r & 1);
            if (!found && (mask & ORTH_SPLIT_WORDS_OPT)) {
                size_t pos = 0, len = std::strlen(normal);
                found = true;
                while (found && pos < len) {
                    size_t n = std::min(len - pos, static_cast<size_t>(kMaxWordLen));
                    const uint32_t o = pos == 0 ? options : options & ~ORTH_CASE_SENSITIVE_OPT;
                    for (; n > 0; --n) {
                        r = modelLookupAll(s, o, std::string(normal + pos, n).c_str(), rep);
                        if (!(r & 1)) break;
                    }
                    found = n > 0;
                    pos += n;
                }
            }
            if (!found) {
                char part[kWordBufSize];
                found = true;
                for (const char *c = normal; found && *c != '\0';) {
                    c = nextWordPart(c, mask, part);
                    r = part[0] == '\0' ? 1 : modelLookupAll(s, options, part, rep);
                    found = !(r & 1);
                }
            }
            result |= found ? r : ORTH_CHK_MISSPELLED;
            if (r & (ORTH_CHK_AUTO_CHANGE | ORTH_CHK_CONDITIONAL_CHANGE))
                adaptReplacement(word, rep, cs, (options & ORTH_MATCH_CASE_OPT) != 0);
        }
    }
    auto *r = reinterpret_cast<unsigned char *>(rep);
    if ((mask & ORTH_REPORT_UNCAPPED_WORDS_OPT) && !firstUpper) {
        result |= ORTH_CHK_UNCAPITALIZED;
        if (cls(r[0]) & CC_LOWER) r[0] = toUpperChar(cs, r[0]);
    }
    if ((mask & ORTH_REPORT_MIXED_CASE_OPT) && mixed) {
        result |= ORTH_CHK_MIXED_CASE;
        for (unsigned char *p = r; *p != 0; ++p) *p = toLowerChar(cs, *p);
        if (firstUpper && (cls(r[0]) & CC_LOWER)) r[0] = toUpperChar(cs, r[0]);
    }
    if ((mask & ORTH_REPORT_MIXED_DIGITS_OPT) && (result & ORTH_CHK_MISSPELLED) && !onlyLetters) result |= ORTH_CHK_NON_LETTERS;
    *replacement = rep;
    return result;
}

class FastPaths : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        const std::string clx = kBuilt + "/share/orth/en_US/MAIN.CLX";
        const uint32_t budgets[3] = {0, 0, kTightBudget};
        for (int i = 0; i < 3; ++i) {
            sid[i] = ORTH_OpenSession();
            ASSERT_EQ(ORTH_OpenLex(sid[i], clx.c_str(), budgets[i]), 0) << "dictionary not built";
        }
        lexOf(1)->plainWalks = true;  // before any segment loads
        words = crlfLines(kBuilt + "/data/en_US.stems");
        ASSERT_GT(words.size(), 70000u);
    }
    void TearDown() override { closeAllSessions(); }

    CLexState *lexOf(int i) { return &sessionTable[sid[i]]->lexicons[0]->clex; }
    void setAll(uint32_t option, uint32_t value) {
        for (int16_t s : sid) ORTH_SetOption(s, option, value);
    }
    // A check in every session and by the model, as "result:replacement".
    void expectSameCheck(const std::string &w, uint32_t mask) {
        std::string model;
        int16_t expected = modelCheck(sessionTable[sid[1]], sessionTable[sid[1]]->options | mask, w.c_str(), &model);
        for (int16_t s : sid) {
            char rep[kWordBufSize] = "";
            int16_t got = ORTH_CheckWord(s, mask, w.c_str(), rep, sizeof rep);
            ASSERT_EQ(std::to_string(got) + ":" + rep, std::to_string(expected) + ":" + model)
                << "word " << w << ", mask " << mask << ", session " << s;
        }
    }
    std::string suggestions(int16_t s, const std::string &w, int16_t depth) {
        char buf[25 * 64 + 1];
        int16_t scores[25];
        std::string out = std::to_string(ORTH_Suggest(s, w.c_str(), depth, buf, sizeof buf, scores, 25));
        int i = 0;
        for (const char *p = buf; *p != '\0'; p += std::strlen(p) + 1) out += " " + std::string(p) + "=" + std::to_string(scores[i++]);
        return out;
    }
    void expectSameSuggestions(const std::string &w, int16_t depth) {
        const std::string plain = suggestions(sid[1], w, depth);
        EXPECT_EQ(suggestions(sid[0], w, depth), plain) << w << " depth " << depth;
        EXPECT_EQ(suggestions(sid[2], w, depth), plain) << w << " depth " << depth << " under a budget";
    }
    // Budget invariant: data and tables together within the budget.
    void expectWithinBudget() {
        const CLexState *c = lexOf(2);
        EXPECT_LE(uint64_t{c->budget - c->freeBudget} + c->tableBytes, c->budget);
    }

    int16_t sid[3] = {-1, -1, -1};
    std::vector<std::string> words;
};

TEST_F(FastPaths, EveryDictionaryWordChecksAlikeInItsForms) {
    const uint32_t masks[] = {0, ORTH_SPLIT_WORDS_OPT | ORTH_SPLIT_CONTRACTED_WORDS_OPT | ORTH_REPORT_UNCAPPED_WORDS_OPT |
                                     ORTH_REPORT_MIXED_CASE_OPT | ORTH_REPORT_MIXED_DIGITS_OPT | ORTH_IGNORE_MIXED_DIGITS_OPT};
    for (bool caseSensitive : {true, false}) {
        setAll(ORTH_CASE_SENSITIVE_OPT, caseSensitive);
        for (size_t k = 0; k < words.size(); ++k) {
            const std::string &w = words[k];
            std::string upper = w, cap = w, miss = w, swapped = w;
            for (char &c : upper) c = static_cast<char>(toUpperChar(0, static_cast<unsigned char>(c)));
            cap[0] = static_cast<char>(toUpperChar(0, static_cast<unsigned char>(cap[0])));
            miss.back() = miss.back() == 'z' ? 'y' : 'z';
            if (swapped.size() > 2) std::swap(swapped[1], swapped[2]);
            for (const std::string &form : {w, upper, cap, miss, swapped, w + "'s", w + "-" + w})
                for (uint32_t mask : masks) ASSERT_NO_FATAL_FAILURE(expectSameCheck(form, mask));
        }
    }
    expectWithinBudget();
}

TEST_F(FastPaths, RunningTextAndMisspellingsCheckAlikeUnderOtherCharacterSets) {
    std::vector<std::string> text;
    for (const char *name : {"GPL-2", "GPL-3", "LGPL-2.1", "Apache-2.0", "Artistic", "MPL-2.0"}) {
        for (const std::string &w : wordsOf(readFile(std::string("/usr/share/common-licenses/") + name))) text.push_back(w);
    }
    for (const std::string &line : crlfLines(kSource + "/bench/data/misspellings.txt")) {
        if (line[0] != '#') text.push_back(line.substr(0, line.find('\t')));
    }
    text.push_back(std::string(70, 'a'));  // over 63 characters
    ASSERT_GT(text.size(), 2000u);
    for (int16_t charSet : {0, 1, 8}) {
        setAll(ORTH_CHARSET_OPT, static_cast<uint32_t>(charSet));
        for (const std::string &w : text) {
            ASSERT_NO_FATAL_FAILURE(expectSameCheck(w, 0));
            ASSERT_NO_FATAL_FAILURE(expectSameCheck(w, ORTH_SPLIT_WORDS_OPT));
        }
    }
    expectWithinBudget();
}

// Running text checked as blocks (lexicons gathered once per call, tables
// coming and going under the budget in the middle of a call) stops at
// exactly the words that checking each word of the walk alone reports.
TEST_F(FastPaths, BlockChecksStopWhereWordByWordChecksDo) {
    std::string text;
    for (const char *name : {"GPL-3", "Apache-2.0", "MPL-2.0"}) text += readFile(std::string("/usr/share/common-licenses/") + name);
    text += " the the 1984 Qwxz-zz don't dogs' e.g. U.S.A. " + std::string(70, 'b') + " recieve";
    ASSERT_GT(text.size(), 50000u);
    setAll(ORTH_REPORT_DOUBLED_WORDS_OPT, 0);
    for (int16_t s : sid) {  // a text lexicon consulted first, with a replacement
        int16_t lex = ORTH_CreateLex(s, nullptr, ORTH_AUTO_CHANGE_LEX_TYPE, 1033);
        ASSERT_EQ(ORTH_AddToLex(s, lex, "recieve", "receive"), 0);
    }
    const uint32_t masks[] = {0, ORTH_SPLIT_WORDS_OPT | ORTH_SPLIT_CONTRACTED_WORDS_OPT | ORTH_SPLIT_HYPHENATED_WORDS_OPT |
                                     ORTH_REPORT_MIXED_DIGITS_OPT};
    for (uint32_t mask : masks) {
        std::vector<std::string> expected;
        for (int16_t s : sid) {
            std::vector<char> buf(text.begin(), text.end());
            int16_t block = ORTH_OpenBlock(s, buf.data(), uint32_t(buf.size()), uint32_t(buf.size()), 0);
            ASSERT_GE(block, 0);
            std::vector<std::string> alone, stops;
            char word[kWordBufSize], rep[kWordBufSize];
            do {
                if (ORTH_GetBlockWord(s, block, word, sizeof word) < 0) break;
                if (std::strspn(word, "0123456789") == std::strlen(word)) continue;
                int16_t r = ORTH_CheckWord(s, mask, word, rep, sizeof rep);
                if (r != 0) alone.push_back(std::string(word) + ":" + std::to_string(r) + ":" + rep);
            } while (ORTH_NextBlockWord(s, block) == 0);
            ORTH_SetBlockCursor(s, block, 0);
            for (int16_t r; (r = ORTH_CheckBlock(s, block, mask, word, sizeof word, rep, sizeof rep)) != ORTH_CHK_END_OF_BLOCK;) {
                ASSERT_GT(r, 0);
                stops.push_back(std::string(word) + ":" + std::to_string(r) + ":" + rep);
                if (ORTH_NextBlockWord(s, block) != 0) break;
            }
            ASSERT_GT(stops.size(), 20u);
            EXPECT_EQ(stops, alone) << "session " << s << ", mask " << mask;
            if (expected.empty()) expected = stops;
            EXPECT_EQ(stops, expected) << "session " << s << ", mask " << mask;
            ORTH_CloseBlock(s, block);
        }
    }
    EXPECT_GT(lexOf(2)->evictions, 0u);
    expectWithinBudget();
}

TEST_F(FastPaths, SuggestionsAndScoresAreTheSame) {
    std::vector<std::string> misspelt;
    for (const std::string &line : crlfLines(kSource + "/bench/data/misspellings.txt")) {
        if (line[0] != '#') misspelt.push_back(line.substr(0, line.find('\t')));
    }
    for (size_t k = 0; k < words.size(); k += 397) {  // dictionary words mistyped
        std::string w = words[k];
        if (w.size() > 3) std::swap(w[w.size() / 2], w[w.size() / 2 + 1]);
        misspelt.push_back(w);
        misspelt.push_back(words[k]);
    }
    for (bool phonetic : {false, true}) {
        setAll(ORTH_SUGGEST_PHONETIC_OPT, phonetic);
        for (size_t k = 0; k < misspelt.size(); ++k) {
            expectSameSuggestions(misspelt[k], -1);
            if (k % 20 == 0) {
                for (int16_t depth : {0, 1, 2, 3}) expectSameSuggestions(misspelt[k], depth);
            }
        }
    }
    // Words of a text lexicon consulted first are offered again by the
    // compressed one: the list's own search for them decides.
    for (int16_t s : sid) {
        int16_t lex = ORTH_CreateLex(s, nullptr, ORTH_IGNORE_LEX_TYPE, 1033);
        for (const char *w : {"receive", "recipe", "the", "their", "separate", "definitely"}) ORTH_AddToLex(s, lex, w, nullptr);
    }
    setAll(ORTH_SUGGEST_PHONETIC_OPT, 1);
    for (const char *w : {"recieve", "teh", "seperate", "definately", "thier"}) expectSameSuggestions(w, -1);
    expectWithinBudget();
}

void keepForm(const char *form, void *context) { static_cast<std::vector<std::string> *>(context)->push_back(form); }

TEST_F(FastPaths, CaseFormsAreTheSameFromTablesWalksAndUnderABudget) {
    size_t forms = 0;
    for (const std::string &w : words) {
        std::string upper = w;
        for (char &c : upper) c = static_cast<char>(toUpperChar(0, static_cast<unsigned char>(c)));
        std::vector<std::string> found[3];
        for (int i = 0; i < 3; ++i) {
            ASSERT_EQ(CLex_FindCaseForms(upper.c_str(), 0, lexOf(i), keepForm, &found[i]), 0) << upper;
            std::sort(found[i].begin(), found[i].end());
        }
        ASSERT_EQ(found[0], found[1]) << upper;
        ASSERT_EQ(found[2], found[1]) << upper << " under a budget";
        ASSERT_TRUE(std::find(found[1].begin(), found[1].end(), w) != found[1].end()) << w;
        forms += found[1].size();
    }
    EXPECT_GT(forms, words.size());  // some words have more than one form
    expectWithinBudget();
}

TEST_F(FastPaths, KeyAndSmallWordIndexesAgreeWithPlainSearches) {
    CLexState *c = lexOf(0);
    for (unsigned k0 = 0; k0 < 256; ++k0) {
        for (unsigned k1 = 0; k1 < 256; ++k1) {
            int32_t plain = -1;
            for (uint16_t i = 0; i < c->segCount && plain < 0; ++i) {
                if (c->segs[i].key[0] == k0 && c->segs[i].key[1] == k1) plain = i;
            }
            ASSERT_EQ(findSegment(c, static_cast<uint8_t>(k0), static_cast<uint8_t>(k1)), plain) << k0 << " " << k1;
            const char word[3] = {static_cast<char>(k0), static_cast<char>(k1), 0};
            if (k0 == 0) continue;
            for (bool cs : {true, false}) {
                ASSERT_EQ(CLex_Lookup(word, 0, cs, c) == 0,
                          lookupSmallWord(word, c->smallWords, c->smallCount, cs, 0) == 1)
                    << k0 << " " << k1;
            }
        }
    }
}

// The source lists hold possessives whose stems are no words of their own
// (Kinko's, PJ's); the build adds the stems.
TEST(BuiltInDictionaries, EverySourceWordIsAcceptedWithTheDefaultOptions) {
    closeAllSessions();
    for (const char *name : {"en_US", "en_GB"}) {
        const std::vector<std::string> source = crlfLines(kSource + "/data/" + name + ".words");
        ASSERT_GT(source.size(), 100000u) << name;
        int16_t s = ORTH_OpenSession();
        ASSERT_EQ(ORTH_OpenLex(s, (kBuilt + "/share/orth/" + name + "/MAIN.CLX").c_str(), 0), 0) << name;
        size_t possessives = 0;
        for (const std::string &w : source) {
            possessives += w.size() > 2 && w.compare(w.size() - 2, 2, "'s") == 0;
            EXPECT_EQ(ORTH_CheckWord(s, 0, w.c_str(), nullptr, 0), 0) << name << ": " << w;
        }
        EXPECT_GT(possessives, 29000u) << name;
        ORTH_CloseSession(s);
    }
}

}  // namespace
