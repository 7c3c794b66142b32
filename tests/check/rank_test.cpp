// Ranked suggester.
// Groups: RankModel (typing errors ordered as people make them; the pool's
// order); RankTrie (a compressed lexicon's words walked in byte order into
// the trie; unsorted input refused; the trie search finds what a word-by-word
// search finds); Commonness (the file's path, classes built from a list,
// damaged files refused); Ranked (ORTH_SuggestRanked over a session's
// lexicons: replacements first, exclusion, case and possessive, commonness
// order, a refused file or unreadable lexicon giving the defined list, the
// packed buffer, arbitrary bytes).
#include <cctype>
#include <set>

#include "check/rank_int.h"
#include "lex/clex.h"
#include "lex/lexfreq.h"
#include "lex_fixture.h"

namespace {

int16_t distance(const char *word, const char *candidate) {
    static RankWord rw;
    prepareRankWord(&rw, word, 0, kRankWeights);
    return rankDistance(rw, candidate, 1000);
}

// The trie's words depth first, each as "word/class".
void collectTrie(const WordTrie &t, uint32_t first, const std::string &prefix, Words *out) {
    for (uint32_t n = first; n < t.count; ++n) {
        std::string w = prefix + static_cast<char>(trieLabel(t, n));
        if (t.info[n] & kTrieTerminal) out->push_back(w + "/" + std::to_string(t.info[n] >> kTrieClassShift));
        if (trieFirstChild(t, n) != 0) collectTrie(t, trieFirstChild(t, n), w, out);
        if (t.info[n] & kTrieLastSibling) break;
    }
}

int16_t collectWalk(const uint8_t *word, int len, uint32_t index, void *context) {
    static_cast<Words *>(context)->push_back(std::string(reinterpret_cast<const char *>(word), len) + "@" +
                                             std::to_string(index));
    return 0;
}

}  // namespace

TEST(RankModel, TypingErrorsCostAsPeopleMakeThem) {
    // word, the candidate a person meant, one that costs more
    const struct { const char *word, *meant, *worse; } cases[] = {
        {"activties", "activities", "activates"},   // a letter left out beats a vowel changed
        {"teh", "the", "tea"},                      // swapped neighbours
        {"recieve", "receive", "relieve"},
        {"helo", "hello", "help"},                  // one of a doubled letter
        {"cetting", "setting", "getting"},          // a sound-alike first letter
        {"ceck", "check", "cheek"},                 // a silent h left out
        {"smith", "Smith", "smite"},                // a capital costs little
        {"bufer", "buffer", "buyer"},
    };
    for (const auto &c : cases) {
        EXPECT_LT(distance(c.word, c.meant), distance(c.word, c.worse)) << c.word << " " << c.meant;
    }
    // The word's own capitals are free (the suggestion takes them later);
    // identical words cost nothing; a limit cuts the walk short.
    EXPECT_EQ((Ints{distance("Teh", "the") - distance("teh", "the"), distance("cat", "cat"),
                    distance("caf\xE9", "cafe") > 0}),
              (Ints{0, 0, 1}));
    RankWord rw;
    prepareRankWord(&rw, "abcdef", 0, kRankWeights);
    EXPECT_GT(rankDistance(rw, "uvwxyz", 150), 150);
}

TEST(RankModel, PoolKeepsTheBestRanksInOfferOrder) {
    RankPool pool{};
    pool.capacity = 3;
    const struct { const char *word; int16_t rank; } offers[] = {
        {"b", 50}, {"a", 20}, {"c", 50}, {"d", 60}, {"e", 10}, {"b", 5}, {"c", 70}, {"f", 50}};
    Words trace;
    for (const auto &o : offers) {
        offerCandidate(&pool, o.word, o.rank, o.rank);
        std::string now;
        for (int i = 0; i < pool.count; ++i) now += pool.entries[i].word + std::to_string(pool.entries[i].rank) + " ";
        trace.push_back(now + "/" + std::to_string(poolLimit(pool)));
    }
    // Full at three: only a better rank enters; a listed word moves up on a
    // better offer and keeps its rank on a worse one; equal ranks keep their order.
    EXPECT_EQ(trace, (Words{"b50 /32767", "a20 b50 /32767", "a20 b50 c50 /50", "a20 b50 c50 /50",
                            "e10 a20 b50 /50", "b5 e10 a20 /20", "b5 e10 a20 /20", "b5 e10 a20 /20"}));
}

