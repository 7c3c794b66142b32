// bench/peers/peer_bench.cpp — orth beside Hunspell, Aspell and Nuspell on
// one vocabulary (made by make-dicts.sh) and one text (make-corpus.sh).
//
// Every measurement of an engine runs in a child process of its own, so the
// engines share no allocator state and the resident memory is the engine's
// alone: the child loads the dictionary (load time), checks the text word by
// word twice (the first pass warms the caches and lets engines that load on
// demand load what the text needs; only the check calls of the second pass
// are timed), asks for suggestions for every
// misspelling of the list (each call timed alone) and reports how much its
// resident set grew from before the load to after the work. Rounds
// interleave the engines, so a busy moment of the machine hits all alike;
// the table gives the medians of the rounds. Suggestions are timed in every
// round for engines whose calls take less than 5 ms (their median in the
// first round), in the first round only for the others (a pass over the
// misspellings takes them minutes); accuracy comes from the first round.
//
// Usage: orth_peer_bench --dicts DIR --corpus FILE --misspellings FILE
//                        [--words N] [--rounds R] [--engines a,b,...]
//                        [--suggest-limit N]
// Engines: hunspell, aspell, nuspell, orth (depth -1), orth-phonetic.
#include <aspell.h>
#include <hunspell.h>
#include <nuspell/dictionary.hxx>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "orth.h"

