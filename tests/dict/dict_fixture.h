// tests/dict/dict_fixture.h — a small dictionary folder for the Dict tests:
// MAIN.CLX compressed from a word list, a companion MAIN.TLX, and the host
// record that names them.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "orth.h"
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

inline const std::vector<std::string> &sampleWords() {
    static const std::vector<std::string> words = {
        "a", "an", "cat", "colour", "doesn't", "end", "etc", "grey", "hall", "halo",
        "hell", "hello", "help", "is", "the", "this", "world"};
    return words;
}
