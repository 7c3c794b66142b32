// The Check Spelling dialog over a real client context, driven by control
// identifier through the in-memory front end.
// Groups: CheckStops (what each stop shows and enables, the score window,
// the suggestion depth, always-suggest), CheckCommands (Change, Change All,
// Ignore All, Add, Delete, their lexicons and counters, failures),
// CheckDialog (start and close: placement, fonts, LastSelectedLex, the
// Add-words list, nested dialogs, cancel, a closed session), CheckControl
// (an edit control checked through its selection, every change mirrored).
#include "ui/client_fixture.h"

#include "host/texts.h"

namespace {

// The suggestions ORTH_Suggest gives for word at depth 1, with their scores.
std::vector<std::pair<std::string, int>> engineSuggestions(const char *word) {
    char list[1025];
    int16_t scores[16] = {};
    std::vector<std::pair<std::string, int>> out;
    if (ORTH_Suggest(ORTH_GetSid(), word, 1, list, sizeof list, scores, 16) < 0) return out;
    int i = 0;
    for (const char *p = list; *p != '\0' && i < 16; p += std::strlen(p) + 1) out.push_back({p, scores[i++]});
    return out;
}

// Whether Change To, Ignore All, Change, Change All, Add and Suggest are
// enabled, as 1 and 0 in that order.
std::string enabledMask(MemUi &d) {
    std::string mask;
    for (int16_t id : {kCsChangeTo, kCsIgnoreAll, kCsChange, kCsChangeAll, kCsAdd, kCsSuggest})
        mask += d.enabled(id) ? '1' : '0';
    return mask;
}

using CheckStops = DialogTest;
using CheckCommands = DialogTest;
using CheckDialog = DialogTest;
using CheckControl = DialogTest;

TEST_F(CheckStops, EachKindOfStopShowsItsLabelFieldsAndButtons) {
    ASSERT_GE(ORTH_GetSid(), 0);
    ORTH_SetOption(ORTH_GetSid(), ORTH_REPORT_UNCAPPED_WORDS_OPT, 1);
    fe.scripts.push_back([](MemUi &d) {
        EXPECT_EQ(d.text(kCsReason), "Capitalization:");
        EXPECT_EQ(d.text(kCsWord), "hello");
        EXPECT_EQ(d.text(kCsChangeTo), "Hello");
        EXPECT_EQ(enabledMask(d), "111111");
        d.click(kCsIgnore);
        EXPECT_EQ(d.text(kCsReason), "Not in Dictionary:");
        EXPECT_EQ(d.text(kCsWord), "wrold");
        EXPECT_EQ(d.text(kCsChange), "&Change");
        EXPECT_TRUE(d.items(kCsSuggestions).empty());  // only on Suggest: always-suggest is off
        d.click(kCsIgnore);
        EXPECT_EQ(d.text(kCsReason), "Doubled word:");
        EXPECT_EQ(d.text(kCsWord), "the");
        EXPECT_EQ(d.text(kCsChange), "&Delete");
        EXPECT_EQ(d.text(kCsChangeTo), "");
        EXPECT_EQ(enabledMask(d), "001000");
        EXPECT_TRUE(d.enabled(kCsIgnore));
        d.click(kCsChange);
        EXPECT_TRUE(d.ended());
    });
    std::string out = checkText("hello wrold the the cat");
    EXPECT_EQ(out, "hello wrold the cat");
    EXPECT_EQ(statistic(kErrorsFound), 3u);
    EXPECT_EQ(statistic(kWordsChanged), 1u);
    EXPECT_EQ(statistic(kWordsChecked), 4u);
}

TEST_F(CheckStops, SuggestionsStopAtTheFirstOutsideTheScoreWindow) {
    size_t cut = 0;  // the words are chosen so that the window cuts some list
    for (const char *word : {"wrod", "woudl", "thre"}) {
        auto raw = engineSuggestions(word);
        ASSERT_FALSE(raw.empty()) << word;
        Strings expected;
        while (expected.size() < raw.size() && raw[expected.size()].second >= 50 &&
               raw[0].second - raw[expected.size()].second <= 20)
            expected.push_back(raw[expected.size()].first);
        cut += raw.size() - expected.size();
        fe.scripts.push_back([&](MemUi &d) {
            d.click(kCsSuggest);
            EXPECT_EQ(d.items(kCsSuggestions), expected) << word;
            EXPECT_EQ(d.text(kCsChangeTo), expected.empty() ? word : expected[0]);
            d.click(kIdCancel);
        });
        checkText(word);
    }
    EXPECT_GT(cut, 0u);
}

TEST_F(CheckStops, SuggestDeepensThreeTimesAndAnEditedWordStartsOver) {
    fe.scripts.push_back([](MemUi &d) {
        for (int i = 0; i < 3; ++i) {
            EXPECT_TRUE(d.enabled(kCsSuggest)) << i;
            d.click(kCsSuggest);
        }
        EXPECT_FALSE(d.enabled(kCsSuggest));
        d.type(kCsWord, "wrld");
        EXPECT_TRUE(d.enabled(kCsSuggest));
        d.type(kCsWord, "");
        EXPECT_FALSE(d.enabled(kCsSuggest));
        EXPECT_FALSE(d.enabled(kCsAdd));
        d.click(kIdCancel);
    });
    checkText("wrold");
}

TEST_F(CheckStops, AlwaysSuggestFillsTheListAndOptionsCanTurnItOff) {
    ORTH_SetAlwaysSuggest(1);
    fe.scripts.push_back([this](MemUi &d) {
        Strings shown = d.items(kCsSuggestions);
        ASSERT_FALSE(shown.empty());
        EXPECT_EQ(shown[0], "world");
        EXPECT_EQ(d.text(kCsChangeTo), "world");
        EXPECT_FALSE(d.enabled(kCsSuggest));
        d.choose(kCsSuggestions, static_cast<int32_t>(shown.size()) - 1);
        EXPECT_EQ(d.text(kCsChangeTo), shown.back());
        fe.scripts.push_front([](MemUi &options) {
            EXPECT_EQ(options.checked(kOpAlwaysSuggest), 1);
            options.click(kOpAlwaysSuggest);
            options.click(kIdOk);
        });
        d.click(kCsOptions);
        EXPECT_TRUE(d.enabled(kCsSuggest));
        d.click(kIdCancel);
    });
    int32_t rc = 0;
    checkText("wrold", &rc);
    EXPECT_EQ(rc, ORTH_CANCEL_ERR);
    EXPECT_EQ(fe.dialogsRun, (Strings{"CheckSpellingDlg", "OptionsDlg"}));
    EXPECT_EQ(clientContext.alwaysSuggest, 0);
}

TEST_F(CheckCommands, ChangeAllChangesLaterOccurrencesWithoutStopping) {
    fe.scripts.push_back([](MemUi &d) {
        d.type(kCsChangeTo, "world");
        d.click(kCsChangeAll);
        EXPECT_TRUE(d.ended());
    });
    EXPECT_EQ(checkText("wrold and Wrold and wrold"), "world and World and world");
    EXPECT_EQ(statistic(kWordsChanged), 3u);
    EXPECT_EQ(statistic(kErrorsFound), 1u);
}

TEST_F(CheckCommands, ChangeTeachesConsiderChangingAndAnUnchangedWordTeachesNothing) {
    fe.scripts.push_back([](MemUi &d) {
        // Change To holds the word itself: replaced, nothing learnt, and the
        // check goes on at the same word.
        EXPECT_EQ(d.text(kCsChangeTo), "wrold");
        d.click(kCsChange);
        EXPECT_EQ(d.text(kCsReason), "Not in Dictionary:");
        d.type(kCsChangeTo, "world");
        d.click(kCsChange);
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(d.text(kCsReason), "Consider changing:");
            EXPECT_EQ(d.text(kCsWord), "wrold");
            EXPECT_EQ(d.text(kCsChangeTo), "world");
            d.click(kCsIgnore);
        }
        EXPECT_TRUE(d.ended());
    });
    EXPECT_EQ(checkText("wrold wrold wrold"), "world wrold wrold");
    EXPECT_EQ(statistic(kErrorsFound), 2u);  // a consider-changing stop is no error
    EXPECT_EQ(statistic(kWordsChanged), 2u);
    // The same client context later: the pair is still known.
    fe.scripts.push_back([](MemUi &d) {
        EXPECT_EQ(d.text(kCsReason), "Consider changing:");
        d.click(kIdCancel);
    });
    checkText("wrold");
    EXPECT_EQ(ORTH_ClearTempLex(), 0);
    fe.scripts.push_back([](MemUi &d) {
        EXPECT_EQ(d.text(kCsReason), "Not in Dictionary:");
        d.click(kIdCancel);
    });
    checkText("wrold");
}

