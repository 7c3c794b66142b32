// ui/templates.cpp — the dialog templates table and its lookups.
//
// Check Spelling is placed by its own rule when it starts, so its template
// carries no centring; the other three dialogs are centred. Every dialog has
// a system menu, so that its close box sends Cancel as Esc does.
#include "ui/templates.h"

#include <cstring>

const char kCheckSpellingDlg[] = "CheckSpellingDlg";
const char kEditLexDlg[] = "EditLexDlg";
const char kNewLexDlg[] = "NewLexDlg";
const char kOptionsDlg[] = "OptionsDlg";

namespace {

const DlgControl checkSpellingControls[] = {
    {kCsReason, DLG_LABEL, "Consider Changing:", 4, 4, 72, 8},
    {kCsWord, DLG_EDIT, "", 78, 2, 88, 12},
    {kCsLockPos, DLG_CHECKBOX, "Lock Pos.", 216, 4, 48, 8},
    {kCsChangeToLabel, DLG_LABEL, "Change &To:", 4, 18, 72, 8},
    {kCsChangeTo, DLG_EDIT, "", 78, 16, 88, 12},
    {kCsSuggestionsLabel, DLG_LABEL, "S&uggestions:", 4, 30, 71, 8},
    {kCsSuggestions, DLG_LISTBOX, "", 78, 30, 88, 46},
    {kCsIgnore, DLG_BUTTON, "&Ignore", 168, 28, 45, 12},
    {kCsIgnoreAll, DLG_BUTTON, "I&gnore All", 216, 28, 45, 12},
    {kCsChange, DLG_BUTTON, "&Change", 168, 44, 45, 12},
    {kCsChangeAll, DLG_BUTTON, "Change A&ll", 216, 44, 45, 12},
    {kCsAdd, DLG_BUTTON, "&Add", 168, 60, 45, 12},
    {kCsSuggest, DLG_BUTTON, "&Suggest", 216, 60, 45, 12},
    {kCsAddWordsToLabel, DLG_LABEL, "Add &words to:", 4, 76, 72, 8},
    {kCsAddWordsTo, DLG_DROPLIST, "", 78, 76, 88, 40},
    {kCsDictionaries, DLG_BUTTON, "Dictio&naries...", 4, 92, 45, 16},
    {kCsOptions, DLG_BUTTON, "&Options...", 60, 92, 45, 16},
    {kIdHelp, DLG_BUTTON, "&Help...", 120, 92, 45, 16},
    {kIdCancel, DLG_BUTTON, "Cancel", 216, 92, 45, 16},
};

const DlgControl editLexControls[] = {
    {kElWordsLabel, DLG_LABEL, "&Words:", 4, 4, 52, 8},
    {kElWords, DLG_SIMPLECOMBO, "", 4, 12, 124, 72},
    {kElAddWord, DLG_BUTTON, "&Add Word", 140, 8, 50, 16},
    {kElDeleteWord, DLG_BUTTON, "&Delete Word", 140, 28, 50, 16},
    {kElImport, DLG_BUTTON, "I&mport...", 140, 48, 50, 16},
    {kElExport, DLG_BUTTON, "&Export...", 140, 68, 50, 15},
    {kDlgNoId, DLG_GROUP, "", 4, 88, 192, 60},
    {kElFilesLabel, DLG_LABEL, "F&iles:", 8, 96, 40, 8},
    {kElFiles, DLG_DROPLIST, "", 8, 104, 120, 56},
    {kElAddFile, DLG_BUTTON, "Add &File", 140, 96, 50, 14},
    {kElNew, DLG_BUTTON, "&New...", 140, 112, 50, 14},
    {kElRemoveFile, DLG_BUTTON, "&Remove File", 140, 128, 50, 14},
    {kElLanguageLabel, DLG_LABEL, "Language:", 8, 120, 36, 8},
    {kElLanguage, DLG_LABEL, "", 48, 120, 84, 8},
    {kElTypeLabel, DLG_LABEL, "Type:", 8, 136, 36, 8},
    {kElType, DLG_LABEL, "", 48, 136, 84, 8},
    {kIdHelp, DLG_BUTTON, "&Help", 84, 152, 44, 13},
    {kIdCancel, DLG_DEFBUTTON, "Cl&ose", 140, 152, 50, 14},
};

const DlgControl newLexControls[] = {
    {kNlFileNameLabel, DLG_LABEL, "&File Name:", 4, 8, 40, 8},
    {kNlFileName, DLG_EDIT, "", 48, 4, 84, 13},
    {kNlBrowse, DLG_BUTTON, "&Browse...", 136, 4, 50, 14},
    {kNlTypeGroup, DLG_GROUP, "&Type", 4, 24, 88, 64},
    {kNlAutoChange, DLG_RADIO, "A&uto change", 8, 37, 80, 10},
    {kNlExclude, DLG_RADIO, "E&xclude", 8, 48, 80, 10},
    {kNlIgnore, DLG_RADIO, "I&gnore", 8, 60, 80, 10},
    {kNlConditional, DLG_RADIO, "Conditional C&hange", 8, 72, 80, 10},
    {kNlLanguageLabel, DLG_LABEL, "&Language", 96, 24, 56, 8},
    {kNlLanguage, DLG_EDITCOMBO, "", 96, 32, 88, 56},
    {kIdOk, DLG_DEFBUTTON, "OK", 4, 96, 50, 14},
    {kIdHelp, DLG_BUTTON, "&Help", 68, 96, 50, 14},
    {kIdCancel, DLG_BUTTON, "Cancel", 132, 96, 50, 14},
};

const DlgControl optionsControls[] = {
    {kOpIgnoreCapped, DLG_CHECKBOX, "Ignore &capitalized words (e.g., Canada)", 4, 4, 164, 10},
    {kOpIgnoreAllCaps, DLG_CHECKBOX, "Ignore &all-caps words (e.g., ASAP)", 4, 14, 164, 10},
    {kOpIgnoreMixedDigits, DLG_CHECKBOX, "I&gnore words with &numbers (e.g., Win95)", 4, 24, 164, 10},
    {kOpIgnoreMixedCase, DLG_CHECKBOX, "Ignore words with &mixed case (e.g., SuperBase)", 4, 34, 164, 10},
    {kOpCaseSensitive, DLG_CHECKBOX, "Cas&e sensitive", 4, 54, 164, 10},
    {kOpReportDoubled, DLG_CHECKBOX, "Report &doubled words (e.g., the the)", 4, 44, 164, 10},
    {kOpSuggestSplit, DLG_CHECKBOX, "Suggest sp&lit words", 4, 94, 164, 10},
    {kOpPhonetic, DLG_CHECKBOX, "&Phonetic suggestions", 4, 74, 164, 10},
    {kOpTypographical, DLG_CHECKBOX, "&Typographical suggestions", 4, 84, 164, 10},
    {kOpMatchCase, DLG_CHECKBOX, "Matc&h case in replacements", 4, 104, 164, 10},
    {kOpAlwaysSuggest, DLG_CHECKBOX, "Always &suggest", 4, 64, 164, 10},
    {kIdOk, DLG_DEFBUTTON, "&OK", 20, 120, 32, 14},
    {kIdHelp, DLG_BUTTON, "&Help", 68, 120, 32, 14},
    {kIdCancel, DLG_BUTTON, "&Cancel", 112, 120, 32, 14},
};

template <int N>
constexpr int16_t countOf(const DlgControl (&)[N]) {
    return static_cast<int16_t>(N);
}

const char kFont[] = "MS Sans Serif";

}  // namespace

