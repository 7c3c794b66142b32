// tools/interactive.h — what `orth check`, `orth dicts` and `orth options`
// share: the client layer's dialogs shown in the terminal, over the settings
// of the client context, with the first use that makes those settings.
#pragma once

#include <string>

#include "tools/cli.h"

#ifndef _WIN32
#include "ui/termsurface.h"

struct Interactive {
    TermUi term{};
    UiFrontEnd front{};
    bool firstUse = false;
    std::string firstUseNote;  // printed once the terminal is given back
};

// Readies the client layer and takes the terminal: refuses a standard input
// or output that is no terminal; on first use (the settings name no main
// lexicon) writes settings naming the dictionary (-d, ORTH_DICPATH, the
// built-in en_US) as main lexicon and a personal dictionary of type Ignore
// (-p, else NAME.tlx in the configuration folder, created empty when
// missing) as user lexicon; later, -d replaces the main lexicons for this
// run only. Prints the reason and returns false when it cannot.
bool beginInteractive(const GlobalOptions &opts, const char *command, Interactive *ia);
// Closes the client context (writing its options back), gives the terminal
// back and prints the first-use note.
void endInteractive(Interactive *ia);
#endif

// The usage of check, dicts and options; false for another command.
bool printInteractiveHelp(const std::string &command, FILE *out);
