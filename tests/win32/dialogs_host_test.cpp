// tests/win32/dialogs_host_test.cpp — ORTH32.DLL's dialogs as a Win32 host
// gets them, worked headlessly under wine on the Xvfb display of
// dialogs-run.sh by the driver of driver.h: each test calls a client-level
// dialog function and scripts what the user does in the dialogs it opens,
// reading controls by identifier and clicking buttons. Every dialog is
// checked against its template on first sight (every control where
// MapDialogRect puts the template's rectangle, in the right font), and each
// is photographed once when ORTH_SHOTS names a folder.
//
// The settings live in the registry of the tests' own prefix; the main
// dictionary is the built-in American English one, the user dictionary a
// text lexicon in a fresh folder.
//
// Groups: Check Spelling over a buffer (change from a suggestion, Ignore
// All, a doubled word, Change All, Cancel, the position lock, help);
// Options; Dictionaries with New Dictionary; Check Spelling over an edit
// control (a selection, placement by the control); the message of a user
// dictionary that does not open.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "driver.h"
#include "host.h"
#include "orth_client.h"
#include "ui/templates.h"

namespace {

using Strings = std::vector<std::string>;

#define DIALOG_FUNCTIONS(X)                                                                                \
    X(ClientTerm) X(ORTH_GetSid) X(ORTH_CheckBlockDlg) X(ORTH_CheckCtrlDlg) X(ORTH_EditLexDlg)             \
    X(ORTH_OptionsDlg) X(ORTH_GetStatistics) X(ORTH_SetDialogOrigin) X(ORTH_GetOption) X(ORTH_CheckWord)   \
    X(ORTH_GetAlwaysSuggest)

struct DialogApi {
    HOST_IMPORTS(DIALOG_FUNCTIONS)
};

constexpr const char *kTree = "Software\\Tamarind\\ORTH";
constexpr const char *kCheckSpelling = "Check Spelling";
constexpr int kMessageText = 0xFFFF;  // the text of a message box: marks one

// --- Layout. ---

const char *win32Class(DlgCtlKind kind) {
    switch (kind) {
    case DLG_LABEL: return "Static";
    case DLG_EDIT: return "Edit";
    case DLG_LISTBOX: return "ListBox";
    case DLG_DROPLIST: case DLG_SIMPLECOMBO: case DLG_EDITCOMBO: return "ComboBox";
    default: return "Button";
    }
}

// The dialog as its template says: client area and every control's
// rectangle are the template's dialog units through MapDialogRect, children
// in template order with the template's ids and classes, each in the
// normal-weight MS Sans Serif that FontBold 0 gives. A list box shrinks to
// whole lines, and a drop-down combo's own window has its closed height (the
// template's height is the dropped one, which Windows and wine report
// differently; resources_host_test.cpp reads it from the template).
void checkLayout(HWND dialog, const char *name) {
    const DlgTemplate *t = findDialogTemplate(name);
    ASSERT_NE(t, nullptr) << name;
    SCOPED_TRACE(name);
    RECT size{0, 0, t->cx, t->cy}, client;
    MapDialogRect(dialog, &size);
    GetClientRect(dialog, &client);
    EXPECT_EQ(client.right, size.right);
    EXPECT_EQ(client.bottom, size.bottom);
    EXPECT_EQ(windowText(dialog), t->caption);

    HWND child = GetWindow(dialog, GW_CHILD);
    for (int i = 0; i < t->controlCount; ++i, child = GetWindow(child, GW_HWNDNEXT)) {
        const DlgControl &c = t->controls[i];
        SCOPED_TRACE("control " + std::to_string(c.id));
        ASSERT_NE(child, nullptr);
        EXPECT_EQ(int16_t(GetDlgCtrlID(child)), c.id);
        char cls[32] = "";
        GetClassNameA(child, cls, sizeof cls);
        EXPECT_STRCASEEQ(cls, win32Class(c.kind));

        // The dialog manager converts position and size each on its own.
        RECT want{c.x, c.y, c.cx, c.cy}, got;
        MapDialogRect(dialog, &want);
        GetWindowRect(child, &got);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT *>(&got), 2);
        EXPECT_EQ(got.left, want.left);
        EXPECT_EQ(got.top, want.top);
        EXPECT_EQ(got.right - got.left, want.right);
        LONG height = got.bottom - got.top;
        if (c.kind == DLG_DROPLIST || c.kind == DLG_EDITCOMBO) {
            EXPECT_LT(height, want.bottom);  // closed; the dropped height is checked in the raw template
        } else if (c.kind == DLG_LISTBOX) {
            LONG line = LONG(SendMessageA(child, LB_GETITEMHEIGHT, 0, 0));
            EXPECT_LE(height, want.bottom);
            EXPECT_GT(height, want.bottom - line);
        } else {
            EXPECT_EQ(height, want.bottom);
        }

        HFONT font = reinterpret_cast<HFONT>(SendMessageA(child, WM_GETFONT, 0, 0));
        LOGFONTA lf{};
        ASSERT_EQ(GetObjectA(font, sizeof lf, &lf), int(sizeof lf));
        EXPECT_EQ(lf.lfWeight, FW_NORMAL);
        HDC dc = GetDC(child);
        HGDIOBJ old = SelectObject(dc, font);
        char face[LF_FACESIZE] = "";
        GetTextFaceA(dc, sizeof face, face);  // the font the system really uses
        SelectObject(dc, old);
        ReleaseDC(child, dc);
        EXPECT_STREQ(face, t->fontName);
    }
    EXPECT_EQ(child, nullptr) << "more controls than the template has";
}

