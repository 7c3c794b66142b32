// tools/cli_pipe.cpp — the Ispell pipe protocol (`orth -a`, `orth pipe`) and
// the Ispell-style options editors pass to a Hunspell-like program: -vv (the
// version banner), -D (the dictionaries), -l (misspelled words of standard
// input), -d NAME, -p FILE, -i UTF-8, -t (TeX).
//
// Design notes
// (1) Start-up prints exactly one line, the banner, and nothing on standard
//     error unless the dictionary cannot be opened (then the program exits).
//     Editors read standard error from the same pipe, so nothing else is
//     ever written there while the session runs, except when saving the
//     personal list fails: losing the user's words silently would be worse.
// (2) Every data line is answered word by word, then by one empty line, and
//     flushed (answerLine). Offsets count characters of the line as sent,
//     the leading ^ included: encodeUtf8 gives one byte per character, so a
//     block cursor is a character offset.
// (3) Words the user adds with *word wait in a memory-only lexicon until #
//     saves them into the personal list (created on first save); @word goes
//     to a second memory-only lexicon that lives as long as the session.
// (4) Markup never reaches the checker: URLs and e-mail addresses always,
//     and in TeX mode control sequences, comments, inline math and the
//     arguments of referencing commands, are blanked character for
//     character (maskLine), so offsets stay those of the line.
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "check/chartab.h"
#include "orth.h"
#include "tools/cli.h"
#include "tools/front.h"

namespace {

constexpr int kMaxListed = 15;  // suggestions on one & line, as Hunspell shows

enum class PipeAction { None, Pipe, List, Version, Dictionaries, Help, OrthVersion };

struct PipeSettings {
    PipeAction action = PipeAction::None;
    bool tex = false;
    SuggestRanking ranking = SuggestRanking::Ranked;  // --defined: ORTH_Suggest's order
    std::vector<std::string> files;  // -l input files
};

// The session of one run: the dictionary, the session's own words and the
// words waiting to be saved.
struct PipeState {
    DictSession ds;
    int16_t sessionLex = -1;  // @word
    int16_t unsavedLex = -1;  // *word until #
    std::vector<std::string> unsaved;
    bool terse = false;
    bool tex = false;
    SuggestRanking ranking = SuggestRanking::Ranked;
    CapsMemo caps;
};

std::string banner() {
    uint16_t major = 0, minor = 0;
    ORTH_Version(&major, &minor);
    return "@(#) International Ispell Version 3.2.06 (but really Hunspell 1.7.1) orth " + std::to_string(major) +
           "." + std::to_string(minor);
}

bool isUtf8Name(std::string e) {
    for (char &c : e) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return e == "utf-8" || e == "utf8";
}

// Parses Ispell-style arguments into settings and the global options; false
// after printing the error.
bool parseArgs(const std::vector<std::string> &args, GlobalOptions *opts, PipeSettings *ps) {
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string &a = args[i];
        if (a.empty() || a == "-m" || a == "-n" || a == "-B" || a == "-C") continue;  // no effect here
        if (a == "--help" || a == "-h") ps->action = PipeAction::Help;
        else if (a == "--version") ps->action = PipeAction::OrthVersion;
        if (ps->action == PipeAction::Help || ps->action == PipeAction::OrthVersion) return true;
        // -v and -D answer at once, whatever mode the other options name.
        bool answersAtOnce = ps->action == PipeAction::Version || ps->action == PipeAction::Dictionaries;
        if (a == "-a" || a == "-l") {
            if (!answersAtOnce) ps->action = a == "-a" ? PipeAction::Pipe : PipeAction::List;
        } else if (a == "-v" || a == "-vv") ps->action = PipeAction::Version;
        else if (a == "-D") ps->action = PipeAction::Dictionaries;
        else if (a == "-t") ps->tex = true;
        else if (a == "--defined") ps->ranking = SuggestRanking::Defined;
        else if (a == "-d" || a == "-p" || a == "-i") {
            if (i + 1 >= args.size()) {
                reportError("%s needs a value (see orth --help)", a.c_str());
                return false;
            }
            const std::string &v = args[++i];
            if (a == "-d") opts->dictDir = v;
            else if (a == "-p") opts->personalList = v;
            else if (!isUtf8Name(v)) {
                reportError("-i %s: unsupported encoding (text is read and written as UTF-8)", v.c_str());
                return false;
            }
        } else if (a.size() > 1 && a[0] == '-') {
            reportError("unknown option %s (see orth pipe --help)", a.c_str());
            return false;
        } else {
            ps->files.push_back(a);
        }
    }
    return true;
}

