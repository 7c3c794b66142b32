// ui/dialog.cpp — a dialog's controls as data, and the user's actions on
// them turned into events.
//
// Design notes
// (1) The record is the surface: d->surface.impl points back to d, so the
//     record stays where UiDialogOpen built it until the dialog is gone.
// (2) Events go to the controller synchronously and may nest (a controller
//     setting an edit field from within an event raises another); nesting
//     deeper than kUiMaxEventDepth drops the event with a log line instead of
//     running out of stack.
// (3) Once ended, a dialog takes no more user actions; the controller's own
//     calls still work until the front end tears the dialog down.
//
// Keys follow Windows' dialog keyboard rules, for a keyboard without a mouse:
//   - In an edit field (an edit, or a combo's edit part): characters are
//     typed at the caret; Backspace, Delete, Left, Right, Home, End and
//     Ctrl-U (clear) edit; every change raises UI_EDIT_CHANGED. Up and Down
//     in a combo choose the previous or next entry. Enter or Esc end the
//     edit, handing the focus back to the dialog (Enter also confirms a
//     combo's selection).
//   - A character outside an edit field, or Alt and a character anywhere, is
//     an accelerator: the letter marked by '&' in a caption, in any case. A
//     label's or frame's accelerator belongs to the next control that takes
//     focus (when that one is disabled, nothing happens). With one enabled
//     match, a button is clicked, a check box toggled, a radio button
//     checked, anything else focused; with several, the focus moves to the
//     next of them and nothing is clicked, as Windows does.
//   - A digit 1 to 9 outside an edit field that is no accelerator chooses
//     that entry of the focused list, else of the dialog's main list.
//   - Tab and Shift-Tab move the focus among the enabled controls that take it.
//   - Up and Down choose in a focused list; Enter confirms its selection and
//     Esc leaves it, handing the focus back to the dialog.
//   - Space clicks a focused button, check box or radio button; Enter clicks
//     a focused push button, else the default button.
//   - Esc elsewhere sends Cancel (id 2), unless a Cancel button is disabled.
#include "ui/dialog.h"

#include <cstring>

#include "check/chartab.h"
#include "engine/log.h"