using RankTrie = LexFixture;

TEST_F(RankTrie, LexiconWordsWalkInByteOrderIntoTheTrie) {
    addCompressed({"a", "ab", "abc", "abd", "b", "bcd", "bce"});
    CLexState clex{};
    ASSERT_EQ(CLex_Open(clxPath.c_str(), 0, &clex), 0);
    Words walked;
    EXPECT_EQ(walkLexWords(&clex, collectWalk, &walked), 0);
    CLex_Close(&clex);
    // Small words take indexes 0 to 2; segment words follow.
    EXPECT_EQ(walked, (Words{"a@0", "ab@1", "abc@3", "abd@4", "b@2", "bcd@5", "bce@6"}));

    WordTrie trie;
    TrieBuilder builder;
    ASSERT_EQ(beginTrie(&trie, &builder, 2), 0);   // grows past its first guess
    const struct { const char *word; uint8_t cls; int16_t rc; } adds[] = {
        {"a", 3, 0}, {"ab", 1, 0}, {"ab", 9, 0}, {"abc", 2, 0}, {"b", 0, 0}, {"abz", 1, ORTH_WORD_ORDER_ERR},
        {"", 1, ORTH_INVALID_WORD_ERR}, {"bcd", 15, 0}, {"b", 1, ORTH_WORD_ORDER_ERR},
    };
    for (const auto &a : adds) {
        EXPECT_EQ(addTrieWord(&builder, reinterpret_cast<const uint8_t *>(a.word), static_cast<int>(strlen(a.word)),
                              a.cls), a.rc) << a.word;
    }
    ASSERT_EQ(finishTrie(&builder), 0);
    Words words;
    collectTrie(trie, 0, "", &words);
    EXPECT_EQ(words, (Words{"a/3", "ab/9", "abc/2", "b/0", "bcd/15"}));   // a repeat keeps the larger class
    EXPECT_EQ((Ints{static_cast<int>(trie.count), static_cast<int>(trie.words)}), (Ints{6, 5}));
    freeTrie(&trie);
}

TEST(RankTrieSearch, FindsWhatAWordByWordSearchFinds) {
    // Every twentieth word of the American list, in byte order.
    std::string text = readFile(ORTH_SOURCE_DIR "/data/en_US.words");
    Words vocabulary;
    size_t n = 0;
    for (size_t pos = 0, end; (end = text.find("\r\n", pos)) != std::string::npos; pos = end + 2) {
        if (n++ % 20 == 0) vocabulary.push_back(text.substr(pos, end - pos));
    }
    ASSERT_GT(vocabulary.size(), 3000u);
    WordTrie trie;
    TrieBuilder builder;
    ASSERT_EQ(beginTrie(&trie, &builder, 0), 0);
    for (const std::string &w : vocabulary) {
        ASSERT_EQ(addTrieWord(&builder, reinterpret_cast<const uint8_t *>(w.data()), static_cast<int>(w.size()), 0), 0);
    }
    ASSERT_EQ(finishTrie(&builder), 0);
    static RankWord rw;
    for (const char *word : {"recieve", "teh", "Thier", "acommodate", "a", "zzzzzz", "caf\xE9s", "it's"}) {
        for (int16_t limit : {100, 180, 260}) {
            prepareRankWord(&rw, word, 0, kRankWeights);
            RankPool pool{};
            pool.capacity = kMaxRanked;
            searchTrie(rw, trie, false, RankLimit{limit, limit, 0}, &pool);
            // Under a limit no cost reaches, every cell of every row is worked out.
            const int16_t whole = 16000;
            std::vector<std::pair<int16_t, std::string>> brute;
            for (const std::string &w : vocabulary) {
                int16_t cost = rankDistance(rw, w.c_str(), whole);
                if (cost <= limit) brute.emplace_back(cost, w);
            }
            std::stable_sort(brute.begin(), brute.end(),
                             [](const auto &a, const auto &b) { return a.first < b.first; });
            // The pool holds the cheapest words, each at its own cost; when it
            // overflows, every word cheaper than its last entry is in it.
            ASSERT_EQ(pool.count, std::min<int>(static_cast<int>(brute.size()), kMaxRanked)) << word << limit;
            int16_t last = pool.count > 0 ? pool.entries[pool.count - 1].cost : 0;
            std::set<std::string> found;
            for (int i = 0; i < pool.count; ++i) {
                found.insert(pool.entries[i].word);
                EXPECT_EQ(pool.entries[i].cost, rankDistance(rw, pool.entries[i].word, whole)) << word;
            }
            for (const auto &b : brute) {
                if (b.first < last || pool.count < kMaxRanked) {
                    EXPECT_TRUE(found.count(b.second)) << word << " " << b.second;
                }
            }
        }
    }
    freeTrie(&trie);
}

