// Compressed lexicon reader speed on the built American English dictionary
// (share/orth/en_US/MAIN.CLX): case-sensitive lookups of present and absent
// words with every segment resident and under a small budget, case-
// insensitive lookups, and the file's size against the plain word list.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <unordered_set>
#include <vector>

#include "lex/clex.h"
#include "orth.h"

namespace {

const std::string kDictionary = std::string(ORTH_BINARY_DIR) + "/share/orth/en_US/MAIN.CLX";
const std::string kWordList = std::string(ORTH_SOURCE_DIR) + "/data/en_US.words";

std::string slurp(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

struct Words {
    std::vector<std::string> present, absent, capitalised;
};

const Words &words() {
    static Words w = [] {
        Words out;
        std::string text = slurp(kWordList);
        for (size_t at = 0; at < text.size();) {
            size_t end = text.find("\r\n", at);
            if (end == std::string::npos) break;
            out.present.push_back(text.substr(at, end - at));
            at = end + 2;
        }
        std::unordered_set<std::string> set(out.present.begin(), out.present.end());
        for (const std::string &p : out.present) {
            std::string miss = p;
            miss.back() = miss.back() == 'z' ? 'y' : 'z';
            if (set.count(miss) == 0) out.absent.push_back(miss);
            std::string cap = p;
            if (cap[0] >= 'a' && cap[0] <= 'z') cap[0] = static_cast<char>(cap[0] - 32);
            out.capitalised.push_back(cap);
        }
        std::mt19937 rng(1);
        std::shuffle(out.present.begin(), out.present.end(), rng);
        std::shuffle(out.absent.begin(), out.absent.end(), rng);
        std::shuffle(out.capitalised.begin(), out.capitalised.end(), rng);
        return out;
    }();
    return w;
}

void runLookups(benchmark::State &state, const std::vector<std::string> &list, uint32_t budget,
                bool caseSensitive, int16_t expected) {
    auto lex = std::make_unique<CLexState>();
    if (list.empty() || CLex_Open(kDictionary.c_str(), budget, lex.get()) != 0) {
        state.SkipWithError("dictionary or word list missing; build the default target first");
        return;
    }
    for (const std::string &w : list) CLex_Lookup(w.c_str(), 0, caseSensitive, lex.get());  // warm
    size_t i = 0, wrong = 0;
    for (auto _ : state) {
        int16_t rc = CLex_Lookup(list[i].c_str(), 0, caseSensitive, lex.get());
        wrong += rc != expected;
        benchmark::DoNotOptimize(rc);
        if (++i == list.size()) i = 0;
    }
    if (wrong != 0) state.SkipWithError("unexpected lookup result");
    state.SetItemsProcessed(state.iterations());
    CLex_Close(lex.get());
}

void BM_LookupPresentResident(benchmark::State &s) { runLookups(s, words().present, 0, true, 0); }
void BM_LookupAbsentResident(benchmark::State &s) {
    runLookups(s, words().absent, 0, true, ORTH_WORD_NOT_FOUND_ERR);
}
void BM_LookupPresentBudget64K(benchmark::State &s) { runLookups(s, words().present, 64 * 1024, true, 0); }
void BM_LookupPresentBudget16K(benchmark::State &s) { runLookups(s, words().present, 16 * 1024, true, 0); }
void BM_LookupIgnoreCaseResident(benchmark::State &s) {
    auto lex = std::make_unique<CLexState>();
    if (CLex_Open(kDictionary.c_str(), 0, lex.get()) != 0) {
        s.SkipWithError("dictionary missing");
        return;
    }
    const std::vector<std::string> &list = words().capitalised;
    size_t i = 0;
    for (auto _ : s) {
        benchmark::DoNotOptimize(CLex_Lookup(list[i].c_str(), 0, false, lex.get()));
        if (++i == list.size()) i = 0;
    }
    s.SetItemsProcessed(s.iterations());
    CLex_Close(lex.get());
}

// Size of the built dictionary against the plain list (CR LF lines).
void BM_CompressedSize(benchmark::State &s) {
    double clx = static_cast<double>(slurp(kDictionary).size());
    double plain = static_cast<double>(slurp(kWordList).size());
    for (auto _ : s) benchmark::DoNotOptimize(clx);
    s.counters["clx_bytes"] = clx;
    s.counters["plain_bytes"] = plain;
    s.counters["percent_of_plain"] = plain > 0 ? 100.0 * clx / plain : 0;
}

// Compressing the whole list with the shipped suffix table.
void BM_CompressFullList(benchmark::State &s) {
    std::string out = std::string(ORTH_BINARY_DIR) + "/bench_en_US.clx";
    std::string sfx = std::string(ORTH_SOURCE_DIR) + "/data/en.suffixes";
    int16_t sid = ORTH_OpenSession();
    for (auto _ : s) {
        uint32_t line = 0;
        if (ORTH_CompressLexInit(sid, out.c_str(), sfx.c_str(), 1033, 0, &line) != 0 ||
            ORTH_CompressLexFile(sid, kWordList.c_str(), &line) != 0 || ORTH_CompressLexEnd(sid) != 0) {
            s.SkipWithError("compression failed");
            break;
        }
    }
    ORTH_CloseSession(sid);
    std::remove(out.c_str());
}

}  // namespace

BENCHMARK(BM_LookupPresentResident);
BENCHMARK(BM_LookupAbsentResident);
BENCHMARK(BM_LookupPresentBudget64K);
BENCHMARK(BM_LookupPresentBudget16K);
BENCHMARK(BM_LookupIgnoreCaseResident);
BENCHMARK(BM_CompressedSize)->Iterations(1);
BENCHMARK(BM_CompressFullList)->Unit(benchmark::kMillisecond);
