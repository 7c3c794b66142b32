// platform/win32/platform_win32.cpp — the OS layer over the Win32 API and the
// C runtime's file calls (the _lopen family keeps 16-bit-era semantics that the
// lexicon formats rely on: byte counts and 32-bit positions).
#include "platform/platform.h"
#include "platform/faults.h"

#include <windows.h>

#include <cstdio>
#include <io.h>
#include <sys/stat.h>
#include <ctime>


int32_t platOpenRead(const char *path) {
    if (path == nullptr) return -1;
    HFILE h = _lopen(path, OF_READ | OF_SHARE_DENY_NONE);
    return h == HFILE_ERROR ? -1 : static_cast<int32_t>(h);
}

int32_t platCreate(const char *path) {
    if (path == nullptr) return -1;
    if (createShouldFail()) return -1;
    HFILE h = _lcreat(path, 0);
    return h == HFILE_ERROR ? -1 : static_cast<int32_t>(h);
}

int32_t platRead(int32_t handle, void *buffer, uint32_t count) {
    UINT n = _lread(static_cast<HFILE>(handle), buffer, count);
    return n == static_cast<UINT>(HFILE_ERROR) ? -1 : static_cast<int32_t>(n);
}

int32_t platWrite(int32_t handle, const void *buffer, uint32_t count) {
    if (writeShouldFail()) return 0;
    UINT n = _lwrite(static_cast<HFILE>(handle), static_cast<LPCCH>(buffer), count);
    return n == static_cast<UINT>(HFILE_ERROR) ? -1 : static_cast<int32_t>(n);
}

int32_t platSeek(int32_t handle, int32_t offset, int origin) {
    if (origin < 0 || origin > 2) return -1;
    LONG pos = _llseek(static_cast<HFILE>(handle), offset, origin);
    return pos == HFILE_ERROR ? -1 : static_cast<int32_t>(pos);
}

void platClose(int32_t handle) {
    if (handle >= 0) _lclose(static_cast<HFILE>(handle));
}

int32_t platFileTime(const char *path) {
    struct _stat st;
    if (path == nullptr || _stat(path, &st) != 0) return 0;
    return static_cast<int32_t>(st.st_mtime);
}

bool platFileExists(const char *path) {
    return path != nullptr && GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
}

int platRemove(const char *path) { return std::remove(path); }
int platRename(const char *from, const char *to) { return std::rename(from, to); }

char platPathSeparator() { return '\\'; }

void platLocalTime(PlatTime *out) {
    SYSTEMTIME st;
    GetLocalTime(&st);
    out->year = st.wYear;
    out->month = st.wMonth;
    out->day = st.wDay;
    out->hour = st.wHour;
    out->minute = st.wMinute;
    out->second = st.wSecond;
    out->weekday = st.wDayOfWeek;
}

int32_t platNow() { return static_cast<int32_t>(std::time(nullptr)); }

bool platIsCharAlpha(unsigned char c) { return IsCharAlphaA(static_cast<CHAR>(c)) != 0; }