TEST_F(CheckCommands, IgnoreAllAndAddTeachTheirLexicons) {
    fe.scripts.push_back([](MemUi &d) {
        EXPECT_EQ(d.text(kCsWord), "zorb");
        d.click(kCsIgnoreAll);
        EXPECT_EQ(d.text(kCsWord), "quux");
        EXPECT_EQ(d.text(kCsAddWordsTo), "personal.tlx");
        d.type(kCsWord, "quuxes");  // Add takes the edited field
        d.click(kCsAdd);
        EXPECT_EQ(d.text(kCsWord), "quux");  // the next occurrence: only quuxes was added
        d.click(kCsAdd);
        EXPECT_TRUE(d.ended());
    });
    checkText("zorb quux zorb quux quuxes");
    std::string personal = readFile(userDir + "/personal.tlx");
    EXPECT_NE(personal.find("quuxes\r\n"), std::string::npos);
    EXPECT_NE(personal.find("quux\r\n"), std::string::npos);
    EXPECT_EQ(personal.find("zorb"), std::string::npos);
    EXPECT_TRUE(fe.boxes.empty());
}

TEST_F(CheckCommands, FailuresShowTheirMessagesAndTheCheckGoesOn) {
    fe.scripts.push_back([](MemUi &d) {
        d.type(kCsWord, "#bad");  // no text lexicon takes a word starting with #
        d.click(kCsAdd);
        EXPECT_EQ(d.text(kCsWord), "zorb");
        d.type(kCsChangeTo, "a much longer replacement");
        d.click(kCsChange);  // the buffer has no room for it; the pair is learnt all the same
        EXPECT_EQ(d.text(kCsReason), "Consider changing:");
        d.click(kCsIgnore);
        EXPECT_TRUE(d.ended());
    });
    char text[32] = "wrold zorb";
    EXPECT_EQ(ORTH_CheckBlockDlg(nullptr, text, 10, 12), 10);
    EXPECT_EQ(std::string(text), "wrold zorb");
    EXPECT_EQ(boxes(), (Strings{"Check Spelling|Error adding word to dictionary",
                                "Check Spelling|Error replacing word in text (probably out of space)"}));
}

