// The dialog model behind the in-memory and terminal front ends, driven
// through the in-memory front end.
// Groups: SurfaceEvents (which calls and actions raise events, when, and
// the state a controller sees then), SurfaceLists (list calls on list boxes
// and combos, bad ids), DialogKeys (the keyboard rules). The in-memory
// front end's own records are test scaffolding, exercised by the dialog
// tests that read them.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/test_util.h"
#include "ui/memsurface.h"

namespace {

using Strings = std::vector<std::string>;

// A controller that records its events as "id:X" (X: C clicked, E edit
// changed, S selection changed, K selection confirmed) and runs hooks.
struct Recorder {
    Strings events;
    std::function<void(UiSurface *)> onInit;
    std::function<void(UiSurface *, int16_t, UiNotify)> onCommand;
    DialogController controller;

    explicit Recorder(const char *templateName) : controller{templateName, this, init, command} {}
    static void init(UiSurface *s, void *state) {
        auto *r = static_cast<Recorder *>(state);
        if (r->onInit) r->onInit(s);
    }
    static void command(UiSurface *s, void *state, int16_t id, UiNotify notify) {
        auto *r = static_cast<Recorder *>(state);
        r->events.push_back(std::to_string(id) + ":" + "CESK"[notify]);
        if (r->onCommand) r->onCommand(s, id, notify);
    }
};

std::string textOf(UiSurface *s, int16_t id) {
    char b[256];
    Ui_GetText(s, id, b, sizeof b);
    return b;
}

TEST(SurfaceEvents, OnlyAnEditFieldRaisesItsChangeWhenTheDialogSetsIt) {
    MemFrontEnd fe;
    Recorder r(kCheckSpellingDlg);
    std::string seen;
    r.onInit = [](UiSurface *s) {
        Ui_SetText(s, kCsReason, "Not in Dictionary:");
        Ui_SetText(s, kCsWord, "wrold");
        Ui_SetText(s, kCsChange, "&Delete");
        Ui_SetCheck(s, kCsLockPos, 1);
        Ui_ListAdd(s, kCsSuggestions, "world");
        Ui_ListSetSel(s, kCsSuggestions, 0);
        Ui_Enable(s, kCsAdd, false);
    };
    // The change arrives within the call, with the new text in place; a
    // controller setting another field from it nests a second event.
    r.onCommand = [&](UiSurface *s, int16_t id, UiNotify) {
        if (id == kCsWord) {
            seen = textOf(s, kCsWord);
            Ui_SetText(s, kCsChangeTo, "world");
        }
    };
    MemUi ui(&fe);
    ASSERT_TRUE(ui.open(&r.controller));
    EXPECT_EQ(r.events, (Strings{"1012:E", "1010:E"}));
    EXPECT_EQ(seen, "wrold");
    EXPECT_EQ(ui.text(kCsChange), "&Delete");

    // A combo's edit field raises nothing when the dialog sets it.
    Recorder lex(kEditLexDlg);
    lex.onInit = [](UiSurface *s) { Ui_SetText(s, kElWords, "colour:color"); };
    MemUi ui2(&fe);
    ASSERT_TRUE(ui2.open(&lex.controller));
    EXPECT_TRUE(lex.events.empty());
    EXPECT_EQ(ui2.text(kElWords), "colour:color");
}

TEST(SurfaceEvents, UserActionsReachOnlyEnabledControlsOfTheirKind) {
    MemFrontEnd fe;
    Recorder r(kCheckSpellingDlg);
    r.onInit = [](UiSurface *s) {
        for (const char *w : {"world", "word"}) Ui_ListAdd(s, kCsSuggestions, w);
        Ui_Enable(s, kCsChange, false);
    };
    int32_t selectionSeen = -2;
    r.onCommand = [&](UiSurface *s, int16_t id, UiNotify n) {
        if (id == kCsSuggestions && n == UI_SEL_CHANGED) selectionSeen = Ui_ListGetSel(s, kCsSuggestions);
        if (id == kIdCancel) Ui_EndDialog(s, -17);
    };
    MemUi ui(&fe);
    ASSERT_TRUE(ui.open(&r.controller));
    struct Step {
        std::function<bool()> act;
        bool done;
        const char *event;
    } steps[] = {
        {[&] { return ui.click(kCsIgnore); }, true, "1001:C"},
        {[&] { return ui.click(kCsChange); }, false, nullptr},         // disabled
        {[&] { return ui.click(kCsReason); }, false, nullptr},         // a label
        {[&] { return ui.click(4242); }, false, nullptr},              // no such control
        {[&] { return ui.type(kCsChangeTo, "x"); }, true, "1010:E"},
        {[&] { return ui.type(kCsSuggestions, "x"); }, false, nullptr},  // a list box
        {[&] { return ui.choose(kCsSuggestions, 2); }, false, nullptr},  // past the end
        {[&] { return ui.choose(kCsSuggestions, 1); }, true, "1009:S"},
        {[&] { return ui.confirm(kCsSuggestions); }, true, "1009:K"},
        {[&] { return ui.click(kIdCancel); }, true, "2:C"},
        {[&] { return ui.click(kCsIgnore); }, false, nullptr},          // ended
    };
    for (size_t i = 0; i < sizeof steps / sizeof steps[0]; ++i) {
        r.events.clear();
        EXPECT_EQ(steps[i].act(), steps[i].done) << "step " << i;
        EXPECT_EQ(r.events, steps[i].event ? Strings{steps[i].event} : Strings{}) << "step " << i;
    }
    EXPECT_EQ(selectionSeen, 1);
    EXPECT_TRUE(ui.ended());
    EXPECT_EQ(ui.endValue(), -17);
}

TEST(SurfaceEvents, AutomaticButtonsChangeStateBeforeTheirClick) {
    MemFrontEnd fe;
    Recorder r(kNewLexDlg);
    r.onInit = [](UiSurface *s) { Ui_SetCheck(s, kNlIgnore, 1); };
    Strings seen;
    r.onCommand = [&](UiSurface *s, int16_t id, UiNotify) {
        std::string row;
        for (int16_t radio : {kNlAutoChange, kNlExclude, kNlIgnore, kNlConditional})
            row += std::to_string(Ui_GetCheck(s, radio));
        seen.push_back(std::to_string(id) + "=" + row);
    };
    MemUi ui(&fe);
    ASSERT_TRUE(ui.open(&r.controller));
    ui.click(kNlConditional);
    ui.click(kNlAutoChange);
    ui.click(kNlAutoChange);
    EXPECT_EQ(seen, (Strings{"1021=0001", "1018=1000", "1018=1000"}));
}

TEST(SurfaceEvents, EventsNestedTooDeeplyAreDroppedAndLogged) {
    LogCapture log;
    MemFrontEnd fe;
    Recorder r(kCheckSpellingDlg);
    r.onCommand = [](UiSurface *s, int16_t id, UiNotify) {
        if (id == kCsChangeTo) Ui_SetText(s, kCsChangeTo, "again");
    };
    MemUi ui(&fe);
    ASSERT_TRUE(ui.open(&r.controller));
    ui.type(kCsChangeTo, "x");
    EXPECT_EQ(r.events.size(), size_t(kUiMaxEventDepth));
    EXPECT_TRUE(log.contains("CheckSpellingDlg: event 1 of control 1010 dropped, events nested too deeply"));
}

TEST(SurfaceLists, ListCallsOnListBoxesAndCombos) {
    MemFrontEnd fe;
    Recorder r(kEditLexDlg);
    MemUi ui(&fe);
    ASSERT_TRUE(ui.open(&r.controller));
    UiSurface *s = ui.surface();
    for (const char *f : {"custom.tlx", "Names.tlx", "notes.tlx"}) Ui_ListSetData(s, kElFiles, Ui_ListAdd(s, kElFiles, f), 7);
    Ui_ListSetData(s, kElFiles, 2, 9);
    Ui_ListSetSel(s, kElFiles, 2);
    EXPECT_EQ(ui.text(kElFiles), "notes.tlx");  // a drop-down list reads as its selection
    EXPECT_EQ(Ui_ListGetData(s, kElFiles, 2), 9);
    EXPECT_EQ(Ui_ListGetData(s, kElFiles, 3), -1);
    EXPECT_EQ(Ui_ListDelete(s, kElFiles, 0), 2);  // the selection moves with its entry
    EXPECT_EQ(Ui_ListGetSel(s, kElFiles), 1);
    EXPECT_EQ(Ui_ListGetData(s, kElFiles, 1), 9);
    EXPECT_EQ(Ui_ListDelete(s, kElFiles, 1), 1);  // deleting it leaves none
    EXPECT_EQ(Ui_ListGetSel(s, kElFiles), -1);
    EXPECT_EQ(Ui_ListDelete(s, kElFiles, 5), -1);

    // Prefix search without case, starting after an entry and wrapping round.
    Ui_ListReset(s, kElFiles);
    for (const char *f : {"custom.tlx", "Names.tlx", "notes.tlx"}) Ui_ListAdd(s, kElFiles, f);
    struct { int32_t after; const char *prefix; int32_t found; } finds[] = {
        {-1, "n", 1}, {0, "N", 1}, {1, "n", 2}, {2, "n", 1}, {0, "CUSTOM", 0}, {-1, "", 0}, {-1, "zz", -1},
        {7, "c", 0},
    };
    for (const auto &f : finds)
        EXPECT_EQ(Ui_ListFind(s, kElFiles, f.after, f.prefix), f.found) << f.after << " " << f.prefix;

    // A combo's edit field takes the selected entry's text; typing moves the
    // selection to the first entry it begins.
    for (const char *w : {"colour:color", "gray", "grey"}) Ui_ListAdd(s, kElWords, w);
    Ui_ListSetSel(s, kElWords, 2);
    EXPECT_EQ(ui.text(kElWords), "grey");
    Ui_ListSetSel(s, kElWords, -1);
    EXPECT_EQ(ui.text(kElWords), "");
    ui.type(kElWords, "gr");
    EXPECT_EQ(ui.selection(kElWords), 1);
    ui.type(kElWords, "blue");
    EXPECT_EQ(ui.selection(kElWords), -1);

    char small[4];
    Ui_ListSetSel(s, kElWords, 0);
    EXPECT_EQ(Ui_GetText(s, kElWords, small, sizeof small), 3);
    EXPECT_STREQ(small, "col");
    EXPECT_EQ(Ui_ListGetText(s, kElWords, 9, small, sizeof small), -1);
    EXPECT_STREQ(small, "");
}

TEST(SurfaceLists, CallsNamingTheWrongControlDoNothingAndLog) {
    LogCapture log;
    MemFrontEnd fe;
    Recorder r(kCheckSpellingDlg);
    MemUi ui(&fe);
    ASSERT_TRUE(ui.open(&r.controller));
    UiSurface *s = ui.surface();
    Ui_SetText(s, 4242, "x");
    EXPECT_EQ(Ui_ListCount(s, kCsWord), -1);
    Ui_SetText(s, kCsAddWordsTo, "custom.tlx");
    EXPECT_EQ(Ui_GetCheck(s, 4242), 0);
    EXPECT_FALSE(Ui_IsEnabled(s, 4242));
    EXPECT_TRUE(log.contains("Ui_SetText: no control 4242 in CheckSpellingDlg"));
    EXPECT_TRUE(log.contains("Ui_ListCount: control 1012 in CheckSpellingDlg is not a list"));
    EXPECT_TRUE(log.contains("Ui_SetText: control 1013 in CheckSpellingDlg is a list; select an entry instead"));
    EXPECT_TRUE(r.events.empty());

    Recorder unknown("NoSuchDlg");
    EXPECT_FALSE(ui.open(&unknown.controller));
    EXPECT_TRUE(log.contains("UiDialogOpen: no dialog template NoSuchDlg"));
}

// Keys on a fresh Check Spelling dialog: two suggestions, Change disabled.
TEST(DialogKeys, CheckSpellingKeysFollowWindowsRules) {
    struct Row {
        const char *name;
        std::vector<int32_t> keys;
        int16_t focus;
        Strings events;
        const char *changeTo;
    } rows[] = {
        {"t edits Change To", {'t'}, kCsChangeTo, {}, ""},
        {"typing, then Enter ends the edit", {'t', 's', 'o', kKeyBackspace, 'x', kKeyEnter}, 0,
         {"1010:E", "1010:E", "1010:E", "1010:E"}, "sx"},
        {"caret moves", {'t', 'a', 'b', kKeyHome, 'c', kKeyEnd, kKeyLeft, kKeyDelete}, kCsChangeTo,
         {"1010:E", "1010:E", "1010:E", "1010:E"}, "ca"},
        {"w picks the Add-words list", {'w'}, kCsAddWordsTo, {}, ""},
        {"u and arrows choose suggestions", {'u', kKeyDown, kKeyDown, kKeyDown, kKeyEnter}, 0,
         {"1009:S", "1009:S", "1009:K"}, ""},
        {"a digit chooses in the main list", {'2'}, 0, {"1009:S"}, ""},
        {"a disabled button's letter does nothing", {'c'}, 0, {}, ""},
        {"upper case letters are accelerators", {'I'}, 0, {"1001:C"}, ""},
        {"Esc is Cancel", {kKeyEsc}, 0, {"2:C"}, ""},
        {"Esc in a field only leaves it", {'t', kKeyEsc}, 0, {}, ""},
        {"Alt reaches accelerators from a field", {'t', kKeyAlt | 'i'}, 0, {"1001:C"}, ""},
        {"Tab skips labels and disabled controls", {kKeyTab, kKeyTab, kKeyTab, kKeyTab}, kCsSuggestions, {}, ""},
        {"Shift-Tab from the dialog goes to the last", {kKeyBackTab}, kIdCancel, {}, ""},
        {"Space clicks a focused button", {kKeyBackTab, ' '}, kIdCancel, {"2:C"}, ""},
        {"Enter without a default button does nothing", {kKeyEnter}, 0, {}, ""},
    };
    for (const Row &row : rows) {
        MemFrontEnd fe;
        Recorder r(kCheckSpellingDlg);
        r.onInit = [](UiSurface *s) {
            for (const char *w : {"world", "word"}) Ui_ListAdd(s, kCsSuggestions, w);
            Ui_ListAdd(s, kCsAddWordsTo, "custom.tlx");
            Ui_Enable(s, kCsChange, false);
            Ui_Enable(s, kCsChangeAll, false);
        };
        MemUi ui(&fe);
        ASSERT_TRUE(ui.open(&r.controller));
        for (int32_t k : row.keys) ui.key(k);
        EXPECT_EQ(ui.focus(), row.focus) << row.name;
        EXPECT_EQ(r.events, row.events) << row.name;
        EXPECT_EQ(ui.text(kCsChangeTo), row.changeTo) << row.name;
    }
}

TEST(DialogKeys, SharedAndSecondAcceleratorsAndDisabledTargets) {
    MemFrontEnd fe;
    Recorder r(kOptionsDlg);
    MemUi ui(&fe);
    ASSERT_TRUE(ui.open(&r.controller));
    // "c" marks both "Ignore &capitalized" and "&Cancel": each press moves on, none clicks.
    ui.key('c');
    EXPECT_EQ(ui.focus(), kOpIgnoreCapped);
    ui.key('c');
    EXPECT_EQ(ui.focus(), kIdCancel);
    ui.key('c');
    EXPECT_EQ(ui.focus(), kOpIgnoreCapped);
    EXPECT_TRUE(r.events.empty());
    ui.key(' ');
    ui.key(kKeyEnter);  // a check box has the focus: Enter is the default button
    EXPECT_EQ(r.events, (Strings{"1021:C", "1:C"}));
    EXPECT_EQ(ui.checked(kOpIgnoreCapped), 1);
    // Only the first '&' of "I&gnore words with &numbers" counts.
    r.events.clear();
    EXPECT_TRUE(ui.key('g'));
    EXPECT_FALSE(ui.key('n'));
    EXPECT_EQ(r.events, (Strings{"1025:C"}));

    // A label whose field is disabled does nothing.
    Recorder c(kCheckSpellingDlg);
    c.onInit = [](UiSurface *s) { Ui_Enable(s, kCsChangeTo, false); };
    MemUi check(&fe);
    ASSERT_TRUE(check.open(&c.controller));
    EXPECT_FALSE(check.key('t'));
    EXPECT_EQ(check.focus(), 0);
    // Disabling the focused control hands the focus back to the dialog.
    check.key('u');
    Ui_Enable(check.surface(), kCsSuggestions, false);
    EXPECT_EQ(check.focus(), 0);
}

}  // namespace
