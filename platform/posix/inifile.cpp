// platform/posix/inifile.cpp — reading and rewriting the settings text files
// (format and guarantees in inifile.h), and the POSIX profile functions.
//
// (1) A file is read whole into memory for each call and never cached.
// (2) editIniFile is the only writer: lock the folder, read, edit in memory,
//     write a temporary file beside the target, fsync, rename. A failure at
//     any step removes the temporary file and leaves the target untouched.
#include "platform/posix/inifile.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/faults.h"
#include "platform/platform.h"
#include "platform/profilename.h"

namespace {

struct Line {
    size_t begin, end;  // the text without its line end
    size_t next;        // where the next line begins
    bool terminated;    // a line end follows
};

bool readLine(const std::string &t, size_t pos, Line *line) {
    if (pos >= t.size()) return false;
    size_t nl = t.find('\n', pos);
    line->begin = pos;
    line->terminated = nl != std::string::npos;
    line->end = line->terminated ? nl : t.size();
    line->next = line->terminated ? nl + 1 : t.size();
    if (line->end > line->begin && t[line->end - 1] == '\r') --line->end;
    return true;
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view trim(std::string_view s) {
    while (!s.empty() && isBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back())) s.remove_suffix(1);
    return s;
}

char lowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; }

bool equalNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (lowerAscii(a[i]) != lowerAscii(b[i])) return false;
    }
    return true;
}

enum class Kind { Other, Section, Key };

struct Parsed {
    Kind kind = Kind::Other;
    std::string_view name;   // section or key
    std::string_view value;  // key lines: as the mode reads it
    size_t valueAt = 0;      // key lines: offset in the file just after '='
};

Parsed parseLine(const std::string &t, const Line &line, IniMode mode) {
    Parsed p;
    if (mode == IniMode::Registry && !line.terminated) return p;  // cut short: counts for nothing
    std::string_view raw(t.data() + line.begin, line.end - line.begin);
    std::string_view s = trim(raw);
    if (s.empty() || s.front() == ';' || s.front() == '#') return p;
    if (s.front() == '[') {
        // A header without ']' still opens a section, so that its keys
        // never read as keys of the section before it.
        s.remove_prefix(1);
        size_t close = s.find(']');
        p.kind = Kind::Section;
        p.name = trim(close == std::string_view::npos ? s : s.substr(0, close));
        return p;
    }
    size_t eq = raw.find('=');
    if (eq == std::string_view::npos) return p;
    p.name = trim(raw.substr(0, eq));
    if (p.name.empty()) return p;
    p.kind = Kind::Key;
    p.valueAt = line.begin + eq + 1;
    p.value = raw.substr(eq + 1);
    if (mode == IniMode::Profile) {
        while (!p.value.empty() && isBlank(p.value.front())) {
            p.value.remove_prefix(1);
            ++p.valueAt;  // a rewrite keeps the blanks after '='
        }
        p.value = trim(p.value);
        if (p.value.size() >= 2 && (p.value.front() == '"' || p.value.front() == '\'') &&
            p.value.back() == p.value.front()) {
            p.value = p.value.substr(1, p.value.size() - 2);
        }
    }
    return p;
}

// Offsets of the first matching section's header line and of the end of
// its last key line (the header's end when it has none); false when absent.
struct SectionSpan {
    size_t header, afterLastKey;
};

bool findSection(const std::string &t, IniMode mode, const char *section, SectionSpan *span) {
    Line line;
    bool inside = false;
    for (size_t pos = 0; readLine(t, pos, &line); pos = line.next) {
        Parsed p = parseLine(t, line, mode);
        if (p.kind == Kind::Section) {
            if (inside) return true;
            if (equalNoCase(p.name, section)) {
                inside = true;
                span->header = line.begin;
                span->afterLastKey = line.next;
            }
        } else if (inside && p.kind == Kind::Key) {
            span->afterLastKey = line.next;
        }
    }
    return inside;
}

std::string lineEndOf(const std::string &t) {
    size_t nl = t.find('\n');
    return (nl != std::string::npos && nl > 0 && t[nl - 1] == '\r') ? "\r\n" : "\n";
}

