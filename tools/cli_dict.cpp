// tools/cli_dict.cpp — finding and opening the dictionary for the orth
// command, and its error messages.
//
// The folder is the first of: -d DIR, the ORTH_DICPATH environment variable,
// <exe dir>/share/orth/en_US (build tree), <exe dir>/../share/orth/en_US
// (installed tree). It is opened as the dictionary library does: the
// companion MAIN.TLX first, then MAIN.CLX. Unlike the library, a folder
// without MAIN.TLX is accepted (a folder freshly made with `orth compress`
// has none); a personal list given with -p sits between the two and is
// skipped when the file does not exist yet.
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

namespace {

bool isFile(const std::string &path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && (st.st_mode & S_IFMT) == S_IFREG;
}

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

// Opens one lexicon; prints the file and the reason on failure.
bool openLexOrReport(int16_t session, const std::string &path) {
    int16_t rc = ORTH_OpenLex(session, path.c_str(), 0);
    if (rc >= 0) return true;
    reportError("%s: cannot open dictionary: %s", path.c_str(), describeResult(rc).c_str());
    return false;
}

}  // namespace

void reportError(const char *fmt, ...) {
    std::fputs("orth: ", stderr);
    va_list ap;
    va_start(ap, fmt);
    std::vfprintf(stderr, fmt, ap);
    va_end(ap);
    std::fputc('\n', stderr);
}

std::string findDictionaryDir(const GlobalOptions &opts) {
    if (!opts.dictDir.empty()) return opts.dictDir;
    const char *env = std::getenv("ORTH_DICPATH");
    if (env != nullptr && *env != '\0') return env;
    std::string exe = executableDir();
    if (exe.empty()) return "";
    for (const char *rel : {"/share/orth/en_US", "/../share/orth/en_US"}) {
        std::string dir = exe + rel;
        if (isFile(dir + "/MAIN.CLX")) return dir;
    }
    return "";
}

bool openDictionary(const GlobalOptions &opts, DictSession *ds) {
    std::string dir = findDictionaryDir(opts);
    if (dir.empty()) {
        reportError("no dictionary found: use -d DIR or set ORTH_DICPATH");
        return false;
    }
    std::string clx = dir + "/MAIN.CLX", tlx = dir + "/MAIN.TLX";
    if (!isFile(clx)) {
        reportError("%s: cannot open dictionary: %s", clx.c_str(), std::strerror(errno ? errno : ENOENT));
        return false;
    }
    int16_t session = ORTH_OpenSession();
    if (session < 0) {
        reportError("cannot open a session: %s", describeResult(session).c_str());
        return false;
    }
    ds->session = session;
    bool ok = (!isFile(tlx) || openLexOrReport(session, tlx)) &&
              (opts.personalList.empty() || !isFile(opts.personalList) ||
               openLexOrReport(session, opts.personalList)) &&
              openLexOrReport(session, clx);
    if (!ok) closeDictionary(ds);
    return ok;
}

void closeDictionary(DictSession *ds) {
    if (ds->session >= 0) ORTH_CloseSession(ds->session);
    ds->session = -1;
}
