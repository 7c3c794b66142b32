// host/frontend.h — the seam between the client layer and whatever shows
// its user interface: message boxes, the wait cursor, the modal dialogs, the
// host's edit control, help and the string table. A front end is a record of
// function pointers installed with setClientFrontEnd; the dialog controllers
// and every front end (a terminal UI, real Win32 windows, a test script) plug
// in here, and the client layer calls nothing else to reach the user.
//
// Until a real front end is installed the default one runs: it writes each
// message to the client log and to standard error and answers OK, shows no
// cursor, has no edit controls (empty text, empty selection), ends every
// dialog as the user would cancel it (the Check Spelling and Options dialogs
// with ORTH_CANCEL_ERR, the Dictionaries dialog, which has no Cancel, with
// 0), logs help requests, and loads texts from host/texts.h.
#pragma once

#include <cstdint>

#include "orth_client.h"

struct CheckContext;

enum ClientDialog {
    kDialogCheckSpelling,  // with the CheckContext of the run
    kDialogDictionaries,   // runs the New Dictionary dialog itself
    kDialogOptions,
};

enum ClientButtons { kButtonsOk, kButtonsOkCancel };
constexpr int kMessageOk = 1;      // the button pressed, as IDOK
constexpr int kMessageCancel = 2;  // IDCANCEL

struct ClientFrontEnd {
    // A modal message box; returns the button pressed.
    int (*messageBox)(OrthWindow owner, const char *text, const char *caption, ClientButtons buttons);
    // The hourglass on (remembering the cursor it replaces) or off (restoring it).
    void (*setWaitCursor)(bool on);
    // Runs a dialog modally; returns its end value (check is null but for
    // kDialogCheckSpelling).
    int32_t (*runDialog)(ClientDialog dialog, OrthWindow owner, CheckContext *check);
    // The host's edit control: text length; the text (at most size - 1
    // characters and a zero; returns the count); the selection; select;
    // replace the selection without an undo record; scroll the caret into view.
    uint32_t (*editTextLength)(OrthWindow edit);
    uint32_t (*editGetText)(OrthWindow edit, char *buffer, uint32_t size);
    void (*editGetSelection)(OrthWindow edit, uint32_t *start, uint32_t *end);
    void (*editSetSelection)(OrthWindow edit, uint32_t start, uint32_t end);
    void (*editReplaceSelection)(OrthWindow edit, const char *text);
    void (*editScrollCaret)(OrthWindow edit);
    // Opens the help file at a numeric context.
    void (*openHelp)(OrthWindow owner, const char *helpFile, uint32_t context);
    // A string-table text, as loadClientString.
    int (*loadString)(uint32_t id, char *buffer, int size);
};

// Installs a front end (copied; a null member keeps the default's), or with
// null the default front end again.
void setClientFrontEnd(const ClientFrontEnd *frontEnd);
const ClientFrontEnd &clientFrontEnd();

// Messages: loads text messageId and, when captionId is not negative, caption
// captionId (at most 80 characters each), puts arg1 and arg2 in place of the
// text's first two "%s", and shows a box with an OK button. Returns the button.
int showMessage(OrthWindow owner, int messageId, int captionId, const char *arg1, const char *arg2);
// The same with the given buttons (OK and Cancel for a question).
int showMessageButtons(OrthWindow owner, int messageId, int captionId, const char *arg1,
                       const char *arg2, ClientButtons buttons);
// Puts the wait cursor on or off.
void waitCursor(bool on);
