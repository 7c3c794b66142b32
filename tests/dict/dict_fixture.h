// tests/dict/dict_fixture.h — a small dictionary folder for the Dict tests:
// MAIN.CLX compressed from a word list, a companion MAIN.TLX, and a test
// fixture that opens handles over such a folder with a host record.
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
    static const std::vector<std::string> words = {"a", "an", "cat", "colour", "doesn't", "end", "etc",
        "grey", "hall", "halo", "hell", "hello", "help", "is", "the", "this", "world"};
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
    // A handle over folder with a host record naming the main lexicon, the
    // language 2057 (0x0809) and the user word list.
    DictHandle *open(const char *mainName = "MAIN.CLX", const char *list = "USER.DIC") {
        unsigned char record[512] = {};
        std::strncpy(reinterpret_cast<char *>(record + DICT_PARAMS_MAIN_LEX_NAME), mainName, 19);
        record[DICT_PARAMS_LANGUAGE] = 0x09;
        record[DICT_PARAMS_LANGUAGE + 1] = 0x08;
        std::strncpy(reinterpret_cast<char *>(record + DICT_PARAMS_USER_LIST), list, 300);
        return DictOpen(folder.c_str(), record, 0);
    }
    // The suggestions DictGetNextSug hands out, at most max of them.
    static std::vector<std::string> suggestions(DictHandle *h, size_t max = 100) {
        std::vector<std::string> out;
        char buf[64];
        while (out.size() < max && DictGetNextSug(h, buf) == 1) out.push_back(buf);
        return out;
    }
    TempDir dir;
    std::string folder = dir.path() + "/HOST.EXE";  // any file of the folder names it
};
