// tests/win32/driver.cpp — the dialog driver of driver.h.
#include "driver.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

Driver *running = nullptr;  // the hook and the timer have no argument of their own

constexpr UINT kTickMs = 20;
constexpr DWORD kPaintSettleMs = 300;  // wine flushes a window's drawing to X within this
constexpr int kFileNameCombo = 0x47C;  // cmb13: the file dialog's file name
constexpr int kFileNameEdit = 0x480;   // edt1: the same in older file dialogs
constexpr int kFileTypeCombo = 0x470;  // cmb1: its file types
constexpr int kFolderCombo = 0x471;    // cmb2: the folder it shows
constexpr int kMessageTextId = 0xFFFF; // a message box's text

std::string className(HWND window) {
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    return name;
}

bool isComboClass(HWND control) { return className(control) == "ComboBox"; }

HWND control(HWND dialog, int id) {
    HWND c = GetDlgItem(dialog, id);
    if (c == nullptr) ADD_FAILURE() << "no control " << id << " in '" << windowText(dialog) << "'";
    return c;
}

// The first descendant of window of a class, or null.
HWND findDescendant(HWND window, const char *wanted) {
    for (HWND c = GetWindow(window, GW_CHILD); c != nullptr; c = GetWindow(c, GW_HWNDNEXT)) {
        if (className(c) == wanted) return c;
        if (HWND inner = findDescendant(c, wanted)) return inner;
    }
    return nullptr;
}

}  // namespace

std::string windowText(HWND window) {
    char text[1024] = "";
    GetWindowTextA(window, text, sizeof text);
    return text;
}

std::string itemText(HWND dialog, int id) {
    HWND c = control(dialog, id);
    return c != nullptr ? windowText(c) : std::string();
}

std::vector<std::string> listItems(HWND dialog, int id) {
    std::vector<std::string> items;
    HWND c = control(dialog, id);
    if (c == nullptr) return items;
    bool combo = isComboClass(c);
    LRESULT count = SendMessageA(c, combo ? CB_GETCOUNT : LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        LRESULT n = SendMessageA(c, combo ? CB_GETLBTEXTLEN : LB_GETTEXTLEN, i, 0);
        std::string text(n > 0 ? size_t(n) : 0, '\0');
        std::vector<char> buffer(text.size() + 1);
        SendMessageA(c, combo ? CB_GETLBTEXT : LB_GETTEXT, i, reinterpret_cast<LPARAM>(buffer.data()));
        items.emplace_back(buffer.data());
    }
    return items;
}

int listSelection(HWND dialog, int id) {
    HWND c = control(dialog, id);
    if (c == nullptr) return -1;
    return int(SendMessageA(c, isComboClass(c) ? CB_GETCURSEL : LB_GETCURSEL, 0, 0));
}

bool isEnabled(HWND dialog, int id) {
    HWND c = control(dialog, id);
    return c != nullptr && IsWindowEnabled(c);
}

bool isChecked(HWND dialog, int id) { return IsDlgButtonChecked(dialog, id) == BST_CHECKED; }

void click(HWND dialog, int id) {
    HWND c = control(dialog, id);
    if (c == nullptr) return;
    EXPECT_TRUE(IsWindowEnabled(c)) << "clicking disabled control " << id << " in '" << windowText(dialog) << "'";
    PostMessageA(c, BM_CLICK, 0, 0);
}

void choose(HWND dialog, int id, int index) {
    HWND c = control(dialog, id);
    if (c == nullptr) return;
    bool combo = isComboClass(c);
    SendMessageA(c, combo ? CB_SETCURSEL : LB_SETCURSEL, WPARAM(index), 0);
    // LBN_SELCHANGE and CBN_SELCHANGE are both 1.
    PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(id, LBN_SELCHANGE), reinterpret_cast<LPARAM>(c));
}

int indexOf(HWND dialog, int id, const std::string &text) {
    std::vector<std::string> items = listItems(dialog, id);
    for (size_t i = 0; i < items.size(); ++i)
        if (items[i] == text) return int(i);
    return -1;
}

void type(HWND dialog, int id, const std::string &text) {
    HWND c = control(dialog, id);
    if (c == nullptr) return;
    if (!isComboClass(c)) {
        SetWindowTextA(c, text.c_str());  // raises EN_CHANGE as typing does
        return;
    }
    // A combo's edit field is typed into key by key: the combo tells the
    // dialog of each change (CBN_EDITCHANGE).
    HWND edit = findDescendant(c, "Edit");
    ASSERT_NE(edit, nullptr) << "control " << id << " has no edit field";
    SendMessageA(edit, EM_SETSEL, 0, -1);
    if (text.empty()) SendMessageA(edit, WM_CHAR, VK_BACK, 0);
    for (unsigned char ch : text) SendMessageA(edit, WM_CHAR, ch, 0);
}

std::string messageText(HWND box) { return windowText(GetDlgItem(box, kMessageTextId)); }

std::vector<std::string> fileTypes(HWND fileDialog) { return listItems(fileDialog, kFileTypeCombo); }

