// ui/surface.h — what a dialog controller sees of a dialog, and how a
// controller is started. A controller holds a dialog's behaviour once, for
// every front end; a surface is one front end's dialog: the Win32 dialog, the
// terminal dialog (termsurface.h) or the in-memory dialog of the tests
// (memsurface.h).
//
// The model is Win32's, so that the Win32 surface stays thin:
//   - The front end builds the controls from the template the controller
//     names (templates.h), then calls init (WM_INITDIALOG).
//   - Every user action reaches the controller as command(id, notify)
//     (WM_COMMAND): UI_CLICKED (BN_CLICKED; Enter and Esc send it for ids 1
//     and 2), UI_EDIT_CHANGED (EN_CHANGE, CBN_EDITCHANGE), UI_SEL_CHANGED
//     (LBN_SELCHANGE, CBN_SELCHANGE), UI_SEL_CONFIRMED (LBN_DBLCLK,
//     CBN_DBLCLK, CBN_SELENDOK). uiNotifyFromWin32 makes that translation.
//   - A command arrives only for an enabled control. A check box or radio
//     button has already changed its state when its click arrives (automatic
//     buttons); a list's selection and a combo's edit field have changed when
//     the selection change arrives (Windows updates a combo's edit field only
//     after CBN_SELCHANGE, so the Win32 surface answers getText for such a
//     combo from its selected entry while the event runs).
//   - The controller's own calls raise no events, with one exception that
//     Win32 has too: setting the text of a single-line edit raises
//     UI_EDIT_CHANGED for it, synchronously, before Ui_SetText returns, just
//     as the user's typing does. (A combo's edit field raises nothing when
//     set.)
//   - Ui_EndDialog ends the dialog with a value once the current event
//     returns; the front end's run call then returns that value.
//
// Starting a dialog: the one who starts it (the client layer's dialog calls,
// or another dialog's controller) fills a DialogController with the
// template name, its init and command functions and a pointer to the run's
// state (for Check Spelling the check context and the stop's words), then
// calls the front end's runDialog (UiFrontEnd, for a dialog without a dialog
// owner) or Ui_RunDialog (for one owned by a running dialog); either returns
// the value the controller passed to Ui_EndDialog. The client layer keeps
// the UiFrontEnd of the front end in use: the terminal's (termsurface.h), the
// Win32 one, or the in-memory one of the tests (memsurface.h).
//
// Controls are addressed by identifier. A call naming a control the
// dialog does not have does nothing and logs a line; readers then return 0,
// an empty text or -1.
#pragma once

#include <cstdint>

#include "ui/templates.h"

struct UiSurface;

enum UiNotify : uint8_t {
    UI_CLICKED,
    UI_EDIT_CHANGED,
    UI_SEL_CHANGED,
    UI_SEL_CONFIRMED,
};

// A dialog's behaviour. The front end calls init once the controls exist and
// command for every event; both receive the surface and the state pointer.
// The state belongs to whoever starts the dialog and outlives the run.
struct DialogController {
    const char *templateName;  // one of the names of templates.h
    void *state;
    void (*init)(UiSurface *surface, void *state);
    void (*command)(UiSurface *surface, void *state, int16_t id, UiNotify notify);
};

// Message box buttons; the box returns kIdOk or kIdCancel. A box with only
// OK returns kIdOk however it is closed.
enum UiButtons : uint8_t { UI_MB_OK, UI_MB_OKCANCEL };

// File dialog flags (OFN_FILEMUSTEXIST, OFN_PATHMUSTEXIST, OFN_OVERWRITEPROMPT).
constexpr uint32_t kUiFileMustExist = 0x1;
constexpr uint32_t kUiPathMustExist = 0x2;
constexpr uint32_t kUiOverwritePrompt = 0x4;

struct UiFileRequest {
    bool save;             // a save dialog; otherwise an open dialog
    const char *filter;    // description and pattern pairs, "Text files (*.txt)|*.txt|":
                           // the text's last character separates them (uiFilterToList)
    const char *title;
    const char *folder;    // the starting folder
    const char *fileName;  // the file name shown at start; "" for none
    uint32_t flags;        // kUiFile... flags
};