TEST_F(CheckDialog, StartAndCloseKeepPositionFontAndLastSelectedLexicon) {
    makeLex(userDir + "/names.tlx", ORTH_IGNORE_LEX_TYPE);
    makeLex(dir.path() + "/team.tlx", ORTH_IGNORE_LEX_TYPE);
    makeLex(userDir + "/fixes.tlx", ORTH_AUTO_CHANGE_LEX_TYPE);
    std::string team = dir.path() + "/team.tlx";
    putSetting(kKeyUserLexFiles, kUserScope, ("personal.tlx,fixes.tlx,names.tlx," + team).c_str());
    putSetting(kKeyLastSelectedLex, kUserScope, "NAM");
    fe.positionX = 120;
    fe.positionY = 45;
    fe.scripts.push_back([&](MemUi &d) {
        EXPECT_EQ(d.items(kCsAddWordsTo), (Strings{"personal.tlx", "names.tlx", team}));
        EXPECT_EQ(d.text(kCsAddWordsTo), "names.tlx");
        EXPECT_EQ(d.checked(kCsLockPos), 0);
        d.choose(kCsAddWordsTo, 2);
        d.click(kCsLockPos);
        d.click(kIdHelp);
        d.click(kIdCancel);
    });
    checkText("wrold");
    EXPECT_EQ(setting(kKeyLastSelectedLex, kUserScope), team);
    EXPECT_EQ(fe.normalWeightCalls, 1);
    ASSERT_EQ(fe.helpCalls.size(), 1u);
    EXPECT_EQ(fe.helpCalls[0].second, 100u);
    EXPECT_TRUE(clientContext.dialogLocked);

    putIntSetting(kKeyFontBold, kMachineScope, 1);
    MemEdit edit("wrold");
    fe.scripts.push_back([](MemUi &d) {
        EXPECT_EQ(d.checked(kCsLockPos), 1);
        d.click(kIdCancel);
    });
    EXPECT_EQ(ORTH_CheckCtrlDlg(nullptr, &edit, 0), ORTH_CANCEL_ERR);
    EXPECT_EQ(fe.normalWeightCalls, 1);
    EXPECT_EQ(fe.placements, (Strings{"none free 0 0", "control lock 120 45"}));
}

