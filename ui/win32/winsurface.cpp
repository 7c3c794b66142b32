// ui/win32/winsurface.cpp — the surface of a real Win32 dialog: the
// controller's calls made on the dialog's windows, and the dialog's
// WM_INITDIALOG and WM_COMMAND handed to the controller.
//
// Design notes
// (1) One WinDialog record per run, on the stack of winRunDialog, which
//     returns only after the dialog's window is gone; the dialog procedure
//     finds it through DWLP_USER from WM_INITDIALOG on. Messages before that
//     (controls being made) reach no controller.
// (2) Win32 raises notifications for some of the controller's own calls
//     (a combo's edit field set through WM_SETTEXT, focus changes); the
//     surface model has the controller's calls raise no events, except
//     setting a single-line edit, whose EN_CHANGE arrives before
//     SetDlgItemTextA returns, as the user's typing would. So every surface
//     call but that one runs "quiet": WM_COMMAND arriving meanwhile is
//     dropped.
// (3) While a combo with an edit field reports CBN_SELCHANGE, Windows has
//     not yet copied the new entry into the edit field; getText for that
//     combo answers from the selected entry until the event returns. A
//     drop-down list always answers from its selected entry.
// (4) Events nest (an edit set from within an event raises another); past
//     kUiMaxEventDepth an event is dropped with a log line instead of
//     running out of stack.
// (5) Drawing resources: the normal-weight font made by setNormalWeight
//     belongs to the dialog and is deleted when its window is destroyed
//     (WM_NCDESTROY, after the controls that used it); the button-face
//     brush is the system's own.
#include <windows.h>

#include <commdlg.h>

#include <cstring>
#include <new>

#include "engine/log.h"
#include "orth.h"
#include "ui/dialog.h"
#include "ui/placement.h"
#include "ui/win32/winui_int.h"

