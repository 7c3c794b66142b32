// tools/cli_dict.cpp — finding and opening the dictionary for the orth
// command, and its error messages.
//
// The folder is -d DIR (a folder, or a name such as en_GB), else the
// ORTH_DICPATH search and the built-in dictionaries beside the program
// (tools/front_dicts.cpp). It is opened as the dictionary library does: the
// companion MAIN.TLX first, then MAIN.CLX. Unlike the library, a folder
// without MAIN.TLX is accepted (a folder freshly made with `orth compress`
// has none). The personal list (-p FILE, else the user's default list for
// the dictionary) sits between the two and is skipped while the file does
// not exist yet.
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>
#endif

#include "orth.h"
#include "tools/cli.h"
#include "tools/front.h"

namespace {

// The reason a file could not be opened: the engine says "not found" also
// for a file it may not read.
std::string openFailure(const std::string &path, int16_t rc) {
    std::string reason = describeResult(rc);
    struct stat st;
    if (stat(path.c_str(), &st) == 0 && (st.st_mode & S_IFMT) == S_IFDIR) return "is a folder";
    if (rc == ORTH_FILE_NOT_FOUND_ERR) {
        errno = 0;
        std::FILE *f = std::fopen(path.c_str(), "rb");
        if (f != nullptr) std::fclose(f);
        else if (errno != 0) reason = std::strerror(errno);
    }
    return reason;
}

}  // namespace

std::string executableDir() {
#ifdef _WIN32
    char buf[MAX_PATH];
    DWORD n = GetModuleFileNameA(nullptr, buf, sizeof buf);
    if (n == 0 || n >= sizeof buf) return "";
    std::string path(buf, n);
    size_t slash = path.find_last_of("\\/");
#else
    char buf[PATH_MAX];
    ssize_t n = readlink("/proc/self/exe", buf, sizeof buf - 1);
    if (n <= 0) return "";
    std::string path(buf, static_cast<size_t>(n));
    size_t slash = path.rfind('/');
#endif
    return slash == std::string::npos ? "" : path.substr(0, slash);
}

void reportError(const char *fmt, ...) {
    std::fputs("orth: ", stderr);
    va_list ap;
    va_start(ap, fmt);
    std::vfprintf(stderr, fmt, ap);
    va_end(ap);
    std::fputc('\n', stderr);
}

std::string findDictionaryDir(const GlobalOptions &opts) {
    return findDictionary(opts.dictDir, dictRootsFor(executableDir()));
}

bool openDictionary(const GlobalOptions &opts, DictSession *ds) {
    std::string dir = findDictionaryDir(opts);
    if (dir.empty()) {
        if (opts.dictDir.empty())
            reportError("no dictionary found: use -d DIR or set ORTH_DICPATH");
        else
            reportError("%s: no such dictionary (not a folder holding MAIN.CLX, nor found in "
                        "ORTH_DICPATH or the built-in dictionaries)", opts.dictDir.c_str());
        return false;
    }
    std::string personal = opts.personalList.empty() ? defaultPersonalList(dir) : opts.personalList;
    std::string failed;
    int16_t personalLex = -1;
    int16_t session = openDictionarySession(dir, personal, &personalLex, &failed);
    if (session < 0) {
        if (failed.empty())
            reportError("cannot open a session: %s", describeResult(session).c_str());
        else
            reportError("%s: cannot open %s: %s", failed.c_str(),
                        failed == personal ? "personal word list" : "dictionary", openFailure(failed, session).c_str());
        return false;
    }
    ds->session = session;
    ds->folder = dir;
    ds->personalPath = personal;
    ds->personalLex = personalLex;
    return true;
}

void closeDictionary(DictSession *ds) {
    if (ds->session >= 0) ORTH_CloseSession(ds->session);
    ds->session = -1;
    ds->personalLex = -1;
}
