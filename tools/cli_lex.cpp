// tools/cli_lex.cpp — `orth lex`: edits text lexicons from the shell.
//
//   orth lex create FILE [--type T] [--language ID]   T: ignore (default),
//                                                     exclude, auto, conditional
//   orth lex add FILE ENTRY...      ENTRY: WORD, or WORD:REPLACEMENT for the
//   orth lex delete FILE WORD...    two change types
//   orth lex list FILE              one entry per line
//   orth lex import FILE [TEXT]     entries separated by white space; a line
//                                   starting with # or ; is a comment
//   orth lex export FILE [TEXT]     the entries, one per line (import reads it back)
// TEXT "-" or none is standard input or output. Every change is saved by the
// engine at once.
#include <cstdlib>
#include <cstring>

#include "orth.h"
#include "tools/cli.h"

namespace {

struct LexFile {
    int16_t session = -1;
    int16_t lex = -1;
    uint16_t type = ORTH_IGNORE_LEX_TYPE;
    ~LexFile() { if (session >= 0) ORTH_CloseSession(session); }
};

bool isPairType(uint16_t type) {
    return type == ORTH_AUTO_CHANGE_LEX_TYPE || type == ORTH_CONDITIONAL_CHANGE_LEX_TYPE;
}

bool openSession(LexFile *lf) {
    lf->session = ORTH_OpenSession();
    if (lf->session >= 0) return true;
    reportError("cannot open a session: %s", describeResult(lf->session).c_str());
    return false;
}

// Opens an existing text lexicon; prints the reason on failure.
bool openLexFile(const std::string &path, LexFile *lf) {
    if (!openSession(lf)) return false;
    int16_t rc = ORTH_OpenLex(lf->session, path.c_str(), 0);
    if (rc < 0) {
        reportError("%s: cannot open lexicon: %s", path.c_str(), describeResult(rc).c_str());
        return false;
    }
    lf->lex = rc;
    uint16_t format = 0;
    ORTH_GetLexInfo(lf->session, lf->lex, nullptr, &format, &lf->type, nullptr);
    if (format != ORTH_TEXT_LEX_FORMAT) {
        reportError("%s: a compressed lexicon cannot be edited", path.c_str());
        return false;
    }
    return true;
}

// Converts a word for the lexicon; false, with a message, when it holds a
// character the set cannot hold.
bool toLexBytes(const std::string &utf8, std::string *out) {
    Encoded enc = encodeUtf8(utf8);
    if (enc.hasForeign(0, enc.bytes.size())) {
        reportError("%s: holds a character the dictionary's character set cannot hold", utf8.c_str());
        return false;
    }
    *out = enc.bytes;
    return true;
}

// Adds one entry; a pair type needs WORD:REPLACEMENT, the others take the
// text as it is.
bool addEntry(const LexFile &lf, const std::string &path, const std::string &entry) {
    std::string bytes;
    if (!toLexBytes(entry, &bytes)) return false;
    std::string word = bytes, repl;
    bool hasRepl = false;
    if (isPairType(lf.type)) {
        size_t colon = bytes.find(':');
        if (colon == std::string::npos || colon == 0) {
            reportError("%s: needs a replacement, as WORD:REPLACEMENT", entry.c_str());
            return false;
        }
        word = bytes.substr(0, colon);
        repl = bytes.substr(colon + 1);
        hasRepl = true;
    }
    int16_t rc = ORTH_AddToLex(lf.session, lf.lex, word.c_str(), hasRepl ? repl.c_str() : nullptr);
    if (rc < 0) {
        reportError("%s: cannot add %s: %s", path.c_str(), entry.c_str(), describeResult(rc).c_str());
        return false;
    }
    return true;
}

// The lexicon's entries, each "word" or "word:replacement", in character set 0.
bool getEntries(const LexFile &lf, const std::string &path, std::vector<std::string> *entries) {
    uint32_t size = 0;
    int16_t rc = ORTH_GetLexInfo(lf.session, lf.lex, &size, nullptr, nullptr, nullptr);
    std::vector<char> image(size + 1, '\0');
    int32_t got = rc < 0 ? rc : ORTH_GetLex(lf.session, lf.lex, image.data(), size);
    if (got < 0) {
        reportError("%s: cannot list: %s", path.c_str(), describeResult(got).c_str());
        return false;
    }
    for (size_t pos = 0; pos < size && image[pos] != '\0'; pos += std::strlen(&image[pos]) + 1)
        entries->push_back(&image[pos]);
    return true;
}

bool parseType(const std::string &s, int16_t *type) {
    static const char *const names[] = {"auto", "ignore", "conditional", "exclude"};
    for (int16_t t = 0; t < 4; ++t)
        if (s == names[t] || s == std::to_string(t)) { *type = t; return true; }
    return false;
}

int lexCreate(const std::string &path, const std::vector<std::string> &rest) {
    int16_t type = ORTH_IGNORE_LEX_TYPE;
    long language = 1033;
    for (size_t i = 0; i < rest.size(); ++i) {
        if (rest[i] == "--type" && i + 1 < rest.size()) {
            if (!parseType(rest[++i], &type)) {
                reportError("lex create: bad type %s (ignore, exclude, auto, conditional)", rest[i].c_str());
                return kExitError;
            }
        } else if (rest[i] == "--language" && i + 1 < rest.size()) {
            char *end = nullptr;
            language = std::strtol(rest[++i].c_str(), &end, 10);
            if (rest[i].empty() || *end != '\0' || language < 0 || language > 65535) {
                reportError("lex create: bad language id %s", rest[i].c_str());
                return kExitError;
            }
        } else {
            reportError("lex create: unexpected %s (see orth --help)", rest[i].c_str());
            return kExitError;
        }
    }
    LexFile lf;
    if (!openSession(&lf)) return kExitError;
    int16_t rc = ORTH_CreateLex(lf.session, path.c_str(), type, static_cast<uint16_t>(language));
    if (rc < 0) {
        reportError("%s: cannot create lexicon: %s", path.c_str(), describeResult(rc).c_str());
        return kExitError;
    }
    return kExitOk;
}

int lexImport(const LexFile &lf, const std::string &path, const std::string &source) {
    std::string text;
    if (!readAll(source, &text)) {
        reportError("%s: %s", source == "-" ? "standard input" : source.c_str(), errnoText().c_str());
        return kExitError;
    }
    int status = kExitOk;
    for (const std::string &line : splitLines(text)) {
        size_t first = line.find_first_not_of(" \t\r");
        if (first == std::string::npos || line[first] == '#' || line[first] == ';') continue;
        // Tokens are runs without white space; a colon also separates words
        // in the single-word types.
        const char *seps = isPairType(lf.type) ? " \t\r" : " \t\r:";
        size_t pos = first;
        while ((pos = line.find_first_not_of(seps, pos)) != std::string::npos) {
            size_t stop = line.find_first_of(seps, pos);
            std::string token = line.substr(pos, stop == std::string::npos ? std::string::npos : stop - pos);
            if (!addEntry(lf, path, token)) status = kExitError;
            pos = stop;
        }
    }
    return status;
}

}  // namespace

