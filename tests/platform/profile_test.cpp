// tests/platform/profile_test.cpp — profile files and the registry through
// the OS layer: on POSIX its own text files, on Windows (cross-built, run
// under wine) the system's calls. The cases that run on both hold the POSIX
// realisation to what the Windows calls do.
// Groups: what a profile read finds; writes refused everywhere; bare profile
// names in the configuration folder; (POSIX) what a write keeps, failing
// writes, concurrent writers; registry values, keys and handles.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "platform/platform.h"
#include "support/test_util.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace {

std::string readProfile(const char *section, const char *key, const std::string &file, uint32_t size = 64) {
    std::string out(size, '\x7f');
    uint32_t n = platGetPrivateProfileString(section, key, "dflt", &out[0], size, file.c_str());
    EXPECT_EQ(n, std::strlen(out.c_str()));
    return out.substr(0, n);
}

TEST(ProfileRead, FindsKeysLikeTheWindowsCalls) {
    TempDir dir;
    std::string file = dir.file("a.ini");
    writeFile(file,
              "orphan=before any section\r\n"
              "; comment=no\r\n"
              "[Main]\r\n"
              "  Path = /usr/share/dicts  \r\n"
              "Quoted=\"  spaced  \"\r\n"
              "Half=\"open\r\n"
              "Empty=\r\n"
              "#Hidden=1\r\n"
              "[main]\r\n"
              "Second=ignored: only the first [main] counts\r\n"
              "[Open\r\n"
              "InOpen=yes\r\n"
              "[Last]\r\n"
              "Tail=no line end");
    struct Case {
        const char *section, *key, *value;
    } cases[] = {
        {"MAIN", "path", "/usr/share/dicts"}, {"Main", "Quoted", "  spaced  "}, {"Main", "Half", "\"open"},
        {"Main", "Empty", ""},                {"Main", "Hidden", "dflt"},       {"Main", "Second", "dflt"},
        {"Main", "orphan", "dflt"},           {"Main", "InOpen", "dflt"},       {"Last", "Tail", "no line end"},
        {"None", "Path", "dflt"},
    };
    for (const Case &c : cases) EXPECT_EQ(readProfile(c.section, c.key, file), c.value) << c.key;
#ifndef _WIN32
    // A header without its ']' still opens a section here; wine reads it as
    // a line of the section before.
    EXPECT_EQ(readProfile("Open", "InOpen", file), "yes");
#endif
    EXPECT_EQ(readProfile("Main", "Path", file, 5), "/usr");
    EXPECT_EQ(readProfile("Main", "Path", dir.file("missing.ini")), "dflt");
    EXPECT_EQ(readProfile("Main", "Path", dir.path()), "dflt");  // a folder
}

TEST(ProfileWrite, RefusesWhatWouldNotReadBackAsWritten) {
    TempDir dir;
    std::string file = dir.file("a.ini");
    ASSERT_TRUE(platWritePrivateProfileString("Main", "Path", "v", file.c_str()));
    const std::string kept = readFile(file);
    const char *refused[][3] = {{"Main", "a=b", "v"},   {"Main", "k", "two\nlines"}, {"Ma]in", "k", "v"},
                                {"Main", " k", "v"},    {"Main", ";k", "v"},          {"", "k", "v"},
                                {"Main", nullptr, "v"}, {"Main", "k", nullptr},       {"Main", "k", "cr\rhere"}};
    for (auto &r : refused) EXPECT_FALSE(platWritePrivateProfileString(r[0], r[1], r[2], file.c_str()));
    EXPECT_FALSE(platWritePrivateProfileString("Main", "k", "v", nullptr));
    EXPECT_EQ(readFile(file), kept);
    EXPECT_EQ(readProfile("Main", "Path", file), "v");
    EXPECT_EQ(readProfile(nullptr, "Path", file), "dflt");
    EXPECT_EQ(readProfile("Main", nullptr, file), "dflt");
}

// A bare profile name lives in the configuration folder (on Windows the
// Windows folder, where WIN.INI is).
TEST(ProfileWrite, BareNameLivesInTheConfigurationFolder) {
#ifndef _WIN32
    TempDir config;
    setenv("XDG_CONFIG_HOME", config.path().c_str(), 1);
#endif
    char folder[260];
    ASSERT_TRUE(platConfigFolder(folder, sizeof folder));
    const std::string bare = "orth-profile-test-" + std::to_string(platProcessId()) + ".ini";
    const std::string full = std::string(folder) + platPathSeparator() + bare;
    ASSERT_TRUE(platWritePrivateProfileString("S", "K", "bare", bare.c_str()));
    EXPECT_EQ(readProfile("S", "K", full), "bare");
    EXPECT_EQ(readProfile("S", "K", bare), "bare");
    EXPECT_EQ(platRemove(full.c_str()), 0);
    EXPECT_FALSE(platConfigFolder(folder, 3));
    EXPECT_STREQ(folder, "");
}

