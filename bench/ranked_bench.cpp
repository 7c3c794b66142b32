// The ranked suggester beside the defined one and GNU Aspell, on the same
// misspellings and the same vocabulary (data/en_US.words) in one run:
// the share of misspellings whose intended word comes first, in the first
// five and anywhere in 25 suggestions, and the median and 95th-percentile
// time of one call, measured as the calling thread's CPU time so that a
// busy machine does not blur the ratios. Two sets: bench/data/misspellings.txt
// (what the ranking was tuned on) and the held-out pairs that
// bench/make_heldout.py writes to build/bench/heldout.txt (skipped when
// absent). Aspell takes part when the bench was built with its library and
// the aspell program can make a master dictionary of the vocabulary.
//
// BM_RankedLoadAndMemory: the dictionary's open time, the ranked
// suggester's first call (which builds its index) and the heap each
// suggester holds after the dictionary's first suggestion.
//
// Run: build/bench/orth_bench --benchmark_filter='Suggesters|RankedLoad'
#include <benchmark/benchmark.h>

#include <malloc.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "orth.h"

#ifdef ORTH_BENCH_ASPELL
#include <aspell.h>
#endif

namespace {

const char *const kDictionary = ORTH_BINARY_DIR "/share/orth/en_US/MAIN.CLX";
const char *const kWords = ORTH_SOURCE_DIR "/data/en_US.words";
const char *const kSets[2] = {ORTH_SOURCE_DIR "/bench/data/misspellings.txt", ORTH_BINARY_DIR "/bench/heldout.txt"};
constexpr int kMax = 25;

using Pairs = std::vector<std::pair<std::string, std::string>>;
using Suggester = std::function<std::vector<std::string>(const std::string &)>;

Pairs loadPairs(const char *path) {
    Pairs pairs;
    std::ifstream in(path, std::ios::binary);
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        size_t tab = line.find('\t');
        if (tab != std::string::npos) pairs.emplace_back(line.substr(0, tab), line.substr(tab + 1));
    }
    return pairs;
}

double threadMicros() {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return t.tv_sec * 1e6 + t.tv_nsec / 1e3;
}

size_t heapInUse() {
    struct mallinfo2 m = mallinfo2();
    return m.uordblks + m.hblkhd;
}

std::vector<std::string> unpack(const char *buffer) {
    std::vector<std::string> out;
    for (const char *p = buffer; *p != '\0'; p += std::strlen(p) + 1) out.emplace_back(p);
    return out;
}

// An orth session over the built-in American dictionary.
struct OrthSession {
    int16_t sid = ORTH_OpenSession();
    bool ok = sid >= 0 && ORTH_OpenLex(sid, kDictionary, 0) >= 0;
    ~OrthSession() { if (sid >= 0) ORTH_CloseSession(sid); }
    std::vector<std::string> defined(const std::string &w) const {
        char buf[kMax * 64 + 1];
        int16_t scores[kMax];
        ORTH_Suggest(sid, w.c_str(), -1, buf, sizeof buf, scores, kMax);
        return unpack(buf);
    }
    std::vector<std::string> ranked(const std::string &w) const {
        char buf[kMax * 64 + 1];
        int16_t scores[kMax];
        ORTH_SuggestRanked(sid, w.c_str(), buf, sizeof buf, scores, kMax);
        return unpack(buf);
    }
};

#ifdef ORTH_BENCH_ASPELL
// Aspell with a master dictionary made from data/en_US.words in a temporary folder.
struct AspellPeer {
    AspellSpeller *speller = nullptr;
    std::string folder;
    AspellPeer() {
        char tmpl[] = "/tmp/orth-aspell-XXXXXX";
        if (mkdtemp(tmpl) == nullptr) return;
        folder = tmpl;
        std::string cmd = "tr -d '\\r' < '" + std::string(kWords) + "' | aspell --lang=en --encoding=iso-8859-1 " +
                          "create master '" + folder + "/en_US.rws' 2>/dev/null";
        if (std::system(cmd.c_str()) != 0) return;
        AspellConfig *config = new_aspell_config();
        aspell_config_replace(config, "master", (folder + "/en_US.rws").c_str());
        aspell_config_replace(config, "encoding", "iso-8859-1");
        AspellCanHaveError *made = new_aspell_speller(config);
        delete_aspell_config(config);
        if (aspell_error_number(made) == 0) speller = to_aspell_speller(made);
        else delete_aspell_can_have_error(made);
    }
    ~AspellPeer() {
        if (speller != nullptr) delete_aspell_speller(speller);
        if (!folder.empty()) std::system(("rm -rf '" + folder + "'").c_str());
    }
    std::vector<std::string> suggest(const std::string &w) const {
        std::vector<std::string> out;
        AspellStringEnumeration *e = aspell_word_list_elements(aspell_speller_suggest(speller, w.c_str(), -1));
        for (const char *s; (s = aspell_string_enumeration_next(e)) != nullptr && out.size() < kMax;) out.emplace_back(s);
        delete_aspell_string_enumeration(e);
        return out;
    }
};
#endif

