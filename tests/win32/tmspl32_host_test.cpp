// tests/win32/tmspl32_host_test.cpp — TMSPL32.DLL as a Windows host uses it:
// loaded by name beside the program, its five functions looked up by their
// plain names, over a copy of the built-in American English dictionary.
// Groups: checking (the number and full-stop filter, the user-language
// letter test); suggestions, which must be the engine's own list cut at the
// first score below 70 (ORTH32.DLL asked alongside); the user word list
// across close and reopen, byte for byte; sixteen handles at most.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "host.h"
#include "orth.h"
#include "tmspl32.h"

namespace {

#define TMSPL32_FUNCTIONS(X) X(DictOpen) X(DictClose) X(DictCheckWord) X(DictGetNextSug) X(DictAddWord)

struct DictApi {
    HOST_IMPORTS(TMSPL32_FUNCTIONS)
};

class DictHost : public ::testing::Test {
protected:
    static void SetUpTestSuite() { dll = new Dll("TMSPL32.DLL"); }
    static void TearDownTestSuite() { delete dll; }

    void SetUp() override {
        ASSERT_NE(dll->module(), nullptr) << "TMSPL32.DLL not loaded: " << GetLastError();
        api.load(*dll);
        ASSERT_TRUE(api.missing.empty()) << api.missing.front();
        ASSERT_FALSE(work.path().empty());
        for (const char *name : {"MAIN.CLX", "MAIN.TLX"})
            ASSERT_TRUE(CopyFileA((dictionaryFolder() + name).c_str(), work.file(name).c_str(), FALSE))
                << dictionaryFolder() << name;
        // The host's record: main lexicon name at 88, language at 108, user
        // word list name at 154.
        std::memcpy(record + DICT_PARAMS_MAIN_LEX_NAME, "MAIN.CLX", 9);
        record[DICT_PARAMS_LANGUAGE] = 1033 & 0xFF;
        record[DICT_PARAMS_LANGUAGE + 1] = 1033 >> 8;
        std::memcpy(record + DICT_PARAMS_USER_LIST, "USER.DIC", 9);
    }

    DictHandle *open() { return api.DictOpen(work.path().c_str(), record, 0); }

    std::vector<std::string> suggestions(DictHandle *h) {
        std::vector<std::string> out;
        char buffer[64];
        while (out.size() < 30 && api.DictGetNextSug(h, buffer) == 1) out.push_back(buffer);
        return out;
    }

