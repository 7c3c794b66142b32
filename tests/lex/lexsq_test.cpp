// Lexicon compressor.
// Groups: CompressedFile (file layout and word coding, byte for byte),
// CompressorInput (word-file and suffix-file rules, line numbers, log lines),
// CompressorRun (the ORTH_ calls, state across Init/File/End/Abort, temporary
// file), CompressorFaults (failing creates and writes in the end step).
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "orth.h"
#include "platform/platform.h"
#include "support/test_util.h"

namespace {

constexpr size_t kHeader = 2806;

std::string crlf(const std::vector<std::string> &lines) {
    std::string out;
    for (const std::string &l : lines) out += l + "\r\n";
    return out;
}

bool logged(const LogCapture &log, const std::string &message) {
    for (const std::string &line : log.lines()) {
        if (line == message || line.rfind(message + " [", 0) == 0) return true;
    }
    return false;
}

uint32_t u32(const std::string &b, size_t at) {
    return static_cast<uint8_t>(b[at]) | static_cast<uint8_t>(b[at + 1]) << 8 |
           static_cast<uint8_t>(b[at + 2]) << 16 | static_cast<uint32_t>(static_cast<uint8_t>(b[at + 3])) << 24;
}
uint16_t u16(const std::string &b, size_t at) {
    return static_cast<uint16_t>(static_cast<uint8_t>(b[at]) | static_cast<uint8_t>(b[at + 1]) << 8);
}

class Compressor : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        platClearFaults();
        sid = ORTH_OpenSession();
        ASSERT_GE(sid, 0);
    }
    void TearDown() override {
        platClearFaults();
        closeAllSessions();
    }
    // Compresses word files (and a suffix file) into out; the first failing
    // call's code, or End's.
    int16_t compress(const std::string &out, const std::vector<std::vector<std::string>> &files,
                     const std::vector<std::string> *suffixes = nullptr, uint32_t *line = nullptr) {
        uint32_t n = 0;
        std::string sfx;
        if (suffixes != nullptr) {
            sfx = dir.file("suffixes.txt");
            writeFile(sfx, crlf(*suffixes));
        }
        int16_t rc = ORTH_CompressLexInit(sid, out.c_str(), suffixes ? sfx.c_str() : nullptr, 1033, 0, &n);
        if (rc < 0) return rc;
        for (size_t i = 0; i < files.size(); ++i) {
            std::string wf = dir.file("words" + std::to_string(i) + ".txt");
            writeFile(wf, crlf(files[i]));
            rc = ORTH_CompressLexFile(sid, wf.c_str(), &n);
            if (line != nullptr) *line = n;
            if (rc < 0) {
                ORTH_CompressLexAbort(sid);
                return rc;
            }
        }
        return ORTH_CompressLexEnd(sid);
    }
    // The segment data of a file holding one segment.
    std::string onlySegment(const std::string &file) {
        std::string b = readFile(file);
        uint16_t s = u16(b, 260);
        EXPECT_EQ(u16(b, 262), 1);
        size_t rec = kHeader + 2 * s;
        return b.substr(u32(b, rec), u32(b, rec + 4));
    }
    TempDir dir;
    int16_t sid = -1;
};

using CompressedFile = Compressor;

TEST_F(CompressedFile, ThreeWordExampleIsExactToTheByte) {
    std::string out = dir.file("x.clx");
    ASSERT_EQ(compress(out, {{"ab", "abc", "abd"}}), 0);
    std::string b = readFile(out);
    ASSERT_EQ(b.size(), 2833u);
    EXPECT_EQ(u32(b, 256), 0x57000402u);
    EXPECT_EQ(u16(b, 260), 1);
    EXPECT_EQ(u16(b, 262), 1);
    EXPECT_EQ(u16(b, 264), 1033);
    EXPECT_EQ(u16(b, 266), 0);
    EXPECT_EQ(b.substr(268, 2538), std::string(2538, '\0'));  // no suffixes loaded
    const unsigned char tail[] = {0x61, 0x62, 0x02, 0x0B, 0, 0, 0x0F, 0, 0, 0, 0x61, 0x62,
                                  2,    0,    0,    0,    0x63, 0, 0, 5, 1, 0, 0, 0, 0x64, 0, 0};
    EXPECT_EQ(b.substr(kHeader), std::string(reinterpret_cast<const char *>(tail), sizeof tail));
}

