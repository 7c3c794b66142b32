// lex/tlex.h — text lexicon. An editable word list held in memory as an
// array sorted byte-wise, backed by a .TLX file of CR LF lines (or by nothing,
// for a memory-only lexicon). Every change is saved at once through a
// temporary file beside the lexicon; a file changed by another writer is
// reloaded before the next change.
#pragma once

#include <cstdint>

#include "engine/limits.h"

struct TLexEntry {
    char *word;          // owned
    char *replacement;   // owned, or null when there is none
};

struct TLexState {
    uint16_t type;       // ORTH_*_LEX_TYPE
    uint16_t language;
    TLexEntry *entries;  // owned, sorted by word (byte-wise unsigned)
    uint32_t count;
    uint32_t capacity;   // grows by 32
    int32_t fileTime;    // modification time when this state last matched the file
    char path[kPathBufSize];  // empty: memory only
    bool headerless;     // the file had no sentinel line; saves write none
};

// Longest line, without CR LF, that the lexicon reads back whole.
constexpr int kTLexMaxLine = 77;

// Opening and closing.
int16_t TLex_GetInfo(const char *path, int16_t *type, uint16_t *language);
int16_t TLex_Open(const char *path, TLexState *state);
int16_t TLex_Create(const char *path, int16_t type, uint16_t language, TLexState *state);
void TLex_Close(TLexState *state);

// Changes (each saved at once for a file-backed lexicon).
int16_t TLex_Add(TLexState *state, const char *word, const char *replacement);
int16_t TLex_Delete(TLexState *state, const char *word);
int16_t TLex_Clear(TLexState *state);

// Lookups: 0 found (its replacement, if any, copied into replacement when
// size > 0), ORTH_WORD_NOT_FOUND_ERR otherwise.
int16_t TLex_Lookup(TLexState *state, const char *word, int16_t charSet, bool caseSensitive,
                    char *replacement, uint16_t size);

// The image: "word[:replacement]\0" per entry, then one more zero.
int32_t TLex_GetImage(TLexState *state, char *buffer, uint32_t size);
int16_t TLex_GetImageSize(TLexState *state, uint32_t *size);
