// The terminal front end's screens, drawn without a terminal.
// Groups: TermLayout (what a dialog looks like: labels with fields,
// numbered lists, marks, dimmed controls, radio groups; long lists and
// long context lines fitted to 80x24; the caret in an edit field).
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "ui/termsurface.h"

namespace {

struct Fixture {
    TermUi term{};
    UiSurfaceOps ops{};
    UiDialog dialog{};
    DialogController controller{};
    std::function<void(UiSurface *)> setup;
    TermScreen screen{};

    Fixture(const char *name, std::function<void(UiSurface *)> init) : setup(std::move(init)) {
        term.columns = 80;
        term.rows = 24;
        uiModelOps(&ops);
        controller = {name, this, [](UiSurface *s, void *st) { static_cast<Fixture *>(st)->setup(s); },
                      [](UiSurface *, void *, int16_t, UiNotify) {}};
        UiDialogOpen(&dialog, &controller, &ops, &term);
        UiDialogStart(&dialog);
        term.dialogs.push_back(&dialog);
    }
    void draw() { TermUi_Draw(&term, &screen); }
    std::string row(int r) const { return screen.rowText(r); }
    int find(const std::string &text) const {
        for (int r = 0; r < screen.rows; ++r)
            if (row(r).find(text) != std::string::npos) return r;
        return -1;
    }
    uint8_t attrAt(int r, int column) const { return screen.cells[size_t(r * screen.columns + column)].attr; }
    void context(const std::string &text, int32_t start, int32_t count) {
        term.contextOwner = &dialog;
        term.contextText = text;
        term.contextStart = start;
        term.contextCount = count;
    }
};

void checkSpellingStop(UiSurface *s, int suggestions) {
    Ui_SetText(s, kCsReason, "Not in Dictionary:");
    Ui_SetText(s, kCsWord, "wrold");
    for (int i = 0; i < suggestions; ++i) Ui_ListAdd(s, kCsSuggestions, ("word" + std::to_string(i + 1)).c_str());
    Ui_ListAdd(s, kCsAddWordsTo, "custom.tlx");
    Ui_ListSetSel(s, kCsAddWordsTo, 0);
    Ui_Enable(s, kCsChange, false);
}

TEST(TermLayout, CheckSpellingStop) {
    Fixture f(kCheckSpellingDlg, [](UiSurface *s) { checkSpellingStop(s, 3); });
    f.context("Hello wrold, how are you?", 6, 5);
    f.draw();
    EXPECT_EQ(f.row(0), " Check Spelling");
    EXPECT_EQ(f.row(2), " Hello wrold, how are you?");
    EXPECT_EQ(f.attrAt(2, 7), kTermReverse | kTermBold);   // "wrold"
    EXPECT_EQ(f.attrAt(2, 12), 0);
    EXPECT_EQ(f.row(4), " Not in Dictionary:  [wrold                     ]");
    EXPECT_EQ(f.row(5), " [ ] Lock Pos.");
    EXPECT_EQ(f.row(7), " Suggestions:         1 word1");
    EXPECT_EQ(f.row(9), "                      3 word3");
    EXPECT_EQ(f.row(10), " Add words to:       <custom.tlx                 v>");
    int buttons = f.find("[I]gnore");
    ASSERT_GT(buttons, 10);
    EXPECT_EQ(f.row(buttons), " [I]gnore  I[g]nore All  Change  Change A[l]l  [A]dd  [S]uggest");
    EXPECT_EQ(f.row(buttons + 1), " Dictio[n]aries...  [O]ptions...  [H]elp...  Cancel");
    EXPECT_EQ(f.attrAt(buttons, 2), kTermUnderline | kTermBold);  // the I of [I]gnore
    EXPECT_EQ(f.attrAt(buttons, 25), kTermDim);                   // the disabled Change
    EXPECT_NE(f.row(23).find("Esc"), std::string::npos);
    EXPECT_EQ(f.screen.cursorRow, -1);

    // Change To being edited: the caret is the terminal's cursor.
    Ui_SetFocus(&f.dialog.surface, kCsChangeTo);
    Ui_SetText(&f.dialog.surface, kCsChangeTo, "wor");
    f.draw();
    EXPECT_EQ(f.screen.cursorRow, 6);
    EXPECT_EQ(f.screen.cursorColumn, 21 + 1 + 3);
    EXPECT_NE(f.row(23).find("Enter or Esc ends the edit"), std::string::npos);
}

TEST(TermLayout, LongListsAndLinesFitTheScreen) {
    Fixture f(kCheckSpellingDlg, [](UiSurface *s) { checkSpellingStop(s, 40); });
    Ui_ListSetSel(&f.dialog.surface, kCsSuggestions, 29);
    std::string line(200, 'x');
    line.replace(180, 5, "wrold");
    f.context(line, 180, 5);
    f.draw();
    // The buttons and the status line keep their rows; the list shows a
    // window round its selection and says which part it shows.
    EXPECT_EQ(f.find("[I]gnore"), 21);
    EXPECT_EQ(f.find("(empty)"), -1);
    EXPECT_GE(f.find(">30 word30"), 8);
    EXPECT_NE(f.row(f.find(" of 40)")).find("-"), std::string::npos);
    EXPECT_EQ(f.find("word1 "), -1);
    std::string context = f.row(2);
    EXPECT_LE(context.size(), 80u);
    EXPECT_NE(context.find("wrold"), std::string::npos);
    EXPECT_EQ(context.substr(0, 4), " ...");
    f.context(line, 2, 5);  // near the start: cut at the end only
    f.draw();
    EXPECT_EQ(f.row(2).size(), 79u);
    EXPECT_EQ(f.row(2).substr(0, 3) + f.row(2).substr(76), " xx...");
}

TEST(TermLayout, OtherDialogs) {
    Fixture lex(kNewLexDlg, [](UiSurface *s) {
        Ui_SetCheck(s, kNlIgnore, 1);
        for (const char *l : {"American English", "British English"}) Ui_ListAdd(s, kNlLanguage, l);
        Ui_ListSetSel(s, kNlLanguage, 0);
    });
    lex.draw();
    EXPECT_EQ(lex.row(3), " Type");
    EXPECT_EQ(lex.row(6), "   (*) Ignore");
    EXPECT_EQ(lex.row(10), " [B]rowse...  OK  [H]elp  Cancel");

    Fixture dicts(kEditLexDlg, [](UiSurface *s) {
        Ui_ListAdd(s, kElFiles, "custom.tlx");
        Ui_ListSetSel(s, kElFiles, 0);
        Ui_SetText(s, kElLanguage, "American English");
        Ui_SetText(s, kElType, "Ignore");
        Ui_Enable(s, kElDeleteWord, false);
    });
    dicts.draw();
    EXPECT_EQ(dicts.row(3), "             (empty)");
    EXPECT_EQ(dicts.row(6), " Language:  American English");
    EXPECT_NE(dicts.find("[A]dd Word  Delete Word  I[m]port..."), -1);
}

}  // namespace