// --- A host. ---

// A host's top-level window with a multi-line edit control.
class HostWindow {
public:
    HostWindow(int x, int y, int width, int height, const char *text) {
        WNDCLASSA wc{};
        wc.lpfnWndProc = DefWindowProcA;
        wc.hInstance = GetModuleHandleA(nullptr);
        wc.hbrBackground = GetSysColorBrush(COLOR_WINDOW);
        wc.lpszClassName = "orth test host";
        RegisterClassA(&wc);  // again for each host: fails harmlessly once registered
        window = CreateWindowExA(0, wc.lpszClassName, "Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, x, y, width,
                                 height, nullptr, nullptr, wc.hInstance, nullptr);
        RECT client{};
        GetClientRect(window, &client);
        edit = CreateWindowExA(WS_EX_CLIENTEDGE, "EDIT", text,
                               WS_CHILD | WS_VISIBLE | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL, 8, 8,
                               client.right - 16, client.bottom - 16, window, nullptr, wc.hInstance, nullptr);
        UpdateWindow(window);
    }
    ~HostWindow() { DestroyWindow(window); }
    HostWindow(const HostWindow &) = delete;
    HostWindow &operator=(const HostWindow &) = delete;

    std::string text() const { return windowText(edit); }
    std::pair<DWORD, DWORD> selection() const {
        DWORD start = 0, end = 0;
        SendMessageA(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
        return {start, end};
    }

    HWND window = nullptr, edit = nullptr;
};

RECT windowRect(HWND window) {
    RECT r{};
    GetWindowRect(window, &r);
    return r;
}

// --- The fixture. ---

class Dialogs : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(work.path().empty());
        userFolder = work.file("user");
        ASSERT_TRUE(CreateDirectoryA(userFolder.c_str(), nullptr));
        writeBytes(userFolder + "\\personal.tlx", "#LID 1033 1 1\r\northware\r\nzymurgist\r\n");
        store.clear();
        std::string dictionary = dictionaryFolder();
        dictionary.pop_back();  // the folder without its final backslash
        store.put("MainLexPath", false, dictionary);
        store.put("MainLexFiles", false, "MAIN.CLX");
        store.put("DebugFile", false, work.file("client.log"));
        store.put("UserLexPath", true, userFolder);
        store.put("UserLexFiles", true, "personal.tlx");
        dll = std::make_unique<Dll>("ORTH32.DLL");
        ASSERT_NE(dll->module(), nullptr) << GetLastError();
        api.load(*dll);
        ASSERT_TRUE(api.missing.empty()) << api.missing.front();
    }
    void TearDown() override {
        dll.reset();
        store.clear();
    }

    // After the call under test: the script was worked to its end.
    static void finish(const Driver &driver) {
        EXPECT_EQ(driver.stepsLeft(), 0u) << "steps not reached";
        for (const std::string &failure : driver.failures()) ADD_FAILURE() << failure;
    }

    // Checks a buffer through the dialog; the new length or a code.
    int32_t checkText(char *text, uint32_t size, HWND owner = nullptr) {
        return api.ORTH_CheckBlockDlg(owner, text, uint32_t(std::strlen(text)), size);
    }

    struct Statistics {
        uint32_t checked, changed, errors;
    };
    Statistics statistics() {
        Statistics s{};
        api.ORTH_GetStatistics(&s.checked, &s.changed, &s.errors);
        return s;
    }

    int16_t check(const char *word) {
        char replacement[64];
        return api.ORTH_CheckWord(api.ORTH_GetSid(), 0, word, replacement, sizeof replacement);
    }

    WorkFolder work;
    Store store{kTree};
    std::string userFolder;
    std::unique_ptr<Dll> dll;
    DialogApi api;
};

