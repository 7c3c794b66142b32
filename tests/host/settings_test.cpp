// tests/host/settings_test.cpp — the settings store, in both back ends.
// Groups: defaults of an empty store; values across processes; integers
// through the stored text; damaged and unreachable stores; where the INI
// file is found; the store's location setters; the back-end rule. Cross-built
// for Windows, the cases run on the system's registry; those about the POSIX
// files, or that start a second program, are left out there.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "host_fixture.h"
#include "orth_client.h"

namespace {

#ifndef _WIN32
// Runs the second program and returns its standard output.
std::string runTool(const std::string &program, const std::string &args) {
    std::string out;
    FILE *pipe = popen((program + " " + args).c_str(), "r");
    if (pipe == nullptr) return out;
    char buffer[512];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) out.append(buffer, n);
    EXPECT_EQ(pclose(pipe), 0) << args;
    return out;
}
#endif

std::string readSetting(const char *key, int user, const char *defaultText, uint16_t size = 260) {
    std::string buffer(size, '\x7f');
    getSetting(key, user, defaultText, &buffer[0], size);
    return buffer.substr(0, buffer.find('\0'));
}

using SettingsStore = StoreTest;

TEST_P(SettingsStore, EmptyStoreYieldsEveryDefaultAndCreatesNothing) {
    ASSERT_EQ(OpenORTH(), 0);
    int16_t sid = clientContext.sessionId;
    // The engine's defaults with doubled words reported and split words suggested.
    const uint32_t mask = ORTH_DEFAULT_OPTIONS | ORTH_REPORT_DOUBLED_WORDS_OPT | ORTH_SUGGEST_SPLIT_WORDS_OPT;
    for (int bit = 0; bit < 18; ++bit) EXPECT_EQ(ORTH_GetOption(sid, 1u << bit), (mask >> bit) & 1) << bit;
    EXPECT_EQ(ORTH_GetOption(sid, ORTH_CHARSET_OPT), 0);
    EXPECT_EQ(ORTH_GetOption(sid, ORTH_LANGUAGE_OPT), 1033);
    EXPECT_EQ(clientContext.alwaysSuggest, 0);
    EXPECT_STREQ(clientContext.mainLexFolder, ".");
    EXPECT_STREQ(clientContext.userLexFolder, ".");
    EXPECT_STREQ(clientContext.helpFile, "orth.hlp");
    char buffer[16] = "x";
    EXPECT_EQ(ORTH_GetHelpFile(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(ORTH_GetAlwaysSuggest(), 0);
    EXPECT_FALSE(storeExists(kUserScope));
    EXPECT_FALSE(storeExists(kMachineScope));
}

#ifndef _WIN32
TEST_P(SettingsStore, ValuesWrittenByOneProcessAreReadByAnother) {
    std::string tool = std::string(ORTH_SETTINGS_TOOL) + " --ini " + ini;
    runTool(tool, "put machine MainLexPath /dicts/main");
    runTool(tool, "putint user Language 4294967295");
    EXPECT_EQ(readSetting(kKeyMainLexPath, kMachineScope, ""), "/dicts/main");
    EXPECT_EQ(getIntSetting("Language", kUserScope, 1033), 0xFFFFFFFFu);

    putSetting(kKeyUserLexFiles, kUserScope, "a.tlx,/x/b.tlx");
    putIntSetting("CaseSensitive", kUserScope, 0);
    EXPECT_EQ(runTool(tool, "get user UserLexFiles"), "a.tlx,/x/b.tlx\n");
    EXPECT_EQ(runTool(tool, "getint user CaseSensitive 1"), "0\n");
    EXPECT_EQ(runTool(tool, "get machine UserLexFiles"), "\n");  // scopes are apart
}
#endif

TEST_P(SettingsStore, IntegersAndTextsRoundTripThroughTheStoredForm) {
    putIntSetting("CharSet", kUserScope, static_cast<uint32_t>(-1));
    EXPECT_EQ(static_cast<int32_t>(getIntSetting("CharSet", kUserScope, 0)), -1);
    std::string stored = storeText(kUserScope);
    EXPECT_NE(stored.find(registry() ? "CharSet=dword:FFFFFFFF\n" : "CharSet=4294967295\n"), std::string::npos)
        << stored;

    const char *text = "C:\\My Dicts\\a=b;100% \xE9t\xE9";
    putSetting(kKeyUserLexPath, kUserScope, text);
    EXPECT_EQ(readSetting(kKeyUserLexPath, kUserScope, ""), text);
    EXPECT_EQ(static_cast<int32_t>(getIntSetting("CharSet", kUserScope, 0)), -1);
}

TEST_P(SettingsStore, ValueLargerThanTheBufferFollowsTheBackEnd) {
    putSetting(kKeyMainLexPath, kMachineScope, "/a/rather/long/folder");
    // The registry refuses the value and gives the default cut to the buffer;
    // the INI file gives the value cut to the buffer.
    EXPECT_EQ(readSetting(kKeyMainLexPath, kMachineScope, "defaultpath", 8), registry() ? "default" : "/a/rath");
}

TEST_P(SettingsStore, UnreachableStoreReadsDefaultsAndWritesNothing) {
#ifdef _WIN32
    setRegTreeName("\\orth-tests\\no key path starts with a backslash");
#else
    std::string blocker = dir.file("not-a-folder");
    writeFile(blocker, "x");
    setenv("XDG_CONFIG_HOME", blocker.c_str(), 1);
    setenv("ORTH_MACHINE_DIR", (blocker + "/machine").c_str(), 1);
    setIniFilePath((blocker + "/ORTH.INI").c_str());
#endif
    putSetting(kKeyMainLexPath, kMachineScope, "/somewhere");
    putIntSetting("CaseSensitive", kUserScope, 0);
    EXPECT_EQ(readSetting(kKeyMainLexPath, kMachineScope, "dflt"), "dflt");
    EXPECT_EQ(getIntSetting("CaseSensitive", kUserScope, 1), 1u);
    ASSERT_EQ(OpenORTH(), 0);
    EXPECT_EQ(ORTH_GetOption(clientContext.sessionId, ORTH_CASE_SENSITIVE_OPT), 1);
#ifndef _WIN32
    EXPECT_EQ(readFile(blocker), "x");
#endif
}

INSTANTIATE_BOTH_BACKENDS(SettingsStore);

#ifndef _WIN32
class DamagedStore : public StoreTest {};

TEST_P(DamagedStore, ReadsDefaultsForDamagedLinesAndAWriteKeepsEveryLine) {
    std::string file = storeFile(kMachineScope);
    std::string original;
    if (registry()) {
        original = "[Software\\Tamarind\\ORTH]\n"
                   "HelpFile=sz:/help/orth.hlp\n"
                   "FontBold=dword:zz000001\n"
                   "DebugFile=bin:0102\n"
                   "garbage \x01\x02 line\n"
                   "LexPath=sz:bad%zzescape\n"
                   "MainLexPath=sz:/cut/sh";  // cut short: no line end
    } else {
        original = "; settings\r\n[ORTH]\r\nHelpFile = \"/help/orth.hlp\"\r\n"
                   "FontBold\r\n"                    // no '='
                   "garbage \x01\x02 line\r\n=orphan value\r\n"
                   "LexPath=" + std::string(10000, 'p') + "\r\n"
                   "[ORTH User\r\nMainLexPath=/wrong/section\r\n";
    }
    ASSERT_TRUE(makeParent(file));
    writeFile(file, original);

    EXPECT_EQ(readSetting(kKeyHelpFile, kMachineScope, "orth.hlp"), "/help/orth.hlp");
    EXPECT_EQ(getIntSetting(kKeyFontBold, kMachineScope, 7), 7u);
    EXPECT_EQ(readSetting(kKeyDebugFile, kMachineScope, "dflt"), "dflt");
    EXPECT_EQ(readSetting(kKeyMainLexPath, kMachineScope, "dflt"), "dflt");
    EXPECT_EQ(readSetting(kKeyLexPath, kMachineScope, ".", 5), registry() ? "." : "pppp");

    putSetting(kKeyMainLexFiles, kMachineScope, "main.clx");
    std::string after = readFile(file);
    EXPECT_EQ(readSetting(kKeyMainLexFiles, kMachineScope, ""), "main.clx");
    EXPECT_EQ(readSetting(kKeyHelpFile, kMachineScope, ""), "/help/orth.hlp");
    EXPECT_EQ(readSetting(kKeyMainLexPath, kMachineScope, "dflt"), "dflt");
    if (registry()) {
        std::string kept = original.substr(0, original.rfind('\n') + 1);
        EXPECT_EQ(after.substr(0, kept.size()), kept);
        EXPECT_NE(after.find("# damaged: MainLexPath=sz:/cut/sh\n"), std::string::npos) << after;
    } else {
        size_t cut = original.find("[ORTH User");
        EXPECT_EQ(after, original.substr(0, cut) + "MainLexFiles=main.clx\r\n" + original.substr(cut));
    }
}

INSTANTIATE_BOTH_BACKENDS(DamagedStore);

// The INI file beside the program wins; without one, WIN.INI names it; and
// without that, ORTH.INI in the configuration folder.
TEST(SettingsLocation, IniFileIsFoundBesideTheProgramThenThroughWinIni) {
    TempDir dir;
    std::string bin = dir.path() + "/bin", tool = bin + "/tool";
    ASSERT_TRUE(makeParent(tool));
    writeFile(tool, readFile(ORTH_SETTINGS_TOOL));
    chmod(tool.c_str(), 0755);
    setenv("XDG_CONFIG_HOME", (dir.path() + "/config").c_str(), 1);
    unsetenv("ORTH_SETTINGS");

    EXPECT_EQ(runTool(tool, "inifile"), "ORTH.INI\n");
    runTool(tool, "put user UserLexFiles a.tlx");
    EXPECT_EQ(readFile(dir.path() + "/config/orth/ORTH.INI"), "[ORTH User]\nUserLexFiles=a.tlx\n");

    writeFile(dir.path() + "/config/orth/WIN.INI", "[orth]\northprofilefile=" + dir.path() + "/other.ini\n");
    EXPECT_EQ(runTool(tool, "inifile"), dir.path() + "/other.ini\n");
    writeFile(bin + "/ORTH.INI", "");
    EXPECT_EQ(runTool(tool, "inifile"), bin + "/ORTH.INI\n");
}
#endif

TEST(SettingsLocation, SettersKeep259CharactersAndTheGetterCutsToItsBuffer) {
    std::string longPath(300, 'p');
    EXPECT_EQ(ORTH_SetIniFile(longPath.c_str()), 0);
    EXPECT_EQ(std::string(iniFilePath()), longPath.substr(0, 259));
    EXPECT_EQ(ORTH_SetIniFile(nullptr), 0);
    EXPECT_STREQ(iniFilePath(), "");

    char buffer[5];
    EXPECT_EQ(ORTH_GetRegTreeName(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "Soft");
    EXPECT_EQ(ORTH_GetRegTreeName(nullptr, 5), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_EQ(ORTH_SetRegTreeName(longPath.c_str()), 0);
    EXPECT_EQ(std::string(regTreeName()), longPath.substr(0, 259));
    setRegTreeName("Software\\Tamarind\\ORTH");
}

TEST(SettingsBackEnd, VersionWordSelectsTheStore) {
    // 3.94 and 3.10 of the non-NT family use the INI file; 3.95, 4.0 and
    // every NT version the registry.
    const uint32_t ini[] = {0x80005E03u, 0x80000A03u}, reg[] = {0x80005F03u, 0x80000004u, 0x00000A03u};
    for (uint32_t v : ini) EXPECT_FALSE(registryForVersion(v)) << std::hex << v;
    for (uint32_t v : reg) EXPECT_TRUE(registryForVersion(v)) << std::hex << v;
#ifndef _WIN32
    unsetenv("ORTH_SETTINGS");
    EXPECT_EQ(useRegistry(), 0);
    setenv("ORTH_SETTINGS", "registry", 1);
    EXPECT_EQ(useRegistry(), 1);
    unsetenv("ORTH_SETTINGS");
#endif
}

TEST(SettingsBackEnd, IniIntegersReadWithSignAndWrapAround) {
    struct Case {
        const char *text;
        uint32_t value;
    } cases[] = {
        {"12abc", 12},        {" -7", static_cast<uint32_t>(-7)}, {"abc", 0},
        {"", 0},              {"+5", 5},                          {"\t 8", 8},
        {"- 3", 0},           {"4294967295", 0xFFFFFFFFu},       {"4294967297", 1},
        {"99999999999999999999", 1661992959u},
    };
    for (const Case &c : cases) EXPECT_EQ(parseIniInteger(c.text), c.value) << c.text;
}

}  // namespace
