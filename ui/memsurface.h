// ui/memsurface.h — an in-memory front end, for tests: dialogs built from
// their templates and driven by control identifier, message boxes and file
// dialogs answered from scripts, and a script for each dialog that is run
// (a dialog started by another, or a top-level one started by the client
// layer). Everything shown is recorded, so a test can check what the user
// would have seen.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "ui/dialog.h"
#include "ui/surface.h"

struct MemUi;

// Drives one dialog from the moment its controller has initialised it; the
// dialog should be ended by the time the script returns.
using MemScript = std::function<void(MemUi &dialog)>;

struct MemMessageBox {
    std::string text, caption;
    UiButtons buttons;
    int answer;
};

struct MemFileCall {
    bool save;
    std::string filter, title, folder, fileName;
    uint32_t flags;
    bool chosen;
    std::string path;
};

struct MemFileAnswer {
    bool chosen;
    std::string path;
};

// What the front end answers and what it recorded; shared by every dialog it runs.
struct MemFrontEnd {
    // Answers, taken in order. An OK/Cancel box with no answer left gets OK
    // (a box with only OK always returns OK and takes no answer); a file
    // dialog with no answer left is cancelled; a dialog with no script left
    // is closed with Esc.
    std::deque<int> boxAnswers;
    std::deque<MemFileAnswer> fileAnswers;
    std::deque<MemScript> scripts;

    // Records.
    std::vector<MemMessageBox> boxes;
    std::vector<MemFileCall> fileCalls;
    std::vector<std::pair<std::string, uint32_t>> helpCalls;  // help file and context
    std::vector<std::string> dialogsRun;  // template names, in the order started
    std::vector<std::string> leftOpen;    // dialogs still open after their script and Esc
    int waitDepth = 0;                    // wait cursor: ons minus offs
    bool waitUnbalanced = false;          // an off without an on
    std::vector<std::string> placements;  // "control|none lock x y" for every placement
    int16_t positionX = 0, positionY = 0; // where the dialogs report themselves
    int normalWeightCalls = 0;
    std::string contextText;              // the last context line shown
    int32_t contextStart = -1, contextCount = 0;

    // Runs a dialog with the next script; the dialog's end value, or -1 (with
    // a log line and an entry in leftOpen) when it would not end, or when its
    // template is unknown.
    int32_t run(const DialogController *controller);
    int messageBox(const char *text, const char *caption, UiButtons buttons);
    void waitCursor(bool on);
    UiFrontEnd frontEnd();  // the front end over this record
};

// One dialog of the in-memory front end.
struct MemUi {
    explicit MemUi(MemFrontEnd *frontEnd) : fe(frontEnd) {}
    MemUi(const MemUi &) = delete;
    MemUi &operator=(const MemUi &) = delete;

    // Builds the dialog and runs the controller's init; false for an unknown template.
    bool open(const DialogController *controller);
    UiSurface *surface() { return &dialog.surface; }

    // The user's actions (false when the control is missing, disabled or of
    // the wrong kind, or the dialog has ended).
    bool click(int16_t id) { return UiDialogClick(&dialog, id); }
    bool type(int16_t id, const std::string &text) { return UiDialogType(&dialog, id, text.c_str()); }
    bool choose(int16_t id, int32_t index) { return UiDialogChoose(&dialog, id, index); }
    bool confirm(int16_t id) { return UiDialogConfirm(&dialog, id); }
    bool key(int32_t k) { return UiDialogKey(&dialog, k); }
    bool keys(const std::string &text);  // each character as a key, in order

    // What the user sees.
    std::string text(int16_t id);     // caption, field text, or a drop-down list's selection
    bool enabled(int16_t id);
    int checked(int16_t id);
    std::vector<std::string> items(int16_t id);
    int32_t selection(int16_t id);
    int16_t focus() const { return UiDialogFocusId(&dialog); }
    bool ended() const { return dialog.ended; }
    int32_t endValue() const { return dialog.endValue; }

    MemFrontEnd *fe;
    UiDialog dialog{};
};
