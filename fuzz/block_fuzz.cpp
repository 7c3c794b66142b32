// fuzz/block_fuzz.cpp — text blocks over any text: the scanner and
// ORTH_CheckBlock with random edits, cursors and buffer sizes. Every buffer
// the engine writes is a heap block of exactly the size it is told, so the
// sanitizer sees any byte written past it.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstring>
#include <string>
#include <vector>

#include "fuzz/fuzz_util.h"
#include "orth.h"

namespace {

// A session with the dictionary and a change lexicon (teh -> the).
int16_t openSession(uint32_t options, int16_t charSet) {
    int16_t s = ORTH_OpenSession();
    ORTH_SetOption(s, ORTH_CHARSET_OPT, static_cast<uint32_t>(charSet));
    for (uint32_t bit = 1; bit <= ORTH_MATCH_CASE_OPT; bit <<= 1) ORTH_SetOption(s, bit, (options & bit) != 0);
    int16_t change = ORTH_CreateLex(s, nullptr, ORTH_AUTO_CHANGE_LEX_TYPE, 1033);
    ORTH_AddToLex(s, change, "teh", "the");
    ORTH_AddToLex(s, change, "recieve", "receive and more than sixty-three characters of replacement text!");
    ORTH_OpenLex(s, (dictDir() + "/MAIN.CLX").c_str(), 0);
    return s;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FuzzedDataProvider in(data, size);
    int16_t s = openSession(in.ConsumeIntegral<uint32_t>(), static_cast<int16_t>(in.ConsumeIntegralInRange(0, 9)));
    uint16_t copy = in.ConsumeBool() ? 1 : 0;
    uint32_t room = in.ConsumeIntegralInRange<uint32_t>(0, 80);
    std::string text = in.ConsumeRandomLengthString(2048);
    std::vector<char> buffer(text.begin(), text.end());
    buffer.resize(text.size() + room + 1);  // never empty: data() is a real buffer
    auto length = static_cast<uint32_t>(text.size());
    int16_t block = ORTH_OpenBlock(s, buffer.data(), length, length + room, copy);
    for (int step = 0; block >= 0 && step < 64 && in.remaining_bytes() > 0; ++step) {
        uint16_t n = in.ConsumeIntegralInRange<uint16_t>(0, 80);
        std::vector<char> out(n == 0 ? 1 : n), repl(in.ConsumeIntegralInRange<uint16_t>(1, 80));
        switch (in.ConsumeIntegralInRange(0, 8)) {
        case 0: case 1: {
            int16_t rc = ORTH_CheckBlock(s, block, in.ConsumeIntegral<uint32_t>(), out.data(), n, repl.data(),
                                         static_cast<uint16_t>(repl.size()));
            require(rc < 0 || (rc & ~0xFF) == 0, "block result is a code or flags");
            break;
        }
        case 2: ORTH_NextBlockWord(s, block); break;
        case 3: ORTH_GetBlockWord(s, block, out.data(), n); break;
        case 4: ORTH_ReplaceBlockWord(s, block, in.ConsumeRandomLengthString(90).c_str()); break;
        case 5: ORTH_DelBlockWord(s, block); break;
        case 6: ORTH_SetBlockCursor(s, block, in.ConsumeIntegralInRange<uint32_t>(0, length + room + 4)); break;
        case 7: {
            std::vector<char> whole(in.ConsumeIntegralInRange<uint32_t>(1, length + room + 2));
            ORTH_GetBlock(s, block, whole.data(), static_cast<uint32_t>(whole.size()));
            break;
        }
        default: break;
        }
        uint32_t len = 0, cap = 0, cursor = 0, words = 0;
        require(ORTH_GetBlockInfo(s, block, &len, &cap, &cursor, &words) == 0, "block info");
        require(len <= cap && cursor <= len, "length within size, cursor within text");
    }
    ORTH_CloseSession(s);
    return 0;
}
