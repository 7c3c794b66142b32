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
    // The size and checksum of the file's bytes when this state last matched
    // it (sumKnown false: not known, the time alone decides a reload).
    uint64_t fileSum;
    uint32_t fileSize;
    bool sumKnown;
    char path[kPathBufSize];  // empty: memory only
    bool headerless;     // the file had no sentinel line; saves write none
};

// Longest line, without CR LF, that the lexicon reads back whole.
constexpr int kTLexMaxLine = 77;

// Opening and closing. TLex_GetInfo probes a file's first line: 0 with the
// sentinel's type and language (type 1 and 1033 without one);
// ORTH_FILE_NOT_FOUND_ERR; ORTH_UNKNOWN_LEXICON_TYPE_ERR for an empty file or
// a '#' line that is not a sentinel. TLex_Open: 0; ORTH_FILE_NOT_FOUND_ERR
// (missing file, or a path over 259 characters); ORTH_UNKNOWN_LEXICON_TYPE_ERR;
// ORTH_OUT_OF_MEMORY_ERR. TLex_Create (null or empty path: memory only): 0;
// ORTH_LEXICON_EXISTS_ERR; ORTH_FILE_NOT_FOUND_ERR when the file can't be
// made; ORTH_FILE_WRITE_ERR when its first line can't be written.
int16_t TLex_GetInfo(const char *path, int16_t *type, uint16_t *language);
int16_t TLex_Open(const char *path, TLexState *state);
int16_t TLex_Create(const char *path, int16_t type, uint16_t language, TLexState *state);
void TLex_Close(TLexState *state);

// Changes, each saved at once for a file-backed lexicon after reloading a
// file another writer changed; writers in other processes wait for each
// other's save (up to kSaveWaitMs). Results: 0; ORTH_INVALID_WORD_ERR (TLex_Add:
// an entry that would not read back whole: empty, beginning with '#', holding
// CR or LF, a colon in a change lexicon's word, or a line over kTLexMaxLine);
// ORTH_WORD_NOT_FOUND_ERR (TLex_Delete); ORTH_OUT_OF_MEMORY_ERR; the reload's
// ORTH_FILE_NOT_FOUND_ERR or ORTH_UNKNOWN_LEXICON_TYPE_ERR; the save's
// ORTH_FILE_OPEN_ERR (also when another writer kept the temporary file for
// the whole wait) or ORTH_FILE_WRITE_ERR, with the change kept in memory and
// the file as it was, so the next change saves both.
int16_t TLex_Add(TLexState *state, const char *word, const char *replacement);
int16_t TLex_Delete(TLexState *state, const char *word);
int16_t TLex_Clear(TLexState *state);

// Lookups: 0 found (its replacement, if any, copied into replacement when
// size > 0), ORTH_WORD_NOT_FOUND_ERR otherwise.
int16_t TLex_Lookup(TLexState *state, const char *word, int16_t charSet, bool caseSensitive,
                    char *replacement, uint16_t size);

// The image: "word[:replacement]\0" per entry, then one more zero.
// TLex_GetImage returns the number of entries, or ORTH_BUFFER_TOO_SMALL_ERR
// (also for a null buffer); TLex_GetImageSize gives the bytes it needs.
int32_t TLex_GetImage(TLexState *state, char *buffer, uint32_t size);
int16_t TLex_GetImageSize(TLexState *state, uint32_t *size);

// Internals, for the module's tests. Reads a sentinel line ("#LID 1033 1 0"):
// fields split at white space, at most 9 characters each, numbers read like
// atoi. True when valid: something follows the second and the third field.
bool parseSentinel(const char *line, uint16_t *language, int16_t *type, uint32_t *count);