const DlgTemplate dialogTemplates[kDialogTemplateCount] = {
    {kCheckSpellingDlg, "Check Spelling", 266, 113, 8, kFont, kDlgStyleSysMenu,
     checkSpellingControls, countOf(checkSpellingControls)},
    {kEditLexDlg, "Dictionaries", 202, 169, 8, kFont, kDlgStyleSysMenu | kDlgStyleCenter,
     editLexControls, countOf(editLexControls)},
    {kNewLexDlg, "New Dictionary", 189, 116, 8, kFont, kDlgStyleSysMenu | kDlgStyleCenter,
     newLexControls, countOf(newLexControls)},
    {kOptionsDlg, "Options", 170, 141, 8, kFont, kDlgStyleSysMenu | kDlgStyleCenter,
     optionsControls, countOf(optionsControls)},
};

static_assert(sizeof checkSpellingControls / sizeof(DlgControl) <= kMaxDlgControls, "");
static_assert(sizeof editLexControls / sizeof(DlgControl) <= kMaxDlgControls, "");

const DlgTemplate *findDialogTemplate(const char *name) {
    if (name == nullptr) return nullptr;
    for (const DlgTemplate &t : dialogTemplates)
        if (std::strcmp(t.name, name) == 0) return &t;
    return nullptr;
}

int findDlgControlIndex(const DlgTemplate *dialog, int16_t id) {
    if (dialog == nullptr || id == kDlgNoId) return -1;
    for (int i = 0; i < dialog->controlCount; ++i)
        if (dialog->controls[i].id == id) return i;
    return -1;
}

const DlgControl *findDlgControl(const DlgTemplate *dialog, int16_t id) {
    int i = findDlgControlIndex(dialog, id);
    return i < 0 ? nullptr : &dialog->controls[i];
}

char dlgAccelerator(const char *caption) {
    if (caption == nullptr) return 0;
    for (const char *p = caption; *p != '\0'; ++p) {
        if (*p != '&') continue;
        if (p[1] == '&') { ++p; continue; }
        char c = p[1];
        return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c;
    }
    return 0;
}

bool dlgIsButtonKind(DlgCtlKind kind) {
    return kind == DLG_BUTTON || kind == DLG_DEFBUTTON || kind == DLG_CHECKBOX || kind == DLG_RADIO;
}

bool dlgIsListKind(DlgCtlKind kind) {
    return kind == DLG_LISTBOX || kind == DLG_DROPLIST || kind == DLG_SIMPLECOMBO ||
           kind == DLG_EDITCOMBO;
}

bool dlgHasEditField(DlgCtlKind kind) {
    return kind == DLG_EDIT || kind == DLG_SIMPLECOMBO || kind == DLG_EDITCOMBO;
}

bool dlgTakesFocus(DlgCtlKind kind) { return kind != DLG_LABEL && kind != DLG_GROUP; }