    static Dll *dll;
    DictApi api;
    WorkFolder work;
    unsigned char record[256] = {};
};

Dll *DictHost::dll = nullptr;

TEST_F(DictHost, ChecksWordsAfterTheNumberAndFullStopFilter) {
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    struct Case {
        const char *word;
        int32_t result;
    } cases[] = {
        {"hello", 0}, {"grey", 0}, {"etc.", 0}, {"recieve", 1}, {"colour", 1},
        {"", 0}, {"2024", 0}, {"12.", 0}, {"7%", 0}, {"3-", 0},
        {"12a", 1},     // digits then a letter: looked up
        {"3\xE9", 1},   // e acute is a letter in the user's code page: looked up
        {"hello..", 1},  // only one full stop goes
    };
    for (const Case &c : cases) EXPECT_EQ(api.DictCheckWord(h, c.word), c.result) << c.word;
    EXPECT_EQ(api.DictClose(h), 1);
}

// The engine's suggestions for a word, from ORTH32.DLL in a session holding
// the same three lexicons in the same order as a Dict handle's.
std::vector<std::pair<std::string, int16_t>> engineSuggestions(const std::string &folder, const char *word) {
    Dll orth("ORTH32.DLL");
    auto openSession = orth.fn<decltype(&ORTH_OpenSession)>("ORTH_OpenSession");
    auto closeSession = orth.fn<decltype(&ORTH_CloseSession)>("ORTH_CloseSession");
    auto openLex = orth.fn<decltype(&ORTH_OpenLex)>("ORTH_OpenLex");
    auto createLex = orth.fn<decltype(&ORTH_CreateLex)>("ORTH_CreateLex");
    auto suggest = orth.fn<decltype(&ORTH_Suggest)>("ORTH_Suggest");
    std::vector<std::pair<std::string, int16_t>> out;
    if (!openSession || !closeSession || !openLex || !createLex || !suggest) return out;
    int16_t sid = openSession();
    if (openLex(sid, (folder + "MAIN.TLX").c_str(), 0xFFFFFFFF) == 0 &&
        createLex(sid, nullptr, ORTH_IGNORE_LEX_TYPE, 1033) == 1 &&
        openLex(sid, (folder + "MAIN.CLX").c_str(), 0xFFFFFFFF) == 2) {
        char list[1250] = {};
        int16_t scores[25] = {};
        if (suggest(sid, word, -1, list, sizeof list, scores, 25) >= 0)
            for (int at = 0, n = 0; list[at] != '\0' && n < 25; at += int(std::strlen(list + at)) + 1, ++n)
                out.emplace_back(list + at, scores[n]);
    }
    closeSession(sid);
    return out;
}

// The words cover the three ways a list can end: cut between a suggestion
// scored 70 or more and one below (qwertyuiop: at 70 and 69), empty because
// even the best scores below 70, and all 25 kept.
TEST_F(DictHost, SuggestionsAreTheEnginesCutBelowSeventy) {
    const char *words[] = {"recieve", "qwertyuiop", "zyxwv", "onomatopoeiaa", "xqzjkvw",
                           "antidisestablishmentarianism"};
    int cutInside = 0, noneKept = 0, allKept = 0;
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    char buffer[64];
    EXPECT_EQ(api.DictGetNextSug(h, buffer), 0);  // nothing pending after the open
    for (const char *word : words) {
        auto engine = engineSuggestions(work.path(), word);
        ASSERT_FALSE(engine.empty()) << word;
        std::vector<std::string> want;
        for (const auto &s : engine) {
            if (s.second < 70) break;
            want.push_back(s.first);
        }
        cutInside += !want.empty() && want.size() < engine.size();
        noneKept += want.empty();
        allKept += want.size() == engine.size();
        EXPECT_EQ(api.DictCheckWord(h, word), 1) << word;
        EXPECT_EQ(suggestions(h), want) << word;
        // Exhausted until another word is rejected; an accepted word changes nothing.
        EXPECT_EQ(api.DictCheckWord(h, "hello"), 0);
        EXPECT_EQ(api.DictGetNextSug(h, buffer), 0) << word;
    }
    EXPECT_GT(cutInside, 0);
    EXPECT_GT(noneKept, 0);
    EXPECT_GT(allKept, 0);
    EXPECT_EQ(api.DictClose(h), 1);
}

TEST_F(DictHost, UserWordsSurviveCloseAndReopenInTheListFile) {
    const std::string list = work.file("USER.DIC");
    writeBytes(list, std::string("\x01\x00\x03qqx", 6));
    DictHandle *h = open();
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(api.DictCheckWord(h, "qqx"), 0);  // loaded from the list
    EXPECT_EQ(api.DictCheckWord(h, "zorblax"), 1);
    EXPECT_EQ(api.DictAddWord(h, "zorblax"), 0);
    EXPECT_EQ(api.DictCheckWord(h, "zorblax"), 0);
    EXPECT_EQ(api.DictClose(h), 1);
    const std::string saved("\x02\x00\x03qqx\x07zorblax", 14);  // ascending byte order
    EXPECT_EQ(fileBytes(list), saved);

    h = open();
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(api.DictCheckWord(h, "zorblax"), 0);
    EXPECT_EQ(api.DictCheckWord(h, "qqx"), 0);
    EXPECT_EQ(api.DictClose(h), 1);
    EXPECT_EQ(fileBytes(list), saved);
}

// Each handle holds one of the DLL's own 16 sessions; ORTH32.DLL, loaded in
// the same process, keeps a session table of its own.
TEST_F(DictHost, SixteenHandlesAtMostAndAnEmptyListSaved) {
    std::vector<DictHandle *> handles;
    for (int i = 0; i < 16; ++i) {
        handles.push_back(open());
        ASSERT_NE(handles.back(), nullptr) << i;
    }
    EXPECT_EQ(open(), nullptr);
    Dll orth("ORTH32.DLL");
    auto openSession = orth.fn<decltype(&ORTH_OpenSession)>("ORTH_OpenSession");
    ASSERT_NE(openSession, nullptr);
    int16_t sid = openSession();
    EXPECT_EQ(sid, 0);
    orth.fn<decltype(&ORTH_CloseSession)>("ORTH_CloseSession")(sid);

    EXPECT_EQ(api.DictClose(handles[5]), 1);
    handles[5] = open();
    EXPECT_NE(handles[5], nullptr);
    for (DictHandle *h : handles) EXPECT_EQ(api.DictClose(h), 1);
    EXPECT_EQ(fileBytes(work.file("USER.DIC")), std::string("\x00\x00", 2));
}

}  // namespace
