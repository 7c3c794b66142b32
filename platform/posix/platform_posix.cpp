// platform/posix/platform_posix.cpp — the OS layer over POSIX calls.
#include "platform/platform.h"
#include "platform/faults.h"

#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
void *moduleHandle = nullptr;  // stored for the interface's sake; POSIX has no use for it
}  // namespace

int32_t platOpenRead(const char *path) {
    if (path == nullptr) return -1;
    int fd = open(path, O_RDONLY | O_CLOEXEC);
    return fd < 0 ? -1 : fd;
}

int32_t platCreate(const char *path) {
    if (path == nullptr) return -1;
    if (createShouldFail()) return -1;
    int fd = open(path, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    return fd < 0 ? -1 : fd;
}

int32_t platRead(int32_t handle, void *buffer, uint32_t count) {
    uint32_t done = 0;
    auto *p = static_cast<unsigned char *>(buffer);
    while (done < count) {
        ssize_t n = read(handle, p + done, count - done);
        if (n < 0) return done > 0 ? static_cast<int32_t>(done) : -1;
        if (n == 0) break;
        done += static_cast<uint32_t>(n);
    }
    return static_cast<int32_t>(done);
}

int32_t platWrite(int32_t handle, const void *buffer, uint32_t count) {
    if (writeShouldFail()) return 0;
    uint32_t done = 0;
    auto *p = static_cast<const unsigned char *>(buffer);
    while (done < count) {
        ssize_t n = write(handle, p + done, count - done);
        if (n <= 0) return done > 0 ? static_cast<int32_t>(done) : -1;
        done += static_cast<uint32_t>(n);
    }
    return static_cast<int32_t>(done);
}

int32_t platSeek(int32_t handle, int32_t offset, int origin) {
    int whence = origin == 0 ? SEEK_SET : origin == 1 ? SEEK_CUR : origin == 2 ? SEEK_END : -1;
    if (whence < 0) return -1;
    off_t pos = lseek(handle, offset, whence);
    if (pos < 0 || pos > INT32_MAX) return -1;
    return static_cast<int32_t>(pos);
}

void platClose(int32_t handle) {
    if (handle >= 0) close(handle);
}

int32_t platFileTime(const char *path) {
    struct stat st;
    if (path == nullptr || stat(path, &st) != 0) return 0;
    return static_cast<int32_t>(st.st_mtime);
}

bool platFileExists(const char *path) {
    struct stat st;
    return path != nullptr && stat(path, &st) == 0;
}

int platRemove(const char *path) { return path != nullptr ? std::remove(path) : -1; }
int platRename(const char *from, const char *to) {
    return from != nullptr && to != nullptr ? std::rename(from, to) : -1;
}

char platPathSeparator() { return '/'; }

void platLocalTime(PlatTime *out) {
    time_t now = time(nullptr);
    struct tm tmv;
    localtime_r(&now, &tmv);
    out->year = tmv.tm_year + 1900;
    out->month = tmv.tm_mon + 1;
    out->day = tmv.tm_mday;
    out->hour = tmv.tm_hour;
    out->minute = tmv.tm_min;
    out->second = tmv.tm_sec;
    out->weekday = tmv.tm_wday;
}

int32_t platNow() { return static_cast<int32_t>(time(nullptr)); }

// Letters of ISO 8859-1 (code page 1252 on Windows): ASCII letters, the
// Latin-1 letters from 0xC0 except the multiplication and division signs,
// and the 1252 letters in 0x80-0x9F (Š, Œ, Ž, š, œ, ž, Ÿ) plus ª, µ, º.
bool platIsCharAlpha(unsigned char c) {
    if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) return true;
    if (c >= 0xC0) return c != 0xD7 && c != 0xF7;
    switch (c) {
    case 0x83: case 0x8A: case 0x8C: case 0x8E: case 0x9A: case 0x9C: case 0x9E: case 0x9F:
    case 0xAA: case 0xB5: case 0xBA:
        return true;
    default:
        return false;
    }
}

void platSetModuleHandle(void *module) { moduleHandle = module; }

void *platModuleHandle() { return moduleHandle; }

// The version word selects the settings back end (settings.h): a non-NT
// 3.10 selects the INI file; ORTH_SETTINGS=registry reports NT 10.0, which
// selects the registry.
uint32_t platVersion() {
    const char *choice = std::getenv("ORTH_SETTINGS");
    if (choice != nullptr && std::strcmp(choice, "registry") == 0) return 0x0000000Au;
    return 0x80000A03u;
}

// The object that holds this code: a shared library has its own name in the
// link map; the main program's entry is empty, and /proc names it.
uint32_t platModuleFileName(char *out, uint32_t size) {
    if (out == nullptr || size == 0) return 0;
    char path[PATH_MAX];
    const char *name = nullptr;
    Dl_info info;
    struct link_map *map = nullptr;
    if (dladdr1(reinterpret_cast<void *>(&platModuleFileName), &info, reinterpret_cast<void **>(&map),
                RTLD_DL_LINKMAP) != 0 &&
        map != nullptr && map->l_name != nullptr && map->l_name[0] != '\0') {
        name = realpath(map->l_name, path) != nullptr ? path : map->l_name;
    } else {
        ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
        if (n > 0) {
            path[n] = '\0';
            name = path;
        }
    }
    if (name == nullptr) {
        out[0] = '\0';
        return 0;
    }
    size_t len = std::strlen(name);
    if (len > size - 1) len = size - 1;
    std::memcpy(out, name, len);
    out[len] = '\0';
    return static_cast<uint32_t>(len);
}

uint32_t platProcessId() { return static_cast<uint32_t>(getpid()); }

// $XDG_CONFIG_HOME/orth when that is an absolute path, else $HOME/.config/orth.
bool platConfigFolder(char *out, uint32_t size) {
    if (out == nullptr || size == 0) return false;
    const char *xdg = std::getenv("XDG_CONFIG_HOME");
    const char *home = std::getenv("HOME");
    int n;
    if (xdg != nullptr && xdg[0] == '/') n = std::snprintf(out, size, "%s/orth", xdg);
    else if (home != nullptr && home[0] != '\0') n = std::snprintf(out, size, "%s/.config/orth", home);
    else n = -1;
    if (n < 0 || static_cast<uint32_t>(n) >= size) {
        out[0] = '\0';
        return false;
    }
    return true;
}
