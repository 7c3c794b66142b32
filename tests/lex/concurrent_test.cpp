// Text lexicons shared by several processes.
// Groups: TextWriters (processes adding different words to one lexicon while
// another keeps loading it; a stale temporary file of a killed writer; a
// writer that holds the temporary file; a change saved within the same
// second as the last one).
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "lex/tlex.h"
#include "orth.h"
#include "platform/platform.h"
#include "support/test_util.h"

#ifndef _WIN32
#include "lex/procs.h"
#endif

namespace {

using Words = std::set<std::string>;

#ifndef _WIN32  // the tests of several processes fork
// Why bytes are not a whole type 1 lexicon of language 1033 with a sentinel
// whose count matches its sorted entries, each a word of known; "" when they are.
std::string badLexFile(const std::string &bytes, const Words &known) {
    if (bytes.size() < 2 || bytes.compare(bytes.size() - 2, 2, "\r\n") != 0) return "not ended by CR LF";
    std::vector<std::string> lines;
    for (size_t at = 0; at < bytes.size();) {
        size_t end = bytes.find("\r\n", at);
        lines.push_back(bytes.substr(at, end - at));
        at = end + 2;
    }
    unsigned long count = 0;
    if (std::sscanf(lines[0].c_str(), "#LID 1033 1 %lu", &count) != 1) return "sentinel " + lines[0];
    if (count != lines.size() - 1) return "count " + std::to_string(count) + " for " + std::to_string(lines.size() - 1);
    for (size_t i = 1; i < lines.size(); ++i) {
        if (known.count(lines[i]) == 0) return "unknown entry " + lines[i];
        if (i > 1 && !(lines[i - 1] < lines[i])) return "order at " + lines[i];
    }
    return "";
}

#endif

Words entriesOf(const std::string &bytes) {
    Words out;
    std::istringstream in(bytes);
    std::string line;
    std::getline(in, line);  // the sentinel
    while (std::getline(in, line)) out.insert(line.substr(0, line.size() - 1));
    return out;
}

class TextWriters : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        writeFile(path, "#LID 1033 1 0\r\n");
    }
    void TearDown() override { platClearFaults(); }
    // The words writer w adds.
    static std::vector<std::string> wordsOf(int w, int n) {
        std::vector<std::string> out;
        for (int i = 0; i < n; ++i) out.push_back("w" + std::to_string(w) + "x" + std::to_string(i));
        return out;
    }
#ifndef _WIN32
    // Adds words through the engine API and records in done the ones whose
    // add returned 0; the exit code counts the others.
    int addWords(const std::vector<std::string> &words, const std::string &done) {
        int16_t session = ORTH_OpenSession();
        int16_t lex = ORTH_OpenLex(session, path.c_str(), 0);
        if (lex < 0) return 100;
        std::string saved;
        int failed = 0;
        for (const std::string &w : words) {
            if (ORTH_AddToLex(session, lex, w.c_str(), nullptr) == 0) saved += w + "\n";
            else ++failed;
        }
        writeFile(done, saved);
        return failed;
    }
#endif
    TempDir dir;
    std::string path = dir.file("shared.tlx"), temp = dir.file("AAAAORTH.TMP");
};

#ifndef _WIN32
TEST_F(TextWriters, SeveralProcessesLoseNoWordWhileAReaderSeesWholeFiles) {
    constexpr int kWriters = 4, kWords = 40;
    Words known;
    for (int w = 0; w < kWriters; ++w)
        for (const std::string &word : wordsOf(w, kWords)) known.insert(word);
    std::string stop = dir.file("stop"), readerLog = dir.file("reader.log");
    // The reader loads the file by name and through the engine until told to stop.
    pid_t reader = spawnChild([&] {
        int loads = 0;
        while (!fileExists(stop) || loads < 10) {
            std::string why = fileExists(path) ? badLexFile(readFile(path), known) : "missing";
            TLexState lex{};
            if (why.empty() && TLex_Open(path.c_str(), &lex) != 0) why = "open failed";
            TLex_Close(&lex);
            if (!why.empty()) {
                writeFile(readerLog, why);
                return 1;
            }
            ++loads;
        }
        return 0;
    });
    std::vector<pid_t> writers;
    for (int w = 0; w < kWriters; ++w)
        writers.push_back(spawnChild([&, w] { return addWords(wordsOf(w, kWords), dir.file("done" + std::to_string(w))); }));
    Words saved;
    for (int w = 0; w < kWriters; ++w) {
        EXPECT_EQ(waitChild(writers[w]), 0) << "writer " << w << " had adds refused";
        std::istringstream in(readFile(dir.file("done" + std::to_string(w))));
        for (std::string word; std::getline(in, word);) saved.insert(word);
    }
    writeFile(stop, "");
    EXPECT_EQ(waitChild(reader), 0) << readFile(readerLog);
    std::string bytes = readFile(path);
    EXPECT_EQ(badLexFile(bytes, known), "");
    EXPECT_EQ(saved.size(), known.size());
    Words onDisk = entriesOf(bytes);
    EXPECT_TRUE(std::includes(onDisk.begin(), onDisk.end(), saved.begin(), saved.end()));
    EXPECT_FALSE(fileExists(temp));
}
#endif

