// host/client.cpp — opening and closing the client context, its lexicon
// slots and lists, and its log.
//
// (1) openClient fills the slots in this order: the three temporary
//     lexicons (types 0, 1, 2), every UserLexFiles item, every MainLexFiles
//     item. Every listed item takes a slot whether or not it opens; an item
//     that finds no free slot is logged and skipped, and a skipped user item
//     is kept in skippedUserLex so that updateUserLexFiles still writes it.
// (2) closeClient closes the lexicons that opened, writes the session's
//     options back, then closes the session. When the session was closed
//     behind the context's back, the options are not written: the values it
//     would read are error codes, not settings.
// (3) The library's unload runs closeClient in the process that opened the
//     context (a forked child leaves the parent's settings alone). It runs
//     from a static destructor; the engine's tables, the store's paths and
//     this record are plain arrays without destructors, so they are intact
//     whenever it runs. A Windows DLL has an unload notification of its own,
//     which closes the context (win32/dllmain.cpp); the destructor stands
//     aside wherever a load notification stored a module handle.
#include "host/client.h"

#include <cstdarg>
#include <cstring>
#include <new>

#include "check/chartab.h"
#include "host/settings.h"
#include "host/texts.h"
#include "orth.h"
#include "platform/platform.h"

namespace {

// Closed, every slot free: the state before the first open.
constexpr ClientContext closedContext() {
    ClientContext c{};
    c.sessionId = -1;
    for (ClientLexSlot &slot : c.slots) {
        slot.lexId = -1;
        slot.kind = CLIENT_LEX_FREE;
    }
    return c;
}

}  // namespace

ClientContext clientContext = closedContext();

const OptionSetting kOptionSettings[kOptionSettingCount] = {
    {"IgnoreCappedWords", ORTH_IGNORE_CAPPED_WORDS_OPT, 0},
    {"IgnoreAllCapsWords", ORTH_IGNORE_ALL_CAPS_WORDS_OPT, 0},
    {"IgnoreMixedDigits", ORTH_IGNORE_MIXED_DIGITS_OPT, 0},
    {"IgnoreMixedCase", ORTH_IGNORE_MIXED_CASE_OPT, 0},
    {"ReportDoubledWords", ORTH_REPORT_DOUBLED_WORDS_OPT, 1},
    {"CaseSensitive", ORTH_CASE_SENSITIVE_OPT, 1},
    {"PhoneticSuggestions", ORTH_SUGGEST_PHONETIC_OPT, 0},
    {"TypographicalSuggestions", ORTH_SUGGEST_TYPOGRAPHICAL_OPT, 1},
    {"SuggestSplitWords", ORTH_SUGGEST_SPLIT_WORDS_OPT, 1},
    {"SplitContractedWords", ORTH_SPLIT_CONTRACTED_WORDS_OPT, 0},
    {"SplitHyphenatedWords", ORTH_SPLIT_HYPHENATED_WORDS_OPT, 1},
    {"SplitWords", ORTH_SPLIT_WORDS_OPT, 0},
    {"MatchCase", ORTH_MATCH_CASE_OPT, 1},
    {kKeyAlwaysSuggest, 0, 0},
    {"CharSet", ORTH_CHARSET_OPT, 0},
    {"Language", ORTH_LANGUAGE_OPT, 1033},
};

