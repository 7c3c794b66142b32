// tools/cli_interactive.cpp — the terminal under the client layer's dialogs
// for `orth check`, `orth dicts` and `orth options`: first use, the front
// end, and the two dialog commands.
//
// (1) The dialogs and everything they do are the library's (ui/); this file
//     only installs the terminal as their front end, gives the check's text
//     as their edit control, and makes the settings they read.
// (2) First use writes the settings once, through the client-level setters;
//     afterwards the settings alone decide, and the Dictionaries and Options
//     dialogs change them. -d on a later run swaps the main lexicons of this
//     run's client context and writes nothing.
#include "tools/interactive.h"

#include <cstring>
#include <filesystem>

#include "orth.h"
#include "orth_client.h"

#ifndef _WIN32
#include <climits>
#include <cstdlib>

#include "host/client.h"
#include "host/settings.h"
#include "platform/platform.h"
#include "tools/checkdoc.h"
#include "tools/front.h"
#include "ui/clientui.h"
#endif

namespace {

const char kCheckHelp[] =
    "Usage: orth [-d DIR|NAME] [-p FILE] check [--no-backup] FILE...\n"
    "\n"
    "Check each file with the user in the terminal, stop by stop, as the Check\n"
    "Spelling dialog does. Each stop shows why (\"Not in Dictionary:\",\n"
    "\"Consider changing:\", \"Capitalization:\", \"Doubled word:\"), the word\n"
    "highlighted in its line, Change To and the numbered suggestions.\n"
    "\n"
    "Keys (either case): i Ignore, g Ignore All, c Change (d Delete for a doubled\n"
    "word), l Change All, a Add, s Suggest, n Dictionaries, o Options, h Help;\n"
    "t edits Change To (Enter ends the edit), w picks the dictionary Add writes\n"
    "to, 1-9 copy a suggestion to Change To, Esc cancels. Tab moves between\n"
    "controls. A key whose button is dimmed does nothing.\n"
    "\n"
    "Each file is written when its check ends, also after Esc (changes made\n"
    "before stay): through a temporary file and a rename, the old text kept as\n"
    "FILE.bak. An unchanged file is not written. Esc skips the files after it.\n"
    "Text is UTF-8; a character the dictionary's 8-bit set cannot hold is\n"
    "checked around and written back unchanged. Ctrl-C quits without writing.\n"
    "\n"
    "  --no-backup  keep no FILE.bak\n"
    "\n"
    "Settings (dictionaries, options, Ignore All choices of the run) are those\n"
    "of orth dicts and orth options. On first use they are written to the\n"
    "configuration folder ($XDG_CONFIG_HOME/orth, else ~/.config/orth): the\n"
    "dictionary of -d (else ORTH_DICPATH, else en_US) as main dictionary and the\n"
    "personal dictionary of -p (else NAME.tlx there, made empty) as the one Add\n"
    "writes to. Later, -d uses another main dictionary for that run only.\n"
    "\n"
    "Exit status: 0 all files checked, 1 cancelled with Esc, 2 usage, file or\n"
    "dictionary errors.\n";

const char kDictsHelp[] =
    "Usage: orth [-d DIR|NAME] [-p FILE] dicts\n"
    "\n"
    "The Dictionaries dialog in the terminal: the personal dictionaries that\n"
    "orth check adds words to, their entries (Add Word, Delete Word, Import,\n"
    "Export as text) and the list itself (Add File, New, Remove File). Changes\n"
    "are saved at once. Keys: the marked letter of a control, Tab to move, Esc\n"
    "or o to close. First use as for orth check.\n"
    "\n"
    "Exit status: 0 closed, 2 usage or dictionary errors.\n";

const char kOptionsHelp[] =
    "Usage: orth [-d DIR|NAME] [-p FILE] options\n"
    "\n"
    "The Options dialog in the terminal: what orth check ignores and reports,\n"
    "and how it suggests. A marked letter toggles its box; Enter or o is OK\n"
    "(applied and saved), Esc is Cancel. First use as for orth check.\n"
    "\n"
    "Exit status: 0 saved, 1 cancelled, 2 usage or dictionary errors.\n";

}  // namespace

bool printInteractiveHelp(const std::string &command, FILE *out) {
    const char *text = command == "check" ? kCheckHelp : command == "dicts" ? kDictsHelp
                       : command == "options" ? kOptionsHelp : nullptr;
    if (text == nullptr) return false;
    std::fputs(text, out);
    return true;
}

#ifndef _WIN32