// --- Check Spelling over a buffer. ---

TEST_F(Dialogs, MisspellingIsChangedFromASuggestion) {
    HostWindow host(600, 500, 300, 120, "");
    char text[64] = "I recieve mail.";
    Driver d;
    d.then(kCheckSpelling, kCsIgnore, [&](HWND dlg) {
        checkLayout(dlg, kCheckSpellingDlg);
        EXPECT_EQ(GetWindow(dlg, GW_OWNER), host.window);
        EXPECT_EQ(itemText(dlg, kCsReason), "Not in Dictionary:");
        EXPECT_EQ(itemText(dlg, kCsWord), "recieve");
        EXPECT_EQ(itemText(dlg, kCsChangeTo), "recieve");  // the engine's replacement is the word
        EXPECT_TRUE(listItems(dlg, kCsSuggestions).empty());
        EXPECT_EQ(listItems(dlg, kCsAddWordsTo), Strings{"personal.tlx"});
        EXPECT_EQ(itemText(dlg, kCsAddWordsTo), "personal.tlx");
        EXPECT_TRUE(isEnabled(dlg, kCsSuggest));
        click(dlg, kCsSuggest);
    });
    d.then(kCheckSpelling, kCsIgnore, [&](HWND dlg) {
        Strings suggestions = listItems(dlg, kCsSuggestions);
        ASSERT_FALSE(suggestions.empty());
        EXPECT_EQ(itemText(dlg, kCsChangeTo), suggestions[0]);
        int at = indexOf(dlg, kCsSuggestions, "receive");
        ASSERT_GE(at, 0);
        choose(dlg, kCsSuggestions, at);
    });
    d.shot(kCheckSpelling, kCsIgnore, "check-spelling");
    d.then(kCheckSpelling, kCsIgnore, [&](HWND dlg) {
        EXPECT_EQ(itemText(dlg, kCsChangeTo), "receive");
        EXPECT_TRUE(isEnabled(dlg, kCsChange));
        EXPECT_TRUE(isEnabled(dlg, kCsChangeAll));
        click(dlg, kCsChange);
    });
    EXPECT_EQ(checkText(text, sizeof text, host.window), 15);
    finish(d);
    EXPECT_STREQ(text, "I receive mail.");
    Statistics s = statistics();
    EXPECT_EQ(s.checked, 3u);
    EXPECT_EQ(s.changed, 1u);
    EXPECT_EQ(s.errors, 1u);
}

