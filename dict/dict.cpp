// dict/dict.cpp — the exported Dict functions, built on the ORTH_ API and one
// hook of the engine's session table (invariant 6).
//
// Design notes (the handle)
// (1) A handle owns one session from DictOpen to DictClose. In that session
//     the companion text lexicon takes id 0, the user word lexicon id 1 and the
//     main lexicon id 2, so a companion entry decides before the user's words
//     and the main lexicon. DictOpen either returns a handle with all three
//     open or releases everything it opened (tearDown).
// (2) Every live handle is in the list from firstLive, from DictOpen until
//     DictClose; a null, unknown or closed handle is refused with the
//     function's failure value before anything is touched.
// (6) A host may close a handle's session itself (ORTH_CloseSession). The
//     engine tells orphanHandle, which turns the handle into an orphan:
//     session and lexicon ids -1, so no later call reaches the session id,
//     which the engine may already have given to someone else. An orphan
//     stays live until its DictClose, which releases it without a save (its
//     words went with the session); every other call refuses it. This one
//     hook on the engine's session table is the layer's only use of the
//     engine beyond the ORTH_ API.
// (3) sugList always holds a terminated list whose entries are whole
//     suggestions of the word last handed to the engine, and cursor is the
//     offset of an entry's first byte or of the terminating empty string.
//     nextSuggestion keeps this true whether ORTH_Suggest succeeds or fails;
//     on a failure the complete suggestions that fitted are kept (cut at the
//     score threshold) and the cursor restarts at 0.
// (4) pendingWord is non-empty only between a rejected DictCheckWord and the
//     next DictGetNextSug, which asks the engine once for it and empties it.
// (5) A path the builder refuses is never opened or written: at open it counts
//     as a missing file, at close the save is skipped.
#include <cstdlib>
#include <cstring>
#include <new>

#include "dict/dict_int.h"
#include "engine/session.h"
#include "orth.h"
#include "platform/platform.h"

namespace {

DictHandle *firstLive = nullptr;  // live handles, orphans included (invariant 2)

bool isLive(const DictHandle *handle) {
    if (handle == nullptr) return false;
    for (const DictHandle *h = firstLive; h != nullptr; h = h->nextLive)
        if (h == handle) return true;
    return false;
}

// A live handle whose session is still its own.
bool isUsable(const DictHandle *handle) { return isLive(handle) && handle->sessionId != -1; }

// The engine's hook: a session is closing. A live handle that holds it
// becomes an orphan (invariant 6); DictClose unlinks its handle first, so
// its own close never gets here.
void orphanHandle(int16_t sessionId) {
    for (DictHandle *h = firstLive; h != nullptr; h = h->nextLive) {
        if (h->sessionId == sessionId) {
            h->sessionId = h->mainLexId = h->companionLexId = h->userLexId = -1;
            h->pendingWord[0] = '\0';
            h->sugList[0] = '\0';
            h->cursor = 0;
        }
    }
}

void registerHandle(DictHandle *handle) {
    setSessionCloseHook(orphanHandle);
    handle->nextLive = firstLive;
    firstLive = handle;
}

void unregisterHandle(DictHandle *handle) {
    for (DictHandle **at = &firstLive; *at != nullptr; at = &(*at)->nextLive) {
        if (*at == handle) {
            *at = handle->nextLive;
            return;
        }
    }
}

// Copies at most max bytes of a zero-terminated string; tells whether the
// source had more.
bool copyBounded(char *dst, const char *src, size_t max) {
    size_t n = 0;
    while (n < max && src[n] != '\0') { dst[n] = src[n]; ++n; }
    dst[n] = '\0';
    return src[n] != '\0';
}

void closeLexIf(int32_t sessionId, int32_t *lexId) {
    if (*lexId != -1) {
        ORTH_CloseLex(static_cast<int16_t>(sessionId), static_cast<int16_t>(*lexId));
        *lexId = -1;
    }
}

// Closes what the handle holds (main, companion, user lexicon, then the
// session) and releases the handle.
void tearDown(DictHandle *handle) {
    if (handle->sessionId != -1) {
        closeLexIf(handle->sessionId, &handle->mainLexId);
        closeLexIf(handle->sessionId, &handle->companionLexId);
        closeLexIf(handle->sessionId, &handle->userLexId);
        ORTH_CloseSession(static_cast<int16_t>(handle->sessionId));
        handle->sessionId = -1;
    }
    std::free(handle);
}

// Opens the lexicon name of the handle's folder; a refused path fails as a
// missing file would. Returns the lexicon id or a negative code.
int16_t openFolderLex(DictHandle *handle, const char *name) {
    char path[kDictPathBufSize];
    if (handle->folderTooLong || !buildDictPath(handle->folderPath, name, path))
        return ORTH_FILE_NOT_FOUND_ERR;
    return ORTH_OpenLex(static_cast<int16_t>(handle->sessionId), path, 0xFFFFFFFFu);
}

// Builds the user word list's path; false when it cannot be built.
bool userListPath(const DictHandle *handle, char path[kDictPathBufSize]) {
    if (handle->folderTooLong || handle->userListNameTooLong) return false;
    return buildDictPath(handle->folderPath, handle->userListName, path);
}

// Ends the list at the first suggestion scored below the threshold, and at the
// last whole entry within the list buffer.
void cutSuggestions(DictHandle *handle) {
    handle->sugList[kDictSugListSize - 1] = '\0';
    uint32_t pos = 0;
    for (int n = 0; handle->sugList[pos] != '\0'; ++n) {
        if (n >= kDictMaxSugs || handle->sugScores[n] < kDictMinScore) {
            handle->sugList[pos] = '\0';
            return;
        }
        pos += static_cast<uint32_t>(std::strlen(handle->sugList + pos)) + 1;
        if (pos >= kDictSugListSize) {
            // Unreachable with a terminated buffer; kept so a walk never leaves it.
            handle->sugList[0] = '\0';
            return;
        }
    }
}

// Asks the engine for the pending word's suggestions (invariant 3).
void computeSuggestions(DictHandle *handle) {
    std::memset(handle->sugScores, 0, sizeof handle->sugScores);
    int16_t rc = ORTH_Suggest(static_cast<int16_t>(handle->sessionId), handle->pendingWord, -1,
                              handle->sugList, kDictSugListSize, handle->sugScores, kDictMaxSugs);
    // A list that did not fit still holds its complete entries; any other
    // failure leaves nothing trustworthy.
    if (rc < 0 && rc != ORTH_BUFFER_TOO_SMALL_ERR) handle->sugList[0] = '\0';
    cutSuggestions(handle);
    handle->cursor = 0;
    handle->pendingWord[0] = '\0';
}

}  // namespace

