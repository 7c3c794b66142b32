// tests/host/client_test.cpp — the client context, in both back ends.
// Groups: opening from the settings and writing the user list back; options
// closed out and applied again; the busy guard; checks of a buffer and of an
// edit control (chunks, selections, cancel); the process-id rules of
// ClientTerm and unload; lists and paths. Cross-built for Windows, all but
// the process-id cases (which fork) run on the system's registry.
#include <gtest/gtest.h>

#include <functional>
#include <map>

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "host/texts.h"
#include "host_fixture.h"
#include "orth_client.h"
#include "platform/platform.h"
#include "support/mem_edit.h"

namespace {

const std::string kSep(1, platPathSeparator());  // what the client puts between a folder and a name

// What the scripted front end does and saw.
struct Script {
    std::map<std::string, std::string> replace;  // a reported word and what Change puts instead
    int cancelAtStop = -1;                       // this stop (0 = first) cancels the dialog
    std::function<void()> duringDialog;          // runs while a dialog is up
    std::vector<std::string> blockTexts, blockResults, messages;
};
Script script;

std::string blockText(int16_t sid, int16_t block) {
    uint32_t length = 0;
    ORTH_GetBlockInfo(sid, block, &length, nullptr, nullptr, nullptr);
    std::string text(length + 1, '\0');
    ORTH_GetBlock(sid, block, &text[0], length + 1);
    text.resize(length);
    return text;
}

// A Check Spelling run as a user who changes the words of script.replace
// and ignores the rest; changes are mirrored into the edit control.
int32_t runScriptedCheck(CheckContext *check) {
    int16_t sid = clientContext.sessionId, block = check->blockId;
    script.blockTexts.push_back(blockText(sid, block));
    char word[64], replacement[64];
    for (int stop = 0;; ++stop) {
        int16_t r = ORTH_CheckBlock(sid, block, 0, word, 64, replacement, 64);
        if (r < 0 || (r & ORTH_CHK_END_OF_BLOCK) != 0) break;
        ++clientContext.errorsFound;
        if (stop == script.cancelAtStop) return ORTH_CANCEL_ERR;
        auto change = script.replace.find(word);
        if (change != script.replace.end()) {
            uint32_t cursor = 0;
            ORTH_GetBlockInfo(sid, block, nullptr, nullptr, &cursor, nullptr);
            if (ORTH_ReplaceBlockWord(sid, block, change->second.c_str()) != 0) {
                ADD_FAILURE() << "replacing " << word;
                return -1;
            }
            if (check->editCtrl != nullptr) {
                const ClientFrontEnd &fe = clientFrontEnd();
                uint32_t at = check->baseOffset + cursor;
                fe.editSetSelection(check->editCtrl, at, at + static_cast<uint32_t>(strlen(word)));
                fe.editReplaceSelection(check->editCtrl, change->second.c_str());
            }
            ++clientContext.wordsChanged;
        }
        ORTH_NextBlockWord(sid, block);
    }
    script.blockResults.push_back(blockText(sid, block));
    return 0;
}

class ClientTest : public StoreTest {
protected:
    void SetUp() override {
        StoreTest::SetUp();
        script = Script();
        ClientFrontEnd fe{};
        fe.messageBox = [](OrthWindow, const char *text, const char *caption, ClientButtons) {
            script.messages.push_back(std::string(caption) + "|" + text);
            return kMessageOk;
        };
        fe.runDialog = [](ClientDialog dialog, OrthWindow, CheckContext *check) -> int32_t {
            if (script.duringDialog) script.duringDialog();
            return dialog == kDialogCheckSpelling ? runScriptedCheck(check) : 0;
        };
        useMemEdit(&fe);
        setClientFrontEnd(&fe);
    }

    // An empty text lexicon file of the ignore type.
    std::string makeLex(const std::string &path) {
        makeParent(path);
        int16_t sid = ORTH_OpenSession();
        EXPECT_GE(ORTH_CreateLex(sid, path.c_str(), ORTH_IGNORE_LEX_TYPE, 1033), 0) << path;
        ORTH_CloseSession(sid);
        return path;
    }

