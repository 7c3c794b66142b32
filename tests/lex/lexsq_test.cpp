// Lexicon compressor.
// Groups: CompressedFile (file layout and word coding, byte for byte),
// CompressorInput (word-file and suffix-file rules, line numbers, log lines),
// CompressorRun (the ORTH_ calls, state across Init/File/End/Abort, temporary
// file), CompressorFaults (failing creates and writes).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lex_slow/clex_model.h"
#include "platform/platform.h"

namespace {

using clexmodel::bytes;
using clexmodel::le;
using clexmodel::logged;
using Lines = std::vector<std::string>;
constexpr size_t kHeader = 2806;

class Compressor : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        sid = ORTH_OpenSession();
    }
    void TearDown() override {
        platClearFaults();
        closeAllSessions();
    }
    std::string put(const std::string &name, const Lines &lines) {
        writeFile(dir.file(name), clexmodel::crlf(lines));
        return dir.file(name);
    }
    // Word lists (and suffix lines, if any) compressed into dir/name.
    int16_t compress(const std::string &name, const std::vector<Lines> &lists, const Lines &suffixes = {},
                     uint32_t *line = nullptr) {
        Lines files;
        for (const Lines &l : lists) files.push_back(put("words" + std::to_string(files.size()) + ".txt", l));
        std::string sfx = put("suffixes.txt", suffixes);
        return clexmodel::compress(sid, dir.file(name), files, suffixes.empty() ? nullptr : sfx.c_str(), 1033, line);
    }
    // The segment data of a file holding one segment.
    std::string onlySegment(const std::string &name) {
        std::string b = readFile(dir.file(name));
        EXPECT_EQ(le<uint16_t>(b, 262), 1);
        size_t rec = kHeader + 2 * le<uint16_t>(b, 260);
        return b.substr(le<uint32_t>(b, rec), le<uint32_t>(b, rec + 4));
    }
    bool tempExists() { return fileExists(dir.file("LEXSQXXX.TMP")); }
    TempDir dir;
    int16_t sid = -1;
    uint32_t line = 0;
};

using CompressedFile = Compressor;

TEST_F(CompressedFile, ThreeWordExampleIsExactToTheByte) {
    ASSERT_EQ(compress("x.clx", {{"ab", "abc", "abd"}}), 0);
    // Version, 1 small word, 1 segment, language 1033, char set 0, no suffixes;
    // small word ab, record {offset 2833 - 15, length 15, key ab}, one block.
    std::string expected = bytes({2, 4, 0, 0x57, 1, 0, 1, 0, 9, 4, 0, 0}) + std::string(2538, '\0') +
                           bytes({'a', 'b', 2, 0x0B, 0, 0, 0x0F, 0, 0, 0, 'a', 'b', 2, 0, 0, 0, 'c', 0, 0, 5, 1, 0, 0, 0, 'd', 0, 0});
    EXPECT_EQ(readFile(dir.file("x.clx")).substr(256), expected);
}

TEST_F(CompressedFile, BannerIsTheOnlyPartThatChangesBetweenRuns) {
    Lines words = {"a", "cat", "cats", "dog", "doge", "dogs", "zebra"};
    ASSERT_EQ(compress("1.clx", {words}, {"s", "e"}) + compress("2.clx", {words}, {"s", "e"}), 0);
    std::string a = readFile(dir.file("1.clx")), b = readFile(dir.file("2.clx"));
    std::string banner(a.c_str());  // "ORTH Lexicon 57000402 ", a 24-character time, LF CR, ..., CR LF
    EXPECT_EQ(banner.substr(0, 22) + banner.substr(46, 2) + banner.substr(banner.size() - 2),
              "ORTH Lexicon 57000402 \n\r\r\n");
    EXPECT_EQ(a.find_first_not_of('\0', banner.size()), 256u);
    EXPECT_EQ(a.replace(22, 24, 24, '*'), b.replace(22, 24, 24, '*'));
    ASSERT_EQ(compress("e.clx", {{}}), 0);
    EXPECT_EQ(readFile(dir.file("e.clx")).size(), kHeader);  // no small words, no segments
}

