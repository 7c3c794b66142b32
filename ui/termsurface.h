// ui/termsurface.h — the terminal front end (POSIX): the dialogs drawn as
// text in an ordinary terminal of 80 columns and 24 rows or more, and
// worked with the keyboard by Windows' dialog keys (dialog.h). A dialog is
// laid out from its template as readable lines: a title bar, the context
// line of the checked text when one is shown, labels with their fields,
// lists numbered from 1, check boxes as [x], radio buttons as (*), and the
// buttons in a row with their accelerator letter marked "[I]gnore";
// disabled controls are dimmed, and a disabled button loses its mark.
// Message boxes, file dialogs and help are boxes drawn over the dialog.
//
// The terminal is in raw mode from TermUi_Begin to TermUi_End and is restored
// on every way out (platform.h). Texts are the dialogs' 8-bit texts; the
// codec maps them to characters for the screen and typed characters back.
#pragma once

#ifndef _WIN32

#include <cstdint>
#include <string>
#include <vector>

#include "ui/dialog.h"
#include "ui/surface.h"

// The dialogs' 8-bit character set. Latin-1 when none is given.
struct TermCodec {
    uint32_t (*toChar)(unsigned char byte);  // the Unicode character of a byte; 0 for none
    int (*fromChar)(uint32_t ch);            // the byte of a typed character; -1 for none
};

struct TermUi {
    TermCodec codec;
    bool begun;
    int columns, rows;
    std::vector<UiDialog *> dialogs;  // the open dialogs, innermost last
    UiDialog *contextOwner;           // the dialog that showed the context line
    std::string contextText;
    int32_t contextStart, contextCount;
    int waitDepth;
};

// Takes the terminal: checks that standard input and output are terminals,
// enters raw mode and the alternate screen. nullptr on success, else the
// reason ("standard input is not a terminal", ...) and nothing is changed.
const char *TermUi_Begin(TermUi *t, const TermCodec *codec);
// Runs a dialog until it ends; its end value. When the input ends, the
// dialog gets Cancel; one that still does not end is closed with -17
// (the dialogs' cancel value) and a log line.
int32_t TermUi_Run(TermUi *t, const DialogController *dialog);
// Gives the terminal back as it was.
void TermUi_End(TermUi *t);
UiFrontEnd TermUi_FrontEnd(TermUi *t);

// The screen as lines of cells, drawn by TermUi_Run; exposed for tests of the
// layout without a terminal.
struct TermCell {
    uint32_t ch;
    uint8_t attr;  // kTermBold | kTermDim | kTermUnderline | kTermReverse
};
constexpr uint8_t kTermBold = 1, kTermDim = 2, kTermUnderline = 4, kTermReverse = 8;

struct TermScreen {
    int columns, rows;
    std::vector<TermCell> cells;
    int cursorRow, cursorColumn;  // -1: cursor hidden
    std::string rowText(int row) const;  // the row's characters as UTF-8, without trailing blanks
};

// Lays out the innermost dialog of t on a screen of t's size.
void TermUi_Draw(const TermUi *t, TermScreen *screen);

#endif