// Marks [from, to) of the line as not to be checked.
void blank(std::vector<bool> *masked, size_t from, size_t to) {
    for (size_t i = from; i < to && i < masked->size(); ++i) (*masked)[i] = true;
}

bool isSpaceByte(unsigned char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// URLs (scheme://..., www....) and e-mail addresses: whole blank-separated
// tokens.
void maskAddresses(const std::string &b, std::vector<bool> *masked) {
    for (size_t start = 0; start < b.size();) {
        while (start < b.size() && isSpaceByte(static_cast<unsigned char>(b[start]))) ++start;
        size_t end = start;
        while (end < b.size() && !isSpaceByte(static_cast<unsigned char>(b[end]))) ++end;
        std::string tok = b.substr(start, end - start);
        size_t at = tok.find('@');
        bool url = tok.find("://") != std::string::npos || tok.compare(0, 4, "www.") == 0;
        bool mail = at != std::string::npos && at > 0 && tok.find('.', at) != std::string::npos;
        if (url || mail) blank(masked, start, end);
        start = end;
    }
}

// TeX: control sequences, comments, $...$ and the arguments of commands
// whose arguments are names rather than text.
void maskTex(const std::string &b, std::vector<bool> *masked) {
    static const char *const kNameArgs[] = {"begin", "end", "label", "ref", "eqref", "pageref", "cite",
        "citep", "citet", "usepackage", "documentclass", "input", "include", "includegraphics",
        "bibliography", "bibliographystyle", "url", "href", "autoref", "cref", "Cref"};
    auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    // The end of a group opened at b[open] ('{' or '['), or the line's end.
    auto groupEnd = [&](size_t open) {
        char o = b[open], c = o == '{' ? '}' : ']';
        int depth = 0;
        for (size_t i = open; i < b.size(); ++i) {
            if (b[i] == '\\') { ++i; continue; }
            if (b[i] == o) ++depth;
            else if (b[i] == c && --depth == 0) return i + 1;
        }
        return b.size();
    };
    for (size_t i = 0; i < b.size();) {
        char c = b[i];
        if (c == '%') {
            blank(masked, i, b.size());
            return;
        }
        if (c == '$') {
            size_t close = b.find('$', i + 1);
            size_t end = close == std::string::npos ? b.size() : close + 1;
            blank(masked, i, end);
            i = end;
            continue;
        }
        if (c != '\\') { ++i; continue; }
        size_t end = i + 1;
        while (end < b.size() && letter(b[end])) ++end;
        if (end == i + 1 && end < b.size()) ++end;  // a control symbol: \% \\ \&
        std::string name = b.substr(i + 1, end - i - 1);
        blank(masked, i, end);
        i = end;
        bool takesName = false;
        for (const char *n : kNameArgs) takesName = takesName || name == n;
        if (!takesName) continue;
        while (i < b.size() && (b[i] == '*' || b[i] == ' ')) ++i;
        if (i < b.size() && b[i] == '[') { size_t e = groupEnd(i); blank(masked, i, e); i = e; }
        if (i < b.size() && b[i] == '{') { size_t e = groupEnd(i); blank(masked, i, e); i = e; }
    }
}

// The line with its markup blanked, one blank per hidden character.
std::string maskLine(const std::string &utf8, bool tex) {
    Encoded enc = encodeUtf8(utf8);
    std::vector<bool> masked(enc.bytes.size(), false);
    maskAddresses(enc.bytes, &masked);
    if (tex) maskTex(enc.bytes, &masked);
    std::string out;
    out.reserve(utf8.size());
    for (size_t i = 0; i < enc.bytes.size(); ++i) {
        if (masked[i]) out += ' ';
        else out += enc.sourceOf(utf8, i, i + 1);
    }
    return out;
}

struct LineWord {
    std::string shown;   // as written
    std::string bytes;   // 8-bit
    uint32_t offset;     // characters from the line's start
    bool foreign;        // holds a character the dictionary's set lacks
};

bool isWordByte(unsigned char c) {
    return (classOf(0, c) & (CC_LETTER | CC_DIGIT)) != 0 || isApostrophe(c);
}

// The words of one line, in order; a run of more than 63 word characters is
// one word. False when the engine could not open a block.
bool wordsOfLine(int16_t session, const std::string &utf8, bool tex, std::vector<LineWord> *words) {
    LineBlock lb;
    if (!lb.open(session, maskLine(utf8, tex))) return false;
    char word[kWordBufSize];
    while (ORTH_GetBlockWord(session, lb.id, word, sizeof word) >= 0) {
        uint32_t cursor = 0;
        ORTH_GetBlockInfo(session, lb.id, nullptr, nullptr, &cursor, nullptr);
        size_t n = std::strlen(word), end = cursor + n;
        if (n == static_cast<size_t>(kMaxWordLen))
            while (end < lb.enc.bytes.size() && isWordByte(static_cast<unsigned char>(lb.enc.bytes[end]))) ++end;
        std::string bytes = end > cursor + n ? lb.enc.bytes.substr(cursor, end - cursor) : std::string(word);
        words->push_back({lb.enc.sourceOf(lb.line, cursor, cursor + bytes.size()), bytes, cursor,
                          lb.enc.hasForeign(cursor, cursor + bytes.size())});
        bool more = true;
        while (more && cursor < end) {
            more = ORTH_NextBlockWord(session, lb.id) >= 0;
            ORTH_GetBlockInfo(session, lb.id, nullptr, nullptr, &cursor, nullptr);
        }
        if (!more) break;
    }
    ORTH_CloseBlock(session, lb.id);
    return true;
}

bool allDigits(const std::string &w) {
    for (char c : w)
        if (c < '0' || c > '9') return false;
    return !w.empty();
}

enum class Verdict { Correct, Compound, Rejected };

// The session's verdict on a word; a rejected word gets the replacement of
// a change lexicon when one matched. Compound (accepted only in parts) is
// worked out only when asked for.
Verdict checkLineWord(PipeState *st, const LineWord &w, bool wantCompound, std::string *change) {
    if (allDigits(w.bytes)) return Verdict::Correct;
    if (w.foreign || w.bytes.size() > static_cast<size_t>(kMaxWordLen)) return Verdict::Rejected;
    char replacement[kWordBufSize];
    bool byRule = false;
    int16_t rc = frontCheckWord(st->ds.session, w.bytes.c_str(), replacement, &st->caps, &byRule);
    if (rc < 0) return Verdict::Rejected;
    if (rc & (ORTH_CHK_AUTO_CHANGE | ORTH_CHK_CONDITIONAL_CHANGE)) *change = replacement;
    if (rc & (ORTH_CHK_MISSPELLED | ORTH_CHK_AUTO_CHANGE | ORTH_CHK_CONDITIONAL_CHANGE)) return Verdict::Rejected;
    if (wantCompound && !byRule && acceptedBySplitting(st->ds.session, w.bytes.c_str())) return Verdict::Compound;
    return Verdict::Correct;
}

// The & or # line of a rejected word.
std::string rejectionLine(PipeState *st, const LineWord &w, uint32_t offset, const std::string &change) {
    std::vector<FrontSuggestion> sugs;
    if (!w.foreign && w.bytes.size() <= static_cast<size_t>(kMaxWordLen) &&
        frontSuggest(st->ds.session, w.bytes.c_str(), 25, &sugs, st->ranking) == 0)
        keepLikelySuggestions(&sugs, kMaxListed);
    std::vector<std::string> shown;
    if (!change.empty()) shown.push_back(change);
    for (const FrontSuggestion &s : sugs)
        if (s.word != change) shown.push_back(s.word);
    if (shown.empty()) return "# " + w.shown + " " + std::to_string(offset) + "\n";
    bool typo = w.shown.find("\xE2\x80\x99") != std::string::npos;
    std::string line = "& " + w.shown + " " + std::to_string(shown.size()) + " " + std::to_string(offset) + ":";
    for (size_t i = 0; i < shown.size(); ++i) line += (i ? ", " : " ") + decodeToUtf8(shown[i], typo);
    return line + "\n";
}

void answerLine(PipeState *st, const std::string &text, uint32_t shift) {
    std::vector<LineWord> words;
    std::string out;
    if (!wordsOfLine(st->ds.session, text, st->tex, &words)) words.clear();
    for (const LineWord &w : words) {
        std::string change;
        Verdict v = checkLineWord(st, w, !st->terse, &change);
        if (v == Verdict::Rejected) out += rejectionLine(st, w, shift + w.offset, change);
        else if (!st->terse) out += v == Verdict::Compound ? "-\n" : "*\n";
    }
    out += '\n';
    std::fwrite(out.data(), 1, out.size(), stdout);
    std::fflush(stdout);
}

// The 8-bit form of a command's word, or "" when it has none or cannot be held.
std::string commandWord(const std::string &utf8) {
    size_t a = utf8.find_first_not_of(" \t"), b = utf8.find_last_not_of(" \t");
    std::string w;
    if (a == std::string::npos || !wordFromUtf8(utf8.substr(a, b - a + 1), &w)) return "";
    return w;
}

// # : the waiting words go into the personal list, which is created on the
// first save. Failures are reported, and the words keep waiting.
void savePersonalList(PipeState *st) {
    if (st->unsaved.empty()) return;
    DictSession &ds = st->ds;
    if (ds.personalPath.empty()) {
        reportError("cannot save the personal word list: set HOME or use -p FILE");
        return;
    }
    int16_t rc = openPersonalList(ds.session, ds.personalPath, &ds.personalLex);
    if (rc < 0) {
        reportError("%s: cannot save the personal word list: %s", ds.personalPath.c_str(), describeResult(rc).c_str());
        return;
    }
    for (size_t i = 0; i < st->unsaved.size(); ++i) {
        rc = ORTH_AddToLex(ds.session, ds.personalLex, st->unsaved[i].c_str(), nullptr);
        if (rc < 0) {
            reportError("%s: cannot save the personal word list: %s", ds.personalPath.c_str(),
                        describeResult(rc).c_str());
            st->unsaved.erase(st->unsaved.begin(), st->unsaved.begin() + static_cast<long>(i));
            return;
        }
    }
    st->unsaved.clear();
}

// One input line of the pipe: a command, or text to check.
void handleLine(PipeState *st, const std::string &line) {
    if (line.empty()) {
        std::fputc('\n', stdout);
        std::fflush(stdout);
        return;
    }
    std::string rest = line.substr(1);
    switch (line[0]) {
    case '*':
    case '&': {
        std::string w = commandWord(rest);
        if (line[0] == '&')
            for (char &c : w) c = static_cast<char>(toLowerChar(0, static_cast<unsigned char>(c)));
        if (!w.empty() && addToMemoryList(st->ds.session, &st->unsavedLex, w) == 0) st->unsaved.push_back(w);
        return;
    }
    case '@': {
        std::string w = commandWord(rest);
        if (!w.empty()) addToMemoryList(st->ds.session, &st->sessionLex, w);
        return;
    }
    case '#': savePersonalList(st); return;
    case '!': st->terse = true; return;
    case '%': st->terse = false; return;
    case '+': st->tex = true; return;
    case '-': st->tex = false; return;
    case '~': st->tex = rest.compare(0, 3, "tex") == 0; return;
    case '$':
        if (line.compare(0, 2, "$$") == 0) return;  // Aspell's commands: nothing to do here
        break;
    case '^': answerLine(st, rest, 1); return;
    default: break;
    }
    answerLine(st, line, 0);
}

bool readLine(std::istream &in, std::string *line) {
    if (!std::getline(in, *line)) return false;
    if (!line->empty() && line->back() == '\r') line->pop_back();
    return true;
}

int runPipeLoop(PipeState *st) {
    std::printf("%s\n", banner().c_str());
    std::fflush(stdout);
    std::string line;
    while (readLine(std::cin, &line)) handleLine(st, line);
    return kExitOk;
}

// -l: every rejected word of the input, one per line, as written.
int runListLoop(PipeState *st, const std::vector<std::string> &files) {
    bool failed = false;
    auto listStream = [&](std::istream &in) {
        std::string line, out;
        while (readLine(in, &line)) {
            std::vector<LineWord> words;
            if (!wordsOfLine(st->ds.session, line, st->tex, &words)) failed = true;
            for (const LineWord &w : words) {
                std::string change;
                if (checkLineWord(st, w, false, &change) != Verdict::Rejected) continue;
                out += w.shown + "\n";
            }
            if (out.size() > 4096) { std::fwrite(out.data(), 1, out.size(), stdout); out.clear(); }
        }
        std::fwrite(out.data(), 1, out.size(), stdout);
    };
    if (files.empty()) listStream(std::cin);
    for (const std::string &f : files) {
        std::ifstream in(f, std::ios::binary);
        if (!in) {
            reportError("%s: %s", f.c_str(), std::strerror(errno ? errno : ENOENT));
            failed = true;
            continue;
        }
        listStream(in);
    }
    std::fflush(stdout);
    // Editors take any status but 0 for a failed run, misspellings or not.
    return failed ? kExitError : kExitOk;
}

// -D: where dictionaries are looked for and which are there, as Hunspell
// prints it, on standard error. A dictionary is listed by its folder path;
// editors that read X.aff find the small one the build puts beside it.
int listDictionaryFolders(const GlobalOptions &opts) {
    DictRoots roots = dictRootsFor(executableDir());
    std::string text = "SEARCH PATH:\n";
    const char *env = std::getenv("ORTH_DICPATH");
    if (env != nullptr && *env != '\0') text += std::string(env) + ":";
    for (size_t i = 0; i < roots.folders.size(); ++i) text += (i ? ":" : "") + roots.folders[i];
    text += "\nAVAILABLE DICTIONARIES (path is not mandatory for -d option):\n";
    for (const std::string &name : listDictionaries(roots)) {
        std::string dir = findDictionary(name, roots);
        std::error_code ec;
        std::string abs = std::filesystem::weakly_canonical(dir, ec).string();
        text += (ec ? dir : abs) + "\n";
    }
    std::string loaded = findDictionary(opts.dictDir, roots);
    if (!loaded.empty()) {
        std::error_code ec;
        std::string abs = std::filesystem::weakly_canonical(loaded, ec).string();
        if (!ec) loaded = abs;
        text += "LOADED DICTIONARY:\n" + loaded + ".aff\n" + loaded + "/MAIN.CLX\n";
    }
    std::fputs(text.c_str(), stderr);
    return kExitOk;
}

}  // namespace

