// ui/surface.cpp — the front-end independent helpers of the surface: filter
// lists and the translation of Win32 notifications.
#include "ui/surface.h"

#include <cstring>

int32_t uiFilterToList(const char *text, char *out, int32_t size) {
    if (out == nullptr || size <= 0) return -1;
    out[0] = '\0';
    size_t n = text == nullptr ? 0 : std::strlen(text);
    // The text ends with its separator, which becomes the last string's
    // zero; one more zero ends the list.
    if (n == 0 || n + 1 > static_cast<size_t>(size)) return -1;
    char separator = text[n - 1];
    for (size_t i = 0; i < n; ++i) out[i] = text[i] == separator ? '\0' : text[i];
    out[n] = '\0';
    return static_cast<int32_t>(n + 1);
}

bool uiNotifyFromWin32(const DlgTemplate *dialog, int16_t id, uint16_t code, UiNotify *out) {
    // Win32 notification codes (winuser.h).
    enum : uint16_t {
        kBnClicked = 0, kEnChange = 0x0300, kSelChange = 1, kDblClk = 2,
        kCbnEditChange = 5, kCbnSelEndOk = 9,
    };
    const DlgControl *control = findDlgControl(dialog, id);
    if (control == nullptr) {
        if ((id == kIdOk || id == kIdCancel) && code == kBnClicked) {
            *out = UI_CLICKED;
            return true;
        }
        return false;
    }
    switch (control->kind) {
    case DLG_BUTTON: case DLG_DEFBUTTON: case DLG_CHECKBOX: case DLG_RADIO:
        if (code != kBnClicked) return false;
        *out = UI_CLICKED;
        return true;
    case DLG_EDIT:
        if (code != kEnChange) return false;
        *out = UI_EDIT_CHANGED;
        return true;
    case DLG_LISTBOX:
        if (code == kSelChange) *out = UI_SEL_CHANGED;
        else if (code == kDblClk) *out = UI_SEL_CONFIRMED;
        else return false;
        return true;
    case DLG_DROPLIST: case DLG_SIMPLECOMBO: case DLG_EDITCOMBO:
        if (code == kSelChange) *out = UI_SEL_CHANGED;
        else if (code == kDblClk || code == kCbnSelEndOk) *out = UI_SEL_CONFIRMED;
        else if (code == kCbnEditChange && control->kind != DLG_DROPLIST) *out = UI_EDIT_CHANGED;
        else return false;
        return true;
    case DLG_LABEL: case DLG_GROUP:
        return false;
    }
    return false;
}
