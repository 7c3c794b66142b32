// tests/win32/client_host_test.cpp — ORTH32.DLL's client level as a Windows
// host uses it, over the system's own settings store. Each test loads the
// DLL afresh, so its process-wide state starts as at load, and frees it.
//
// Built twice. win32_client_host runs with the version word wine reports by
// default, an NT version: the settings live in the registry under the two
// roots. win32_client_ini runs with the Win32s 3.10 that the test prefix
// gives that program (wine-prefix.sh): the settings live in INI files.
// Neither hard-codes a version; each checks only the family it runs under.
//
// Groups: values in their stored form; moving the store; a bare main name
// in the current folder; options written by ClientTerm and by the DLL's
// unload; the dialog calls where no display can show them; where the INI
// file is found. An empty store's defaults and the lexicons a context opens
// are the settings and client unit tests' (win32_unit_host).
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "host.h"
#include "orth_client.h"

namespace {

constexpr bool kIni = ORTH_TEST_INI_STORE != 0;
constexpr const char *kTree = "Software\\Tamarind\\ORTH";
constexpr const char *kMovedTree = "Software\\Tamarind\\ORTH host test";
constexpr const char *kNone = Store::kNone;

#define ORTH32_CLIENT_FUNCTIONS(X)                                                                           \
    X(OpenORTH) X(ClientTerm) X(ORTH_GetSid) X(ORTH_GetLexId) X(ORTH_ClearTempLex) X(ORTH_GetStatistics)     \
    X(ORTH_SetDialogOrigin) X(ORTH_CheckBlockDlg) X(ORTH_CheckCtrlDlg) X(ORTH_EditLexDlg) X(ORTH_OptionsDlg) \
    X(ORTH_SetIniFile) X(ORTH_SetRegTreeName) X(ORTH_GetRegTreeName) X(ORTH_SetMainLexPath)                  \
    X(ORTH_SetMainLexFiles) X(ORTH_SetUserLexPath) X(ORTH_SetUserLexFiles) X(ORTH_SetHelpFile)               \
    X(ORTH_GetMainLexPath) X(ORTH_GetMainLexFiles) X(ORTH_GetUserLexPath) X(ORTH_GetUserLexFiles)            \
    X(ORTH_GetHelpFile) X(ORTH_SetAlwaysSuggest) X(ORTH_GetAlwaysSuggest) X(ORTH_GetOption) X(ORTH_SetOption) \
    X(ORTH_CheckWord)

struct ClientApi {
    HOST_IMPORTS(ORTH32_CLIENT_FUNCTIONS)
};

class ClientHost : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(work.path().empty());
        // The version word's family decides the store; the prefix must give this program the right one.
        ASSERT_EQ((GetVersion() & 0x80000000u) != 0, kIni)
            << std::hex << GetVersion() << ": win32_client_ini needs the non-NT version word of wine-prefix.sh";
        store = {kIni ? work.file("ORTH.INI") : kTree, kIni};
        moved = {kIni ? work.file("MOVED.INI") : kMovedTree, kIni};
        store.clear();
        moved.clear();
        load("ORTH32.DLL");
    }
    void TearDown() override {
        dll.reset();
        store.clear();
        moved.clear();
    }

    void load(const std::string &path) {
        dll.reset();
        dll = std::make_unique<Dll>(path.c_str());
        ASSERT_NE(dll->module(), nullptr) << path << ": " << GetLastError();
        api.load(*dll);
        ASSERT_TRUE(api.missing.empty()) << api.missing.front();
        if (kIni && path == "ORTH32.DLL") {
            ASSERT_EQ(api.ORTH_SetIniFile(store.place.c_str()), 0);
        }
    }

    std::string logToFile() {
        std::string log = work.file("client.log");
        store.put("DebugFile", false, log);
        return log;
    }
    // A text lexicon of the ignore type holding one word.
    std::string makeLex(const std::string &folder, const char *name, const char *word) {
        CreateDirectoryA(folder.c_str(), nullptr);
        std::string path = folder + "\\" + name;
        writeBytes(path, std::string("#LID 1033 1 1\r\n") + word + "\r\n");
        return path;
    }
    int16_t check(int16_t sid, const char *word) {
        char replacement[64];
        return api.ORTH_CheckWord(sid, 0, word, replacement, sizeof replacement);
    }

    WorkFolder work;
    Store store, moved;
    std::unique_ptr<Dll> dll;
    ClientApi api;
};

