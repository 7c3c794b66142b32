// tests/win32/driver.h — works ORTH32.DLL's modal dialogs as a person
// would, from inside their own modal loops. A WH_CBT hook notes every dialog
// window (class #32770: our dialogs, message boxes, file dialogs) as the
// system activates it; a thread timer, which every modal loop dispatches,
// takes the script's next step once the dialog it names is the one the user
// could work (visible and enabled: a dialog with a modal child is disabled).
// Steps read controls by identifier and click buttons; clicks are posted, so
// a click that opens another modal dialog runs that dialog's loop outside
// the timer, and the timer finds the new dialog on a later tick.
//
// A test never hangs on a dialog: a step that does not come within
// kStallMs, or a dialog left open with no step for it, is a failure, and
// the driver cancels whatever dialog is open so the call under test returns.
#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

// --- Controls, by identifier. ---

std::string windowText(HWND window);
std::string itemText(HWND dialog, int id);
// The entries of a list box or combo box, and its selection (-1: none).
std::vector<std::string> listItems(HWND dialog, int id);
int listSelection(HWND dialog, int id);
bool isEnabled(HWND dialog, int id);
bool isChecked(HWND dialog, int id);
// A button click, as the mouse makes it (posted).
void click(HWND dialog, int id);
// Selects an entry of a list or combo and notifies the dialog, as a click
// on the entry does.
void choose(HWND dialog, int id, int index);
int indexOf(HWND dialog, int id, const std::string &text);  // -1 when absent
// Replaces the text of an edit field, or of a combo's edit field, as typing does.
void type(HWND dialog, int id, const std::string &text);
// A message box's text.
std::string messageText(HWND box);
// A file dialog: its file types, the folder it shows (its name), and the
// name typed into it before OK.
std::vector<std::string> fileTypes(HWND fileDialog);
std::string fileDialogFolder(HWND fileDialog);
void answerFileDialog(HWND fileDialog, const std::string &path);

// --- The script. ---

class Driver {
public:
    static constexpr DWORD kStallMs = 10000;

    Driver();   // installs the hook and the timer
    ~Driver();  // removes them
    Driver(const Driver &) = delete;
    Driver &operator=(const Driver &) = delete;

    // A step on the dialog with this caption; `mark` is a control id it must
    // have (0: any), which tells apart a dialog and its message boxes, which
    // share a caption.
    void then(const std::string &caption, int mark, std::function<void(HWND)> act);
    // A step repeated on each tick until it returns true.
    void until(const std::string &caption, int mark, std::function<bool(HWND)> act);
    // A screenshot of the dialog, NAME.png in the folder that ORTH_SHOTS
    // names; nothing when it names none. dialogs-run.sh takes it.
    void shot(const std::string &caption, int mark, const std::string &name);

    size_t stepsLeft() const { return steps_.size(); }
    size_t dialogsSeen() const { return seen_.size(); }
    const std::vector<std::string> &failures() const { return failures_; }

private:
    struct Step {
        std::string caption;
        int mark;
        std::function<bool(HWND)> act;
    };
    static LRESULT CALLBACK onCbt(int code, WPARAM wParam, LPARAM lParam);
    static void CALLBACK onTimer(HWND, UINT, UINT_PTR, DWORD);
    void tick();
    HWND workable() const;
    void giveUp(HWND dialog, const std::string &why);

    HHOOK hook_;
    UINT_PTR timer_;
    std::vector<HWND> seen_;  // dialogs in the order activated
    std::deque<Step> steps_;
    std::vector<std::string> failures_;
    DWORD lastProgress_;
    bool inTick_;
};

// A Windows path for ORTH_SHOTS' folder, or "" when screenshots are off.
std::string shotFolder();