// A registry file whose last line lacks its line end was cut short: keep
// that line as a comment. A profile file merely lacks a final line end.
void closeLastLine(std::string *t, IniMode mode) {
    if (t->empty() || t->back() == '\n') return;
    // A last line already ended by a lone CR gets only the LF it lacks;
    // a full line end after the CR would make the CR part of its value.
    std::string eol = t->back() == '\r' ? "\n" : lineEndOf(*t);
    if (mode == IniMode::Registry) {
        size_t start = t->rfind('\n');
        start = start == std::string::npos ? 0 : start + 1;
        t->insert(start, "# damaged: ");
    }
    t->append(eol);
}

// Keeps the folder of a settings file locked while one writer edits it.
struct FolderLock {
    int fd;
    explicit FolderLock(const std::string &folder)
        : fd(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (fd >= 0) {
            while (flock(fd, LOCK_EX) != 0 && errno == EINTR) {
            }
        }
    }
    ~FolderLock() {
        if (fd >= 0) close(fd);
    }
};

bool writeAll(int fd, const std::string &bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        if (writeShouldFail()) return false;
        ssize_t n = write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<size_t>(n);
    }
    return true;
}

// Writes text to a temporary file beside target, then renames it over target.
bool replaceFile(const std::string &target, const std::string &text) {
    struct stat old;
    bool existed = stat(target.c_str(), &old) == 0;
    static unsigned counter = 0;
    std::string temp;
    int fd = -1;
    for (int attempt = 0; attempt < 16 && fd < 0; ++attempt) {
        if (createShouldFail()) return false;
        temp = target + ".~" + std::to_string(getpid()) + "-" + std::to_string(++counter);
        fd = open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0 && errno != EEXIST) return false;
    }
    if (fd < 0) return false;
    bool ok = writeAll(fd, text);
    if (ok && existed) ok = fchmod(fd, old.st_mode & 07777) == 0;
    if (ok) ok = fsync(fd) == 0;
    if (close(fd) != 0) ok = false;
    if (ok) ok = rename(temp.c_str(), target.c_str()) == 0;
    if (!ok) unlink(temp.c_str());
    return ok;
}

// The file a write goes to: a symbolic link's target, so the link survives.
std::string writeTarget(const std::string &path) {
    struct stat st;
    char resolved[PATH_MAX];
    if (lstat(path.c_str(), &st) == 0 && S_ISLNK(st.st_mode) && realpath(path.c_str(), resolved) != nullptr) {
        return resolved;
    }
    return path;
}

bool isBareName(const char *file) { return std::strchr(file, '/') == nullptr && std::strchr(file, '\\') == nullptr; }

// Where a profile name lives: a bare name in the configuration folder.
bool profilePath(const char *file, std::string *out) {
    if (file == nullptr || file[0] == '\0') return false;
    if (isBareName(file)) return configFile(file, out);
    *out = file;
    return true;
}

uint32_t copyCut(const char *src, size_t len, char *out, uint32_t size) {
    size_t n = len < size - 1 ? len : size - 1;
    std::memcpy(out, src, n);
    out[n] = '\0';
    return static_cast<uint32_t>(n);
}

struct ProfileWrite {
    const char *section, *key, *value;
};

bool applyProfileWrite(std::string *text, void *arg) {
    auto *w = static_cast<ProfileWrite *>(arg);
    setIniValue(text, IniMode::Profile, w->section, w->key, w->value);
    return true;
}

}  // namespace

IniLoad loadIniFile(const std::string &path, std::string *text) {
    text->clear();
    int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return errno == ENOENT ? IniLoad::Missing : IniLoad::Failed;
    struct stat st;
    IniLoad result = IniLoad::Failed;
    if (fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && static_cast<size_t>(st.st_size) <= kMaxIniFileBytes) {
        char buffer[8192];
        result = IniLoad::Ok;
        for (;;) {
            ssize_t n = read(fd, buffer, sizeof buffer);
            if (n < 0 && errno == EINTR) continue;
            if (n < 0) result = IniLoad::Failed;
            if (n <= 0) break;
            text->append(buffer, static_cast<size_t>(n));
            if (text->size() > kMaxIniFileBytes) {
                result = IniLoad::Failed;  // grew while being read
                break;
            }
        }
    }
    close(fd);
    if (result != IniLoad::Ok) text->clear();
    return result;
}