    std::string setting(const char *key, int user) {
        char buffer[kClientListSize];
        getSetting(key, user, "(none)", buffer, sizeof buffer);
        return buffer;
    }
};

TEST_P(ClientTest, OpensListedLexiconsAndWritesTheUserListBackUnchanged) {
    std::string user = dir.file("user"), main = dir.file("main");
    makeLex(user + kSep + "personal.tlx");
    std::string other = makeLex(dir.file("elsewhere/other.tlx"));
    makeLex(main + kSep + "main.tlx");
    std::string shared = makeLex(dir.file("shared/team.tlx"));
    std::string log = logToFile();
    const std::string list = "personal.tlx," + other + ",missing.tlx";
    putSetting(kKeyUserLexPath, kUserScope, user.c_str());
    putSetting(kKeyUserLexFiles, kUserScope, list.c_str());
    putSetting(kKeyMainLexPath, kMachineScope, main.c_str());
    putSetting(kKeyMainLexFiles, kMachineScope, ("main.tlx," + shared).c_str());

    int16_t sid = ORTH_GetSid();
    ASSERT_GE(sid, 0);
    EXPECT_EQ(sid, clientContext.sessionId);
    struct Expected {
        const char *name;
        uint32_t kind;
        bool opened;
    } slots[] = {{"", CLIENT_LEX_TEMP, true},         {"", CLIENT_LEX_TEMP, true},
                 {"", CLIENT_LEX_TEMP, true},         {"personal.tlx", CLIENT_LEX_USER, true},
                 {other.c_str(), CLIENT_LEX_USER, true}, {"missing.tlx", CLIENT_LEX_USER, false},
                 {"main.tlx", CLIENT_LEX_MAIN, true}, {shared.c_str(), CLIENT_LEX_MAIN, true},
                 {"", CLIENT_LEX_FREE, false}};
    for (int i = 0; i < 9; ++i) {
        const ClientLexSlot &slot = clientContext.slots[i];
        EXPECT_STREQ(slot.fileName, slots[i].name) << i;
        EXPECT_EQ(slot.kind, slots[i].kind) << i;
        EXPECT_EQ(slot.lexId >= 0, slots[i].opened) << i;
    }
    EXPECT_EQ(script.messages, std::vector<std::string>{"|Error opening dictionary " + user + kSep + "missing.tlx"});
    EXPECT_EQ(ORTH_GetLexId("OTHER.tlx"), clientContext.slots[4].lexId);
    EXPECT_EQ(ORTH_GetLexId(other.c_str()), clientContext.slots[4].lexId);
    EXPECT_EQ(ORTH_GetLexId("nothing.tlx"), ORTH_FILE_NOT_FOUND_ERR);

    putSetting(kKeyUserLexFiles, kUserScope, "");
    updateUserLexFiles();
    EXPECT_EQ(setting(kKeyUserLexFiles, kUserScope), list);
    closeClient();
    EXPECT_EQ(clientContext.slots[5].kind, CLIENT_LEX_USER);  // a failed open is not closed
    EXPECT_EQ(clientContext.slots[3].kind, CLIENT_LEX_FREE);

    std::string lines = readFile(log);
    for (const char *line : {"OpenORTH: client id ", "ORTH_OpenSession: session opened",
                             "ORTH_GetLexId: No such lexicon: nothing.tlx", "ORTH_CloseSession: Session "}) {
        EXPECT_NE(lines.find(line), std::string::npos) << line;
    }
}

TEST_P(ClientTest, SurplusListedLexiconsAreSkippedButKeptInTheList) {
    std::string list;
    for (int i = 0; i < 15; ++i) list += (i > 0 ? "," : "") + std::string("u") + std::to_string(i) + ".tlx";
    putSetting(kKeyUserLexFiles, kUserScope, list.c_str());
    putSetting(kKeyMainLexFiles, kMachineScope, "main.clx");
    std::string log = logToFile();
    ASSERT_EQ(OpenORTH(), 0);
    EXPECT_EQ(findFreeLexSlot(), -1);
    EXPECT_EQ(script.messages.size(), 13u);
    std::string lines = readFile(log);
    for (const char *skipped : {"u13.tlx", "u14.tlx", "main.clx"}) {
        EXPECT_NE(lines.find(std::string("OpenORTH: no free lexicon slot; ") + skipped + " skipped"),
                  std::string::npos);
    }
    updateUserLexFiles();
    EXPECT_EQ(setting(kKeyUserLexFiles, kUserScope), list);
}

TEST_P(ClientTest, ClosingWritesTheOptionsAndTheNextOpenAppliesThem) {
    ASSERT_EQ(OpenORTH(), 0);
    int16_t sid = clientContext.sessionId;
    ORTH_SetOption(sid, ORTH_CASE_SENSITIVE_OPT, 0);
    ORTH_SetOption(sid, ORTH_SPLIT_WORDS_OPT, 1);
    ORTH_SetOption(sid, ORTH_CHARSET_OPT, static_cast<uint32_t>(-1));
    putIntSetting("CaseSensitive", kUserScope, 1);
    EXPECT_EQ(OpenORTH(), 0);  // already open: reads nothing
    EXPECT_EQ(ORTH_GetOption(sid, ORTH_CASE_SENSITIVE_OPT), 0);

    ClientTerm();
    EXPECT_EQ(clientContext.sessionId, -1);
    EXPECT_EQ(getIntSetting("CaseSensitive", kUserScope, 7), 0u);
    EXPECT_EQ(getIntSetting("SplitWords", kUserScope, 7), 1u);
    EXPECT_EQ(getIntSetting("CharSet", kUserScope, 7), 0xFFFFFFFFu);
    EXPECT_EQ(getIntSetting("ReportDoubledWords", kUserScope, 7), 1u);
    EXPECT_EQ(getIntSetting(kKeyAlwaysSuggest, kUserScope, 7), 7u);  // not the session's to write

    putIntSetting("Language", kUserScope, 70000);
    ORTH_SetAlwaysSuggest(-1);
    EXPECT_EQ(getIntSetting(kKeyAlwaysSuggest, kUserScope, 0), 0xFFFFFFFFu);
    ASSERT_EQ(OpenORTH(), 0);
    sid = clientContext.sessionId;
    EXPECT_EQ(ORTH_GetOption(sid, ORTH_CASE_SENSITIVE_OPT), 0);
    EXPECT_EQ(ORTH_GetOption(sid, ORTH_SPLIT_WORDS_OPT), 1);
    EXPECT_EQ(ORTH_GetOption(sid, ORTH_CHARSET_OPT), -1);
    EXPECT_EQ(ORTH_GetOption(sid, ORTH_LANGUAGE_OPT), 4464);
    EXPECT_EQ(clientContext.alwaysSuggest, -1);
    EXPECT_EQ(ORTH_GetAlwaysSuggest(), -1);
}

TEST_P(ClientTest, ASettingChangeClosesTheContextAndTheNextCallReopensFromIt) {
    std::string main = dir.file("main");
    makeLex(main + kSep + "main.tlx");
    ASSERT_EQ(OpenORTH(), 0);
    EXPECT_EQ(ORTH_SetMainLexPath(main.c_str()), 0);
    EXPECT_EQ(clientContext.sessionId, -1);
    EXPECT_EQ(ORTH_SetMainLexFiles("main.tlx"), 0);
    char buffer[300];
    EXPECT_EQ(ORTH_GetMainLexPath(buffer, sizeof buffer), 0);
    EXPECT_EQ(std::string(buffer), main);
    EXPECT_GE(ORTH_GetLexId("main.tlx"), 0);
    EXPECT_EQ(ORTH_GetUserLexFiles(nullptr, 10), ORTH_BUFFER_TOO_SMALL_ERR);
}

TEST_P(ClientTest, GuardedCallsWhileBusyReturnBusyAndChangeNothing) {
    putSetting(kKeyMainLexFiles, kMachineScope, "main.tlx");
    ASSERT_EQ(OpenORTH(), 0);
    int16_t sid = clientContext.sessionId;
    std::string user = storeText(kUserScope), machine = storeText(kMachineScope);
    std::vector<int> results;
    script.duringDialog = [&] {
        MemEdit edit;
        char text[8] = "x";
        results = {ORTH_SetIniFile("/elsewhere.ini"),  ORTH_SetRegTreeName("Other"),
                   ORTH_SetMainLexPath("/m"),           ORTH_SetMainLexFiles("m.clx"),
                   ORTH_SetUserLexPath("/u"),           ORTH_SetUserLexFiles("u.tlx"),
                   ORTH_SetHelpFile("x.hlp"),           ORTH_ClearTempLex(),
                   ORTH_CheckBlockDlg(nullptr, text, 1, 8), ORTH_CheckCtrlDlg(nullptr, &edit, 0),
                   ORTH_EditLexDlg(nullptr),             ORTH_OptionsDlg(nullptr)};
    };
    EXPECT_EQ(ORTH_EditLexDlg(nullptr), 0);
    EXPECT_EQ(results, std::vector<int>(12, ORTH_BUSY_ERR));
    EXPECT_FALSE(clientContext.busy);
    EXPECT_EQ(clientContext.sessionId, sid);
    EXPECT_STRNE(iniFilePath(), "/elsewhere.ini");
    EXPECT_STREQ(regTreeName(), tree.c_str());
    EXPECT_EQ(storeText(kUserScope), user);
    EXPECT_EQ(storeText(kMachineScope), machine);
    script.duringDialog = [&] { results = {clientContext.busy}; };
    EXPECT_EQ(ORTH_OptionsDlg(nullptr), 0);
    EXPECT_EQ(results, std::vector<int>{0});  // the Options dialog runs without raising busy
}

TEST_P(ClientTest, CheckBlockDialogReturnsTheNewLengthAndKeepsChangesOnCancel) {
    script.replace = {{"grow", "growing"}, {"shrinking", "shr"}};
    char text[64] = "grow shrinking keep";
    EXPECT_EQ(ORTH_CheckBlockDlg(nullptr, text, 19, sizeof text), 16);
    EXPECT_EQ(std::string(text, 16), "growing shr keep");
    uint32_t checked = 0, changed = 0, errors = 0;
    ORTH_GetStatistics(&checked, &changed, nullptr);
    EXPECT_EQ(checked, 3u);
    EXPECT_EQ(changed, 2u);

    script.cancelAtStop = 1;
    char again[64] = "grow shrinking";
    EXPECT_EQ(ORTH_CheckBlockDlg(nullptr, again, 14, sizeof again), ORTH_CANCEL_ERR);
    EXPECT_EQ(std::string(again, 17), "growing shrinking");
    ORTH_GetStatistics(nullptr, nullptr, &errors);
    EXPECT_EQ(errors, 2u);  // counted afresh for each call
    EXPECT_EQ(ORTH_CheckBlockDlg(nullptr, again, 20, 10), ORTH_BUFFER_TOO_SMALL_ERR);
    EXPECT_EQ(ORTH_CheckCtrlDlg(nullptr, nullptr, 0), ORTH_UNSUPPORTED_ACTION_ERR);
}

// A text of more than two chunks whose replacements grow and shrink it ends
// in the control exactly as the blocks ended, and no chunk splits a word.
TEST_P(ClientTest, EditControlLongerThanAChunkEndsEqualToTheBlocks) {
    script.replace = {{"grow", "growing"}, {"shrinking", "shr"}};
    const char *words[] = {"grow", "keep", "shrinking", "alpha,", "beta.", "gamma"};
    MemEdit edit;
    std::string expected;
    for (size_t i = 0; edit.text.size() < 450000; ++i) {
        std::string w = words[i % 6], sep = i % 11 == 10 ? "\n" : " ";
        edit.text += w + sep;
        expected += (w == "grow" ? "growing" : w == "shrinking" ? "shr" : w) + sep;
    }
    edit.start = edit.end = 100;
    ASSERT_EQ(ORTH_CheckCtrlDlg(nullptr, &edit, 1), 0);
    EXPECT_TRUE(edit.text == expected);
    ASSERT_GE(script.blockTexts.size(), 3u);
    std::string joined;
    for (size_t i = 0; i < script.blockResults.size(); ++i) {
        joined += script.blockResults[i];
        EXPECT_LE(script.blockTexts[i].size(), 196605u);
        if (i + 1 < script.blockTexts.size()) {
            EXPECT_TRUE(isspace(script.blockTexts[i].back()) || isspace(script.blockTexts[i + 1].front())) << i;
        }
    }
    EXPECT_TRUE(joined == edit.text);
    EXPECT_EQ(edit.start, 0u);
    EXPECT_EQ(edit.end, 0u);

    // A run of non-blanks longer than a chunk is checked cut, and the walk ends.
    script = Script();
    edit.text = std::string(200000, 'x') + " tail";
    ASSERT_EQ(ORTH_CheckCtrlDlg(nullptr, &edit, 0), 0);
    ASSERT_EQ(script.blockTexts.size(), 2u);
    EXPECT_EQ(script.blockTexts[0].size(), 196605u);
    EXPECT_TRUE(script.blockTexts[0] + script.blockTexts[1] == edit.text);
}

TEST_P(ClientTest, SelectionOnlyChecksTheSelectionAndRestoresIt) {
    script.replace = {{"two", "twenty"}};
    struct Case {
        uint32_t start, end;
        int16_t selectionOnly;
        const char *checked;
        uint32_t afterStart, afterEnd;
    } cases[] = {
        {4, 13, 1, "two three", 4, 13},
        {13, 4, 1, "two three", 13, 4},
        {7, 7, 1, "one two three four", 0, 0},
        {4, 13, 0, "one two three four", 0, 0},
        {0x10004, 0x1000D, 1, "two three", 4, 13},  // positions are 16-bit
    };
    for (const Case &c : cases) {
        script.blockTexts.clear();
        MemEdit edit{"one two three four", c.start, c.end};
        ASSERT_EQ(ORTH_CheckCtrlDlg(nullptr, &edit, c.selectionOnly), 0);
        ASSERT_EQ(script.blockTexts.size(), 1u);
        EXPECT_EQ(script.blockTexts[0], c.checked);
        EXPECT_EQ(edit.text, "one twenty three four");
        EXPECT_EQ(edit.start, c.afterStart);
        EXPECT_EQ(edit.end, c.afterEnd);
    }
}

#ifndef _WIN32
// ClientTerm and the unload act only in the process that opened the context.
TEST_P(ClientTest, OnlyTheOpeningProcessClosesTheContext) {
    ASSERT_EQ(OpenORTH(), 0);
    ORTH_SetOption(clientContext.sessionId, ORTH_CASE_SENSITIVE_OPT, 0);
    pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ClientTerm();
        _exit(clientContext.sessionId >= 0 ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(getIntSetting("CaseSensitive", kUserScope, 7), 7u);

    // A program that opens the context and ends writes its options at exit.
    EXPECT_EQ(std::system((std::string(ORTH_SETTINGS_TOOL) + " --ini " + ini + " open").c_str()), 0);
    EXPECT_EQ(getIntSetting("CaseSensitive", kUserScope, 7), 0u);
}
#endif

INSTANTIATE_BOTH_BACKENDS(ClientTest);

TEST(ClientLists, ItemsPathsAndTextsAreCutAtTheirCapacity) {
    struct Case {
        std::string list;
        std::vector<std::string> items;
    } cases[] = {
        {"a,b", {"a", "b"}},
        {"a,,b", {"a", "", "b"}},
        {"a,", {"a"}},
        {"", {}},
        {",", {""}},
        {" a , b", {" a ", " b"}},
        {std::string(300, 'p'), {std::string(259, 'p'), std::string(41, 'p')}},
        {std::string(259, 'q') + ",x", {std::string(259, 'q'), "x"}},
    };
    for (const Case &c : cases) {
        std::vector<std::string> items;
        char item[kPathBufSize];
        for (const char *pos = c.list.c_str(); (pos = nextListItem(pos, item, kPathBufSize)) != nullptr;) {
            items.push_back(item);
        }
        EXPECT_EQ(items, c.items) << c.list.substr(0, 20);
    }
    EXPECT_EQ(nextListItem(nullptr, nullptr, 0), nullptr);

    char path[kPathBufSize];
    joinLexPath(".", "a.tlx", path);
    EXPECT_EQ(path, "." + kSep + "a.tlx");
    joinLexPath("/d", "C:\\x\\a.tlx", path);  // a name with a folder is taken as it is
    EXPECT_STREQ(path, "C:\\x\\a.tlx");
    joinLexPath(std::string(258, 'f').c_str(), "a.tlx", path);
    EXPECT_EQ(path, std::string(258, 'f') + kSep);
    EXPECT_STREQ(bareFileName("C:\\dicts/sub\\a.tlx"), "a.tlx");
    EXPECT_STREQ(clientText(1056), "Error opening dictionary %s");
    EXPECT_STREQ(clientText(1063), "Spanish");  // language names come from the language table
    EXPECT_EQ(clientText(1039), nullptr);
}

}  // namespace
