// ui/win32/winui_int.h — what the Win32 surface (winsurface.cpp) and the
// Win32 front end (winfront.cpp) share: running a dialog, message boxes,
// the wait cursor and help, each with the owner window it is shown for.
#pragma once

#include <windows.h>

#include <cstdint>

#include "ui/surface.h"

// Runs the controller's dialog modally from its template in the library's
// resources (DialogBoxParamA), owned by owner (null: none). Its end value,
// or ORTH_CANCEL_ERR with a log line when the template is unknown or the
// system cannot make the dialog.
int32_t winRunDialog(HWND owner, const DialogController *controller);

// A modal box with the text, the caption and OK (or OK and Cancel); kIdOk or
// kIdCancel.
int winMessageBox(HWND owner, const char *text, const char *caption, UiButtons buttons);

// The hourglass. Calls nest: the first "on" remembers the cursor it
// replaces, the matching last "off" restores it; an unmatched "off" does
// nothing. winWaiting tells a dialog to keep the hourglass when the mouse
// moves over it.
void winWaitCursor(bool on);
bool winWaiting();

// Opens the help file at a numeric context with WinHelpA. A help file that
// cannot be found is reported in a message box owned by owner (and logged)
// instead: WinHelpA would start the help viewer only for it to complain,
// and leave it running.
void winOpenHelp(HWND owner, const char *helpFile, uint32_t context);

// A string-table text from the library's resources, as loadClientString.
int winLoadString(uint32_t id, char *buffer, int size);

// The module whose resources hold the templates and texts.
HINSTANCE winModule();
