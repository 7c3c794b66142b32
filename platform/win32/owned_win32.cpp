// platform/win32/owned_win32.cpp — the primitives of owned files over Win32:
// a LockFileEx lock on one byte far beyond any data (so readers of the file
// are never blocked by it), volume serial and file index for a file's
// identity, and MoveFileExA for replacing a file in one step.
#include "platform/owned_int.h"

#include "platform/platform.h"

#include <windows.h>

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kLockOffsetHigh = 0x7FFFFFFF;  // the lock byte lies far past any data
constexpr int kReplaceTries = 50;              // sharing violations from readers pass quickly
constexpr DWORD kReplacePauseMs = 20;

HANDLE toHandle(int32_t handle) { return reinterpret_cast<HANDLE>(static_cast<intptr_t>(handle)); }

bool fileIndexOf(HANDLE h, BY_HANDLE_FILE_INFORMATION *info) {
    return GetFileInformationByHandle(h, info) != 0;
}

}  // namespace

int32_t ownedOpen(const char *path) {
    HANDLE h = CreateFileA(path, GENERIC_READ | GENERIC_WRITE, kShareAll, nullptr, OPEN_ALWAYS,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) return -1;
    return static_cast<int32_t>(reinterpret_cast<intptr_t>(h));
}

int ownedTryLock(int32_t handle) {
    OVERLAPPED at = {};
    at.OffsetHigh = kLockOffsetHigh;
    if (LockFileEx(toHandle(handle), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &at))
        return 0;
    DWORD err = GetLastError();
    if (err == ERROR_LOCK_VIOLATION || err == ERROR_IO_PENDING) return 1;
    if (err == ERROR_NOT_SUPPORTED || err == ERROR_INVALID_FUNCTION) return 0;
    return -1;
}

void ownedUnlock(int32_t handle) {
    OVERLAPPED at = {};
    at.OffsetHigh = kLockOffsetHigh;
    UnlockFileEx(toHandle(handle), 0, 1, 0, &at);
}

bool ownedIsFileAt(int32_t handle, const char *path) {
    HANDLE named = CreateFileA(path, FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                               FILE_ATTRIBUTE_NORMAL, nullptr);
    if (named == INVALID_HANDLE_VALUE) return false;
    BY_HANDLE_FILE_INFORMATION a, b;
    bool same = fileIndexOf(toHandle(handle), &a) && fileIndexOf(named, &b) &&
                a.dwVolumeSerialNumber == b.dwVolumeSerialNumber &&
                a.nFileIndexHigh == b.nFileIndexHigh && a.nFileIndexLow == b.nFileIndexLow;
    CloseHandle(named);
    return same;
}

bool ownedEmpty(int32_t handle) {
    HANDLE h = toHandle(handle);
    return SetFilePointer(h, 0, nullptr, FILE_BEGIN) != INVALID_SET_FILE_POINTER && SetEndOfFile(h);
}

void ownedSleepMs(uint32_t ms) { Sleep(ms); }

uint32_t ownedTickMs() { return GetTickCount(); }

// A reader that has the target open without delete sharing makes the move
// fail for a moment; it is tried again rather than deleting the target.
int platReplace(const char *from, const char *to) {
    for (int i = 0; i < kReplaceTries; ++i) {
        if (MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) return 0;
        DWORD err = GetLastError();
        if (err != ERROR_SHARING_VIOLATION && err != ERROR_ACCESS_DENIED && err != ERROR_LOCK_VIOLATION)
            return -1;
        Sleep(kReplacePauseMs);
    }
    return -1;
}
