// tools/cli_compress.cpp — `orth compress`: builds a compressed lexicon from
// sorted word files and an optional suffix file, and from an optional
// frequency list its commonness file (OUT.FRQ beside OUT.CLX).
//
// The files are UTF-8 text with LF or CR LF line ends. Each is first copied
// to a temporary file in the engine's form (character set 0 bytes, CR LF
// line ends, one line for each input line, so line numbers carry over),
// written beside the output as OUT.words.tmp and removed afterwards; for
// the other character sets (1 to 3, 5 to 9) the bytes are taken as they are
// and only the line ends are changed. A failure names the file, the line and
// the reason.
#include <cstdlib>
#include <cstring>
#ifdef _WIN32
#include <io.h>
#define isatty _isatty
#else
#include <unistd.h>
#endif

#include "orth.h"
#include "tools/cli.h"

namespace {

struct TempFile {
    std::string path;
    ~TempFile() { if (!path.empty()) std::remove(path.c_str()); }
};

// Writes the engine's form of a text file to copyPath. False on
// a character the set cannot hold (*badLine gets its line number, and the
// caller reports it) or a file error (reported here).
bool prepareFile(const std::string &src, const std::string &copyPath, bool convert, TempFile *tmp,
                 uint32_t *badLine) {
    std::string text;
    if (!readAll(src, &text)) {
        reportError("%s: %s", src.c_str(), errnoText().c_str());
        return false;
    }
    std::string out;
    out.reserve(text.size() + text.size() / 8);
    uint32_t lineNo = 0;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        size_t stop = (end > start && text[end - 1] == '\r') ? end - 1 : end;
        std::string line = text.substr(start, stop - start);
        ++lineNo;
        if (convert) {
            Encoded enc = encodeUtf8(line);
            if (enc.hasForeign(0, enc.bytes.size())) {
                *badLine = lineNo;
                return false;
            }
            line = enc.bytes;
        }
        out += line;
        out += "\r\n";
        start = end + 1;
    }
    FILE *f = std::fopen(copyPath.c_str(), "wb");
    if (f == nullptr) {
        reportError("%s: cannot create a temporary copy: %s", copyPath.c_str(), errnoText().c_str());
        return false;
    }
    tmp->path = copyPath;
    bool ok = std::fwrite(out.data(), 1, out.size(), f) == out.size();
    if (std::fclose(f) != 0) ok = false;
    if (!ok) reportError("%s: cannot write a temporary copy: %s", copyPath.c_str(), errnoText().c_str());
    return ok;
}

// The text of a line of a file, for the error message ("" when unreadable).
std::string lineOf(const std::string &path, uint32_t lineNo) {
    std::string text;
    if (lineNo == 0 || !readAll(path, &text)) return "";
    size_t start = 0;
    for (uint32_t n = 1; n < lineNo && start != std::string::npos; ++n) {
        start = text.find('\n', start);
        if (start != std::string::npos) ++start;
    }
    if (start == std::string::npos || start >= text.size()) return "";
    size_t end = text.find('\n', start);
    std::string line = text.substr(start, end == std::string::npos ? std::string::npos : end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
}

void reportLineError(const std::string &file, uint32_t lineNo, const std::string &reason) {
    std::string text = lineOf(file, lineNo);
    if (text.size() > 80) text = text.substr(0, 80) + "...";
    if (lineNo > 0)
        reportError("%s:%u: %s: \"%s\"", file.c_str(), lineNo, reason.c_str(), text.c_str());
    else
        reportError("%s: %s", file.c_str(), reason.c_str());
}

bool parseNumber(const std::string &s, long lo, long hi, long *out) {
    char *end = nullptr;
    long v = std::strtol(s.c_str(), &end, 10);
    if (s.empty() || *end != '\0' || v < lo || v > hi) return false;
    *out = v;
    return true;
}

// Builds OUT.FRQ from the frequency list, converted like the word files.
// False after reporting the file, the line and the reason.
bool buildCommonness(int16_t session, const std::string &output, const std::string &list, bool convert) {
    TempFile copy;
    uint32_t line = 0;
    if (!prepareFile(list, output + ".freq.tmp", convert, &copy, &line)) {
        if (line != 0) reportLineError(list, line, "character outside the character set");
        return false;
    }
    line = 0;
    int16_t rc = ORTH_CompressLexFreq(session, output.c_str(), copy.path.c_str(), &line);
    if (rc == ORTH_INVALID_WORD_ERR) {
        reportLineError(list, line, "expected a word and a count");
        return false;
    }
    if (rc < 0) {
        reportError("%s: %s", list.c_str(), describeResult(rc).c_str());
        return false;
    }
    return true;
}

}  // namespace

