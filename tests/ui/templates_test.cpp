// The dialog templates and what is made from them.
// Groups: Templates (spot checks against the dialogs' defined values,
// identifiers, accelerators), ResourceScript (quoting, the generator
// program, the resource compiler where installed; the compiled templates
// are read back against the table in tests/win32/resources_host_test.cpp),
// SurfaceHelpers (filter lists, Win32 notifications).
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <set>
#include <string>

#include "support/test_util.h"
#include "ui/rcscript.h"
#include "ui/surface.h"
#include "ui/templates.h"

namespace {

TEST(Templates, SpotChecksAgainstTheDefinedValues) {
    struct DialogRow {
        const char *name, *caption;
        int16_t cx, cy, controls;
    } dialogs[] = {
        {kCheckSpellingDlg, "Check Spelling", 266, 113, 19},
        {kEditLexDlg, "Dictionaries", 202, 169, 18},
        {kNewLexDlg, "New Dictionary", 189, 116, 13},
        {kOptionsDlg, "Options", 170, 141, 14},
    };
    for (const DialogRow &row : dialogs) {
        const DlgTemplate *t = findDialogTemplate(row.name);
        ASSERT_NE(t, nullptr) << row.name;
        EXPECT_STREQ(t->caption, row.caption);
        EXPECT_EQ(t->cx, row.cx) << row.name;
        EXPECT_EQ(t->cy, row.cy) << row.name;
        EXPECT_EQ(t->controlCount, row.controls) << row.name;
        EXPECT_EQ(t->fontPoints, 8);
        EXPECT_STREQ(t->fontName, "MS Sans Serif");
    }
    struct ControlRow {
        const char *dialog;
        int16_t id;
        DlgCtlKind kind;
        const char *caption;
        int16_t x, y, cx, cy;
    } controls[] = {
        {kCheckSpellingDlg, 1011, DLG_LABEL, "Consider Changing:", 4, 4, 72, 8},
        {kCheckSpellingDlg, 1009, DLG_LISTBOX, "", 78, 30, 88, 46},
        {kCheckSpellingDlg, 1013, DLG_DROPLIST, "", 78, 76, 88, 40},
        {kCheckSpellingDlg, 1014, DLG_BUTTON, "Dictio&naries...", 4, 92, 45, 16},
        {kCheckSpellingDlg, 2, DLG_BUTTON, "Cancel", 216, 92, 45, 16},
        {kEditLexDlg, 1001, DLG_SIMPLECOMBO, "", 4, 12, 124, 72},
        {kEditLexDlg, 3, DLG_BUTTON, "&Help", 84, 152, 44, 13},
        {kEditLexDlg, 2, DLG_DEFBUTTON, "Cl&ose", 140, 152, 50, 14},
        {kNewLexDlg, 1040, DLG_GROUP, "&Type", 4, 24, 88, 64},
        {kNewLexDlg, 1023, DLG_EDITCOMBO, "", 96, 32, 88, 56},
        {kNewLexDlg, 1, DLG_DEFBUTTON, "OK", 4, 96, 50, 14},
        {kOptionsDlg, 1026, DLG_CHECKBOX, "Always &suggest", 4, 64, 164, 10},
        {kOptionsDlg, 2, DLG_BUTTON, "&Cancel", 112, 120, 32, 14},
    };
    for (const ControlRow &row : controls) {
        const DlgControl *c = findDlgControl(findDialogTemplate(row.dialog), row.id);
        ASSERT_NE(c, nullptr) << row.dialog << " " << row.id;
        EXPECT_EQ(c->kind, row.kind) << row.dialog << " " << row.id;
        EXPECT_STREQ(c->caption, row.caption);
        EXPECT_EQ((std::vector<int>{c->x, c->y, c->cx, c->cy}), (std::vector<int>{row.x, row.y, row.cx, row.cy}))
            << row.dialog << " " << row.id;
    }
    // The group frame of the Dictionaries dialog has no identifier.
    const DlgTemplate *lex = findDialogTemplate(kEditLexDlg);
    EXPECT_EQ(lex->controls[6].kind, DLG_GROUP);
    EXPECT_EQ(lex->controls[6].id, kDlgNoId);
    // The Options rows stand in the order OK applies them.
    const DlgTemplate *options = findDialogTemplate(kOptionsDlg);
    std::vector<int> order;
    for (int i = 0; i < 11; ++i) order.push_back(options->controls[i].id);
    EXPECT_EQ(order, (std::vector<int>{1021, 1028, 1025, 1044, 1041, 1022, 1043, 1042, 1045, 1049, 1026}));
    EXPECT_EQ(findDialogTemplate("checkspellingdlg"), nullptr);
    EXPECT_EQ(findDlgControl(lex, kDlgNoId), nullptr);
}

TEST(Templates, IdentifiersAreUniqueAndAcceleratorsAsWindowsReadsThem) {
    for (const DlgTemplate &t : dialogTemplates) {
        std::set<int> ids;
        for (int i = 0; i < t.controlCount; ++i)
            if (t.controls[i].id != kDlgNoId) {
                EXPECT_TRUE(ids.insert(t.controls[i].id).second) << t.name;
            }
        EXPECT_TRUE(ids.count(kIdCancel)) << t.name;
        EXPECT_LE(t.controlCount, kMaxDlgControls);
    }
    struct { const char *caption; char key; } rows[] = {
        {"&Ignore", 'i'}, {"Change A&ll", 'l'}, {"I&gnore words with &numbers (e.g., Win95)", 'g'},
        {"Cancel", 0}, {"Salt && &Pepper", 'p'}, {"&&only", 0}, {"trailing&", 0}, {"", 0},
    };
    for (const auto &row : rows) EXPECT_EQ(dlgAccelerator(row.caption), row.key) << row.caption;
}

const RcString kSampleStrings[] = {
    {2044, "Please enter \"word:replacement\" for this dictionary type."},
    {2068, "Dictionary files (*.tlx)|*.tlx|All files (*.*)|*.*|"},
    {2081, "Norwegian (Bokm\xE5l)"},
    {2099, "C:\\dicts\\%s"},
};

TEST(ResourceScript, StringTablesAreQuotedForTheResourceCompiler) {
    std::string out;
    writeStringTable(&out, kSampleStrings, 4);
    EXPECT_EQ(out,
              "STRINGTABLE\nBEGIN\n"
              "    2044, \"Please enter \"\"word:replacement\"\" for this dictionary type.\"\n"
              "    2068, \"Dictionary files (*.tlx)|*.tlx|All files (*.*)|*.*|\"\n"
              "    2081, \"Norwegian (Bokm\\345l)\"\n"
              "    2099, \"C:\\134dicts\\134%s\"\n"
              "END\n\n");
    out.clear();
    writeStringTable(&out, kSampleStrings, 0);
    EXPECT_EQ(out, "");
}

TEST(ResourceScript, TheGeneratorWritesTheLibraryScriptAndTheCompilerTakesIt) {
    TempDir dir;
    std::string expected;
    writeLibraryResourceScript(&expected);
    std::string rc = dir.file("orth.rc");
    ASSERT_EQ(std::system((std::string(ORTH_RCGEN) + " " + rc).c_str()), 0);
    EXPECT_EQ(readFile(rc), expected);
    EXPECT_NE(std::system((std::string(ORTH_RCGEN) + " a b 2>/dev/null").c_str()), 0);
    // The string table holds the client layer's texts, the language names among them.
    for (const char *line : {"STRINGTABLE\nBEGIN\n    1033, \"Error adding word to dictionary\"\n",
                             "    1044, \"Please enter \"\"word:replacement\"\" for this dictionary type.\"\n",
                             "    1081, \"Norwegian (Bokmal)\"\n", "    1088, \"Dictionary file %s can't be added.\"\n"})
        EXPECT_NE(expected.find(line), std::string::npos) << line;

    if (std::system("command -v i686-w64-mingw32-windres >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "i686-w64-mingw32-windres is not installed";
    std::string samples;
    writeStringTable(&samples, kSampleStrings, 4);
    writeFile(rc, expected + samples);
    std::string res = dir.file("orth.res");
    std::string cmd = "i686-w64-mingw32-windres " + rc + " -O coff -o " + res + " 2>" + dir.file("err");
    EXPECT_EQ(std::system(cmd.c_str()), 0) << readFile(dir.file("err"));
    EXPECT_GT(readFile(res).size(), 6000u);
}

TEST(SurfaceHelpers, FilterListsTakeTheirLastCharacterAsSeparator) {
    struct Row {
        const char *text;
        int32_t size;
        int32_t result;
        std::string list;
    } rows[] = {
        {"Text files (*.txt)|*.txt|All files (*.*)|*.*|", 64, 46,
         std::string("Text files (*.txt)\0*.txt\0All files (*.*)\0*.*\0\0", 46)},
        {"A#*.a#", 8, 7, std::string("A\0*.a\0\0", 7)},
        {"A#*.a#", 7, 7, std::string("A\0*.a\0\0", 7)},
        {"A#*.a#", 6, -1, std::string()},
        {"", 8, -1, std::string()},
        {nullptr, 8, -1, std::string()},
    };
    for (const Row &row : rows) {
        char out[64];
        std::memset(out, 'x', sizeof out);
        EXPECT_EQ(uiFilterToList(row.text, out, row.size), row.result) << (row.text ? row.text : "null");
        EXPECT_EQ(std::string(out, row.result > 0 ? size_t(row.result) : 0), row.list);
        if (row.result < 0) {
            EXPECT_EQ(out[0], '\0');
        }
    }
}

TEST(SurfaceHelpers, Win32NotificationsBecomeEvents) {
    const DlgTemplate *check = findDialogTemplate(kCheckSpellingDlg);
    const DlgTemplate *lex = findDialogTemplate(kEditLexDlg);
    struct Row {
        const DlgTemplate *dialog;
        int16_t id;
        uint16_t code;
        bool taken;
        UiNotify notify;
    } rows[] = {
        {check, 1001, 0, true, UI_CLICKED},          // BN_CLICKED
        {check, 1001, 6, false, UI_CLICKED},         // BN_SETFOCUS
        {check, 1010, 0x300, true, UI_EDIT_CHANGED}, // EN_CHANGE
        {check, 1009, 1, true, UI_SEL_CHANGED},      // LBN_SELCHANGE
        {check, 1009, 2, true, UI_SEL_CONFIRMED},    // LBN_DBLCLK
        {check, 1013, 5, false, UI_CLICKED},         // CBN_EDITCHANGE: no edit field
        {lex, 1001, 5, true, UI_EDIT_CHANGED},
        {lex, 1001, 9, true, UI_SEL_CONFIRMED},      // CBN_SELENDOK
        {check, 1011, 0, false, UI_CLICKED},         // a label
        {check, 1, 0, true, UI_CLICKED},             // Enter, without an OK button
        {check, 7, 0, false, UI_CLICKED},
    };
    for (const Row &row : rows) {
        UiNotify n = UI_CLICKED;
        EXPECT_EQ(uiNotifyFromWin32(row.dialog, row.id, row.code, &n), row.taken) << row.id << " " << row.code;
        if (row.taken) {
            EXPECT_EQ(n, row.notify) << row.id << " " << row.code;
        }
    }
}

}  // namespace
