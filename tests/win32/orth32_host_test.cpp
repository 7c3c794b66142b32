// tests/win32/orth32_host_test.cpp — ORTH32.DLL as a Windows host uses it:
// loaded by name beside the program, every engine function looked up by its
// plain name and called with the header's convention.
// Groups: the exports and both DLLs' version resources; sessions and the
// log in text mode (CR LF); the compressor, and checking and suggesting
// against what it wrote; a text lexicon's file; a text block walked,
// corrected and copied back.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "host.h"
#include "orth.h"

namespace {

// Every function of the engine API, by name.
#define ORTH32_ENGINE_FUNCTIONS(X)                                                                         \
    X(ORTH_OpenSession) X(ORTH_CloseSession) X(ORTH_Version) X(resultCodeName) X(ORTH_SetOption)          \
    X(ORTH_GetOption) X(ORTH_OpenLex) X(ORTH_CreateLex) X(ORTH_CloseLex) X(ORTH_AddToLex)                 \
    X(ORTH_DelFromLex) X(ORTH_ClearLex) X(ORTH_GetLex) X(ORTH_GetLexInfo) X(ORTH_SetDebugFile)            \
    X(ORTH_CompressLexInit) X(ORTH_CompressLexFile) X(ORTH_CompressLexEnd) X(ORTH_CompressLexAbort)       \
    X(ORTH_CheckWord) X(ORTH_Suggest) X(ORTH_OpenBlock) X(ORTH_CloseBlock) X(ORTH_CheckBlock)             \
    X(ORTH_NextBlockWord) X(ORTH_GetBlockWord) X(ORTH_ReplaceBlockWord) X(ORTH_DelBlockWord)              \
    X(ORTH_GetBlock) X(ORTH_GetBlockInfo) X(ORTH_SetBlockCursor)

struct EngineApi {
    HOST_IMPORTS(ORTH32_ENGINE_FUNCTIONS)
};

class EngineHost : public ::testing::Test {
protected:
    static void SetUpTestSuite() { dll = new Dll("ORTH32.DLL"); }
    static void TearDownTestSuite() { delete dll; }
    void SetUp() override {
        ASSERT_NE(dll->module(), nullptr) << "ORTH32.DLL not loaded: " << GetLastError();
        api.load(*dll);
        ASSERT_TRUE(api.missing.empty()) << api.missing.front();
        ASSERT_FALSE(work.path().empty());
        sid = api.ORTH_OpenSession();
        ASSERT_GE(sid, 0);
    }
    void TearDown() override {
        api.ORTH_SetDebugFile(nullptr);
        for (int16_t id = 0; id < 16; ++id) api.ORTH_CloseSession(id);
    }
    std::vector<std::string> suggest(const char *word, std::vector<int16_t> *scores = nullptr) {
        char list[1250] = {};
        int16_t s[25] = {};
        std::vector<std::string> out;
        if (api.ORTH_Suggest(sid, word, -1, list, sizeof list, s, 25) < 0) return out;
        for (int at = 0; list[at] != '\0' && out.size() < 25; at += int(std::strlen(list + at)) + 1) {
            if (scores != nullptr) scores->push_back(s[out.size()]);
            out.push_back(list + at);
        }
        return out;
    }