bool isIspellInvocation(const std::vector<std::string> &args) {
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string &a = args[i];
        if (a == "-a" || a == "-l" || a == "-v" || a == "-vv" || a == "-D") return true;
        if (a == "-d" || a == "-p" || a == "-i") ++i;
        else if (!a.empty() && a[0] != '-') return false;  // a command
    }
    return false;
}

int runIspell(const GlobalOptions &global, const std::vector<std::string> &args) {
    GlobalOptions opts = global;
    PipeSettings ps;
    if (!parseArgs(args, &opts, &ps)) return kExitError;
    if (ps.action == PipeAction::Help) return printCommandHelp("pipe", stdout) ? kExitOk : kExitError;
    if (ps.action == PipeAction::OrthVersion) return printVersion();
    if (ps.action == PipeAction::Version) {
        std::printf("%s\n", banner().c_str());
        return kExitOk;
    }
    if (ps.action == PipeAction::Dictionaries) return listDictionaryFolders(opts);
    if (ps.action == PipeAction::None) {
        reportError("pipe: one of -a, -l, -v or -D is needed (see orth pipe --help)");
        return kExitError;
    }
    std::ios::sync_with_stdio(false);
    PipeState st;
    st.tex = ps.tex;
    st.ranking = ps.ranking;
    if (!openDictionary(opts, &st.ds)) return kExitError;
    int rc = ps.action == PipeAction::Pipe ? runPipeLoop(&st) : runListLoop(&st, ps.files);
    closeDictionary(&st.ds);
    return rc;
}

int runPipe(const GlobalOptions &opts, const std::vector<std::string> &args) {
    std::vector<std::string> all = {"-a"};
    all.insert(all.end(), args.begin(), args.end());
    return runIspell(opts, all);
}