// One front end's implementation. The control functions follow the Win32
// calls named beside them; the list functions serve list boxes and all
// combos alike (LB_ and CB_ messages, chosen by the control's kind).
struct UiSurfaceOps {
    // Controls.
    void (*setText)(UiSurface *, int16_t id, const char *text);   // SetDlgItemTextA
    // Copies at most size - 1 bytes and a zero; returns the bytes copied.
    // A drop-down list yields its selected entry's text.
    int32_t (*getText)(UiSurface *, int16_t id, char *buffer, int32_t size);  // GetDlgItemTextA
    void (*enable)(UiSurface *, int16_t id, bool on);             // EnableWindow
    bool (*isEnabled)(UiSurface *, int16_t id);                   // IsWindowEnabled
    void (*setCheck)(UiSurface *, int16_t id, int checked);       // CheckDlgButton
    int (*getCheck)(UiSurface *, int16_t id);                     // IsDlgButtonChecked
    // Focus to a control, or with id 0 to the dialog itself (SetFocus).
    void (*setFocus)(UiSurface *, int16_t id);
    int16_t (*getFocus)(UiSurface *);                             // 0: the dialog itself

    // Lists. Indexes count from 0; -1 is "none" or a failure (LB_ERR).
    void (*listReset)(UiSurface *, int16_t id);                               // LB_RESETCONTENT
    int32_t (*listAdd)(UiSurface *, int16_t id, const char *text);            // LB_ADDSTRING (unsorted)
    int32_t (*listDelete)(UiSurface *, int16_t id, int32_t index);            // LB_DELETESTRING: count left
    int32_t (*listCount)(UiSurface *, int16_t id);                            // LB_GETCOUNT
    int32_t (*listGetText)(UiSurface *, int16_t id, int32_t index, char *buffer, int32_t size);
    void (*listSetData)(UiSurface *, int16_t id, int32_t index, int32_t data);  // LB_SETITEMDATA
    int32_t (*listGetData)(UiSurface *, int16_t id, int32_t index);            // LB_GETITEMDATA
    // Selects an entry (-1: none); a combo's edit field takes its text.
    void (*listSetSel)(UiSurface *, int16_t id, int32_t index);               // LB_SETCURSEL
    int32_t (*listGetSel)(UiSurface *, int16_t id);                           // LB_GETCURSEL
    // The first entry after index `after` (-1: from the start) that begins
    // with prefix, ignoring case, wrapping round to the start (LB_FINDSTRING).
    int32_t (*listFind)(UiSurface *, int16_t id, int32_t after, const char *prefix);

    // The dialog.
    int (*messageBox)(UiSurface *, const char *text, const char *caption, UiButtons buttons);
    // Fills path (size bytes) and returns true when the user chose a file;
    // false when cancelled (GetOpenFileNameA, GetSaveFileNameA).
    bool (*fileDialog)(UiSurface *, const UiFileRequest *request, char *path, int32_t size);
    void (*waitCursor)(UiSurface *, bool on);                               // SetCursor(IDC_WAIT)
    void (*help)(UiSurface *, const char *helpFile, uint32_t context);      // WinHelpA
    // Runs another dialog modally, owned by this one; returns its end value.
    int32_t (*runDialog)(UiSurface *, const DialogController *child);       // DialogBoxParamA
    void (*endDialog)(UiSurface *, int32_t value);                          // EndDialog
    // Places the dialog by placeCheckDialog (placement.h): the front end
    // supplies the dialog's size and position, the usable screen area, the
    // frame gaps and the rectangle of the host's edit control (null: none).
    void (*place)(UiSurface *, const void *editControl, bool locked, int16_t x, int16_t y);
    // The dialog's top-left corner on the screen (GetWindowRect).
    void (*getPosition)(UiSurface *, int16_t *x, int16_t *y);
    // Gives every control a normal-weight (400) variant of the dialog font.
    void (*setNormalWeight)(UiSurface *);
    // Shows a line of the checked text with [start, start + count) marked,
    // where the front end has room for it (the terminal shows it above the
    // dialog); the Win32 surface has the host's own edit control for that.
    void (*showContext)(UiSurface *, const char *text, int32_t length, int32_t start,
                        int32_t count);
};

struct UiSurface {
    const UiSurfaceOps *ops;
    void *impl;  // the front end's own record
};

// A front end: what the client layer reaches outside any dialog. It runs
// top-level dialogs (those without a dialog owner), shows message boxes
// without an owner (MessageBoxA with a null window) and the wait cursor.
struct UiFrontEnd {
    int32_t (*runDialog)(UiFrontEnd *frontEnd, const DialogController *dialog);
    int (*messageBox)(UiFrontEnd *frontEnd, const char *text, const char *caption, UiButtons buttons);
    void (*waitCursor)(UiFrontEnd *frontEnd, bool on);
    void *impl;
};

