// tools/cli_list.cpp — `orth list`: prints every reported word of the input,
// once per occurrence, one per line, as the user wrote it.
//
// Each line is checked as one text block, so the block rules apply per line:
// a doubled word is found within a line ("the the" is printed as one entry),
// and with --capitals the first word of each line must start with a capital.
#include <cstring>

#include "orth.h"
#include "tools/cli.h"
#include "tools/front.h"

namespace {

struct ListOptions {
    bool doubled = true;
    bool capitals = false;
};

struct ListCounts {
    long reported = 0;
    bool engineFailed = false;
    CapsMemo caps;  // all-capitals words already judged by the front-end rule
};

void printEntry(const std::string &text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
}

// Checks one line (without its line end) and prints what the block reports.
void checkLine(int16_t session, const std::string &line, const ListOptions &lo, ListCounts *counts) {
    if (line.empty()) return;
    LineBlock lb;
    if (!lb.open(session, line)) {
        reportError("cannot check a line: %s", describeResult(lb.id).c_str());
        counts->engineFailed = true;
        return;
    }
    const int16_t block = lb.id;
    uint32_t mask = (lo.doubled ? ORTH_REPORT_DOUBLED_WORDS_OPT : 0) |
                    (lo.capitals ? ORTH_REPORT_UNCAPPED_WORDS_OPT : 0);
    char word[64], replacement[64];
    for (;;) {
        int16_t rc = ORTH_CheckBlock(session, block, mask, word, sizeof word, replacement, sizeof replacement);
        if (rc < 0) {
            reportError("cannot check a line: %s", describeResult(rc).c_str());
            counts->engineFailed = true;
            break;
        }
        if (rc & ORTH_CHK_END_OF_BLOCK) break;
        if ((rc & ORTH_CHK_MISSPELLED) && frontAcceptsRejected(session, word, &counts->caps))
            rc &= ~(ORTH_CHK_MISSPELLED | ORTH_CHK_NON_LETTERS);
        std::string shown = lb.wordAtCursor(session, std::strlen(word));
        if (rc & ~ORTH_CHK_DOUBLED_WORD) {
            printEntry(shown);
            ++counts->reported;
        }
        if (rc & ORTH_CHK_DOUBLED_WORD) {
            printEntry(shown + " " + shown);
            ++counts->reported;
        }
        if (ORTH_NextBlockWord(session, block) < 0) break;
    }
    ORTH_CloseBlock(session, block);
}

void checkText(int16_t session, const std::string &text, const ListOptions &lo, ListCounts *counts) {
    for (const std::string &line : splitLines(text)) checkLine(session, line, lo, counts);
}

}  // namespace

int runList(const GlobalOptions &opts, const std::vector<std::string> &args) {
    ListOptions lo;
    std::vector<std::string> files;
    bool onlyFiles = false;
    for (const std::string &a : args) {
        if (!onlyFiles && a == "--") onlyFiles = true;
        else if (!onlyFiles && a == "--no-doubled") lo.doubled = false;
        else if (!onlyFiles && a == "--capitals") lo.capitals = true;
        else if (!onlyFiles && a.size() > 1 && a[0] == '-') {
            reportError("list: unknown option %s (see orth --help)", a.c_str());
            return kExitError;
        } else files.push_back(a);
    }
    if (files.empty()) files.push_back("-");

    DictSession ds;
    if (!openDictionary(opts, &ds)) return kExitError;
    ListCounts counts;
    bool fileFailed = false;
    for (const std::string &f : files) {
        std::string text;
        if (!readAll(f, &text)) {
            reportError("%s: %s", f == "-" ? "standard input" : f.c_str(), errnoText().c_str());
            fileFailed = true;
            continue;
        }
        checkText(ds.session, text, lo, &counts);
    }
    closeDictionary(&ds);
    std::fflush(stdout);
    if (fileFailed || counts.engineFailed) return kExitError;
    return counts.reported > 0 ? kExitFound : kExitOk;
}