TEST_F(CompressedFile, BannerIsTheOnlyPartThatChangesBetweenRuns) {
    std::vector<std::string> words = {"a", "cat", "cats", "dog", "doge", "dogs", "zebra"};
    std::vector<std::string> sfx = {"s", "e"};
    ASSERT_EQ(compress(dir.file("1.clx"), {words}, &sfx), 0);
    ASSERT_EQ(compress(dir.file("2.clx"), {words}, &sfx), 0);
    std::string a = readFile(dir.file("1.clx")), b = readFile(dir.file("2.clx"));
    std::string banner(a.c_str());
    ASSERT_EQ(banner.rfind("ORTH Lexicon 57000402 ", 0), 0u);
    EXPECT_EQ(banner.substr(46, 2), "\n\r");  // 24-character time, LF, CR
    EXPECT_EQ(banner.substr(banner.size() - 2), "\r\n");
    EXPECT_EQ(a.substr(banner.size(), 256 - banner.size()), std::string(256 - banner.size(), '\0'));
    ASSERT_EQ(a.size(), b.size());
    a.replace(22, 24, 24, '*');
    b.replace(22, 24, 24, '*');
    EXPECT_EQ(a, b);
    ASSERT_EQ(compress(dir.file("e.clx"), {{}}), 0);
    EXPECT_EQ(readFile(dir.file("e.clx")).size(), kHeader);  // no small words, no segments
}

TEST_F(CompressedFile, WordCodingTable) {
    std::vector<std::string> manyThenYz(26, "q");
    manyThenYz.push_back("");
    manyThenYz.push_back("yz");
    struct Case {
        std::vector<std::string> words;
        std::vector<std::string> suffixes;
        std::vector<unsigned char> segment;
    } cases[] = {
        // A lone three-byte word: header with length 1, body 0x00.
        {{"abc"}, {}, {1, 0, 0, 0, 'c', 0, 0}},
        // The worked block, last in its segment: no padding.
        {{"abcde", "abcdef", "abcdg", "abcx"}, {}, {11, 0, 0, 0, 'c', 0, 'd', 'e', 0, 1, 'f', 0, 'd', 'g', 0, 'x', 0}},
        // The same block followed by another: padded with 0x05 to 20 bytes.
        {{"abcde", "abcdef", "abcdg", "abcx", "abd"}, {},
         {14, 0, 0, 0, 'c', 0, 'd', 'e', 0, 1, 'f', 0, 'd', 'g', 0, 'x', 0, 5, 5, 5, 1, 0, 0, 0, 'd', 0, 0}},
        // Differing in the last character only: keep all but the last.
        {{"abcdef", "abcdeg"}, {}, {7, 0, 0, 0, 'c', 0, 'd', 'e', 'f', 0, 3, 'g', 0}},
        // A longer previous word: keep 3 + n.
        {{"abcdefgh", "abcdefxy"}, {}, {11, 0, 0, 0, 'c', 0, 'd', 'e', 'f', 'g', 'h', 0, 2, 3, 'x', 'y', 0}},
        // A suffix match wins over literals; the lowest entry first; secondary via 0x04.
        {{"walking"}, {"#comment", "ing", "ed"}, {2, 0, 0, 0, 'l', 0, 'k', 6}},
        {{"abcat", "abcated"}, {"ted", "ed"}, {5, 0, 0, 0, 'c', 0, 'a', 't', 0, 1, 7}},
        {{"abcxyz"}, manyThenYz, {3, 0, 0, 0, 'c', 0, 'x', 4, 1}},
    };
    int i = 0;
    for (const Case &c : cases) {
        SCOPED_TRACE(i);
        std::string out = dir.file("c" + std::to_string(i++) + ".clx");
        ASSERT_EQ(compress(out, {c.words}, c.suffixes.empty() ? nullptr : &c.suffixes), 0);
        EXPECT_EQ(onlySegment(out), std::string(c.segment.begin(), c.segment.end()));
    }
}

