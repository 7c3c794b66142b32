// Block checking end to end: a text of several megabytes is opened as a
// block and checked with ORTH_CheckBlock / ORTH_NextBlockWord until the end,
// stepping past every reported word as an interactive checker would.
// Reports words per second. Variants: the scanner alone, a memory text
// lexicon holding the vocabulary, and the built American dictionary (skipped
// when it has not been built).
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "orth.h"

namespace {

const char *const kVocabulary[] = {
    "the",     "of",        "and",      "to",       "in",      "is",       "that",    "for",
    "it",      "as",        "was",      "with",     "be",      "by",       "on",      "not",
    "he",      "this",      "are",      "or",       "his",     "from",     "at",      "which",
    "but",     "have",      "an",       "had",      "they",    "you",      "were",    "their",
    "one",     "all",       "we",       "can",      "her",     "has",      "there",   "been",
    "if",      "more",      "when",     "will",     "would",   "who",      "so",      "no",
    "checker", "dictionary", "spelling", "document", "window",  "language", "letter",  "number",
    "between", "important", "question", "government", "because", "another", "through", "example",
    "people",  "children",  "don't",    "well-known", "U.S.A.", "e.g.",     "company's", "o'clock",
};
const char *const kMisspellings[] = {"teh", "recieve", "seperate", "definately", "occured"};

// About `bytes` of prose: sentences of vocabulary words, with a number, a
// misspelling now and then, commas, full stops and line breaks.
std::string makeText(size_t bytes) {
    std::string text;
    text.reserve(bytes + 128);
    const size_t vocab = sizeof kVocabulary / sizeof kVocabulary[0];
    uint32_t seed = 12345;
    auto next = [&seed]() {
        seed = seed * 1103515245u + 12345u;
        return (seed >> 16) & 0x7FFF;
    };
    while (text.size() < bytes) {
        int words = 6 + int(next() % 12);
        for (int i = 0; i < words; ++i) {
            uint32_t r = next();
            if (r % 97 == 0) text += kMisspellings[r % 5];
            else if (r % 53 == 0) text += std::to_string(r % 2000);
            else text += kVocabulary[r % vocab];
            text += (i + 1 == words) ? ". " : (r % 11 == 0 ? ", " : " ");
        }
        if (next() % 8 == 0) text += "\r\n";
    }
    return text;
}

const std::string &benchText() {
    static const std::string text = makeText(4u << 20);
    return text;
}

uint32_t countWords(int16_t session, std::string &text) {
    int16_t block = ORTH_OpenBlock(session, &text[0], uint32_t(text.size()),
                                   uint32_t(text.size() + 1), 0);
    uint32_t count = 0;
    ORTH_GetBlockInfo(session, block, nullptr, nullptr, nullptr, &count);
    ORTH_CloseBlock(session, block);
    return count;
}

// Checks the whole text once, stepping past every reported word.
void checkWholeBlock(int16_t session, std::string &text, uint32_t mask) {
    int16_t block = ORTH_OpenBlock(session, &text[0], uint32_t(text.size()),
                                   uint32_t(text.size() + 1), 0);
    char word[64], repl[64];
    uint32_t stops = 0;
    while (ORTH_CheckBlock(session, block, mask, word, sizeof word, repl, sizeof repl) !=
           ORTH_CHK_END_OF_BLOCK) {
        ++stops;
        if (ORTH_NextBlockWord(session, block) != 0) break;
    }
    benchmark::DoNotOptimize(stops);
    ORTH_CloseBlock(session, block);
}

void runCheck(benchmark::State &state, int16_t session) {
    std::string text = benchText();
    uint32_t words = countWords(session, text);
    for (auto _ : state) checkWholeBlock(session, text, ORTH_REPORT_DOUBLED_WORDS_OPT);
    state.counters["words"] = words;
    state.counters["words/s"] = benchmark::Counter(double(words) * double(state.iterations()),
                                                   benchmark::Counter::kIsRate);
    state.SetBytesProcessed(int64_t(text.size()) * int64_t(state.iterations()));
}

void BM_BlockWalkOnly(benchmark::State &state) {
    int16_t session = ORTH_OpenSession();
    std::string text = benchText();
    uint32_t words = 0;
    for (auto _ : state) {
        int16_t block = ORTH_OpenBlock(session, &text[0], uint32_t(text.size()),
                                       uint32_t(text.size() + 1), 0);
        words = 1;
        while (ORTH_NextBlockWord(session, block) == 0) ++words;
        ORTH_CloseBlock(session, block);
    }
    state.counters["words/s"] = benchmark::Counter(double(words) * double(state.iterations()),
                                                   benchmark::Counter::kIsRate);
    ORTH_CloseSession(session);
}
BENCHMARK(BM_BlockWalkOnly)->Unit(benchmark::kMillisecond);

void BM_CheckBlockTextLexicon(benchmark::State &state) {
    int16_t session = ORTH_OpenSession();
    int16_t lex = ORTH_CreateLex(session, nullptr, ORTH_IGNORE_LEX_TYPE, 1033);
    for (const char *w : kVocabulary) ORTH_AddToLex(session, lex, w, nullptr);
    runCheck(state, session);
    ORTH_CloseSession(session);
}
BENCHMARK(BM_CheckBlockTextLexicon)->Unit(benchmark::kMillisecond);

void BM_CheckBlockMainDictionary(benchmark::State &state) {
    const std::string path = std::string(ORTH_BINARY_DIR) + "/share/orth/en_US/MAIN.CLX";
    int16_t session = ORTH_OpenSession();
    if (ORTH_OpenLex(session, path.c_str(), 0) < 0) {
        ORTH_CloseSession(session);
        state.SkipWithError(("dictionary not built: " + path).c_str());
        return;
    }
    runCheck(state, session);
    ORTH_CloseSession(session);
}
BENCHMARK(BM_CheckBlockMainDictionary)->Unit(benchmark::kMillisecond);

}  // namespace