TEST_F(CheckDialog, DictionariesFromTheDialogRefillTheAddWordsList) {
    fe.scripts.push_back([this](MemUi &d) {
        EXPECT_EQ(d.items(kCsAddWordsTo), Strings{"personal.tlx"});
        fe.scripts.push_front([this](MemUi &lex) {
            fe.scripts.push_front([](MemUi &newLex) {
                newLex.type(kNlFileName, "extra.tlx");
                newLex.click(kIdOk);
            });
            lex.click(kElNew);
            lex.click(kIdCancel);
        });
        d.click(kCsDictionaries);
        EXPECT_EQ(d.items(kCsAddWordsTo), (Strings{"personal.tlx", "extra.tlx"}));
        d.choose(kCsAddWordsTo, 1);
        d.click(kCsAdd);
    });
    checkText("zorb");
    EXPECT_NE(readFile(userDir + "/extra.tlx").find("zorb"), std::string::npos);
    EXPECT_EQ(fe.dialogsRun, (Strings{"CheckSpellingDlg", "EditLexDlg", "NewLexDlg"}));
}

TEST_F(CheckDialog, EndsAtOnceOnACorrectTextAndCancelsOnceTheSessionIsGone) {
    int32_t rc = -1;
    EXPECT_EQ(checkText("hello world", &rc), "hello world");
    EXPECT_EQ(rc, 11);
    EXPECT_EQ(fe.dialogsRun, Strings{"CheckSpellingDlg"});
    EXPECT_TRUE(fe.leftOpen.empty());

    fe.scripts.push_back([](MemUi &d) {
        ClientTerm();
        d.click(kCsIgnore);
        EXPECT_TRUE(d.ended());
        EXPECT_EQ(d.endValue(), ORTH_CANCEL_ERR);
    });
    MemEdit edit("wrold");
    EXPECT_LT(ORTH_CheckCtrlDlg(nullptr, &edit, 0), 0);
}

TEST_F(CheckControl, ASelectionIsCheckedAloneAndEveryChangeIsMirrored) {
    MemEdit edit("wrold cat the the wrold zorb");
    edit.start = 4;
    edit.end = 28;
    fe.scripts.push_back([](MemUi &d) {
        EXPECT_EQ(d.text(kCsWord), "d");  // the selection starts inside wrold
        d.click(kCsIgnore);
        EXPECT_EQ(d.text(kCsReason), "Doubled word:");
        d.click(kCsChange);
        EXPECT_EQ(d.text(kCsWord), "wrold");
        d.type(kCsChangeTo, "world");
        d.click(kCsChangeAll);
        EXPECT_EQ(d.text(kCsWord), "zorb");
        d.click(kIdCancel);
    });
    EXPECT_EQ(ORTH_CheckCtrlDlg(nullptr, &edit, 1), ORTH_CANCEL_ERR);
    EXPECT_EQ(edit.text, "wrold cat the world zorb");
    EXPECT_EQ(edit.selections, (Strings{"4-5", "14-17", "14-18", "14-19", "14-19", "20-24", "4-28"}));
}

}  // namespace
