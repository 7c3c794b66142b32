// tests/platform/platform_test.cpp — the OS layer, on each platform it is
// built for (natively, and cross-built under wine).
// Groups: files by handle (empty writes, seeks, rename over a target);
// the user-language letter test; the module's own file name.
#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <string>

#include "platform/platform.h"
#include "support/test_util.h"

TEST(PlatformFiles, EmptyWriteNeitherWritesNorTruncates) {
    TempDir dir;
    const std::string path = dir.file("data.bin");
    int32_t fh = platCreate(path.c_str());
    ASSERT_GE(fh, 0);
    EXPECT_EQ(platWrite(fh, "abcdef", 6), 6);
    EXPECT_EQ(platSeek(fh, 2, 0), 2);
    EXPECT_EQ(platWrite(fh, "", 0), 0);
    char buffer[8] = {};
    EXPECT_EQ(platRead(fh, buffer, 0), 0);
    EXPECT_EQ(platRead(fh, buffer, sizeof buffer), 4);
    platClose(fh);
    EXPECT_EQ(readFile(path), "abcdef");
}

TEST(PlatformFiles, SeeksFromEachOriginAndRefusesBadOnes) {
    TempDir dir;
    const std::string path = dir.file("data.bin");
    writeFile(path, "0123456789");
    int32_t fh = platOpenRead(path.c_str());
    ASSERT_GE(fh, 0);
    struct Case {
        int32_t offset;
        int origin;
        int32_t position;  // -1: refused, the position stays
    } cases[] = {
        {4, 0, 4}, {3, 1, 7}, {-2, 2, 8}, {-9, 1, -1}, {0, 3, -1}, {0, -1, -1}, {0, 1, 8},
    };
    for (const Case &c : cases)
        EXPECT_EQ(platSeek(fh, c.offset, c.origin), c.position) << c.offset << " from " << c.origin;
    char byte = 0;
    EXPECT_EQ(platRead(fh, &byte, 1), 1);
    EXPECT_EQ(byte, '8');
    platClose(fh);
}

TEST(PlatformFiles, RenameReplacesAnExistingTarget) {
    TempDir dir;
    const std::string from = dir.file("new.tmp"), to = dir.file("list.dat");
    writeFile(from, "new");
    writeFile(to, "old contents");
    EXPECT_EQ(platRename(from.c_str(), to.c_str()), 0);
    EXPECT_EQ(readFile(to), "new");
    EXPECT_FALSE(platFileExists(from.c_str()));

    EXPECT_NE(platRename(from.c_str(), to.c_str()), 0);  // the source is gone
    EXPECT_EQ(readFile(to), "new");
    EXPECT_NE(platRename(nullptr, to.c_str()), 0);
    EXPECT_NE(platRemove(nullptr), 0);
    EXPECT_EQ(platRemove(to.c_str()), 0);
    EXPECT_FALSE(platFileExists(to.c_str()));
    EXPECT_EQ(platOpenRead(to.c_str()), -1);
}

// Code page 1252 / ISO 8859-1: letters beyond ASCII count, the
// multiplication and division signs among them do not.
TEST(PlatformLetters, UserLanguageLettersOfTheWesternCodePage) {
    struct Case {
        unsigned char c;
        bool letter;
    } cases[] = {
        {'a', true},  {'Z', true},  {0xE9, true},  {0xC0, true},  {0xFF, true},  {0x8A, true},
        {'1', false}, {'%', false}, {' ', false},  {'.', false},  {0xD7, false}, {0xF7, false},
        {0xA0, false}, {0, false},
    };
    for (const Case &c : cases) EXPECT_EQ(platIsCharAlpha(c.c), c.letter) << int(c.c);
}

// A program that links the engine statically is its own module: the name is
// the test program's, and a buffer too small gets it cut, terminated.
TEST(PlatformModule, FileNameIsTheProgramsCutToTheBuffer) {
    EXPECT_EQ(platModuleHandle(), nullptr);
    char name[1024];
    uint32_t len = platModuleFileName(name, sizeof name);
    ASSERT_GT(len, 0u);
    std::string path(name, len);
    EXPECT_TRUE(platFileExists(name)) << path;
    std::string lower;
    for (char ch : path) lower += static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    EXPECT_NE(lower.find("platform_tests"), std::string::npos) << path;

    struct Case {
        uint32_t size, length;
    } cases[] = {{len + 1, len}, {len, len - 1}, {2, 1}, {1, 0}};
    for (const Case &c : cases) {
        char out[1024];
        std::memset(out, 'x', sizeof out);
        EXPECT_EQ(platModuleFileName(out, c.size), c.length) << c.size;
        EXPECT_EQ(std::string(out), path.substr(0, c.length)) << c.size;
    }
    EXPECT_EQ(platModuleFileName(nullptr, 10), 0u);
}