// Accuracy and per-call times of one suggester over one set.
void measure(benchmark::State &state, const Pairs &pairs, const Suggester &suggest) {
    std::vector<double> micros;
    int first = 0, topFive = 0, anywhere = 0;
    suggest("warm");
    for (auto _ : state) {
        for (const auto &pair : pairs) {
            double start = threadMicros();
            std::vector<std::string> list = suggest(pair.first);
            micros.push_back(threadMicros() - start);
            const long found = static_cast<long>(list.size());
            const long at = std::find(list.begin(), list.end(), pair.second) - list.begin();
            first += at == 0 && at < found;
            topFive += at < 5 && at < found;
            anywhere += at < found;
        }
    }
    std::sort(micros.begin(), micros.end());
    const double n = static_cast<double>(pairs.size());
    state.counters["pairs"] = n;
    state.counters["first_pct"] = 100.0 * first / n;
    state.counters["top5_pct"] = 100.0 * topFive / n;
    state.counters["any_pct"] = 100.0 * anywhere / n;
    state.counters["median_us"] = micros[micros.size() / 2];
    state.counters["p95_us"] = micros[micros.size() * 95 / 100];
}

// set 0 tuning, 1 held-out; engine 0 defined, 1 ranked, 2 Aspell.
void BM_Suggesters(benchmark::State &state) {
    const Pairs pairs = loadPairs(kSets[state.range(0)]);
    if (pairs.empty()) {
        state.SkipWithError("no pairs: run bench/make_heldout.py build/bench/heldout.txt for the held-out set");
        return;
    }
    const int engine = static_cast<int>(state.range(1));
    if (engine == 2) {
#ifdef ORTH_BENCH_ASPELL
        AspellPeer aspell;
        if (aspell.speller == nullptr) {
            state.SkipWithError("aspell could not make a master dictionary (aspell and aspell-en installed?)");
            return;
        }
        measure(state, pairs, [&](const std::string &w) { return aspell.suggest(w); });
#else
        state.SkipWithError("built without Aspell (libaspell-dev)");
#endif
        return;
    }
    OrthSession orth;
    if (!orth.ok) {
        state.SkipWithError("the built-in American dictionary is missing");
        return;
    }
    if (engine == 0) measure(state, pairs, [&](const std::string &w) { return orth.defined(w); });
    else measure(state, pairs, [&](const std::string &w) { return orth.ranked(w); });
}
BENCHMARK(BM_Suggesters)->ArgsProduct({{0, 1}, {0, 1, 2}})->ArgNames({"set", "engine"})->Iterations(1)
    ->Unit(benchmark::kMillisecond);

void BM_RankedLoadAndMemory(benchmark::State &state) {
    double openMs = 0, firstDefinedMs = 0, firstRankedMs = 0;
    long definedHeap = 0, rankedHeap = 0;
    for (auto _ : state) {
        for (int ranked = 0; ranked <= 1; ++ranked) {
            size_t before = heapInUse();
            auto start = std::chrono::steady_clock::now();
            OrthSession orth;
            auto opened = std::chrono::steady_clock::now();
            if (!orth.ok) {
                state.SkipWithError("the built-in American dictionary is missing");
                return;
            }
            if (ranked) orth.ranked("recieve");
            else orth.defined("recieve");
            auto done = std::chrono::steady_clock::now();
            long heap = static_cast<long>(heapInUse() - before);
            double open = std::chrono::duration<double, std::milli>(opened - start).count();
            double first = std::chrono::duration<double, std::milli>(done - opened).count();
            (ranked ? rankedHeap : definedHeap) = heap;
            (ranked ? firstRankedMs : firstDefinedMs) = first;
            openMs = open;
        }
    }
    state.counters["open_ms"] = openMs;
    state.counters["first_defined_ms"] = firstDefinedMs;
    state.counters["first_ranked_ms"] = firstRankedMs;
    state.counters["defined_heap_kb"] = definedHeap / 1024.0;
    state.counters["ranked_heap_kb"] = rankedHeap / 1024.0;
    state.counters["extra_heap_kb"] = (rankedHeap - definedHeap) / 1024.0;
}
BENCHMARK(BM_RankedLoadAndMemory)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