std::string fileDialogFolder(HWND fileDialog) { return itemText(fileDialog, kFolderCombo); }

void answerFileDialog(HWND fileDialog, const std::string &path) {
    HWND name = GetDlgItem(fileDialog, kFileNameCombo);
    HWND edit = name != nullptr ? findDescendant(name, "Edit") : GetDlgItem(fileDialog, kFileNameEdit);
    ASSERT_NE(edit, nullptr) << "no file name field in '" << windowText(fileDialog) << "'";
    SetWindowTextA(edit, path.c_str());
    click(fileDialog, IDOK);
}

std::string shotFolder() {
    const char *folder = std::getenv("ORTH_SHOTS");
    if (folder == nullptr || folder[0] == '\0') return "";
    std::string f = folder;
    if (f.back() != '\\') f += '\\';
    return f;
}

Driver::Driver() : hook_(nullptr), timer_(0), lastProgress_(GetTickCount()), inTick_(false) {
    running = this;
    hook_ = SetWindowsHookExA(WH_CBT, onCbt, nullptr, GetCurrentThreadId());
    timer_ = SetTimer(nullptr, 0, kTickMs, onTimer);
    EXPECT_NE(hook_, nullptr);
    EXPECT_NE(timer_, 0u);
}

Driver::~Driver() {
    if (timer_ != 0) KillTimer(nullptr, timer_);
    if (hook_ != nullptr) UnhookWindowsHookEx(hook_);
    running = nullptr;
}

void Driver::then(const std::string &caption, int mark, std::function<void(HWND)> act) {
    steps_.push_back({caption, mark, [act](HWND dialog) {
                          act(dialog);
                          return true;
                      }});
}

void Driver::until(const std::string &caption, int mark, std::function<bool(HWND)> act) {
    steps_.push_back({caption, mark, std::move(act)});
}

// Three phases: repaint and let wine flush the window to X; ask for the
// shot, naming the dialog's rectangle; wait until the shot is taken.
void Driver::shot(const std::string &caption, int mark, const std::string &name) {
    std::string folder = shotFolder();
    if (folder.empty()) return;
    auto phase = std::make_shared<int>(0);
    auto since = std::make_shared<DWORD>(0);
    std::string want = folder + name + ".want";
    until(caption, mark, [=](HWND dialog) {
        if (*phase == 0) {
            RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN | RDW_FRAME);
            *since = GetTickCount();
            *phase = 1;
            return false;
        }
        if (*phase == 1) {
            if (GetTickCount() - *since < kPaintSettleMs) return false;
            RECT r;
            GetWindowRect(dialog, &r);
            FILE *f = std::fopen((want + ".tmp").c_str(), "w");
            if (f == nullptr) {
                ADD_FAILURE() << "cannot write " << want;
                return true;
            }
            std::fprintf(f, "%ldx%ld+%ld+%ld\n", r.right - r.left, r.bottom - r.top, r.left, r.top);
            std::fclose(f);
            MoveFileA((want + ".tmp").c_str(), want.c_str());
            *phase = 2;
            return false;
        }
        return GetFileAttributesA(want.c_str()) == INVALID_FILE_ATTRIBUTES;
    });
}

LRESULT CALLBACK Driver::onCbt(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_ACTIVATE && running != nullptr) {
        HWND window = reinterpret_cast<HWND>(wParam);
        if (className(window) == "#32770") running->seen_.push_back(window);
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void CALLBACK Driver::onTimer(HWND, UINT, UINT_PTR, DWORD) {
    if (running != nullptr) running->tick();
}

HWND Driver::workable() const {
    for (auto it = seen_.rbegin(); it != seen_.rend(); ++it)
        if (IsWindow(*it) && IsWindowVisible(*it) && IsWindowEnabled(*it)) return *it;
    return nullptr;
}

void Driver::giveUp(HWND dialog, const std::string &why) {
    failures_.push_back(why);
    steps_.clear();
    lastProgress_ = GetTickCount();
    if (dialog != nullptr) PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
}

void Driver::tick() {
    if (inTick_) return;
    inTick_ = true;
    HWND dialog = workable();
    DWORD now = GetTickCount();
    std::string open = dialog != nullptr ? "'" + windowText(dialog) + "'" : "none";
    if (steps_.empty()) {
        if (dialog != nullptr && now - lastProgress_ > kStallMs)
            giveUp(dialog, "dialog " + open + " left open with no step for it");
    } else {
        const Step &next = steps_.front();
        if (dialog != nullptr && windowText(dialog) == next.caption &&
            (next.mark == 0 || GetDlgItem(dialog, next.mark) != nullptr)) {
            std::function<bool(HWND)> act = next.act;
            if (act(dialog)) {
                steps_.pop_front();
                lastProgress_ = now;
            }
        }
        if (!steps_.empty() && now - lastProgress_ > kStallMs)
            giveUp(dialog, "no dialog '" + steps_.front().caption + "' came; open: " + open);
    }
    inTick_ = false;
}