namespace {

UiDialog *modelOf(UiSurface *s) { return static_cast<UiDialog *>(s->impl); }

int indexOf(const UiDialog *d, int16_t id) {
    if (id == kDlgNoId) return -1;
    for (int i = 0; i < d->count; ++i)
        if (d->controls[i].control->id == id) return i;
    return -1;
}

// The control for a surface call; a missing one is logged.
UiControlState *lookup(UiDialog *d, int16_t id, const char *operation) {
    int i = indexOf(d, id);
    if (i >= 0) return &d->controls[i];
    engineLog("%s: no control %d in %s", operation, id, d->dialog->name);
    return nullptr;
}

std::string cut(const char *text) {
    if (text == nullptr) return std::string();
    size_t n = strnlen(text, kUiMaxText);
    return std::string(text, n);
}

int32_t copyOut(const std::string &text, char *buffer, int32_t size) {
    if (buffer == nullptr || size <= 0) return 0;
    size_t n = text.size() < size_t(size - 1) ? text.size() : size_t(size - 1);
    std::memcpy(buffer, text.data(), n);
    buffer[n] = '\0';
    return static_cast<int32_t>(n);
}

bool beginsNoCase(const std::string &text, const char *prefix) {
    for (size_t i = 0; prefix[i] != '\0'; ++i) {
        if (i >= text.size()) return false;
        if (toLowerChar(0, static_cast<unsigned char>(text[i])) !=
            toLowerChar(0, static_cast<unsigned char>(prefix[i])))
            return false;
    }
    return true;
}

int32_t findPrefix(const UiControlState &c, int32_t after, const char *prefix) {
    int32_t n = static_cast<int32_t>(c.items.size());
    if (prefix == nullptr || n == 0) return -1;
    if (after < -1 || after >= n) after = -1;
    for (int32_t k = 1; k <= n; ++k) {
        int32_t i = (after + k) % n;
        if (beginsNoCase(c.items[i].text, prefix)) return i;
    }
    return -1;
}

void raise(UiDialog *d, int16_t id, UiNotify notify) {
    if (d->eventDepth >= kUiMaxEventDepth) {
        engineLog("%s: event %d of control %d dropped, events nested too deeply", d->dialog->name,
                  int(notify), id);
        return;
    }
    ++d->eventDepth;
    d->controller->command(&d->surface, d->controller->state, id, notify);
    --d->eventDepth;
}

void selectEntry(UiControlState *c, int32_t index) {
    c->selection = index;
    if (dlgHasEditField(c->control->kind) && c->control->kind != DLG_EDIT)
        c->text = index >= 0 ? c->items[index].text : std::string();
}

bool usable(const UiDialog *d, const UiControlState *c) { return !d->ended && c != nullptr && c->enabled; }

// Sets an edit field's text as the user's typing does: a combo's list
// follows the text to its first entry with that beginning, then the change
// event arrives.
void typed(UiDialog *d, UiControlState *c, std::string text) {
    if (text.size() > size_t(kUiMaxText)) text.resize(kUiMaxText);
    c->text = std::move(text);
    if (c->control->kind != DLG_EDIT)
        c->selection = c->text.empty() ? -1 : findPrefix(*c, -1, c->text.c_str());
    raise(d, c->control->id, UI_EDIT_CHANGED);
}

void focusIndex(UiDialog *d, int i) {
    d->focus = i;
    d->caret = i >= 0 ? static_cast<int32_t>(d->controls[i].text.size()) : 0;
}

// --- Surface operations over the model. ---

void opSetText(UiSurface *s, int16_t id, const char *text) {
    UiDialog *d = modelOf(s);
    UiControlState *c = lookup(d, id, "Ui_SetText");
    if (c == nullptr) return;
    if (c->control->kind == DLG_DROPLIST || c->control->kind == DLG_LISTBOX) {
        engineLog("Ui_SetText: control %d in %s is a list; select an entry instead", id, d->dialog->name);
        return;
    }
    c->text = cut(text);
    if (d->focus >= 0 && &d->controls[d->focus] == c) d->caret = static_cast<int32_t>(c->text.size());
    if (c->control->kind == DLG_EDIT) raise(d, id, UI_EDIT_CHANGED);
}

int32_t opGetText(UiSurface *s, int16_t id, char *buffer, int32_t size) {
    UiControlState *c = lookup(modelOf(s), id, "Ui_GetText");
    if (c == nullptr) return copyOut(std::string(), buffer, size);
    if (c->control->kind == DLG_DROPLIST || c->control->kind == DLG_LISTBOX)
        return copyOut(c->selection >= 0 ? c->items[c->selection].text : std::string(), buffer, size);
    return copyOut(c->text, buffer, size);
}

void opEnable(UiSurface *s, int16_t id, bool on) {
    UiDialog *d = modelOf(s);
    UiControlState *c = lookup(d, id, "Ui_Enable");
    if (c == nullptr) return;
    c->enabled = on;
    if (!on && d->focus >= 0 && &d->controls[d->focus] == c) focusIndex(d, -1);
}

bool opIsEnabled(UiSurface *s, int16_t id) {
    UiControlState *c = lookup(modelOf(s), id, "Ui_IsEnabled");
    return c != nullptr && c->enabled;
}

void opSetCheck(UiSurface *s, int16_t id, int checked) {
    UiControlState *c = lookup(modelOf(s), id, "Ui_SetCheck");
    if (c != nullptr && (c->control->kind == DLG_CHECKBOX || c->control->kind == DLG_RADIO))
        c->check = checked != 0 ? 1 : 0;
}

int opGetCheck(UiSurface *s, int16_t id) {
    UiControlState *c = lookup(modelOf(s), id, "Ui_GetCheck");
    return c == nullptr ? 0 : c->check;
}

void opSetFocus(UiSurface *s, int16_t id) {
    UiDialog *d = modelOf(s);
    if (id == 0) return focusIndex(d, -1);
    int i = indexOf(d, id);
    if (i < 0) {
        engineLog("Ui_SetFocus: no control %d in %s", id, d->dialog->name);
        return;
    }
    if (dlgTakesFocus(d->controls[i].control->kind) && d->controls[i].enabled) focusIndex(d, i);
}

int16_t opGetFocus(UiSurface *s) { return UiDialogFocusId(modelOf(s)); }

UiControlState *lookupList(UiSurface *s, int16_t id, const char *operation) {
    UiDialog *d = modelOf(s);
    UiControlState *c = lookup(d, id, operation);
    if (c != nullptr && !dlgIsListKind(c->control->kind)) {
        engineLog("%s: control %d in %s is not a list", operation, id, d->dialog->name);
        return nullptr;
    }
    return c;
}

bool validIndex(const UiControlState *c, int32_t index) {
    return index >= 0 && index < static_cast<int32_t>(c->items.size());
}

void opListReset(UiSurface *s, int16_t id) {
    UiControlState *c = lookupList(s, id, "Ui_ListReset");
    if (c == nullptr) return;
    c->items.clear();
    c->selection = -1;
    if (c->control->kind != DLG_DROPLIST && c->control->kind != DLG_LISTBOX) c->text.clear();
}

int32_t opListAdd(UiSurface *s, int16_t id, const char *text) {
    UiControlState *c = lookupList(s, id, "Ui_ListAdd");
    if (c == nullptr) return -1;
    c->items.push_back({cut(text), 0});
    return static_cast<int32_t>(c->items.size() - 1);
}

int32_t opListDelete(UiSurface *s, int16_t id, int32_t index) {
    UiControlState *c = lookupList(s, id, "Ui_ListDelete");
    if (c == nullptr || !validIndex(c, index)) return -1;
    c->items.erase(c->items.begin() + index);
    if (c->selection == index) c->selection = -1;
    else if (c->selection > index) --c->selection;
    return static_cast<int32_t>(c->items.size());
}

int32_t opListCount(UiSurface *s, int16_t id) {
    UiControlState *c = lookupList(s, id, "Ui_ListCount");
    return c == nullptr ? -1 : static_cast<int32_t>(c->items.size());
}

int32_t opListGetText(UiSurface *s, int16_t id, int32_t index, char *buffer, int32_t size) {
    UiControlState *c = lookupList(s, id, "Ui_ListGetText");
    if (c == nullptr || !validIndex(c, index)) {
        copyOut(std::string(), buffer, size);
        return -1;
    }
    return copyOut(c->items[index].text, buffer, size);
}

void opListSetData(UiSurface *s, int16_t id, int32_t index, int32_t data) {
    UiControlState *c = lookupList(s, id, "Ui_ListSetData");
    if (c != nullptr && validIndex(c, index)) c->items[index].data = data;
}

int32_t opListGetData(UiSurface *s, int16_t id, int32_t index) {
    UiControlState *c = lookupList(s, id, "Ui_ListGetData");
    return c != nullptr && validIndex(c, index) ? c->items[index].data : -1;
}

void opListSetSel(UiSurface *s, int16_t id, int32_t index) {
    UiControlState *c = lookupList(s, id, "Ui_ListSetSel");
    if (c != nullptr) selectEntry(c, validIndex(c, index) ? index : -1);
}

int32_t opListGetSel(UiSurface *s, int16_t id) {
    UiControlState *c = lookupList(s, id, "Ui_ListGetSel");
    return c == nullptr ? -1 : c->selection;
}

int32_t opListFind(UiSurface *s, int16_t id, int32_t after, const char *prefix) {
    UiControlState *c = lookupList(s, id, "Ui_ListFind");
    return c == nullptr ? -1 : findPrefix(*c, after, prefix);
}

void opEndDialog(UiSurface *s, int32_t value) {
    UiDialog *d = modelOf(s);
    d->ended = true;
    d->endValue = value;
}

// --- Keys. ---

// The control a label's or frame's accelerator stands for: the next one in
// template order that takes focus.
int targetOf(const UiDialog *d, int i) {
    if (dlgTakesFocus(d->controls[i].control->kind)) return i;
    for (int j = i + 1; j < d->count; ++j)
        if (dlgTakesFocus(d->controls[j].control->kind)) return j;
    return -1;
}

// Carries out an accelerator on control i (the target already resolved).
bool activate(UiDialog *d, int i) {
    UiControlState *c = &d->controls[i];
    if (dlgIsButtonKind(c->control->kind)) {
        focusIndex(d, -1);
        return UiDialogClick(d, c->control->id);
    }
    focusIndex(d, i);
    return true;
}

bool accelerator(UiDialog *d, int32_t ch) {
    if (ch >= 'A' && ch <= 'Z') ch += 32;
    int matches[kMaxDlgControls];
    int n = 0;
    for (int i = 0; i < d->count; ++i) {
        const UiControlState &c = d->controls[i];
        if (!c.enabled || dlgAccelerator(c.text.c_str()) != static_cast<char>(ch)) continue;
        if (c.control->kind == DLG_EDIT || dlgIsListKind(c.control->kind)) continue;  // no captions
        int t = targetOf(d, i);
        if (t >= 0 && d->controls[t].enabled) matches[n++] = t;
    }
    if (n == 0) return false;
    if (n == 1) return activate(d, matches[0]);
    for (int k = 0; k < n; ++k)
        if (matches[k] > d->focus) return focusIndex(d, matches[k]), true;
    focusIndex(d, matches[0]);
    return true;
}

bool moveFocus(UiDialog *d, int step) {
    int start = d->focus >= 0 ? d->focus : (step > 0 ? -1 : d->count);
    for (int k = 1; k <= d->count; ++k) {
        int i = ((start + step * k) % d->count + d->count) % d->count;
        const UiControlState &c = d->controls[i];
        if (c.enabled && dlgTakesFocus(c.control->kind)) return focusIndex(d, i), true;
    }
    return false;
}

bool chooseStep(UiDialog *d, UiControlState *c, int step) {
    int32_t n = static_cast<int32_t>(c->items.size());
    if (n == 0) return false;
    int32_t next = c->selection < 0 ? (step > 0 ? 0 : n - 1) : c->selection + step;
    if (next < 0 || next >= n) return false;
    return UiDialogChoose(d, c->control->id, next);
}

bool editKey(UiDialog *d, UiControlState *c, int32_t key) {
    std::string text = c->text;
    int32_t caret = d->caret > int32_t(text.size()) ? int32_t(text.size()) : d->caret;
    switch (key) {
    case kKeyLeft: d->caret = caret > 0 ? caret - 1 : 0; return true;
    case kKeyRight: d->caret = caret < int32_t(text.size()) ? caret + 1 : caret; return true;
    case kKeyHome: d->caret = 0; return true;
    case kKeyEnd: d->caret = int32_t(text.size()); return true;
    case kKeyBackspace:
        if (caret == 0) return false;
        text.erase(size_t(caret - 1), 1);
        d->caret = caret - 1;
        break;
    case kKeyDelete:
        if (caret >= int32_t(text.size())) return false;
        text.erase(size_t(caret), 1);
        break;
    case kKeyKillLine:
        if (text.empty()) return false;
        text.clear();
        d->caret = 0;
        break;
    default:
        if (key < 0x20 || key > 0xFF || key == 0x7F || text.size() >= size_t(kUiMaxText)) return false;
        text.insert(size_t(caret), 1, static_cast<char>(key));
        d->caret = caret + 1;
        break;
    }
    typed(d, c, std::move(text));
    return true;
}

bool keyInField(UiDialog *d, UiControlState *c, int32_t key) {
    bool combo = c->control->kind != DLG_EDIT;
    switch (key) {
    case kKeyEnter: {
        int16_t id = c->control->id;
        bool confirm = combo && c->selection >= 0;
        focusIndex(d, -1);
        if (confirm) raise(d, id, UI_SEL_CONFIRMED);
        return true;
    }
    case kKeyEsc: focusIndex(d, -1); return true;
    case kKeyTab: return moveFocus(d, 1);
    case kKeyBackTab: return moveFocus(d, -1);
    case kKeyUp: return combo && chooseStep(d, c, -1) && (d->caret = int32_t(c->text.size()), true);
    case kKeyDown: return combo && chooseStep(d, c, 1) && (d->caret = int32_t(c->text.size()), true);
    default: return editKey(d, c, key);
    }
}

bool clickDefault(UiDialog *d) {
    for (int i = 0; i < d->count; ++i)
        if (d->controls[i].control->kind == DLG_DEFBUTTON) return UiDialogClick(d, d->controls[i].control->id);
    return false;
}

}  // namespace

