// tools/cli_help.cpp — `orth COMMAND --help` and `--version`: the usage of
// each command, with its options and exit status.
#include <cstring>

#include "orth.h"
#include "tools/cli.h"

namespace {

struct CommandHelp {
    const char *name;
    const char *text;
};

const CommandHelp kHelp[] = {
    {"list",
     "Usage: orth [-d DIR|NAME] [-p FILE] list [--no-doubled] [--capitals] [FILE...]\n"
     "\n"
     "Print every misspelled word of the files (standard input when none or \"-\"),\n"
     "once per occurrence, one per line, as written. A doubled word is printed as\n"
     "\"the the\".\n"
     "\n"
     "  --no-doubled  do not report doubled words\n"
     "  --capitals    report a line whose first word does not start with a capital\n"
     "\n"
     "Exit status: 0 no misspellings, 1 misspellings found, 2 usage or file errors.\n"},
    {"suggest",
     "Usage: orth [-d DIR|NAME] [-p FILE] suggest [WORD...]\n"
     "\n"
     "Check each word (each word of standard input when none is given) and print\n"
     "one line for it:\n"
     "  * WORD                            correct\n"
     "  & WORD: SUG (SCORE), SUG (SCORE)  suggestions scoring 50 or more, best first\n"
     "  # WORD                            misspelled, nothing to suggest\n"
     "\n"
     "Exit status: 0 all correct, 1 some word misspelled, 2 usage or file errors.\n"},
    {"compress",
     "Usage: orth compress -o OUT.CLX [--suffixes FILE] [--language ID] [--charset N]\n"
     "                     [--frequencies FILE] WORDFILE...\n"
     "\n"
     "Build a compressed dictionary from word files (UTF-8, one word a line,\n"
     "sorted byte-wise). Errors name FILE:LINE and the reason.\n"
     "\n"
     "  --suffixes FILE  suffix table used to code word endings\n"
     "  --language ID    Windows language id of the words (default 1033)\n"
     "  --charset N      character set 0 to 9 (default 0, ISO 8859-1)\n"
     "  --frequencies FILE  word counts (\"word count\" a line): also writes\n"
     "                   OUT.FRQ, the commonness the ranked suggester ranks by\n"
     "\n"
     "Exit status: 0 written, 2 usage, file or word-list errors.\n"},
    {"lex",
     "Usage: orth lex create FILE [--type ignore|exclude|auto|conditional] [--language ID]\n"
     "       orth lex add FILE WORD[:REPLACEMENT]...\n"
     "       orth lex delete FILE WORD...\n"
     "       orth lex list FILE\n"
     "       orth lex import FILE [TEXT]\n"
     "       orth lex export FILE [TEXT]\n"
     "\n"
     "Edit a text lexicon (.TLX). Ignore lists accept their words, exclude lists\n"
     "reject them; auto and conditional change lists take WORD:REPLACEMENT.\n"
     "import reads entries separated by white space (lines starting with # or ;\n"
     "are comments); export writes one entry a line. TEXT \"-\" or none is\n"
     "standard input or output.\n"
     "\n"
     "Exit status: 0 done, 2 usage or file errors.\n"},
    {"pipe",
     "Usage: orth pipe [-d DIR|NAME] [-p FILE] [-i UTF-8] [-t] [--defined]\n"
     "       orth -a [-d DIR|NAME] [-p FILE] [-i UTF-8] [-t] [--defined]\n"
     "       orth -l [-d DIR|NAME] [-p FILE] [-t] [FILE...]\n"
     "       orth -v | -vv | -D\n"
     "\n"
     "The Ispell pipe protocol, as editors such as Emacs speak it with Hunspell.\n"
     "One banner line, then for each input line one answer per word and an empty\n"
     "line:\n"
     "  *                          correct\n"
     "  -                          correct as a whole of correct parts\n"
     "  & WORD COUNT OFFSET: S, S  misspelled, with suggestions\n"
     "  # WORD OFFSET              misspelled, nothing to suggest\n"
     "OFFSET counts characters from the line's start, a leading ^ included.\n"
     "Input lines starting with a command character:\n"
     "  ^TEXT   check TEXT          *WORD  add to the personal word list\n"
     "  @WORD   accept this session &WORD  add in lower case to the personal list\n"
     "  #       save the personal list\n"
     "  !       terse mode on (no * or - lines)      %  terse mode off\n"
     "  +       TeX mode on           -      TeX mode off   ~tex  ~plain  the same\n"
     "\n"
     "  -a        pipe mode            -l  print the misspelled words of the input\n"
     "  -v, -vv   print the banner     -D  list the dictionaries on standard error\n"
     "  -d NAME   dictionary: a folder, or a name (en_US, en_GB) looked up in\n"
     "            ORTH_DICPATH and the built-in dictionaries\n"
     "  -p FILE   personal word list (default ~/.config/orth/NAME.tlx)\n"
     "  -i UTF-8  text encoding; UTF-8 is the only one\n"
     "  -t        TeX mode from the start\n"
     "  --defined suggestions in the engine's defined order (ORTH_Suggest);\n"
     "            the default is the ranked suggester, best guess first\n"
     "\n"
     "Exit status: 0 end of input (also when -l found misspellings, as editors\n"
     "expect), 2 usage, file or dictionary errors.\n"},
};

}  // namespace

bool printCommandHelp(const std::string &command, FILE *out) {
    for (const CommandHelp &h : kHelp) {
        if (command == h.name) {
            std::fputs(h.text, out);
            return true;
        }
    }
    return false;
}

int printVersion() {
    uint16_t major = 0, minor = 0;
    ORTH_Version(&major, &minor);
    std::printf("orth %u.%u\n", major, minor);
    return kExitOk;
}