namespace {

// What a dialog paints in the button-face colour beyond its background.
enum : uint8_t { kPaintLabels = 1, kPaintButtons = 2 };

struct DialogPaint {
    const char *name;
    uint8_t parts;
};
const DialogPaint kDialogPaint[] = {
    {kCheckSpellingDlg, kPaintLabels},
    {kEditLexDlg, kPaintLabels},
    {kNewLexDlg, kPaintLabels | kPaintButtons},
    {kOptionsDlg, kPaintLabels | kPaintButtons},
};

constexpr int kFilterListSize = 512;  // a filter text as the dialogs load it (161 characters at most), as a list

struct WinDialog {
    UiSurface surface;  // impl points back here
    HWND hwnd;
    const DialogController *controller;
    const DlgTemplate *dialog;
    uint8_t paint;
    HFONT normalFont;
    int quiet;              // > 0 while a surface call runs
    int16_t selChangeCombo; // the combo whose selection change is being handled, or 0
    int eventDepth;
    bool ended;             // EndDialog was called: no more events
};

WinDialog *dialogOf(UiSurface *s) { return static_cast<WinDialog *>(s->impl); }

// Marks a surface call: notifications it raises are not events.
class Quiet {
public:
    explicit Quiet(WinDialog *d) : d_(d) { ++d_->quiet; }
    ~Quiet() { --d_->quiet; }
    Quiet(const Quiet &) = delete;
    Quiet &operator=(const Quiet &) = delete;

private:
    WinDialog *d_;
};

// A control of the template and its window; a missing one is logged.
struct Control {
    const DlgControl *control;
    HWND hwnd;
    explicit operator bool() const { return hwnd != nullptr; }
};

Control controlOf(WinDialog *d, int16_t id, const char *operation) {
    const DlgControl *c = id == kDlgNoId ? nullptr : findDlgControl(d->dialog, id);
    HWND hwnd = c != nullptr ? GetDlgItem(d->hwnd, id) : nullptr;
    if (hwnd == nullptr) {
        engineLog("%s: no control %d in %s", operation, id, d->dialog->name);
        return {nullptr, nullptr};
    }
    return {c, hwnd};
}

bool isCombo(DlgCtlKind kind) { return kind == DLG_DROPLIST || kind == DLG_SIMPLECOMBO || kind == DLG_EDITCOMBO; }

// The messages of a list box and of a combo box, by role.
struct ListMessages {
    UINT reset, add, remove, count, textLength, text, setData, getData, setSel, getSel, find;
};
const ListMessages kListBox = {LB_RESETCONTENT, LB_ADDSTRING,   LB_DELETESTRING, LB_GETCOUNT,
                               LB_GETTEXTLEN,   LB_GETTEXT,     LB_SETITEMDATA,  LB_GETITEMDATA,
                               LB_SETCURSEL,    LB_GETCURSEL,   LB_FINDSTRING};
const ListMessages kComboBox = {CB_RESETCONTENT, CB_ADDSTRING,   CB_DELETESTRING, CB_GETCOUNT,
                                CB_GETLBTEXTLEN, CB_GETLBTEXT,   CB_SETITEMDATA,  CB_GETITEMDATA,
                                CB_SETCURSEL,    CB_GETCURSEL,   CB_FINDSTRING};

// A list control and its messages; none (with a log line) for any other control.
Control listOf(WinDialog *d, int16_t id, const char *operation, const ListMessages **messages) {
    Control c = controlOf(d, id, operation);
    if (!c) return c;
    if (!dlgIsListKind(c.control->kind)) {
        engineLog("%s: control %d in %s is not a list", operation, id, d->dialog->name);
        return {nullptr, nullptr};
    }
    *messages = isCombo(c.control->kind) ? &kComboBox : &kListBox;
    return c;
}

// An entry's text into buffer (size bytes, cut to fit); the bytes copied or -1.
int32_t entryText(HWND list, const ListMessages *m, int32_t index, char *buffer, int32_t size) {
    if (buffer == nullptr || size <= 0) return -1;
    buffer[0] = '\0';
    LRESULT length = SendMessageA(list, m->textLength, static_cast<WPARAM>(index), 0);
    if (index < 0 || length < 0) return -1;
    char *text = new (std::nothrow) char[static_cast<size_t>(length) + 1];
    if (text == nullptr) return -1;
    text[0] = '\0';
    LRESULT got = SendMessageA(list, m->text, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text));
    int32_t n = got < 0 ? 0 : static_cast<int32_t>(got < length ? got : length);
    if (n > size - 1) n = size - 1;
    std::memcpy(buffer, text, static_cast<size_t>(n));
    buffer[n] = '\0';
    delete[] text;
    return got < 0 ? -1 : n;
}

// --- Controls. ---

void winSetText(UiSurface *s, int16_t id, const char *text) {
    WinDialog *d = dialogOf(s);
    Control c = controlOf(d, id, "Ui_SetText");
    if (!c) return;
    if (c.control->kind == DLG_LISTBOX || c.control->kind == DLG_DROPLIST) {
        engineLog("Ui_SetText: control %d in %s is a list; select an entry instead", id, d->dialog->name);
        return;
    }
    if (c.control->kind == DLG_EDIT) {
        SetDlgItemTextA(d->hwnd, id, text);  // its EN_CHANGE is the event of (2)
        return;
    }
    Quiet quiet(d);
    SetDlgItemTextA(d->hwnd, id, text);
}

int32_t winGetText(UiSurface *s, int16_t id, char *buffer, int32_t size) {
    WinDialog *d = dialogOf(s);
    if (buffer == nullptr || size <= 0) return 0;
    buffer[0] = '\0';
    Control c = controlOf(d, id, "Ui_GetText");
    if (!c) return 0;
    Quiet quiet(d);
    if (c.control->kind == DLG_DROPLIST || (isCombo(c.control->kind) && d->selChangeCombo == id)) {
        LRESULT at = SendMessageA(c.hwnd, CB_GETCURSEL, 0, 0);
        int32_t n = at < 0 ? 0 : entryText(c.hwnd, &kComboBox, static_cast<int32_t>(at), buffer, size);
        return n < 0 ? 0 : n;
    }
    return static_cast<int32_t>(GetDlgItemTextA(d->hwnd, id, buffer, size));
}