#ifndef _WIN32
// What the POSIX files keep: the Windows calls rewrite a file their own way.
int countTempFiles(const std::string &folder) {
    int n = 0;
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().filename().string().find(".~") != std::string::npos) ++n;
    }
    return n;
}

TEST(ProfileWrite, ChangesOneLineAndKeepsEveryOther) {
    TempDir dir;
    std::string file = dir.file("a.ini");
    const std::string original =
        "# kept\r\n[Main]\r\n  Path = old\r\nOther=1\r\n; about Next\r\n\r\n[Next]\r\nKey=v";
    writeFile(file, original);
    struct stat before, after;
    stat(file.c_str(), &before);
    ASSERT_TRUE(platWritePrivateProfileString("main", "PATH", "new value", file.c_str()));
    stat(file.c_str(), &after);
    EXPECT_NE(before.st_ino, after.st_ino);  // replaced by a rename, not rewritten in place
    ASSERT_TRUE(platWritePrivateProfileString("Main", "Added", "2", file.c_str()));
    ASSERT_TRUE(platWritePrivateProfileString("Next", "More", "3", file.c_str()));
    ASSERT_TRUE(platWritePrivateProfileString("New Section", "K", "4", file.c_str()));
    EXPECT_EQ(readFile(file),
              "# kept\r\n[Main]\r\n  Path = new value\r\nOther=1\r\nAdded=2\r\n; about Next\r\n\r\n"
              "[Next]\r\nKey=v\r\nMore=3\r\n[New Section]\r\nK=4\r\n");
    EXPECT_EQ(countTempFiles(dir.path()), 0);

    // A last line cut after its CR keeps the value it read before.
    writeFile(file, "[Main]\r\nA=1\r\nB=\r");
    ASSERT_TRUE(platWritePrivateProfileString("Main", "C", "2", file.c_str()));
    EXPECT_EQ(readFile(file), "[Main]\r\nA=1\r\nB=\r\nC=2\r\n");
    EXPECT_EQ(readProfile("Main", "B", file), "");
}

TEST(ProfileWrite, FailingWriteOrCreateLeavesTheOldFile) {
    TempDir dir;
    std::string file = dir.file("a.ini");
    const std::string original = "[S]\nK=" + std::string(20000, 'x') + "\n";
    writeFile(file, original);
    platFailCreates(1);
    EXPECT_FALSE(platWritePrivateProfileString("S", "K", "new", file.c_str()));
    EXPECT_TRUE(readFile(file) == original);
    for (int n = 0;; ++n) {
        platFailWritesAfter(n);
        bool written = platWritePrivateProfileString("S", "K", "new", file.c_str());
        platClearFaults();
        if (written) break;
        EXPECT_TRUE(readFile(file) == original) << n;
        EXPECT_EQ(countTempFiles(dir.path()), 0);
    }
    EXPECT_EQ(readFile(file), "[S]\nK=new\n");

    // A file too big to be a settings file, or one that cannot be read, is never written.
    const std::string big = "[S]\nK=v\n" + std::string((1u << 20) + 1, ';');
    writeFile(file, big);
    EXPECT_EQ(readProfile("S", "K", file), "dflt");
    EXPECT_FALSE(platWritePrivateProfileString("S", "K", "w", file.c_str()));
    EXPECT_EQ(readFile(file).size(), big.size());
    EXPECT_FALSE(platWritePrivateProfileString("S", "K", "w", dir.path().c_str()));
    EXPECT_FALSE(platWritePrivateProfileString("S", "K", "w", dir.file("none/x.ini").c_str()));
}

