// Compressed lexicon reader.
// Groups: CompressedOpen (probe, open, every refused header and segment
// table), CompressedCorrupt (damaged segment data is refused, never read
// past), CompressedBudget (budget check, least-recently-used eviction,
// resident segments need no file), CompressedLookup (small words, exact and
// case-insensitive lookups against a plain model of the rules).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "lex/clex.h"
#include "lex/clex_int.h"
#include "lex_slow/clex_model.h"
#include "orth.h"
#include "support/test_util.h"

namespace {

bool logged(const LogCapture &log, const std::string &prefix) {
    for (const std::string &line : log.lines()) {
        if (line.rfind(prefix, 0) == 0) return true;
    }
    return false;
}

void putU32(std::string &b, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) b[at + i] = static_cast<char>(v >> (8 * i));
}
void putU16(std::string &b, size_t at, uint16_t v) {
    b[at] = static_cast<char>(v);
    b[at + 1] = static_cast<char>(v >> 8);
}

struct RawSeg {
    std::string key;
    std::string data;
};

// A file laid out by hand, for data the compressor would never write.
std::string rawLexicon(const std::vector<RawSeg> &segs, const std::string &primary0 = "") {
    std::string b(kClexHeaderSize, '\0');
    putU32(b, kOffVersion, kClexVersion);
    putU16(b, kOffSegCount, static_cast<uint16_t>(segs.size()));
    putU16(b, kOffLanguage, 1033);
    b.replace(kOffPrimary, primary0.size(), primary0);
    uint32_t offset = kClexHeaderSize + kClexSegHeaderSize * segs.size();
    for (const RawSeg &s : segs) {
        std::string rec(10, '\0');
        putU32(rec, 0, offset);
        putU32(rec, 4, static_cast<uint32_t>(s.data.size()));
        rec[8] = s.key[0];
        rec[9] = s.key[1];
        b += rec;
        offset += s.data.size();
    }
    for (const RawSeg &s : segs) b += s.data;
    return b;
}

std::string bytes(std::initializer_list<int> v) {
    std::string s;
    for (int c : v) s += static_cast<char>(c);
    return s;
}

class Reader : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        sid = ORTH_OpenSession();
        state = std::make_unique<CLexState>();
    }
    void TearDown() override {
        CLex_Close(state.get());
        closeAllSessions();
    }
    std::string build(const std::string &name, std::vector<std::string> words) {
        std::string wf = dir.file(name + ".txt"), out = dir.file(name);
        std::string text;
        for (const std::string &w : words) text += w + "\r\n";
        writeFile(wf, text);
        uint32_t line = 0;
        EXPECT_EQ(ORTH_CompressLexInit(sid, out.c_str(), nullptr, 2057, 0, &line), 0);
        EXPECT_EQ(ORTH_CompressLexFile(sid, wf.c_str(), &line), 0);
        EXPECT_EQ(ORTH_CompressLexEnd(sid), 0);
        return out;
    }
    std::string put(const std::string &name, const std::string &content) {
        writeFile(dir.file(name), content);
        return dir.file(name);
    }
    TempDir dir;
    int16_t sid = -1;
    std::unique_ptr<CLexState> state;
};

using CompressedOpen = Reader;

