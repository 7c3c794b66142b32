// tests/platform/profile_test.cpp — the POSIX profile files and registry.
// Groups: what a profile read finds; what a write keeps; failing and refused
// writes; concurrent writers; registry values, keys and handles; the
// process facts (configuration folder, module file name).
#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/platform.h"
#include "support/test_util.h"

namespace {

std::string readProfile(const char *section, const char *key, const std::string &file, uint32_t size = 64) {
    std::string out(size, '\x7f');
    uint32_t n = platGetPrivateProfileString(section, key, "dflt", &out[0], size, file.c_str());
    EXPECT_EQ(n, std::strlen(out.c_str()));
    return out.substr(0, n);
}

int countTempFiles(const std::string &folder) {
    int n = 0;
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().filename().string().find(".~") != std::string::npos) ++n;
    }
    return n;
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
        {"Main", "orphan", "dflt"},           {"Open", "InOpen", "yes"},        {"Main", "InOpen", "dflt"},
        {"Last", "Tail", "no line end"},      {"None", "Path", "dflt"},
    };
    for (const Case &c : cases) EXPECT_EQ(readProfile(c.section, c.key, file), c.value) << c.key;
    EXPECT_EQ(readProfile("Main", "Path", file, 5), "/usr");
    EXPECT_EQ(readProfile("Main", "Path", dir.file("missing.ini")), "dflt");
    EXPECT_EQ(readProfile("Main", "Path", dir.path()), "dflt");  // a folder
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

    // Names and values that would not read back as written are refused.
    std::string kept = readFile(file);
    const char *refused[][3] = {{"Main", "a=b", "v"},   {"Main", "k", "two\nlines"}, {"Ma]in", "k", "v"},
                                {"Main", " k", "v"},    {"Main", ";k", "v"},         {"", "k", "v"},
                                {"Main", nullptr, "v"}, {"Main", "k", nullptr}};
    for (auto &r : refused) EXPECT_FALSE(platWritePrivateProfileString(r[0], r[1], r[2], file.c_str()));
    EXPECT_EQ(readFile(file), kept);
}

TEST(ProfileWrite, WriteThroughASymbolicLinkKeepsTheLink) {
    TempDir dir;
    std::string target = dir.file("real.ini"), link = dir.file("link.ini");
    writeFile(target, "[S]\nK=1\n");
    ASSERT_EQ(symlink(target.c_str(), link.c_str()), 0);
    ASSERT_TRUE(platWritePrivateProfileString("S", "K", "2", link.c_str()));
    struct stat st;
    ASSERT_EQ(lstat(link.c_str(), &st), 0);
    EXPECT_TRUE(S_ISLNK(st.st_mode));
    EXPECT_EQ(readFile(target), "[S]\nK=2\n");
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
}

