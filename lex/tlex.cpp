// lex/tlex.cpp — text lexicon: a sorted array of entries in memory, written
// whole to its .TLX file after every change.
//
// Design notes
// (1) entries[0, count) is sorted ascending by word, byte-wise unsigned
//     (compareBytes). TLex_Add inserts at the lower bound, loadLexFile sorts
//     after reading, TLex_Delete closes the gap. Equal words sit side by side
//     only when a file held a word twice.
// (2) The lexicon's file is always the old or the new image: saveLexFile
//     writes every line to "AAAAORTH.TMP" in the lexicon's folder and only
//     then renames it over the file (platReplace), which is never deleted
//     first. A short write deletes the temporary file and leaves the
//     lexicon's file untouched; a failed rename keeps it, as it may then
//     hold the only copy of the entries.
// (3) Writers in several processes share that temporary name. A change
//     owns the temporary file (beginSave, platOpenOwned) from before its
//     reload until after its rename (finishSave), so no other writer's save
//     falls between the two and no word another process saved is lost.
//     When it can't be had, the change is made in memory only and reported
//     as the save's failure.
// (4) fileTime, fileSum and fileSize describe the file when memory last
//     matched it. TLex_Open, TLex_Create, syncLexFile and a successful save
//     set them; a failed save leaves them alone, so no reload drops the
//     unsaved change and the next change saves it along with its own.
//     syncLexFile reloads when the file's time is later or its bytes differ,
//     so a change within the same second is seen too.
// (5) Every entry that TLex_Add accepts reads back from the file as it was
//     written: its line fits kTLexMaxLine, it is not empty, does not begin
//     with '#', holds no CR or LF, and in a change lexicon its word holds no
//     colon (checkEntry). Every entry that loadLexFile accepts does too: it
//     skips lines holding a zero byte and lines of 78 characters (there only
//     at the end of a file without CR LF), which would come back cut or with
//     the CR of their line end.
// (6) headerless is set by loadLexFile when the file has no valid sentinel
//     and cleared only by TLex_Open; saves of a headerless lexicon write no
//     sentinel line, unless it has no entries: an empty file could not be
//     opened again.
// (7) A memory-only lexicon (empty path) never touches a file.
#include "lex/tlex.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "check/chartab.h"
#include "engine/log.h"
#include "lex/fileio.h"
#include "orth.h"
#include "platform/platform.h"

