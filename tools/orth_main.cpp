// tools/orth_main.cpp — the orth command: global options and dispatch to its
// subcommands (tools/cli_*.cpp).
#include <cstdio>
#include <cstring>

#include "orth.h"
#include "tools/cli.h"
#include "tools/interactive.h"

namespace {

void printUsage(FILE *out) {
    std::fputs(
        "Usage: orth [-d DIR] [-p FILE] COMMAND [ARGS...]\n"
        "       orth --help | --version\n"
        "\n"
        "Spelling checker. Text is read and written as UTF-8.\n"
        "\n"
        "Commands:\n"
        "  list [--no-doubled] [--capitals] [FILE...]\n"
        "      Print every misspelled word of the files (standard input when none),\n"
        "      once per occurrence, one per line. A doubled word is printed as\n"
        "      \"the the\" (--no-doubled: not reported). With --capitals, a line whose\n"
        "      first word has no capital reports that word.\n"
        "  suggest [--defined] [WORD...]\n"
        "      Check each word (each word of standard input when none) and print:\n"
        "        * WORD                           correct\n"
        "        & WORD: SUG (SCORE), SUG (SCORE)  suggestions scoring 50 or more\n"
        "        # WORD                           misspelled, nothing to suggest\n"
        "      Suggestions are ranked by how people mistype and how common each\n"
        "      word is; --defined gives the engine's defined ranking instead.\n"
        "  compress -o OUT.CLX [--suffixes FILE] [--language ID] [--charset N]\n"
        "           [--frequencies FILE] WORDFILE...\n"
        "      Build a compressed lexicon from sorted word files (one word a line);\n"
        "      with a frequency list (\"word count\" lines) also OUT.FRQ beside it,\n"
        "      which ranks suggestions by how common each word is.\n"
        "  lex create FILE [--type ignore|exclude|auto|conditional] [--language ID]\n"
        "  lex add FILE WORD[:REPLACEMENT]...    lex delete FILE WORD...\n"
        "  lex list FILE    lex import FILE [TEXT]    lex export FILE [TEXT]\n"
        "      Edit a text lexicon (.TLX). The change types take WORD:REPLACEMENT.\n"
        "  pipe [-t]   (also: orth -a, orth -l, orth -vv, orth -D)\n"
        "      The Ispell pipe protocol for editors (Emacs, ...); see orth pipe --help.\n"
        "  check [--no-backup] FILE...    dicts    options\n"
        "      Check files with the user in the terminal, stop by stop; manage the\n"
        "      personal dictionaries; set the options (see orth check --help).\n"
        "\n"
        "Options:\n"
        "  -d DIR    dictionary folder holding MAIN.CLX (and MAIN.TLX), or a name\n"
        "            (en_US, en_GB) looked up in $ORTH_DICPATH and the built-in\n"
        "            dictionaries; default: $ORTH_DICPATH, else en_US\n"
        "  -p FILE   personal word list (a text lexicon), consulted before MAIN.CLX;\n"
        "            default: ~/.config/orth/NAME.tlx for dictionary NAME\n"
        "  --help, --version   (also after a command: orth list --help)\n"
        "\n"
        "Exit status: 0 all correct, 1 misspellings found, 2 usage or file errors.\n",
        out);
}

}  // namespace

int main(int argc, char **argv) {
    GlobalOptions opts;
    if (isIspellInvocation(std::vector<std::string>(argv + 1, argv + argc)))
        return runIspell(opts, std::vector<std::string>(argv + 1, argv + argc));
    std::string command;
    std::vector<std::string> args;
    bool positional = false;
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (!positional && (a == "-d" || a == "-p")) {
            if (i + 1 >= argc) {
                reportError("%s needs a value (see orth --help)", a.c_str());
                return kExitError;
            }
            (a == "-d" ? opts.dictDir : opts.personalList) = argv[++i];
        } else if (!positional && a == "--version") {
            return printVersion();
        } else if (!positional && (a == "--help" || a == "-h")) {
            if (command.empty() || (!printCommandHelp(command, stdout) && !printInteractiveHelp(command, stdout)))
                printUsage(stdout);
            return kExitOk;
        } else if (command.empty()) {
            if (a.size() > 1 && a[0] == '-') {
                reportError("unknown option %s (see orth --help)", a.c_str());
                return kExitError;
            }
            command = a;
        } else {
            if (a == "--") positional = true;
            args.push_back(a);
        }
    }
    if (command == "list") return runList(opts, args);
    if (command == "suggest") return runSuggest(opts, args);
    if (command == "compress") return runCompress(opts, args);
    if (command == "lex") return runLex(opts, args);
    if (command == "pipe") return runPipe(opts, args);
    if (command == "check") return runCheck(opts, args);
    if (command == "dicts") return runDicts(opts, args);
    if (command == "options") return runOptions(opts, args);
    if (command.empty()) printUsage(stderr);
    else reportError("unknown command %s (see orth --help)", command.c_str());
    return kExitError;
}