TEST_F(CompressedFile, WordCodingTable) {
    Lines manyThenYz(26, "q");
    manyThenYz.insert(manyThenYz.end(), {"", "yz"});
    const std::string abc = bytes({0, 0, 0, 'c', 0});  // after a block's length byte: first word abc
    struct Case { Lines words, suffixes; std::string segment; } cases[] = {
        // A lone three-byte word: header with length 1, body 0x00.
        {{"abc"}, {}, bytes({1}) + abc + bytes({0})},
        // The worked block, last in its segment: no padding.
        {{"abcde", "abcdef", "abcdg", "abcx"}, {}, bytes({11}) + abc + bytes({'d', 'e', 0, 1, 'f', 0, 'd', 'g', 0, 'x', 0})},
        // The same block followed by another: padded with 0x05 to 20 bytes.
        {{"abcde", "abcdef", "abcdg", "abcx", "abd"}, {},
         bytes({14}) + abc + bytes({'d', 'e', 0, 1, 'f', 0, 'd', 'g', 0, 'x', 0, 5, 5, 5, 1, 0, 0, 0, 'd', 0, 0})},
        // Differing in the last character only: keep all but the last.
        {{"abcdef", "abcdeg"}, {}, bytes({7}) + abc + bytes({'d', 'e', 'f', 0, 3, 'g', 0})},
        // A longer previous word: keep 3 + n.
        {{"abcdefgh", "abcdefxy"}, {}, bytes({11}) + abc + bytes({'d', 'e', 'f', 'g', 'h', 0, 2, 3, 'x', 'y', 0})},
        // A suffix match wins over literals; the lowest entry first; secondary via 0x04.
        {{"walking"}, {"#comment", "ing", "ed"}, bytes({2, 0, 0, 0, 'l', 0, 'k', 6})},
        {{"abcat", "abcated"}, {"ted", "ed"}, bytes({5}) + abc + bytes({'a', 't', 0, 1, 7})},
        {{"abcxyz"}, manyThenYz, bytes({3}) + abc + bytes({'x', 4, 1})},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.words.back());
        ASSERT_EQ(compress("c.clx", {c.words}, c.suffixes), 0);
        EXPECT_EQ(onlySegment("c.clx"), c.segment);
    }
}

TEST_F(CompressedFile, SuffixFileFillsPrimaryThenSecondaryAndCountsLines) {
    Lines sfx = {"#comment", "ing", "ed", "", "verylongsuffix"};
    for (int i = 0; i < 300; ++i) sfx.push_back("s" + std::to_string(i));
    std::string out = dir.file("s.clx");
    ASSERT_EQ(ORTH_CompressLexInit(sid, out.c_str(), put("sfx.txt", sfx).c_str(), 2057, 0, &line), 0);
    EXPECT_EQ(line, 1u + 26 + 256);  // reading stops when both tables are full
    ASSERT_EQ(ORTH_CompressLexEnd(sid), 0);
    std::string b = readFile(out);
    EXPECT_EQ(le<uint16_t>(b, 264), 2057);
    // ing, ed, the empty line (an entry too), verylong; the 27th and the last.
    EXPECT_EQ(b.substr(268, 36), std::string("ing\0\0\0\0\0\0ed\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0verylong\0", 36));
    EXPECT_EQ(b.substr(502, 9) + b.substr(502 + 255 * 9, 9), std::string("s22\0\0\0\0\0\0s277\0\0\0\0\0", 18));
}

using CompressorInput = Compressor;

TEST_F(CompressorInput, RefusedLinesGiveCodeLineNumberAndLogLine) {
    std::string tooLong(64, 'x');
    Lines big;  // one segment over the 65535-byte read limit
    for (int i = 1000; i < 2500; ++i) big.push_back("ab" + std::to_string(i) + std::string(55, 'q'));
    struct Case { std::vector<Lines> files; int16_t rc; uint32_t line; std::string message; } cases[] = {
        // A key built by an earlier file fails when the later file's segment ends.
        {{{"abc", "abd"}, {"aaa", "abe"}}, ORTH_WORD_ORDER_ERR, 2, "addSegment: duplicate segment ab"},
        {{{"abc", "ab"}}, ORTH_WORD_ORDER_ERR, 2, "LexSqFile: ab <= abc"},
        {{{"abc", "abc"}}, ORTH_WORD_ORDER_ERR, 2, "LexSqFile: abc <= abc"},
        {{{"#x", "", "abc", "abb"}}, ORTH_WORD_ORDER_ERR, 4, "LexSqFile: abb <= abc"},
        {{{"abc", tooLong}}, ORTH_INVALID_WORD_ERR, 2, "LexSqFile: word " + tooLong + " too long"},
        {{{"ab\tc"}}, ORTH_INVALID_WORD_ERR, 1, "LexSqFile: invalid word: ab\tc "},
        {{{"abc", "ab\x81"}}, ORTH_INVALID_WORD_ERR, 2, "LexSqFile: invalid word: ab\x81 "},
        {{Lines(1025, "a")}, ORTH_TOO_MANY_SMALL_WORDS_ERR, 1025, "LexSqFile: too many small words (a)"},
        // The line of the word that takes the segment past 65535 bytes, not
        // of the one that would close it.
        {{big}, ORTH_BUFFER_TOO_SMALL_ERR, 1111, "LexSqFile: segment ab too long at " + big[1110] + " (65563 bytes)"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.message);
        LogCapture log;
        EXPECT_EQ(compress("e.clx", c.files, {}, &line), c.rc);
        EXPECT_EQ(line, c.line);
        EXPECT_TRUE(logged(log, c.message));
    }
    // One word fewer fits.
    EXPECT_EQ(compress("e.clx", {Lines(big.begin(), big.begin() + 1110)}, {}, &line), 0);
}

