// platform/platform.h — the operating-system layer. Everything the engine asks
// of the OS goes through here: files by handle, file times, delete and rename,
// the local clock, the user-language letter test and the path separator.
// platform/posix/ implements it over POSIX calls, platform/win32/ over Win32.
//
// Test builds (ORTH_FAULT_SEAMS) can make writes fail, so that tests walk a
// failure through every write of a save.
#pragma once

#include <cstdint>

// Files. A handle is a signed 32-bit value; -1 means failure.
int32_t platOpenRead(const char *path);                 // existing file, read only
int32_t platCreate(const char *path);                   // create or empty, read and write
int32_t platRead(int32_t handle, void *buffer, uint32_t count);         // bytes read, -1 on failure
int32_t platWrite(int32_t handle, const void *buffer, uint32_t count);  // bytes written, -1 on failure
int32_t platSeek(int32_t handle, int32_t offset, int origin);  // new position, or -1
void platClose(int32_t handle);
int32_t platFileTime(const char *path);                 // modification time, 0 when unknown
bool platFileExists(const char *path);
int platRemove(const char *path);                       // 0 on success
int platRename(const char *from, const char *to);       // 0 on success

// The native path separator, used where the engine joins a folder and a name.
char platPathSeparator();

// Local time of day and date.
struct PlatTime {
    int year, month, day;        // month 1 to 12
    int hour, minute, second;
    int weekday;                 // 0 Sunday to 6 Saturday
};
void platLocalTime(PlatTime *out);
int32_t platNow();              // seconds since 1970

// 24-character English date text, "Wed Nov 18 21:28:35 2026", and a zero.
void platDateText(const PlatTime &t, char out[25]);

// Whether a byte is a letter in the user's language (Windows' IsCharAlphaA).
bool platIsCharAlpha(unsigned char c);

// Writers that share one file name. Several processes may save into the
// same folder at once, all through the same temporary file name; a writer
// owns that file while it holds an exclusive lock on it (flock on POSIX,
// LockFileEx on Windows; the system drops the lock of a killed process).
// platOpenOwned opens or creates path without emptying it, waits up to
// waitMs for the lock, makes sure the locked file is still the one named
// path (another writer may have renamed it away meanwhile; then it starts
// over) and only then empties it: a handle at position 0, or
// kPlatOwnedFailed when the file can't be opened or created, or
// kPlatOwnedBusy when another writer still held it after waitMs.
// platCloseOwned unlocks and closes. Other processes can read the file while
// it is owned; owners exclude only each other.
constexpr int32_t kPlatOwnedFailed = -1;
constexpr int32_t kPlatOwnedBusy = -2;
int32_t platOpenOwned(const char *path, uint32_t waitMs);
void platCloseOwned(int32_t handle);
// Puts the file from in the place of to in one step, replacing it: a reader
// of to sees the old or the new file, never none. 0, or -1 with both files
// as they were (to is never deleted first).
int platReplace(const char *from, const char *to);
// The size and a 64-bit checksum of an open file's bytes from its start,
// read in pieces; the position is left at the end. False on a read error.
bool platFileSum(int32_t handle, uint64_t *sum, uint32_t *size);

#ifdef ORTH_FAULT_SEAMS
// Let the next n writes succeed, then fail every write (short write of 0)
// until platClearFaults. n = 0 fails the very next write.
void platFailWritesAfter(int n);
// Fail the next n creates or opens for writing.
void platFailCreates(int n);
void platClearFaults();
// Cap every wait of platOpenOwned at ms (until platClearFaults), so that a
// test of a writer that gives up need not wait the full time.
void platCapOwnedWait(uint32_t ms);
#endif