void winEnable(UiSurface *s, int16_t id, bool on) {
    WinDialog *d = dialogOf(s);
    Control c = controlOf(d, id, "Ui_Enable");
    if (!c) return;
    Quiet quiet(d);
    // The focus leaves a control before it is disabled, as the keyboard
    // could not reach it again otherwise.
    if (!on && (GetFocus() == c.hwnd || IsChild(c.hwnd, GetFocus()))) SendMessageA(d->hwnd, WM_NEXTDLGCTL, 0, FALSE);
    EnableWindow(c.hwnd, on ? TRUE : FALSE);
}

bool winIsEnabled(UiSurface *s, int16_t id) {
    Control c = controlOf(dialogOf(s), id, "Ui_IsEnabled");
    return c && IsWindowEnabled(c.hwnd) != FALSE;
}

void winSetCheck(UiSurface *s, int16_t id, int checked) {
    WinDialog *d = dialogOf(s);
    Control c = controlOf(d, id, "Ui_SetCheck");
    if (!c) return;
    Quiet quiet(d);
    CheckDlgButton(d->hwnd, id, checked != 0 ? BST_CHECKED : BST_UNCHECKED);
}

int winGetCheck(UiSurface *s, int16_t id) {
    WinDialog *d = dialogOf(s);
    Control c = controlOf(d, id, "Ui_GetCheck");
    return c && IsDlgButtonChecked(d->hwnd, id) == BST_CHECKED ? 1 : 0;
}

void winSetFocus(UiSurface *s, int16_t id) {
    WinDialog *d = dialogOf(s);
    if (id == 0) {
        Quiet quiet(d);
        SetFocus(d->hwnd);
        return;
    }
    Control c = controlOf(d, id, "Ui_SetFocus");
    if (!c) return;
    Quiet quiet(d);
    // SetFocus through the dialog manager, which moves the default button's mark too.
    SendMessageA(d->hwnd, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(c.hwnd), TRUE);
}

int16_t winGetFocus(UiSurface *s) {
    WinDialog *d = dialogOf(s);
    HWND focus = GetFocus();
    if (focus == nullptr || !IsChild(d->hwnd, focus)) return 0;
    while (GetParent(focus) != d->hwnd) focus = GetParent(focus);  // a combo's edit is the combo
    return static_cast<int16_t>(GetDlgCtrlID(focus));
}

// --- Lists. ---

void winListReset(UiSurface *s, int16_t id) {
    WinDialog *d = dialogOf(s);
    const ListMessages *m = nullptr;
    Control c = listOf(d, id, "Ui_ListReset", &m);
    if (!c) return;
    Quiet quiet(d);
    SendMessageA(c.hwnd, m->reset, 0, 0);
}

int32_t winListAdd(UiSurface *s, int16_t id, const char *text) {
    WinDialog *d = dialogOf(s);
    const ListMessages *m = nullptr;
    Control c = listOf(d, id, "Ui_ListAdd", &m);
    if (!c) return -1;
    Quiet quiet(d);
    LRESULT at = SendMessageA(c.hwnd, m->add, 0, reinterpret_cast<LPARAM>(text != nullptr ? text : ""));
    return at < 0 ? -1 : static_cast<int32_t>(at);
}

int32_t winListDelete(UiSurface *s, int16_t id, int32_t index) {
    WinDialog *d = dialogOf(s);
    const ListMessages *m = nullptr;
    Control c = listOf(d, id, "Ui_ListDelete", &m);
    if (!c) return -1;
    Quiet quiet(d);
    LRESULT left = SendMessageA(c.hwnd, m->remove, static_cast<WPARAM>(index), 0);
    return left < 0 ? -1 : static_cast<int32_t>(left);
}