bool buildDictPath(const char *folderPath, const char *name, char out[kDictPathBufSize]) {
    out[0] = '\0';
    if (folderPath == nullptr || name == nullptr) return false;
    size_t driveLen = (folderPath[0] != '\0' && folderPath[1] == ':') ? 2 : 0;
    size_t dirEnd = driveLen;  // one past the last separator
    for (size_t i = driveLen; folderPath[i] != '\0'; ++i)
        if (folderPath[i] == '\\' || folderPath[i] == '/') dirEnd = i + 1;
    size_t nameLen = std::strlen(name);
    if (dirEnd + nameLen >= kDictPathBufSize) return false;
    std::memcpy(out, folderPath, dirEnd);
    std::memcpy(out + dirEnd, name, nameLen + 1);
    return true;
}

void makeCompanionName(const char *mainName, char out[kDictMainNameMax + 5]) {
    size_t len = 0;
    while (len < kDictMainNameMax && mainName[len] != '\0') ++len;
    size_t dot = 0;
    for (size_t i = len; i > 1; --i)
        if (mainName[i - 1] == '.') { dot = i - 1; break; }
    std::memcpy(out, mainName, dot);
    std::memcpy(out + dot, ".TLX", 5);
}

// The handle, or null when the allocation, the session or any of the three
// lexicons fails (everything opened is closed first).
DICT_API DictHandle *DICT_CALL DictOpen(const char *folderPath, const void *params,
                                        int32_t /*unused*/) noexcept {
    if (folderPath == nullptr || params == nullptr) return nullptr;
    auto *handle = static_cast<DictHandle *>(std::calloc(1, sizeof(DictHandle)));
    if (handle == nullptr) return nullptr;
    const auto *record = static_cast<const unsigned char *>(params);
    handle->folderTooLong = copyBounded(handle->folderPath, folderPath, kDictPathBufSize - 1);
    copyBounded(handle->mainName, reinterpret_cast<const char *>(record + DICT_PARAMS_MAIN_LEX_NAME),
                kDictMainNameMax);
    handle->userListNameTooLong = copyBounded(
        handle->userListName, reinterpret_cast<const char *>(record + DICT_PARAMS_USER_LIST),
        kDictPathBufSize - 1);
    uint16_t language = static_cast<uint16_t>(record[DICT_PARAMS_LANGUAGE] |
                                              (record[DICT_PARAMS_LANGUAGE + 1] << 8));
    handle->mainLexId = handle->companionLexId = handle->userLexId = -1;

    handle->sessionId = ORTH_OpenSession();
    if (handle->sessionId < 0) {
        handle->sessionId = -1;
        tearDown(handle);
        return nullptr;
    }
    int16_t session = static_cast<int16_t>(handle->sessionId);

    char companion[kDictMainNameMax + 5];
    makeCompanionName(handle->mainName, companion);
    int16_t rc = openFolderLex(handle, companion);
    if (rc < 0) { tearDown(handle); return nullptr; }
    handle->companionLexId = rc;

    rc = ORTH_CreateLex(session, nullptr, ORTH_IGNORE_LEX_TYPE, language);
    if (rc < 0) { tearDown(handle); return nullptr; }
    handle->userLexId = rc;

    char listPath[kDictPathBufSize];
    if (userListPath(handle, listPath)) loadUserList(handle, listPath);

    rc = openFolderLex(handle, handle->mainName);
    if (rc < 0) { tearDown(handle); return nullptr; }
    handle->mainLexId = rc;

    registerHandle(handle);
    return handle;
}