TEST_F(CompressedOpen, ProbeTellsCompressedFilesApartSilently) {
    std::string good = build("g.clx", {"ab", "abc"});
    std::string text = put("t.tlx", "#LID 1033 1 0\r\nword\r\n");
    LogCapture log;
    log.clear();
    int16_t type = 0;
    uint16_t language = 0;
    EXPECT_EQ(CLex_GetInfo(good.c_str(), &type, &language), 0);
    EXPECT_EQ(type, 1);
    EXPECT_EQ(language, 2057);
    EXPECT_EQ(CLex_GetInfo(text.c_str(), &type, &language), ORTH_UNKNOWN_LEXICON_TYPE_ERR);
    EXPECT_TRUE(log.lines().empty());
    std::string missing = dir.file("none.clx");
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
    auto with = [&](auto change) { std::string b = base; change(b); return b; };
    struct Case {
        const char *name;
        std::string file;
        int16_t rc;
        std::string message;
    } cases[] = {
        {"short header", base.substr(0, 2000), -6, "CLex_Open: error reading index header"},
        {"version", with([](std::string &b) { b[256] = 3; }), -6,
         "CLex_Open: expected lex version 57000402, read 57000403"},
        {"1025 small words", with([](std::string &b) { putU16(b, 260, 1025); }), -6,
         "CLex_Open: lex contains 1025 small words"},
        {"short small words", with([](std::string &b) { putU16(b, 260, 1000); }), -6,
         "CLex_Open: error reading small-words table"},
        {"short record", with([](std::string &b) { putU16(b, 262, 60); }), ORTH_FILE_READ_ERR,
         "CLex_Open: error reading CLexSegHeader"},
        {"segment over 65535", with([&](std::string &b) { putU32(b, rec0 + 4, 65536); }), -6,
         "CLex_Open: segment 0 length 65536"},
        {"past the end", with([&](std::string &b) { putU32(b, rec1 + 4, 8); }), -6,
         "CLex_Open: segment 1 "},
        {"offset past the end", with([&](std::string &b) { putU32(b, rec0, 0xFFFFFFF0u); }), -6,
         "CLex_Open: segment 0 "},
        {"keys out of order", with([&](std::string &b) { b[rec1 + 8] = 'a'; b[rec1 + 9] = 'a'; }), -6,
         "CLex_Open: segment table out of order"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        LogCapture log;
        std::string path = put("bad.clx", c.file);
        EXPECT_EQ(CLex_Open(path.c_str(), 0, state.get()), c.rc);
        EXPECT_TRUE(logged(log, c.message));
        EXPECT_EQ(state->segs, nullptr);
    }
    std::string ok = put("ok.clx", base);
    ASSERT_EQ(CLex_Open(ok.c_str(), 0, state.get()), 0);
    EXPECT_EQ(state->segCount, 2);
    EXPECT_EQ(CLex_Lookup("xyz", 0, true, state.get()), 0);
}

TEST_F(CompressedOpen, SmallWordCountUpTo1024IsAccepted) {
    std::vector<std::string> words;
    for (int i = 0; i < 1024; ++i) words.push_back(std::string(1, static_cast<char>('A' + i % 26)) + "q");
    std::sort(words.begin(), words.end());
    std::string path = build("s.clx", words);
    ASSERT_EQ(CLex_Open(path.c_str(), 0, state.get()), 0);
    EXPECT_EQ(state->smallCount, 1024);
    EXPECT_EQ(CLex_Lookup("Zq", 0, true, state.get()), 0);
}

using CompressedCorrupt = Reader;

TEST_F(CompressedCorrupt, DamagedSegmentDataIsRefusedEitherWayOfLooking) {
    std::string x61(61, 'x'), x56(56, 'x');
    struct Case {
        const char *name;
        std::string data;
        std::string message;
    } cases[] = {
        {"truncated block header", bytes({1, 0, 0}), "decodeSeg: block header past end"},
        {"body past the segment", bytes({9, 0, 0, 0, 'c', 0, 0}), "decodeSeg: block of 9 bytes"},
        {"keep all in a block's first word", bytes({3, 0, 0, 0, 'c', 0, 1, 'x', 0}), "decodeSeg: keeps"},
        {"keep all but last first", bytes({3, 0, 0, 0, 'c', 0, 3, 'x', 0}), "decodeSeg: keeps"},
        {"keep more than there was", bytes({6, 0, 0, 0, 'c', 0, 'd', 0, 2, 5, 'x', 0}), "decodeSeg: keeps"},
        {"keep code inside a word", bytes({6, 0, 0, 0, 'c', 0, 'd', 'e', 0, 'x', 1, 0}), "decodeSeg: keeps"},
        {"keep count cut off", bytes({2, 0, 0, 0, 'c', 0, 'd', 2}), "decodeSeg: keep count past"},
        {"suffix index cut off", bytes({2, 0, 0, 0, 'c', 0, 'd', 4}), "decodeSeg: suffix index past"},
        {"unterminated word", bytes({2, 0, 0, 0, 'c', 0, 'd', 'e'}), "decodeSeg: word runs past"},
        {"64-byte word", bytes({61, 0, 0, 0, 'c', 0}) + x61, "decodeSeg: word over 63 bytes"},
        {"suffix past 63 bytes", bytes({57, 0, 0, 0, 'c', 0}) + x56 + bytes({6}), "decodeSeg: word over 63 bytes"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        std::string path = put("c.clx", rawLexicon({{"ab", c.data}}, "suffixes"));
        ASSERT_EQ(CLex_Open(path.c_str(), 0, state.get()), 0);
        LogCapture log;
        EXPECT_EQ(CLex_Lookup("abcz", 0, true, state.get()), ORTH_UNKNOWN_LEXICON_TYPE_ERR);
        EXPECT_EQ(CLex_Lookup("ABCZ", 0, false, state.get()), ORTH_UNKNOWN_LEXICON_TYPE_ERR);
        EXPECT_TRUE(logged(log, c.message));
        CLex_Close(state.get());
    }
}

TEST_F(CompressedCorrupt, UnloadedSuffixAndEmptySegmentAreHarmless) {
    // Code 6 with an all-zero primary entry appends nothing: the word is abc.
    std::string path = put("z.clx", rawLexicon({{"ab", bytes({2, 0, 0, 0, 'c', 0, 5, 6})}, {"cd", ""}}));
    ASSERT_EQ(CLex_Open(path.c_str(), 0, state.get()), 0);
    EXPECT_EQ(CLex_Lookup("abc", 0, true, state.get()), 0);
    EXPECT_EQ(CLex_Lookup("abcd", 0, true, state.get()), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_EQ(loadSeg(state.get(), 1), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_EQ(CLex_Lookup("cde", 0, true, state.get()), ORTH_WORD_NOT_FOUND_ERR);
}

using CompressedBudget = Reader;

TEST_F(CompressedBudget, BudgetBelowTheLongestSegmentIsRefused) {
    std::string path = build("b.clx", {"aaa", "bba", "bbb", "bbc"});  // lengths 7 and 23
    LogCapture log;
    EXPECT_EQ(CLex_Open(path.c_str(), 22, state.get()), ORTH_OUT_OF_MEMORY_ERR);
    EXPECT_TRUE(log.contains("CLex_Open: segment size 23 > budget 22"));
    EXPECT_EQ(state->segs, nullptr);
    ASSERT_EQ(CLex_Open(path.c_str(), 23, state.get()), 0);
    EXPECT_EQ(CLex_Lookup("bbc", 0, true, state.get()), 0);
    EXPECT_EQ(CLex_Lookup("aaa", 0, true, state.get()), 0);
    EXPECT_EQ(state->segs[1].data, nullptr);  // only one fits at a time
    EXPECT_EQ(state->freeBudget, 23u - 7u);
}

TEST_F(CompressedBudget, LeastRecentlyUsedSegmentIsEvicted) {
    std::string path = build("l.clx", {"aaa", "bbb", "ccc"});  // three 7-byte segments
    ASSERT_EQ(CLex_Open(path.c_str(), 14, state.get()), 0);
    for (const char *w : {"aaa", "bbb", "aaa", "ccc"}) EXPECT_EQ(CLex_Lookup(w, 0, true, state.get()), 0);
    EXPECT_NE(state->segs[0].data, nullptr);
    EXPECT_EQ(state->segs[1].data, nullptr);
    EXPECT_NE(state->segs[2].data, nullptr);
    EXPECT_EQ(state->freeBudget, 0u);
    EXPECT_EQ(state->useCounter, 4u);
    EXPECT_EQ(CLex_Lookup("bbb", 0, true, state.get()), 0);  // a tie-free second round
    EXPECT_EQ(state->segs[0].data, nullptr);
}

TEST_F(CompressedBudget, ResidentSegmentsNeedNoFileAndOthersReportTheLoadFailure) {
    std::string path = build("r.clx", {"aaa", "bbb"});
    ASSERT_EQ(CLex_Open(path.c_str(), 0xFFFFFFFFu, state.get()), 0);
    EXPECT_EQ(CLex_Lookup("aaa", 0, true, state.get()), 0);
    EXPECT_EQ(state->freeBudget, 0xFFFFFFFFu - 7);
    std::remove(path.c_str());
    LogCapture log;
    log.clear();
    EXPECT_EQ(CLex_Lookup("aaa", 0, true, state.get()), 0);
    EXPECT_EQ(CLex_Lookup("qqq", 0, true, state.get()), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(CLex_Lookup("bbb", 0, true, state.get()), ORTH_FILE_OPEN_ERR);
    EXPECT_EQ(CLex_Lookup("BBB", 0, false, state.get()), ORTH_FILE_OPEN_ERR);
    EXPECT_TRUE(log.contains("loadSeg: error opening " + path));
    EXPECT_EQ(state->segs[1].data, nullptr);
    std::string b = readFile(build("r.clx", {"aaa", "bbb"}));
    writeFile(path, b.substr(0, b.size() - 3));  // same table, data cut short
    EXPECT_EQ(CLex_Lookup("bbb", 0, true, state.get()), ORTH_UNKNOWN_LEXICON_TYPE_ERR);
    EXPECT_TRUE(logged(log, "loadSeg: read error"));
}

using CompressedLookup = Reader;

TEST_F(CompressedLookup, SmallWordsCaseFormsAndTheEarlyStop) {
    std::string path = build("s.clx", {"I", "Ok", "a", "ab", "abZoo", "abaa", "word"});
    ASSERT_EQ(CLex_Open(path.c_str(), 0, state.get()), 0);
    struct Case {
        const char *word;
        bool caseSensitive;
        int16_t rc;
    } cases[] = {
        {"a", true, 0},     {"A", true, -3},   {"A", false, 0},   {"I", true, 0},
        {"i", false, 0},    {"Ok", true, 0},   {"OK", true, -3},  {"OK", false, 0},
        {"oK", false, 0},   {"ok", false, 0},  {"b", false, -3},  {"AB", false, 0},
        {"word", true, 0},  {"Word", true, -3}, {"Word", false, 0}, {"WORD", false, 0},
        {"wOrd", false, 0}, {"words", false, -3}, {"", true, -3},
        // The folded walk of ab stops at abZoo, before the block of a.
        {"abaa", true, 0},  {"abaa", false, -3}, {"ABZOO", false, 0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.word);
        EXPECT_EQ(CLex_Lookup(c.word, 0, c.caseSensitive, state.get()), c.rc);
    }
    EXPECT_EQ(CLex_Lookup(std::string(64, 'w').c_str(), 0, true, state.get()), -3);
}

TEST_F(CompressedLookup, AgreesWithThePlainModelInEveryCaseForm) {
    const std::string alphabet = "abAByzZ\xe9\xc9";
    std::mt19937 rng(7);
    std::set<std::string> unique;
    while (unique.size() < 400) {
        std::string w;
        size_t len = 1 + rng() % 5;
        for (size_t i = 0; i < len; ++i) w += alphabet[rng() % alphabet.size()];
        unique.insert(w);
    }
    std::vector<std::string> words(unique.begin(), unique.end());  // byte-wise order
    std::vector<std::string> fileWords;
    // Small words first: each need only be above the last longer word.
    for (const std::string &w : words) if (w.size() < 3) fileWords.push_back(w);
    for (const std::string &w : words) if (w.size() >= 3) fileWords.push_back(w);
    std::string path = build("m.clx", fileWords);
    ASSERT_EQ(CLex_Open(path.c_str(), 0, state.get()), 0);
    clexmodel::Model model(fileWords);
    int found = 0;
    for (const std::string &w : words) {
        for (const std::string &q : clexmodel::caseForms(w)) {
            SCOPED_TRACE(q);
            bool expected = model.findsIgnoringCase(q);
            found += expected;
            EXPECT_EQ(CLex_Lookup(q.c_str(), 0, false, state.get()), expected ? 0 : ORTH_WORD_NOT_FOUND_ERR);
            bool exact = unique.count(q) != 0;
            EXPECT_EQ(CLex_Lookup(q.c_str(), 0, true, state.get()), exact ? 0 : ORTH_WORD_NOT_FOUND_ERR);
        }
    }
    EXPECT_GT(found, 700);  // most forms are found; the early stop hides some
}

}  // namespace

namespace {

int visitAll(const char *, const char *decoded, void *context) {
    *static_cast<size_t *>(context) += std::string(decoded).size();
    return 1;
}

TEST_F(CompressedCorrupt, RandomDamageNeverReadsOutOfBounds) {
    std::vector<std::string> words = {"ab", "abc", "abcde", "abcdef", "abcdg", "abd", "abdicate",
                                      "bcd", "bcdef", "bcdeg", "bcx", "zzz", "zzzz"};
    const std::string base = readFile(build("base.clx", words));
    std::mt19937 rng(11);
    for (int round = 0; round < 400; ++round) {
        std::string b = base;
        for (int k = 0; k < 3; ++k) {  // damage in the tables or the data
            size_t at = kClexHeaderSize + rng() % (b.size() - kClexHeaderSize);
            b[at] = static_cast<char>(rng() % 4 == 0 ? rng() % 8 : rng());
        }
        std::string path = put("r.clx", b);
        if (CLex_Open(path.c_str(), round % 2 ? 0 : 64, state.get()) != 0) continue;
        for (const std::string &w : words) {
            for (bool exact : {true, false}) {
                int16_t rc = CLex_Lookup(w.c_str(), 0, exact, state.get());
                EXPECT_TRUE(rc == 0 || rc == ORTH_WORD_NOT_FOUND_ERR || rc == ORTH_UNKNOWN_LEXICON_TYPE_ERR) << rc;
            }
        }
        for (uint16_t seg = 0; seg < state->segCount; ++seg) {
            if (loadSeg(state.get(), seg) != 0) continue;
            size_t total = 0;
            int rc = decodeSeg(state.get(), seg, "", false, visitAll, &total);
            EXPECT_TRUE(rc == 0 || rc == ORTH_UNKNOWN_LEXICON_TYPE_ERR);
        }
        CLex_Close(state.get());
    }
}

}  // namespace