namespace {

// --- The terminal's characters: character set 0, as the files are read. ---

// A control character or one the set lacks reads as none (0), and a
// character the set lacks cannot be typed (-1).
uint32_t setZeroChar(unsigned char byte) {
    if (byte < 0x20 || byte == 0x7F) return 0;
    uint32_t cp = set0Codepoint(byte);
    return cp == 0xFFFD ? 0 : cp;
}

int setZeroByte(uint32_t ch) {
    if (ch < 0x20 || ch > 0xFFFF) return -1;
    int byte = set0ByteFor(ch);
    return byte < 0 ? -1 : byte;
}

const TermCodec kSetZero = {setZeroChar, setZeroByte};

// --- The check's text as the host's edit control. ---

CheckRun &runOf(OrthWindow w) { return *static_cast<CheckRun *>(w); }

uint32_t editTextLength(OrthWindow w) { return static_cast<uint32_t>(runOf(w).bytes.size()); }

uint32_t editGetText(OrthWindow w, char *buffer, uint32_t size) {
    if (buffer == nullptr || size == 0) return 0;
    const std::string &t = runOf(w).bytes;
    uint32_t n = std::min<uint32_t>(size - 1, static_cast<uint32_t>(t.size()));
    std::memcpy(buffer, t.data(), n);
    buffer[n] = '\0';
    return n;
}

void editGetSelection(OrthWindow w, uint32_t *start, uint32_t *end) {
    *start = runOf(w).selStart;
    *end = runOf(w).selEnd;
}

void editSetSelection(OrthWindow w, uint32_t start, uint32_t end) { runOf(w).setSelection(start, end); }
void editReplaceSelection(OrthWindow w, const char *text) { runOf(w).replaceSelection(text); }
void editScrollCaret(OrthWindow) {}

// --- Settings. ---

std::string absolutePath(const std::string &path) {
    char real[PATH_MAX];
    if (realpath(path.c_str(), real) != nullptr) return real;
    std::error_code ec;
    std::filesystem::path p = std::filesystem::absolute(path, ec);
    return ec ? path : p.lexically_normal().string();
}

// Opens the personal dictionary once, creating it empty (type Ignore, the
// dictionary's language) when it does not exist yet. "" or the reason.
std::string preparePersonal(const std::string &dir, const std::string &personal) {
    int16_t sid = ORTH_OpenSession();
    if (sid < 0) return "cannot open a session: " + describeResult(sid);
    ORTH_OpenLex(sid, (dir + "/MAIN.CLX").c_str(), 0);  // for its language
    int16_t lex = -1;
    int16_t rc = openPersonalList(sid, personal, &lex);
    ORTH_CloseSession(sid);
    return rc < 0 ? personal + ": cannot open or create the personal dictionary: " + describeResult(rc) : "";
}

bool writeFirstUse(const GlobalOptions &opts, Interactive *ia) {
    std::string dir = findDictionaryDir(opts);
    if (dir.empty() || !isRegularFile(dir + "/MAIN.CLX")) {
        if (dir.empty()) reportError("no dictionary found: use -d DIR or set ORTH_DICPATH");
        else reportError("%s: no MAIN.CLX in this dictionary folder", dir.c_str());
        return false;
    }
    dir = absolutePath(dir);
    std::string personal = opts.personalList.empty() ? defaultPersonalList(dir) : opts.personalList;
    if (personal.empty()) {
        reportError("no configuration folder for the personal dictionary: set HOME or XDG_CONFIG_HOME");
        return false;
    }
    personal = absolutePath(personal);
    if (personal.size() > kMaxPathLen || dir.size() + 9 > kMaxPathLen) {
        reportError("%s: path too long for the settings (at most %d characters)", personal.c_str(), kMaxPathLen);
        return false;
    }
    std::string problem = preparePersonal(dir, personal);
    if (!problem.empty()) {
        reportError("%s", problem.c_str());
        return false;
    }
    bool companion = isRegularFile(dir + "/MAIN.TLX");
    ORTH_SetMainLexPath(dir.c_str());
    ORTH_SetMainLexFiles(companion ? "MAIN.TLX,MAIN.CLX" : "MAIN.CLX");
    ORTH_SetUserLexPath(folderOf(personal).c_str());
    ORTH_SetUserLexFiles(bareFileName(personal.c_str()));
    findIniFile();
    std::string store = iniFilePath();
    char config[kPathBufSize];
    if (store.find('/') == std::string::npos && platConfigFolder(config, sizeof config))
        store = std::string(config) + "/" + store;  // a bare profile name lives there
    if (useRegistry()) store = "the settings store";
    ia->firstUse = true;
    ia->firstUseNote = "first use: settings written to " + store + "\n  main dictionary: " + dir +
                       "\n  personal dictionary: " + personal + "\n";
    return true;
}

// -d on a later run: this run's main lexicons are those of the named folder.
// "" or the reason it failed.
std::string useMainDictionary(const GlobalOptions &opts) {
    std::string dir = findDictionaryDir(opts);
    if (dir.empty()) return opts.dictDir + ": no such dictionary";
    ClientContext &ctx = clientContext;
    for (ClientLexSlot &slot : ctx.slots) {
        if (slot.kind != CLIENT_LEX_MAIN) continue;
        if (slot.lexId >= 0) ORTH_CloseLex(ctx.sessionId, slot.lexId);
        slot = ClientLexSlot{"", -1, CLIENT_LEX_FREE};
    }
    for (const char *name : {"MAIN.TLX", "MAIN.CLX"}) {
        std::string path = dir + "/" + name;
        if (!isRegularFile(path)) continue;
        int slot = findFreeLexSlot();
        int16_t lex = slot < 0 ? ORTH_TOO_MANY_LEXICONS_ERR : ORTH_OpenLex(ctx.sessionId, path.c_str(), 0);
        if (lex < 0) return path + ": cannot open dictionary: " + describeResult(lex);
        std::strncpy(ctx.slots[slot].fileName, path.c_str(), kMaxPathLen);
        ctx.slots[slot].lexId = lex;
        ctx.slots[slot].kind = CLIENT_LEX_MAIN;
    }
    return "";
}

// -p on a later run names one of the user lexicons of the settings, or
// nothing: "" or the reason.
std::string checkPersonalList(const std::string &personal) {
    std::string wanted = absolutePath(personal);
    for (const ClientLexSlot &slot : clientContext.slots) {
        if (slot.kind != CLIENT_LEX_USER) continue;
        char path[kPathBufSize];
        joinLexPath(clientContext.userLexFolder, slot.fileName, path);
        if (absolutePath(path) == wanted) return "";
    }
    return "-p " + personal + ": not a personal dictionary of the settings; add it with orth dicts (Add File)";
}

}  // namespace

