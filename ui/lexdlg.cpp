// ui/lexdlg.cpp — the Dictionaries dialog (the client's user lexicons and
// their entries, with import and export as text) and the New Dictionary
// dialog it starts.
//
// Design notes
// (1) The Files list holds every client slot of kind CLIENT_LEX_USER, each
//     entry carrying its slot index; a change to that set goes to the slots
//     and to UserLexFiles (updateUserLexFiles) at once. An entry or file
//     that fails leaves the slots as they were.
// (2) Entries go to the lexicon at once; the text lexicon keeps its file in
//     step. The Words list is read back from the lexicon after every change.
// (3) With no file selected (the list is empty) the labels are cleared and
//     the buttons that need a file are disabled; every command that needs a
//     file checks for one, whatever its button's state.
// (4) Import ends at the end of its file. A token that comes out empty
//     before that (a colon where a word would begin, in a lexicon without
//     replacements) is passed over rather than taken for the end, so no
//     later line of the file is lost.
#include <cstring>
#include <new>

#include "check/chartab.h"
#include "host/client.h"
#include "host/texts.h"
#include "orth.h"
#include "platform/platform.h"
#include "ui/clientui.h"
#include "ui/controllers.h"
#include "ui/dlgshared.h"

namespace {

ClientContext &ctx = clientContext;

constexpr int kEntryTextSize = 128;  // the Words field as Add Word and Delete Word read it
constexpr uint32_t kHelpDictionaries = 300;
constexpr uint32_t kHelpNewDictionary = 400;
constexpr int kLanguageCount = 20;
#ifdef _WIN32
const char kLineEnd[] = "\r\n";
#else
const char kLineEnd[] = "\n";
#endif

bool isPairType(int type) { return type == ORTH_AUTO_CHANGE_LEX_TYPE || type == ORTH_CONDITIONAL_CHANGE_LEX_TYPE; }

// --- Import tokens. ---

int takeByte(ImportReader *r) {
    if (r->next >= r->have) {
        if (r->ended) return -1;
        int32_t n = platRead(r->file, r->buffer, sizeof r->buffer);
        if (n <= 0) {
            r->ended = true;
            return -1;
        }
        r->have = n;
        r->next = 0;
    }
    return r->buffer[r->next++];
}

bool isTokenChar(int c) { return (classOf(0, static_cast<unsigned char>(c)) & (CC_LETTER | CC_DIGIT | CC_PUNCT)) != 0; }

// Reads one token; its length, and -1 at the end of the file.
int readOneToken(ImportReader *r, bool colonEnds, char *token) {
    int c;
    for (;;) {
        c = takeByte(r);
        if (c < 0) return -1;
        if (!isTokenChar(c)) continue;
        if (c != '#' && c != ';') break;
        while ((c = takeByte(r)) >= 0 && c != '\n') {}
        if (c < 0) return -1;
    }
    int n = 0;
    for (;;) {
        if (!isTokenChar(c) || (colonEnds && c == ':')) break;  // consumed
        if (n == kImportTokenMax) break;  // the character after the 80th is dropped
        token[n++] = static_cast<char>(c);
        c = takeByte(r);
        if (c < 0) break;
    }
    token[n] = '\0';
    return n;
}

// --- The Dictionaries dialog. ---

// A lexicon image is entries, each ending in a zero, then an empty entry.
// The last byte is made a zero first, so no walk can pass the buffer.
const char *nextEntry(const char *p) { return p + std::strlen(p) + 1; }

int32_t selectedFile(UiSurface *s) { return Ui_ListGetSel(s, kElFiles); }

// The client slot of the selected file, or -1.
int selectedSlot(UiSurface *s) {
    int32_t at = selectedFile(s);
    if (at < 0) return -1;
    int32_t slot = Ui_ListGetData(s, kElFiles, at);
    return slot >= 0 && slot < kMaxLexPerSession ? slot : -1;
}

int16_t selectedLex(UiSurface *s) {
    int slot = selectedSlot(s);
    return slot < 0 ? ORTH_BAD_LEXICON_ID_ERR : ctx.slots[slot].lexId;
}

void selectedFileName(UiSurface *s, char name[kPathBufSize]) {
    name[0] = '\0';
    int32_t at = selectedFile(s);
    if (at >= 0) Ui_ListGetText(s, kElFiles, at, name, kPathBufSize);
}

void updateButtons(UiSurface *s) {
    bool file = selectedFile(s) >= 0;
    char entry[kEntryTextSize];
    Ui_GetText(s, kElWords, entry, sizeof entry);
    Ui_Enable(s, kElAddWord, entry[0] != '\0' && file);
    Ui_Enable(s, kElDeleteWord, Ui_ListGetSel(s, kElWords) >= 0 && file);
    Ui_Enable(s, kElImport, file);
    Ui_Enable(s, kElExport, file);
    Ui_Enable(s, kElRemoveFile, file);
    bool room = findFreeLexSlot() >= 0;
    Ui_Enable(s, kElAddFile, room);
    Ui_Enable(s, kElNew, room);
}

void setLabel(UiSurface *s, int16_t id, uint32_t textId) {
    char text[kDlgTextSize];
    dlgText(textId, text, sizeof text);
    Ui_SetText(s, id, text);
}

uint32_t typeTextId(uint16_t type) {
    switch (type) {
    case ORTH_AUTO_CHANGE_LEX_TYPE: return kTextTypeAutoChange;
    case ORTH_IGNORE_LEX_TYPE: return kTextTypeIgnore;
    case ORTH_CONDITIONAL_CHANGE_LEX_TYPE: return kTextTypeConditional;
    default: return kTextTypeExclude;
    }
}

uint32_t languageTextId(int16_t language) {
    for (int i = 0; i < kLanguageCount; ++i)
        if (languageNameTable[i].id == language) return kLanguageTextIds[i];
    return kLanguageTextIds[kLanguageCount - 1];  // "Other"
}

void refreshEntries(UiSurface *s) {
    Ui_ListReset(s, kElWords);
    if (selectedFile(s) < 0) {
        Ui_SetText(s, kElType, "");
        Ui_SetText(s, kElLanguage, "");
        return updateButtons(s);
    }
    Ui_WaitCursor(s, true);
    int16_t lex = selectedLex(s);
    uint32_t size = 0;
    uint16_t type = 0, language = 0;
    int16_t rc = lex < 0 ? lex : ORTH_GetLexInfo(ctx.sessionId, lex, &size, nullptr, &type, &language);
    if (rc >= 0 && size >= 1) {
        char *image = new (std::nothrow) char[size];
        if (image != nullptr && ORTH_GetLex(ctx.sessionId, lex, image, size) >= 0) {
            image[size - 1] = '\0';
            for (const char *p = image; p < image + size && *p != '\0'; p = nextEntry(p))
                Ui_ListAdd(s, kElWords, p);
        }
        delete[] image;
    }
    Ui_ListSetSel(s, kElWords, 0);
    if (rc >= 0) {
        setLabel(s, kElType, typeTextId(type));
        setLabel(s, kElLanguage, languageTextId(static_cast<int16_t>(language)));
    } else {
        Ui_SetText(s, kElType, "");
        Ui_SetText(s, kElLanguage, "");
    }
    updateButtons(s);
    Ui_WaitCursor(s, false);
}

// Selects the Files entry carrying slot; false when there is none.
bool selectSlotEntry(UiSurface *s, int slot) {
    int32_t count = Ui_ListCount(s, kElFiles);
    for (int32_t i = 0; i < count; ++i) {
        if (Ui_ListGetData(s, kElFiles, i) == slot) {
            Ui_ListSetSel(s, kElFiles, i);
            return true;
        }
    }
    return false;
}

void listSlot(UiSurface *s, int slot) {
    int32_t at = Ui_ListAdd(s, kElFiles, ctx.slots[slot].fileName);
    Ui_ListSetData(s, kElFiles, at, slot);
}

void recordSlot(int slot, const char *name, int16_t lexId, uint32_t kind) {
    ClientLexSlot &entry = ctx.slots[slot];
    std::strncpy(entry.fileName, name, kMaxPathLen);
    entry.fileName[kMaxPathLen] = '\0';
    entry.lexId = lexId;
    entry.kind = kind;
}

void freeSlot(int slot) { recordSlot(slot, "", -1, CLIENT_LEX_FREE); }

// Add Word: "word:replacement" for the pair types, the word alone otherwise.
void addWord(UiSurface *s) {
    int16_t lex = selectedLex(s);
    if (lex < 0) return;
    char text[kEntryTextSize], word[kEntryTextSize], replacement[kWordBufSize];
    Ui_GetText(s, kElWords, text, sizeof text);
    const char *with = nullptr;
    std::strcpy(word, text);
    if (isPairType(dlgLexType(lex))) {
        char *colon = std::strchr(word, ':');
        if (colon == nullptr) {
            dlgMessage(s, kTextEnterPair, kTextEditDictionaries, "", "");
            return;
        }
        *colon = '\0';
        std::strncpy(replacement, colon + 1, kMaxWordLen);
        replacement[kMaxWordLen] = '\0';
        with = replacement;
        if (std::strlen(word) > static_cast<size_t>(kMaxWordLen)) {
            // Cut, it would become another word; the entry is refused.
            clientLog("Add Word: word of %u characters refused", static_cast<unsigned>(std::strlen(word)));
            dlgMessage(s, kTextErrorAddingEntry, kTextEditDictionaries, "", "");
            return;
        }
    } else {
        word[kMaxWordLen] = '\0';
    }
    int16_t rc = ORTH_AddToLex(ctx.sessionId, lex, word, with);
    if (rc == ORTH_OUT_OF_MEMORY_ERR) {
        char name[kPathBufSize];
        selectedFileName(s, name);
        dlgMessage(s, kTextDictionaryFull, kTextEditDictionaries, name, "");
    } else if (rc < 0) {
        dlgMessage(s, kTextErrorAddingEntry, kTextEditDictionaries, "", "");
    } else {
        int32_t at = Ui_ListGetSel(s, kElWords);
        refreshEntries(s);
        Ui_ListSetSel(s, kElWords, at);
        updateButtons(s);
    }
}

void deleteWord(UiSurface *s) {
    int16_t lex = selectedLex(s);
    if (lex < 0) return;
    char text[kEntryTextSize];
    Ui_GetText(s, kElWords, text, sizeof text);
    char *colon = std::strchr(text, ':');
    if (colon != nullptr) *colon = '\0';
    ORTH_DelFromLex(ctx.sessionId, lex, text);
    int32_t at = Ui_ListGetSel(s, kElWords);
    refreshEntries(s);
    Ui_ListSetSel(s, kElWords, at);
    updateButtons(s);
}

UiFileRequest fileRequest(bool save, uint32_t filterId, uint32_t titleId, const char *fileName, char *filter,
                          char *title) {
    dlgText(filterId, filter, kDlgTextSize * 2);
    dlgText(titleId, title, kDlgTextSize);
    uint32_t flags = save ? kUiPathMustExist | kUiOverwritePrompt : kUiFileMustExist | kUiPathMustExist;
    return UiFileRequest{save, filter, title, ctx.userLexFolder, fileName, flags};
}

bool chooseFile(UiSurface *s, bool save, uint32_t filterId, uint32_t titleId, const char *start,
                char path[kPathBufSize]) {
    char filter[kDlgTextSize * 2], title[kDlgTextSize];
    UiFileRequest request = fileRequest(save, filterId, titleId, start, filter, title);
    path[0] = '\0';
    return Ui_FileDialog(s, &request, path, kPathBufSize);
}

void addFile(UiSurface *s) {
    char path[kPathBufSize];
    if (!chooseFile(s, false, kTextDictionaryFilter, kTextAddDictionaryFile, "", path)) return;
    const char *name = dlgDisplayName(path);
    int slot = findLexSlot(name);
    if (slot >= 0) {
        if (!selectSlotEntry(s, slot)) {
            dlgMessage(s, kTextCannotAdd, kTextEditDictionaries, path, "");
            return;
        }
    } else {
        slot = findFreeLexSlot();
        if (slot < 0) return;
        int16_t lex = ORTH_OpenLex(ctx.sessionId, path, 0);
        if (lex < 0) {
            dlgMessage(s, kTextErrorOpeningDictionary, kTextEditDictionaries, path, "");
            return;
        }
        uint16_t format = 0;
        ORTH_GetLexInfo(ctx.sessionId, lex, nullptr, &format, nullptr, nullptr);
        if (format != ORTH_TEXT_LEX_FORMAT) {
            dlgMessage(s, kTextWrongFormat, kTextEditDictionaries, path, "");
            ORTH_CloseLex(ctx.sessionId, lex);
            return;
        }
        recordSlot(slot, name, lex, CLIENT_LEX_USER);
        listSlot(s, slot);
        selectSlotEntry(s, slot);
    }
    refreshEntries(s);
    updateUserLexFiles();
}

void removeFile(UiSurface *s) {
    int32_t at = selectedFile(s);
    int slot = selectedSlot(s);
    if (at < 0) return;
    Ui_ListDelete(s, kElFiles, at);
    Ui_ListSetSel(s, kElFiles, 0);
    if (slot >= 0) {
        if (ctx.slots[slot].lexId >= 0) ORTH_CloseLex(ctx.sessionId, ctx.slots[slot].lexId);
        freeSlot(slot);
    }
    refreshEntries(s);
    updateUserLexFiles();
}

void newFile(UiSurface *s) {
    NewLexChoice choice{};
    if (runNewLexDlg(s, &choice) == ORTH_CANCEL_ERR) return;
    char path[kPathBufSize];
    joinLexPath(ctx.userLexFolder, choice.fileName, path);
    const char *name = dlgDisplayName(choice.fileName);
    int slot = findFreeLexSlot();
    if (slot < 0) return;
    int16_t lex = ORTH_CreateLex(ctx.sessionId, path, choice.type, static_cast<uint16_t>(choice.language));
    if (lex < 0) {
        dlgMessage(s, kTextErrorCreatingDictionary, kTextEditDictionaries, path, "");
        return;
    }
    recordSlot(slot, name, lex, CLIENT_LEX_USER);
    listSlot(s, slot);
    selectSlotEntry(s, slot);
    refreshEntries(s);
    updateUserLexFiles();
}

bool writeAll(int32_t file, const char *text, size_t n) {
    return platWrite(file, text, static_cast<uint32_t>(n)) == static_cast<int32_t>(n);
}

void exportFile(UiSurface *s) {
    int16_t lex = selectedLex(s);
    char path[kPathBufSize];
    if (lex < 0 || !chooseFile(s, true, kTextTextFilter, kTextExportDictionary, "", path)) return;
    int32_t file = platCreate(path);
    if (file < 0) {
        dlgMessage(s, kTextErrorOpeningFile, kTextEditDictionaries, path, "");
        return;
    }
    Ui_WaitCursor(s, true);
    uint32_t size = 0;
    bool ok = true;
    if (ORTH_GetLexInfo(ctx.sessionId, lex, &size, nullptr, nullptr, nullptr) >= 0 && size >= 1) {
        char *image = new (std::nothrow) char[size];
        ok = image != nullptr && ORTH_GetLex(ctx.sessionId, lex, image, size) >= 0;
        if (ok) image[size - 1] = '\0';
        for (const char *p = image; ok && p < image + size && *p != '\0'; p = nextEntry(p))
            ok = writeAll(file, p, std::strlen(p)) && writeAll(file, kLineEnd, sizeof kLineEnd - 1);
        delete[] image;
    }
    platClose(file);
    Ui_WaitCursor(s, false);
    if (!ok) {
        clientLog("Export: %s not written whole", path);
        dlgMessage(s, kTextErrorOpeningFile, kTextEditDictionaries, path, "");
    }
}

void importFile(UiSurface *s) {
    int16_t lex = selectedLex(s);
    char path[kPathBufSize];
    if (lex < 0 || !chooseFile(s, false, kTextTextFilter, kTextImportDictionary, "", path)) return updateButtons(s);
    int32_t file = platOpenRead(path);
    if (file < 0) {
        dlgMessage(s, kTextErrorOpeningFile, kTextEditDictionaries, path, "");
        return;
    }
    Ui_WaitCursor(s, true);
    bool pairs = isPairType(dlgLexType(lex));
    ImportReader reader;
    importReaderOpen(&reader, file);
    char token[kImportTokenMax + 1];
    while (importReadToken(&reader, !pairs, token) > 0) {
        const char *replacement = nullptr;
        if (pairs) {
            char *colon = std::strchr(token, ':');
            if (colon == nullptr) {
                if (dlgQuestion(s, kTextEnterPair, kTextEditDictionaries) == kIdCancel) break;
                continue;
            }
            *colon = '\0';
            replacement = colon + 1;
        }
        int16_t rc = ORTH_AddToLex(ctx.sessionId, lex, token, replacement);
        if (rc == ORTH_OUT_OF_MEMORY_ERR) {
            char name[kPathBufSize];
            selectedFileName(s, name);
            dlgMessage(s, kTextDictionaryFull, kTextEditDictionaries, name, "");
            break;
        }
        if (rc < 0) {
            dlgMessage(s, kTextErrorAddingEntry, kTextEditDictionaries, "", "");
            break;
        }
    }
    platClose(file);
    Ui_WaitCursor(s, false);
    refreshEntries(s);
    updateButtons(s);
}

void editLexInit(UiSurface *s, void *) {
    dlgApplyFontRule(s);
    for (int i = 0; i < kMaxLexPerSession; ++i)
        if (ctx.slots[i].kind == CLIENT_LEX_USER) listSlot(s, i);
    Ui_ListSetSel(s, kElFiles, 0);
    refreshEntries(s);
    updateButtons(s);
}

void editLexCommand(UiSurface *s, void *, int16_t id, UiNotify notify) {
    switch (id) {
    case kElWords: return updateButtons(s);
    case kElFiles:
        if (notify == UI_SEL_CHANGED) refreshEntries(s);
        return;
    case kElAddWord: return addWord(s);
    case kElDeleteWord: return deleteWord(s);
    case kElAddFile: return addFile(s);
    case kElRemoveFile: return removeFile(s);
    case kElNew: return newFile(s);
    case kElImport: return importFile(s);
    case kElExport: return exportFile(s);
    case kIdHelp: return Ui_Help(s, ctx.helpFile, kHelpDictionaries);
    case kIdCancel: return Ui_EndDialog(s, 0);
    default: return;
    }
}

// --- The New Dictionary dialog. ---

struct NewLexDlg {
    NewLexChoice *out;
};

// The file chosen by the last Browse, where the next Browse starts.
char lastBrowsed[kPathBufSize];

struct TypeRadio {
    int16_t radio;
    int16_t type;
};
// In the order OK looks at them.
const TypeRadio kTypeRadios[] = {
    {kNlAutoChange, ORTH_AUTO_CHANGE_LEX_TYPE},
    {kNlIgnore, ORTH_IGNORE_LEX_TYPE},
    {kNlConditional, ORTH_CONDITIONAL_CHANGE_LEX_TYPE},
    {kNlExclude, ORTH_EXCLUDE_LEX_TYPE},
};

void newLexInit(UiSurface *s, void *) {
    Ui_SetText(s, kNlFileName, "");
    for (int i = 0; i < kLanguageCount; ++i) {
        char name[kDlgTextSize];
        dlgText(kLanguageTextIds[i], name, sizeof name);
        int32_t at = Ui_ListAdd(s, kNlLanguage, name);
        Ui_ListSetData(s, kNlLanguage, at, languageNameTable[i].id);
    }
    Ui_ListSetSel(s, kNlLanguage, 0);
    Ui_SetCheck(s, kNlIgnore, 1);
    dlgApplyFontRule(s);
}

void browse(UiSurface *s) {
    char path[kPathBufSize];
    if (!chooseFile(s, true, kTextDictionaryFilter, kTextCreateDictionaryFile, lastBrowsed, path)) return;
    std::memcpy(lastBrowsed, path, sizeof path);
    Ui_SetText(s, kNlFileName, dlgDisplayName(path));
}

void newLexCommand(UiSurface *s, void *state, int16_t id, UiNotify) {
    auto *d = static_cast<NewLexDlg *>(state);
    switch (id) {
    case kNlBrowse: return browse(s);
    case kIdOk: {
        NewLexChoice &out = *d->out;
        out.type = ORTH_IGNORE_LEX_TYPE;
        for (const TypeRadio &r : kTypeRadios) {
            if (Ui_GetCheck(s, r.radio) != 0) {
                out.type = r.type;
                break;
            }
        }
        Ui_GetText(s, kNlFileName, out.fileName, kPathBufSize);
        int32_t at = Ui_ListGetSel(s, kNlLanguage);
        out.language = at < 0 ? -1 : static_cast<int16_t>(Ui_ListGetData(s, kNlLanguage, at));
        return Ui_EndDialog(s, 0);
    }
    case kIdCancel: return Ui_EndDialog(s, ORTH_CANCEL_ERR);
    case kIdHelp: return Ui_Help(s, ctx.helpFile, kHelpNewDictionary);
    default: return;
    }
}

}  // namespace

void importReaderOpen(ImportReader *r, int32_t file) {
    r->file = file;
    r->have = r->next = 0;
    r->ended = false;
}

int importReadToken(ImportReader *r, bool colonEnds, char token[kImportTokenMax + 1]) {
    for (;;) {
        int n = readOneToken(r, colonEnds, token);
        if (n < 0) {
            token[0] = '\0';
            return 0;
        }
        if (n > 0) return n;
    }
}

int32_t runEditLexDlg(UiSurface *owner) {
    DialogController controller{kEditLexDlg, nullptr, editLexInit, editLexCommand};
    return uiRunDialog(owner, &controller);
}

int32_t runNewLexDlg(UiSurface *owner, NewLexChoice *out) {
    NewLexDlg d{out};
    DialogController controller{kNewLexDlg, &d, newLexInit, newLexCommand};
    return uiRunDialog(owner, &controller);
}
