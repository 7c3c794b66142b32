// Compressed lexicon reader.
// Groups: CompressedOpen (probe, open, every refused header and segment
// table), CompressedCorrupt (damaged segment data is
// refused, never read past, also under random damage), CompressedBudget
// (budget check, least-recently-used eviction, resident segments need no
// file), CompressedLookup (small words, exact and case-insensitive lookups,
// the early stop of the folded walk), WordTables (decoded tables answer as
// the walks, are built only for ordered data, fit the budget beside the data).
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lex/clex.h"
#include "lex/clex_int.h"
#include "lex_slow/clex_model.h"

namespace {

using clexmodel::bytes;
using clexmodel::logged;
using clexmodel::putLe;

// A file laid out by hand, for data the compressor would never write:
// segments given as {key, data}.
std::string rawLexicon(const std::vector<std::pair<std::string, std::string>> &segs, const std::string &primary0 = "") {
    std::string b(kClexHeaderSize, '\0'), data;
    putLe(b, kOffVersion, kClexVersion, 4);
    putLe(b, kOffSegCount, static_cast<uint32_t>(segs.size()), 2);
    b.replace(kOffPrimary, primary0.size(), primary0);
    for (const auto &s : segs) {
        std::string rec(8, '\0');
        putLe(rec, 0, static_cast<uint32_t>(kClexHeaderSize + kClexSegHeaderSize * segs.size() + data.size()), 4);
        putLe(rec, 4, static_cast<uint32_t>(s.second.size()), 4);
        b += rec + s.first;
        data += s.second;
    }
    return b + data;
}

class Reader : public ::testing::Test {
protected:
    void SetUp() override { closeAllSessions(); }
    void TearDown() override {
        CLex_Close(state.get());
        closeAllSessions();
    }
    std::string build(const std::string &name, const std::vector<std::string> &words) {
        std::string wf = put(name + ".txt", clexmodel::crlf(words));
        EXPECT_EQ(clexmodel::compress(ORTH_OpenSession(), dir.file(name), {wf}, nullptr, 2057), 0);
        closeAllSessions();
        return dir.file(name);
    }
    std::string put(const std::string &name, const std::string &content) {
        writeFile(dir.file(name), content);
        return dir.file(name);
    }
    int16_t lookup(const std::string &w, bool caseSensitive = true) { return CLex_Lookup(w.c_str(), 0, caseSensitive, state.get()); }
    TempDir dir;
    std::unique_ptr<CLexState> state = std::make_unique<CLexState>();
};

using CompressedOpen = Reader;

TEST_F(CompressedOpen, ProbeTellsCompressedFilesApartSilently) {
    std::string good = build("g.clx", {"ab", "abc"}), text = put("t.tlx", "#LID 1033 1 0\r\nword\r\n");
    std::string missing = dir.file("none.clx");
    LogCapture log;
    log.clear();
    int16_t type = 0;
    uint16_t language = 0;
    EXPECT_EQ(CLex_GetInfo(good.c_str(), &type, &language), 0);
    EXPECT_EQ(std::make_pair(type, language), std::make_pair(int16_t{1}, uint16_t{2057}));
    EXPECT_EQ(CLex_GetInfo(text.c_str(), &type, &language), ORTH_UNKNOWN_LEXICON_TYPE_ERR);
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(CLex_GetInfo(missing.c_str(), &type, &language), ORTH_FILE_NOT_FOUND_ERR);
    EXPECT_TRUE(log.contains("CLex_GetInfo: file open(" + missing + ") failed"));
    EXPECT_EQ(CLex_Open(missing.c_str(), 0, state.get()), ORTH_FILE_NOT_FOUND_ERR);
    EXPECT_TRUE(log.contains("CLex_Open: file open(" + missing + ") failed"));
    EXPECT_EQ(CLex_Open(std::string(300, 'p').c_str(), 0, state.get()), ORTH_FILE_NOT_FOUND_ERR);
}

TEST_F(CompressedOpen, DamagedHeadersAndSegmentTablesAreRefused) {
    // Small word ab, segments ab (15 bytes) and xy (7 bytes).
    const std::string base = readFile(build("b.clx", {"ab", "abc", "abd", "xyz"}));
    const size_t rec0 = kClexHeaderSize + 2, rec1 = rec0 + 10;
    struct Case { size_t at; uint32_t value; int width; int16_t rc; std::string message; } cases[] = {
        {0, 0, 0, -6, "CLex_Open: error reading index header"},  // cut to 2000 bytes
        {256, 0x57000403, 4, -6, "CLex_Open: expected lex version 57000402, read 57000403"},
        {260, 1025, 2, -6, "CLex_Open: lex contains 1025 small words"},
        {260, 1000, 2, -6, "CLex_Open: error reading small-words table"},
        {262, 60, 2, ORTH_FILE_READ_ERR, "CLex_Open: error reading CLexSegHeader"},
        {rec0 + 4, 65536, 4, -6, "CLex_Open: segment 0 length 65536"},
        {rec1 + 4, 8, 4, -6, "CLex_Open: segment 1 "},  // past the end
        {rec0, 0xFFFFFFF0u, 4, -6, "CLex_Open: segment 0 "},
        {rec1 + 8, 'a' | 'a' << 8, 2, -6, "CLex_Open: segment table out of order"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.message);
        std::string b = c.width == 0 ? base.substr(0, 2000) : base;
        if (c.width != 0) putLe(b, c.at, c.value, c.width);
        LogCapture log;
        EXPECT_EQ(CLex_Open(put("bad.clx", b).c_str(), 0, state.get()), c.rc);
        EXPECT_TRUE(logged(log, c.message, true));
        EXPECT_EQ(state->segs, nullptr);
    }
    ASSERT_EQ(CLex_Open(put("ok.clx", base).c_str(), 0, state.get()), 0);
    EXPECT_EQ(lookup("xyz"), 0);
}

using CompressedCorrupt = Reader;

TEST_F(CompressedCorrupt, DamagedSegmentDataIsRefusedEitherWayOfLooking) {
    const std::string head = bytes({0, 0, 0, 'c', 0});  // after the length byte: first word abc
    struct Case { const char *name; std::string data, message; } cases[] = {
        {"truncated block header", bytes({1, 0, 0}), "decodeSeg: block header past end"},
        {"body past the segment", bytes({9}) + head + bytes({0}), "decodeSeg: block of 9 bytes"},
        {"keep all in a block's first word", bytes({3}) + head + bytes({1, 'x', 0}), "decodeSeg: keeps"},
        {"keep all but last first", bytes({3}) + head + bytes({3, 'x', 0}), "decodeSeg: keeps"},
        {"keep more than there was", bytes({6}) + head + bytes({'d', 0, 2, 5, 'x', 0}), "decodeSeg: keeps"},
        {"keep code inside a word", bytes({6}) + head + bytes({'d', 'e', 0, 'x', 1, 0}), "decodeSeg: keeps"},
        {"keep count cut off", bytes({2}) + head + bytes({'d', 2}), "decodeSeg: keep count past"},
        {"suffix index cut off", bytes({2}) + head + bytes({'d', 4}), "decodeSeg: suffix index past"},
        {"unterminated word", bytes({2}) + head + "de", "decodeSeg: word runs past"},
        {"64-byte word", bytes({61}) + head + std::string(61, 'x'), "decodeSeg: word over 63 bytes"},
        {"suffix past 63 bytes", bytes({57}) + head + std::string(56, 'x') + bytes({6}), "decodeSeg: word over 63 bytes"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        ASSERT_EQ(CLex_Open(put("c.clx", rawLexicon({{"ab", c.data}}, "suffixes")).c_str(), 0, state.get()), 0);
        LogCapture log;
        EXPECT_EQ(lookup("abcz"), ORTH_UNKNOWN_LEXICON_TYPE_ERR);
        EXPECT_EQ(lookup("ABCZ", false), ORTH_UNKNOWN_LEXICON_TYPE_ERR);
        EXPECT_TRUE(logged(log, c.message, true));
        CLex_Close(state.get());
    }
}

TEST_F(CompressedCorrupt, UnloadedSuffixAndEmptySegmentAreHarmless) {
    // Code 6 with an all-zero primary entry appends nothing: the word is abc.
    std::string path = put("z.clx", rawLexicon({{"ab", bytes({2, 0, 0, 0, 'c', 0, 5, 6})}, {"cd", ""}}));
    ASSERT_EQ(CLex_Open(path.c_str(), 0, state.get()), 0);
    EXPECT_EQ(lookup("abc"), 0);
    EXPECT_EQ(lookup("abcd"), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_EQ(loadSeg(state.get(), 1), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_EQ(lookup("cde"), ORTH_WORD_NOT_FOUND_ERR);
}

int visitAll(const char *, const char *decoded, void *context) {
    *static_cast<size_t *>(context) += std::string(decoded).size();
    return 1;
}

TEST_F(CompressedCorrupt, RandomDamageNeverReadsOutOfBounds) {
    const std::vector<std::string> words = {"ab",  "abc", "abcde", "abcdef", "abcdg", "abd", "abdicate",
                                            "bcd", "bcdef", "bcdeg", "bcx", "zzz", "zzzz"};
    const std::string base = readFile(build("base.clx", words));
    std::mt19937 rng(11);
    for (int round = 0; round < 400; ++round) {
        std::string b = base;
        for (int k = 0; k < 3; ++k) {  // damage in the tables or the data
            size_t at = kClexHeaderSize + rng() % (b.size() - kClexHeaderSize);
            b[at] = static_cast<char>(rng() % 4 == 0 ? rng() % 8 : rng());
        }
        if (CLex_Open(put("r.clx", b).c_str(), round % 2 ? 0 : 64, state.get()) != 0) continue;
        for (const std::string &w : words) {
            for (bool exact : {true, false}) {
                int16_t rc = lookup(w, exact);
                EXPECT_TRUE(rc == 0 || rc == ORTH_WORD_NOT_FOUND_ERR || rc == ORTH_UNKNOWN_LEXICON_TYPE_ERR) << rc;
            }
        }
        for (uint16_t seg = 0; seg < state->segCount; ++seg) {
            size_t total = 0;
            int rc = loadSeg(state.get(), seg) != 0 ? 0 : decodeSeg(state.get(), seg, "", false, visitAll, &total);
            EXPECT_TRUE(rc == 0 || rc == ORTH_UNKNOWN_LEXICON_TYPE_ERR);
        }
        CLex_Close(state.get());
    }
}

using CompressedBudget = Reader;

TEST_F(CompressedBudget, BudgetBelowTheLongestSegmentIsRefused) {
    std::string path = build("b.clx", {"aaa", "bba", "bbb", "bbc"});  // lengths 7 and 23
    LogCapture log;
    EXPECT_EQ(CLex_Open(path.c_str(), 22, state.get()), ORTH_OUT_OF_MEMORY_ERR);
    EXPECT_TRUE(log.contains("CLex_Open: segment size 23 > budget 22"));
    EXPECT_EQ(state->segs, nullptr);
    ASSERT_EQ(CLex_Open(path.c_str(), 23, state.get()), 0);
    EXPECT_EQ(lookup("bbc"), 0);
    EXPECT_EQ(lookup("aaa"), 0);
    EXPECT_EQ(state->segs[1].data, nullptr);  // only one fits at a time
}

TEST_F(CompressedBudget, LeastRecentlyUsedSegmentIsEvicted) {
    ASSERT_EQ(CLex_Open(build("l.clx", {"aaa", "bbb", "ccc"}).c_str(), 14, state.get()), 0);  // 7 bytes each
    for (const char *w : {"aaa", "bbb", "aaa", "ccc"}) EXPECT_EQ(lookup(w), 0);
    EXPECT_NE(state->segs[0].data, nullptr);  // bbb was the least recently used
    EXPECT_EQ(state->segs[1].data, nullptr);
    EXPECT_EQ(lookup("bbb"), 0);  // a tie-free second round
    EXPECT_EQ(state->segs[0].data, nullptr);
}

TEST_F(CompressedBudget, ResidentSegmentsNeedNoFileAndOthersReportTheLoadFailure) {
    std::string path = build("r.clx", {"aaa", "bbb"});
    const std::string image = readFile(path);
    ASSERT_EQ(CLex_Open(path.c_str(), 0xFFFFFFFFu, state.get()), 0);
    EXPECT_EQ(lookup("aaa"), 0);
    std::remove(path.c_str());
    LogCapture log;
    log.clear();
    EXPECT_EQ(lookup("aaa"), 0);
    EXPECT_EQ(lookup("qqq"), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(lookup("BBB", false), ORTH_FILE_OPEN_ERR);
    EXPECT_TRUE(log.contains("loadSeg: error opening " + path));
    writeFile(path, image.substr(0, image.size() - 3));  // same table, data cut short
    EXPECT_EQ(lookup("bbb"), ORTH_UNKNOWN_LEXICON_TYPE_ERR);
    EXPECT_TRUE(logged(log, "loadSeg: read error", true));
}

using CompressedLookup = Reader;

TEST_F(CompressedLookup, SmallWordsCaseFormsAndTheEarlyStop) {
    // 1024 small words, the most a file may hold; ISO 8859-1 letters fold too.
    std::vector<std::string> words = {"I", "Ok", "a", "ab"};
    words.resize(1024, "Zq");
    words.insert(words.end(), {"abZoo", "abaa", "word", "\xe9t\xe9"});
    ASSERT_EQ(CLex_Open(build("s.clx", words).c_str(), 0, state.get()), 0);
    EXPECT_EQ(state->smallCount, 1024);
    struct Case { std::string word; bool caseSensitive; int16_t rc; } cases[] = {
        {"A", true, -3},    {"i", false, 0},     {"OK", true, -3},     {"oK", false, 0},   {"b", false, -3},
        {"Word", true, -3}, {"wOrd", false, 0},  {"words", false, -3}, {"", true, -3},  {"Zq", true, 0},
        {std::string(64, 'w'), true, -3},        {"\xc9T\xc9", false, 0},
        // The folded walk of ab stops at abZoo, before the block of a.
        {"abaa", true, 0},  {"abaa", false, -3}, {"ABZOO", false, 0},
    };
    for (const Case &c : cases) EXPECT_EQ(lookup(c.word, c.caseSensitive), c.rc) << c.word << c.caseSensitive;
}

using WordTables = Reader;

int collect(const char *, const char *decoded, void *context) {
    static_cast<std::vector<std::string> *>(context)->push_back(decoded);
    return 1;
}

// Every answer of a state against a plain one (no tables) over the words,
// their case forms and near misses, under the given character sets.
void expectSameAnswers(CLexState *fast, CLexState *plain, const std::vector<std::string> &words,
                       std::initializer_list<int16_t> charSets) {
    for (int16_t cs : charSets) {
        for (const std::string &w : words) {
            std::string upper = w, miss = w + "\xE9";
            for (char &c : upper) c = static_cast<char>(clexmodel::upper(static_cast<unsigned char>(c)));
            for (const std::string &f : {w, upper, miss, w.substr(0, w.size() - 1)}) {
                for (bool exact : {true, false})
                    ASSERT_EQ(CLex_Lookup(f.c_str(), cs, exact, fast), CLex_Lookup(f.c_str(), cs, exact, plain)) << f << cs;
            }
        }
    }
    for (uint16_t seg = 0; seg < fast->segCount; ++seg) {
        for (bool third : {false, true}) {
            std::vector<std::string> a, b;
            ASSERT_EQ(loadSeg(fast, seg), 0);
            ASSERT_EQ(loadSeg(plain, seg), 0);
            EXPECT_EQ(decodeSeg(fast, seg, "zzc", third, collect, &a), decodeSeg(plain, seg, "zzc", third, collect, &b));
            EXPECT_EQ(a, b);
        }
    }
}

TEST_F(WordTables, AnswerAsTheWalksAndAreBuiltForOrderedDataOnly) {
    const std::vector<std::string> words = {"Zac", "Zack", "abZoo", "abaa", "abc", "abcd", "abcde", "cab", "cabs",
                                            "zzc", "zzcat", "zzcz", "\xC9t\xE9", "\xE9t\xE9s"};
    const std::string path = build("w.clx", words);
    auto plain = std::make_unique<CLexState>();
    ASSERT_EQ(CLex_Open(path.c_str(), 0, state.get()), 0);
    ASSERT_EQ(CLex_Open(path.c_str(), 0, plain.get()), 0);
    plain->plainWalks = true;
    expectSameAnswers(state.get(), plain.get(), words, {0, 1, 5, 7, 0});
    for (uint16_t seg = 0; seg < state->segCount; ++seg) {
        EXPECT_NE(state->segs[seg].table, nullptr);
        EXPECT_EQ(plain->segs[seg].table, nullptr);
    }
    CLex_Close(plain.get());
    CLex_Close(state.get());
    // Words out of order in a block, and blocks out of order: the walks
    // stop at the first greater word or block, and no table says otherwise.
    const std::string block = bytes({4, 0, 0, 0, 'c', 0, 'z', 0, 'a', 0});      // abcz, then abca
    const std::string blocks = bytes({4, 0, 0, 0, 'd', 0, 'x', 0, 5, 5, 1, 0, 0, 0, 'c', 0, 0});  // cddx, then cdc
    ASSERT_EQ(CLex_Open(put("o.clx", rawLexicon({{"ab", block}, {"cd", blocks}})).c_str(), 0, state.get()), 0);
    EXPECT_EQ((std::vector<int>{lookup("abcz"), lookup("abca"), lookup("cddx"), lookup("cdc")}),
              (std::vector<int>{0, ORTH_WORD_NOT_FOUND_ERR, 0, ORTH_WORD_NOT_FOUND_ERR}));
    EXPECT_EQ(state->segs[0].table, nullptr);
    EXPECT_EQ(state->segs[1].table, nullptr);
}

TEST_F(WordTables, DataAndTablesStayWithinTheBudget) {
    std::vector<std::string> words;
    for (char a = 'a'; a <= 'f'; ++a)
        for (char b = 'a'; b <= 'f'; ++b)
            for (int n = 0; n < 40; ++n) words.push_back(std::string{a, b, 'a'} + std::to_string(1000 + n));
    const std::string path = build("b.clx", words);  // 36 segments of 40 words
    auto plain = std::make_unique<CLexState>();
    ASSERT_EQ(CLex_Open(path.c_str(), 0, plain.get()), 0);
    plain->plainWalks = true;
    for (uint32_t budget : {0u, 700u, 2000u, 20000u}) {
        SCOPED_TRACE(budget);
        ASSERT_EQ(CLex_Open(path.c_str(), budget, state.get()), 0);
        bool someTable = false;
        for (const std::string &w : words) {
            ASSERT_EQ(lookup(w), 0);
            ASSERT_EQ(lookup(w + "x", false), ORTH_WORD_NOT_FOUND_ERR);
            if (budget != 0) {
                ASSERT_LE(uint64_t{budget - state->freeBudget} + state->tableBytes, budget);
            }
            for (uint16_t seg = 0; seg < state->segCount; ++seg) someTable = someTable || state->segs[seg].table != nullptr;
        }
        EXPECT_EQ(someTable, budget != 700u);  // 700 holds a segment's data, never its table beside it
        expectSameAnswers(state.get(), plain.get(), {words[0], words[700], words.back()}, {0});
        CLex_Close(state.get());
    }
    CLex_Close(plain.get());
}

}  // namespace