// The calls a controller makes. Each forwards to the surface's table.
inline void Ui_SetText(UiSurface *s, int16_t id, const char *t) { s->ops->setText(s, id, t); }
inline int32_t Ui_GetText(UiSurface *s, int16_t id, char *b, int32_t n) { return s->ops->getText(s, id, b, n); }
inline void Ui_Enable(UiSurface *s, int16_t id, bool on) { s->ops->enable(s, id, on); }
inline bool Ui_IsEnabled(UiSurface *s, int16_t id) { return s->ops->isEnabled(s, id); }
inline void Ui_SetCheck(UiSurface *s, int16_t id, int c) { s->ops->setCheck(s, id, c); }
inline int Ui_GetCheck(UiSurface *s, int16_t id) { return s->ops->getCheck(s, id); }
inline void Ui_SetFocus(UiSurface *s, int16_t id) { s->ops->setFocus(s, id); }
inline int16_t Ui_GetFocus(UiSurface *s) { return s->ops->getFocus(s); }
inline void Ui_ListReset(UiSurface *s, int16_t id) { s->ops->listReset(s, id); }
inline int32_t Ui_ListAdd(UiSurface *s, int16_t id, const char *t) { return s->ops->listAdd(s, id, t); }
inline int32_t Ui_ListDelete(UiSurface *s, int16_t id, int32_t i) { return s->ops->listDelete(s, id, i); }
inline int32_t Ui_ListCount(UiSurface *s, int16_t id) { return s->ops->listCount(s, id); }
inline int32_t Ui_ListGetText(UiSurface *s, int16_t id, int32_t i, char *b, int32_t n) {
    return s->ops->listGetText(s, id, i, b, n);
}
inline void Ui_ListSetData(UiSurface *s, int16_t id, int32_t i, int32_t d) { s->ops->listSetData(s, id, i, d); }
inline int32_t Ui_ListGetData(UiSurface *s, int16_t id, int32_t i) { return s->ops->listGetData(s, id, i); }
inline void Ui_ListSetSel(UiSurface *s, int16_t id, int32_t i) { s->ops->listSetSel(s, id, i); }
inline int32_t Ui_ListGetSel(UiSurface *s, int16_t id) { return s->ops->listGetSel(s, id); }
inline int32_t Ui_ListFind(UiSurface *s, int16_t id, int32_t after, const char *p) {
    return s->ops->listFind(s, id, after, p);
}
inline int Ui_MessageBox(UiSurface *s, const char *text, const char *caption, UiButtons b) {
    return s->ops->messageBox(s, text, caption, b);
}
inline bool Ui_FileDialog(UiSurface *s, const UiFileRequest *r, char *path, int32_t n) {
    return s->ops->fileDialog(s, r, path, n);
}
inline void Ui_WaitCursor(UiSurface *s, bool on) { s->ops->waitCursor(s, on); }
inline void Ui_Help(UiSurface *s, const char *file, uint32_t context) { s->ops->help(s, file, context); }
inline int32_t Ui_RunDialog(UiSurface *s, const DialogController *c) { return s->ops->runDialog(s, c); }
inline void Ui_EndDialog(UiSurface *s, int32_t value) { s->ops->endDialog(s, value); }
inline void Ui_Place(UiSurface *s, const void *editControl, bool locked, int16_t x, int16_t y) {
    s->ops->place(s, editControl, locked, x, y);
}
inline void Ui_GetPosition(UiSurface *s, int16_t *x, int16_t *y) { s->ops->getPosition(s, x, y); }
inline void Ui_SetNormalWeight(UiSurface *s) { s->ops->setNormalWeight(s); }
inline void Ui_ShowContext(UiSurface *s, const char *text, int32_t length, int32_t start, int32_t count) {
    s->ops->showContext(s, text, length, start, count);
}

// A filter text in its "|"-separated form turned into Win32's list of
// zero-terminated strings ending with an empty one: the text's last
// character is the separator, and every occurrence of it becomes a zero.
// Returns the bytes written including both final zeros, or -1 when the text
// is empty or the list does not fit in size bytes (out is then "").
int32_t uiFilterToList(const char *text, char *out, int32_t size);

// The event a Win32 WM_COMMAND stands for: the control's kind (found by id in
// the template) and the notification code. Enter and Esc arrive as ids 1 and
// 2 with code 0 even where the dialog has no such control. False for the
// notifications a controller does not receive (focus changes and the like).
bool uiNotifyFromWin32(const DlgTemplate *dialog, int16_t id, uint16_t code, UiNotify *out);
