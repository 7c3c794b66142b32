// File helpers. Group LineReader: the read-ahead CR LF line reader at the
// edges of its buffer (ordinary lines are read by the text lexicon's tests).
// Writing, seeking and file times are exercised through the text lexicon's
// saves and the compressed reader.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lex/fileio.h"
#include "support/test_util.h"

namespace {

TEST(LineReader, SplitsAtCrLfOnlyWithinTheBuffer) {
    TempDir dir;
    const std::string path = dir.file("lines.txt");
    struct Case { std::string bytes; uint16_t size; std::vector<std::string> lines; } cases[] = {
        {"", 80, {}},
        // 78 characters: the line and its CR come back, the LF starts the next piece.
        {std::string(78, 'y') + "\r\nz\r\n", 80, {std::string(78, 'y') + "\r", "\nz"}},
        {std::string(200, 'w'), 80, {std::string(79, 'w'), std::string(79, 'w'), std::string(42, 'w')}},
        {"one\r\ntwo\r\n", 2, {"o", "n", "e", "\r", "\n", "t", "w", "o", "\r", "\n"}},
        {"abc\r\n", 1, {}},  // no room for a character: nothing read
    };
    for (const Case &c : cases) {
        writeFile(path, c.bytes);
        int32_t h = fileOpen(path.c_str(), kFileRead);
        std::vector<char> buf(c.size, '!');
        std::vector<std::string> lines;
        EXPECT_EQ(fileReadLine(h, nullptr, 80), -1);  // no buffer: nothing read
        for (int32_t n; lines.size() < 100 && (n = fileReadLine(h, buf.data(), c.size)) >= 0;) {
            EXPECT_EQ(static_cast<size_t>(n), std::string(buf.data()).size());
            lines.emplace_back(buf.data(), n);
        }
        EXPECT_EQ(lines, c.lines) << c.bytes.substr(0, 20);
        EXPECT_TRUE(c.size > 1 || buf[0] == '!');  // a 1-byte buffer is left alone
        fileClose(h);
    }
    EXPECT_EQ(fileOpen(dir.file("missing").c_str(), kFileRead), -1);
}

}  // namespace