TEST_F(CompressedFile, SuffixFileFillsPrimaryThenSecondaryAndCountsLines) {
    std::vector<std::string> sfx = {"#comment", "ing", "ed", "", "verylongsuffix"};
    for (int i = 0; i < 300; ++i) sfx.push_back("s" + std::to_string(i));
    std::string path = dir.file("sfx.txt");
    writeFile(path, crlf(sfx));
    uint32_t line = 0;
    std::string out = dir.file("s.clx");
    ASSERT_EQ(ORTH_CompressLexInit(sid, out.c_str(), path.c_str(), 2057, 0, &line), 0);
    EXPECT_EQ(line, 1u + 26 + 256);  // reading stops when both tables are full
    ASSERT_EQ(ORTH_CompressLexEnd(sid), 0);
    std::string b = readFile(out);
    EXPECT_EQ(u16(b, 264), 2057);
    EXPECT_EQ(b.substr(268, 9), std::string("ing\0\0\0\0\0\0", 9));
    EXPECT_EQ(b.substr(268 + 9, 9), std::string("ed\0\0\0\0\0\0\0", 9));
    EXPECT_EQ(b.substr(268 + 18, 9), std::string(9, '\0'));  // the empty line is an entry
    EXPECT_EQ(b.substr(268 + 27, 9), std::string("verylong\0", 9));
    EXPECT_EQ(b.substr(502, 9), std::string("s22\0\0\0\0\0\0", 9));  // 27th suffix
    EXPECT_EQ(b.substr(502 + 255 * 9, 9), std::string("s277\0\0\0\0\0", 9));
}

using CompressorInput = Compressor;

TEST_F(CompressorInput, RefusedLinesGiveCodeLineNumberAndLogLine) {
    std::string tooLong(64, 'x');
    std::vector<std::string> manySmall(1025, "a");
    struct Case {
        std::vector<std::vector<std::string>> files;
        int16_t rc;
        uint32_t line;
        std::string message;
    } cases[] = {
        // A key built by an earlier file fails when the later file's segment ends.
        {{{"abc", "abd"}, {"aaa", "abe"}}, ORTH_WORD_ORDER_ERR, 2, "addSegment: duplicate segment ab"},
        {{{"abc", "ab"}}, ORTH_WORD_ORDER_ERR, 2, "LexSqFile: ab <= abc"},
        {{{"abc", "abc"}}, ORTH_WORD_ORDER_ERR, 2, "LexSqFile: abc <= abc"},
        {{{"#x", "", "abc", "abb"}}, ORTH_WORD_ORDER_ERR, 4, "LexSqFile: abb <= abc"},
        {{{"abc", tooLong}}, ORTH_INVALID_WORD_ERR, 2, "LexSqFile: word " + tooLong + " too long"},
        {{{"ab\tc"}}, ORTH_INVALID_WORD_ERR, 1, "LexSqFile: invalid word: ab\tc "},
        {{{"abc", "ab\x81"}}, ORTH_INVALID_WORD_ERR, 2, "LexSqFile: invalid word: ab\x81 "},
        {{manySmall}, ORTH_TOO_MANY_SMALL_WORDS_ERR, 1025, "LexSqFile: too many small words (a)"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.message);
        LogCapture log;
        uint32_t line = 0;
        EXPECT_EQ(compress(dir.file("e.clx"), c.files, nullptr, &line), c.rc);
        EXPECT_EQ(line, c.line);
        EXPECT_TRUE(logged(log, c.message));
    }
}

TEST_F(CompressorInput, SmallWordsAreCheckedOnlyAgainstTheLastLongWord) {
    std::string w63(63, 'y');
    std::string out = dir.file("s.clx");
    ASSERT_EQ(compress(out, {{"b", "a", "a", "abc", "x", w63}}), 0);
    std::string b = readFile(out);
    EXPECT_EQ(u16(b, 260), 4);
    EXPECT_EQ(b.substr(kHeader, 8), std::string("a\0a\0b\0x\0", 8));  // sorted, repeat kept
    EXPECT_EQ(u16(b, 262), 2);
}

TEST_F(CompressorInput, LaterFilesMergeIntoKeyOrder) {
    std::string out = dir.file("m.clx");
    ASSERT_EQ(compress(out, {{"xyz"}, {"abc", "mno"}}), 0);
    std::string b = readFile(out);
    ASSERT_EQ(u16(b, 262), 3);
    // Records sorted by key, data in build order: xy first.
    EXPECT_EQ(b.substr(kHeader + 8, 2), "ab");
    EXPECT_EQ(b.substr(kHeader + 18, 2), "mn");
    EXPECT_EQ(b.substr(kHeader + 28, 2), "xy");
    EXPECT_EQ(u32(b, kHeader + 20), kHeader + 30);
    EXPECT_EQ(u32(b, kHeader), kHeader + 37);
}