bool UiDialogOpen(UiDialog *d, const DialogController *controller, const UiSurfaceOps *ops,
                  void *frontEnd) {
    const DlgTemplate *t = controller == nullptr ? nullptr : findDialogTemplate(controller->templateName);
    if (t == nullptr) {
        engineLog("UiDialogOpen: no dialog template %s",
                  controller != nullptr && controller->templateName != nullptr ? controller->templateName
                                                                               : "(none)");
        return false;
    }
    if (controller->init == nullptr || controller->command == nullptr) {
        engineLog("UiDialogOpen: the controller of %s lacks init or command", t->name);
        return false;
    }
    d->dialog = t;
    d->controller = controller;
    d->surface = UiSurface{ops, d};
    d->frontEnd = frontEnd;
    d->count = t->controlCount;
    d->mainList = 0;
    for (int i = 0; i < t->controlCount; ++i) {
        const DlgControl *c = &t->controls[i];
        d->controls[i] = UiControlState{c, c->caption, true, 0, {}, -1};
        if (d->mainList == 0 && c->kind == DLG_LISTBOX) d->mainList = c->id;
    }
    for (int i = 0; d->mainList == 0 && i < t->controlCount; ++i)
        if (t->controls[i].kind == DLG_SIMPLECOMBO) d->mainList = t->controls[i].id;
    d->focus = -1;
    d->caret = 0;
    d->ended = false;
    d->endValue = 0;
    d->eventDepth = 0;
    return true;
}

