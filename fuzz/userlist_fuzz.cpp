// fuzz/userlist_fuzz.cpp — the user word list behind DictOpen: any file as
// USER.DIC, a few checks, an added word, DictClose; the list written must be
// a whole one (its count of records and nothing after them) holding the word.
#include <cstring>
#include <string>

#include "fuzz/fuzz_util.h"
#include "orth.h"
#include "tmspl32.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const std::string list = dictDir() + "/USER.DIC", folder = dictDir() + "/HOST.EXE";
    writeBytes(list, data, size);
    unsigned char record[512] = {};
    std::strcpy(reinterpret_cast<char *>(record + DICT_PARAMS_MAIN_LEX_NAME), "MAIN.CLX");
    record[DICT_PARAMS_LANGUAGE] = 0x09;
    record[DICT_PARAMS_LANGUAGE + 1] = 0x04;
    std::strcpy(reinterpret_cast<char *>(record + DICT_PARAMS_USER_LIST), "USER.DIC");
    DictHandle *h = DictOpen(folder.c_str(), record, 0);
    require(h != nullptr, "DictOpen over the dictionary folder");
    char sug[64];
    for (const std::string &w : probeWords(data, size)) {
        if (DictCheckWord(h, w.c_str()) == 1) DictGetNextSug(h, sug);
    }
    DictAddWord(h, "zyzzyva");
    require(DictClose(h) == 1, "DictClose");
    std::string bytes = readBytes(list);
    require(bytes.size() >= 2, "list has its count");
    size_t count = static_cast<unsigned char>(bytes[0]) | static_cast<unsigned char>(bytes[1]) << 8, at = 2;
    bool found = false;
    for (size_t n = 0; n < count; ++n) {
        require(at < bytes.size() && at + 1 + static_cast<unsigned char>(bytes[at]) <= bytes.size(), "whole records");
        size_t len = static_cast<unsigned char>(bytes[at]);
        found |= bytes.compare(at + 1, len, "zyzzyva") == 0 && len == 7;
        at += 1 + len;
    }
    require(at == bytes.size(), "nothing after the records");
    require(found, "the added word is saved");
    return 0;
}