TEST_F(CompressorInput, SmallWordsCheckedOnlyAgainstTheLastLongWordAndFilesMergeIntoKeyOrder) {
    ASSERT_EQ(compress("s.clx", {{"b", "a", "a", "abc", "x", std::string(63, 'y')}}), 0);
    std::string b = readFile(dir.file("s.clx"));
    EXPECT_EQ(le<uint16_t>(b, 260), 4);
    EXPECT_EQ(b.substr(kHeader, 8), std::string("a\0a\0b\0x\0", 8));  // sorted, repeat kept
    EXPECT_EQ(le<uint16_t>(b, 262), 2);
    ASSERT_EQ(compress("m.clx", {{"xyz"}, {"abc", "mno"}}), 0);
    b = readFile(dir.file("m.clx"));
    ASSERT_EQ(le<uint16_t>(b, 262), 3);
    // Records sorted by key, data in build order: xy first.
    EXPECT_EQ(b.substr(kHeader + 8, 2) + b.substr(kHeader + 18, 2) + b.substr(kHeader + 28, 2), "abmnxy");
    EXPECT_EQ(le<uint32_t>(b, kHeader + 20), kHeader + 30);
    EXPECT_EQ(le<uint32_t>(b, kHeader), kHeader + 37);
}

using CompressorRun = Compressor;

