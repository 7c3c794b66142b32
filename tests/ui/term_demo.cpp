// tests/ui/term_demo.cpp — a test-only program for the terminal front end's
// end-to-end test: the Check Spelling template with a small controller that
// logs every event it gets, and the Options template as a dialog it starts.
// Usage: ui_term_demo LOG [--crash-on-add] [--exit-on-ignore] [FOLDER]
// (FOLDER: the starting folder of the Dictionaries file dialog).
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

#include "ui/surface.h"
#include "ui/termsurface.h"

namespace {

struct Demo {
    FILE *log;
    bool crashOnAdd, exitOnIgnore;
    const char *folder;
};

void note(Demo *demo, const std::string &line) {
    std::fprintf(demo->log, "%s\n", line.c_str());
    std::fflush(demo->log);
}

std::string text(UiSurface *s, int16_t id) {
    char buffer[256];
    Ui_GetText(s, id, buffer, sizeof buffer);
    return buffer;
}

void updateButtons(UiSurface *s) {
    bool haveChange = !text(s, kCsChangeTo).empty();
    Ui_Enable(s, kCsChange, haveChange);
    Ui_Enable(s, kCsChangeAll, haveChange);
}

void optionsInit(UiSurface *s, void *) {
    Ui_SetCheck(s, kOpReportDoubled, 1);
    Ui_SetCheck(s, kOpTypographical, 1);
}

void optionsCommand(UiSurface *s, void *state, int16_t id, UiNotify) {
    auto *demo = static_cast<Demo *>(state);
    if (id == kIdOk) {
        std::string line = "options";
        for (int16_t box : {kOpIgnoreCapped, kOpReportDoubled, kOpTypographical})
            line += " " + std::to_string(box) + "=" + std::to_string(Ui_GetCheck(s, box));
        note(demo, line);
        Ui_EndDialog(s, 0);
    } else if (id == kIdCancel) {
        Ui_EndDialog(s, -17);
    } else if (id == kIdHelp) {
        Ui_Help(s, "orth.hlp", 200);
    }
}

void checkInit(UiSurface *s, void *state) {
    Ui_SetText(s, kCsReason, "Not in Dictionary:");
    Ui_SetText(s, kCsWord, "wrold");
    for (const char *w : {"world", "word", "would"}) Ui_ListAdd(s, kCsSuggestions, w);
    Ui_ListAdd(s, kCsAddWordsTo, "custom.tlx");
    Ui_ListAdd(s, kCsAddWordsTo, "names.tlx");
    Ui_ListSetSel(s, kCsAddWordsTo, 0);
    const char line[] = "Hello wrold, how are you?";
    Ui_ShowContext(s, line, int32_t(sizeof line - 1), 6, 5);
    updateButtons(s);
    note(static_cast<Demo *>(state), "init");
}

void checkCommand(UiSurface *s, void *state, int16_t id, UiNotify notify) {
    auto *demo = static_cast<Demo *>(state);
    note(demo, "event " + std::to_string(id) + " " + std::to_string(int(notify)));
    static DialogController options{kOptionsDlg, nullptr, optionsInit, optionsCommand};
    options.state = demo;
    switch (id) {
    case kCsSuggestions:
        if (notify == UI_SEL_CHANGED) {
            char word[64];
            Ui_ListGetText(s, kCsSuggestions, Ui_ListGetSel(s, kCsSuggestions), word, sizeof word);
            Ui_SetText(s, kCsChangeTo, word);
        }
        break;
    case kCsChangeTo: case kCsWord: updateButtons(s); break;
    case kCsChange:
        note(demo, "change " + text(s, kCsWord) + " -> " + text(s, kCsChangeTo) + " into " + text(s, kCsAddWordsTo));
        Ui_EndDialog(s, 0);
        break;
    case kCsIgnore:
        if (demo->exitOnIgnore) std::exit(3);  // leaves without giving the terminal back
        Ui_EndDialog(s, 1);
        break;
    case kCsOptions: note(demo, "options ended " + std::to_string(Ui_RunDialog(s, &options))); break;
    case kIdHelp: Ui_Help(s, "orth.hlp", 100); break;
    case kCsAdd:
        if (demo->crashOnAdd) std::raise(SIGSEGV);
        note(demo, "box " + std::to_string(Ui_MessageBox(s, "Add the word?", "Check Spelling", UI_MB_OKCANCEL)));
        break;
    case kCsDictionaries: {
        UiFileRequest r{false, "Dictionary files (*.tlx)|*.tlx|All files (*.*)|*.*|", "Add Dictionary File",
                        demo->folder, "", kUiFileMustExist | kUiPathMustExist};
        char path[260];
        note(demo, Ui_FileDialog(s, &r, path, sizeof path) ? std::string("file ") + path : "file cancelled");
        break;
    }
    case kIdCancel: Ui_EndDialog(s, -17); break;
    default: break;
    }
}

}  // namespace

int main(int argc, char **argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: ui_term_demo LOG [--crash-on-add] [--exit-on-ignore] [FOLDER]\n");
        return 2;
    }
    Demo demo{std::fopen(argv[1], "a"), false, false, "."};
    if (demo.log == nullptr) return 2;
    for (int i = 2; i < argc; ++i) {
        if (std::strcmp(argv[i], "--crash-on-add") == 0) demo.crashOnAdd = true;
        else if (std::strcmp(argv[i], "--exit-on-ignore") == 0) demo.exitOnIgnore = true;
        else demo.folder = argv[i];
    }
    note(&demo, "pid " + std::to_string(getpid()));
    TermUi term{};
    if (const char *error = TermUi_Begin(&term, nullptr)) {
        std::fprintf(stderr, "ui_term_demo: %s\n", error);
        return 2;
    }
    DialogController check{kCheckSpellingDlg, &demo, checkInit, checkCommand};
    int32_t value = TermUi_Run(&term, &check);
    TermUi_End(&term);
    note(&demo, "end " + std::to_string(value) + " change-to " + "(done)");
    return 0;
}
