// ui/clientui.cpp — the client front end over a UiFrontEnd.
//
// (1) uiRunDialog wraps the controller it is given: the wrapper's init
//     records the surface as running before the controller's own init runs,
//     and the surface is forgotten when the run returns. So a running dialog
//     is known from the moment its controller can show a message until the
//     front end has torn it down.
// (2) Dialogs nest (Check Spelling starts Dictionaries, which starts New
//     Dictionary); kMaxOpenDialogs bounds the nesting, so a controller that
//     started itself without end is refused instead of running out of stack.
#include "ui/clientui.h"

#include "engine/log.h"
#include "host/client.h"
#include "host/texts.h"
#include "orth.h"
#include "ui/controllers.h"

namespace {

constexpr int kMaxOpenDialogs = 8;  // three nest in use: Check Spelling, Dictionaries, New Dictionary

UiFrontEnd *current = nullptr;
OrthWindow hostWindow = nullptr;  // the owner of what the front end shows now
UiSurface *running[kMaxOpenDialogs];
int runningCount = 0;

struct Wrapped {
    const DialogController *inner;
    bool recorded;
};

void wrappedInit(UiSurface *s, void *state) {
    auto *w = static_cast<Wrapped *>(state);
    running[runningCount++] = s;
    w->recorded = true;
    w->inner->init(s, w->inner->state);
}

void wrappedCommand(UiSurface *s, void *state, int16_t id, UiNotify notify) {
    auto *w = static_cast<Wrapped *>(state);
    w->inner->command(s, w->inner->state, id, notify);
}

UiSurface *topDialog() { return runningCount > 0 ? running[runningCount - 1] : nullptr; }

UiButtons uiButtonsOf(ClientButtons buttons) { return buttons == kButtonsOkCancel ? UI_MB_OKCANCEL : UI_MB_OK; }

int clientMessageBox(OrthWindow owner, const char *text, const char *caption, ClientButtons buttons) {
    UiSurface *dialog = uiDialogOfWindow(owner);
    if (dialog != nullptr) return Ui_MessageBox(dialog, text, caption, uiButtonsOf(buttons));
    if (current == nullptr) return buttons == kButtonsOk ? kMessageOk : kMessageCancel;
    OrthWindow saved = hostWindow;
    hostWindow = owner;
    int answer = current->messageBox(current, text, caption, uiButtonsOf(buttons));
    hostWindow = saved;
    return answer;
}

// The wait cursor goes to the innermost running dialog, else to the front end.
void clientWaitCursor(bool on) {
    UiSurface *dialog = topDialog();
    if (dialog != nullptr) Ui_WaitCursor(dialog, on);
    else if (current != nullptr) current->waitCursor(current, on);
}

int32_t runClientDialog(ClientDialog dialog, UiSurface *ownerDialog, CheckContext *check) {
    switch (dialog) {
    case kDialogCheckSpelling:
        if (check == nullptr) {
            engineLog("runDialog: Check Spelling without a check context");
            return ORTH_CANCEL_ERR;
        }
        return runCheckSpellingDlg(ownerDialog, check);
    case kDialogDictionaries: return runEditLexDlg(ownerDialog);
    case kDialogOptions: return runOptionsDlg(ownerDialog);
    }
    engineLog("runDialog: unknown dialog %d", static_cast<int>(dialog));
    return ORTH_CANCEL_ERR;
}

int32_t clientRunDialog(ClientDialog dialog, OrthWindow owner, CheckContext *check) {
    UiSurface *ownerDialog = uiDialogOfWindow(owner);
    OrthWindow saved = hostWindow;
    hostWindow = ownerDialog == nullptr ? owner : nullptr;
    int32_t end = runClientDialog(dialog, ownerDialog, check);
    hostWindow = saved;
    return end;
}

void clientOpenHelp(OrthWindow owner, const char *helpFile, uint32_t context) {
    UiSurface *dialog = uiDialogOfWindow(owner);
    if (dialog == nullptr) dialog = topDialog();
    if (dialog != nullptr) Ui_Help(dialog, helpFile, context);
    else engineLog("openHelp: no dialog to show %s, context %lu", helpFile, static_cast<unsigned long>(context));
}

}  // namespace

ClientFrontEnd uiClientFrontEnd(UiFrontEnd *fe) {
    current = fe;
    ClientFrontEnd client{};
    client.messageBox = clientMessageBox;
    client.setWaitCursor = clientWaitCursor;
    client.runDialog = clientRunDialog;
    client.openHelp = clientOpenHelp;
    client.loadString = loadClientString;
    return client;
}

UiFrontEnd *uiCurrentFrontEnd() { return current; }

int32_t uiRunDialog(UiSurface *owner, const DialogController *controller) {
    if (owner == nullptr && current == nullptr) {
        engineLog("uiRunDialog: no user interface for %s", controller->templateName);
        return ORTH_CANCEL_ERR;
    }
    if (runningCount >= kMaxOpenDialogs) {
        engineLog("uiRunDialog: %s refused, %d dialogs are open", controller->templateName, runningCount);
        return ORTH_CANCEL_ERR;
    }
    Wrapped w{controller, false};
    DialogController outer{controller->templateName, &w, wrappedInit, wrappedCommand};
    int depth = runningCount;
    int32_t end = owner != nullptr ? Ui_RunDialog(owner, &outer) : current->runDialog(current, &outer);
    if (w.recorded) runningCount = depth;
    return end;
}

OrthWindow uiHostWindow() { return hostWindow; }

OrthWindow uiOwnerWindow(UiSurface *surface) { return static_cast<OrthWindow>(surface); }

UiSurface *uiDialogOfWindow(OrthWindow window) {
    if (window == nullptr) return nullptr;
    for (int i = 0; i < runningCount; ++i)
        if (static_cast<OrthWindow>(running[i]) == window) return running[i];
    return nullptr;
}
