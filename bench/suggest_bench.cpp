// Suggestion quality and speed over about 2,000 real misspellings
// (bench/data/misspellings.txt) against the American dictionary: one
// ORTH_Suggest call per misspelling at depth -1 with 25 suggestions. Reports
// the median and 95th-percentile time of a call and the share of
// misspellings whose intended word comes first, in the first five, and
// anywhere; once with the default options and once with phonetic
// suggestions on.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "orth.h"

namespace {

const char *const kDictionary = ORTH_BINARY_DIR "/share/orth/en_US/MAIN.CLX";
const char *const kMisspellings = ORTH_SOURCE_DIR "/bench/data/misspellings.txt";

std::vector<std::pair<std::string, std::string>> loadMisspellings() {
    std::vector<std::pair<std::string, std::string>> pairs;
    std::ifstream in(kMisspellings, std::ios::binary);
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        size_t tab = line.find('\t');
        if (tab == std::string::npos) continue;
        pairs.emplace_back(line.substr(0, tab), line.substr(tab + 1));
    }
    return pairs;
}

// Rank of want among the packed suggestions, or -1.
int rankOf(const char *buffer, const std::string &want) {
    int rank = 0;
    for (const char *p = buffer; *p != '\0'; p += std::strlen(p) + 1, ++rank) {
        if (want == p) return rank;
    }
    return -1;
}

void BM_SuggestMisspellings(benchmark::State &state) {
    const bool phonetic = state.range(0) != 0;
    static const auto pairs = loadMisspellings();
    int16_t sid = ORTH_OpenSession();
    if (sid < 0 || pairs.empty() || ORTH_OpenLex(sid, kDictionary, 0) < 0) {
        state.SkipWithError("the American dictionary or the misspellings are missing");
        if (sid >= 0) ORTH_CloseSession(sid);
        return;
    }
    ORTH_SetOption(sid, ORTH_SUGGEST_PHONETIC_OPT, phonetic ? 1 : 0);
    char buffer[25 * 64 + 1];
    int16_t scores[25];
    // Load every segment once, so the timings are of the search, not the disk.
    ORTH_Suggest(sid, "warm", 3, buffer, sizeof buffer, scores, 25);

    std::vector<double> micros;
    int first = 0, topFive = 0, anywhere = 0;
    for (auto _ : state) {
        micros.clear();
        first = topFive = anywhere = 0;
        for (const auto &pair : pairs) {
            auto start = std::chrono::steady_clock::now();
            ORTH_Suggest(sid, pair.first.c_str(), -1, buffer, sizeof buffer, scores, 25);
            auto end = std::chrono::steady_clock::now();
            micros.push_back(std::chrono::duration<double, std::micro>(end - start).count());
            int rank = rankOf(buffer, pair.second);
            first += rank == 0;
            topFive += rank >= 0 && rank < 5;
            anywhere += rank >= 0;
        }
    }
    std::sort(micros.begin(), micros.end());
    const double n = static_cast<double>(pairs.size());
    state.counters["pairs"] = n;
    state.counters["median_us"] = micros[micros.size() / 2];
    state.counters["p95_us"] = micros[micros.size() * 95 / 100];
    state.counters["first_pct"] = 100.0 * first / n;
    state.counters["top5_pct"] = 100.0 * topFive / n;
    state.counters["any_pct"] = 100.0 * anywhere / n;
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(pairs.size()));
    ORTH_CloseSession(sid);
}
BENCHMARK(BM_SuggestMisspellings)->Arg(0)->Arg(1)->ArgName("phonetic")->Iterations(1)
    ->Unit(benchmark::kMillisecond);

// The call's fixed costs: a small text lexicon of six words.
void BM_SuggestSmallTextLexicon(benchmark::State &state) {
    int16_t sid = ORTH_OpenSession();
    int16_t lex = ORTH_CreateLex(sid, nullptr, ORTH_IGNORE_LEX_TYPE, 1033);
    for (const char *w : {"receive", "recipe", "relieve", "reserve", "retrieve", "recede"}) {
        ORTH_AddToLex(sid, lex, w, nullptr);
    }
    char buffer[256];
    int16_t scores[8];
    for (auto _ : state) {
        ORTH_Suggest(sid, "recieve", -1, buffer, sizeof buffer, scores, 8);
        benchmark::DoNotOptimize(buffer);
    }
    ORTH_CloseSession(sid);
}
BENCHMARK(BM_SuggestSmallTextLexicon);

}  // namespace
