// fuzz/tlex_fuzz.cpp — the text lexicon over any file: load, then a run of
// changes, each followed by a reload that must give back what memory holds
// (words, and replacements in change lexicons).
#include <fuzzer/FuzzedDataProvider.h>

#include <cstring>
#include <string>
#include <vector>

#include "fuzz/fuzz_util.h"
#include "lex/tlex.h"
#include "orth.h"

namespace {

// The entries as the file keeps them: the word, and in a change lexicon its
// replacement.
std::vector<std::string> kept(TLexState *lex) {
    bool change = lex->type == ORTH_AUTO_CHANGE_LEX_TYPE || lex->type == ORTH_CONDITIONAL_CHANGE_LEX_TYPE;
    std::vector<std::string> out;
    for (uint32_t i = 0; i < lex->count; ++i) {
        const TLexEntry &e = lex->entries[i];
        out.push_back(std::string(e.word) + (change && e.replacement != nullptr ? ":" + std::string(e.replacement) : ""));
    }
    return out;
}

void requireReadsBack(const std::string &path, TLexState *lex) {
    TLexState again{};
    require(TLex_Open(path.c_str(), &again) == 0, "saved file opens");
    require(kept(&again) == kept(lex), "saved entries read back");
    require(again.type == lex->type && again.language == lex->language, "type and language read back");
    TLex_Close(&again);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const std::string path = scratchFile("input.tlx");
    FuzzedDataProvider in(data, size);
    std::string file = in.ConsumeRandomLengthString(4096);
    writeBytes(path, file);
    TLexState lex{};
    if (TLex_Open(path.c_str(), &lex) != 0) {
        TLex_Close(&lex);
        return 0;
    }
    // What the file held is memory after a save: the first change saves it.
    for (int step = 0; step < 16 && in.remaining_bytes() > 0; ++step) {
        std::string word = in.ConsumeRandomLengthString(90);
        std::string replacement = in.ConsumeRandomLengthString(90);
        int16_t rc = 0;
        switch (in.ConsumeIntegralInRange(0, 5)) {
        case 0: case 1: rc = TLex_Add(&lex, word.c_str(), in.ConsumeBool() ? replacement.c_str() : nullptr); break;
        case 2: rc = TLex_Delete(&lex, word.c_str()); break;
        case 3: rc = TLex_Clear(&lex); break;
        case 4: {
            char out[64];
            TLex_Lookup(&lex, word.c_str(), static_cast<int16_t>(in.ConsumeIntegralInRange(0, 9)), in.ConsumeBool(),
                        out, static_cast<uint16_t>(in.ConsumeIntegralInRange(0, 64)));
            continue;
        }
        default: {
            uint32_t need = 0;
            TLex_GetImageSize(&lex, &need);
            std::vector<char> image(need);
            require(TLex_GetImage(&lex, image.data(), need) == static_cast<int32_t>(lex.count), "image fits its size");
            if (need > 1) require(TLex_GetImage(&lex, image.data(), need - 1) < 0, "one byte less is refused");
            continue;
        }
        }
        if (rc == 0) requireReadsBack(path, &lex);
    }
    TLex_Close(&lex);
    return 0;
}