namespace {

ClientContext &ctx = clientContext;

bool isSeparator(char c) { return c == '\\' || c == '/'; }

// Appends src to dst (holding *len characters) without passing limit characters.
void appendCut(char *dst, size_t *len, const char *src, size_t limit) {
    while (*src != '\0' && *len < limit) dst[(*len)++] = *src++;
    dst[*len] = '\0';
}

void recordSlot(int slot, const char *name, int16_t lexId, uint32_t kind) {
    size_t len = 0;
    appendCut(ctx.slots[slot].fileName, &len, name, kMaxPathLen);
    ctx.slots[slot].lexId = lexId;
    ctx.slots[slot].kind = kind;
}

// Opens every item of the list buffer, in folder when the item is bare.
void openListed(const char *folder, uint32_t kind) {
    char item[kPathBufSize], path[kPathBufSize];
    size_t skippedLen = std::strlen(ctx.skippedUserLex);
    for (const char *pos = ctx.listBuffer; (pos = nextListItem(pos, item, kPathBufSize)) != nullptr;) {
        int slot = findFreeLexSlot();
        if (slot < 0) {
            clientLog("OpenORTH: no free lexicon slot; %s skipped", item);
            if (kind == CLIENT_LEX_USER) {
                if (skippedLen > 0) appendCut(ctx.skippedUserLex, &skippedLen, ",", kClientListSize - 1);
                appendCut(ctx.skippedUserLex, &skippedLen, item, kClientListSize - 1);
            }
            continue;
        }
        joinLexPath(folder, item, path);
        int16_t lexId = ORTH_OpenLex(ctx.sessionId, path, 0);
        if (lexId < 0) {
            waitCursor(false);
            showMessage(nullptr, kTextErrorOpeningDictionary, -1, path, "");
            waitCursor(true);
        }
        recordSlot(slot, item, lexId, kind);
    }
}

void applyOptions() {
    for (const OptionSetting &o : kOptionSettings) {
        uint32_t value = getIntSetting(o.key, kUserScope, o.defaultValue);
        if (o.optionId == 0) {
            ctx.alwaysSuggest = static_cast<int32_t>(value);
            continue;
        }
        if (o.optionId == ORTH_CHARSET_OPT || o.optionId == ORTH_LANGUAGE_OPT) {
            value = static_cast<uint32_t>(static_cast<int32_t>(static_cast<int16_t>(value & 0xFFFF)));
        }
        ORTH_SetOption(ctx.sessionId, o.optionId, value);
    }
}

void writeOptions() {
    if (ORTH_GetOption(ctx.sessionId, ORTH_CASE_SENSITIVE_OPT) < 0) {
        clientLog("closeClient: session %hd is no longer open; options not written", ctx.sessionId);
        return;
    }
    for (const OptionSetting &o : kOptionSettings) {
        if (o.optionId == 0) continue;
        putIntSetting(o.key, kUserScope, static_cast<uint32_t>(ORTH_GetOption(ctx.sessionId, o.optionId)));
    }
}

// Closes the context when the library is unloaded or the program ends,
// unless the DLL's own unload notification does (3).
struct ClientUnload {
    ~ClientUnload() {
        if (platModuleHandle() != nullptr) return;
        if (ctx.sessionId >= 0 && ctx.clientId == platProcessId()) closeClient();
    }
} clientUnload;

}  // namespace

int16_t openClient() {
    if (ctx.sessionId >= 0) return 0;
    waitCursor(true);
    getSetting(kKeyDebugFile, kMachineScope, "", ctx.debugFile, kPathBufSize);
    ORTH_SetDebugFile(ctx.debugFile);
    ctx.clientId = platProcessId();
    clientLog("OpenORTH: client id %ld", static_cast<long>(ctx.clientId));
    for (int i = 0; i < kMaxLexPerSession; ++i) recordSlot(i, "", -1, CLIENT_LEX_FREE);
    ctx.skippedUserLex[0] = '\0';
    int16_t rc = ORTH_OpenSession();
    if (rc < 0) {
        clientLog("OpenORTH: %s error opening session", resultCodeName(rc));
        waitCursor(false);
        return rc;
    }
    ctx.sessionId = rc;
    for (int16_t type = ORTH_AUTO_CHANGE_LEX_TYPE; type <= ORTH_CONDITIONAL_CHANGE_LEX_TYPE; ++type) {
        int slot = findFreeLexSlot();
        rc = ORTH_CreateLex(ctx.sessionId, nullptr, type, 1033);
        if (rc < 0) {
            clientLog("OpenORTH: %s error opening temp lexicon type %d", resultCodeName(rc), type);
            waitCursor(false);
            return rc;
        }
        recordSlot(slot, "", rc, CLIENT_LEX_TEMP);
    }
    getSetting(kKeyMainLexPath, kMachineScope, "", ctx.mainLexFolder, kPathBufSize);
    if (ctx.mainLexFolder[0] == '\0') getSetting(kKeyLexPath, kMachineScope, ".", ctx.mainLexFolder, kPathBufSize);
    getSetting(kKeyUserLexPath, kUserScope, ctx.mainLexFolder, ctx.userLexFolder, kPathBufSize);
    getSetting(kKeyUserLexFiles, kUserScope, "", ctx.listBuffer, kClientListSize);
    openListed(ctx.userLexFolder, CLIENT_LEX_USER);
    getSetting(kKeyMainLexFiles, kMachineScope, "", ctx.listBuffer, kClientListSize);
    openListed(ctx.mainLexFolder, CLIENT_LEX_MAIN);
    applyOptions();
    getSetting(kKeyHelpFile, kMachineScope, "orth.hlp", ctx.helpFile, kPathBufSize);
    waitCursor(false);
    return 0;
}

