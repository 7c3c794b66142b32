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

// Opens one lexicon; prints the file and the reason on failure.
bool openLexOrReport(int16_t session, const std::string &path, const char *what, int16_t *id = nullptr) {
    int16_t rc = ORTH_OpenLex(session, path.c_str(), 0);
    if (id != nullptr) *id = rc;
    if (rc >= 0) return true;
    // The engine says "not found" for a file it cannot open; name the real reason.
    std::string reason = describeResult(rc);
    if (rc == ORTH_FILE_NOT_FOUND_ERR) {
        errno = 0;
        std::FILE *f = std::fopen(path.c_str(), "rb");
        if (f != nullptr) std::fclose(f);
        else if (errno != 0 && errno != ENOENT) reason = std::strerror(errno);
    }
    reportError("%s: cannot open %s: %s", path.c_str(), what, reason.c_str());
    return false;
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
    std::string clx = dir + "/MAIN.CLX", tlx = dir + "/MAIN.TLX";
    if (!isRegularFile(clx)) {
        reportError("%s: cannot open dictionary: %s", clx.c_str(), std::strerror(errno ? errno : ENOENT));
        return false;
    }
    int16_t session = ORTH_OpenSession();
    if (session < 0) {
        reportError("cannot open a session: %s", describeResult(session).c_str());
        return false;
    }
    ds->session = session;
    ds->folder = dir;
    ds->personalPath = opts.personalList.empty() ? defaultPersonalList(dir) : opts.personalList;
    ds->personalLex = -1;
    bool ok = (!isRegularFile(tlx) || openLexOrReport(session, tlx, "dictionary")) &&
              (!isRegularFile(ds->personalPath) ||
               openLexOrReport(session, ds->personalPath, "personal word list", &ds->personalLex)) &&
              openLexOrReport(session, clx, "dictionary");
    if (!ok) closeDictionary(ds);
    return ok;
}

void closeDictionary(DictSession *ds) {
    if (ds->session >= 0) ORTH_CloseSession(ds->session);
    ds->session = -1;
    ds->personalLex = -1;
}
