// ui/win32/winfront.cpp — the Win32 front end outside any one dialog: the
// top-level dialogs and message boxes owned by the host's window, the wait
// cursor, help, the string table in the library's resources, and the host's
// edit control; and winUiInstall, which makes all of it the client layer's
// front end.
//
// The host's windows are the host's: an owner or edit control that is not a
// window (a stale or made-up handle) is logged and treated as none, so a
// dialog still shows, without an owner, and an edit control reads as empty.
#include "ui/win32/winui.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "engine/log.h"
#include "platform/platform.h"
#include "ui/clientui.h"
#include "ui/win32/winui_int.h"

namespace {

int waitDepth = 0;
HCURSOR cursorBeforeWait = nullptr;

HWND windowOf(OrthWindow window, const char *operation) {
    HWND hwnd = static_cast<HWND>(window);
    if (hwnd != nullptr && !IsWindow(hwnd)) {
        engineLog("%s: 0x%llx is not a window", operation,
                  static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(window)));
        return nullptr;
    }
    return hwnd;
}

HWND hostOwner(const char *operation) { return windowOf(uiHostWindow(), operation); }

// --- The UiFrontEnd: what has no running dialog as its owner. ---

int32_t frontRunDialog(UiFrontEnd *, const DialogController *dialog) {
    return winRunDialog(hostOwner(dialog->templateName), dialog);
}

int frontMessageBox(UiFrontEnd *, const char *text, const char *caption, UiButtons buttons) {
    return winMessageBox(hostOwner("MessageBoxA"), text, caption, buttons);
}

void frontWaitCursor(UiFrontEnd *, bool on) { winWaitCursor(on); }

UiFrontEnd winFrontEnd = {frontRunDialog, frontMessageBox, frontWaitCursor, nullptr};

// --- The host's edit control. ---

uint32_t editTextLength(OrthWindow edit) {
    HWND h = windowOf(edit, "WM_GETTEXTLENGTH");
    if (h == nullptr) return 0;
    LRESULT n = SendMessageA(h, WM_GETTEXTLENGTH, 0, 0);
    return n < 0 ? 0 : static_cast<uint32_t>(n);
}

uint32_t editGetText(OrthWindow edit, char *buffer, uint32_t size) {
    if (buffer == nullptr || size == 0) return 0;
    buffer[0] = '\0';
    HWND h = windowOf(edit, "WM_GETTEXT");
    if (h == nullptr) return 0;
    LRESULT n = SendMessageA(h, WM_GETTEXT, size, reinterpret_cast<LPARAM>(buffer));
    if (n < 0) n = 0;
    if (static_cast<uint32_t>(n) >= size) n = size - 1;
    buffer[n] = '\0';
    return static_cast<uint32_t>(n);
}

void editGetSelection(OrthWindow edit, uint32_t *start, uint32_t *end) {
    DWORD from = 0, to = 0;
    HWND h = windowOf(edit, "EM_GETSEL");
    if (h != nullptr) SendMessageA(h, EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
    *start = from;
    *end = to;
}

void editSetSelection(OrthWindow edit, uint32_t start, uint32_t end) {
    HWND h = windowOf(edit, "EM_SETSEL");
    if (h != nullptr) SendMessageA(h, EM_SETSEL, start, static_cast<LPARAM>(end));
}

void editReplaceSelection(OrthWindow edit, const char *text) {
    HWND h = windowOf(edit, "EM_REPLACESEL");
    if (h != nullptr) SendMessageA(h, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(text != nullptr ? text : ""));
}

void editScrollCaret(OrthWindow edit) {
    HWND h = windowOf(edit, "EM_SCROLLCARET");
    if (h != nullptr) SendMessageA(h, EM_SCROLLCARET, 0, 0);
}

}  // namespace

HINSTANCE winModule() { return static_cast<HINSTANCE>(platModuleHandle()); }

int winMessageBox(HWND owner, const char *text, const char *caption, UiButtons buttons) {
    UINT type = buttons == UI_MB_OKCANCEL ? MB_OKCANCEL : MB_OK;
    int answer = MessageBoxA(owner, text != nullptr ? text : "", caption != nullptr ? caption : "", type);
    if (answer == 0) {
        engineLog("MessageBoxA: \"%s\" could not be shown (error %lu)", text != nullptr ? text : "",
                  static_cast<unsigned long>(GetLastError()));
        return buttons == UI_MB_OKCANCEL ? kIdCancel : kIdOk;
    }
    return buttons == UI_MB_OKCANCEL && answer != IDOK ? kIdCancel : kIdOk;
}

void winWaitCursor(bool on) {
    if (on) {
        if (waitDepth++ == 0) cursorBeforeWait = SetCursor(LoadCursorA(nullptr, IDC_WAIT));
    } else if (waitDepth > 0 && --waitDepth == 0) {
        SetCursor(cursorBeforeWait);
    }
}

bool winWaiting() { return waitDepth > 0; }

void winOpenHelp(HWND owner, const char *helpFile, uint32_t context) {
    char found[MAX_PATH];
    if (helpFile == nullptr || helpFile[0] == '\0' ||
        SearchPathA(nullptr, helpFile, nullptr, sizeof found, found, nullptr) == 0) {
        const char *name = helpFile != nullptr ? helpFile : "";
        engineLog("WinHelpA: help file %s not found (context %lu)", name, static_cast<unsigned long>(context));
        char text[MAX_PATH + 64], caption[128] = "";
        std::snprintf(text, sizeof text, "Cannot find the help file %s.", name);
        if (owner != nullptr) GetWindowTextA(owner, caption, sizeof caption);
        winMessageBox(owner, text, caption, UI_MB_OK);
        return;
    }
    if (!WinHelpA(owner, found, HELP_CONTEXT, context))
        engineLog("WinHelpA: %s, context %lu, failed (error %lu)", found, static_cast<unsigned long>(context),
                  static_cast<unsigned long>(GetLastError()));
}

int winLoadString(uint32_t id, char *buffer, int size) {
    if (buffer == nullptr || size <= 0) return 0;  // LoadStringA reads a size of 0 as a request for a pointer
    buffer[0] = '\0';
    if (id > 0xFFFF) return 0;
    int n = LoadStringA(winModule(), id, buffer, size);
    if (n <= 0) {
        buffer[0] = '\0';
        return 0;
    }
    return n;
}

void winUiInstall() {
    ClientFrontEnd client = uiClientFrontEnd(&winFrontEnd);
    client.editTextLength = editTextLength;
    client.editGetText = editGetText;
    client.editGetSelection = editGetSelection;
    client.editSetSelection = editSetSelection;
    client.editReplaceSelection = editReplaceSelection;
    client.editScrollCaret = editScrollCaret;
    client.loadString = winLoadString;
    setClientFrontEnd(&client);
}
