// tests/dict/concurrent_test.cpp — Dict handles whose session goes away
// behind their back, and handles of several processes closing on one folder.
// Groups: DictOrphans (a session closed by the host: the handle is refused,
// released by DictClose without a save, and its session id given to others
// is left alone), DictClosers (processes opening, adding and closing on one
// folder while another reads the list).
#include <set>

#include "dict/dict_fixture.h"
#include "dict/dict_int.h"
#ifndef _WIN32
#include "lex/procs.h"
#endif

namespace {

using DictOrphans = DictFolder;
using DictClosers = DictFolder;
using Words = std::set<std::string>;

#ifndef _WIN32  // the tests of several processes fork
// The words of a user word list file, or why it is not a whole one: a count,
// exactly that many records and nothing after them, ascending.
bool parseList(const std::string &bytes, Words *words, std::string *why) {
    if (bytes.size() < 2) return *why = "short: " + std::to_string(bytes.size()), false;
    size_t count = static_cast<unsigned char>(bytes[0]) | static_cast<unsigned char>(bytes[1]) << 8, at = 2;
    std::string last;
    for (size_t n = 0; n < count; ++n) {
        if (at >= bytes.size()) return *why = "cut at record " + std::to_string(n), false;
        size_t len = static_cast<unsigned char>(bytes[at]);
        if (at + 1 + len > bytes.size()) return *why = "record " + std::to_string(n) + " cut", false;
        std::string word = bytes.substr(at + 1, len);
        if (n > 0 && !(last < word)) return *why = "order at " + word, false;
        words->insert(last = word);
        at += 1 + len;
    }
    if (at != bytes.size()) return *why = "trailing bytes", false;
    return true;
}
#endif

TEST_F(DictOrphans, HandleWhoseSessionTheHostClosedIsRefusedAndReleasedWithoutASave) {
    writeFile(dir.file("USER.DIC"), std::string("\x01\x00\x04" "kept", 7));
    DictHandle *orphan = open();
    ASSERT_NE(orphan, nullptr);
    DictAddWord(orphan, "lost");
    EXPECT_EQ(ORTH_CloseSession(static_cast<int16_t>(orphan->sessionId)), 0);
    char buf[64] = "untouched";
    EXPECT_EQ(DictCheckWord(orphan, "cat"), 1);
    EXPECT_EQ(DictGetNextSug(orphan, buf) + DictAddWord(orphan, "more") + DictDeleteWord(orphan, "kept"), 0);
    EXPECT_STREQ(buf, "untouched");
    // Every session can be had again, by Dict handles and by the host; the
    // orphan's DictClose saves nothing and closes none of them.
    std::vector<DictHandle *> handles;
    for (int i = 0; i < 15; ++i) ASSERT_NE(handles.emplace_back(open()), nullptr) << i;
    int16_t hostSession = ORTH_OpenSession();
    ASSERT_GE(hostSession, 0);
    EXPECT_EQ(DictClose(orphan), 1);
    EXPECT_EQ(DictClose(orphan), 0);
    EXPECT_EQ(readFile(dir.file("USER.DIC")), std::string("\x01\x00\x04" "kept", 7));
    for (DictHandle *h : handles) {
        EXPECT_EQ(DictCheckWord(h, "kept") + DictCheckWord(h, "cat"), 0);
        EXPECT_EQ(DictClose(h), 1);
    }
    EXPECT_EQ(ORTH_CloseSession(hostSession), 0);
}

#ifndef _WIN32
// The whole-list rewrite decides what survives concurrent closes: every
// state of the file is a whole list, and at the end it is the list of the
// handle that closed last, holding that handle's own last word.
TEST_F(DictClosers, ListStaysWholeAndEndsAsTheLastClosersList) {
    constexpr int kClosers = 3, kRounds = 12;
    std::string list = dir.file("USER.DIC"), stop = dir.file("stop"), readerLog = dir.file("reader.log");
    writeFile(list, std::string("\x00\x00", 2));
    auto wordOf = [](int c, int r) { return "c" + std::to_string(c) + "r" + std::to_string(r); };
    pid_t reader = spawnChild([&] {
        for (int reads = 0; !fileExists(stop) || reads < 10; ++reads) {
            Words words;
            std::string why;
            if (!fileExists(list)) why = "missing";
            else if (!parseList(readFile(list), &words, &why)) why += " (list)";
            if (!why.empty()) return writeFile(readerLog, why), 1;
        }
        return 0;
    });
    std::vector<pid_t> closers;
    for (int c = 0; c < kClosers; ++c) {
        closers.push_back(spawnChild([&, c] {
            for (int r = 0; r < kRounds; ++r) {
                DictHandle *h = open();
                if (h == nullptr) return 1;
                DictAddWord(h, wordOf(c, r).c_str());
                if (DictCheckWord(h, wordOf(c, r).c_str()) != 0 || DictClose(h) != 1) return 2;
            }
            return 0;
        }));
    }
    for (pid_t p : closers) EXPECT_EQ(waitChild(p), 0);
    writeFile(stop, "");
    EXPECT_EQ(waitChild(reader), 0) << readFile(readerLog);
    Words words, added;
    std::string why;
    ASSERT_TRUE(parseList(readFile(list), &words, &why)) << why;
    for (int c = 0; c < kClosers; ++c)
        for (int r = 0; r < kRounds; ++r) added.insert(wordOf(c, r));
    for (const std::string &w : words) EXPECT_EQ(added.count(w), 1u) << w;
    bool someLastWord = false;
    for (int c = 0; c < kClosers; ++c) someLastWord |= words.count(wordOf(c, kRounds - 1)) == 1;
    EXPECT_TRUE(someLastWord);
    EXPECT_FALSE(fileExists(list + ".tmp"));
}
#endif

}  // namespace
