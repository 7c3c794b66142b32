// ui/dialog.h — one open dialog held as data: the controls of its template
// with their state, and the user's actions on them (clicks, typing,
// choosing list entries, keys) turned into the controller's events by
// Win32's rules. The in-memory and terminal surfaces are built on it; a
// Win32 dialog keeps this state in its own windows and needs none of it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ui/surface.h"
#include "ui/templates.h"

constexpr int32_t kUiMaxText = 1024;     // longest text a field holds; longer text is cut
constexpr int kUiMaxEventDepth = 16;     // events raised from within events, at most

struct UiListItem {
    std::string text;
    int32_t data;
};

struct UiControlState {
    const DlgControl *control;
    std::string text;        // caption, edit text, or a combo's edit field
    bool enabled;
    int check;               // 0 or 1
    std::vector<UiListItem> items;
    int32_t selection;       // -1 none
};

// Keys: printable characters are their 8-bit value (0x20 to 0xFF but 0x7F);
// the others are these codes. kKeyAlt added to a character is that character
// typed with Alt, which reaches the accelerators even inside an edit field.
enum : int32_t {
    kKeyEnter = 0x100, kKeyEsc, kKeyTab, kKeyBackTab, kKeyUp, kKeyDown, kKeyLeft, kKeyRight,
    kKeyHome, kKeyEnd, kKeyBackspace, kKeyDelete, kKeyKillLine,
    kKeyAlt = 0x1000,
};

struct UiDialog {
    const DlgTemplate *dialog;
    const DialogController *controller;
    UiSurface surface;            // impl points back to this record
    void *frontEnd;               // the front end that shows the dialog
    UiControlState controls[kMaxDlgControls];
    int count;
    int focus;                    // index of the focused control; -1 the dialog itself
    int32_t caret;                // position in the focused edit field
    int16_t mainList;             // the list the digits 1 to 9 choose in, or 0
    bool ended;
    int32_t endValue;
    int eventDepth;
};

// Builds the controls of the controller's template with their template
// captions, all enabled, unchecked and empty; ops is the front end's table
// (see uiModelOps). False, with a log line, for an unknown template.
bool UiDialogOpen(UiDialog *d, const DialogController *controller, const UiSurfaceOps *ops,
                  void *frontEnd);
// Hands the dialog to its controller (init). Call once after UiDialogOpen.
void UiDialogStart(UiDialog *d);

UiControlState *UiDialogControl(UiDialog *d, int16_t id);  // nullptr when absent
int16_t UiDialogFocusId(const UiDialog *d);                 // 0: the dialog itself
bool UiDialogEditing(const UiDialog *d);                    // focus in an edit field

// What the user does. Each returns false, doing nothing, on an ended dialog
// and on a missing or disabled control or one of the wrong kind.
bool UiDialogClick(UiDialog *d, int16_t id);            // buttons, check boxes, radios
bool UiDialogType(UiDialog *d, int16_t id, const char *text);  // replaces an edit field's text
bool UiDialogChoose(UiDialog *d, int16_t id, int32_t index);   // selects a list entry
bool UiDialogConfirm(UiDialog *d, int16_t id);          // double click / Enter on the selection
// One key, by the rules written at the top of dialog.cpp. True when it did
// something.
bool UiDialogKey(UiDialog *d, int32_t key);

// A surface table whose control, list and end entries work on the UiDialog
// that surface->impl points to; the front end fills in the rest.
void uiModelOps(UiSurfaceOps *ops);