int32_t winListCount(UiSurface *s, int16_t id) {
    WinDialog *d = dialogOf(s);
    const ListMessages *m = nullptr;
    Control c = listOf(d, id, "Ui_ListCount", &m);
    if (!c) return 0;
    LRESULT n = SendMessageA(c.hwnd, m->count, 0, 0);
    return n < 0 ? 0 : static_cast<int32_t>(n);
}

int32_t winListGetText(UiSurface *s, int16_t id, int32_t index, char *buffer, int32_t size) {
    WinDialog *d = dialogOf(s);
    const ListMessages *m = nullptr;
    Control c = listOf(d, id, "Ui_ListGetText", &m);
    if (!c) {
        if (buffer != nullptr && size > 0) buffer[0] = '\0';
        return -1;
    }
    return entryText(c.hwnd, m, index, buffer, size);
}

void winListSetData(UiSurface *s, int16_t id, int32_t index, int32_t data) {
    WinDialog *d = dialogOf(s);
    const ListMessages *m = nullptr;
    Control c = listOf(d, id, "Ui_ListSetData", &m);
    if (c) SendMessageA(c.hwnd, m->setData, static_cast<WPARAM>(index), static_cast<LPARAM>(data));
}

int32_t winListGetData(UiSurface *s, int16_t id, int32_t index) {
    WinDialog *d = dialogOf(s);
    const ListMessages *m = nullptr;
    Control c = listOf(d, id, "Ui_ListGetData", &m);
    if (!c) return -1;
    // LB_ERR and CB_ERR are -1, which no entry of ours carries.
    return static_cast<int32_t>(SendMessageA(c.hwnd, m->getData, static_cast<WPARAM>(index), 0));
}

void winListSetSel(UiSurface *s, int16_t id, int32_t index) {
    WinDialog *d = dialogOf(s);
    const ListMessages *m = nullptr;
    Control c = listOf(d, id, "Ui_ListSetSel", &m);
    if (!c) return;
    Quiet quiet(d);
    SendMessageA(c.hwnd, m->setSel, static_cast<WPARAM>(index), 0);
}

int32_t winListGetSel(UiSurface *s, int16_t id) {
    WinDialog *d = dialogOf(s);
    const ListMessages *m = nullptr;
    Control c = listOf(d, id, "Ui_ListGetSel", &m);
    if (!c) return -1;
    LRESULT at = SendMessageA(c.hwnd, m->getSel, 0, 0);
    return at < 0 ? -1 : static_cast<int32_t>(at);
}

int32_t winListFind(UiSurface *s, int16_t id, int32_t after, const char *prefix) {
    WinDialog *d = dialogOf(s);
    const ListMessages *m = nullptr;
    Control c = listOf(d, id, "Ui_ListFind", &m);
    if (!c) return -1;
    LRESULT at = SendMessageA(c.hwnd, m->find, static_cast<WPARAM>(after),
                              reinterpret_cast<LPARAM>(prefix != nullptr ? prefix : ""));
    return at < 0 ? -1 : static_cast<int32_t>(at);
}

// --- The dialog. ---

int winSurfaceMessageBox(UiSurface *s, const char *text, const char *caption, UiButtons buttons) {
    return winMessageBox(dialogOf(s)->hwnd, text, caption, buttons);
}

// The extension of a filter list's first pattern ("*.tlx" gives "tlx"), for
// a save dialog to add to a name typed without one; "" for none.
void firstExtension(const char *list, char *out, size_t size) {
    out[0] = '\0';
    const char *pattern = list + std::strlen(list) + 1;
    const char *dot = std::strrchr(pattern, '.');
    if (pattern[0] != '*' || dot == nullptr || std::strpbrk(dot + 1, "*?;") != nullptr) return;
    size_t n = std::strlen(dot + 1);
    if (n + 1 > size) return;
    std::memcpy(out, dot + 1, n + 1);
}

