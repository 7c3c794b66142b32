// tests/check/lex_fixture.h — a session with lexicons built through the
// engine API, shared by the checker and suggestion tests.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "orth.h"
#include "support/test_util.h"

using Words = std::vector<std::string>;
using Ints = std::vector<int>;

class LexFixture : public ::testing::Test {
protected:
    void SetUp() override { closeAllSessions(); sid = ORTH_OpenSession(); }

    // A memory-only text lexicon; entries are "word" or "word:replacement".
    int16_t addLex(int16_t type, const Words &entries) {
        int16_t id = ORTH_CreateLex(sid, nullptr, type, 1033);
        for (const std::string &e : entries) {
            const size_t at = std::min(e.find(':'), e.size());
            EXPECT_EQ(ORTH_AddToLex(sid, id, e.substr(0, at).c_str(), at < e.size() ? &e[at + 1] : nullptr), 0) << e;
        }
        return id;
    }

    // A compressed lexicon of the words, given in byte order, built in dir and opened.
    void addCompressed(const Words &words, uint16_t language = 1033) {
        std::string list;
        for (const std::string &w : words) list += w + "\r\n";
        writeFile(dir.file("words.txt"), list);
        clxPath = dir.file("test" + std::to_string(language) + ".clx");
        uint32_t line = 0;
        EXPECT_EQ((std::vector<int>{ORTH_CompressLexInit(sid, clxPath.c_str(), nullptr, language, 0, &line),
                                    ORTH_CompressLexFile(sid, dir.file("words.txt").c_str(), &line),
                                    ORTH_CompressLexEnd(sid), ORTH_OpenLex(sid, clxPath.c_str(), 0) < 0}),
                  std::vector<int>(4, 0));
    }

    // The suggestions as "word=score", or as plain words; rc keeps the result.
    Words suggest(const char *word, int16_t depth = -1, bool withScores = true, int32_t size = 2048, uint16_t max = 25) {
        std::vector<char> buf(2048, '#');
        int16_t scores[25];
        rc = ORTH_Suggest(sid, word, depth, buf.data(), size, scores, max);
        Words out;
        for (size_t pos = 0, i = 0; size > 0 && buf[pos] != '\0'; pos += std::strlen(&buf[pos]) + 1, ++i)
            out.push_back(withScores ? std::string(&buf[pos]) + "=" + std::to_string(scores[i]) : &buf[pos]);
        return out;
    }

    void setOption(uint32_t option, uint32_t value) { ORTH_SetOption(sid, option, value); }

    TempDir dir;
    std::string clxPath;
    char rep[80];   // a replacement buffer for ORTH_CheckWord
    int16_t sid = -1, rc = 0;
};
