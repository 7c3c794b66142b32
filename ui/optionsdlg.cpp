// ui/optionsdlg.cpp — the Options dialog: the client session's checking and
// suggestion options as check boxes, applied to the session and written to
// the settings (user scope) on OK, row by row in the table's order.
#include "host/client.h"
#include "host/settings.h"
#include "orth.h"
#include "ui/clientui.h"
#include "ui/controllers.h"
#include "ui/dlgshared.h"

namespace {

constexpr uint32_t kHelpContext = 200;

struct OptionRow {
    int16_t box;
    uint32_t option;  // 0: the client's always-suggest flag
    const char *key;
};

// In the order OK applies them.
const OptionRow kRows[] = {
    {kOpIgnoreCapped, ORTH_IGNORE_CAPPED_WORDS_OPT, "IgnoreCappedWords"},
    {kOpIgnoreAllCaps, ORTH_IGNORE_ALL_CAPS_WORDS_OPT, "IgnoreAllCapsWords"},
    {kOpIgnoreMixedDigits, ORTH_IGNORE_MIXED_DIGITS_OPT, "IgnoreMixedDigits"},
    {kOpIgnoreMixedCase, ORTH_IGNORE_MIXED_CASE_OPT, "IgnoreMixedCase"},
    {kOpCaseSensitive, ORTH_CASE_SENSITIVE_OPT, "CaseSensitive"},
    {kOpReportDoubled, ORTH_REPORT_DOUBLED_WORDS_OPT, "ReportDoubledWords"},
    {kOpSuggestSplit, ORTH_SUGGEST_SPLIT_WORDS_OPT, "SuggestSplitWords"},
    {kOpPhonetic, ORTH_SUGGEST_PHONETIC_OPT, "PhoneticSuggestions"},
    {kOpTypographical, ORTH_SUGGEST_TYPOGRAPHICAL_OPT, "TypographicalSuggestions"},
    {kOpMatchCase, ORTH_MATCH_CASE_OPT, "MatchCase"},
    {kOpAlwaysSuggest, 0, kKeyAlwaysSuggest},
};

void optionsInit(UiSurface *s, void *) {
    for (const OptionRow &row : kRows) {
        bool set = row.option == 0 ? clientContext.alwaysSuggest != 0
                                   : ORTH_GetOption(clientContext.sessionId, row.option) == 1;
        Ui_SetCheck(s, row.box, set ? 1 : 0);
    }
    dlgApplyFontRule(s);
}

void optionsCommand(UiSurface *s, void *, int16_t id, UiNotify) {
    switch (id) {
    case kIdOk:
        for (const OptionRow &row : kRows) {
            uint32_t value = Ui_GetCheck(s, row.box) != 0 ? 1 : 0;
            if (row.option == 0) clientContext.alwaysSuggest = static_cast<int32_t>(value);
            else ORTH_SetOption(clientContext.sessionId, row.option, value);
            putIntSetting(row.key, kUserScope, value);
        }
        return Ui_EndDialog(s, 0);
    case kIdCancel: return Ui_EndDialog(s, ORTH_CANCEL_ERR);
    case kIdHelp: return Ui_Help(s, clientContext.helpFile, kHelpContext);
    default: return;
    }
}

}  // namespace

int32_t runOptionsDlg(UiSurface *owner) {
    DialogController controller{kOptionsDlg, nullptr, optionsInit, optionsCommand};
    return uiRunDialog(owner, &controller);
}
