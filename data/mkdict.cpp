// data/mkdict.cpp — build-time tool: compresses word files into a .CLX with
// the engine's own compressor, and optionally writes the companion text
// lexicon holding only its language sentinel. Its second form writes a
// built .CLX's commonness file (.FRQ beside it) from a frequency list.
//
// Usage: orth_mkdict <output.clx> <language id> <suffix file or -> <word file>...
//                    [--stems <list out>] [--tlx <path>]
//        orth_mkdict --commonness <lexicon.clx> <frequency list>
//
// Without --stems the word files must be sorted byte-wise, each word once.
// With --stems they are source lists in any order: every word is reduced as
// the checker reduces a word before looking it up under its default options
// (a possessive ending 's or s' removed), so that every word of the source
// is accepted, and the reduced words are sorted, made unique, written to
// <list out> (CR LF lines) and compressed from there.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>

#include "check/chartab.h"
#include "orth.h"

namespace {

int usage() {
    std::fprintf(stderr,
                 "usage: orth_mkdict <output.clx> <language> <suffixes|-> <words>... "
                 "[--stems <list>] [--tlx <path>]\n"
                 "       orth_mkdict --commonness <lexicon.clx> <frequency list>\n");
    return 2;
}

int makeCommonness(const char *lexicon, const char *list) {
    int16_t sid = ORTH_OpenSession();
    if (sid < 0) return 1;
    uint32_t line = 0;
    int16_t rc = ORTH_CompressLexFreq(sid, lexicon, list, &line);
    ORTH_CloseSession(sid);
    if (rc < 0) {
        std::fprintf(stderr, "orth_mkdict: %s:%lu: %s (%d)\n", list, static_cast<unsigned long>(line),
                     resultCodeName(rc), rc);
        return 1;
    }
    return 0;
}

// The sentinel line of an empty accept-type text lexicon, CR LF ended.
bool writeSentinel(const char *path, unsigned language) {
    std::FILE *f = std::fopen(path, "wb");
    if (f == nullptr) return false;
    bool ok = std::fprintf(f, "#LID %u 1 0\r\n", language) > 0;
    return std::fclose(f) == 0 && ok;
}

// Reads the words of the source files (one a line, LF or CR LF), reduces
// each as the checker does under its default options and writes the
// distinct results, sorted byte-wise, to path. False after a message.
bool writeStems(int first, int last, char **argv, const char *path) {
    std::set<std::string> stems;  // std::string orders bytes as unsigned values
    for (int i = first; i <= last; ++i) {
        std::FILE *f = std::fopen(argv[i], "rb");
        if (f == nullptr) {
            std::fprintf(stderr, "orth_mkdict: can't read %s\n", argv[i]);
            return false;
        }
        char line[256];
        while (std::fgets(line, sizeof line, f) != nullptr) {
            size_t n = std::strcspn(line, "\r\n");
            line[n] = '\0';
            if (n == 0) continue;
            if (n > static_cast<size_t>(kMaxWordLen)) {
                std::fprintf(stderr, "orth_mkdict: %s: a word over %d bytes: %.20s...\n", argv[i], kMaxWordLen, line);
                std::fclose(f);
                return false;
            }
            char stem[kWordBufSize];
            if (normalizeWord(line, 0, ORTH_STRIP_POSSESSIVES_OPT, stem) > 0) stems.insert(stem);
        }
        std::fclose(f);
    }
    std::FILE *out = std::fopen(path, "wb");
    if (out == nullptr) {
        std::fprintf(stderr, "orth_mkdict: can't write %s\n", path);
        return false;
    }
    bool ok = true;
    for (const std::string &s : stems) ok = ok && std::fprintf(out, "%s\r\n", s.c_str()) > 0;
    if (std::fclose(out) != 0 || !ok) {
        std::fprintf(stderr, "orth_mkdict: can't write %s\n", path);
        return false;
    }
    return true;
}

}  // namespace

int main(int argc, char **argv) {
    if (argc == 4 && std::strcmp(argv[1], "--commonness") == 0) return makeCommonness(argv[2], argv[3]);
    if (argc < 5) return usage();
    const char *output = argv[1];
    unsigned language = static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10));
    const char *suffixes = std::strcmp(argv[3], "-") == 0 ? nullptr : argv[3];
    const char *tlx = nullptr, *stems = nullptr;
    int lastWordFile = argc - 1;
    while (lastWordFile >= 6 && argv[lastWordFile - 1][0] == '-' && argv[lastWordFile - 1][1] == '-') {
        if (std::strcmp(argv[lastWordFile - 1], "--tlx") == 0) tlx = argv[lastWordFile];
        else if (std::strcmp(argv[lastWordFile - 1], "--stems") == 0) stems = argv[lastWordFile];
        else return usage();
        lastWordFile -= 2;
    }
    if (lastWordFile < 4) return usage();
    int firstWordFile = 4;
    if (stems != nullptr) {
        if (!writeStems(firstWordFile, lastWordFile, argv, stems)) return 1;
        argv[firstWordFile] = const_cast<char *>(stems);
        lastWordFile = firstWordFile;
    }

    int16_t sid = ORTH_OpenSession();
    if (sid < 0) return 1;
    uint32_t line = 0;
    int16_t rc = ORTH_CompressLexInit(sid, output, suffixes, static_cast<uint16_t>(language), 0, &line);
    if (rc < 0) {
        std::fprintf(stderr, "orth_mkdict: %s: %s (line %lu)\n", output, resultCodeName(rc),
                     static_cast<unsigned long>(line));
        ORTH_CloseSession(sid);
        return 1;
    }
    for (int i = firstWordFile; i <= lastWordFile; ++i) {
        rc = ORTH_CompressLexFile(sid, argv[i], &line);
        if (rc < 0) {
            std::fprintf(stderr, "orth_mkdict: %s:%lu: %s (%d)\n", argv[i],
                         static_cast<unsigned long>(line), resultCodeName(rc), rc);
            ORTH_CompressLexAbort(sid);
            ORTH_CloseSession(sid);
            return 1;
        }
    }
    rc = ORTH_CompressLexEnd(sid);
    ORTH_CloseSession(sid);
    if (rc < 0) {
        std::fprintf(stderr, "orth_mkdict: %s: %s (%d)\n", output, resultCodeName(rc), rc);
        return 1;
    }
    if (tlx != nullptr && !writeSentinel(tlx, language)) {
        std::fprintf(stderr, "orth_mkdict: can't write %s\n", tlx);
        return 1;
    }
    return 0;
}
