// Checking and suggesting over compressed lexicons built with the compressor.
// Groups: CompressedCheck (case forms, a lexicon whose segments cannot be
// read), CompressedSuggest (search depths on the hte / teh / phone cases,
// a failing lexicon costing only its own candidates).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "orth.h"
#include "support/test_util.h"

namespace {

class CompressedLex : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        sid = ORTH_OpenSession();
        ASSERT_GE(sid, 0);
    }
    void TearDown() override { closeAllSessions(); }

    // Compresses the words into dir/name and opens the result.
    int16_t openCompressed(std::vector<std::string> words, const char *name = "test.clx",
                           uint16_t language = 1033) {
        std::sort(words.begin(), words.end());
        std::string list;
        for (const std::string &w : words) list += w + "\r\n";
        writeFile(dir.file("words.txt"), list);
        path = dir.file(name);
        uint32_t line = 0;
        EXPECT_EQ(ORTH_CompressLexInit(sid, path.c_str(), nullptr, language, 0, &line), 0);
        EXPECT_EQ(ORTH_CompressLexFile(sid, dir.file("words.txt").c_str(), &line), 0);
        EXPECT_EQ(ORTH_CompressLexEnd(sid), 0);
        int16_t id = ORTH_OpenLex(sid, path.c_str(), 0);
        EXPECT_GE(id, 0);
        return id;
    }

    int16_t addText(int16_t type, const std::vector<std::string> &words) {
        int16_t id = ORTH_CreateLex(sid, nullptr, type, 1033);
        for (const std::string &w : words) EXPECT_EQ(ORTH_AddToLex(sid, id, w.c_str(), nullptr), 0);
        return id;
    }

    std::vector<std::string> suggest(const char *word, int16_t depth) {
        char buf[1024];
        int16_t scores[25];
        EXPECT_EQ(ORTH_Suggest(sid, word, depth, buf, sizeof buf, scores, 25), 0);
        std::vector<std::string> out;
        for (size_t pos = 0; buf[pos] != '\0'; pos += std::strlen(buf + pos) + 1) out.push_back(buf + pos);
        return out;
    }

    bool offers(const char *word, int16_t depth, const std::string &candidate) {
        std::vector<std::string> s = suggest(word, depth);
        return std::find(s.begin(), s.end(), candidate) != s.end();
    }

    TempDir dir;
    std::string path;
    int16_t sid = -1;
};

TEST_F(CompressedLex, CaseFormsFollowTheCaseSensitiveRetries) {
    openCompressed({"hello", "is", "word"});
    char rep[64];
    const struct { const char *word; int16_t result; } cases[] = {
        {"hello", 0}, {"Hello", 0}, {"HELLO", 0}, {"hELLO", ORTH_CHK_MISSPELLED},
        {"IS", 0}, {"Is", 0}, {"iS", ORTH_CHK_MISSPELLED}, {"words", ORTH_CHK_MISSPELLED},
    };
    for (const auto &c : cases) EXPECT_EQ(ORTH_CheckWord(sid, 0, c.word, rep, 64), c.result) << c.word;
}

TEST_F(CompressedLex, IgnoringCaseFindsEveryCaseFormHeld) {
    openCompressed({"NASA", "Paris", "abZoo", "abaa", "hello", "\xE0\xE1\xE2"});
    ORTH_SetOption(sid, ORTH_CASE_SENSITIVE_OPT, 0);
    char rep[64];
    // ABAA: the segment's case-folding walk stops at abZoo, the exact abaa does not.
    for (const char *word : {"PARIS", "paris", "nasa", "Nasa", "HELLO", "hELLO", "ABAA", "ABZOO"}) {
        EXPECT_EQ(ORTH_CheckWord(sid, 0, word, rep, 64), 0) << word;
    }
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "hellos", rep, 64), ORTH_CHK_MISSPELLED);
    // Letters without a lower-case partner (set 7) are looked up as they are.
    ORTH_SetOption(sid, ORTH_CHARSET_OPT, 7);
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "\xE0\xE1\xE2", rep, 64), 0);
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "ab\xE0", rep, 64), ORTH_CHK_MISSPELLED);
}

TEST_F(CompressedLex, ALexiconWhoseSegmentsCannotBeReadNeverAcceptsAWord) {
    LogCapture log;
    openCompressed({"tea", "the", "then"});
    // Keep only the header: every segment load now fails as a short read.
    writeFile(path, readFile(path).substr(0, 2806 + 10));
    char rep[64];
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "the", rep, 64), ORTH_CHK_MISSPELLED);
    EXPECT_STREQ(rep, "the");
    EXPECT_TRUE(log.contains("checkWord: lex 0 failed (-6); word taken as not found there"));
    addText(ORTH_IGNORE_LEX_TYPE, {"the", "ten"});
    EXPECT_EQ(ORTH_CheckWord(sid, 0, "the", rep, 64), 0);
    // Suggestions go on with the lexicons that work.
    EXPECT_EQ(suggest("teh", -1), (std::vector<std::string>{"ten", "the"}));
}

TEST_F(CompressedLex, SearchDepthsPickTheLevels) {
    openCompressed({"he", "hen", "the", "then", "to", "tea", "fone", "phony", "cat"});
    EXPECT_TRUE(offers("hte", 0, "the"));
    EXPECT_FALSE(offers("teh", 0, "the"));
    EXPECT_TRUE(offers("teh", 1, "the"));
    EXPECT_TRUE(offers("teh", -1, "the"));
    EXPECT_EQ(suggest("teh", 4), (std::vector<std::string>{"he", "to"}));  // small words only
    EXPECT_FALSE(offers("bat", 1, "cat"));
    EXPECT_TRUE(offers("bat", -1, "cat"));       // levels 1 and 2 yield nothing
    ORTH_SetOption(sid, ORTH_SUGGEST_PHONETIC_OPT, 1);
    ORTH_SetOption(sid, ORTH_SUGGEST_TYPOGRAPHICAL_OPT, 0);
    EXPECT_EQ(suggest("phone", -1), (std::vector<std::string>{"phony", "fone"}));
}

TEST_F(CompressedLex, SoundSelectionIsForEnglishLexiconsOnly) {
    openCompressed({"fone", "phony"}, "fr.clx", 1036);
    ORTH_SetOption(sid, ORTH_SUGGEST_PHONETIC_OPT, 1);
    ORTH_SetOption(sid, ORTH_SUGGEST_TYPOGRAPHICAL_OPT, 0);
    EXPECT_EQ(suggest("phone", 1), (std::vector<std::string>{"phony"}));
}

}  // namespace
