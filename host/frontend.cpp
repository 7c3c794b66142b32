// host/frontend.cpp — the installed front end, the default one, and the
// message helpers built on it.
#include "host/frontend.h"

#include <cstdio>
#include <cstring>

#include "host/client.h"
#include "host/texts.h"

namespace {

constexpr int kMaxMessageText = 80;  // a message or caption text, as loaded

int defaultMessageBox(OrthWindow, const char *text, const char *caption, ClientButtons buttons) {
    clientLog("message: %s%s%s", caption, caption[0] != '\0' ? ": " : "", text);
    std::fprintf(stderr, "orth: %s\n", text);
    return buttons == kButtonsOk ? kMessageOk : kMessageCancel;
}

void defaultWaitCursor(bool) {}

int32_t defaultRunDialog(ClientDialog dialog, OrthWindow, CheckContext *) {
    const char *name = dialog == kDialogDictionaries ? "Dictionaries"
                       : dialog == kDialogOptions    ? "Options"
                                                     : "Check Spelling";
    clientLog("runDialog: no user interface for the %s dialog", name);
    return dialog == kDialogDictionaries ? 0 : ORTH_CANCEL_ERR;
}

uint32_t defaultTextLength(OrthWindow) { return 0; }

uint32_t defaultGetText(OrthWindow, char *buffer, uint32_t size) {
    if (buffer != nullptr && size > 0) buffer[0] = '\0';
    return 0;
}

void defaultGetSelection(OrthWindow, uint32_t *start, uint32_t *end) { *start = *end = 0; }
void defaultSetSelection(OrthWindow, uint32_t, uint32_t) {}
void defaultReplaceSelection(OrthWindow, const char *) {}
void defaultScrollCaret(OrthWindow) {}

void defaultOpenHelp(OrthWindow, const char *helpFile, uint32_t context) {
    clientLog("openHelp: no help viewer for %s, context %lu", helpFile, static_cast<unsigned long>(context));
}

const ClientFrontEnd kDefaultFrontEnd = {
    defaultMessageBox,   defaultWaitCursor,       defaultRunDialog,   defaultTextLength,
    defaultGetText,      defaultGetSelection,     defaultSetSelection, defaultReplaceSelection,
    defaultScrollCaret,  defaultOpenHelp,         loadClientString,
};

ClientFrontEnd installed = kDefaultFrontEnd;

template <typename F>
void take(F *member, F given, F fallback) {
    *member = given != nullptr ? given : fallback;
}

// Copies text into out, putting the arguments in place of its first two
// "%s" in turn ("%%" gives '%'); any other '%' is copied as it stands, so a
// text can never read an argument it was not given.
void formatMessage(const char *text, const char *arg1, const char *arg2, char *out, size_t size) {
    const char *args[2] = {arg1 != nullptr ? arg1 : "", arg2 != nullptr ? arg2 : ""};
    int next = 0;
    size_t n = 0;
    auto put = [&](char c) {
        if (n + 1 < size) out[n++] = c;
    };
    for (const char *p = text; *p != '\0'; ++p) {
        if (p[0] == '%' && p[1] == 's' && next < 2) {
            for (const char *a = args[next++]; *a != '\0'; ++a) put(*a);
            ++p;
        } else if (p[0] == '%' && p[1] == '%') {
            put('%');
            ++p;
        } else {
            put(*p);
        }
    }
    out[n] = '\0';
}

}  // namespace

void setClientFrontEnd(const ClientFrontEnd *f) {
    const ClientFrontEnd &d = kDefaultFrontEnd;
    if (f == nullptr) f = &d;
    take(&installed.messageBox, f->messageBox, d.messageBox);
    take(&installed.setWaitCursor, f->setWaitCursor, d.setWaitCursor);
    take(&installed.runDialog, f->runDialog, d.runDialog);
    take(&installed.editTextLength, f->editTextLength, d.editTextLength);
    take(&installed.editGetText, f->editGetText, d.editGetText);
    take(&installed.editGetSelection, f->editGetSelection, d.editGetSelection);
    take(&installed.editSetSelection, f->editSetSelection, d.editSetSelection);
    take(&installed.editReplaceSelection, f->editReplaceSelection, d.editReplaceSelection);
    take(&installed.editScrollCaret, f->editScrollCaret, d.editScrollCaret);
    take(&installed.openHelp, f->openHelp, d.openHelp);
    take(&installed.loadString, f->loadString, d.loadString);
}

const ClientFrontEnd &clientFrontEnd() { return installed; }

int showMessageButtons(OrthWindow owner, int messageId, int captionId, const char *arg1,
                       const char *arg2, ClientButtons buttons) {
    char text[kMaxMessageText + 1], caption[kMaxMessageText + 1] = "";
    installed.loadString(static_cast<uint32_t>(messageId), text, sizeof text);
    if (captionId >= 0) installed.loadString(static_cast<uint32_t>(captionId), caption, sizeof caption);
    char message[kMaxMessageText + 2 * kPathBufSize + 1];
    formatMessage(text, arg1, arg2, message, sizeof message);
    return installed.messageBox(owner, message, caption, buttons);
}

int showMessage(OrthWindow owner, int messageId, int captionId, const char *arg1, const char *arg2) {
    return showMessageButtons(owner, messageId, captionId, arg1, arg2, kButtonsOk);
}

void waitCursor(bool on) { installed.setWaitCursor(on); }