using Commonness = LexFixture;

TEST_F(Commonness, PathRuleAndClassesBuiltFromAList) {
    const std::pair<const char *, const char *> paths[] = {
        {"MAIN.CLX", "MAIN.FRQ"}, {"d/main.clx", "d/main.frq"}, {"d.x/main", "d.x/main.FRQ"},
        {"c:\\d.x\\Main.Clx", "c:\\d.x\\Main.FRQ"}};
    char out[kPathBufSize];
    for (const auto &p : paths) EXPECT_EQ((commonnessPath(p.first, out), std::string(out)), p.second);
    EXPECT_FALSE(commonnessPath(std::string(kMaxPathLen - 2, 'x').c_str(), out));

    addCompressed({"a", "cat", "cot", "cut", "dog"});
    // cut is the most common; cat a quarter as common; COT counts for cot;
    // a and dog are not listed and rank below the rarest listed word.
    writeFile(dir.file("freq.txt"), "# counts\r\ncut 400\ncat\t100\r\n\r\nCOT  25\nzebra 7\n");
    uint32_t line = 99;
    ASSERT_EQ(ORTH_CompressLexFreq(sid, clxPath.c_str(), dir.file("freq.txt").c_str(), &line), 0);
    ASSERT_TRUE(commonnessPath(clxPath.c_str(), out));
    LexFreq freq;
    const char *reason = nullptr;
    ASSERT_EQ(LexFreq_Read(out, &freq, &reason), 0);
    Ints classes;
    for (uint32_t i = 0; i <= freq.words; ++i) classes.push_back(commonnessOf(freq, i));
    LexFreq_Free(&freq);
    // zebra (7) is as rare as COT, class 13: a and dog take 12; past the words, 0.
    EXPECT_EQ(classes, (Ints{12, 14, 13, 15, 12, 0}));

    const struct { std::string list; int16_t rc; uint32_t line; } bad[] = {
        {"cat 1\ncat\n", ORTH_INVALID_WORD_ERR, 2}, {"cat 1x\n", ORTH_INVALID_WORD_ERR, 1},
        {"cat 99999999999999999999\n", ORTH_INVALID_WORD_ERR, 1},
        {std::string(64, 'a') + " 1\n", ORTH_INVALID_WORD_ERR, 1}};
    for (const auto &b : bad) {
        writeFile(dir.file("bad.txt"), b.list);
        EXPECT_EQ(ORTH_CompressLexFreq(sid, clxPath.c_str(), dir.file("bad.txt").c_str(), &line), b.rc) << b.list;
        EXPECT_EQ(line, b.line) << b.list;
    }
    EXPECT_EQ((Ints{ORTH_CompressLexFreq(sid, clxPath.c_str(), dir.file("none.txt").c_str(), &line),
                    ORTH_CompressLexFreq(sid, dir.file("none.clx").c_str(), dir.file("freq.txt").c_str(), &line),
                    ORTH_CompressLexFreq(sid, nullptr, "x", nullptr), ORTH_CompressLexFreq(12, "x", "y", nullptr)}),
              (Ints{ORTH_FILE_NOT_FOUND_ERR, ORTH_FILE_NOT_FOUND_ERR, ORTH_FILE_NOT_FOUND_ERR, ORTH_BAD_SESSION_ID_ERR}));
}