    static Dll *dll;
    EngineApi api;
    WorkFolder work;
    int16_t sid = -1;
    char repl[64] = {};
};

Dll *EngineHost::dll = nullptr;

TEST_F(EngineHost, VersionNamesAndTheVersionResources) {
    uint16_t major = 0, minor = 0;
    api.ORTH_Version(&major, &minor);
    EXPECT_EQ(major, 4);
    EXPECT_EQ(minor, 21);
    EXPECT_STREQ(api.resultCodeName(0), "Ok.");
    EXPECT_STREQ(api.resultCodeName(ORTH_BAD_BLOCK_ID_ERR), "ORTH_BAD_BLOCK_ID_ERR");
    for (const char *name : {"TMSPL32", "ORTH32"}) {
        const std::string path = programFolder() + name + ".DLL";
        EXPECT_EQ(versionString(path, "FileVersion"), ORTH_PROJECT_VERSION) << name;
        EXPECT_EQ(versionString(path, "OriginalFilename"), std::string(name) + ".DLL");
    }
}

TEST_F(EngineHost, SixteenSessionsAndTheLogWrittenInTextMode) {
    const std::string logPath = work.file("engine.log");
    api.ORTH_SetDebugFile(logPath.c_str());
    for (int16_t i = 1; i < 16; ++i) EXPECT_EQ(api.ORTH_OpenSession(), i);
    EXPECT_EQ(api.ORTH_OpenSession(), ORTH_TOO_MANY_SESSIONS_ERR);
    EXPECT_EQ(api.ORTH_CloseSession(3), 0);
    EXPECT_EQ(api.ORTH_OpenSession(), 3);
    EXPECT_EQ(api.ORTH_CloseSession(16), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_EQ(api.ORTH_SetOption(sid, ORTH_LANGUAGE_OPT, 2057), 1033);  // the value it had
    EXPECT_EQ(api.ORTH_GetOption(sid, ORTH_LANGUAGE_OPT), 2057);
    EXPECT_EQ(api.ORTH_GetOption(sid, ORTH_CASE_SENSITIVE_OPT), 1);
    api.ORTH_SetDebugFile(nullptr);
    const std::string log = fileBytes(logPath);
    for (const char *line : {"ORTH_OpenSession: too many sessions\r\n", "ORTH_CloseSession: Session 3 closed\r\n",
                             "ORTH_CloseSession: bad session id 16\r\n"})
        EXPECT_NE(log.find(line), std::string::npos) << line;
    EXPECT_EQ(log.find("\n\n"), std::string::npos);  // every line break is CR LF
    EXPECT_NE(log.find("Debugging stopped at "), std::string::npos);
}

TEST_F(EngineHost, CompressesAWordListThenChecksAndSuggestsFromIt) {
    const std::string words = work.file("words.txt"), clx = work.file("SMALL.CLX");
    writeBytes(words, "apple\r\napples\r\nbanana\r\ncherry\r\ngrape\r\nlemon\r\nmelon\r\norange\r\n");
    uint32_t line = 0;
    ASSERT_EQ(api.ORTH_CompressLexInit(sid, clx.c_str(), nullptr, 1033, 0, &line), 0);
    ASSERT_EQ(api.ORTH_CompressLexFile(sid, words.c_str(), &line), 0) << line;
    ASSERT_EQ(api.ORTH_CompressLexEnd(sid), 0);

    int16_t lex = api.ORTH_OpenLex(sid, clx.c_str(), 0);
    ASSERT_EQ(lex, 0);
    uint32_t size = 0;
    uint16_t format = 9, type = 9, language = 0;
    EXPECT_EQ(api.ORTH_GetLexInfo(sid, lex, &size, &format, &type, &language), 0);
    EXPECT_EQ(format, ORTH_COMPRESSED_LEX_FORMAT);
    EXPECT_EQ(language, 1033);
    for (const char *w : {"apple", "apples", "melon", "orange"})
        EXPECT_EQ(api.ORTH_CheckWord(sid, 0, w, repl, sizeof repl), 0) << w;
    EXPECT_EQ(api.ORTH_CheckWord(sid, 0, "lemonn", repl, sizeof repl), ORTH_CHK_MISSPELLED);
    std::vector<int16_t> scores;
    std::vector<std::string> sugs = suggest("bananna", &scores);
    ASSERT_FALSE(sugs.empty());
    EXPECT_EQ(sugs[0], "banana");
    EXPECT_GE(scores[0], 70);
    EXPECT_EQ(api.ORTH_AddToLex(sid, lex, "kiwi", nullptr), ORTH_READ_ONLY_LEXICON_ERR);

    // Out-of-order input is refused with its line number; a later run works.
    writeBytes(words, "pear\r\nfig\r\n");
    ASSERT_EQ(api.ORTH_CompressLexInit(sid, work.file("BAD.CLX").c_str(), nullptr, 1033, 0, &line), 0);
    EXPECT_EQ(api.ORTH_CompressLexFile(sid, words.c_str(), &line), ORTH_WORD_ORDER_ERR);
    EXPECT_EQ(line, 2u);
    api.ORTH_CompressLexAbort(sid);
    EXPECT_EQ(api.ORTH_CompressLexFile(sid, words.c_str(), &line), ORTH_UNSUPPORTED_ACTION_ERR);
    EXPECT_EQ(api.ORTH_CloseLex(sid, lex), 0);
    EXPECT_EQ(api.ORTH_CloseLex(sid, lex), ORTH_BAD_LEXICON_ID_ERR);
}

TEST_F(EngineHost, TextLexiconFileFollowsEveryChange) {
    const std::string path = work.file("USER.TLX");
    int16_t lex = api.ORTH_CreateLex(sid, path.c_str(), ORTH_IGNORE_LEX_TYPE, 1033);
    ASSERT_EQ(lex, 0);
    EXPECT_EQ(api.ORTH_CreateLex(sid, path.c_str(), ORTH_IGNORE_LEX_TYPE, 1033), ORTH_LEXICON_EXISTS_ERR);
    for (const char *w : {"zebra", "aardvark", "mongoose"}) EXPECT_EQ(api.ORTH_AddToLex(sid, lex, w, nullptr), 0);
    EXPECT_EQ(api.ORTH_DelFromLex(sid, lex, "mongoose"), 0);
    EXPECT_EQ(api.ORTH_DelFromLex(sid, lex, "mongoose"), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_EQ(fileBytes(path), "#LID 1033 1 2\r\naardvark\r\nzebra\r\n");
    char image[64] = {};
    EXPECT_GE(api.ORTH_GetLex(sid, lex, image, sizeof image), 0);
    EXPECT_EQ(std::string(image, 16), std::string("aardvark\0zebra\0\0", 16));
    EXPECT_EQ(api.ORTH_CheckWord(sid, 0, "zebra", repl, sizeof repl), 0);
    EXPECT_EQ(api.ORTH_ClearLex(sid, lex), 0);
    EXPECT_EQ(fileBytes(path), "#LID 1033 1 0\r\n");
    EXPECT_EQ(api.ORTH_OpenLex(sid, work.file("MISSING.TLX").c_str(), 0), ORTH_FILE_NOT_FOUND_ERR);
}

TEST_F(EngineHost, BlockWalkedCorrectedAndCopiedBack) {
    ASSERT_EQ(api.ORTH_OpenLex(sid, (dictionaryFolder() + "MAIN.CLX").c_str(), 0), 0);
    std::vector<char> text(64, '\0');
    std::strcpy(text.data(), "The cat sat on on teh mat.");
    int16_t block = api.ORTH_OpenBlock(sid, text.data(), uint32_t(std::strlen(text.data())), 64, 0);
    ASSERT_EQ(block, 0);
    char word[64] = {};
    std::vector<std::string> stops;
    for (int16_t r; stops.size() < 10 && (r = api.ORTH_CheckBlock(sid, block, ORTH_REPORT_DOUBLED_WORDS_OPT, word,
                                                                  sizeof word, repl, sizeof repl)) !=
                                            ORTH_CHK_END_OF_BLOCK;) {
        ASSERT_GT(r, 0) << word;
        stops.push_back(word + (":" + std::to_string(r)));
        if (r & ORTH_CHK_DOUBLED_WORD) {
            EXPECT_EQ(api.ORTH_DelBlockWord(sid, block), 0);
        } else {
            std::vector<std::string> sugs = suggest(word);
            EXPECT_NE(std::find(sugs.begin(), sugs.end(), "the"), sugs.end());
            EXPECT_EQ(api.ORTH_ReplaceBlockWord(sid, block, "the"), 0);
            if (api.ORTH_NextBlockWord(sid, block) != 0) break;
        }
    }
    EXPECT_EQ(stops, (std::vector<std::string>{"on:128", "teh:1"}));
    const std::string fixed = "The cat sat on the mat.";
    uint32_t length = 0, size = 0, cursor = 0, count = 0;
    EXPECT_EQ(api.ORTH_GetBlockInfo(sid, block, &length, &size, &cursor, &count), 0);
    EXPECT_EQ(length, fixed.size());
    EXPECT_EQ(count, 6u);
    EXPECT_EQ(std::string(text.data()), fixed);  // edited in place
    char copy[64] = {};
    EXPECT_GE(api.ORTH_GetBlock(sid, block, copy, sizeof copy), 0);
    EXPECT_EQ(copy, fixed);
    EXPECT_EQ(api.ORTH_SetBlockCursor(sid, block, 4), 0);
    EXPECT_EQ(api.ORTH_GetBlockWord(sid, block, word, sizeof word), ' ');  // the byte after the word
    EXPECT_STREQ(word, "cat");
    EXPECT_EQ(api.ORTH_CloseBlock(sid, block), 0);
    EXPECT_EQ(api.ORTH_CloseBlock(sid, block), ORTH_BAD_BLOCK_ID_ERR);
}

}  // namespace