TEST_F(ClientHost, ValuesReadBackFromTheirStoredForm) {
    const std::string text = "C:\\My Dicts\\caf\xE9 = 100%";
    struct Row {
        int16_t(ORTH_CALL *set)(const char *);
        int16_t(ORTH_CALL *get)(char *, uint16_t);
        const char *key;
        bool user;
    } rows[] = {{api.ORTH_SetMainLexPath, api.ORTH_GetMainLexPath, "MainLexPath", false},
                {api.ORTH_SetMainLexFiles, api.ORTH_GetMainLexFiles, "MainLexFiles", false},
                {api.ORTH_SetUserLexPath, api.ORTH_GetUserLexPath, "UserLexPath", true},
                {api.ORTH_SetUserLexFiles, api.ORTH_GetUserLexFiles, "UserLexFiles", true},
                {api.ORTH_SetHelpFile, api.ORTH_GetHelpFile, "HelpFile", false}};
    for (const Row &r : rows) {
        EXPECT_EQ(r.set(text.c_str()), 0);
        EXPECT_EQ(store.get(r.key, r.user), text) << r.key;
        EXPECT_EQ(store.get(r.key, !r.user), kNone) << r.key;  // the scopes are apart
        char buffer[64] = "";
        EXPECT_EQ(r.get(buffer, sizeof buffer), 0);
        EXPECT_EQ(buffer, text);
        // A value larger than the buffer: the registry gives the default (""),
        // an INI file the value cut to the buffer.
        EXPECT_EQ(r.get(buffer, 5), 0);
        EXPECT_STREQ(buffer, kIni ? "C:\\M" : "") << r.key;
    }

    EXPECT_EQ(api.ORTH_SetAlwaysSuggest(-1), 0);
    EXPECT_EQ(store.get("AlwaysSuggest", true), store.integer(4294967295u));
    EXPECT_EQ(api.ORTH_GetAlwaysSuggest(), -1);
    store.putInt("AlwaysSuggest", true, 0x12345);
    EXPECT_EQ(api.ORTH_GetAlwaysSuggest(), 0x2345);  // the low 16 bits
    if (kIni) {
        const std::pair<const char *, int16_t> texts[] = {{"12abc", 12}, {" -7", -7}, {"abc", 0}, {"+5", 5}};
        for (const auto &t : texts) {
            store.put("AlwaysSuggest", true, t.first);
            EXPECT_EQ(api.ORTH_GetAlwaysSuggest(), t.second) << t.first;
        }
    }
}

