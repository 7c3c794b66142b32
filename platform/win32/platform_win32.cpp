// platform/win32/platform_win32.cpp — the OS layer over the Win32 API.
//
// (1) Files go through the _lopen family (_lopen, _lcreat, _lread, _lwrite,
//     _llseek, _lclose): 32-bit positions and byte counts, handles that are
//     plain integers, and no C runtime buffering between a write and a seek.
// (2) _lwrite with a count of 0 truncates the file at the current position;
//     platWrite never passes 0 through, so an empty write stays a no-op as
//     it is on POSIX (the compressor seeks back to patch its header).
// (3) platRename replaces an existing target in one step (MoveFileExA), as
//     POSIX rename does, so a rewrite never leaves neither file behind.
// (4) moduleHandle is the DLL's HINSTANCE, stored by DllMain at load; null
//     in a program that links the engine statically, where
//     GetModuleFileNameA names the program.
#include "platform/platform.h"
#include "platform/faults.h"

#include <windows.h>

#include <cstdio>
#include <ctime>
#include <sys/stat.h>

namespace {
void *moduleHandle = nullptr;
}  // namespace

int32_t platOpenRead(const char *path) {
    if (path == nullptr) return -1;
    HFILE h = _lopen(path, OF_READ | OF_SHARE_DENY_NONE);
    return h == HFILE_ERROR ? -1 : static_cast<int32_t>(h);
}

int32_t platCreate(const char *path) {
    if (path == nullptr) return -1;
    if (createShouldFail()) return -1;
    HFILE h = _lcreat(path, 0);  // 0: normal attributes; opened for reading and writing
    return h == HFILE_ERROR ? -1 : static_cast<int32_t>(h);
}

int32_t platRead(int32_t handle, void *buffer, uint32_t count) {
    if (count == 0) return 0;
    UINT n = _lread(static_cast<HFILE>(handle), buffer, count);
    return n == static_cast<UINT>(HFILE_ERROR) ? -1 : static_cast<int32_t>(n);
}

int32_t platWrite(int32_t handle, const void *buffer, uint32_t count) {
    if (writeShouldFail()) return 0;
    if (count == 0) return 0;  // (2)
    UINT n = _lwrite(static_cast<HFILE>(handle), static_cast<LPCCH>(buffer), count);
    return n == static_cast<UINT>(HFILE_ERROR) ? -1 : static_cast<int32_t>(n);
}

int32_t platSeek(int32_t handle, int32_t offset, int origin) {
    if (origin < 0 || origin > 2) return -1;  // FILE_BEGIN, FILE_CURRENT, FILE_END
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

int platRemove(const char *path) { return path != nullptr ? std::remove(path) : -1; }

int platRename(const char *from, const char *to) {  // (3)
    if (from == nullptr || to == nullptr) return -1;
    return MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING) ? 0 : -1;
}

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

void platSetModuleHandle(void *module) { moduleHandle = module; }

void *platModuleHandle() { return moduleHandle; }

uint32_t platModuleFileName(char *out, uint32_t size) {
    if (out == nullptr || size == 0) return 0;
    // A name that does not fit comes back cut to size - 1 characters; older
    // systems then leave it unterminated, so terminate it here.
    DWORD n = GetModuleFileNameA(static_cast<HMODULE>(moduleHandle), out, size);
    if (n >= size) n = size - 1;
    out[n] = '\0';
    return n;
}

uint32_t platVersion() { return GetVersion(); }

uint32_t platProcessId() { return GetCurrentProcessId(); }