TEST(ProfileWrite, OversizedOrUnreadableFileIsNeverWritten) {
    TempDir dir;
    std::string big = dir.file("big.ini");
    std::string content = "[S]\nK=v\n" + std::string((1u << 20) + 1, ';');
    writeFile(big, content);
    EXPECT_EQ(readProfile("S", "K", big), "dflt");
    EXPECT_FALSE(platWritePrivateProfileString("S", "K", "w", big.c_str()));
    EXPECT_EQ(readFile(big).size(), content.size());
    EXPECT_FALSE(platWritePrivateProfileString("S", "K", "w", dir.path().c_str()));  // a folder
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

class Registry : public ::testing::Test {
protected:
    void SetUp() override {
        setenv("XDG_CONFIG_HOME", dir.path().c_str(), 1);
        setenv("ORTH_MACHINE_DIR", dir.file("machine").c_str(), 1);
    }
    void TearDown() override { unsetenv("ORTH_MACHINE_DIR"); }

    PlatRegKey create(PlatRegRoot root, const char *path) {
        PlatRegKey key = nullptr;
        EXPECT_EQ(platRegCreateKey(root, path, &key), 0);
        return key;
    }

    TempDir dir;
};

TEST_F(Registry, ValuesReadBackExactlyWithTheirTypeAndSize) {
    PlatRegKey key = create(kPlatRegCurrentUser, "Software\\Test App");
    const std::string names[] = {"plain", "with space", "a=b[c];#d@", "", "Caf\xE9"};
    const std::string texts[] = {"/usr/share", " edges ", "100%\r\nnext\ttab", "", "\xE9t\xE9"};
    for (int i = 0; i < 5; ++i) {
        const std::string &text = texts[i];
        ASSERT_EQ(platRegSetValue(key, names[i].c_str(), kPlatRegSz, text.c_str(),
                                  static_cast<uint32_t>(text.size() + 1)), 0);
    }
    uint32_t dword = 0xDEADBEEF;
    ASSERT_EQ(platRegSetValue(key, "n", kPlatRegDword, &dword, 4), 0);
    platRegCloseKey(key);

    ASSERT_EQ(platRegOpenKey(kPlatRegCurrentUser, "SOFTWARE\\test app", kPlatRegRead, &key), 0);
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
}

TEST_F(Registry, KeysExistUnderTheirRootAndAboveTheirValues) {
    PlatRegKey key = create(kPlatRegLocalMachine, "Software\\Vendor\\Product");
    EXPECT_EQ(platRegSetValue(key, "v", 3, "ab", 2), kPlatRegBadParam);  // only text and 32-bit values
    EXPECT_EQ(platRegSetValue(key, "v", kPlatRegDword, "ab", 2), kPlatRegBadParam);
    platRegCloseKey(key);
    EXPECT_TRUE(fileExists(dir.file("machine/machine.reg")));
    EXPECT_FALSE(fileExists(dir.file("orth/user.reg")));

    struct Case {
        PlatRegRoot root;
        const char *path;
        int32_t rc;
    } cases[] = {
        {kPlatRegLocalMachine, "Software\\Vendor\\Product", 0}, {kPlatRegLocalMachine, "software\\vendor", 0},
        {kPlatRegLocalMachine, "Software\\Vend", kPlatRegNotFound},
        {kPlatRegLocalMachine, "Software\\Vendor\\Product\\Sub", kPlatRegNotFound},
        {kPlatRegCurrentUser, "Software\\Vendor", kPlatRegNotFound},
    };
    for (const Case &c : cases) {
        PlatRegKey k = nullptr;
        EXPECT_EQ(platRegOpenKey(c.root, c.path, kPlatRegAllAccess, &k), c.rc) << c.path;
        EXPECT_EQ(k == nullptr, c.rc != 0);
        platRegCloseKey(k);
    }
    EXPECT_EQ(platRegOpenKey(kPlatRegCurrentUser, "x", kPlatRegRead, nullptr), kPlatRegBadParam);
}

TEST(ProcessFacts, ConfigurationFolderAndModuleFileName) {
    const char *oldXdg = std::getenv("XDG_CONFIG_HOME");
    std::string savedXdg = oldXdg != nullptr ? oldXdg : "";
    struct Case {
        const char *xdg, *home, *folder;
    } cases[] = {
        {"/cfg", "/home/u", "/cfg/orth"},
        {"relative", "/home/u", "/home/u/.config/orth"},  // a relative XDG path is ignored
        {"", "/home/u", "/home/u/.config/orth"},
        {"", "", nullptr},
    };
    const char *oldHome = std::getenv("HOME");
    std::string savedHome = oldHome != nullptr ? oldHome : "";
    for (const Case &c : cases) {
        setenv("XDG_CONFIG_HOME", c.xdg, 1);
        setenv("HOME", c.home, 1);
        char folder[64];
        EXPECT_EQ(platConfigFolder(folder, sizeof folder), c.folder != nullptr);
        if (c.folder != nullptr) {
            EXPECT_STREQ(folder, c.folder);
        }
    }
    setenv("XDG_CONFIG_HOME", std::string(300, 'x').insert(0, "/").c_str(), 1);
    char folder[64];
    EXPECT_FALSE(platConfigFolder(folder, sizeof folder));
    setenv("HOME", savedHome.c_str(), 1);
    setenv("XDG_CONFIG_HOME", savedXdg.c_str(), 1);

    char self[PATH_MAX], module[PATH_MAX];
    ASSERT_NE(realpath("/proc/self/exe", self), nullptr);
    EXPECT_EQ(platModuleFileName(module, sizeof module), std::strlen(self));
    EXPECT_STREQ(module, self);
    EXPECT_EQ(platModuleFileName(module, 5), 4u);
    EXPECT_EQ(platProcessId(), static_cast<uint32_t>(getpid()));
}

}  // namespace