int runLex(const GlobalOptions &, const std::vector<std::string> &args) {
    if (args.size() < 2) {
        reportError("lex: usage: orth lex create|add|delete|list|import|export FILE [ARGS...]");
        return kExitError;
    }
    const std::string &action = args[0], &path = args[1];
    std::vector<std::string> rest(args.begin() + 2, args.end());
    if (action == "create") return lexCreate(path, rest);
    if (action != "add" && action != "delete" && action != "list" && action != "import" &&
        action != "export") {
        reportError("lex: unknown action %s (create, add, delete, list, import, export)", action.c_str());
        return kExitError;
    }
    LexFile lf;
    if (!openLexFile(path, &lf)) return kExitError;
    int status = kExitOk;
    if (action == "add") {
        for (const std::string &e : rest)
            if (!addEntry(lf, path, e)) status = kExitError;
    } else if (action == "delete") {
        for (const std::string &w : rest) {
            std::string bytes;
            if (!toLexBytes(w, &bytes)) { status = kExitError; continue; }
            if (isPairType(lf.type)) bytes = bytes.substr(0, bytes.find(':'));
            int16_t rc = ORTH_DelFromLex(lf.session, lf.lex, bytes.c_str());
            if (rc < 0) {
                reportError("%s: cannot delete %s: %s", path.c_str(), w.c_str(), describeResult(rc).c_str());
                status = kExitError;
            }
        }
    } else if (action == "import") {
        status = lexImport(lf, path, rest.empty() ? "-" : rest[0]);
    } else {
        std::vector<std::string> entries;
        if (!getEntries(lf, path, &entries)) return kExitError;
        std::string target = (action == "export" && !rest.empty()) ? rest[0] : "-";
        FILE *out = target == "-" ? stdout : std::fopen(target.c_str(), "wb");
        if (out == nullptr) {
            reportError("%s: %s", target.c_str(), errnoText().c_str());
            return kExitError;
        }
        for (const std::string &e : entries) {
            std::string line = decodeToUtf8(e) + "\n";
            std::fwrite(line.data(), 1, line.size(), out);
        }
        if (out != stdout && std::fclose(out) != 0) {
            reportError("%s: %s", target.c_str(), errnoText().c_str());
            status = kExitError;
        }
    }
    return status;
}
