// host/clientcheck.cpp — the client-level dialog calls and the checks they
// run: a text buffer in place (CheckBlock), a host edit control in chunks
// (checkEditCtrl), and the small client-level queries.
//
// (1) busy is raised only around the dialogs of ORTH_CheckBlockDlg,
//     ORTH_CheckCtrlDlg and ORTH_EditLexDlg; refuseWhileBusy is the one
//     guard every guarded function calls first.
// (2) checkEditCtrl walks the range in chunks of at most kMaxEditChunk
//     characters, each checked as one block while the dialog mirrors every
//     change into the control. A chunk is not cut inside a run of letters,
//     digits and punctuation, unless the run fills the whole chunk: then it
//     is checked cut, so the walk always moves on. Before each later chunk
//     the control's text is copied again, so the copy that chunks are taken
//     from always holds the changes of the chunks before.
#include <cstdint>
#include <cstring>
#include <new>

#include "check/chartab.h"
#include "host/client.h"
#include "orth.h"

namespace {

ClientContext &ctx = clientContext;

constexpr uint32_t kMaxEditChunk = 0x2FFFD;  // 196605: what one block of the control takes

CheckContext newCheckContext(OrthWindow editCtrl) {
    return CheckContext{-1, ctx.alwaysSuggest != 0 ? -1 : 0, editCtrl, 0};
}

void resetCounters() { ctx.wordsChecked = ctx.wordsChanged = ctx.errorsFound = 0; }

bool continuesWord(unsigned char c) { return (classOf(0, c) & (CC_LETTER | CC_DIGIT | CC_PUNCT)) != 0; }

// The control's whole text in a new buffer of length + 1; null when out of memory.
char *copyControlText(OrthWindow edit, uint32_t *length) {
    const ClientFrontEnd &fe = clientFrontEnd();
    uint32_t want = fe.editTextLength(edit);
    char *text = want < UINT32_MAX ? new (std::nothrow) char[want + 1] : nullptr;
    if (text == nullptr) return nullptr;
    uint32_t got = fe.editGetText(edit, text, want + 1);
    *length = got < want ? got : want;
    text[*length] = '\0';
    return text;
}

// One chunk of the range [base, end) of text: copied into a buffer with room
// to grow, shortened so no word is split, checked. Returns the chunk's new
// length, or a negative code; *checked receives its length before the check.
int32_t checkChunk(CheckContext *check, OrthWindow owner, const char *text, uint32_t base,
                   uint32_t end, uint32_t *checked) {
    uint32_t length = end - base < kMaxEditChunk ? end - base : kMaxEditChunk;
    uint32_t quarter = length / 4;
    uint32_t size = length + (quarter <= 1024 ? 1024 : quarter);
    char *chunk = new (std::nothrow) char[size];
    if (chunk == nullptr) {
        clientLog("checkEditCtrl: Out of memory");
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    std::memcpy(chunk, text + base, length);
    if (end - base > kMaxEditChunk &&
        continuesWord(static_cast<unsigned char>(text[base + length]))) {
        uint32_t shortened = length;
        while (shortened > 0 && continuesWord(static_cast<unsigned char>(chunk[shortened - 1]))) --shortened;
        if (shortened > 0) length = shortened;
    }
    check->baseOffset = base;
    *checked = length;
    int32_t rc = CheckBlock(check, owner, chunk, length, size);
    delete[] chunk;
    return rc;
}

}  // namespace

int32_t CheckBlock(CheckContext *check, OrthWindow owner, char *text, uint32_t length, uint32_t size) {
    int16_t blockId = ORTH_OpenBlock(ctx.sessionId, text, length, size, 0);
    check->blockId = blockId;
    if (blockId < 0) {
        clientLog("CheckBlock: ORTH_OpenBlock returned %d", blockId);
        return blockId;
    }
    int32_t end = clientFrontEnd().runDialog(kDialogCheckSpelling, owner, check);
    uint32_t newLength = 0, words = 0;
    int16_t rc = ORTH_GetBlockInfo(ctx.sessionId, blockId, &newLength, nullptr, nullptr, &words);
    if (rc < 0) {
        // The session went while the dialog ran: the text's new length is unknown.
        clientLog("CheckBlock: ORTH_GetBlockInfo returned %d", rc);
        return rc;
    }
    ctx.wordsChecked += words;
    ORTH_CloseBlock(ctx.sessionId, blockId);
    return end < 0 ? end : static_cast<int32_t>(newLength);
}

int16_t checkEditCtrl(CheckContext *check, OrthWindow owner, int16_t selectionOnly) {
    const ClientFrontEnd &fe = clientFrontEnd();
    OrthWindow edit = check->editCtrl;
    uint32_t length = 0, selStart = 0, selEnd = 0;
    fe.editGetSelection(edit, &selStart, &selEnd);
    selStart &= 0xFFFF;  // positions are taken as 16-bit values
    selEnd &= 0xFFFF;
    bool selection = selectionOnly != 0 && selStart != selEnd;
    char *text = copyControlText(edit, &length);
    if (text == nullptr) {
        clientLog("checkEditCtrl: Out of memory");
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    uint32_t base = 0, end = length;
    if (selection) {
        base = selStart < selEnd ? selStart : selEnd;
        end = selStart < selEnd ? selEnd : selStart;
        if (end > length) end = length;
        if (base > end) base = end;
    }
    int16_t rc = 0;
    do {
        uint32_t checked = 0;
        int32_t result = checkChunk(check, owner, text, base, end, &checked);
        if (result < 0) {
            rc = static_cast<int16_t>(result);
            break;
        }
        base += static_cast<uint32_t>(result);
        end = end - checked + static_cast<uint32_t>(result);
        if (base >= end) break;
        delete[] text;
        text = copyControlText(edit, &length);
        if (text == nullptr) {
            clientLog("checkEditCtrl: Out of memory");
            rc = ORTH_OUT_OF_MEMORY_ERR;
            break;
        }
        if (end > length) end = length;
    } while (base < end);
    if (selection) fe.editSetSelection(edit, selStart, selEnd);
    else fe.editSetSelection(edit, 0, 0);
    delete[] text;
    return rc;
}

extern "C" ORTH_API int32_t ORTH_CALL ORTH_CheckBlockDlg(OrthWindow owner, char *text, uint32_t length,
                                                        uint32_t size) noexcept {
    if (refuseWhileBusy("ORTH_CheckBlockDlg")) return ORTH_BUSY_ERR;
    int16_t rc = openClient();
    if (rc < 0) return rc;
    resetCounters();
    ctx.busy = true;
    CheckContext check = newCheckContext(nullptr);
    int32_t result = CheckBlock(&check, owner, text, length, size);
    ctx.busy = false;
    return result;
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_CheckCtrlDlg(OrthWindow owner, OrthWindow editCtrl,
                                                       int16_t selectionOnly) noexcept {
    if (refuseWhileBusy("ORTH_CheckCtrlDlg")) return ORTH_BUSY_ERR;
    if (editCtrl == nullptr) {
        clientLog("ORTH_CheckCtrlDlg: no edit control");
        return ORTH_UNSUPPORTED_ACTION_ERR;
    }
    int16_t rc = openClient();
    if (rc < 0) return rc;
    resetCounters();
    ctx.busy = true;
    CheckContext check = newCheckContext(editCtrl);
    rc = checkEditCtrl(&check, owner, selectionOnly);
    ctx.busy = false;
    return rc;
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_EditLexDlg(OrthWindow owner) noexcept {
    if (refuseWhileBusy("ORTH_EditLexDlg")) return ORTH_BUSY_ERR;
    int16_t rc = openClient();
    if (rc < 0) return rc;
    ctx.busy = true;
    int32_t end = clientFrontEnd().runDialog(kDialogDictionaries, owner, nullptr);
    ctx.busy = false;
    return static_cast<int16_t>(end);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_OptionsDlg(OrthWindow owner) noexcept {
    if (refuseWhileBusy("ORTH_OptionsDlg")) return ORTH_BUSY_ERR;
    int16_t rc = openClient();
    if (rc < 0) return rc;
    return static_cast<int16_t>(clientFrontEnd().runDialog(kDialogOptions, owner, nullptr));
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_GetLexId(const char *fileName) noexcept {
    int16_t rc = openClient();
    if (rc < 0) return rc;
    if (fileName == nullptr) fileName = "";
    for (const ClientLexSlot &slot : ctx.slots) {
        if (slot.kind == CLIENT_LEX_FREE) continue;
        if (compareNoCase(slot.fileName, fileName, 0) == 0 ||
            compareNoCase(bareFileName(slot.fileName), fileName, 0) == 0) {
            return slot.lexId;
        }
    }
    clientLog("ORTH_GetLexId: No such lexicon: %s", fileName);
    return ORTH_FILE_NOT_FOUND_ERR;
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_GetSid(void) noexcept {
    int16_t rc = openClient();
    return rc < 0 ? rc : ctx.sessionId;
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_ClearTempLex(void) noexcept {
    if (refuseWhileBusy("ORTH_ClearTempLex")) return ORTH_BUSY_ERR;
    int16_t rc = openClient();
    if (rc < 0) return rc;
    for (const ClientLexSlot &slot : ctx.slots) {
        if (slot.kind == CLIENT_LEX_TEMP) ORTH_ClearLex(ctx.sessionId, slot.lexId);
    }
    return 0;
}

extern "C" ORTH_API void ORTH_CALL ORTH_GetStatistics(uint32_t *wordsChecked, uint32_t *wordsChanged,
                                                     uint32_t *errorsFound) noexcept {
    if (wordsChecked != nullptr) *wordsChecked = ctx.wordsChecked;
    if (wordsChanged != nullptr) *wordsChanged = ctx.wordsChanged;
    if (errorsFound != nullptr) *errorsFound = ctx.errorsFound;
}

extern "C" ORTH_API void ORTH_CALL ORTH_SetDialogOrigin(int16_t x, int16_t y) noexcept {
    ctx.dialogX = x;
    ctx.dialogY = y;
    ctx.dialogLocked = true;
}
