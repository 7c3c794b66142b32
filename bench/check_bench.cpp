// Checking throughput on running English text: a reproducible text of a
// million words, tokenised beforehand, checked word by word against the
// American dictionary with the engine's default options. Reports words/s.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "orth.h"

namespace {

const char *const kDictionary = ORTH_BINARY_DIR "/share/orth/en_US/MAIN.CLX";
const char *const kWordList = ORTH_SOURCE_DIR "/data/en_US.words";

// The most frequent English words, which make up about half of running text.
const char *const kCommonWords[] = {
    "the", "of", "and", "to", "a", "in", "is", "it", "you", "that", "he", "was", "for", "on",
    "are", "with", "as", "I", "his", "they", "be", "at", "one", "have", "this", "from", "or",
    "had", "by", "not", "word", "but", "what", "some", "we", "can", "out", "other", "were",
    "all", "there", "when", "up", "use", "your", "how", "said", "an", "each", "she", "which",
    "do", "their", "time", "if", "will", "way", "about", "many", "then", "them", "write",
    "would", "like", "so", "these", "her", "long", "make", "thing", "see", "him", "two",
    "has", "look", "more", "day", "could", "go", "come", "did", "number", "sound", "no",
    "most", "people", "my", "over", "know", "water", "than", "call", "first", "who", "may",
    "down", "side", "been", "now", "find", "don't", "world's",
};

uint32_t nextRandom(uint32_t *seed) {
    *seed = *seed * 1664525u + 1013904223u;
    return *seed >> 8;
}

// Half common words, half words drawn from the word list; a capital after
// every sentence end; about one word in a hundred mistyped.
std::vector<std::string> makeText(size_t count) {
    std::vector<std::string> list;
    std::ifstream in(kWordList, std::ios::binary);
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) list.push_back(line);
    }
    std::vector<std::string> text;
    text.reserve(count);
    uint32_t seed = 12345;
    const size_t common = sizeof kCommonWords / sizeof kCommonWords[0];
    bool sentenceStart = true;
    while (text.size() < count) {
        uint32_t r = nextRandom(&seed);
        std::string w = (r % 2 == 0 || list.empty()) ? kCommonWords[(r / 2) % common]
                                                     : list[(r / 2) % list.size()];
        if (sentenceStart && w[0] >= 'a' && w[0] <= 'z') w[0] = static_cast<char>(w[0] - 32);
        if (nextRandom(&seed) % 100 == 0 && w.size() > 3) std::swap(w[1], w[2]);
        sentenceStart = nextRandom(&seed) % 15 == 0;
        text.push_back(w);
    }
    return text;
}

void BM_CheckRunningText(benchmark::State &state) {
    int16_t sid = ORTH_OpenSession();
    if (sid < 0 || ORTH_OpenLex(sid, kDictionary, 0) < 0) {
        state.SkipWithError("the American dictionary is not built (target dict_en_US)");
        if (sid >= 0) ORTH_CloseSession(sid);
        return;
    }
    static const std::vector<std::string> text = makeText(1000000);
    char replacement[64];
    int64_t misspelled = 0;
    for (const std::string &w : text) ORTH_CheckWord(sid, 0, w.c_str(), replacement, 64);  // loads segments
    for (auto _ : state) {
        misspelled = 0;
        for (const std::string &w : text) {
            int16_t rc = ORTH_CheckWord(sid, 0, w.c_str(), replacement, 64);
            misspelled += rc != 0;
        }
        benchmark::DoNotOptimize(misspelled);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(text.size()));
    state.counters["words_per_s"] = benchmark::Counter(
        static_cast<double>(state.iterations() * text.size()), benchmark::Counter::kIsRate);
    state.counters["misspelled_share"] = static_cast<double>(misspelled) / text.size();
    ORTH_CloseSession(sid);
}
BENCHMARK(BM_CheckRunningText)->Unit(benchmark::kMillisecond);

}  // namespace