void closeClient() {
    if (ctx.sessionId < 0) return;
    for (ClientLexSlot &slot : ctx.slots) {
        if (slot.kind == CLIENT_LEX_FREE || slot.lexId < 0) continue;
        ORTH_CloseLex(ctx.sessionId, slot.lexId);
        slot.kind = CLIENT_LEX_FREE;
        slot.lexId = -1;
    }
    writeOptions();
    ORTH_CloseSession(ctx.sessionId);
    ctx.sessionId = -1;
}

bool refuseWhileBusy(const char *function) {
    if (!ctx.busy) return false;
    clientLog("%s: busy", function);
    return true;
}

int findFreeLexSlot() {
    for (int i = 0; i < kMaxLexPerSession; ++i) {
        if (ctx.slots[i].kind == CLIENT_LEX_FREE) return i;
    }
    return -1;
}

int findLexSlot(const char *fileName) {
    if (fileName == nullptr) return -1;
    for (int i = 0; i < kMaxLexPerSession; ++i) {
        const ClientLexSlot &slot = ctx.slots[i];
        if (slot.kind != CLIENT_LEX_FREE && compareNoCase(slot.fileName, fileName, 0) == 0) return i;
    }
    return -1;
}

void updateUserLexFiles() {
    char *text = new (std::nothrow) char[kClientListSize];
    if (text == nullptr) {
        clientLog("updateUserLexFiles: out of memory");
        return;
    }
    size_t len = 0;
    text[0] = '\0';
    for (const ClientLexSlot &slot : ctx.slots) {
        if (slot.kind != CLIENT_LEX_USER) continue;
        appendCut(text, &len, slot.fileName, kClientListSize - 1);
        appendCut(text, &len, ",", kClientListSize - 1);
    }
    appendCut(text, &len, ctx.skippedUserLex, kClientListSize - 1);
    if (len > 0 && text[len - 1] == ',') text[--len] = '\0';
    putSetting(kKeyUserLexFiles, kUserScope, text);
    delete[] text;
}

const char *nextListItem(const char *pos, char *item, int capacity) {
    if (pos == nullptr || *pos == '\0' || item == nullptr || capacity < 1) return nullptr;
    int n = 0;
    while (*pos != '\0' && *pos != ',' && n < capacity - 1) item[n++] = *pos++;
    item[n] = '\0';
    return *pos == ',' ? pos + 1 : pos;
}

void joinLexPath(const char *folder, const char *name, char out[kPathBufSize]) {
    size_t len = 0;
    out[0] = '\0';
    if (std::strchr(name, '\\') == nullptr && std::strchr(name, '/') == nullptr) {
        const char separator[2] = {platPathSeparator(), '\0'};
        appendCut(out, &len, folder, kMaxPathLen);
        appendCut(out, &len, separator, kMaxPathLen);
    }
    appendCut(out, &len, name, kMaxPathLen);
}

const char *bareFileName(const char *path) {
    const char *bare = path;
    for (const char *p = path; *p != '\0'; ++p) {
        if (isSeparator(*p)) bare = p + 1;
    }
    return bare;
}

void clientLog(const char *format, ...) {
    va_list args;
    va_start(args, format);
    appendLogLine(ctx.debugFile, format, args);
    va_end(args);
}

extern "C" ORTH_API int16_t ORTH_CALL OpenORTH(void) noexcept { return openClient(); }

extern "C" ORTH_API void ORTH_CALL ClientTerm(void) noexcept {
    if (platProcessId() != ctx.clientId) return;
    closeClient();
    clientLog("ClientTerm: client %ld terminated", static_cast<long>(ctx.clientId));
}
