// The Dictionaries, New Dictionary and Options dialogs over a real client
// context, driven by control identifier through the in-memory front end.
// Groups: LexEntries (the lists and labels, Add Word and Delete Word by
// type), LexFiles (Add File, New, Remove File, full slots), LexImport (the
// token reader; import of pairs and plain words; export read back),
// OptionsDlg (start, OK writing every key, Cancel writing none, the owner).
#include "ui/client_fixture.h"

#include "platform/platform.h"
#include "ui/controllers.h"

namespace {

using LexEntries = DialogTest;
using LexFiles = DialogTest;
using LexImport = DialogTest;
using OptionsDlg = DialogTest;

TEST_F(LexEntries, WordsAreAddedAndDeletedByTheLexiconsType) {
    makeLex(userDir + "/fixes.tlx", ORTH_AUTO_CHANGE_LEX_TYPE);
    putSetting(kKeyUserLexFiles, kUserScope, "personal.tlx,fixes.tlx");
    fe.scripts.push_back([](MemUi &d) {
        EXPECT_EQ(d.items(kElFiles), (Strings{"personal.tlx", "fixes.tlx"}));
        EXPECT_EQ(d.text(kElType), "Ignore");
        EXPECT_EQ(d.text(kElLanguage), "American English");
        EXPECT_FALSE(d.enabled(kElAddWord));
        EXPECT_FALSE(d.enabled(kElDeleteWord));
        d.type(kElWords, "ab:cd");  // an ignore lexicon takes the colon as part of the word
        d.click(kElAddWord);
        d.type(kElWords, "zeta");
        d.click(kElAddWord);
        EXPECT_EQ(d.items(kElWords), (Strings{"ab:cd", "zeta"}));
        d.type(kElWords, "ab:whatever");  // Delete Word cuts at the colon: "ab" is no entry
        d.click(kElDeleteWord);
        EXPECT_EQ(d.items(kElWords), (Strings{"ab:cd", "zeta"}));

        d.choose(kElFiles, 1);
        EXPECT_EQ(d.text(kElType), "Auto change");
        d.type(kElWords, "teh");
        d.click(kElAddWord);  // a pair type wants word:replacement
        d.type(kElWords, "teh:the");
        d.click(kElAddWord);
        d.type(kElWords, std::string(64, 'x') + ":y");  // a word that would have to be cut
        d.click(kElAddWord);
        EXPECT_EQ(d.items(kElWords), Strings{"teh:the"});
        EXPECT_FALSE(d.enabled(kElDeleteWord));  // the typed text is no entry
        d.choose(kElWords, 0);
        EXPECT_EQ(d.text(kElWords), "teh:the");
        d.click(kElDeleteWord);
        EXPECT_TRUE(d.items(kElWords).empty());
        d.click(kIdHelp);
        d.click(kIdCancel);
    });
    EXPECT_EQ(ORTH_EditLexDlg(nullptr), 0);
    EXPECT_EQ(boxes(), (Strings{"Edit Dictionaries|Please enter \"word:replacement\" for this dictionary type.",
                                "Edit Dictionaries|Error adding word."}));
    EXPECT_EQ(readFile(userDir + "/personal.tlx"), crlfLines({"#LID 1033 1 2", "ab:cd", "zeta"}));
    ASSERT_EQ(fe.helpCalls.size(), 1u);
    EXPECT_EQ(fe.helpCalls[0].second, 300u);
}

TEST_F(LexFiles, AddFileRecordsBareNamesAndRefusesWhatItCannotAdd) {
    std::string other = dir.path() + "/other.tlx";
    makeLex(userDir + "/names.tlx", ORTH_EXCLUDE_LEX_TYPE);
    makeLex(other, ORTH_IGNORE_LEX_TYPE);
    fe.fileAnswers = {{true, userDir + "/names.tlx"}, {true, other},
                      {true, mainDir + "/MAIN.CLX"}, {true, dir.path() + "/missing.tlx"},
                      {true, userDir + "/PERSONAL.TLX"}};
    putSetting(kKeyUserLexPath, kUserScope, userDir.c_str());
    fe.scripts.push_back([](MemUi &d) {
        for (int i = 0; i < 5; ++i) d.click(kElAddFile);
        d.click(kIdCancel);
    });
    EXPECT_EQ(ORTH_EditLexDlg(nullptr), 0);
    EXPECT_EQ(setting(kKeyUserLexFiles, kUserScope), "personal.tlx,names.tlx," + other);
    EXPECT_EQ(boxes(), (Strings{"Edit Dictionaries|Dictionary file " + mainDir + "/MAIN.CLX has wrong format.",
                                "Edit Dictionaries|Error opening dictionary " + dir.path() + "/missing.tlx"}));
    ASSERT_EQ(fe.fileCalls.size(), 5u);
    EXPECT_EQ(fe.fileCalls[0].title, "Add Dictionary File");
    EXPECT_EQ(fe.fileCalls[0].folder, userDir);
    EXPECT_EQ(fe.fileCalls[0].flags, kUiFileMustExist | kUiPathMustExist);

    // A main lexicon of the context cannot be added; in the user folder it
    // is known by its bare name.
    closeClient();
    putSetting(kKeyUserLexPath, kUserScope, mainDir.c_str());
    putSetting(kKeyUserLexFiles, kUserScope, "");
    fe.boxes.clear();
    fe.fileAnswers = {{true, mainDir + "/main.clx"}};
    fe.scripts.push_back([](MemUi &d) {
        d.click(kElAddFile);
        EXPECT_TRUE(d.items(kElFiles).empty());
        d.click(kIdCancel);
    });
    EXPECT_EQ(ORTH_EditLexDlg(nullptr), 0);
    EXPECT_EQ(boxes(), Strings{"Edit Dictionaries|Dictionary file " + mainDir + "/main.clx can't be added."});
}

TEST_F(LexFiles, NewAndRemoveFileKeepTheSettingInStep) {
    std::string elsewhere = dir.path() + "/shared.tlx";
    fe.fileAnswers = {{true, userDir + "/browsed.tlx"}};
    fe.scripts.push_back([&](MemUi &d) {
        fe.scripts.push_front([](MemUi &n) { n.click(kIdCancel); });
        d.click(kElNew);
        fe.scripts.push_front([](MemUi &n) {
            EXPECT_EQ(n.text(kNlLanguage), "American English");
            EXPECT_EQ(n.checked(kNlIgnore), 1);
            EXPECT_EQ(n.items(kNlLanguage).size(), 20u);
            n.click(kNlBrowse);
            EXPECT_EQ(n.text(kNlFileName), "browsed.tlx");
            n.click(kNlConditional);
            n.choose(kNlLanguage, 1);
            n.click(kIdOk);
        });
        d.click(kElNew);
        EXPECT_EQ(d.text(kElType), "Conditionally change");
        EXPECT_EQ(d.text(kElLanguage), "British English");
        fe.scripts.push_front([&](MemUi &n) {
            n.type(kNlFileName, elsewhere);
            n.click(kNlExclude);
            n.type(kNlLanguage, "");
            n.click(kIdOk);
        });
        d.click(kElNew);
        EXPECT_EQ(d.text(kElLanguage), "Other");
        fe.scripts.push_front([&](MemUi &n) {
            n.type(kNlFileName, dir.path() + "/nofolder/x.tlx");
            n.click(kIdOk);
        });
        d.click(kElNew);
        EXPECT_EQ(d.items(kElFiles), (Strings{"personal.tlx", "browsed.tlx", elsewhere}));
        d.choose(kElFiles, 0);
        d.click(kElRemoveFile);
        EXPECT_EQ(d.items(kElFiles), (Strings{"browsed.tlx", elsewhere}));
        EXPECT_EQ(d.selection(kElFiles), 0);
        d.click(kIdCancel);
    });
    EXPECT_EQ(ORTH_EditLexDlg(nullptr), 0);
    EXPECT_EQ(setting(kKeyUserLexFiles, kUserScope), "browsed.tlx," + elsewhere);
    EXPECT_TRUE(fileExists(userDir + "/personal.tlx"));
    EXPECT_EQ(readFile(userDir + "/browsed.tlx"), crlfLines({"#LID 2057 2 0"}));
    EXPECT_EQ(readFile(elsewhere), crlfLines({"#LID -001 3 0"}));
    EXPECT_EQ(boxes(), Strings{"Edit Dictionaries|Error creating dictionary " + dir.path() + "/nofolder/x.tlx"});
    ASSERT_EQ(fe.fileCalls.size(), 1u);
    EXPECT_EQ(fe.fileCalls[0].title, "Create Dictionary File");
    EXPECT_EQ(fe.fileCalls[0].flags, kUiPathMustExist | kUiOverwritePrompt);
}

TEST_F(LexFiles, WithEverySlotTakenNothingMoreCanBeAdded) {
    std::string list = "personal.tlx";
    for (int i = 0; i < 11; ++i) {
        std::string name = "u" + std::to_string(i) + ".tlx";
        makeLex(userDir + "/" + name, ORTH_IGNORE_LEX_TYPE);
        list += "," + name;
    }
    putSetting(kKeyUserLexFiles, kUserScope, list.c_str());
    fe.scripts.push_back([](MemUi &d) {
        EXPECT_FALSE(d.enabled(kElAddFile));
        EXPECT_FALSE(d.enabled(kElNew));
        d.click(kElRemoveFile);
        EXPECT_TRUE(d.enabled(kElAddFile));
        EXPECT_TRUE(d.enabled(kElNew));
        for (int i = 0; i < 11; ++i) d.click(kElRemoveFile);
        EXPECT_FALSE(d.enabled(kElRemoveFile));
        EXPECT_FALSE(d.enabled(kElImport));
        EXPECT_EQ(d.text(kElType), "");
        d.click(kIdCancel);
    });
    EXPECT_EQ(ORTH_EditLexDlg(nullptr), 0);
    EXPECT_EQ(setting(kKeyUserLexFiles, kUserScope), "");
}

TEST_F(LexImport, TheTokenReaderSplitsAsDefined) {
    struct Case {
        std::string text;
        bool colonEnds;
        Strings tokens;
    } cases[] = {
        {"one two\tthree\r\nfour", true, {"one", "two", "three", "four"}},
        {"# comment line\n; another\nword # a comment\nword#x", true, {"word", "word#x"}},
        {"a:b c::d", true, {"a", "b", "c", "d"}},
        {"a:b c::d", false, {"a:b", "c::d"}},
        {std::string(85, 'x') + " y", true, {std::string(80, 'x'), "xxxx", "y"}},
        {std::string(80, 'x') + "y z", true, {std::string(80, 'x'), "z"}},
        {"\x01" "odd\x02" "bytes", true, {"odd", "bytes"}},
        {"", true, {}},
    };
    for (const Case &c : cases) {
        std::string path = dir.path() + "/tokens.txt";
        writeFile(path, c.text);
        int32_t file = platOpenRead(path.c_str());
        ASSERT_GE(file, 0);
        ImportReader r;
        importReaderOpen(&r, file);
        Strings got;
        char token[kImportTokenMax + 1];
        while (importReadToken(&r, c.colonEnds, token) > 0) got.push_back(token);
        platClose(file);
        EXPECT_EQ(got, c.tokens) << c.text;
    }
}

TEST_F(LexImport, PairsAndPlainWordsImportAndExportRoundTrips) {
    makeLex(userDir + "/fixes.tlx", ORTH_AUTO_CHANGE_LEX_TYPE);
    putSetting(kKeyUserLexFiles, kUserScope, "personal.tlx,fixes.tlx");
    writeFile(dir.path() + "/plain.txt", "# words\nzeta alpha:beta\n; more\ngamma");
    writeFile(dir.path() + "/pairs.txt", "teh:the lone recieve:receive orphan last:word");
    fe.fileAnswers = {{true, dir.path() + "/plain.txt"}, {true, dir.path() + "/pairs.txt"},
                      {true, dir.path() + "/out.txt"}, {true, dir.path() + "/missing.txt"}};
    fe.boxAnswers = {kIdOk, kIdCancel};
    fe.scripts.push_back([](MemUi &d) {
        d.click(kElImport);
        EXPECT_EQ(d.items(kElWords), (Strings{"alpha", "beta", "gamma", "zeta"}));
        d.choose(kElFiles, 1);
        d.click(kElImport);
        EXPECT_EQ(d.items(kElWords), (Strings{"recieve:receive", "teh:the"}));
        d.click(kElExport);
        d.click(kElImport);
        d.click(kIdCancel);
    });
    EXPECT_EQ(ORTH_EditLexDlg(nullptr), 0);
    const std::string enterPair =
        "Edit Dictionaries|Please enter \"word:replacement\" for this dictionary type.";
    EXPECT_EQ(boxes(), (Strings{enterPair, enterPair,
                                "Edit Dictionaries|Error opening file " + dir.path() + "/missing.txt"}));
    EXPECT_EQ(readFile(dir.path() + "/out.txt"), "recieve:receive\nteh:the\n");
    ASSERT_EQ(fe.fileCalls.size(), 4u);
    EXPECT_EQ(fe.fileCalls[0].title, "Import Dictionary");
    EXPECT_EQ(fe.fileCalls[0].filter, "Text files (*.txt)|*.txt|All files (*.*)|*.*|");
    EXPECT_EQ(fe.fileCalls[2].title, "Export Dictionary");
    EXPECT_EQ(fe.waitDepth, 0);
    EXPECT_FALSE(fe.waitUnbalanced);
}

TEST_F(OptionsDlg, OkWritesEveryRowAndCancelNothing) {
    ASSERT_GE(ORTH_GetSid(), 0);
    int16_t sid = clientContext.sessionId;
    const char *keys[] = {"IgnoreCappedWords", "IgnoreAllCapsWords", "IgnoreMixedDigits",
                          "IgnoreMixedCase", "CaseSensitive", "ReportDoubledWords", "SuggestSplitWords",
                          "PhoneticSuggestions", "TypographicalSuggestions", "MatchCase", "AlwaysSuggest"};
    int hostWindow = 0;  // stands for the host's window that owns the dialog
    fe.scripts.push_back([&](MemUi &d) {
        EXPECT_EQ(uiHostWindow(), &hostWindow);
        EXPECT_EQ(uiDialogOfWindow(uiOwnerWindow(d.surface())), d.surface());
        EXPECT_EQ(d.checked(kOpCaseSensitive), 1);
        EXPECT_EQ(d.checked(kOpPhonetic), 0);
        d.click(kOpCaseSensitive);
        d.click(kIdHelp);
        d.click(kIdCancel);
    });
    EXPECT_EQ(ORTH_OptionsDlg(&hostWindow), ORTH_CANCEL_ERR);
    EXPECT_EQ(uiHostWindow(), nullptr);
    for (const char *key : keys) EXPECT_EQ(getIntSetting(key, kUserScope, 7), 7u) << key;
    EXPECT_EQ(ORTH_GetOption(sid, ORTH_CASE_SENSITIVE_OPT), 1);

    fe.scripts.push_back([](MemUi &d) { d.click(kIdOk); });
    EXPECT_EQ(ORTH_OptionsDlg(nullptr), 0);
    const uint32_t unchanged[] = {0, 0, 0, 0, 1, 1, 1, 0, 1, 1, 0};
    for (int i = 0; i < 11; ++i) EXPECT_EQ(getIntSetting(keys[i], kUserScope, 7), unchanged[i]) << keys[i];

    fe.scripts.push_back([](MemUi &d) {
        d.click(kOpCaseSensitive);
        d.click(kOpPhonetic);
        d.click(kOpAlwaysSuggest);
        d.click(kIdOk);
    });
    EXPECT_EQ(ORTH_OptionsDlg(nullptr), 0);
    EXPECT_EQ(ORTH_GetOption(sid, ORTH_CASE_SENSITIVE_OPT), 0);
    EXPECT_EQ(ORTH_GetOption(sid, ORTH_SUGGEST_PHONETIC_OPT), 1);
    EXPECT_EQ(clientContext.alwaysSuggest, 1);
    EXPECT_EQ(getIntSetting("CaseSensitive", kUserScope, 7), 0u);
    EXPECT_EQ(getIntSetting("PhoneticSuggestions", kUserScope, 7), 1u);
    EXPECT_EQ(getIntSetting("AlwaysSuggest", kUserScope, 7), 1u);
    ASSERT_EQ(fe.helpCalls.size(), 1u);
    EXPECT_EQ(fe.helpCalls[0].second, 200u);
}

}  // namespace