TEST_F(Dialogs, IgnoreAllPassesLaterOccurrencesAndTheLockKeepsThePlace) {
    api.ORTH_SetDialogOrigin(40, 30);
    char text[64] = "zorbly and zorbly again";
    Driver d;
    d.then(kCheckSpelling, kCsIgnore, [&](HWND dlg) {
        RECT r = windowRect(dlg);
        EXPECT_EQ(r.left, 40);
        EXPECT_EQ(r.top, 30);
        EXPECT_TRUE(isChecked(dlg, kCsLockPos));
        EXPECT_EQ(itemText(dlg, kCsWord), "zorbly");
        click(dlg, kCsIgnoreAll);
    });
    EXPECT_EQ(checkText(text, sizeof text), 23);
    finish(d);
    EXPECT_STREQ(text, "zorbly and zorbly again");
    EXPECT_EQ(statistics().errors, 1u);

    // Ignore All holds for the client context; the dialog, moved while
    // locked, opens next time where it was closed.
    char next[64] = "zorbly qwxyzt";
    Driver d2;
    d2.then(kCheckSpelling, kCsIgnore, [&](HWND dlg) {
        EXPECT_EQ(itemText(dlg, kCsWord), "qwxyzt");
        SetWindowPos(dlg, nullptr, 120, 90, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        click(dlg, kIdCancel);
    });
    EXPECT_EQ(checkText(next, sizeof next), ORTH_CANCEL_ERR);
    finish(d2);
    Driver d3;
    d3.then(kCheckSpelling, kCsIgnore, [&](HWND dlg) {
        RECT r = windowRect(dlg);
        EXPECT_EQ(r.left, 120);
        EXPECT_EQ(r.top, 90);
        click(dlg, kIdCancel);
    });
    EXPECT_EQ(checkText(next, sizeof next), ORTH_CANCEL_ERR);
    finish(d3);
}

TEST_F(Dialogs, DoubledWordIsDeleted) {
    char text[64] = "It was the the best.";
    Driver d;
    d.then(kCheckSpelling, kCsIgnore, [&](HWND dlg) {
        EXPECT_EQ(itemText(dlg, kCsReason), "Doubled word:");
        EXPECT_EQ(itemText(dlg, kCsWord), "the");
        EXPECT_EQ(itemText(dlg, kCsChange), "&Delete");
        for (int id : {kCsChangeTo, kCsIgnoreAll, kCsChangeAll, kCsAdd, kCsSuggest})
            EXPECT_FALSE(isEnabled(dlg, id)) << id;
        for (int id : {int(kCsIgnore), int(kCsChange), int(kIdCancel)}) EXPECT_TRUE(isEnabled(dlg, id)) << id;
        click(dlg, kCsChange);
    });
    EXPECT_EQ(checkText(text, sizeof text), 16);
    finish(d);
    EXPECT_STREQ(text, "It was the best.");
    EXPECT_EQ(statistics().changed, 1u);
}

// So does an edit control that is no window: it reads as empty, with a log line.
TEST_F(Dialogs, TextWithoutStopsEndsTheDialogBeforeItShows) {
    char text[64] = "All these words are fine.";
    Driver d;  // no steps: a dialog that stayed would be a failure
    EXPECT_EQ(checkText(text, sizeof text), 25);
    EXPECT_EQ(statistics().checked, 5u);
    EXPECT_EQ(api.ORTH_CheckCtrlDlg(nullptr, reinterpret_cast<OrthWindow>(uintptr_t(0xBAD0BAD0u)), 0), 0);
    finish(d);
    EXPECT_EQ(d.dialogsSeen(), 0u);
    EXPECT_NE(fileBytes(work.file("client.log")).find("WM_GETTEXTLENGTH: 0xbad0bad0 is not a window"),
              std::string::npos);
}

// With AlwaysSuggest set, the best suggestion waits in Change To at once.
TEST_F(Dialogs, ChangeAllReplacesALaterOccurrenceWithoutStopping) {
    store.putInt("AlwaysSuggest", true, 1);
    char text[64] = "We recieve and they recieve it.";
    Driver d;
    d.then(kCheckSpelling, kCsIgnore, [&](HWND dlg) {
        EXPECT_EQ(itemText(dlg, kCsWord), "recieve");
        EXPECT_FALSE(listItems(dlg, kCsSuggestions).empty());
        EXPECT_EQ(itemText(dlg, kCsChangeTo), "receive");
        EXPECT_FALSE(isEnabled(dlg, kCsSuggest));
        click(dlg, kCsChangeAll);
    });
    EXPECT_EQ(checkText(text, sizeof text), 31);
    finish(d);
    EXPECT_STREQ(text, "We receive and they receive it.");
    Statistics s = statistics();
    EXPECT_EQ(s.changed, 2u);
    EXPECT_EQ(s.errors, 1u);
}

// Help with a help file that does not exist says so and leaves the dialog
// as it was.
TEST_F(Dialogs, CancelEndsWithTheCancelCodeAndKeepsEarlierChanges) {
    char text[64] = "Teh cat met a zorbly dog.";
    Driver d;
    d.then(kCheckSpelling, kCsIgnore, [&](HWND dlg) {
        EXPECT_EQ(itemText(dlg, kCsWord), "Teh");
        type(dlg, kCsChangeTo, "The");
        EXPECT_TRUE(isEnabled(dlg, kCsChange));
        click(dlg, kCsChange);
    });
    d.then(kCheckSpelling, kCsIgnore, [&](HWND dlg) {
        EXPECT_EQ(itemText(dlg, kCsWord), "zorbly");
        click(dlg, kIdHelp);
    });
    d.then(kCheckSpelling, kMessageText, [&](HWND box) {
        EXPECT_EQ(messageText(box), "Cannot find the help file orth.hlp.");
        click(box, IDOK);
    });
    d.then(kCheckSpelling, kCsIgnore, [&](HWND dlg) {
        EXPECT_EQ(itemText(dlg, kCsWord), "zorbly");
        click(dlg, kIdCancel);
    });
    EXPECT_EQ(checkText(text, sizeof text), ORTH_CANCEL_ERR);
    finish(d);
    EXPECT_STREQ(text, "The cat met a zorbly dog.");
    EXPECT_NE(fileBytes(work.file("client.log")).find("WinHelpA: help file orth.hlp not found (context 100)"),
              std::string::npos);
}

// --- Options. ---

TEST_F(Dialogs, OptionsOkAppliesAndWritesEveryKeyAndCancelNothing) {
    struct Row {
        int box;
        const char *key;
        uint32_t option;  // 0: the always-suggest flag
        bool before;
    } rows[] = {
        {kOpIgnoreCapped, "IgnoreCappedWords", ORTH_IGNORE_CAPPED_WORDS_OPT, false},
        {kOpIgnoreAllCaps, "IgnoreAllCapsWords", ORTH_IGNORE_ALL_CAPS_WORDS_OPT, false},
        {kOpIgnoreMixedDigits, "IgnoreMixedDigits", ORTH_IGNORE_MIXED_DIGITS_OPT, false},
        {kOpIgnoreMixedCase, "IgnoreMixedCase", ORTH_IGNORE_MIXED_CASE_OPT, false},
        {kOpCaseSensitive, "CaseSensitive", ORTH_CASE_SENSITIVE_OPT, true},
        {kOpReportDoubled, "ReportDoubledWords", ORTH_REPORT_DOUBLED_WORDS_OPT, true},
        {kOpSuggestSplit, "SuggestSplitWords", ORTH_SUGGEST_SPLIT_WORDS_OPT, true},
        {kOpPhonetic, "PhoneticSuggestions", ORTH_SUGGEST_PHONETIC_OPT, false},
        {kOpTypographical, "TypographicalSuggestions", ORTH_SUGGEST_TYPOGRAPHICAL_OPT, true},
        {kOpMatchCase, "MatchCase", ORTH_MATCH_CASE_OPT, true},
        {kOpAlwaysSuggest, "AlwaysSuggest", 0, false},
    };
    const int flipped[] = {kOpIgnoreCapped, kOpCaseSensitive, kOpAlwaysSuggest};
    auto after = [&](const Row &r) {
        bool flip = std::find(std::begin(flipped), std::end(flipped), r.box) != std::end(flipped);
        return r.before != flip;
    };
    Driver d;
    d.then("Options", kOpAlwaysSuggest, [&](HWND dlg) {
        checkLayout(dlg, kOptionsDlg);
        for (const Row &r : rows) EXPECT_EQ(isChecked(dlg, r.box), r.before) << r.key;
        for (int box : flipped) click(dlg, box);
    });
    d.shot("Options", kOpAlwaysSuggest, "options");
    d.then("Options", kOpAlwaysSuggest, [&](HWND dlg) {
        for (const Row &r : rows) EXPECT_EQ(isChecked(dlg, r.box), after(r)) << r.key;
        click(dlg, kIdHelp);
    });
    d.then("Options", kMessageText, [&](HWND box) {
        EXPECT_EQ(messageText(box), "Cannot find the help file orth.hlp.");
        click(box, IDOK);
    });
    d.then("Options", kOpAlwaysSuggest, [&](HWND dlg) { click(dlg, kIdOk); });
    EXPECT_EQ(api.ORTH_OptionsDlg(nullptr), 0);
    finish(d);
    int16_t sid = api.ORTH_GetSid();
    for (const Row &r : rows) {
        EXPECT_EQ(store.get(r.key, true), after(r) ? "dword:1" : "dword:0") << r.key;
        int32_t now = r.option == 0 ? api.ORTH_GetAlwaysSuggest() : api.ORTH_GetOption(sid, r.option);
        EXPECT_EQ(now, after(r) ? 1 : 0) << r.key;
    }

    // An owner that is no window is logged and the dialog shown without one;
    // with FontBold set, the controls keep the dialog's own font.
    store.putInt("FontBold", false, 1);
    Driver d2;
    d2.then("Options", kOpAlwaysSuggest, [&](HWND dlg) {
        EXPECT_EQ(GetWindow(dlg, GW_OWNER), nullptr);
        LRESULT own = SendMessageA(dlg, WM_GETFONT, 0, 0);
        for (HWND c = GetWindow(dlg, GW_CHILD); c != nullptr; c = GetWindow(c, GW_HWNDNEXT))
            EXPECT_EQ(SendMessageA(c, WM_GETFONT, 0, 0), own);
        EXPECT_TRUE(isChecked(dlg, kOpIgnoreCapped));
        click(dlg, kOpIgnoreCapped);
        click(dlg, kIdCancel);
    });
    EXPECT_EQ(api.ORTH_OptionsDlg(reinterpret_cast<OrthWindow>(uintptr_t(0xBAD0BAD0u))), ORTH_CANCEL_ERR);
    finish(d2);
    EXPECT_NE(fileBytes(work.file("client.log")).find("OptionsDlg: 0xbad0bad0 is not a window"), std::string::npos);
    EXPECT_EQ(store.get("IgnoreCappedWords", true), "dword:1");
    EXPECT_EQ(api.ORTH_GetOption(sid, ORTH_IGNORE_CAPPED_WORDS_OPT), 1);
}

// --- Dictionaries and New Dictionary. ---

TEST_F(Dialogs, NewDictionaryIsCreatedThroughTheFileDialogAndTakesAWord) {
    const std::string created = userFolder + "\\mine.tlx";
    Driver d;
    d.then("Dictionaries", kElAddWord, [&](HWND dlg) {
        checkLayout(dlg, kEditLexDlg);
        EXPECT_EQ(listItems(dlg, kElFiles), Strings{"personal.tlx"});
        EXPECT_EQ(listItems(dlg, kElWords), (Strings{"orthware", "zymurgist"}));
        EXPECT_EQ(itemText(dlg, kElType), "Ignore");
        EXPECT_EQ(itemText(dlg, kElLanguage), "American English");
        click(dlg, kElNew);
    });
    d.then("New Dictionary", kNlBrowse, [&](HWND dlg) {
        checkLayout(dlg, kNewLexDlg);
        Strings languages = listItems(dlg, kNlLanguage);
        ASSERT_EQ(languages.size(), 20u);
        EXPECT_EQ(languages.front(), "American English");
        EXPECT_EQ(languages.back(), "Other");
        EXPECT_EQ(listSelection(dlg, kNlLanguage), 0);
        EXPECT_TRUE(isChecked(dlg, kNlIgnore));
        click(dlg, kNlBrowse);
    });
    d.then("Create Dictionary File", 0, [&](HWND dlg) {
        EXPECT_EQ(fileTypes(dlg), (Strings{"Dictionary files (*.tlx)", "External dictionaries (*.dic)",
                                           "Text files (*.txt)", "All files (*.*)"}));
        EXPECT_EQ(fileDialogFolder(dlg), "user");  // it starts in the user dictionary folder
        answerFileDialog(dlg, created);
    });
    d.then("New Dictionary", kNlBrowse, [&](HWND dlg) {
        EXPECT_EQ(itemText(dlg, kNlFileName), "mine.tlx");  // it lies in the user folder
    });
    d.shot("New Dictionary", kNlBrowse, "new-dictionary");
    d.then("New Dictionary", kNlBrowse, [&](HWND dlg) { click(dlg, kIdOk); });
    d.then("Dictionaries", kElAddWord, [&](HWND dlg) {
        EXPECT_EQ(listItems(dlg, kElFiles), (Strings{"personal.tlx", "mine.tlx"}));
        EXPECT_EQ(listSelection(dlg, kElFiles), 1);
        EXPECT_TRUE(listItems(dlg, kElWords).empty());
        EXPECT_FALSE(isEnabled(dlg, kElAddWord));
        type(dlg, kElWords, "frobnitz");
        EXPECT_TRUE(isEnabled(dlg, kElAddWord));
        click(dlg, kElAddWord);
    });
    d.then("Dictionaries", kElAddWord, [&](HWND dlg) {
        EXPECT_EQ(listItems(dlg, kElWords), Strings{"frobnitz"});
    });
    d.shot("Dictionaries", kElAddWord, "dictionaries");
    d.then("Dictionaries", kElAddWord, [&](HWND dlg) { click(dlg, kIdCancel); });  // Close
    EXPECT_EQ(api.ORTH_EditLexDlg(nullptr), 0);
    finish(d);

    EXPECT_NE(fileBytes(created).find("frobnitz\r\n"), std::string::npos);
    EXPECT_EQ(store.get("UserLexFiles", true), "personal.tlx,mine.tlx");
    EXPECT_EQ(check("frobnitz"), 0);
    api.ClientTerm();
    EXPECT_EQ(check("frobnitz"), 0);  // the next context opens it from the settings
}

// --- Check Spelling over an edit control. ---

// Only the selection is checked; the dialog opens below the control, every
// stop is shown selected in it, every change is made in it, and the
// selection is given back as it was.
TEST_F(Dialogs, EditControlSelectionIsCheckedInPlaceWithTheDialogBelowIt) {
    const std::string text = "A cat sat wiht me. Teh dog sat wiht me.";
    HostWindow host(10, 10, 500, 120, text.c_str());
    SendMessageA(host.edit, EM_SETSEL, 19, 39);
    using Selection = std::pair<DWORD, DWORD>;
    Driver d;
    d.then(kCheckSpelling, kCsIgnore, [&](HWND dlg) {
        RECT edit = windowRect(host.edit), own = windowRect(dlg), screen = windowRect(GetDesktopWindow());
        int gapX = GetSystemMetrics(SM_CXFRAME), gapY = GetSystemMetrics(SM_CYFRAME);
        LONG width = own.right - own.left, height = own.bottom - own.top;
        ASSERT_LE(edit.bottom + gapY + height, screen.bottom) << "the host must leave room below";
        EXPECT_EQ(own.top, edit.bottom + gapY);
        EXPECT_EQ(own.left, std::min(edit.left, screen.right - (width + gapX)));
        EXPECT_EQ(itemText(dlg, kCsWord), "Teh");
        EXPECT_EQ(host.selection(), Selection(19, 22));
        type(dlg, kCsChangeTo, "The");
        click(dlg, kCsChange);
    });
    d.then(kCheckSpelling, kCsIgnore, [&](HWND dlg) {
        EXPECT_EQ(itemText(dlg, kCsWord), "wiht");
        EXPECT_EQ(host.text(), "A cat sat wiht me. The dog sat wiht me.");
        EXPECT_EQ(host.selection(), Selection(31, 35));
        type(dlg, kCsChangeTo, "with");
        click(dlg, kCsChange);
    });
    EXPECT_EQ(api.ORTH_CheckCtrlDlg(host.window, host.edit, 1), 0);
    finish(d);
    EXPECT_EQ(host.text(), "A cat sat wiht me. The dog sat with me.");
    EXPECT_EQ(host.selection(), Selection(19, 39));
    Statistics s = statistics();
    EXPECT_EQ(s.checked, 5u);
    EXPECT_EQ(s.changed, 2u);
}

// Without the selection flag the whole text is checked; a control low on
// the screen gets the dialog above it; the selection ends empty at 0.
TEST_F(Dialogs, WholeEditControlIsCheckedWithTheDialogAboveALowControl) {
    RECT screen = windowRect(GetDesktopWindow());
    HostWindow host(10, screen.bottom - 140, 500, 120, "Just one zorbly word.");
    SendMessageA(host.edit, EM_SETSEL, 5, 8);
    Driver d;
    d.then(kCheckSpelling, kCsIgnore, [&](HWND dlg) {
        RECT edit = windowRect(host.edit), own = windowRect(dlg);
        EXPECT_EQ(own.bottom, edit.top - GetSystemMetrics(SM_CYFRAME));
        EXPECT_EQ(own.left, edit.left);
        EXPECT_EQ(itemText(dlg, kCsWord), "zorbly");
        click(dlg, kCsIgnore);
    });
    EXPECT_EQ(api.ORTH_CheckCtrlDlg(host.window, host.edit, 0), 0);
    finish(d);
    EXPECT_EQ(host.text(), "Just one zorbly word.");
    EXPECT_EQ(host.selection(), (std::pair<DWORD, DWORD>(0, 0)));
}

// --- Opening the client context. ---

TEST_F(Dialogs, UserDictionaryThatDoesNotOpenIsReportedWithoutOwnerOrCaption) {
    store.put("UserLexFiles", true, "personal.tlx,MISSING.TLX");
    Driver d;
    d.then("", kMessageText, [&](HWND box) {
        EXPECT_EQ(messageText(box), "Error opening dictionary " + userFolder + "\\MISSING.TLX");
        EXPECT_EQ(GetWindow(box, GW_OWNER), nullptr);
        click(box, IDOK);
    });
    EXPECT_GE(api.ORTH_GetSid(), 0);
    finish(d);
    EXPECT_EQ(check("zymurgist"), 0);  // the dictionary that did open
}

}  // namespace
