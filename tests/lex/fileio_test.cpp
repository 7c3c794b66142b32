// File helpers: the read-ahead CR LF line reader, the line writer, seeking,
// and failing writes through the fault seam.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lex/fileio.h"
#include "platform/platform.h"
#include "support/test_util.h"

namespace {

std::vector<std::string> readLines(const std::string &path, uint16_t size) {
    std::vector<std::string> out;
    int32_t h = fileOpen(path.c_str(), kFileRead);
    EXPECT_GE(h, 0);
    std::vector<char> buf(size);
    for (int guard = 0; guard < 1000; ++guard) {
        int32_t n = fileReadLine(h, buf.data(), size);
        if (n < 0) break;
        EXPECT_EQ(static_cast<size_t>(n), std::string(buf.data()).size());
        out.emplace_back(buf.data(), n);
    }
    fileClose(h);
    return out;
}

TEST(LineReader, SplitsAtCrLfOnly) {
    TempDir dir;
    struct Case {
        std::string bytes;
        uint16_t size;
        std::vector<std::string> lines;
    } cases[] = {
        {"abc\r\ndef", 80, {"abc", "def"}},
        {"", 80, {}},
        {"a\nb\r\n\r\nc\r", 80, {"a\nb", "", "c\r"}},
        {std::string(77, 'x') + "\r\nnext\r\n", 80, {std::string(77, 'x'), "next"}},
        // 78 characters: the line and its CR come back, the LF starts the next piece.
        {std::string(78, 'y') + "\r\nz\r\n", 80, {std::string(78, 'y') + "\r", "\nz"}},
        {std::string(200, 'w'), 80, {std::string(79, 'w'), std::string(79, 'w'), std::string(42, 'w')}},
        {std::string(125, 'q') + "\r\n", 128, {std::string(125, 'q')}},
        {"one\r\ntwo\r\n", 2, {"o", "n", "e", "\r", "\n", "t", "w", "o", "\r", "\n"}},
    };
    for (const Case &c : cases) {
        std::string path = dir.file("lines.txt");
        writeFile(path, c.bytes);
        EXPECT_EQ(readLines(path, c.size), c.lines) << c.bytes.substr(0, 20);
    }
}

TEST(LineReader, TinyOrMissingBuffersReadNothing) {
    TempDir dir;
    writeFile(dir.file("f"), "abc\r\n");
    int32_t h = fileOpen(dir.file("f").c_str(), kFileRead);
    char one[1] = {'!'};
    EXPECT_EQ(fileReadLine(h, one, 1), -1);
    EXPECT_EQ(one[0], '!');
    EXPECT_EQ(fileReadLine(h, nullptr, 80), -1);
    fileClose(h);
    EXPECT_EQ(fileOpen(dir.file("missing").c_str(), kFileRead), -1);
}

TEST(LineWriter, WritesCrLfAndReportsShortWrites) {
    TempDir dir;
    std::string path = dir.file("w.txt");
    int32_t h = fileOpen(path.c_str(), kFileCreate);
    ASSERT_GE(h, 0);
    EXPECT_EQ(fileWriteLine(h, "hello"), 5);
    EXPECT_EQ(fileWriteLine(h, ""), 0);
    EXPECT_EQ(fileTell(h), 9);
    platFailWritesAfter(1);  // the text goes out, its CR LF does not
    EXPECT_EQ(fileWriteLine(h, "lost"), -1);
    platClearFaults();
    fileClose(h);
    EXPECT_EQ(readFile(path), "hello\r\n\r\nlost");
}

TEST(FileAccess, CreateEmptiesSeekAndTime) {
    TempDir dir;
    std::string path = dir.file("s.bin");
    writeFile(path, "old contents");
    int32_t h = fileOpen(path.c_str(), 4);
    ASSERT_GE(h, 0);
    EXPECT_EQ(fileWrite(h, "0123456789", 10), 10);
    EXPECT_EQ(fileSeek(h, 2, 0), 0);
    char buf[4] = {};
    EXPECT_EQ(fileRead(h, buf, 3), 3);
    EXPECT_STREQ(buf, "234");
    EXPECT_EQ(fileSeek(h, -2, 2), 0);
    EXPECT_EQ(fileTell(h), 8);
    EXPECT_EQ(fileSeek(h, -100, 0), -1);
    EXPECT_EQ(fileRead(h, buf, 3), 2);
    fileClose(h);
    EXPECT_EQ(readFile(path), "0123456789");
    EXPECT_GT(fileTime(path.c_str()), 0);
    EXPECT_EQ(fileTime(dir.file("none").c_str()), 0);
}

}  // namespace