TEST_F(Commonness, DamagedFilesAreRefusedWithTheirFault) {
    addCompressed({"cat", "cot", "cut"});
    writeFile(dir.file("freq.txt"), "cut 4\n");
    ASSERT_EQ(ORTH_CompressLexFreq(sid, clxPath.c_str(), dir.file("freq.txt").c_str(), nullptr), 0);
    char path[kPathBufSize];
    ASSERT_TRUE(commonnessPath(clxPath.c_str(), path));
    const std::string good = readFile(path);
    ASSERT_EQ(good.size(), kFreqHeaderSize + 2);
    auto with = [&](size_t at, char byte) { std::string s = good; s[at] = byte; return s; };
    const struct { std::string bytes; const char *reason; } cases[] = {
        {good.substr(0, 10), "shorter than its header"}, {with(0, 'X'), "not a commonness file"},
        {with(8, 2), "unknown version"}, {with(15, 0x7F), "word count out of range"},
        {good.substr(0, good.size() - 1), "shorter than its word count"}, {good + "x", "longer than its word count"},
        {with(kFreqHeaderSize, static_cast<char>(good[kFreqHeaderSize] ^ 1)), "checksum mismatch"},
        {with(16, static_cast<char>(good[16] ^ 1)), "checksum mismatch"},
    };
    for (const auto &c : cases) {
        writeFile(path, c.bytes);
        LexFreq freq;
        const char *reason = nullptr;
        EXPECT_EQ(LexFreq_Read(path, &freq, &reason), ORTH_UNKNOWN_LEXICON_TYPE_ERR) << c.reason;
        EXPECT_STREQ(reason, c.reason);
        EXPECT_EQ(freq.classes, nullptr);
    }
    std::remove(path);
    LexFreq freq;
    const char *reason = nullptr;
    EXPECT_EQ(LexFreq_Read(path, &freq, &reason), ORTH_FILE_NOT_FOUND_ERR);
}

class Ranked : public LexFixture {
protected:
    // ORTH_SuggestRanked's list as "word=score"; rc keeps the result.
    Words ranked(const char *word, int32_t size = 2048, uint16_t max = 25) {
        std::vector<char> buf(2048, '#');
        int16_t scores[64];
        rc = ORTH_SuggestRanked(sid, word, buf.data(), size, scores, max);
        Words out;
        for (size_t pos = 0, i = 0; size > 0 && buf[pos] != '\0'; pos += std::strlen(&buf[pos]) + 1, ++i)
            out.push_back(std::string(&buf[pos]) + "=" + std::to_string(scores[i]));
        return out;
    }
    // A compressed lexicon of the words with a commonness file from list.
    void addRankedLexicon(const Words &words, const std::string &list) {
        clxPath = dir.file("ranked.clx");
        writeFile(dir.file("list.txt"), list);
        ASSERT_EQ(compressWordsInto(words, clxPath), 0);
        ASSERT_EQ(ORTH_CompressLexFreq(sid, clxPath.c_str(), dir.file("list.txt").c_str(), nullptr), 0);
        ASSERT_GE(ORTH_OpenLex(sid, clxPath.c_str(), 0), 0);
    }
    int16_t compressWordsInto(const Words &words, const std::string &path) {
        std::string list;
        for (const std::string &w : words) list += w + "\r\n";
        writeFile(dir.file("words.txt"), list);
        uint32_t line = 0;
        int16_t r = ORTH_CompressLexInit(sid, path.c_str(), nullptr, 1033, 0, &line);
        if (r == 0) r = ORTH_CompressLexFile(sid, dir.file("words.txt").c_str(), &line);
        return r == 0 ? ORTH_CompressLexEnd(sid) : r;
    }
    static std::string firstWord(const Words &list) {
        return list.empty() ? "" : list[0].substr(0, list[0].find('='));
    }
};