bool beginInteractive(const GlobalOptions &opts, const char *command, Interactive *ia) {
    for (int fd = 0; fd < 2; ++fd) {
        if (!platTermIsTerminal(fd)) {
            reportError("%s: standard %s is not a terminal; orth %s is interactive (orth list reports "
                        "misspellings without one)", command, fd == 0 ? "input" : "output", command);
            return false;
        }
    }
    char mainFiles[kClientListSize];
    if (ORTH_GetMainLexFiles(mainFiles, sizeof mainFiles) < 0) mainFiles[0] = '\0';
    if (mainFiles[0] == '\0' && !writeFirstUse(opts, ia)) return false;
    const char *reason = TermUi_Begin(&ia->term, &kSetZero);
    if (reason != nullptr) {
        reportError("%s: %s", command, reason);
        return false;
    }
    ia->front = TermUi_FrontEnd(&ia->term);
    ClientFrontEnd client = uiClientFrontEnd(&ia->front);
    client.editTextLength = editTextLength;
    client.editGetText = editGetText;
    client.editGetSelection = editGetSelection;
    client.editSetSelection = editSetSelection;
    client.editReplaceSelection = editReplaceSelection;
    client.editScrollCaret = editScrollCaret;
    setClientFrontEnd(&client);
    int16_t rc = OpenORTH();
    std::string failure;
    if (rc < 0) failure = std::string("the client context does not open: ") + describeResult(rc);
    if (failure.empty() && !ia->firstUse && !opts.dictDir.empty()) failure = useMainDictionary(opts);
    if (failure.empty() && !ia->firstUse && !opts.personalList.empty())
        failure = checkPersonalList(opts.personalList);
    if (failure.empty()) return true;
    endInteractive(ia);  // gives the terminal back first, so the message stays on the screen
    reportError("%s: %s", command, failure.c_str());
    return false;
}

void endInteractive(Interactive *ia) {
    ClientTerm();
    setClientFrontEnd(nullptr);
    uiClientFrontEnd(nullptr);
    TermUi_End(&ia->term);
    if (!ia->firstUseNote.empty()) std::fprintf(stderr, "orth: %s", ia->firstUseNote.c_str());
    ia->firstUseNote.clear();
}

int runDicts(const GlobalOptions &opts, const std::vector<std::string> &args) {
    if (!args.empty()) {
        reportError("dicts: unexpected argument %s (see orth dicts --help)", args[0].c_str());
        return kExitError;
    }
    Interactive ia;
    if (!beginInteractive(opts, "dicts", &ia)) return kExitError;
    int16_t rc = ORTH_EditLexDlg(nullptr);
    endInteractive(&ia);
    if (rc < 0) reportError("dicts: %s", describeResult(rc).c_str());
    return rc < 0 ? kExitError : kExitOk;
}

int runOptions(const GlobalOptions &opts, const std::vector<std::string> &args) {
    if (!args.empty()) {
        reportError("options: unexpected argument %s (see orth options --help)", args[0].c_str());
        return kExitError;
    }
    Interactive ia;
    if (!beginInteractive(opts, "options", &ia)) return kExitError;
    int16_t rc = ORTH_OptionsDlg(nullptr);
    endInteractive(&ia);
    if (rc == ORTH_CANCEL_ERR) return kExitFound;
    if (rc < 0) reportError("options: %s", describeResult(rc).c_str());
    return rc < 0 ? kExitError : kExitOk;
}

#else

int runDicts(const GlobalOptions &, const std::vector<std::string> &) {
    reportError("dicts: the terminal dialogs need a POSIX terminal");
    return kExitError;
}
int runOptions(const GlobalOptions &, const std::vector<std::string> &) {
    reportError("options: the terminal dialogs need a POSIX terminal");
    return kExitError;
}

#endif
