// host/client.h — the client context: the process-wide record of the one
// engine session that the client-level functions (orth_client.h) and the
// dialogs share, with the lexicons it opened from the settings. This header
// is for host/ and for the dialog controllers in ui/, which read and change
// the slots, folders, flags and counters directly.
//
// Closed (sessionId -1) -> openClient -> open -> closeClient -> closed.
// While a dialog call runs, busy is set and the guarded client-level
// functions return ORTH_BUSY_ERR.
#pragma once

#include <cstdint>

#include "engine/limits.h"
#include "engine/log.h"
#include "host/frontend.h"
#include "orth_client.h"

// What a lexicon slot holds.
enum ClientLexKind : uint32_t {
    CLIENT_LEX_MAIN = 0,
    CLIENT_LEX_USER = 1,
    CLIENT_LEX_TEMP = 2,
    CLIENT_LEX_FREE = 3,
};

struct ClientLexSlot {
    char fileName[kPathBufSize];  // as listed in the settings (bare or full); "" for a temporary lexicon
    int16_t lexId;                // the engine's id; negative when the open failed, -1 once closed
    uint32_t kind;                // ClientLexKind
};

constexpr int kClientListSize = kMaxLexPerSession * kPathBufSize;  // 4160: a lexicon list

// Handed by a client-level check to the Check Spelling dialog.
struct CheckContext {
    int16_t blockId;        // the block over the text being checked
    int32_t suggestDepth;   // -1 at the start of a call with always-suggest set, else 0
    OrthWindow editCtrl;    // the host's edit control, or null for a plain buffer
    uint32_t baseOffset;    // where the block's first character lies in the control's text
};

struct ClientContext {
    uint32_t clientId;   // process that last opened the context; 0 before the first open
    int16_t sessionId;   // -1 while closed
    ClientLexSlot slots[kMaxLexPerSession];
    char mainLexFolder[kPathBufSize];
    char userLexFolder[kPathBufSize];
    char helpFile[kPathBufSize];
    char debugFile[kPathBufSize];      // clientLog's file; the engine log is set to the same
    char listBuffer[kClientListSize];  // a lexicon list as read from the settings
    // UserLexFiles items that found no free slot: not opened, but written
    // back after the slots' names so that the user's list loses nothing.
    char skippedUserLex[kClientListSize];
    int32_t alwaysSuggest;
    bool busy;
    uint32_t wordsChecked, wordsChanged, errorsFound;  // of the last dialog check
    int16_t dialogX, dialogY;  // remembered Check Spelling position
    bool dialogLocked;         // open the dialog there
};

extern ClientContext clientContext;

// The option settings, in the order openClient applies them: key, session
// option (0 for AlwaysSuggest, which feeds the always-suggest flag), default.
struct OptionSetting {
    const char *key;
    uint32_t optionId;
    uint32_t defaultValue;
};
constexpr int kOptionSettingCount = 16;
extern const OptionSetting kOptionSettings[kOptionSettingCount];

// Opening and closing (OpenORTH is openClient behind the C interface).
int16_t openClient();
void closeClient();
// The busy guard: true (after logging "<function>: busy") while a dialog call runs.
bool refuseWhileBusy(const char *function);

// Slots and lists.
int findFreeLexSlot();                     // first CLIENT_LEX_FREE slot, or -1
int findLexSlot(const char *fileName);     // first used slot of that name (ignoring case), or -1
void updateUserLexFiles();                 // writes the user slots' names as UserLexFiles
// The next comma-separated item of a list: copies at most capacity - 1
// characters into item and returns where the next item begins; null when
// pos is null or at the end of the list.
const char *nextListItem(const char *pos, char *item, int capacity);
// folder, the separator and name (each appended only as far as 259
// characters allow) when name holds no '\' or '/'; else name, cut to 259.
void joinLexPath(const char *folder, const char *name, char out[kPathBufSize]);
// The part of a path after its last '\' or '/'.
const char *bareFileName(const char *path);

// Checks: one Check Spelling run over a text in place, returning its new
// length or a negative code; and the edit-control walk over a host control.
int32_t CheckBlock(CheckContext *check, OrthWindow owner, char *text, uint32_t length, uint32_t size);
int16_t checkEditCtrl(CheckContext *check, OrthWindow owner, int16_t selectionOnly);

// A line in the client debug file ("hh:mm:ss message"); nothing without one.
void clientLog(const char *format, ...) ORTH_PRINTF(1, 2);