namespace {

constexpr int kLineBufSize = kTLexMaxLine + 3;   // 80: the longest whole line, CR LF and a zero
constexpr int kProbeBufSize = kLineBufSize + 1;  // the probe reads its first line with 81 bytes
constexpr uint32_t kGrowStep = 32;
constexpr int kFieldLen = 9;                     // longest sentinel field; longer runs split
constexpr int kSentinelFields = 4;
constexpr uint16_t kDefaultLanguage = 1033;
constexpr char kTempName[] = "AAAAORTH.TMP";
// A folder of up to 259 characters, a separator and the temporary name.
constexpr int kTempPathSize = kPathBufSize + static_cast<int>(sizeof kTempName);

bool isChangeType(uint16_t type) {
    return type == ORTH_AUTO_CHANGE_LEX_TYPE || type == ORTH_CONDITIONAL_CHANGE_LEX_TYPE;
}

bool hasFile(const TLexState *state) { return state->path[0] != '\0'; }

const char *orEmpty(const char *text) { return text != nullptr ? text : ""; }

char *copyString(const char *text, size_t len) {
    char *copy = static_cast<char *>(std::malloc(len + 1));
    if (copy == nullptr) return nullptr;
    std::memcpy(copy, text, len);
    copy[len] = '\0';
    return copy;
}

void freeLexEntries(TLexState *state) {
    for (uint32_t i = 0; i < state->count; ++i) {
        std::free(state->entries[i].word);
        std::free(state->entries[i].replacement);
    }
    std::free(state->entries);
    state->entries = nullptr;
    state->count = 0;
    state->capacity = 0;
}

// Index of the first entry whose word is not lower than word.
uint32_t lowerBound(const TLexState *state, const char *word) {
    uint32_t lo = 0, hi = state->count;
    while (lo < hi) {
        uint32_t mid = lo + (hi - lo) / 2;
        if (compareBytes(state->entries[mid].word, word) < 0) lo = mid + 1;
        else hi = mid;
    }
    return lo;
}

// Index of an entry equal to word byte for byte, or -1.
int64_t findEntry(const TLexState *state, const char *word) {
    uint32_t at = lowerBound(state, word);
    if (at < state->count && compareBytes(state->entries[at].word, word) == 0) return at;
    return -1;
}

// Reads a sentinel field like atoi: optional sign, then digits up to the
// first other character; no digits give 0. Fields hold at most 9 characters,
// so the value always fits.
int32_t parseNumber(const char *field) {
    const char *p = field;
    while (classOf(0, static_cast<unsigned char>(*p)) & CC_SPACE) ++p;
    bool negative = false;
    if (*p == '+' || *p == '-') negative = (*p++ == '-');
    int32_t value = 0;
    while (*p >= '0' && *p <= '9') value = value * 10 + (*p++ - '0');
    return negative ? -value : value;
}

// Room for 32 more entries. 0; ORTH_OUT_OF_MEMORY_ERR with the array unchanged.
int16_t growLex(TLexState *state) {
    if (state->capacity > UINT32_MAX - kGrowStep ||
        state->capacity + kGrowStep > SIZE_MAX / sizeof(TLexEntry)) {
        engineLog("growLex: out of memory");
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    uint32_t capacity = state->capacity + kGrowStep;
    auto *grown = static_cast<TLexEntry *>(std::malloc(capacity * sizeof(TLexEntry)));
    if (grown == nullptr) {
        engineLog("growLex: out of memory");
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    if (state->count > 0) std::memcpy(grown, state->entries, state->count * sizeof(TLexEntry));
    std::free(state->entries);
    state->entries = grown;
    state->capacity = capacity;
    return 0;
}

// Appends one entry line read from the file (unsorted). For change types
// the line splits at its first colon; an empty part after it is kept.
// 0; ORTH_OUT_OF_MEMORY_ERR.
int16_t appendLine(TLexState *state, const char *line) {
    if (state->count == state->capacity) {
        int16_t rc = growLex(state);
        if (rc < 0) return rc;
    }
    const char *colon = isChangeType(state->type) ? std::strchr(line, ':') : nullptr;
    size_t wordLen = colon != nullptr ? static_cast<size_t>(colon - line) : std::strlen(line);
    char *word = copyString(line, wordLen);
    char *replacement = colon != nullptr ? copyString(colon + 1, std::strlen(colon + 1)) : nullptr;
    if (word == nullptr || (colon != nullptr && replacement == nullptr)) {
        std::free(word);
        std::free(replacement);
        engineLog("loadLexFile: out of memory");
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    state->entries[state->count].word = word;
    state->entries[state->count].replacement = replacement;
    ++state->count;
    return 0;
}

// Reads the whole file into the state, replacing what it held.
// 0; ORTH_UNKNOWN_LEXICON_TYPE_ERR for an empty file or a sentinel whose type
// is outside 0 to 3; ORTH_OUT_OF_MEMORY_ERR. A failed load leaves no entries.
int16_t loadLexFile(int32_t handle, TLexState *state) {
    freeLexEntries(state);
    char line[kLineBufSize];
    if (fileReadLine(handle, line, sizeof line) < 0) {
        engineLog("loadLexFile: read error");
        return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
    }
    uint16_t language = 0;
    int16_t type = 0;
    uint32_t count = 0;
    if (line[0] == '#' && parseSentinel(line, &language, &type, &count)) {
        if (type < 0 || type > ORTH_EXCLUDE_LEX_TYPE) {
            engineLog("loadLexFile: bad sentinel line: %s", line);
            return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
        }
        state->language = language;
        state->type = static_cast<uint16_t>(type);
    } else {
        // No sentinel: the first line is read again as an entry (or comment).
        state->headerless = true;
        state->language = kDefaultLanguage;
        state->type = ORTH_IGNORE_LEX_TYPE;
        if (fileSeek(handle, 0, 0) < 0) {
            engineLog("loadLexFile: read error");
            return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
        }
    }
    unsigned long skipped = 0;
    int32_t len;
    while ((len = fileReadLine(handle, line, sizeof line)) >= 0) {
        if (len == 0 || line[0] == '#') continue;
        if (std::strlen(line) != static_cast<size_t>(len) || len == kTLexMaxLine + 1) {
            ++skipped;  // would not read back as written (invariant 5)
            continue;
        }
        int16_t rc = appendLine(state, line);
        if (rc < 0) {
            freeLexEntries(state);
            return rc;
        }
    }
    if (skipped > 0) engineLog("loadLexFile: %lu unreadable lines skipped", skipped);
    // Stable, so that equal words keep the file's order through a save.
    std::stable_sort(state->entries, state->entries + state->count,
                     [](const TLexEntry &a, const TLexEntry &b) { return compareBytes(a.word, b.word) < 0; });
    return 0;
}

// "<folder of path><separator>AAAAORTH.TMP", or the bare name when the path
// has no folder. The folder ends at the last '\' or '/'.
void makeTempPath(const char *path, char out[kTempPathSize]) {
    const char *slash = std::strrchr(path, '/');
    const char *backslash = std::strrchr(path, '\\');
    const char *cut = (slash == nullptr || (backslash != nullptr && backslash > slash)) ? backslash : slash;
    if (cut == nullptr) {
        std::snprintf(out, kTempPathSize, "%s", kTempName);
        return;
    }
    int folderLen = static_cast<int>(cut - path);
    std::snprintf(out, kTempPathSize, "%.*s%c%s", folderLen, path, platPathSeparator(), kTempName);
}

// The line an entry is saved as, into out (size bytes). False when it does
// not fit, which checkEntry rules out for every entry it lets in.
bool formatEntryLine(const TLexState *state, const TLexEntry &entry, char *out, size_t size) {
    int n;
    if (isChangeType(state->type) && entry.replacement != nullptr)
        n = std::snprintf(out, size, "%s:%s", entry.word, entry.replacement);
    else
        n = std::snprintf(out, size, "%s", entry.word);
    return n >= 0 && static_cast<size_t>(n) < size;
}

// Records the file as memory now matches it: its time and the sum of its
// bytes, read through handle (the file's own, or the temporary file that
// has just become it).
void stampFile(TLexState *state, int32_t handle, int32_t time) {
    state->fileTime = time;
    state->sumKnown = platFileSum(handle, &state->fileSum, &state->fileSize);
}

// A change being saved: the owned temporary file, from before the reload to
// after the rename (invariant 3). handle < 0: nothing owned.
struct LexSave {
    int32_t handle;
    char tempPath[kTempPathSize];
};

// Takes the temporary file for a change of a file-backed lexicon.
// 0; ORTH_FILE_OPEN_ERR after a log line when it can't be created or another
// writer kept it for the whole wait.
int16_t beginSave(const TLexState *state, LexSave *save) {
    makeTempPath(state->path, save->tempPath);
    save->handle = platOpenOwned(save->tempPath, kSaveWaitMs);
    if (save->handle == kPlatOwnedBusy) {
        engineLog("saveLexFile: error opening %s: another writer holds it", save->tempPath);
        return ORTH_FILE_OPEN_ERR;
    }
    if (save->handle < 0) {
        engineLog("saveLexFile: error opening %s", save->tempPath);
        return ORTH_FILE_OPEN_ERR;
    }
    return 0;
}

// Lets go of the temporary file when nothing is to be saved; it holds
// nothing worth keeping.
void abandonSave(LexSave *save) {
    if (save->handle < 0) return;
    platRemove(save->tempPath);
    platCloseOwned(save->handle);
    save->handle = -1;
}

// Writes the lexicon into the owned temporary file and renames it over the
// lexicon's file, then lets go of it. 0; ORTH_FILE_WRITE_ERR on a short write
// (temporary file deleted, lexicon file untouched) or when the rename fails
// (temporary file kept, lexicon file untouched).
int16_t saveLexFile(TLexState *state, LexSave *save) {
    char line[2 * kLineBufSize];
    bool ok = true;
    // An empty file is no lexicon (the probe refuses it): a headerless
    // lexicon without entries is saved with its sentinel.
    if (!state->headerless || state->count == 0) {
        std::snprintf(line, sizeof line, "%cLID %04hd %hd %lu", '#', static_cast<int16_t>(state->language),
                      static_cast<int16_t>(state->type), static_cast<unsigned long>(state->count));
        ok = fileWriteLine(save->handle, line) >= 0;
    }
    for (uint32_t i = 0; ok && i < state->count; ++i) {
        ok = formatEntryLine(state, state->entries[i], line, sizeof line) && fileWriteLine(save->handle, line) >= 0;
    }
    if (!ok) {
        engineLog("saveLexFile: file write err");
        abandonSave(save);
        return ORTH_FILE_WRITE_ERR;
    }
    if (platReplace(save->tempPath, state->path) != 0) {
        engineLog("saveLexFile: rename error; entries kept in %s", save->tempPath);
        platCloseOwned(save->handle);
        save->handle = -1;
        return ORTH_FILE_WRITE_ERR;
    }
    stampFile(state, save->handle, fileTime(state->path));
    platCloseOwned(save->handle);
    save->handle = -1;
    return 0;
}

// Ends a change made in memory: saves it when the temporary file was had,
// else reports why it was not (beginSaveRc). 0, or the save's code.
int16_t commitChange(TLexState *state, LexSave *save, int16_t beginSaveRc) {
    if (!hasFile(state)) return 0;
    if (beginSaveRc < 0) return beginSaveRc;
    return saveLexFile(state, save);
}

// Reloads the file when another writer changed it: its time is later, or
// its bytes differ from those memory last matched. 0; ORTH_FILE_NOT_FOUND_ERR
// when a changed file can't be opened; or the load's code.
int16_t syncLexFile(TLexState *state) {
    int32_t now = fileTime(state->path);
    bool later = state->fileTime < now;
    int32_t handle = fileOpen(state->path, kFileRead);
    if (handle < 0) {
        if (!later) return 0;
        engineLog("syncLexFile: file open error; file=%s", state->path);
        return ORTH_FILE_NOT_FOUND_ERR;
    }
    uint64_t sum = 0;
    uint32_t size = 0;
    bool summed = platFileSum(handle, &sum, &size);
    bool differs = summed && state->sumKnown && (sum != state->fileSum || size != state->fileSize);
    if (!later && !differs) {
        fileClose(handle);
        return 0;
    }
    fileSeek(handle, 0, 0);  // a failed seek leaves nothing to read: the load reports it
    int16_t rc = loadLexFile(handle, state);
    if (rc == 0) {
        state->fileTime = now;
        state->fileSum = sum;
        state->fileSize = size;
        state->sumKnown = summed;
    }
    fileClose(handle);
    return rc;
}

bool holdsLineBreak(const char *text) { return std::strpbrk(text, "\r\n") != nullptr; }

// 0 when the entry reads back from the file as written (invariant 4);
// ORTH_INVALID_WORD_ERR otherwise, with a log line.
int16_t checkEntry(const TLexState *state, const char *word, const char *replacement) {
    bool change = isChangeType(state->type);
    if (word[0] == '\0' || word[0] == '#' || holdsLineBreak(word) ||
        (change && std::strchr(word, ':') != nullptr) || (replacement != nullptr && holdsLineBreak(replacement))) {
        engineLog("TLex_Add: invalid word: %s", word);
        return ORTH_INVALID_WORD_ERR;
    }
    size_t lineLen = std::strlen(word);
    if (change && replacement != nullptr && replacement[0] != '\0') lineLen += 1 + std::strlen(replacement);
    if (lineLen > static_cast<size_t>(kTLexMaxLine)) {
        engineLog("TLex_Add: entry too long: %s", word);
        return ORTH_INVALID_WORD_ERR;
    }
    return 0;
}

// Stores a path of at most 259 characters. False when it is longer.
bool storePath(TLexState *state, const char *path) {
    size_t len = std::strlen(path);
    if (len > static_cast<size_t>(kMaxPathLen)) return false;
    std::memcpy(state->path, path, len + 1);
    return true;
}

void resetState(TLexState *state) {
    state->entries = nullptr;
    state->count = 0;
    state->capacity = 0;
    state->headerless = false;
    state->path[0] = '\0';
    state->sumKnown = false;
}

}  // namespace

bool parseSentinel(const char *line, uint16_t *language, int16_t *type, uint32_t *count) {
    char fields[kSentinelFields][kFieldLen + 1] = {};
    size_t ends[kSentinelFields] = {};
    int found = 0;
    const char *p = line;
    while (found < kSentinelFields) {
        while (*p != '\0' && (classOf(0, static_cast<unsigned char>(*p)) & CC_SPACE)) ++p;
        if (*p == '\0') break;
        int len = 0;
        while (*p != '\0' && !(classOf(0, static_cast<unsigned char>(*p)) & CC_SPACE) && len < kFieldLen)
            fields[found][len++] = *p++;
        ends[found++] = static_cast<size_t>(p - line);
    }
    // Something must follow field 2 and field 3; the count may be missing.
    if (found < 3 || line[ends[2]] == '\0') return false;
    // A type beyond 16 bits is reported as -1 rather than wrapped into range.
    int32_t typeValue = parseNumber(fields[2]);
    *language = static_cast<uint16_t>(parseNumber(fields[1]));
    *type = (typeValue < INT16_MIN || typeValue > INT16_MAX) ? -1 : static_cast<int16_t>(typeValue);
    *count = static_cast<uint32_t>(parseNumber(fields[3]));
    return true;
}

int16_t TLex_GetInfo(const char *path, int16_t *type, uint16_t *language) {
    int32_t handle = fileOpen(path, kFileRead);
    if (handle < 0) {
        engineLog("TLex_GetInfo: open error; file=%s", orEmpty(path));
        return ORTH_FILE_NOT_FOUND_ERR;
    }
    char line[kProbeBufSize];
    if (fileReadLine(handle, line, sizeof line) < 0) {
        fileClose(handle);
        engineLog("TLex_GetInfo: read error");
        return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
    }
    int16_t foundType = ORTH_IGNORE_LEX_TYPE;
    uint16_t foundLanguage = kDefaultLanguage;
    if (line[0] == '#') {
        uint32_t count = 0;
        if (!parseSentinel(line, &foundLanguage, &foundType, &count)) {
            engineLog("TLex_GetInfo: bad sentinel line: %s", line);
            fileClose(handle);
            return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
        }
    }
    fileClose(handle);
    if (type != nullptr) *type = foundType;
    if (language != nullptr) *language = foundLanguage;
    return 0;
}

int16_t TLex_Open(const char *path, TLexState *state) {
    resetState(state);
    int32_t handle = fileOpen(path, kFileRead);
    if (handle < 0) {
        engineLog("TLex_Open: file open error; file=%s", orEmpty(path));
        return ORTH_FILE_NOT_FOUND_ERR;
    }
    // A cut path would save to another file: refuse it.
    if (!storePath(state, path)) {
        fileClose(handle);
        engineLog("TLex_Open: path too long; file=%s", path);
        return ORTH_FILE_NOT_FOUND_ERR;
    }
    stampFile(state, handle, fileTime(path));
    fileSeek(handle, 0, 0);
    int16_t rc = loadLexFile(handle, state);
    fileClose(handle);
    return rc;
}

int16_t TLex_Create(const char *path, int16_t type, uint16_t language, TLexState *state) {
    resetState(state);
    if (path != nullptr && path[0] != '\0') {
        int32_t existing = fileOpen(path, kFileRead);
        if (existing >= 0) {
            fileClose(existing);
            engineLog("TLex_Create: %s exists", path);
            return ORTH_LEXICON_EXISTS_ERR;
        }
        if (!storePath(state, path)) {
            engineLog("TLex_Create: file open(%s) error", path);
            return ORTH_FILE_NOT_FOUND_ERR;
        }
        int32_t handle = fileOpen(path, kFileCreate);
        if (handle < 0) {
            state->path[0] = '\0';
            engineLog("TLex_Create: file open(%s) error", path);
            return ORTH_FILE_NOT_FOUND_ERR;
        }
        char line[kLineBufSize];
        std::snprintf(line, sizeof line, "%cLID %04hd %hd %d", '#', static_cast<int16_t>(language), type, 0);
        bool ok = fileWriteLine(handle, line) >= 0;
        if (ok) stampFile(state, handle, 0);
        fileClose(handle);
        // A file without its sentinel could not be opened again: remove it.
        if (!ok) {
            platRemove(path);
            state->path[0] = '\0';
            engineLog("TLex_Create: file write err");
            return ORTH_FILE_WRITE_ERR;
        }
    }
    state->type = static_cast<uint16_t>(type);
    state->language = language;
    state->fileTime = platNow();
    return 0;
}

void TLex_Close(TLexState *state) { freeLexEntries(state); }

int16_t TLex_Add(TLexState *state, const char *word, const char *replacement) {
    if (word == nullptr) {
        engineLog("TLex_Add: invalid word: ");
        return ORTH_INVALID_WORD_ERR;
    }
    if (findEntry(state, word) >= 0) return 0;
    LexSave save{-1, ""};
    int16_t saveRc = 0;
    if (hasFile(state)) {
        saveRc = beginSave(state, &save);
        int16_t rc = syncLexFile(state);
        // The reload may have brought the word in.
        if (rc < 0 || findEntry(state, word) >= 0) {
            abandonSave(&save);
            return rc;
        }
    }
    int16_t rc = checkEntry(state, word, replacement);
    if (rc == 0 && state->count == state->capacity) rc = growLex(state);
    if (rc < 0) {
        abandonSave(&save);
        return rc;
    }
    char *wordCopy = copyString(word, std::strlen(word));
    bool keepReplacement = replacement != nullptr && replacement[0] != '\0';
    char *replacementCopy = keepReplacement ? copyString(replacement, std::strlen(replacement)) : nullptr;
    if (wordCopy == nullptr || (keepReplacement && replacementCopy == nullptr)) {
        std::free(wordCopy);
        std::free(replacementCopy);
        abandonSave(&save);
        engineLog("TLex_Add: out of memory");
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    uint32_t at = lowerBound(state, word);
    std::memmove(state->entries + at + 1, state->entries + at, (state->count - at) * sizeof(TLexEntry));
    state->entries[at].word = wordCopy;
    state->entries[at].replacement = replacementCopy;
    ++state->count;
    return commitChange(state, &save, saveRc);
}

int16_t TLex_Delete(TLexState *state, const char *word) {
    LexSave save{-1, ""};
    int16_t saveRc = 0;
    if (hasFile(state)) {
        saveRc = beginSave(state, &save);
        int16_t rc = syncLexFile(state);
        if (rc < 0) {
            abandonSave(&save);
            return rc;
        }
    }
    int64_t found = (state->count == 0 || word == nullptr) ? -1 : findEntry(state, word);
    if (found < 0) {
        abandonSave(&save);
        if (state->count == 0 || word == nullptr) return ORTH_WORD_NOT_FOUND_ERR;
        engineLog("TLex_Delete: %s not found", word);
        return ORTH_WORD_NOT_FOUND_ERR;
    }
    auto at = static_cast<uint32_t>(found);
    std::free(state->entries[at].word);
    std::free(state->entries[at].replacement);
    std::memmove(state->entries + at, state->entries + at + 1, (state->count - at - 1) * sizeof(TLexEntry));
    --state->count;
    return commitChange(state, &save, saveRc);
}

// Clearing saves without reloading first: whatever the file holds goes.
int16_t TLex_Clear(TLexState *state) {
    LexSave save{-1, ""};
    int16_t saveRc = hasFile(state) ? beginSave(state, &save) : 0;
    for (uint32_t i = 0; i < state->count; ++i) {
        std::free(state->entries[i].word);
        std::free(state->entries[i].replacement);
    }
    state->count = 0;
    return commitChange(state, &save, saveRc);
}

int16_t TLex_Lookup(TLexState *state, const char *word, int16_t charSet, bool caseSensitive,
                    char *replacement, uint16_t size) {
    if (state->count == 0 || word == nullptr) return ORTH_WORD_NOT_FOUND_ERR;
    int64_t found = -1;
    if (caseSensitive) {
        found = findEntry(state, word);
    } else {
        for (uint32_t i = 0; i < state->count && found < 0; ++i) {
            if (compareNoCase(state->entries[i].word, word, charSet) == 0) found = i;
        }
    }
    if (found < 0) return ORTH_WORD_NOT_FOUND_ERR;
    const char *stored = state->entries[found].replacement;
    if (stored != nullptr && replacement != nullptr && size > 0) {
        size_t len = std::min(std::strlen(stored), static_cast<size_t>(size - 1));
        std::memcpy(replacement, stored, len);
        replacement[len] = '\0';
    }
    return 0;
}

int32_t TLex_GetImage(TLexState *state, char *buffer, uint32_t size) {
    if (buffer == nullptr) return ORTH_BUFFER_TOO_SMALL_ERR;
    uint64_t pos = 0;
    for (uint32_t i = 0; i < state->count; ++i) {
        const TLexEntry &entry = state->entries[i];
        size_t wordLen = std::strlen(entry.word);
        // The word, its zero and the image's final zero.
        if (pos + wordLen + 2 > size) return ORTH_BUFFER_TOO_SMALL_ERR;
        std::memcpy(buffer + pos, entry.word, wordLen);
        pos += wordLen;
        if (entry.replacement != nullptr) {
            size_t replacementLen = std::strlen(entry.replacement);
            if (pos + 1 + replacementLen + 2 > size) {
                engineLog("TLex_GetImage: bufer too small");
                return ORTH_BUFFER_TOO_SMALL_ERR;
            }
            buffer[pos++] = ':';
            std::memcpy(buffer + pos, entry.replacement, replacementLen);
            pos += replacementLen;
        }
        buffer[pos++] = '\0';
    }
    if (pos + 1 > size) return ORTH_BUFFER_TOO_SMALL_ERR;
    buffer[pos] = '\0';
    return static_cast<int32_t>(std::min<uint32_t>(state->count, INT32_MAX));
}

int16_t TLex_GetImageSize(TLexState *state, uint32_t *size) {
    uint32_t total = 1;
    for (uint32_t i = 0; i < state->count; ++i) {
        total += static_cast<uint32_t>(std::strlen(state->entries[i].word)) + 1;
        if (state->entries[i].replacement != nullptr)
            total += static_cast<uint32_t>(std::strlen(state->entries[i].replacement)) + 1;
    }
    if (size != nullptr) *size = total;
    return 0;
}
