// Checking throughput on running English text, tokenised beforehand and
// checked word by word against the American dictionary with the engine's
// default options; reports words/s. Two texts of a million words or more:
// the licence texts every Debian system carries (real prose, repeated), and
// a reproducible mix of common words and words drawn evenly from the word
// list (harsher: rare words sit in long blocks of the dictionary).
#include <benchmark/benchmark.h>

#include <cctype>
#include <cstdint>
#include <fstream>
#include <sstream>
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

// The words of the licence texts, in order, repeated to at least count words.
// A word is a run of letters with apostrophes or hyphens inside it.
std::vector<std::string> licenceText(size_t count) {
    const char *const files[] = {"GPL-2", "GPL-3", "LGPL-2.1", "LGPL-3", "GFDL-1.3",
                                 "Apache-2.0", "Artistic", "MPL-2.0", "CC0-1.0"};
    std::vector<std::string> words;
    for (const char *name : files) {
        std::ifstream in(std::string("/usr/share/common-licenses/") + name, std::ios::binary);
        std::stringstream all;
        all << in.rdbuf();
        std::string text = all.str(), w;
        for (size_t i = 0; i <= text.size(); ++i) {
            char c = i < text.size() ? text[i] : ' ';
            bool letter = std::isalpha(static_cast<unsigned char>(c)) != 0;
            if (letter || ((c == '\'' || c == '-') && !w.empty())) {
                w += c;
                continue;
            }
            while (!w.empty() && (w.back() == '\'' || w.back() == '-')) w.pop_back();
            if (!w.empty()) words.push_back(w);
            w.clear();
        }
    }
    std::vector<std::string> text;
    while (!words.empty() && text.size() < count) text.insert(text.end(), words.begin(), words.end());
    return text;
}

void checkText(benchmark::State &state, const std::vector<std::string> &text) {
    int16_t sid = ORTH_OpenSession();
    if (sid < 0 || ORTH_OpenLex(sid, kDictionary, 0) < 0) {
        state.SkipWithError("the American dictionary is not built (target dict_en_US)");
        if (sid >= 0) ORTH_CloseSession(sid);
        return;
    }
    if (text.empty()) {
        state.SkipWithError("no text");
        ORTH_CloseSession(sid);
        return;
    }
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
void BM_CheckLicenceText(benchmark::State &state) {
    static const std::vector<std::string> text = licenceText(1000000);
    checkText(state, text);
}
BENCHMARK(BM_CheckLicenceText)->Unit(benchmark::kMillisecond);

void BM_CheckMixedDictionaryText(benchmark::State &state) {
    static const std::vector<std::string> text = makeText(1000000);
    checkText(state, text);
}
BENCHMARK(BM_CheckMixedDictionaryText)->Unit(benchmark::kMillisecond);

}  // namespace
