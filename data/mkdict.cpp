// data/mkdict.cpp — build-time tool: compresses sorted word files into a
// .CLX with the engine's own compressor, and optionally writes the
// companion text lexicon holding only its language sentinel. Its second
// form writes a built .CLX's commonness file (.FRQ beside it) from a
// frequency list.
//
// Usage: orth_mkdict <output.clx> <language id> <suffix file or -> <word file>...
//                    [--tlx <path>]
//        orth_mkdict --commonness <lexicon.clx> <frequency list>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "orth.h"

namespace {

int usage() {
    std::fprintf(stderr,
                 "usage: orth_mkdict <output.clx> <language> <suffixes|-> <words>... [--tlx <path>]\n"
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

}  // namespace

int main(int argc, char **argv) {
    if (argc == 4 && std::strcmp(argv[1], "--commonness") == 0) return makeCommonness(argv[2], argv[3]);
    if (argc < 5) return usage();
    const char *output = argv[1];
    unsigned language = static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10));
    const char *suffixes = std::strcmp(argv[3], "-") == 0 ? nullptr : argv[3];
    const char *tlx = nullptr;
    int lastWordFile = argc - 1;
    if (argc >= 7 && std::strcmp(argv[argc - 2], "--tlx") == 0) {
        tlx = argv[argc - 1];
        lastWordFile = argc - 3;
    }
    if (lastWordFile < 4) return usage();

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
    for (int i = 4; i <= lastWordFile; ++i) {
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
