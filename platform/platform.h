// platform/platform.h — the operating-system layer. Everything the engine asks
// of the OS goes through here: files by handle, file times, delete and rename,
// the local clock, the user-language letter test, the path separator and the
// library's own module and file name.
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
int platRename(const char *from, const char *to);       // 0 on success; replaces an existing target

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

// The library's own module. A Windows DLL stores its module handle here when
// it loads (DllMain); a program that links the engine statically stores
// nothing, and the handle stays null.
void platSetModuleHandle(void *module);
void *platModuleHandle();
// The full path of the file the engine was loaded from: the DLL (or shared
// library) holding it, else the program. Its length; 0, with buffer emptied,
// when it cannot be had or does not fit in size - 1 characters.
uint32_t platModuleFileName(char *buffer, uint32_t size);

#ifdef ORTH_FAULT_SEAMS
// Let the next n writes succeed, then fail every write (short write of 0)
// until platClearFaults. n = 0 fails the very next write.
void platFailWritesAfter(int n);
// Fail the next n creates or opens for writing.
void platFailCreates(int n);
void platClearFaults();
#endif