bool winFileDialog(UiSurface *s, const UiFileRequest *r, char *path, int32_t size) {
    WinDialog *d = dialogOf(s);
    if (path == nullptr || size <= 0) return false;
    path[0] = '\0';
    char filter[kFilterListSize] = "", extension[16] = "";
    if (uiFilterToList(r->filter, filter, sizeof filter) < 0)
        engineLog("Ui_FileDialog: the filter of \"%s\" does not fit; none is offered", r->title);
    else
        firstExtension(filter, extension, sizeof extension);
    char file[MAX_PATH] = "";
    if (r->fileName != nullptr) {
        std::strncpy(file, r->fileName, sizeof file - 1);
        file[sizeof file - 1] = '\0';
    }
    OPENFILENAMEA ofn{};
    ofn.lStructSize = sizeof ofn;
    ofn.hwndOwner = d->hwnd;
    ofn.lpstrFilter = filter[0] != '\0' ? filter : nullptr;
    ofn.nFilterIndex = 1;
    ofn.lpstrFile = file;
    ofn.nMaxFile = sizeof file;
    ofn.lpstrInitialDir = r->folder != nullptr && r->folder[0] != '\0' ? r->folder : nullptr;
    ofn.lpstrTitle = r->title;
    ofn.lpstrDefExt = r->save && extension[0] != '\0' ? extension : nullptr;
    ofn.Flags = OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (r->flags & kUiFileMustExist) ofn.Flags |= OFN_FILEMUSTEXIST;
    if (r->flags & kUiPathMustExist) ofn.Flags |= OFN_PATHMUSTEXIST;
    if (r->flags & kUiOverwritePrompt) ofn.Flags |= OFN_OVERWRITEPROMPT;
    BOOL chosen = r->save ? GetSaveFileNameA(&ofn) : GetOpenFileNameA(&ofn);
    if (!chosen) {
        DWORD error = CommDlgExtendedError();
        if (error != 0)
            engineLog("%s: \"%s\" failed (error 0x%lx)", r->save ? "GetSaveFileNameA" : "GetOpenFileNameA",
                      r->title, static_cast<unsigned long>(error));
        return false;
    }
    size_t n = std::strlen(file);
    if (n + 1 > static_cast<size_t>(size)) {
        engineLog("Ui_FileDialog: chosen path longer than %d characters", size - 1);
        return false;
    }
    std::memcpy(path, file, n + 1);
    return true;
}

void winSurfaceWaitCursor(UiSurface *, bool on) { winWaitCursor(on); }

void winHelp(UiSurface *s, const char *helpFile, uint32_t context) { winOpenHelp(dialogOf(s)->hwnd, helpFile, context); }

int32_t winChildDialog(UiSurface *s, const DialogController *child) { return winRunDialog(dialogOf(s)->hwnd, child); }

void winEndDialog(UiSurface *s, int32_t value) {
    WinDialog *d = dialogOf(s);
    d->ended = true;
    EndDialog(d->hwnd, value);
}

// The usable area of the screen: the work area on the non-NT family from
// version 4 on, the desktop window's rectangle everywhere else.
RECT usableArea() {
    DWORD version = GetVersion();
    bool nonNt = (version & 0x80000000u) != 0;
    RECT area{};
    if (nonNt && LOBYTE(LOWORD(version)) >= 4 && SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0)) return area;
    GetWindowRect(GetDesktopWindow(), &area);
    return area;
}

UiRect uiRectOf(const RECT &r) { return UiRect{r.left, r.top, r.right, r.bottom}; }