bool findIniValue(const std::string &text, IniMode mode, const char *section, const char *key,
                  std::string *value) {
    Line line;
    bool inside = false;
    for (size_t pos = 0; readLine(text, pos, &line); pos = line.next) {
        Parsed p = parseLine(text, line, mode);
        if (p.kind == Kind::Section) {
            if (inside) return false;
            inside = equalNoCase(p.name, section);
        } else if (inside && p.kind == Kind::Key && equalNoCase(p.name, key)) {
            value->assign(p.value.data(), p.value.size());
            return true;
        }
    }
    return false;
}

bool hasIniSection(const std::string &text, IniMode mode, const char *name, bool prefix) {
    std::string_view want(name);
    Line line;
    for (size_t pos = 0; readLine(text, pos, &line); pos = line.next) {
        Parsed p = parseLine(text, line, mode);
        if (p.kind != Kind::Section) continue;
        if (equalNoCase(p.name, want)) return true;
        if (prefix && p.name.size() > want.size() && p.name[want.size()] == '\\' &&
            equalNoCase(p.name.substr(0, want.size()), want)) {
            return true;
        }
    }
    return false;
}

void setIniValue(std::string *text, IniMode mode, const char *section, const char *key,
                 const std::string &value) {
    closeLastLine(text, mode);
    std::string eol = lineEndOf(*text);
    SectionSpan span;
    if (!findSection(*text, mode, section, &span)) {
        text->append("[").append(section).append("]").append(eol);
        if (key != nullptr) text->append(key).append("=").append(value).append(eol);
        return;
    }
    if (key == nullptr) return;
    Line line;
    bool inside = false;
    for (size_t pos = span.header; readLine(*text, pos, &line); pos = line.next) {
        Parsed p = parseLine(*text, line, mode);
        if (p.kind == Kind::Section && inside) break;
        inside = true;
        if (p.kind == Kind::Key && equalNoCase(p.name, key)) {
            // Keep the line up to the value as it was written; replace the rest.
            text->replace(p.valueAt, line.end - p.valueAt, value);
            return;
        }
    }
    text->insert(span.afterLastKey, std::string(key) + "=" + value + eol);
}

bool editIniFile(const std::string &path, IniMode mode, IniEdit edit, void *arg) {
    std::string target = writeTarget(path);
    FolderLock lock(parentFolder(target));
    std::string text;
    if (loadIniFile(target, &text) == IniLoad::Failed) return false;
    std::string before = text;
    if (!edit(&text, arg)) return false;
    if (text == before) return true;
    return replaceFile(target, text);
}

std::string parentFolder(const std::string &path) {
    size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool makeFolders(const std::string &folder) {
    struct stat st;
    if (stat(folder.c_str(), &st) == 0) return S_ISDIR(st.st_mode);
    std::string parent = parentFolder(folder);
    if (parent != folder && parent != "." && !makeFolders(parent)) return false;
    return mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST;
}

bool configFile(const char *name, std::string *out) {
    char folder[PATH_MAX];
    if (!platConfigFolder(folder, sizeof folder)) return false;
    *out = std::string(folder) + "/" + name;
    return true;
}

uint32_t platGetPrivateProfileString(const char *section, const char *key, const char *defaultText,
                                     char *out, uint32_t size, const char *file) {
    if (out == nullptr || size == 0) return 0;
    if (defaultText == nullptr) defaultText = "";
    try {
        std::string path, text, value;
        if (section != nullptr && key != nullptr && profilePath(file, &path) &&
            loadIniFile(path, &text) == IniLoad::Ok &&
            findIniValue(text, IniMode::Profile, section, key, &value)) {
            return copyCut(value.data(), value.size(), out, size);
        }
    } catch (const std::bad_alloc &) {
        // out of memory: the default, as for any read that fails
    }
    return copyCut(defaultText, std::strlen(defaultText), out, size);
}

bool platWritePrivateProfileString(const char *section, const char *key, const char *value,
                                   const char *file) {
    if (!profileWriteFits(section, key, value)) return false;
    try {
        std::string path;
        if (!profilePath(file, &path)) return false;
        if (isBareName(file) && !makeFolders(parentFolder(path))) return false;
        ProfileWrite w{section, key, value};
        return editIniFile(path, IniMode::Profile, applyProfileWrite, &w);
    } catch (const std::bad_alloc &) {
        return false;
    }
}

uint32_t platGetProfileString(const char *section, const char *key, const char *defaultText,
                              char *out, uint32_t size) {
    return platGetPrivateProfileString(section, key, defaultText, out, size, "WIN.INI");
}
