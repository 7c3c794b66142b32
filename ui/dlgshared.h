// ui/dlgshared.h — what the dialog controllers share: string-table texts,
// the font rule, messages owned by the dialog, user-folder tests and the
// temporary lexicons found by type. Private to the controllers.
#pragma once

#include <cstdint>

#include "ui/surface.h"

constexpr int kDlgTextSize = 81;  // a string-table text as the dialogs load it: 80 characters

// A string-table text through the client front end (the Windows build loads
// it from the library's resources).
void dlgText(uint32_t id, char *buffer, int size);

// Start of every dialog: unless FontBold (machine scope, default 0) is set,
// every control gets the normal-weight variant of the dialog font.
void dlgApplyFontRule(UiSurface *s);

// A message box owned by the dialog (showMessage of the client layer).
int dlgMessage(UiSurface *s, int messageId, int captionId, const char *arg1, const char *arg2);
int dlgQuestion(UiSurface *s, int messageId, int captionId);  // OK and Cancel; kIdOk or kIdCancel

// Whether path's folder (its part before the last '\' or '/') is the user
// lexicon folder, ignoring case. A bare name has no folder.
bool dlgInUserFolder(const char *path);
// The name a user lexicon is recorded and listed under: its bare file name
// when it lies in the user lexicon folder, else the path as given.
const char *dlgDisplayName(const char *path);

// The client's temporary lexicon of a lexicon type, or -1 when there is none.
int16_t dlgTempLex(int16_t type);
// A lexicon's type, or -1 when its information cannot be had.
int dlgLexType(int16_t lexId);