TEST_F(TextWriters, StaleTemporaryFileOfAKilledWriterIsTakenOver) {
    writeFile(temp, "#LID 1033 1 9\r\nhalf a writ");
    TLexState lex{};
    ASSERT_EQ(TLex_Open(path.c_str(), &lex), 0);
    EXPECT_EQ(TLex_Add(&lex, "word", nullptr), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 1 1\r\nword\r\n");
    EXPECT_FALSE(fileExists(temp));
    TLex_Close(&lex);
}

#ifndef _WIN32
// Another process owns the temporary file: a change waits for it, and one
// that waits longer than allowed is kept in memory and refused as a failed
// save, with the file as it was.
TEST_F(TextWriters, ChangeWaitsForTheOwnerOfTheTemporaryFile) {
    LogCapture log;
    TLexState lex{};
    ASSERT_EQ(TLex_Open(path.c_str(), &lex), 0);
    std::string held = dir.file("held");
    auto holdFor = [&](unsigned ms) {
        return spawnChild([&, ms] {
            int32_t h = platOpenOwned(temp.c_str(), 1000);
            if (h < 0) return 1;
            writeFile(held, "");
            usleep(ms * 1000);
            platRemove(temp.c_str());
            platCloseOwned(h);
            return 0;
        });
    };
    auto waitHeld = [&] {  // false when the owner never took the file
        for (int ms = 0; ms < 20000 && !fileExists(held); ++ms) usleep(1000);
        return std::remove(held.c_str()) == 0;
    };
    pid_t owner = holdFor(300);
    ASSERT_TRUE(waitHeld());
    EXPECT_EQ(TLex_Add(&lex, "late", nullptr), 0);
    EXPECT_EQ(waitChild(owner), 0);
    EXPECT_EQ(readFile(path), "#LID 1033 1 1\r\nlate\r\n");

    owner = holdFor(2000);
    ASSERT_TRUE(waitHeld());
    platCapOwnedWait(100);
    EXPECT_EQ(TLex_Add(&lex, "never", nullptr), ORTH_FILE_OPEN_ERR);
    EXPECT_TRUE(log.contains("saveLexFile: error opening " + temp + ": another writer holds it"));
    EXPECT_EQ(readFile(path), "#LID 1033 1 1\r\nlate\r\n");
    EXPECT_EQ(TLex_Lookup(&lex, "never", 0, true, nullptr, 0), 0);
    EXPECT_EQ(waitChild(owner), 0);
    TLex_Close(&lex);
}
#endif

// A change another writer saved within the same second (so with the same
// whole-second time) is still reloaded before the next change.
TEST_F(TextWriters, SameSecondChangeOfAnotherWriterIsReloaded) {
    TLexState mine{}, theirs{};
    ASSERT_EQ(TLex_Open(path.c_str(), &mine), 0);
    ASSERT_EQ(TLex_Open(path.c_str(), &theirs), 0);
    for (int i = 0; i < 20; ++i) {
        std::string a = "m" + std::to_string(i), b = "t" + std::to_string(i);
        ASSERT_EQ(TLex_Add(&mine, a.c_str(), nullptr), 0);
        ASSERT_EQ(TLex_Add(&theirs, b.c_str(), nullptr), 0);
    }
    Words all;
    for (int i = 0; i < 20; ++i) all.insert({"m" + std::to_string(i), "t" + std::to_string(i)});
    EXPECT_EQ(entriesOf(readFile(path)), all);
    TLex_Close(&mine);
    TLex_Close(&theirs);
}

}  // namespace
