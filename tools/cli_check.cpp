// tools/cli_check.cpp — `orth check FILE...`: each file checked with the
// user in the terminal by the client layer's Check Spelling dialog, then
// written back.
//
// (1) Every file is read before the terminal is taken, so a missing or
//     unreadable file is reported on the normal screen and skipped.
// (2) A file's runs (tools/checkdoc.h) go to ORTH_CheckCtrlDlg one by one,
//     each as the host's edit control, so every change the dialog makes
//     reaches the run. Esc ends the file's check and skips the files after
//     it; what was changed before is written all the same.
// (3) A file is written only when its text changed, and only when the file
//     on disk still holds the text that was read: a file changed by someone
//     else meanwhile is left alone and the checked text saved beside it.
#include <cstring>
#include <sys/stat.h>

#include "host/client.h"
#include "orth.h"
#include "orth_client.h"
#include "tools/checkdoc.h"
#include "tools/interactive.h"

#ifndef _WIN32

namespace {

struct CheckFile {
    std::string path, text;
};

struct FileOutcome {
    uint32_t changed = 0, errors = 0;
    bool cancelled = false;
    int16_t failure = 0;  // a result code that stopped the check
};

// Why the client context cannot check the files: no main lexicon opened, or
// a character set the files cannot be converted to; "" when it can.
std::string mainDictionaryProblem() {
    bool opened = false;
    for (const ClientLexSlot &slot : clientContext.slots)
        opened = opened || (slot.kind == CLIENT_LEX_MAIN && slot.lexId >= 0);
    if (!opened) {
        char path[kPathBufSize] = "", files[kClientListSize] = "";
        ORTH_GetMainLexPath(path, sizeof path);
        ORTH_GetMainLexFiles(files, sizeof files);
        return std::string("no main dictionary opens (MainLexPath=") + path + ", MainLexFiles=" + files +
               "); correct the settings, or remove them to start over";
    }
    if (ORTH_GetOption(clientContext.sessionId, ORTH_CHARSET_OPT) != 0)
        return "the settings choose a character set other than 0 (CharSet); files are converted to set 0 only";
    return "";
}

// Checks every run of doc that holds a word.
FileOutcome checkDocument(CheckDoc *doc) {
    FileOutcome outcome;
    for (CheckDoc::Part &part : doc->parts) {
        if (!part.isRun || !checkRunHasWords(part.run)) continue;
        int16_t rc = ORTH_CheckCtrlDlg(nullptr, &part.run, 0);
        uint32_t changed = 0, errors = 0;
        ORTH_GetStatistics(nullptr, &changed, &errors);
        outcome.changed += changed;
        outcome.errors += errors;
        if (rc == ORTH_CANCEL_ERR) {
            outcome.cancelled = true;
            break;
        }
        if (rc < 0) {
            outcome.failure = rc;
            break;
        }
    }
    return outcome;
}

std::string plural(uint32_t n, const char *word) {
    return std::to_string(n) + " " + word + (n == 1 ? "" : "s");
}

// Writes the checked text; the line to report.
std::string writeBack(const CheckFile &f, const std::string &text, bool backup, bool *failed) {
    if (text == f.text) return "unchanged";
    std::string now, error;
    if (!readAll(f.path, &now) || now != f.text) {
        std::string aside = f.path + ".orth";
        *failed = true;
        if (rewriteFile(aside, "", text, false, &error))
            return "changed on disk during the check; not written, the checked text is in " + aside;
        return "changed on disk during the check; not written (" + error + ")";
    }
    if (!rewriteFile(f.path, f.text, text, backup, &error)) {
        *failed = true;
        return "not written: " + error;
    }
    return backup ? "written (old text in " + f.path + ".bak)" : "written";
}

}  // namespace

int runCheck(const GlobalOptions &opts, const std::vector<std::string> &args) {
    bool backup = true, onlyFiles = false;
    std::vector<std::string> paths;
    for (const std::string &a : args) {
        if (!onlyFiles && a == "--") onlyFiles = true;
        else if (!onlyFiles && a == "--no-backup") backup = false;
        else if (a == "-" || (!onlyFiles && a.size() > 1 && a[0] == '-')) {
            reportError("check: %s %s (see orth check --help)",
                        a == "-" ? "standard input is for the keys, not a file:" : "unknown option", a.c_str());
            return kExitError;
        } else {
            paths.push_back(a);
        }
    }
    if (paths.empty()) {
        reportError("check: no file given (see orth check --help)");
        return kExitError;
    }
    bool failed = false;
    std::vector<CheckFile> files;
    for (const std::string &p : paths) {
        struct stat st;
        CheckFile f{p, ""};
        if (stat(p.c_str(), &st) == 0 && !S_ISREG(st.st_mode)) {
            reportError("%s: not a regular file", p.c_str());
            failed = true;
        } else if (!readAll(p, &f.text)) {
            reportError("%s: %s", p.c_str(), errnoText().c_str());
            failed = true;
        } else {
            files.push_back(std::move(f));
        }
    }
    if (files.empty()) return kExitError;

    Interactive ia;
    if (!beginInteractive(opts, "check", &ia)) return kExitError;
    std::vector<std::string> report;
    bool cancelled = false;
    std::string refusal = mainDictionaryProblem();
    if (!refusal.empty()) {
        report.push_back("orth: check: " + refusal);
        failed = true;
        files.clear();
    }
    for (size_t i = 0; i < files.size(); ++i) {
        const CheckFile &f = files[i];
        if (cancelled) {
            report.push_back(f.path + ": not checked");
            continue;
        }
        CheckDoc doc;
        checkDocOpen(&doc, f.text);
        FileOutcome outcome = checkDocument(&doc);
        std::string line = f.path + ": " + plural(outcome.errors, "error") + ", " +
                           plural(outcome.changed, "word") + " changed";
        if (outcome.cancelled) line += ", cancelled";
        if (outcome.failure < 0) {
            line += ", the check stopped: " + describeResult(outcome.failure);
            failed = true;
        }
        line += "; " + writeBack(f, checkDocText(doc), backup, &failed);
        report.push_back(line);
        cancelled = outcome.cancelled || outcome.failure < 0;
    }
    endInteractive(&ia);
    for (const std::string &line : report) std::printf("%s\n", line.c_str());
    std::fflush(stdout);
    if (failed) return kExitError;
    return cancelled ? kExitFound : kExitOk;
}

#else

int runCheck(const GlobalOptions &, const std::vector<std::string> &) {
    reportError("check: the terminal dialogs need a POSIX terminal");
    return kExitError;
}

#endif