TEST_F(Ranked, ReplacementsFirstExclusionCaseAndPossessive) {
    addLex(ORTH_AUTO_CHANGE_LEX_TYPE, {"teh:the"});
    addCompressed({"cat", "cot", "cut", "tea", "the", "then"});
    addLex(ORTH_EXCLUDE_LEX_TYPE, {"cot"});
    addLex(ORTH_IGNORE_LEX_TYPE, {"zebra"});
    // The replacement leads at 99 and is not offered twice.
    Words teh = ranked("teh");
    ASSERT_GE(teh.size(), 2u);
    EXPECT_EQ(teh[0], "the=99");
    EXPECT_EQ(std::count_if(teh.begin(), teh.end(), [](const std::string &s) { return s.rfind("the=", 0) == 0; }), 1);
    const Words firsts = {firstWord(ranked("Teh")), firstWord(ranked("TEH")), firstWord(ranked("teh's")),
                          firstWord(ranked("Cet")), firstWord(ranked("cet's")), firstWord(ranked("zeebra"))};
    EXPECT_EQ(firsts, (Words{"The", "THE", "the's", "Cat", "cat's", "zebra"}));
    // The excluded word is never offered, in any case.
    for (const char *w : {"cet", "Cet", "CET", "cott"}) {
        for (std::string s : ranked(w)) {
            for (char &c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            EXPECT_NE(s.substr(0, s.find('=')), "cot") << w;
        }
    }
    EXPECT_EQ(firstWord(ranked("cett")), "cat");
}

TEST_F(Ranked, CommonnessOrdersEqualErrors) {
    // cat and cut are one vowel from cet: the trie's order, or the commonness file's.
    addCompressed({"cat", "cut", "dog"});
    EXPECT_EQ(firstWord(ranked("cet")), "cat");
    SetUp();
    addRankedLexicon({"cat", "cut", "dog"}, "cut 1000\ncat 10\n");
    Words cet = ranked("cet");
    ASSERT_GE(cet.size(), 2u);
    EXPECT_EQ(cet[0].substr(0, 4), "cut=");
    // Scores fall down the list and stay within 0 to 98.
    Ints scores;
    for (const std::string &s : cet) scores.push_back(std::stoi(s.substr(s.find('=') + 1)));
    EXPECT_TRUE(std::is_sorted(scores.rbegin(), scores.rend()));
    EXPECT_LE(scores[0], 98);
}

TEST_F(Ranked, RefusedCommonnessFileGivesTheDefinedList) {
    LogCapture log;
    addRankedLexicon({"cat", "cut", "dog"}, "cut 1000\n");
    char path[kPathBufSize];
    ASSERT_TRUE(commonnessPath(clxPath.c_str(), path));
    std::string bytes = readFile(path);
    bytes.back() = static_cast<char>(bytes.back() ^ 0x10);
    writeFile(path, bytes);
    EXPECT_EQ(ranked("cet"), suggest("cet"));
    EXPECT_EQ(ranked("dgo"), suggest("dgo"));   // refused once, for good
    EXPECT_TRUE(log.contains(std::string("ORTH_SuggestRanked: ") + path +
                             " refused (checksum mismatch); the defined order is used"));

    // A sound file made for another word list is refused too.
    SetUp();
    addRankedLexicon({"cat", "cut", "dog"}, "cut 1000\n");
    std::string other = dir.file("other.clx");
    ASSERT_EQ(compressWordsInto({"cat", "cut", "dot"}, other), 0);
    char otherPath[kPathBufSize];
    ASSERT_TRUE(commonnessPath(other.c_str(), otherPath));
    writeFile(otherPath, readFile(path));
    ORTH_CloseLex(sid, 0);
    ASSERT_EQ(ORTH_OpenLex(sid, other.c_str(), 0), 0);
    EXPECT_EQ(ranked("cet"), suggest("cet"));
    EXPECT_TRUE(log.contains(std::string("ORTH_SuggestRanked: ") + otherPath +
                             " refused (made for another word list); the defined order is used"));
}

TEST_F(Ranked, UnreadableLexiconGivesTheDefinedList) {
    LogCapture log;
    addCompressed({"cat", "cot", "cut", "dog", "dot"});
    Words defined = suggest("cet");
    // A segment's coded words running past its end: the index cannot be made.
    std::string bytes = readFile(clxPath);
    ASSERT_GT(bytes.size(), 2830u);
    bytes[bytes.size() - 1] = '\x7A';   // the last word's end code becomes a letter
    writeFile(clxPath, bytes);
    ORTH_CloseLex(sid, 0);
    ASSERT_EQ(ORTH_OpenLex(sid, clxPath.c_str(), 0), 0);
    EXPECT_EQ(ranked("cet"), suggest("cet"));
    EXPECT_EQ(suggest("cet"), defined);
    bool logged = false;
    for (const std::string &line : log.lines()) logged |= line.rfind("ORTH_SuggestRanked: can't index ", 0) == 0;
    EXPECT_TRUE(logged);
}

TEST_F(Ranked, ArbitraryBytesGiveWellFormedLists) {
    addCompressed({"a", "cat", "cot", "it's", "re-enter", "the"});
    addLex(ORTH_IGNORE_LEX_TYPE, {"zebra"});
    setOption(ORTH_SUGGEST_SPLIT_WORDS_OPT, 1);
    uint32_t seed = 12345;
    auto next = [&seed] { seed = seed * 1103515245u + 12345u; return seed >> 16; };
    char word[90], buf[600];
    int16_t scores[25];
    for (int i = 0; i < 400; ++i) {
        size_t len = 1 + next() % 80;
        for (size_t k = 0; k < len; ++k) word[k] = static_cast<char>(1 + next() % 255);
        word[len] = '\0';
        std::memset(buf, '#', sizeof buf);
        int16_t r = ORTH_SuggestRanked(sid, word, buf, sizeof buf, scores, 25);
        ASSERT_TRUE(r == 0 || r == ORTH_BUFFER_TOO_SMALL_ERR) << r;
        size_t used = 0;   // words, each with its zero, then the final zero, inside the buffer
        while (used < sizeof buf && buf[used] != '\0') used += std::strlen(buf + used) + 1;
        ASSERT_LT(used, sizeof buf);
    }
    EXPECT_EQ(firstWord(ranked("catcot")), "cat cot");   // split words still offered
}

TEST_F(Ranked, PackedBufferBoundsAndBadInput) {
    LogCapture log;
    addLex(ORTH_IGNORE_LEX_TYPE, {"cat", "cot"});
    Words all = ranked("cut");
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(ranked("cut", 8), Words{all[0]});   // "cat\0" fits, "cot\0" and the final zero do not
    EXPECT_EQ(rc, ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_EQ(ranked("cut", 2048, 1), Words{all[0]});
    EXPECT_EQ(ranked("cut", 2048, 0).size() + ranked("'s").size() + rc, 0u);
    char buf[8];
    int16_t scores[4];
    EXPECT_EQ((Ints{ORTH_SuggestRanked(9, "w", buf, 8, scores, 4), ORTH_SuggestRanked(sid, nullptr, buf, 8, scores, 4),
                    ORTH_SuggestRanked(sid, "cut", nullptr, 100, scores, 4),
                    ORTH_SuggestRanked(sid, std::string(200, 'x').c_str(), buf, 8, nullptr, 4)}),
              (Ints{ORTH_BAD_SESSION_ID_ERR, ORTH_INVALID_WORD_ERR, ORTH_BUFFER_TOO_SMALL_ERR, 0}));
    EXPECT_TRUE(log.contains("ORTH_SuggestRanked: bad session id 9") &&
                log.contains("ORTH_SuggestRanked: buffer too small"));
}