// 1 once the list is saved (or its save failed) and the handle is released;
// an orphan is released without a save. 0 for a null or unknown handle,
// which is left alone.
DICT_API int32_t DICT_CALL DictClose(DictHandle *handle) noexcept {
    if (!isLive(handle)) return 0;
    char listPath[kDictPathBufSize];
    if (handle->sessionId != -1 && userListPath(handle, listPath)) saveUserList(handle, listPath);
    unregisterHandle(handle);
    tearDown(handle);
    return 1;
}

// 0 when the word is accepted (numbers without a lookup), 1 when it is not,
// when the engine fails, or for a null, unknown or orphaned handle. A null word is an
// empty word.
DICT_API int32_t DICT_CALL DictCheckWord(DictHandle *handle, const char *word) noexcept {
    if (!isUsable(handle)) return 1;
    char work[kDictWordBufSize] = {};
    if (word != nullptr) copyBounded(work, word, kDictWordBufSize - 1);

    const char *rest = work;
    while (*rest >= '0' && *rest <= '9') ++rest;
    if (rest[0] == '\0') return 0;
    if (rest[1] == '\0' && !platIsCharAlpha(static_cast<unsigned char>(rest[0]))) return 0;

    size_t len = std::strlen(work);
    if (work[len - 1] == '.') work[len - 1] = '\0';

    int16_t rc = ORTH_CheckWord(static_cast<int16_t>(handle->sessionId), ORTH_REPORT_SPELLING_OPT,
                                work, handle->replacement, kDictWordBufSize);
    if (rc == 0) return 0;
    std::memcpy(handle->pendingWord, work, kDictWordBufSize);
    return 1;
}

// 1 with the next suggestion (at most 63 characters and a zero) in buffer; 0
// when there is none left, for a null buffer, or a null, unknown or orphaned handle.
DICT_API int32_t DICT_CALL DictGetNextSug(DictHandle *handle, char *buffer) noexcept {
    if (!isUsable(handle) || buffer == nullptr) return 0;
    if (handle->pendingWord[0] != '\0') computeSuggestions(handle);
    if (handle->cursor >= kDictSugListSize) return 0;
    const char *sug = handle->sugList + handle->cursor;
    if (*sug == '\0') return 0;
    size_t len = std::strlen(sug);
    std::memcpy(buffer, sug, len + 1);
    handle->cursor += static_cast<uint32_t>(len) + 1;
    return 1;
}

// 0 always; the engine's refusal (or an unknown or orphaned handle) adds nothing.
DICT_API int32_t DICT_CALL DictAddWord(DictHandle *handle, const char *word) noexcept {
    if (!isUsable(handle) || word == nullptr) return 0;
    ORTH_AddToLex(static_cast<int16_t>(handle->sessionId), static_cast<int16_t>(handle->userLexId),
                  word, nullptr);
    return 0;
}

// 0 always; a word not in the list (or an unknown or orphaned handle) changes nothing.
int16_t DictDeleteWord(DictHandle *handle, const char *word) noexcept {
    if (!isUsable(handle) || word == nullptr) return 0;
    ORTH_DelFromLex(static_cast<int16_t>(handle->sessionId),
                    static_cast<int16_t>(handle->userLexId), word);
    return 0;
}