int runCompress(const GlobalOptions &, const std::vector<std::string> &args) {
    std::string output, suffixes, frequencies;
    long language = 1033, charset = 0;
    std::vector<std::string> files;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string &a = args[i];
        bool hasValue = i + 1 < args.size();
        if ((a == "-o" || a == "--suffixes" || a == "--language" || a == "--charset" ||
             a == "--frequencies") && !hasValue) {
            reportError("compress: %s needs a value", a.c_str());
            return kExitError;
        }
        if (a == "-o") output = args[++i];
        else if (a == "--suffixes") suffixes = args[++i];
        else if (a == "--frequencies") frequencies = args[++i];
        else if (a == "--language") {
            if (!parseNumber(args[++i], 0, 65535, &language)) {
                reportError("compress: bad language id %s", args[i].c_str());
                return kExitError;
            }
        } else if (a == "--charset") {
            if (!parseNumber(args[++i], 0, 9, &charset)) {
                reportError("compress: bad character set %s (0 to 9)", args[i].c_str());
                return kExitError;
            }
        } else if (a.size() > 1 && a[0] == '-') {
            reportError("compress: unknown option %s (see orth --help)", a.c_str());
            return kExitError;
        } else files.push_back(a);
    }
    if (output.empty() || files.empty()) {
        reportError("compress: usage: orth compress -o OUT.CLX [--suffixes FILE] [--language ID] [--charset N] "
                    "[--frequencies FILE] WORDFILE...");
        return kExitError;
    }
    bool convert = charset == 0 || charset == 4;
    bool progress = isatty(2) != 0;

    int16_t session = ORTH_OpenSession();
    if (session < 0) {
        reportError("cannot open a session: %s", describeResult(session).c_str());
        return kExitError;
    }
    int status = kExitError;
    TempFile suffixCopy;
    uint32_t line = 0, badLine = 0;
    int16_t rc = 0;
    if (!suffixes.empty() && !prepareFile(suffixes, output + ".suffixes.tmp", convert, &suffixCopy, &badLine)) {
        if (badLine != 0) reportLineError(suffixes, badLine, "character outside the character set");
        ORTH_CloseSession(session);
        return kExitError;
    }
    rc = ORTH_CompressLexInit(session, output.c_str(), suffixes.empty() ? nullptr : suffixCopy.path.c_str(),
                              static_cast<uint16_t>(language), static_cast<uint16_t>(charset), &line);
    if (rc < 0) {
        reportError("%s: %s", output.c_str(), describeResult(rc).c_str());
        ORTH_CloseSession(session);
        return kExitError;
    }
    bool ok = true;
    for (size_t i = 0; ok && i < files.size(); ++i) {
        if (progress) std::fprintf(stderr, "\rorth: compressing %s (%zu of %zu)...", files[i].c_str(), i + 1, files.size());
        TempFile copy;
        badLine = 0;
        if (!prepareFile(files[i], output + ".words.tmp", convert, &copy, &badLine)) {
            if (badLine != 0) reportLineError(files[i], badLine, "character outside the character set");
            ok = false;
            break;
        }
        line = 0;
        rc = ORTH_CompressLexFile(session, copy.path.c_str(), &line);
        if (progress) std::fputs("\n", stderr);
        if (rc < 0) {
            reportLineError(files[i], line, describeResult(rc));
            ok = false;
        }
    }
    if (ok) {
        rc = ORTH_CompressLexEnd(session);
        if (rc < 0) reportError("%s: %s", output.c_str(), describeResult(rc).c_str());
        else if (frequencies.empty() || buildCommonness(session, output, frequencies, convert)) status = kExitOk;
    } else {
        ORTH_CompressLexAbort(session);
    }
    ORTH_CloseSession(session);
    return status;
}