// Writers in several processes each keep their own key: the folder lock
// orders their read-modify-write cycles.
TEST(ProfileWrite, ConcurrentWritersLoseNoKey) {
    TempDir dir;
    std::string file = dir.file("shared.ini");
    constexpr int kWriters = 3, kKeys = 25;
    pid_t pids[kWriters];
    for (int w = 0; w < kWriters; ++w) {
        pids[w] = fork();
        ASSERT_GE(pids[w], 0);
        if (pids[w] == 0) {
            bool ok = true;
            for (int k = 0; k < kKeys; ++k) {
                std::string key = "w" + std::to_string(w) + "k" + std::to_string(k);
                ok = platWritePrivateProfileString("S", key.c_str(), "1", file.c_str()) && ok;
            }
            _exit(ok ? 0 : 1);
        }
    }
    for (pid_t pid : pids) {
        int status = 0;
        waitpid(pid, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    for (int w = 0; w < kWriters; ++w) {
        for (int k = 0; k < kKeys; ++k) {
            std::string key = "w" + std::to_string(w) + "k" + std::to_string(k);
            EXPECT_EQ(readProfile("S", key.c_str(), file), "1") << key;
        }
    }
}

#endif  // _WIN32

// A registry of the test's own: on POSIX the configuration and machine
// folders in a temporary folder; on Windows a key path of its own under both
// roots, removed at the end.
class OwnRegistry {
public:
    OwnRegistry() {
#ifdef _WIN32
        base_ = "Software\\orth-tests\\profile-" + std::to_string(GetCurrentProcessId());
        removeKeys();
#else
        setenv("XDG_CONFIG_HOME", dir_.path().c_str(), 1);
        setenv("ORTH_MACHINE_DIR", dir_.file("machine").c_str(), 1);
        base_ = "Software";
#endif
    }
    ~OwnRegistry() {
#ifdef _WIN32
        removeKeys();
#else
        unsetenv("ORTH_MACHINE_DIR");
#endif
    }
    std::string key(const std::string &name) const { return name.empty() ? base_ : base_ + "\\" + name; }
    const TempDir &dir() const { return dir_; }

private:
#ifdef _WIN32
    void removeKeys() {
        RegDeleteTreeA(HKEY_CURRENT_USER, base_.c_str());
        RegDeleteTreeA(HKEY_LOCAL_MACHINE, base_.c_str());
    }
#endif
    TempDir dir_;
    std::string base_;
};

TEST(Registry, ValuesReadBackExactlyAndKeysExistAboveThem) {
    OwnRegistry reg;
    const std::string app = reg.key("Test App");
    PlatRegKey key = nullptr;
    ASSERT_EQ(platRegCreateKey(kPlatRegCurrentUser, app.c_str(), &key), 0);
    const std::string names[] = {"plain", "with space", "a=b[c];#d@", "", "Caf\xE9"};
    const std::string texts[] = {"/usr/share", " edges ", "100%\r\nnext\ttab", "", "\xE9t\xE9"};
    for (int i = 0; i < 5; ++i) {
        const std::string &text = texts[i];
        ASSERT_EQ(platRegSetValue(key, names[i].c_str(), kPlatRegSz, text.c_str(),
                                  static_cast<uint32_t>(text.size() + 1)), 0);
    }
    uint32_t dword = 0xDEADBEEF;
    ASSERT_EQ(platRegSetValue(key, "n", kPlatRegDword, &dword, 4), 0);
    EXPECT_EQ(platRegSetValue(key, "v", 3, "ab", 2), kPlatRegBadParam);  // only text and 32-bit values
    EXPECT_EQ(platRegSetValue(key, "v", kPlatRegDword, &dword, 2), kPlatRegBadParam);
    platRegCloseKey(key);

    std::string upper = app;
    std::transform(upper.begin(), upper.end(), upper.begin(), [](unsigned char c) { return std::toupper(c); });
    ASSERT_EQ(platRegOpenKey(kPlatRegCurrentUser, upper.c_str(), kPlatRegRead, &key), 0);
    for (int i = 0; i < 5; ++i) {
        char buffer[64];
        uint32_t type = 0, size = sizeof buffer;
        ASSERT_EQ(platRegQueryValue(key, names[i].c_str(), &type, buffer, &size), 0) << names[i];
        EXPECT_EQ(type, kPlatRegSz);
        EXPECT_EQ(std::string(buffer, size), texts[i] + '\0');
    }
    uint32_t got = 0, type = 0, size = 4;
    EXPECT_EQ(platRegQueryValue(key, "N", &type, &got, &size), 0);
    EXPECT_EQ(got, 0xDEADBEEFu);
    EXPECT_EQ(type, kPlatRegDword);

    char small[4];
    size = sizeof small;
    EXPECT_EQ(platRegQueryValue(key, "plain", nullptr, small, &size), kPlatRegMoreData);
    EXPECT_EQ(size, 11u);
    size = 0;
    EXPECT_EQ(platRegQueryValue(key, "plain", nullptr, nullptr, &size), 0);
    EXPECT_EQ(size, 11u);
    EXPECT_EQ(platRegQueryValue(key, "absent", nullptr, small, &size), kPlatRegNotFound);
    EXPECT_EQ(platRegSetValue(key, "x", kPlatRegSz, "v", 2), kPlatRegAccessDenied);  // opened to read
    platRegCloseKey(key);

    // A key exists under its own root, and so does every key above it.
    const std::string paths[] = {reg.key(""), reg.key("Test"), reg.key("Test App\\Sub")};
    for (const std::string &path : paths) {
        key = nullptr;
        EXPECT_EQ(platRegOpenKey(kPlatRegCurrentUser, path.c_str(), kPlatRegAllAccess, &key),
                  path == paths[0] ? 0 : kPlatRegNotFound) << path;
        platRegCloseKey(key);
    }
    EXPECT_EQ(platRegOpenKey(kPlatRegLocalMachine, app.c_str(), kPlatRegRead, &key), kPlatRegNotFound);
    ASSERT_EQ(platRegCreateKey(kPlatRegLocalMachine, app.c_str(), &key), 0);
    EXPECT_EQ(platRegSetValue(key, "n", kPlatRegDword, &dword, 4), 0);
    platRegCloseKey(key);
    EXPECT_EQ(platRegOpenKey(kPlatRegLocalMachine, app.c_str(), kPlatRegRead, &key), 0);
    platRegCloseKey(key);
#ifndef _WIN32
    EXPECT_TRUE(fileExists(reg.dir().file("machine/machine.reg")));
#endif
}

}  // namespace
