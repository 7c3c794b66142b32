// ui/checkdlg.cpp — the Check Spelling dialog: walks one block of the client
// session with the user, stop by stop.
//
// Design notes
// (1) Every command that resolves a stop (Ignore, Ignore All, Change,
//     Delete, Change All, Add) ends in runChecker, which either shows the
//     next stop or ends the dialog (closeDialog). Suggest, the suggestion
//     list, field edits, Dictionaries, Options and Help stay on the stop.
// (2) The suggestion depth lives in the check context. updateButtons resets
//     it to 1 whenever field 1012 differs from the word suggestions were
//     last asked for; setting field 1012 at a stop raises its change event,
//     so every stop starts at depth 1.
// (3) Changes reach the block first and are mirrored into the host's edit
//     control only when the block took them, so the two never part. Each
//     change is counted as the user made it.
// (4) At each stop the word's line of the block goes to Ui_ShowContext, for
//     front ends that show the text themselves (the terminal); the Win32
//     front end has the host's control for that.
// (5) A stop whose flags match none of the four rows (a mixed-case report,
//     which no client setting turns on) is shown as Capitalization:, which
//     is what it is about.
#include <cstring>
#include <new>

#include "host/client.h"
#include "host/settings.h"
#include "host/texts.h"
#include "orth.h"
#include "ui/clientui.h"
#include "ui/controllers.h"
#include "ui/dlgshared.h"