namespace {

using Clock = std::chrono::steady_clock;

struct Args {
    std::string dicts, corpus, misspellings;
    size_t words = 1000000;
    int rounds = 3;
    size_t suggestLimit = 0;  // 0: every pair
    std::vector<std::string> engines{"hunspell", "aspell", "nuspell", "orth", "orth-phonetic"};
};

// What one child reports.
struct Measure {
    double loadMs = 0, checkWordsPerS = 0, rssMb = 0;
    double medianUs = 0, p95Us = 0, firstPct = 0, top5Pct = 0, anyPct = 0;
    long rejected = 0;
    bool ok = false;
};

// One engine behind three calls; state is the engine's own handle.
struct Engine {
    bool (*load)(const Args &, const std::string &name, void **state);
    bool (*check)(void *state, const std::string &word);
    void (*suggest)(void *state, const std::string &word, std::vector<std::string> *out);
};

double residentMb() {
    long pages = 0, resident = 0;
    FILE *f = std::fopen("/proc/self/statm", "r");
    if (f == nullptr) return 0;
    if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
    std::fclose(f);
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

// Hunspell and Nuspell read the same .aff/.dic pair.
bool loadHunspell(const Args &a, const std::string &, void **state) {
    std::string base = a.dicts + "/hunspell/wam";
    *state = Hunspell_create((base + ".aff").c_str(), (base + ".dic").c_str());
    return *state != nullptr;
}
bool checkHunspell(void *state, const std::string &w) {
    return Hunspell_spell(static_cast<Hunhandle *>(state), w.c_str()) != 0;
}
void suggestHunspell(void *state, const std::string &w, std::vector<std::string> *out) {
    char **list = nullptr;
    auto *h = static_cast<Hunhandle *>(state);
    int n = Hunspell_suggest(h, &list, w.c_str());
    for (int i = 0; i < n; ++i) out->emplace_back(list[i]);
    Hunspell_free_list(h, &list, n);
}

bool loadNuspell(const Args &a, const std::string &, void **state) {
    auto *d = new nuspell::Dictionary;
    try {
        d->load_aff_dic(a.dicts + "/hunspell/wam.aff");
    } catch (const std::exception &e) {
        std::fprintf(stderr, "nuspell: %s\n", e.what());
        delete d;
        return false;
    }
    *state = d;
    return true;
}
bool checkNuspell(void *state, const std::string &w) {
    return static_cast<nuspell::Dictionary *>(state)->spell(w);
}
void suggestNuspell(void *state, const std::string &w, std::vector<std::string> *out) {
    static_cast<nuspell::Dictionary *>(state)->suggest(w, *out);
}

bool loadAspell(const Args &a, const std::string &, void **state) {
    AspellConfig *config = new_aspell_config();
    aspell_config_replace(config, "lang", "en");
    aspell_config_replace(config, "encoding", "utf-8");
    aspell_config_replace(config, "master", (a.dicts + "/aspell/wam.rws").c_str());
    AspellCanHaveError *made = new_aspell_speller(config);
    delete_aspell_config(config);
    if (aspell_error_number(made) != 0) {
        std::fprintf(stderr, "aspell: %s\n", aspell_error_message(made));
        delete_aspell_can_have_error(made);
        return false;
    }
    *state = to_aspell_speller(made);
    return true;
}
bool checkAspell(void *state, const std::string &w) {
    return aspell_speller_check(static_cast<AspellSpeller *>(state), w.data(),
                                static_cast<int>(w.size())) == 1;
}
void suggestAspell(void *state, const std::string &w, std::vector<std::string> *out) {
    const AspellWordList *list = aspell_speller_suggest(static_cast<AspellSpeller *>(state), w.data(),
                                                        static_cast<int>(w.size()));
    AspellStringEnumeration *e = aspell_word_list_elements(list);
    while (const char *s = aspell_string_enumeration_next(e)) out->emplace_back(s);
    delete_aspell_string_enumeration(e);
}

// orth: a session over MAIN.CLX alone, default options; the text and the
// misspellings are ASCII, so no conversion to the 8-bit set is needed.
bool loadOrth(const Args &a, const std::string &name, void **state) {
    int16_t sid = ORTH_OpenSession();
    if (sid < 0) return false;
    if (ORTH_OpenLex(sid, (a.dicts + "/orth/MAIN.CLX").c_str(), 0) < 0) {
        ORTH_CloseSession(sid);
        return false;
    }
    if (name == "orth-phonetic") ORTH_SetOption(sid, ORTH_SUGGEST_PHONETIC_OPT, 1);
    *state = reinterpret_cast<void *>(static_cast<intptr_t>(sid));
    return true;
}
int16_t orthSession(void *state) { return static_cast<int16_t>(reinterpret_cast<intptr_t>(state)); }
bool checkOrth(void *state, const std::string &w) {
    char replacement[64];
    return ORTH_CheckWord(orthSession(state), 0, w.c_str(), replacement, sizeof replacement) == 0;
}
void suggestOrth(void *state, const std::string &w, std::vector<std::string> *out) {
    char buffer[25 * 64 + 1];
    int16_t scores[25];
    if (ORTH_Suggest(orthSession(state), w.c_str(), -1, buffer, sizeof buffer, scores, 25) < 0) return;
    for (const char *p = buffer; *p != '\0'; p += std::strlen(p) + 1) out->emplace_back(p);
}

bool engineFor(const std::string &name, Engine *e) {
    if (name == "hunspell") *e = {loadHunspell, checkHunspell, suggestHunspell};
    else if (name == "nuspell") *e = {loadNuspell, checkNuspell, suggestNuspell};
    else if (name == "aspell") *e = {loadAspell, checkAspell, suggestAspell};
    else if (name == "orth" || name == "orth-phonetic") *e = {loadOrth, checkOrth, suggestOrth};
    else return false;
    return true;
}

std::string readFile(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

// The text's words: runs of ASCII letters, with an apostrophe allowed
// between two letters ("don't"); everything else separates words.
std::vector<std::string> tokenise(const std::string &text, size_t limit) {
    std::vector<std::string> words;
    auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    size_t i = 0;
    while (i < text.size() && words.size() < limit) {
        if (!letter(text[i])) { ++i; continue; }
        size_t start = i;
        while (i < text.size() && (letter(text[i]) || (text[i] == '\'' && i + 1 < text.size() &&
                                                        letter(text[i + 1]) && letter(text[i - 1])))) {
            ++i;
        }
        words.push_back(text.substr(start, i - start));
    }
    return words;
}

std::vector<std::pair<std::string, std::string>> readPairs(const std::string &path) {
    std::vector<std::pair<std::string, std::string>> pairs;
    std::istringstream in(readFile(path));
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        size_t tab = line.find('\t');
        if (tab != std::string::npos) pairs.emplace_back(line.substr(0, tab), line.substr(tab + 1));
    }
    return pairs;
}

double percentile(std::vector<double> v, int pct) {
    if (v.empty()) return 0;
    std::sort(v.begin(), v.end());
    return v[std::min(v.size() - 1, v.size() * pct / 100)];
}

// The child's work; withSuggestions only in the first round.
Measure measure(const Args &a, const std::string &name, const std::vector<std::string> &text,
                const std::vector<std::pair<std::string, std::string>> &pairs, bool withSuggestions) {
    Measure m;
    Engine e;
    if (!engineFor(name, &e)) return m;
    double rss0 = residentMb();
    void *state = nullptr;
    auto t0 = Clock::now();
    if (!e.load(a, name, &state)) return m;
    m.loadMs = std::chrono::duration<double, std::milli>(Clock::now() - t0).count();
    long rejected = 0;
    for (const std::string &w : text) rejected += !e.check(state, w);  // warms caches and loads
    rejected = 0;
    auto t1 = Clock::now();
    for (const std::string &w : text) rejected += !e.check(state, w);
    double s = std::chrono::duration<double>(Clock::now() - t1).count();
    m.checkWordsPerS = static_cast<double>(text.size()) / s;
    m.rejected = rejected;
    if (withSuggestions) {
        std::vector<double> micros;
        int first = 0, top5 = 0, any = 0;
        std::vector<std::string> out;
        size_t n = a.suggestLimit != 0 ? std::min(a.suggestLimit, pairs.size()) : pairs.size();
        for (size_t i = 0; i < n; ++i) {
            out.clear();
            auto t = Clock::now();
            e.suggest(state, pairs[i].first, &out);
            micros.push_back(std::chrono::duration<double, std::micro>(Clock::now() - t).count());
            auto at = std::find(out.begin(), out.end(), pairs[i].second);
            long rank = at == out.end() ? -1 : at - out.begin();
            first += rank == 0;
            top5 += rank >= 0 && rank < 5;
            any += rank >= 0;
        }
        m.medianUs = percentile(micros, 50);
        m.p95Us = percentile(micros, 95);
        m.firstPct = n ? 100.0 * first / n : 0;
        m.top5Pct = n ? 100.0 * top5 / n : 0;
        m.anyPct = n ? 100.0 * any / n : 0;
    }
    m.rssMb = residentMb() - rss0;
    m.ok = true;
    return m;
}

// Runs measure in a child and reads its result back through a pipe.
Measure measureInChild(const Args &a, const std::string &name, const std::vector<std::string> &text,
                       const std::vector<std::pair<std::string, std::string>> &pairs, bool withSuggestions) {
    Measure m;
    int fds[2];
    if (pipe(fds) != 0) return m;
    pid_t pid = fork();
    if (pid == 0) {
        close(fds[0]);
        Measure r = measure(a, name, text, pairs, withSuggestions);
        ssize_t n = write(fds[1], &r, sizeof r);
        _exit(n == static_cast<ssize_t>(sizeof r) ? 0 : 1);
    }
    close(fds[1]);
    if (pid > 0) {
        if (read(fds[0], &m, sizeof m) != static_cast<ssize_t>(sizeof m)) m.ok = false;
        waitpid(pid, nullptr, 0);
    }
    close(fds[0]);
    return m;
}

double median(std::vector<double> v) { return percentile(std::move(v), 50); }

std::string label(const std::string &name) {
    if (name == "hunspell") return "Hunspell";
    if (name == "aspell") return "Aspell";
    if (name == "nuspell") return "Nuspell";
    if (name == "orth") return "orth (depth -1)";
    return "orth, phonetic on";
}

bool parseArgs(int argc, char **argv, Args *a) {
    for (int i = 1; i < argc; ++i) {
        std::string k = argv[i];
        if (i + 1 >= argc) return false;
        std::string v = argv[++i];
        if (k == "--dicts") a->dicts = v;
        else if (k == "--corpus") a->corpus = v;
        else if (k == "--misspellings") a->misspellings = v;
        else if (k == "--words") a->words = std::strtoul(v.c_str(), nullptr, 10);
        else if (k == "--rounds") a->rounds = std::max(1, std::atoi(v.c_str()));
        else if (k == "--suggest-limit") a->suggestLimit = std::strtoul(v.c_str(), nullptr, 10);
        else if (k == "--engines") {
            a->engines.clear();
            std::stringstream s(v);
            for (std::string e; std::getline(s, e, ',');) a->engines.push_back(e);
        } else return false;
    }
    return !a->dicts.empty() && !a->corpus.empty() && !a->misspellings.empty();
}

std::string sizeOnDisk(const Args &a, const std::string &name) {
    std::istringstream in(readFile(a.dicts + "/sizes.txt"));
    std::string key = name == "orth-phonetic" ? "orth" : name, k;
    long bytes;
    while (in >> k >> bytes) {
        if (k == key) {
            char buf[32];
            std::snprintf(buf, sizeof buf, "%.2f", bytes / 1e6);
            return buf;
        }
    }
    return "?";
}

}  // namespace

int main(int argc, char **argv) {
    Args a;
    if (!parseArgs(argc, argv, &a)) {
        std::fprintf(stderr,
                     "usage: orth_peer_bench --dicts DIR --corpus FILE --misspellings FILE [--words N]\n"
                     "       [--rounds R] [--engines hunspell,aspell,nuspell,orth,orth-phonetic]\n"
                     "       [--suggest-limit N]\n");
        return 2;
    }
    const std::vector<std::string> text = tokenise(readFile(a.corpus), a.words);
    const auto pairs = readPairs(a.misspellings);
    if (text.size() < a.words || pairs.empty()) {
        std::fprintf(stderr, "orth_peer_bench: %zu words of text (%zu wanted), %zu misspellings\n",
                     text.size(), a.words, pairs.size());
        return 1;
    }
    std::vector<std::vector<Measure>> runs(a.engines.size());
    for (int round = 0; round < a.rounds; ++round) {
        for (size_t e = 0; e < a.engines.size(); ++e) {
            const bool suggest = round == 0 || runs[e][0].medianUs < 5000;
            Measure m = measureInChild(a, a.engines[e], text, pairs, suggest);
            if (!m.ok) {
                std::fprintf(stderr, "orth_peer_bench: %s failed\n", a.engines[e].c_str());
                return 1;
            }
            std::fprintf(stderr, "round %d %-14s %6.2f M words/s\n", round + 1, a.engines[e].c_str(),
                         m.checkWordsPerS / 1e6);
            runs[e].push_back(m);
        }
    }
    std::printf("%zu words of text, %zu misspellings, %d rounds\n\n", text.size(),
                a.suggestLimit ? std::min(a.suggestLimit, pairs.size()) : pairs.size(), a.rounds);
    std::printf("| engine | check, M words/s | rejected | suggest median µs | p95 µs | first %% | top-5 %% "
                "| anywhere %% | load ms | RSS after work MB | on disk MB |\n");
    std::printf("|---|---|---|---|---|---|---|---|---|---|---|\n");
    for (size_t e = 0; e < a.engines.size(); ++e) {
        std::vector<double> rate, load, rss, med, p95;
        for (const Measure &m : runs[e]) {
            rate.push_back(m.checkWordsPerS / 1e6);
            load.push_back(m.loadMs);
            rss.push_back(m.rssMb);
            if (m.medianUs > 0) {
                med.push_back(m.medianUs);
                p95.push_back(m.p95Us);
            }
        }
        const Measure &s = runs[e][0];
        std::printf("| %s | %.2f | %ld | %.0f | %.0f | %.1f | %.1f | %.1f | %.1f | %.1f | %s |\n",
                    label(a.engines[e]).c_str(), median(rate), s.rejected, median(med), median(p95),
                    s.firstPct, s.top5Pct, s.anyPct, median(load), median(rss),
                    sizeOnDisk(a, a.engines[e]).c_str());
    }
    return 0;
}