void UiDialogStart(UiDialog *d) { d->controller->init(&d->surface, d->controller->state); }

UiControlState *UiDialogControl(UiDialog *d, int16_t id) {
    int i = indexOf(d, id);
    return i < 0 ? nullptr : &d->controls[i];
}

int16_t UiDialogFocusId(const UiDialog *d) { return d->focus < 0 ? 0 : d->controls[d->focus].control->id; }

bool UiDialogEditing(const UiDialog *d) {
    return d->focus >= 0 && dlgHasEditField(d->controls[d->focus].control->kind);
}

bool UiDialogClick(UiDialog *d, int16_t id) {
    UiControlState *c = UiDialogControl(d, id);
    if (!usable(d, c) || !dlgIsButtonKind(c->control->kind)) return false;
    if (c->control->kind == DLG_CHECKBOX) c->check ^= 1;
    if (c->control->kind == DLG_RADIO) {
        // An automatic radio button unchecks the others of its run.
        int i = indexOf(d, id), first = i, last = i;
        while (first > 0 && d->controls[first - 1].control->kind == DLG_RADIO) --first;
        while (last + 1 < d->count && d->controls[last + 1].control->kind == DLG_RADIO) ++last;
        for (int k = first; k <= last; ++k) d->controls[k].check = k == i ? 1 : 0;
    }
    raise(d, id, UI_CLICKED);
    return true;
}