namespace {

ClientContext &ctx = clientContext;

constexpr int kSuggestionBytes = 1025;  // ORTH_Suggest's output area
constexpr int kSuggestionScores = 16;   // and its table of scores
constexpr int kMinScore = 50;           // a suggestion shown scores at least this,
constexpr int kScoreWindow = 20;        // and at most this far below the best
constexpr int32_t kMaxDepth = 4;        // Suggest is offered while the depth is below this
constexpr uint32_t kHelpContext = 100;
constexpr int32_t kContextReach = 2000;  // characters of a long line shown around the word

struct CheckDlg {
    CheckContext *check;
    char word[kWordBufSize];         // the current word, from ORTH_CheckBlock
    char replacement[kWordBufSize];  // and its replacement
    char lastSuggestWord[kWordBufSize];
    bool doubled;
};

void runChecker(UiSurface *s, CheckDlg *d);

int16_t sid() { return ctx.sessionId; }

void getField(UiSurface *s, int16_t id, char out[kWordBufSize]) { Ui_GetText(s, id, out, kWordBufSize); }

void setText(UiSurface *s, int16_t id, uint32_t textId) {
    char text[kDlgTextSize];
    dlgText(textId, text, sizeof text);
    Ui_SetText(s, id, text);
}

uint32_t blockCursor(const CheckDlg *d) {
    uint32_t cursor = 0;
    ORTH_GetBlockInfo(sid(), d->check->blockId, nullptr, nullptr, &cursor, nullptr);
    return cursor;
}

uint32_t blockLength(const CheckDlg *d) {
    uint32_t length = 0;
    ORTH_GetBlockInfo(sid(), d->check->blockId, &length, nullptr, nullptr, nullptr);
    return length;
}

// --- Mirroring into the host's edit control. ---

void highlight(const CheckDlg *d, uint32_t cursor) {
    OrthWindow edit = d->check->editCtrl;
    if (edit == nullptr) return;
    const ClientFrontEnd &fe = clientFrontEnd();
    uint32_t at = d->check->baseOffset + cursor;
    fe.editSetSelection(edit, at, at + static_cast<uint32_t>(std::strlen(d->word)));
    fe.editScrollCaret(edit);
}

void mirrorReplace(const CheckDlg *d, uint32_t cursor, uint32_t length, const char *text) {
    OrthWindow edit = d->check->editCtrl;
    if (edit == nullptr) return;
    const ClientFrontEnd &fe = clientFrontEnd();
    uint32_t at = d->check->baseOffset + cursor;
    fe.editSetSelection(edit, at, at + length);
    fe.editReplaceSelection(edit, text);
}

// The line of the block that holds the word, for the front ends that show it.
void showStopContext(UiSurface *s, const CheckDlg *d, uint32_t cursor) {
    uint32_t length = blockLength(d);
    char *text = new (std::nothrow) char[length + 1];
    if (text == nullptr) return;
    int32_t got = ORTH_GetBlock(sid(), d->check->blockId, text, length + 1);
    if (got >= 0 && cursor <= static_cast<uint32_t>(got)) {
        auto lineEnd = [](char c) { return c == '\n' || c == '\r'; };
        int32_t word = static_cast<int32_t>(std::strlen(d->word));
        int32_t at = static_cast<int32_t>(cursor), from = at, to = at + word;
        if (to > got) to = got;
        while (from > 0 && !lineEnd(text[from - 1]) && at - from < kContextReach) --from;
        while (to < got && !lineEnd(text[to]) && to - at < kContextReach) ++to;
        Ui_ShowContext(s, text + from, to - from, at - from, word);
    }
    delete[] text;
}

// --- Suggestions and buttons. ---

// Fills the suggestion list for word at depth: the engine's suggestions in
// order while each scores at least 50 and at most 20 below the first.
// Returns the number listed.
int fillSuggestions(UiSurface *s, const char *word, int32_t depth) {
    Ui_WaitCursor(s, true);
    Ui_ListReset(s, kCsSuggestions);
    char list[kSuggestionBytes];
    int16_t scores[kSuggestionScores] = {};
    int count = 0;
    if (ORTH_Suggest(sid(), word, static_cast<int16_t>(depth), list, sizeof list, scores, kSuggestionScores) >= 0) {
        const char *p = list;
        for (int i = 0; i < kSuggestionScores && *p != '\0'; ++i, p += std::strlen(p) + 1) {
            if (scores[i] < kMinScore || scores[0] - scores[i] > kScoreWindow) break;
            Ui_ListAdd(s, kCsSuggestions, p);
            ++count;
        }
    }
    Ui_WaitCursor(s, false);
    return count;
}

// The first listed suggestion into field 1010.
void takeFirstSuggestion(UiSurface *s) {
    char first[kWordBufSize];
    if (Ui_ListGetText(s, kCsSuggestions, 0, first, sizeof first) >= 0) Ui_SetText(s, kCsChangeTo, first);
}

void updateButtons(UiSurface *s, CheckDlg *d) {
    char word[kWordBufSize], changeTo[kWordBufSize];
    getField(s, kCsWord, word);
    getField(s, kCsChangeTo, changeTo);
    if (std::strcmp(word, d->lastSuggestWord) != 0) d->check->suggestDepth = 1;
    bool doubled = d->doubled, haveWord = word[0] != '\0', haveChange = changeTo[0] != '\0';
    Ui_Enable(s, kCsChangeTo, !doubled);
    Ui_Enable(s, kCsIgnore, true);
    Ui_Enable(s, kCsIgnoreAll, !doubled);
    Ui_Enable(s, kCsChange, doubled || haveChange);
    Ui_Enable(s, kCsChangeAll, !doubled && haveChange);
    Ui_Enable(s, kCsAdd, !doubled && Ui_ListCount(s, kCsAddWordsTo) >= 1 && haveWord);
    Ui_Enable(s, kCsSuggest, ctx.alwaysSuggest == 0 && d->check->suggestDepth < kMaxDepth && !doubled && haveWord);
    Ui_Enable(s, kIdCancel, true);
}

// The user lexicons of type Ignore, each carrying its slot; the previous
// selection is kept while it is still in the list, else the first is selected.
void fillAddWords(UiSurface *s) {
    int32_t previous = Ui_ListGetSel(s, kCsAddWordsTo);
    Ui_ListReset(s, kCsAddWordsTo);
    for (int i = 0; i < kMaxLexPerSession; ++i) {
        const ClientLexSlot &slot = ctx.slots[i];
        if (slot.kind != CLIENT_LEX_USER || dlgLexType(slot.lexId) != ORTH_IGNORE_LEX_TYPE) continue;
        int32_t at = Ui_ListAdd(s, kCsAddWordsTo, dlgDisplayName(slot.fileName));
        Ui_ListSetData(s, kCsAddWordsTo, at, i);
    }
    int32_t count = Ui_ListCount(s, kCsAddWordsTo);
    if (count > 0) Ui_ListSetSel(s, kCsAddWordsTo, previous >= 0 && previous < count ? previous : 0);
}

// --- The end. ---

void closeDialog(UiSurface *s, int32_t value) {
    int32_t selected = Ui_ListGetSel(s, kCsAddWordsTo);
    if (selected >= 0) {
        char name[kPathBufSize];
        if (Ui_ListGetText(s, kCsAddWordsTo, selected, name, sizeof name) >= 0)
            putSetting(kKeyLastSelectedLex, kUserScope, name);
    }
    Ui_GetPosition(s, &ctx.dialogX, &ctx.dialogY);
    ctx.dialogLocked = Ui_GetCheck(s, kCsLockPos) != 0;
    Ui_EndDialog(s, value);
}

// --- Stops. ---

int16_t checkBlock(CheckDlg *d) {
    d->replacement[0] = '\0';
    int16_t rc = ORTH_CheckBlock(sid(), d->check->blockId, 0, d->word, kWordBufSize, d->replacement, kWordBufSize);
    if (rc < 0) {
        clientLog("runChecker: ORTH_CheckBlock returned %s", resultCodeName(rc));
        rc = ORTH_CHK_END_OF_BLOCK;
    }
    return rc;
}

// Words the engine replaces by itself, replaced without a stop.
int16_t applyAutoChanges(UiSurface *s, CheckDlg *d, int16_t rc) {
    while (rc & ORTH_CHK_AUTO_CHANGE) {
        uint32_t cursor = blockCursor(d);
        if (ORTH_ReplaceBlockWord(sid(), d->check->blockId, d->replacement) >= 0)
            mirrorReplace(d, cursor, static_cast<uint32_t>(std::strlen(d->word)), d->replacement);
        else
            dlgMessage(s, kTextErrorReplacing, kTextCheckSpelling, "", "");
        Ui_SetFocus(s, 0);
        ORTH_NextBlockWord(sid(), d->check->blockId);
        ++ctx.wordsChanged;
        Ui_WaitCursor(s, true);
        rc = checkBlock(d);
        Ui_WaitCursor(s, false);
    }
    return rc;
}

void showStop(UiSurface *s, CheckDlg *d, int16_t rc) {
    uint32_t cursor = blockCursor(d);
    uint32_t reason = kTextCapitalization;
    bool counted = true, suggest = false, takeFirst = false;
    if (rc & ORTH_CHK_MISSPELLED) {
        reason = kTextNotInDictionary;
        suggest = takeFirst = true;
    } else if (rc & ORTH_CHK_CONDITIONAL_CHANGE) {
        reason = kTextConsiderChanging;
        suggest = true;
        counted = false;
    } else if (!(rc & ORTH_CHK_UNCAPITALIZED) && (rc & ORTH_CHK_DOUBLED_WORD)) {
        reason = kTextDoubledWord;
        d->doubled = true;
    }
    setText(s, kCsReason, reason);
    Ui_SetText(s, kCsWord, d->word);
    if (d->doubled) {
        setText(s, kCsChange, kTextDelete);
    } else {
        Ui_SetText(s, kCsChangeTo, d->replacement);
    }
    if (suggest) {
        if (ctx.alwaysSuggest != 0) {
            if (fillSuggestions(s, d->word, d->check->suggestDepth) > 0 && takeFirst) takeFirstSuggestion(s);
        } else {
            d->check->suggestDepth = 1;
        }
    }
    if (counted) ++ctx.errorsFound;
    highlight(d, cursor);
    showStopContext(s, d, cursor);
    updateButtons(s, d);
}

void runChecker(UiSurface *s, CheckDlg *d) {
    Ui_ListReset(s, kCsSuggestions);
    Ui_SetText(s, kCsChangeTo, "");
    setText(s, kCsChange, kTextChange);
    d->doubled = false;
    d->lastSuggestWord[0] = '\0';
    updateButtons(s, d);
    Ui_WaitCursor(s, true);
    int16_t rc = checkBlock(d);
    Ui_WaitCursor(s, false);
    rc = applyAutoChanges(s, d, rc);
    if (rc & ORTH_CHK_END_OF_BLOCK) return closeDialog(s, 0);
    showStop(s, d, rc);
}

// --- Commands. ---

void advance(UiSurface *s, CheckDlg *d) {
    ORTH_NextBlockWord(sid(), d->check->blockId);
    runChecker(s, d);
}

// Change and Change All: the word becomes field 1010 in the block and the
// control; a real change is remembered in the temporary lexicon of lexType.
void change(UiSurface *s, CheckDlg *d, int16_t lexType, bool reportFailure) {
    char newWord[kWordBufSize];
    getField(s, kCsChangeTo, newWord);
    uint32_t cursor = blockCursor(d);
    if (ORTH_ReplaceBlockWord(sid(), d->check->blockId, newWord) >= 0)
        mirrorReplace(d, cursor, static_cast<uint32_t>(std::strlen(d->word)), newWord);
    else
        dlgMessage(s, kTextErrorReplacing, kTextCheckSpelling, "", "");
    Ui_SetFocus(s, 0);
    ++ctx.wordsChanged;
    if (std::strcmp(newWord, d->word) != 0) {
        int16_t lex = dlgTempLex(lexType);
        int16_t rc = lex < 0 ? ORTH_BAD_LEXICON_ID_ERR : ORTH_AddToLex(sid(), lex, d->word, newWord);
        if (rc < 0 && reportFailure) dlgMessage(s, kTextErrorAddingAutoChange, kTextCheckSpelling, "", "");
    }
    runChecker(s, d);
}

void deleteDoubled(UiSurface *s, CheckDlg *d) {
    uint32_t before = blockLength(d), cursor = blockCursor(d);
    ORTH_DelBlockWord(sid(), d->check->blockId);
    uint32_t after = blockLength(d);
    mirrorReplace(d, cursor, before > after ? before - after : 0, "");
    Ui_SetFocus(s, 0);
    d->doubled = false;
    ++ctx.wordsChanged;
    runChecker(s, d);
}

void ignoreAll(UiSurface *s, CheckDlg *d) {
    int16_t lex = dlgTempLex(ORTH_IGNORE_LEX_TYPE);
    int16_t rc = lex < 0 ? ORTH_BAD_LEXICON_ID_ERR : ORTH_AddToLex(sid(), lex, d->word, nullptr);
    if (rc < 0) dlgMessage(s, kTextErrorAddingWord, kTextCheckSpelling, "", "");
    advance(s, d);
}

void addWord(UiSurface *s, CheckDlg *d) {
    int32_t selected = Ui_ListGetSel(s, kCsAddWordsTo);
    if (selected >= 0) {
        int32_t slot = Ui_ListGetData(s, kCsAddWordsTo, selected);
        char word[kWordBufSize];
        getField(s, kCsWord, word);
        int16_t rc = slot >= 0 && slot < kMaxLexPerSession
                         ? ORTH_AddToLex(sid(), ctx.slots[slot].lexId, word, nullptr)
                         : ORTH_BAD_LEXICON_ID_ERR;
        if (rc < 0) dlgMessage(s, kTextErrorAddingWord, kTextCheckSpelling, "", "");
    }
    advance(s, d);
}

void suggest(UiSurface *s, CheckDlg *d) {
    getField(s, kCsWord, d->lastSuggestWord);
    if (fillSuggestions(s, d->lastSuggestWord, d->check->suggestDepth) > 0) takeFirstSuggestion(s);
    ++d->check->suggestDepth;
    updateButtons(s, d);
}

void checkInit(UiSurface *s, void *state) {
    auto *d = static_cast<CheckDlg *>(state);
    Ui_Place(s, d->check->editCtrl, ctx.dialogLocked, ctx.dialogX, ctx.dialogY);
    dlgApplyFontRule(s);
    fillAddWords(s);
    char last[kPathBufSize];
    getSetting(kKeyLastSelectedLex, kUserScope, "", last, sizeof last);
    int32_t match = Ui_ListFind(s, kCsAddWordsTo, 0, last);
    if (match >= 0) Ui_ListSetSel(s, kCsAddWordsTo, match);
    Ui_SetCheck(s, kCsLockPos, ctx.dialogLocked ? 1 : 0);
    runChecker(s, d);
}

void checkCommand(UiSurface *s, void *state, int16_t id, UiNotify notify) {
    auto *d = static_cast<CheckDlg *>(state);
    if (ctx.sessionId < 0) return closeDialog(s, ORTH_CANCEL_ERR);
    switch (id) {
    case kCsIgnore: return advance(s, d);
    case kCsIgnoreAll: return ignoreAll(s, d);
    case kCsChange:
        if (d->doubled) return deleteDoubled(s, d);
        return change(s, d, ORTH_CONDITIONAL_CHANGE_LEX_TYPE, false);
    case kCsChangeAll: return change(s, d, ORTH_AUTO_CHANGE_LEX_TYPE, true);
    case kCsAdd: return addWord(s, d);
    case kCsSuggest: return suggest(s, d);
    case kCsSuggestions:
        if (notify == UI_SEL_CHANGED) {
            char chosen[kWordBufSize];
            int32_t at = Ui_ListGetSel(s, kCsSuggestions);
            if (at >= 0 && Ui_ListGetText(s, kCsSuggestions, at, chosen, sizeof chosen) >= 0)
                Ui_SetText(s, kCsChangeTo, chosen);
        }
        return;
    case kCsChangeTo:
    case kCsWord:
        if (notify == UI_EDIT_CHANGED) updateButtons(s, d);
        return;
    case kCsDictionaries:
        runEditLexDlg(s);
        fillAddWords(s);
        return updateButtons(s, d);
    case kCsOptions:
        runOptionsDlg(s);
        return updateButtons(s, d);
    case kIdHelp: return Ui_Help(s, ctx.helpFile, kHelpContext);
    case kIdCancel: return closeDialog(s, ORTH_CANCEL_ERR);
    default: return;
    }
}

}  // namespace

int32_t runCheckSpellingDlg(UiSurface *owner, CheckContext *check) {
    CheckDlg d{};
    d.check = check;
    DialogController controller{kCheckSpellingDlg, &d, checkInit, checkCommand};
    return uiRunDialog(owner, &controller);
}
