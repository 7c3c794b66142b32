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

#ifndef _WIN32
// The interactive terminal (POSIX builds only): a raw keyboard on standard
// input, output to standard output. Raw mode keeps the signal keys, so Ctrl-C
// still interrupts. Once entered, the mode is restored on every way out:
// platTermLeave, a normal exit, SIGINT, SIGTERM, SIGHUP, SIGQUIT and the crash
// signals (restored, then the signal is raised again with its default
// action); a stop (Ctrl-Z) restores it and SIGCONT enters it again.
bool platTermIsTerminal(int fd);    // 0 standard input, 1 standard output
// Enters raw mode and writes `enter`; `leave` (at most 63 bytes) is written
// whenever the mode is restored. 0, or -1 when standard input is no terminal
// or its mode cannot be set.
int platTermEnter(const char *enter, const char *leave);
void platTermLeave();               // restores; harmless when not entered
void platTermSize(int *columns, int *rows);  // 80 by 24 when unknown
// One byte of input within timeoutMs (-1: wait), or one of these:
constexpr int kTermTimeout = -1;
constexpr int kTermClosed = -2;     // end of input or a read error
constexpr int kTermInterrupted = -3;  // a signal arrived (resize, continue)
int platTermRead(int timeoutMs);
bool platTermWrite(const char *bytes, uint32_t count);
// Whether the window changed size or the program was continued after a
// stop since the last call: the screen must be drawn again.
bool platTermRedrawPending();
#endif

#ifdef ORTH_FAULT_SEAMS
// Let the next n writes succeed, then fail every write (short write of 0)
// until platClearFaults. n = 0 fails the very next write.
void platFailWritesAfter(int n);
// Fail the next n creates or opens for writing.
void platFailCreates(int n);
void platClearFaults();
#endif
