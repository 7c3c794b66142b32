// ui/controllers.h — the four dialogs' behaviour, written once for every
// front end: Check Spelling (checkdlg.cpp), Dictionaries and New Dictionary
// (lexdlg.cpp), Options (optionsdlg.cpp). Each works on the client context
// (host/client.h), its session and blocks through the ORTH_ functions, and on
// its dialog through the surface calls (surface.h) by control identifier.
//
// Each run function starts its dialog modally through uiRunDialog (owner: a
// running dialog's surface, or null for a top-level dialog) and returns the
// dialog's end value: 0, or ORTH_CANCEL_ERR when the user cancels (the
// Dictionaries dialog always ends with 0).
#pragma once

#include <cstdint>

#include "engine/limits.h"
#include "host/client.h"
#include "ui/surface.h"

// Checks the block of check->blockId with the user, mirroring every change
// into check->editCtrl when there is one. 0 at the end of the block.
int32_t runCheckSpellingDlg(UiSurface *owner, CheckContext *check);

// Edits the client's user lexicons and their entries.
int32_t runEditLexDlg(UiSurface *owner);

// What the New Dictionary dialog hands back on OK.
struct NewLexChoice {
    char fileName[kPathBufSize];  // as typed or browsed, not validated
    int16_t type;                 // a lexicon type, 0 to 3
    int16_t language;             // a language id, -1 when none was selected
};
int32_t runNewLexDlg(UiSurface *owner, NewLexChoice *out);

// Shows and sets the client session's options.
int32_t runOptionsDlg(UiSurface *owner);

// The Dictionaries dialog's Import reads its file as tokens (lexdlg.cpp):
// runs of letters, digits and punctuation of character set 0, separated by
// blanks and characters without class; a "#" or ";" where a token would
// begin starts a comment running to the end of its line. With colonEnds (the
// types without a replacement) a colon also ends a token. A token ends after
// 80 characters; the next character is dropped and reading resumes after it.
constexpr int kImportTokenMax = 80;
struct ImportReader {
    int32_t file;        // a handle of platform.h
    unsigned char buffer[512];
    int32_t have, next;  // bytes in buffer, and the next one to take
    bool ended;          // end of file (or a read failure) reached
};
void importReaderOpen(ImportReader *r, int32_t file);
// The next token into token (kImportTokenMax + 1 bytes); its length, 0 only
// at the end of the file.
int importReadToken(ImportReader *r, bool colonEnds, char token[kImportTokenMax + 1]);