void winPlace(UiSurface *s, const void *editControl, bool locked, int16_t x, int16_t y) {
    WinDialog *d = dialogOf(s);
    RECT own{};
    GetWindowRect(d->hwnd, &own);
    PlacementInput in{};
    in.width = own.right - own.left;
    in.height = own.bottom - own.top;
    in.usable = uiRectOf(usableArea());
    HWND edit = static_cast<HWND>(const_cast<void *>(editControl));
    RECT control{};
    in.hasControl = edit != nullptr && IsWindow(edit) && GetWindowRect(edit, &control);
    in.control = uiRectOf(control);
    in.gapX = GetSystemMetrics(SM_CXFRAME);
    in.gapY = GetSystemMetrics(SM_CYFRAME);
    in.locked = locked;
    in.rememberedX = x;
    in.rememberedY = y;
    in.current = {own.left, own.top};
    Placement p = placeCheckDialog(in);
    if (p.how == PLACE_UNCHANGED) return;
    SetWindowPos(d->hwnd, nullptr, p.topLeft.x, p.topLeft.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

int16_t clamp16(LONG v) { return static_cast<int16_t>(v < -32768 ? -32768 : v > 32767 ? 32767 : v); }

void winGetPosition(UiSurface *s, int16_t *x, int16_t *y) {
    RECT r{};
    GetWindowRect(dialogOf(s)->hwnd, &r);
    *x = clamp16(r.left);
    *y = clamp16(r.top);
}

void winSetNormalWeight(UiSurface *s) {
    WinDialog *d = dialogOf(s);
    HFONT font = reinterpret_cast<HFONT>(SendMessageA(d->hwnd, WM_GETFONT, 0, 0));
    LOGFONTA lf{};
    if (font == nullptr || GetObjectA(font, sizeof lf, &lf) != sizeof lf) {
        engineLog("Ui_SetNormalWeight: %s has no font of its own", d->dialog->name);
        return;
    }
    lf.lfWeight = FW_NORMAL;
    HFONT normal = CreateFontIndirectA(&lf);
    if (normal == nullptr) {
        engineLog("Ui_SetNormalWeight: CreateFontIndirectA failed for %s", d->dialog->name);
        return;
    }
    Quiet quiet(d);
    for (HWND c = GetWindow(d->hwnd, GW_CHILD); c != nullptr; c = GetWindow(c, GW_HWNDNEXT))
        SendMessageA(c, WM_SETFONT, reinterpret_cast<WPARAM>(normal), TRUE);
    if (d->normalFont != nullptr) DeleteObject(d->normalFont);
    d->normalFont = normal;
}

// The Win32 dialog has the host's own edit control to show the word in.
void winShowContext(UiSurface *, const char *, int32_t, int32_t, int32_t) {}

const UiSurfaceOps kWinOps = {
    winSetText,      winGetText,      winEnable,         winIsEnabled,     winSetCheck,
    winGetCheck,     winSetFocus,     winGetFocus,       winListReset,     winListAdd,
    winListDelete,   winListCount,    winListGetText,    winListSetData,   winListGetData,
    winListSetSel,   winListGetSel,   winListFind,       winSurfaceMessageBox, winFileDialog,
    winSurfaceWaitCursor, winHelp,    winChildDialog,    winEndDialog,     winPlace,
    winGetPosition,  winSetNormalWeight, winShowContext,
};

// --- The dialog procedure. ---

void dispatchCommand(WinDialog *d, int16_t id, uint16_t code) {
    UiNotify notify;
    if (d->ended || !uiNotifyFromWin32(d->dialog, id, code, &notify)) return;
    if (d->eventDepth >= kUiMaxEventDepth) {
        engineLog("%s: event %d of control %d dropped, events nested too deeply", d->dialog->name,
                  static_cast<int>(notify), id);
        return;
    }
    const DlgControl *control = findDlgControl(d->dialog, id);
    int16_t savedCombo = d->selChangeCombo;
    if (notify == UI_SEL_CHANGED && control != nullptr && isCombo(control->kind)) d->selChangeCombo = id;
    ++d->eventDepth;
    d->controller->command(&d->surface, d->controller->state, id, notify);
    --d->eventDepth;
    d->selChangeCombo = savedCombo;
}

// The brush for a control's WM_CTLCOLOR message, or null for the default.
HBRUSH controlColour(WinDialog *d, HDC dc, HWND control) {
    const DlgControl *c = findDlgControl(d->dialog, static_cast<int16_t>(GetDlgCtrlID(control)));
    DlgCtlKind kind = c != nullptr ? c->kind : DLG_LABEL;  // an unnamed control is a frame or label
    uint8_t part = kind == DLG_LABEL ? kPaintLabels
                   : (dlgIsButtonKind(kind) || kind == DLG_GROUP) ? kPaintButtons
                                                                  : 0;
    if ((d->paint & part) == 0) return nullptr;
    SetBkColor(dc, GetSysColor(COLOR_BTNFACE));
    SetTextColor(dc, GetSysColor(part == kPaintLabels ? COLOR_WINDOWTEXT : COLOR_BTNTEXT));
    return GetSysColorBrush(COLOR_BTNFACE);
}

INT_PTR CALLBACK dialogProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    auto *d = reinterpret_cast<WinDialog *>(GetWindowLongPtrA(hwnd, DWLP_USER));
    if (message == WM_INITDIALOG) {
        d = reinterpret_cast<WinDialog *>(lParam);
        d->hwnd = hwnd;
        SetWindowLongPtrA(hwnd, DWLP_USER, lParam);
        d->controller->init(&d->surface, d->controller->state);
        // The focus to the first control that takes it; a dialog that ended
        // in its start (nothing to show) never shows, so it takes no focus
        // from the host.
        return d->ended ? FALSE : TRUE;
    }
    if (d == nullptr) return FALSE;
    switch (message) {
    case WM_COMMAND:
        if (d->quiet == 0) dispatchCommand(d, static_cast<int16_t>(LOWORD(wParam)), HIWORD(wParam));
        return TRUE;
    case WM_CTLCOLORDLG:
        return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_BTNFACE));
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
        return reinterpret_cast<INT_PTR>(
            controlColour(d, reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam)));
    case WM_SETCURSOR:
        if (!winWaiting()) return FALSE;
        SetCursor(LoadCursorA(nullptr, IDC_WAIT));
        SetWindowLongPtrA(hwnd, DWLP_MSGRESULT, TRUE);
        return TRUE;
    case WM_NCDESTROY:
        if (d->normalFont != nullptr) DeleteObject(d->normalFont);
        d->normalFont = nullptr;
        SetWindowLongPtrA(hwnd, DWLP_USER, 0);
        return FALSE;
    default:
        return FALSE;
    }
}

uint8_t paintOf(const DlgTemplate *t) {
    for (const DialogPaint &p : kDialogPaint)
        if (std::strcmp(p.name, t->name) == 0) return p.parts;
    return 0;
}

}  // namespace

int32_t winRunDialog(HWND owner, const DialogController *controller) {
    const DlgTemplate *t = findDialogTemplate(controller->templateName);
    if (t == nullptr) {
        engineLog("DialogBoxParamA: no dialog template %s",
                  controller->templateName != nullptr ? controller->templateName : "(null)");
        return ORTH_CANCEL_ERR;
    }
    WinDialog d{};
    d.surface = UiSurface{&kWinOps, &d};
    d.controller = controller;
    d.dialog = t;
    d.paint = paintOf(t);
    INT_PTR end = DialogBoxParamA(winModule(), t->name, owner, dialogProc, reinterpret_cast<LPARAM>(&d));
    if (d.hwnd == nullptr) {
        engineLog("DialogBoxParamA: %s could not be shown (error %lu)", t->name,
                  static_cast<unsigned long>(GetLastError()));
        return ORTH_CANCEL_ERR;
    }
    return static_cast<int32_t>(end);
}