TEST_F(CompressorInput, SegmentOverTheReadLimitIsRefused) {
    std::vector<std::string> words;
    for (int i = 0; i < 1500; ++i) {
        char head[8];
        std::snprintf(head, sizeof head, "ab%04d", i);
        words.push_back(head + std::string(55, 'q'));
    }
    LogCapture log;
    EXPECT_EQ(compress(dir.file("big.clx"), {words}), ORTH_BUFFER_TOO_SMALL_ERR);
    bool found = false;
    for (const std::string &l : log.lines()) found |= l.rfind("LexSqFile: segment ab too long", 0) == 0;
    EXPECT_TRUE(found);
}

using CompressorRun = Compressor;

TEST_F(CompressorRun, BadSessionAndMissingInitAreRefused) {
    LogCapture log;
    uint32_t line = 0;
    EXPECT_EQ(ORTH_CompressLexInit(9, "x.clx", nullptr, 1033, 0, &line), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_EQ(ORTH_CompressLexFile(-1, "w", &line), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_EQ(ORTH_CompressLexEnd(16), ORTH_BAD_SESSION_ID_ERR);
    ORTH_CompressLexAbort(9);
    EXPECT_TRUE(logged(log, "ORTH_CompressLexInit: bad session id 9"));
    EXPECT_TRUE(logged(log, "ORTH_CompressLexFile: bad session id -1"));
    EXPECT_TRUE(logged(log, "ORTH_CompressLexEnd: bad session id 16"));
    EXPECT_TRUE(logged(log, "ORTH_CompressLexAbort: bad session id 9"));
    EXPECT_EQ(ORTH_CompressLexFile(sid, "w", &line), ORTH_UNSUPPORTED_ACTION_ERR);
    EXPECT_TRUE(logged(log, "ORTH_CompressLexFile: call ORTH_CompressLexInit first"));
    EXPECT_EQ(ORTH_CompressLexEnd(sid), 0);
}

TEST_F(CompressorRun, FailedInitLeavesNothingInProgress) {
    LogCapture log;
    uint32_t line = 7;
    std::string out = dir.file("o.clx");
    std::string missing = dir.file("nosuch.txt");
    EXPECT_EQ(ORTH_CompressLexInit(sid, out.c_str(), missing.c_str(), 1033, 0, &line), ORTH_FILE_OPEN_ERR);
    EXPECT_TRUE(logged(log, "loadSuffixes: can't open " + missing));
    EXPECT_FALSE(fileExists(dir.file("LEXSQXXX.TMP")));
    EXPECT_EQ(ORTH_CompressLexFile(sid, missing.c_str(), &line), ORTH_UNSUPPORTED_ACTION_ERR);

    std::string noFolder = dir.file("none/o.clx");
    EXPECT_EQ(ORTH_CompressLexInit(sid, noFolder.c_str(), nullptr, 1033, 0, &line), ORTH_FILE_OPEN_ERR);
    EXPECT_TRUE(logged(log, "LexSqInit: can't open " + dir.file("none/LEXSQXXX.TMP")));
    std::string longPath(300, 'p');
    EXPECT_EQ(ORTH_CompressLexInit(sid, longPath.c_str(), nullptr, 1033, 0, &line), ORTH_FILE_OPEN_ERR);
    EXPECT_EQ(ORTH_CompressLexFile(sid, missing.c_str(), &line), ORTH_UNSUPPORTED_ACTION_ERR);
}

TEST_F(CompressorRun, TemporaryFileLivesBesideTheOutputUntilEndAbortOrClose) {
    TempDir other;
    std::string tmpA = dir.file("LEXSQXXX.TMP"), tmpB = other.file("LEXSQXXX.TMP");
    uint32_t line = 0;
    ASSERT_EQ(ORTH_CompressLexInit(sid, dir.file("a.clx").c_str(), nullptr, 1033, 0, &line), 0);
    EXPECT_TRUE(fileExists(tmpA));
    // A second Init releases the first run's temporary file.
    ASSERT_EQ(ORTH_CompressLexInit(sid, other.file("b.clx").c_str(), nullptr, 1033, 0, &line), 0);
    EXPECT_FALSE(fileExists(tmpA));
    EXPECT_TRUE(fileExists(tmpB));
    ORTH_CompressLexAbort(sid);
    EXPECT_FALSE(fileExists(tmpB));
    EXPECT_EQ(ORTH_CompressLexFile(sid, tmpB.c_str(), &line), ORTH_UNSUPPORTED_ACTION_ERR);

    ASSERT_EQ(ORTH_CompressLexInit(sid, dir.file("a.clx").c_str(), nullptr, 1033, 0, &line), 0);
    ASSERT_EQ(ORTH_CloseSession(sid), 0);
    EXPECT_FALSE(fileExists(tmpA));
    EXPECT_FALSE(fileExists(dir.file("a.clx")));
}

TEST_F(CompressorRun, FailedFileKeepsEarlierSegments) {
    std::string out = dir.file("k.clx");
    uint32_t line = 0;
    ASSERT_EQ(ORTH_CompressLexInit(sid, out.c_str(), nullptr, 1033, 0, &line), 0);
    std::string wf = dir.file("w.txt");
    writeFile(wf, crlf({"abc", "xyz", "xya"}));
    EXPECT_EQ(ORTH_CompressLexFile(sid, wf.c_str(), &line), ORTH_WORD_ORDER_ERR);
    EXPECT_EQ(line, 3u);
    ASSERT_EQ(ORTH_CompressLexEnd(sid), 0);
    std::string b = readFile(out);
    ASSERT_EQ(u16(b, 262), 1);  // ab kept; the open xy segment is never recorded
    EXPECT_EQ(b.size(), kHeader + 10 + 7 + 7);
}

using CompressorFaults = Compressor;

TEST_F(CompressorFaults, EveryWriteFailureInTheEndStepIsReported) {
    std::vector<std::string> words;
    for (char c = 'a'; c <= 'z'; ++c) words.push_back(std::string("ab") + c + "xyz");
    words.push_back("acq");
    ASSERT_EQ(compress(dir.file("ref.clx"), {{"a", "ab"}, words}), 0);
    std::string reference = readFile(dir.file("ref.clx"));
    for (int n = 0;; ++n) {
        SCOPED_TRACE(n);
        ASSERT_LT(n, 200);
        uint32_t line = 0;
        std::string out = dir.file("f.clx");
        std::string wf1 = dir.file("w1.txt"), wf2 = dir.file("w2.txt");
        writeFile(wf1, crlf({"a", "ab"}));
        writeFile(wf2, crlf(words));
        ASSERT_EQ(ORTH_CompressLexInit(sid, out.c_str(), nullptr, 1033, 0, &line), 0);
        ASSERT_EQ(ORTH_CompressLexFile(sid, wf1.c_str(), &line), 0);
        ASSERT_EQ(ORTH_CompressLexFile(sid, wf2.c_str(), &line), 0);
        LogCapture log;
        platFailWritesAfter(n);
        int16_t rc = ORTH_CompressLexEnd(sid);
        platClearFaults();
        EXPECT_FALSE(fileExists(dir.file("LEXSQXXX.TMP")));
        if (rc == 0) {
            std::string b = readFile(out);
            ASSERT_EQ(b.size(), reference.size());
            EXPECT_EQ(b.substr(256), reference.substr(256));
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
    std::string out = dir.file("o.clx");
    std::string wf = dir.file("w.txt");
    writeFile(wf, crlf({"abc", "abd"}));
    uint32_t line = 0;
    ASSERT_EQ(ORTH_CompressLexInit(sid, out.c_str(), nullptr, 1033, 0, &line), 0);
    platFailCreates(1);
    EXPECT_EQ(ORTH_CompressLexEnd(sid), ORTH_FILE_OPEN_ERR);
    EXPECT_TRUE(logged(log, "LexSqEnd: can't open " + out));
    EXPECT_FALSE(fileExists(dir.file("LEXSQXXX.TMP")));

    platFailCreates(1);
    EXPECT_EQ(ORTH_CompressLexInit(sid, out.c_str(), nullptr, 1033, 0, &line), ORTH_FILE_OPEN_ERR);
    EXPECT_TRUE(logged(log, "LexSqInit: can't open " + dir.file("LEXSQXXX.TMP")));

    ASSERT_EQ(ORTH_CompressLexInit(sid, out.c_str(), nullptr, 1033, 0, &line), 0);
    platFailWritesAfter(1);
    EXPECT_EQ(ORTH_CompressLexFile(sid, wf.c_str(), &line), ORTH_FILE_WRITE_ERR);
    platClearFaults();
    EXPECT_TRUE(logged(log, "LexSqFile: error writing " + dir.file("LEXSQXXX.TMP")));
    ORTH_CompressLexAbort(sid);
}

}  // namespace