// The location setters close the context first, so the options it writes
// back land in the old store; the back end stays the one the version word
// chose, whichever location the other one is given.
TEST_F(ClientHost, MovingTheStoreClosesTheContextIntoTheOldOne) {
    int16_t sid = api.ORTH_GetSid();
    ASSERT_GE(sid, 0);
    api.ORTH_SetOption(sid, ORTH_CASE_SENSITIVE_OPT, 0);
    EXPECT_EQ(kIni ? api.ORTH_SetIniFile(moved.place.c_str()) : api.ORTH_SetRegTreeName(moved.place.c_str()), 0);
    EXPECT_EQ(store.get("CaseSensitive", true), store.integer(0));
    EXPECT_EQ(moved.get("CaseSensitive", true), kNone);

    Store other{kIni ? std::string(kMovedTree) : work.file("OTHER.INI"), !kIni};
    EXPECT_EQ(kIni ? api.ORTH_SetRegTreeName(other.place.c_str()) : api.ORTH_SetIniFile(other.place.c_str()), 0);
    EXPECT_EQ(api.ORTH_SetHelpFile("moved.hlp"), 0);
    EXPECT_EQ(moved.get("HelpFile", false), "moved.hlp");
    EXPECT_EQ(store.get("HelpFile", false), kNone);
    EXPECT_FALSE(kIni ? keyExists(HKEY_LOCAL_MACHINE, other.place) : fileExists(other.place));

    char buffer[5];
    EXPECT_EQ(api.ORTH_GetRegTreeName(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "Soft");
}

// With no MainLexPath and no LexPath, a bare main name is looked for in the
// current folder. (Lexicons listed by folder and by full path, and the lists
// written back unchanged, are the client unit tests', win32_unit_host.)
TEST_F(ClientHost, BareMainNameIsFoundInTheCurrentFolder) {
    const std::string cwd = work.file("cwd");
    makeLex(cwd, "HERE.TLX", "blorptastic");
    char before[MAX_PATH];
    GetCurrentDirectoryA(MAX_PATH, before);
    ASSERT_TRUE(SetCurrentDirectoryA(cwd.c_str()));
    EXPECT_EQ(api.ORTH_SetMainLexFiles("HERE.TLX"), 0);
    int16_t sid = api.ORTH_GetSid();
    EXPECT_EQ(check(sid, "blorptastic"), 0);
    EXPECT_EQ(check(sid, "blorptastik"), ORTH_CHK_MISSPELLED);
    EXPECT_EQ(api.ORTH_GetLexId(".\\HERE.TLX"), ORTH_FILE_NOT_FOUND_ERR);  // recorded as listed
    EXPECT_GE(api.ORTH_GetLexId("here.tlx"), 3);
    SetCurrentDirectoryA(before);
}

TEST_F(ClientHost, OptionsAreWrittenAtCloseAndAppliedAtTheNextOpen) {
    const std::string log = logToFile();
    int16_t sid = api.ORTH_GetSid();
    ASSERT_GE(sid, 0);
    api.ORTH_SetOption(sid, ORTH_CASE_SENSITIVE_OPT, 0);
    api.ORTH_SetOption(sid, ORTH_SPLIT_WORDS_OPT, 1);
    api.ORTH_SetOption(sid, ORTH_LANGUAGE_OPT, 2057);
    api.ClientTerm();
    const std::pair<const char *, uint32_t> written[] = {
        {"CaseSensitive", 0}, {"SplitWords", 1}, {"Language", 2057}, {"ReportDoubledWords", 1}, {"CharSet", 0}};
    for (const auto &w : written) EXPECT_EQ(store.get(w.first, true), store.integer(w.second)) << w.first;
    EXPECT_EQ(store.get("AlwaysSuggest", true), kNone);  // not the session's to write

    store.putInt("Language", true, 70000);
    store.putInt("IgnoreAllCapsWords", true, 1);
    sid = api.ORTH_GetSid();
    ASSERT_GE(sid, 0);
    EXPECT_EQ(api.ORTH_GetOption(sid, ORTH_LANGUAGE_OPT), 4464);  // the low 16 bits, signed
    EXPECT_EQ(api.ORTH_GetOption(sid, ORTH_IGNORE_ALL_CAPS_WORDS_OPT), 1);
    EXPECT_EQ(api.ORTH_GetOption(sid, ORTH_CASE_SENSITIVE_OPT), 0);

    // Unloading the DLL closes the context: the options are written once more,
    // without a ClientTerm line.
    api.ORTH_SetOption(sid, ORTH_CASE_SENSITIVE_OPT, 1);
    dll.reset();
    EXPECT_EQ(store.get("CaseSensitive", true), store.integer(1));
    EXPECT_EQ(store.get("Language", true), store.integer(4464));
    const std::string lines = fileBytes(log);
    EXPECT_EQ(lines.find("ClientTerm:"), lines.rfind("ClientTerm:"));
    EXPECT_NE(lines.rfind("ORTH_CloseSession: Session 0 closed"), lines.find("ORTH_CloseSession: Session 0 closed"));

    // A DLL unloaded without an open context writes nothing.
    store.clear();
    load("ORTH32.DLL");
    EXPECT_EQ(api.ORTH_GetAlwaysSuggest(), 0);
    dll.reset();
    EXPECT_FALSE(store.exists());
}

// These programs run without a display: ORTH32.DLL's dialogs cannot be made,
// and each dialog call ends as cancelled, with a log line, leaving nothing
// changed or busy. (dialogs_host_test.cpp shows them on a display.)
TEST_F(ClientHost, DialogCallsWithoutADisplayEndAsCancelled) {
    const std::string log = logToFile();
    char text[32] = "Teh cat sat.";
    EXPECT_EQ(api.ORTH_CheckBlockDlg(nullptr, text, 12, sizeof text), ORTH_CANCEL_ERR);
    EXPECT_STREQ(text, "Teh cat sat.");
    EXPECT_EQ(api.ORTH_CheckBlockDlg(nullptr, text, 12, 8), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_EQ(api.ORTH_OptionsDlg(nullptr), ORTH_CANCEL_ERR);
    EXPECT_EQ(api.ORTH_EditLexDlg(nullptr), ORTH_CANCEL_ERR);
    EXPECT_EQ(api.ORTH_CheckCtrlDlg(nullptr, nullptr, 0), ORTH_UNSUPPORTED_ACTION_ERR);
    uint32_t changed = 9, errors = 9;
    api.ORTH_GetStatistics(nullptr, &changed, &errors);
    EXPECT_EQ(changed, 0u);
    EXPECT_EQ(errors, 0u);
    api.ORTH_SetDialogOrigin(10, 20);
    EXPECT_EQ(api.ORTH_ClearTempLex(), 0);
    EXPECT_EQ(api.ORTH_SetHelpFile("after.hlp"), 0);  // no dialog left busy
    const std::string lines = fileBytes(log);
    for (const char *line : {"DialogBoxParamA: CheckSpellingDlg could not be shown",
                             "DialogBoxParamA: OptionsDlg could not be shown",
                             "DialogBoxParamA: EditLexDlg could not be shown", "ORTH_CheckCtrlDlg: no edit control\r\n"})
        EXPECT_NE(lines.find(line), std::string::npos) << line;
}

// ORTH.INI beside the DLL wins over the file WIN.INI names; without either,
// ORTH.INI in the Windows folder.
TEST_F(ClientHost, IniFileIsFoundBesideTheDllThenThroughWinIni) {
    if (!kIni) GTEST_SKIP() << "the registry is in force under this version word";
    char windows[MAX_PATH];
    ASSERT_GT(GetWindowsDirectoryA(windows, MAX_PATH), 0u);
    const std::string folder = work.file("dll"), copy = folder + "\\ORTH32.DLL";
    const std::string beside = folder + "\\ORTH.INI", named = work.file("NAMED.INI"),
                      inWindows = std::string(windows) + "\\ORTH.INI";
    dll.reset();
    ASSERT_TRUE(CreateDirectoryA(folder.c_str(), nullptr));
    ASSERT_TRUE(CopyFileA((programFolder() + "ORTH32.DLL").c_str(), copy.c_str(), FALSE));
    for (const auto &f : {std::make_pair(beside, "beside.hlp"), std::make_pair(named, "named.hlp"),
                          std::make_pair(inWindows, "windows.hlp")})
        ASSERT_TRUE(WritePrivateProfileStringA("ORTH", "HelpFile", f.second, f.first.c_str()));
    ASSERT_TRUE(WriteProfileStringA("ORTH", "ORTHProfileFile", named.c_str()));

    const std::pair<std::string, const char *> steps[] = {
        {"", "beside.hlp"}, {beside, "named.hlp"}, {"WIN.INI", "windows.hlp"}};
    for (const auto &step : steps) {
        if (step.first == "WIN.INI") WriteProfileStringA("ORTH", "ORTHProfileFile", nullptr);
        else if (!step.first.empty()) DeleteFileA(step.first.c_str());
        load(copy);
        char buffer[32] = "";
        EXPECT_EQ(api.ORTH_GetHelpFile(buffer, sizeof buffer), 0);
        EXPECT_STREQ(buffer, step.second);
        dll.reset();
    }
    WriteProfileStringA("ORTH", "ORTHProfileFile", nullptr);
    DeleteFileA(inWindows.c_str());
}

}  // namespace
