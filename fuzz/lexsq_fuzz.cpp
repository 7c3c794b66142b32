// fuzz/lexsq_fuzz.cpp — the compressor over any word and suffix files. When
// a compression succeeds, the reader must find every word it was given.
#include <fuzzer/FuzzedDataProvider.h>

#include <string>
#include <vector>

#include "fuzz/fuzz_util.h"
#include "lex/clex.h"
#include "orth.h"

namespace {

// The words a word file gives the compressor: lines split at CR LF (the
// 128-byte line reader returns longer lines in pieces, which the compressor
// refuses as too long), without empty and comment lines.
std::vector<std::string> wordsOf(const std::string &text) {
    std::vector<std::string> out;
    for (size_t at = 0; at < text.size();) {
        size_t end = text.find("\r\n", at);
        std::string line = text.substr(at, end == std::string::npos ? std::string::npos : end - at);
        at = end == std::string::npos ? text.size() : end + 2;
        if (!line.empty() && line[0] != '#') out.push_back(line);
    }
    return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const std::string out = scratchFile("out.clx"), suffixes = scratchFile("suffixes.txt");
    FuzzedDataProvider in(data, size);
    uint16_t charSet = in.ConsumeIntegralInRange<uint16_t>(0, 10);
    bool withSuffixes = in.ConsumeBool();
    writeBytes(suffixes, in.ConsumeRandomLengthString(1024));
    int files = in.ConsumeIntegralInRange(1, 3);
    std::vector<std::string> texts;
    for (int i = 0; i < files; ++i) texts.push_back(in.ConsumeRandomLengthString(i + 1 < files ? 4096 : 65536));

    int16_t session = ORTH_OpenSession();
    uint32_t line = 0;
    int16_t rc = ORTH_CompressLexInit(session, out.c_str(), withSuffixes ? suffixes.c_str() : nullptr, 1033, charSet,
                                      &line);
    for (int i = 0; rc == 0 && i < files; ++i) {
        std::string name = scratchFile("words" + std::to_string(i) + ".txt");
        writeBytes(name, texts[i]);
        rc = ORTH_CompressLexFile(session, name.c_str(), &line);
    }
    if (rc == 0) rc = ORTH_CompressLexEnd(session);
    else ORTH_CompressLexAbort(session);
    ORTH_CloseSession(session);
    if (rc != 0) return 0;

    CLexState lex{};
    require(CLex_Open(out.c_str(), 0, &lex) == 0, "the compressed file opens");
    for (const std::string &text : texts) {
        for (const std::string &word : wordsOf(text)) {
            require(CLex_Lookup(word.c_str(), static_cast<int16_t>(charSet % 10), true, &lex) == 0,
                    "every compressed word is found");
        }
    }
    CLex_Close(&lex);
    return 0;
}
