// platform/platform.h — the operating-system layer. Everything the engine asks
// of the OS goes through here: files by handle, file times, delete and rename,
// the local clock, the user-language letter test, the path separator, the
// library's own module and file name, and the locks that let writers in
// several processes share a file name.
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

// The library's own module. A Windows DLL stores its module handle here when
// it loads (DllMain); a program that links the engine statically stores
// nothing, and the handle stays null. platModuleFileName (below) names it.
void platSetModuleHandle(void *module);
void *platModuleHandle();

// The host-integration layer's view of the system. Each call below maps one
// to one onto a Windows call (named in its comment), which platform/win32/
// makes; platform/posix/ realises the profile files and the registry as text
// files, see inifile.h there. Both refuse the same profile writes
// (profilename.h).

// Profile (INI) files: keys in [sections], section and key names matched
// without regard to ASCII case. A bare file name (no '/' or '\\') lives in the
// configuration folder. GetPrivateProfileStringA: copies the value (blanks
// around it and one pair of enclosing quotes removed), or the default when it
// cannot be read, cut to size - 1 characters and a zero; returns the count.
uint32_t platGetPrivateProfileString(const char *section, const char *key, const char *defaultText,
                                     char *out, uint32_t size, const char *file);
// WritePrivateProfileStringA: sets key=value in the section, keeping every
// other line of the file byte for byte; the file is replaced through a
// temporary file in its own folder and a rename. false when nothing was
// written (the file is then as it was).
bool platWritePrivateProfileString(const char *section, const char *key, const char *value,
                                   const char *file);
// GetProfileStringA: the system profile, WIN.INI, as platGetPrivateProfileString.
uint32_t platGetProfileString(const char *section, const char *key, const char *defaultText,
                              char *out, uint32_t size);

// The registry: keys named by backslash paths under two roots, holding typed
// values. Results are Windows error numbers: 0 success, else one of these.
typedef void *PlatRegKey;
enum PlatRegRoot { kPlatRegCurrentUser, kPlatRegLocalMachine };  // HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE
constexpr uint32_t kPlatRegSz = 1;          // REG_SZ: text and its zero byte
constexpr uint32_t kPlatRegDword = 4;       // REG_DWORD: 4 bytes, unsigned
constexpr uint32_t kPlatRegRead = 0x20019;  // KEY_READ
constexpr uint32_t kPlatRegAllAccess = 0xF003F;  // KEY_ALL_ACCESS
constexpr int32_t kPlatRegNotFound = 2;     // ERROR_FILE_NOT_FOUND: no such key or value
constexpr int32_t kPlatRegAccessDenied = 5; // ERROR_ACCESS_DENIED
constexpr int32_t kPlatRegWriteFault = 29;  // ERROR_WRITE_FAULT: the store could not be written
constexpr int32_t kPlatRegBadParam = 87;    // ERROR_INVALID_PARAMETER
constexpr int32_t kPlatRegMoreData = 234;   // ERROR_MORE_DATA: the value is larger than the buffer
constexpr int32_t kPlatRegBadFile = 1009;   // ERROR_BADDB: the stored value is damaged
// RegOpenKeyExA: an existing key.
int32_t platRegOpenKey(PlatRegRoot root, const char *path, uint32_t access, PlatRegKey *key);
// RegCreateKeyExA (empty class, no options, all access): creates the key if needed.
int32_t platRegCreateKey(PlatRegRoot root, const char *path, PlatRegKey *key);
// RegQueryValueExA: type and data of a value. *size holds the capacity and
// receives the value's size; a value larger than the capacity gives
// kPlatRegMoreData and leaves nothing usable in data (POSIX copies nothing,
// Windows leaves it undefined). type, data (and then size) may be null.
int32_t platRegQueryValue(PlatRegKey key, const char *name, uint32_t *type, void *data, uint32_t *size);
// RegSetValueExA: writes a kPlatRegSz or a 4-byte kPlatRegDword value;
// any other type or size is refused with kPlatRegBadParam.
int32_t platRegSetValue(PlatRegKey key, const char *name, uint32_t type, const void *data, uint32_t size);
// RegCloseKey.
void platRegCloseKey(PlatRegKey key);

// GetVersion: major version in the low byte, minor in the next, the top bit
// set on the non-NT family.
uint32_t platVersion();
// GetModuleFileNameA for the library's own module: the full path of the
// loaded library, or of the program it is linked into. Returns the length
// copied (cut to size - 1), 0 when unknown.
uint32_t platModuleFileName(char *out, uint32_t size);
// GetCurrentProcessId.
uint32_t platProcessId();
// The folder of the system profile, of bare profile names and of the user's
// registry (on POSIX $XDG_CONFIG_HOME/orth, else $HOME/.config/orth; on
// Windows the Windows folder, which holds WIN.INI). false when it cannot be
// named or does not fit.
bool platConfigFolder(char *out, uint32_t size);

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
// Cap every wait of platOpenOwned at ms (until platClearFaults), so that a
// test of a writer that gives up need not wait the full time.
void platCapOwnedWait(uint32_t ms);
#endif
