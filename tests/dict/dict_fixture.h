// tests/dict/dict_fixture.h — a small dictionary folder for the Dict tests:
// MAIN.CLX compressed from a word list, a companion MAIN.TLX, the host record
// that names them, and a test fixture over such a folder.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "orth.h"
#include "platform/platform.h"
#include "support/test_util.h"
#include "tmspl32.h"

// Writes lines with CR LF ends.
inline std::string crlfLines(const std::vector<std::string> &lines) {
    std::string out;
    for (const std::string &l : lines) out += l + "\r\n";
    return out;
}

// The host's parameter record with the three fields the library reads.
struct HostRecord {
    unsigned char bytes[512] = {};
    HostRecord(const char *mainName, int16_t language, const char *userList) {
        std::strncpy(reinterpret_cast<char *>(bytes + DICT_PARAMS_MAIN_LEX_NAME), mainName, 19);
        bytes[DICT_PARAMS_LANGUAGE] = static_cast<unsigned char>(language & 0xFF);
        bytes[DICT_PARAMS_LANGUAGE + 1] = static_cast<unsigned char>((language >> 8) & 0xFF);
        std::strncpy(reinterpret_cast<char *>(bytes + DICT_PARAMS_USER_LIST), userList, 300);
    }
};

// Compresses sorted words into path; returns the engine's result.
inline int16_t compressWords(const std::string &dir, const std::string &path,
                             const std::vector<std::string> &words) {
    std::string list = dir + "/words.txt";
    writeFile(list, crlfLines(words));
    int16_t session = ORTH_OpenSession();
    uint32_t line = 0;
    int16_t rc = ORTH_CompressLexInit(session, path.c_str(), nullptr, 1033, 0, &line);
    if (rc == 0) rc = ORTH_CompressLexFile(session, list.c_str(), &line);
    if (rc == 0) rc = ORTH_CompressLexEnd(session);
    else ORTH_CompressLexAbort(session);
    ORTH_CloseSession(session);
    std::remove(list.c_str());
    return rc;
}

inline const std::vector<std::string> &sampleWords() {
    static const std::vector<std::string> words = {
        "a", "an", "cat", "colour", "doesn't", "end", "etc", "grey", "hall", "halo",
        "hell", "hello", "help", "is", "the", "this", "world"};
    return words;
}

// MAIN.CLX of the sample words and a companion that excludes a few numbers
// and a word, so that a lookup of them shows up as a rejection.
class DictFolder : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        ASSERT_EQ(compressWords(dir.path(), dir.file("MAIN.CLX"), sampleWords()), 0);
        writeFile(dir.file("MAIN.TLX"), crlfLines({"#LID 1033 3 4", "12", "2024", "3", "4th"}));
    }
    void TearDown() override {
        platClearFaults();
        closeAllSessions();
    }
    DictHandle *open(const char *mainName = "MAIN.CLX", const char *list = "USER.DIC") {
        HostRecord rec(mainName, 2057, list);
        return DictOpen(folder.c_str(), rec.bytes, 0);
    }
    // Every suggestion DictGetNextSug hands out for the last rejected word.
    static std::vector<std::string> allSuggestions(DictHandle *h) {
        std::vector<std::string> out;
        char buf[64];
        while (DictGetNextSug(h, buf) == 1 && out.size() < 100) out.push_back(buf);
        return out;
    }
    TempDir dir;
    std::string folder = dir.path() + "/HOST.EXE";  // any file of the folder names it
};