bool UiDialogType(UiDialog *d, int16_t id, const char *text) {
    UiControlState *c = UiDialogControl(d, id);
    if (!usable(d, c) || !dlgHasEditField(c->control->kind)) return false;
    typed(d, c, cut(text));
    if (d->focus >= 0 && &d->controls[d->focus] == c) d->caret = static_cast<int32_t>(c->text.size());
    return true;
}

bool UiDialogChoose(UiDialog *d, int16_t id, int32_t index) {
    UiControlState *c = UiDialogControl(d, id);
    if (!usable(d, c) || !dlgIsListKind(c->control->kind) || !validIndex(c, index)) return false;
    selectEntry(c, index);
    raise(d, id, UI_SEL_CHANGED);
    return true;
}

bool UiDialogConfirm(UiDialog *d, int16_t id) {
    UiControlState *c = UiDialogControl(d, id);
    if (!usable(d, c) || !dlgIsListKind(c->control->kind) || c->selection < 0) return false;
    raise(d, id, UI_SEL_CONFIRMED);
    return true;
}

bool UiDialogKey(UiDialog *d, int32_t key) {
    if (d->ended) return false;
    if (key & kKeyAlt) return accelerator(d, key & ~kKeyAlt);
    UiControlState *focused = d->focus >= 0 ? &d->controls[d->focus] : nullptr;
    if (focused != nullptr && !focused->enabled) focusIndex(d, -1), focused = nullptr;
    if (focused != nullptr && dlgHasEditField(focused->control->kind)) return keyInField(d, focused, key);

    bool list = focused != nullptr && dlgIsListKind(focused->control->kind);
    switch (key) {
    case kKeyTab: return moveFocus(d, 1);
    case kKeyBackTab: return moveFocus(d, -1);
    case kKeyUp: return list && chooseStep(d, focused, -1);
    case kKeyDown: return list && chooseStep(d, focused, 1);
    case kKeyEsc: {
        if (list) return focusIndex(d, -1), true;
        UiControlState *cancel = UiDialogControl(d, kIdCancel);
        if (cancel != nullptr && !cancel->enabled) return false;
        raise(d, kIdCancel, UI_CLICKED);
        return true;
    }
    case kKeyEnter:
        if (list) {
            int16_t id = focused->control->id;
            focusIndex(d, -1);
            if (focused->selection >= 0) raise(d, id, UI_SEL_CONFIRMED);
            return true;
        }
        if (focused != nullptr && (focused->control->kind == DLG_BUTTON || focused->control->kind == DLG_DEFBUTTON))
            return UiDialogClick(d, focused->control->id);
        return clickDefault(d);
    case ' ':
        return focused != nullptr && dlgIsButtonKind(focused->control->kind) &&
               UiDialogClick(d, focused->control->id);
    default: break;
    }
    if (key < 0x20 || key > 0xFF) return false;
    if (accelerator(d, key)) return true;
    if (key >= '1' && key <= '9') {
        int16_t id = list ? focused->control->id : d->mainList;
        return id != 0 && UiDialogChoose(d, id, key - '1');
    }
    return false;
}

void uiModelOps(UiSurfaceOps *ops) {
    ops->setText = opSetText;
    ops->getText = opGetText;
    ops->enable = opEnable;
    ops->isEnabled = opIsEnabled;
    ops->setCheck = opSetCheck;
    ops->getCheck = opGetCheck;
    ops->setFocus = opSetFocus;
    ops->getFocus = opGetFocus;
    ops->listReset = opListReset;
    ops->listAdd = opListAdd;
    ops->listDelete = opListDelete;
    ops->listCount = opListCount;
    ops->listGetText = opListGetText;
    ops->listSetData = opListSetData;
    ops->listGetData = opListGetData;
    ops->listSetSel = opListSetSel;
    ops->listGetSel = opListGetSel;
    ops->listFind = opListFind;
    ops->endDialog = opEndDialog;
}