TEST_F(CompressorRun, BadSessionMissingInitAndFailedInitAreRefused) {
    LogCapture log;
    EXPECT_EQ(ORTH_CompressLexEnd(16), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_TRUE(logged(log, "ORTH_CompressLexEnd: bad session id 16"));
    EXPECT_EQ(ORTH_CompressLexFile(sid, "w", &line), ORTH_UNSUPPORTED_ACTION_ERR);
    EXPECT_TRUE(logged(log, "ORTH_CompressLexFile: call ORTH_CompressLexInit first"));
    std::string out = dir.file("o.clx"), missing = dir.file("nosuch.txt"), noFolder = dir.file("none/o.clx");
    EXPECT_EQ(ORTH_CompressLexInit(sid, out.c_str(), missing.c_str(), 1033, 0, &line), ORTH_FILE_OPEN_ERR);
    EXPECT_TRUE(logged(log, "loadSuffixes: can't open " + missing));
    EXPECT_FALSE(tempExists());
    EXPECT_EQ(ORTH_CompressLexInit(sid, std::string(300, 'p').c_str(), nullptr, 1033, 0, &line), ORTH_FILE_OPEN_ERR);
    EXPECT_EQ(ORTH_CompressLexInit(sid, noFolder.c_str(), nullptr, 1033, 0, &line), ORTH_FILE_OPEN_ERR);
    EXPECT_TRUE(logged(log, "LexSqInit: can't open " + dir.file("none/LEXSQXXX.TMP")));
    EXPECT_EQ(ORTH_CompressLexFile(sid, missing.c_str(), &line), ORTH_UNSUPPORTED_ACTION_ERR);
}

TEST_F(CompressorRun, TemporaryFileLivesBesideTheOutputUntilEndAbortOrClose) {
    TempDir other;
    ASSERT_EQ(ORTH_CompressLexInit(sid, dir.file("a.clx").c_str(), nullptr, 1033, 0, &line), 0);
    EXPECT_TRUE(tempExists());
    // A second Init releases the first run's temporary file.
    ASSERT_EQ(ORTH_CompressLexInit(sid, other.file("b.clx").c_str(), nullptr, 1033, 0, &line), 0);
    EXPECT_FALSE(tempExists());
    EXPECT_TRUE(fileExists(other.file("LEXSQXXX.TMP")));
    ORTH_CompressLexAbort(sid);
    EXPECT_FALSE(fileExists(other.file("LEXSQXXX.TMP")));
    EXPECT_EQ(ORTH_CompressLexFile(sid, "w", &line), ORTH_UNSUPPORTED_ACTION_ERR);
    ASSERT_EQ(ORTH_CompressLexInit(sid, dir.file("a.clx").c_str(), nullptr, 1033, 0, &line), 0);
    ASSERT_EQ(ORTH_CloseSession(sid), 0);
    EXPECT_FALSE(tempExists());
    EXPECT_FALSE(fileExists(dir.file("a.clx")));
}

TEST_F(CompressorRun, FailedFileKeepsEarlierSegments) {
    ASSERT_EQ(ORTH_CompressLexInit(sid, dir.file("k.clx").c_str(), nullptr, 1033, 0, &line), 0);
    EXPECT_EQ(ORTH_CompressLexFile(sid, put("w.txt", {"abc", "xyz", "xya"}).c_str(), &line), ORTH_WORD_ORDER_ERR);
    EXPECT_EQ(line, 3u);
    ASSERT_EQ(ORTH_CompressLexEnd(sid), 0);
    std::string b = readFile(dir.file("k.clx"));
    ASSERT_EQ(le<uint16_t>(b, 262), 1);  // ab kept; the open xy segment is never recorded
    EXPECT_EQ(b.size(), kHeader + 10 + 7 + 7);
}

using CompressorFaults = Compressor;

TEST_F(CompressorFaults, EveryWriteFailureInTheEndStepIsReported) {
    Lines words = {"acq"};
    for (char c = 'z'; c >= 'a'; --c) words.insert(words.begin(), std::string("ab") + c + "xyz");
    ASSERT_EQ(compress("ref.clx", {{"a", "ab"}, words}), 0);
    const std::string reference = readFile(dir.file("ref.clx")), wf1 = put("w1.txt", {"a", "ab"}), wf2 = put("w2.txt", words);
    for (int n = 0;; ++n) {
        SCOPED_TRACE(n);
        ASSERT_LT(n, 200);
        ASSERT_EQ(ORTH_CompressLexInit(sid, dir.file("f.clx").c_str(), nullptr, 1033, 0, &line), 0);
        ASSERT_EQ(ORTH_CompressLexFile(sid, wf1.c_str(), &line), 0);
        ASSERT_EQ(ORTH_CompressLexFile(sid, wf2.c_str(), &line), 0);
        LogCapture log;
        platFailWritesAfter(n);
        int16_t rc = ORTH_CompressLexEnd(sid);
        platClearFaults();
        EXPECT_FALSE(tempExists());
        if (rc == 0) {
            EXPECT_EQ(readFile(dir.file("f.clx")).substr(256), reference.substr(256));
            EXPECT_GT(n, 3);
            break;
        }
        EXPECT_EQ(rc, ORTH_FILE_WRITE_ERR);
        ASSERT_FALSE(log.lines().empty());
        EXPECT_EQ(log.lines().back().rfind("LexSqEnd: ", 0), 0u);
    }
}

TEST_F(CompressorFaults, FailedCreatesAndTemporaryWritesAreReported) {
    LogCapture log;
    std::string out = dir.file("o.clx"), temp = dir.file("LEXSQXXX.TMP");
    ASSERT_EQ(ORTH_CompressLexInit(sid, out.c_str(), nullptr, 1033, 0, &line), 0);
    platFailCreates(1);
    EXPECT_EQ(ORTH_CompressLexEnd(sid), ORTH_FILE_OPEN_ERR);
    EXPECT_TRUE(logged(log, "LexSqEnd: can't open " + out));
    EXPECT_FALSE(tempExists());
    platFailCreates(1);
    EXPECT_EQ(ORTH_CompressLexInit(sid, out.c_str(), nullptr, 1033, 0, &line), ORTH_FILE_OPEN_ERR);
    EXPECT_TRUE(logged(log, "LexSqInit: can't open " + temp));
    ASSERT_EQ(ORTH_CompressLexInit(sid, out.c_str(), nullptr, 1033, 0, &line), 0);
    platFailWritesAfter(1);
    EXPECT_EQ(ORTH_CompressLexFile(sid, put("w.txt", {"abc", "abd"}).c_str(), &line), ORTH_FILE_WRITE_ERR);
    EXPECT_TRUE(logged(log, "LexSqFile: error writing " + temp));
}

}  // namespace
