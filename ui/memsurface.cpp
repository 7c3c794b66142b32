// ui/memsurface.cpp — the in-memory front end.
#include "ui/memsurface.h"

#include <cstring>

#include "engine/log.h"

namespace {

MemFrontEnd *frontEndOf(UiSurface *s) {
    return static_cast<MemFrontEnd *>(static_cast<UiDialog *>(s->impl)->frontEnd);
}

std::string orEmpty(const char *text) { return text == nullptr ? std::string() : std::string(text); }

int memMessageBox(UiSurface *s, const char *text, const char *caption, UiButtons buttons) {
    return frontEndOf(s)->messageBox(text, caption, buttons);
}

bool memFileDialog(UiSurface *s, const UiFileRequest *r, char *path, int32_t size) {
    MemFrontEnd *fe = frontEndOf(s);
    MemFileAnswer answer{false, std::string()};
    if (!fe->fileAnswers.empty()) {
        answer = fe->fileAnswers.front();
        fe->fileAnswers.pop_front();
    }
    // A path that does not fit the caller's buffer fails the dialog, as the
    // Windows dialog does.
    if (answer.chosen && (path == nullptr || size <= 0 || answer.path.size() >= size_t(size))) {
        engineLog("Ui_FileDialog: chosen path longer than %d characters", size > 0 ? size - 1 : 0);
        answer.chosen = false;
    }
    fe->fileCalls.push_back({r->save, orEmpty(r->filter), orEmpty(r->title), orEmpty(r->folder),
                             orEmpty(r->fileName), r->flags, answer.chosen, answer.path});
    if (answer.chosen) std::memcpy(path, answer.path.c_str(), answer.path.size() + 1);
    return answer.chosen;
}

void memWaitCursor(UiSurface *s, bool on) { frontEndOf(s)->waitCursor(on); }

void memHelp(UiSurface *s, const char *helpFile, uint32_t context) {
    frontEndOf(s)->helpCalls.push_back({orEmpty(helpFile), context});
}

int32_t memRunDialog(UiSurface *s, const DialogController *child) { return frontEndOf(s)->run(child); }

void memShowContext(UiSurface *s, const char *text, int32_t length, int32_t start, int32_t count) {
    MemFrontEnd *fe = frontEndOf(s);
    fe->contextText = text == nullptr || length <= 0 ? std::string() : std::string(text, size_t(length));
    fe->contextStart = start;
    fe->contextCount = count;
}

void memPlace(UiSurface *s, const void *editControl, bool locked, int16_t x, int16_t y) {
    frontEndOf(s)->placements.push_back(std::string(editControl != nullptr ? "control" : "none") +
                                        (locked ? " lock " : " free ") + std::to_string(x) + " " +
                                        std::to_string(y));
}

void memGetPosition(UiSurface *s, int16_t *x, int16_t *y) {
    *x = frontEndOf(s)->positionX;
    *y = frontEndOf(s)->positionY;
}

void memSetNormalWeight(UiSurface *s) { ++frontEndOf(s)->normalWeightCalls; }

const UiSurfaceOps *memOps() {
    static const UiSurfaceOps ops = [] {
        UiSurfaceOps o{};
        uiModelOps(&o);
        o.messageBox = memMessageBox;
        o.fileDialog = memFileDialog;
        o.waitCursor = memWaitCursor;
        o.help = memHelp;
        o.runDialog = memRunDialog;
        o.place = memPlace;
        o.getPosition = memGetPosition;
        o.setNormalWeight = memSetNormalWeight;
        o.showContext = memShowContext;
        return o;
    }();
    return &ops;
}

MemFrontEnd *implOf(UiFrontEnd *frontEnd) { return static_cast<MemFrontEnd *>(frontEnd->impl); }
int32_t feRunDialog(UiFrontEnd *f, const DialogController *dialog) { return implOf(f)->run(dialog); }
int feMessageBox(UiFrontEnd *f, const char *text, const char *caption, UiButtons buttons) {
    return implOf(f)->messageBox(text, caption, buttons);
}
void feWaitCursor(UiFrontEnd *f, bool on) { implOf(f)->waitCursor(on); }

}  // namespace

bool MemUi::open(const DialogController *controller) {
    if (!UiDialogOpen(&dialog, controller, memOps(), fe)) return false;
    UiDialogStart(&dialog);
    return true;
}

bool MemUi::keys(const std::string &text) {
    bool all = true;
    for (unsigned char c : text) all = key(c) && all;
    return all;
}

std::string MemUi::text(int16_t id) {
    char buffer[kUiMaxText + 1];
    Ui_GetText(surface(), id, buffer, sizeof buffer);
    return buffer;
}

bool MemUi::enabled(int16_t id) { return Ui_IsEnabled(surface(), id); }
int MemUi::checked(int16_t id) { return Ui_GetCheck(surface(), id); }
int32_t MemUi::selection(int16_t id) { return Ui_ListGetSel(surface(), id); }

std::vector<std::string> MemUi::items(int16_t id) {
    std::vector<std::string> out;
    UiControlState *c = UiDialogControl(&dialog, id);
    if (c != nullptr)
        for (const UiListItem &item : c->items) out.push_back(item.text);
    return out;
}

int32_t MemFrontEnd::run(const DialogController *controller) {
    MemUi dialog(this);
    if (!UiDialogOpen(&dialog.dialog, controller, memOps(), this)) return -1;
    dialogsRun.push_back(dialog.dialog.dialog->name);
    UiDialogStart(&dialog.dialog);
    // One script per run, also for a dialog that ended while it started
    // (that script then goes unused).
    MemScript script;
    if (!scripts.empty()) {
        script = std::move(scripts.front());
        scripts.pop_front();
    }
    if (!dialog.ended() && script) script(dialog);
    if (!dialog.ended()) {
        Ui_SetFocus(dialog.surface(), 0);
        dialog.key(kKeyEsc);
    }
    if (!dialog.ended()) {
        engineLog("MemFrontEnd: dialog %s did not end", dialog.dialog.dialog->name);
        leftOpen.push_back(dialog.dialog.dialog->name);
        return -1;
    }
    return dialog.endValue();
}

int MemFrontEnd::messageBox(const char *text, const char *caption, UiButtons buttons) {
    int answer = kIdOk;
    if (buttons == UI_MB_OKCANCEL && !boxAnswers.empty()) {
        answer = boxAnswers.front() == kIdCancel ? kIdCancel : kIdOk;
        boxAnswers.pop_front();
    }
    boxes.push_back({orEmpty(text), orEmpty(caption), buttons, answer});
    return answer;
}

void MemFrontEnd::waitCursor(bool on) {
    waitDepth += on ? 1 : -1;
    if (waitDepth < 0) waitUnbalanced = true;
}

UiFrontEnd MemFrontEnd::frontEnd() { return UiFrontEnd{feRunDialog, feMessageBox, feWaitCursor, this}; }
