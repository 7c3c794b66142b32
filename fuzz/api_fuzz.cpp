// fuzz/api_fuzz.cpp — random sequences of engine calls with random session,
// lexicon and block ids, options, words and buffer sizes. Buffers are heap
// blocks of exactly the size the engine is told.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "fuzz/fuzz_util.h"
#include "orth.h"

namespace {

int16_t anyId(FuzzedDataProvider &in, int16_t hi) { return in.ConsumeIntegralInRange<int16_t>(-2, hi); }

// Files of the scratch folder only, restored for every input: a copy of the
// dictionary, a text lexicon, names that may be created, a missing file, a
// path near the 259-character limit, and a name from the input.
std::string anyPath(FuzzedDataProvider &in) {
    switch (in.ConsumeIntegralInRange(0, 5)) {
    case 0: return scratchFile("d.clx");
    case 1: return scratchFile("a.tlx");
    case 2: return scratchFile("api" + std::to_string(in.ConsumeIntegralInRange(0, 2)) + ".tlx");
    case 3: return scratchFile("missing.tlx");
    case 4: {
        size_t total = in.ConsumeIntegralInRange<size_t>(250, 270), dir = scratchDir().size() + 1;
        return scratchFile(std::string(total > dir ? total - dir : 1, 'p'));
    }
    default: {
        std::string name = in.ConsumeRandomLengthString(40);
        for (char &c : name) if (c == '/' || c == '\0') c = '_';
        return scratchFile("n" + name);
    }
    }
}

void restoreFiles() {
    static const std::string clx = readBytes(dictDir() + "/MAIN.CLX");
    writeBytes(scratchFile("d.clx"), clx);
    writeBytes(scratchFile("a.tlx"), std::string("#LID 1033 0 2\r\nteh:the\r\nwrold:world\r\n"));
}

void removeMadeFiles() {
    namespace fs = std::filesystem;
    std::error_code ec;
    std::vector<fs::path> made;
    for (const auto &entry : fs::directory_iterator(scratchDir(), ec))
        if (entry.is_regular_file(ec) && entry.path().filename() != "d.clx" && entry.path().filename() != "a.tlx")
            made.push_back(entry.path());
    for (const fs::path &p : made) fs::remove(p, ec);
}

std::string anyWord(FuzzedDataProvider &in) {
    if (in.ConsumeBool()) return dictWords()[in.ConsumeIntegralInRange<size_t>(0, dictWords().size() - 1)];
    return in.ConsumeRandomLengthString(300);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FuzzedDataProvider in(data, size);
    restoreFiles();
    std::vector<std::vector<char>> texts;  // borrowed block texts live to the end of the input
    for (int step = 0; step < 96 && in.remaining_bytes() > 0; ++step) {
        int16_t s = anyId(in, 17), id = anyId(in, 17);
        uint32_t n = in.ConsumeIntegralInRange<uint32_t>(0, 1400);
        std::vector<char> buf(n == 0 ? 1 : n);
        switch (in.ConsumeIntegralInRange(0, 24)) {
        case 0: ORTH_OpenSession(); break;
        case 1: ORTH_CloseSession(s); break;
        case 2: ORTH_SetOption(s, in.ConsumeBool() ? in.ConsumeIntegral<uint32_t>() : 1u << in.ConsumeIntegralInRange(0, 17),
                               in.ConsumeIntegral<uint32_t>()); break;
        case 3: ORTH_GetOption(s, in.ConsumeBool() ? ORTH_CHARSET_OPT : in.ConsumeIntegral<uint32_t>()); break;
        case 4: ORTH_OpenLex(s, anyPath(in).c_str(), in.ConsumeIntegral<uint32_t>()); break;
        case 5: {
            std::string path = anyPath(in);
            ORTH_CreateLex(s, in.ConsumeBool() ? nullptr : path.c_str(), anyId(in, 4), in.ConsumeIntegral<uint16_t>());
            break;
        }
        case 6: ORTH_CloseLex(s, id); break;
        case 7: {
            std::string w = anyWord(in), r = anyWord(in);
            ORTH_AddToLex(s, id, w.c_str(), in.ConsumeBool() ? r.c_str() : nullptr);
            break;
        }
        case 8: ORTH_DelFromLex(s, id, anyWord(in).c_str()); break;
        case 9: ORTH_ClearLex(s, id); break;
        case 10: ORTH_GetLex(s, id, buf.data(), n); break;
        case 11: {
            uint32_t sz;
            uint16_t f, t, l;
            ORTH_GetLexInfo(s, id, in.ConsumeBool() ? &sz : nullptr, &f, &t, &l);
            break;
        }
        case 12: {
            uint16_t rn = in.ConsumeIntegralInRange<uint16_t>(0, 80);
            std::vector<char> r(rn == 0 ? 1 : rn);
            ORTH_CheckWord(s, in.ConsumeIntegral<uint32_t>(), anyWord(in).c_str(), r.data(), rn);
            break;
        }
        case 13: {
            uint16_t count = in.ConsumeIntegralInRange<uint16_t>(0, 30);
            std::vector<int16_t> scores(count == 0 ? 1 : count);
            ORTH_Suggest(s, anyWord(in).c_str(), in.ConsumeIntegralInRange<int16_t>(-3, 6), buf.data(),
                         static_cast<int32_t>(n), scores.data(), count);
            break;
        }
        case 14: {
            std::string t = in.ConsumeRandomLengthString(500);
            uint32_t room = in.ConsumeIntegralInRange<uint32_t>(0, 40);
            texts.emplace_back(t.begin(), t.end());
            texts.back().resize(t.size() + room + 1);
            ORTH_OpenBlock(s, texts.back().data(), static_cast<uint32_t>(t.size()),
                           static_cast<uint32_t>(t.size()) + room, in.ConsumeBool() ? 1 : 0);
            break;
        }
        case 15: ORTH_CloseBlock(s, id); break;
        case 16: {
            uint16_t rn = in.ConsumeIntegralInRange<uint16_t>(0, 80);
            std::vector<char> r(rn == 0 ? 1 : rn);
            ORTH_CheckBlock(s, id, in.ConsumeIntegral<uint32_t>(), buf.data(), static_cast<uint16_t>(n > 0xFFFF ? 0xFFFF : n),
                            r.data(), rn);
            break;
        }
        case 17: ORTH_NextBlockWord(s, id); break;
        case 18: ORTH_GetBlockWord(s, id, buf.data(), static_cast<uint16_t>(n)); break;
        case 19: ORTH_ReplaceBlockWord(s, id, anyWord(in).c_str()); break;
        case 20: ORTH_DelBlockWord(s, id); break;
        case 21: ORTH_GetBlock(s, id, buf.data(), n); break;
        case 22: ORTH_SetBlockCursor(s, id, in.ConsumeIntegral<uint32_t>() % 600); break;
        case 23: {
            uint32_t line = 0;
            std::string words = dictDir() + "/words.txt";
            switch (in.ConsumeIntegralInRange(0, 3)) {
            case 0: ORTH_CompressLexInit(s, anyPath(in).c_str(), in.ConsumeBool() ? nullptr : anyPath(in).c_str(),
                                         in.ConsumeIntegral<uint16_t>(), in.ConsumeIntegral<uint16_t>(), &line); break;
            case 1: ORTH_CompressLexFile(s, in.ConsumeBool() ? words.c_str() : anyPath(in).c_str(), &line); break;
            case 2: ORTH_CompressLexEnd(s); break;
            default: ORTH_CompressLexAbort(s); break;
            }
            break;
        }
        default: {
            uint32_t a, b, c, d;
            ORTH_GetBlockInfo(s, id, &a, &b, &c, &d);
            break;
        }
        }
    }
    closeEverySession();
    removeMadeFiles();
    return 0;
}
