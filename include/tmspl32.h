/* tmspl32.h — the dictionary library's exported interface.
 *
 * A host opens a handle over a folder of dictionary files (DictOpen), checks
 * words one at a time (DictCheckWord), walks the suggestions for the last
 * rejected word (DictGetNextSug), adds words to the user's word list
 * (DictAddWord), and closes the handle (DictClose), which saves that list.
 * Each handle takes one of the engine's 16 sessions.
 */
#ifndef TMSPL32_H
#define TMSPL32_H

#include <stdint.h>

/* Linkage and calling convention of the five functions. DICT_API marks what
 * the shared library exports (on Windows a .def file names the exports, so it
 * is empty there and a host may define it as __declspec(dllimport));
 * DICT_CALL is WINAPI (__stdcall) on Windows, as 32-bit hosts expect, and
 * empty elsewhere. */
#ifndef DICT_API
#if defined(_WIN32)
#define DICT_API
#elif defined(__GNUC__)
#define DICT_API __attribute__((visibility("default")))
#else
#define DICT_API
#endif
#endif
#ifndef DICT_CALL
#ifdef _WIN32
#define DICT_CALL __stdcall
#else
#define DICT_CALL
#endif
#endif

/* The functions never throw; C++ callers see that in the type. */
#ifdef __cplusplus
#define DICT_NOTHROW noexcept
#else
#define DICT_NOTHROW
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Byte offsets of the fields the library reads from the host's record. */
#define DICT_PARAMS_MAIN_LEX_NAME 88   /* zero-terminated, at most 19 characters */
#define DICT_PARAMS_LANGUAGE      108  /* 16-bit little-endian language id */
#define DICT_PARAMS_USER_LIST     154  /* zero-terminated user word list name */

typedef struct DictHandle DictHandle;

DICT_API DictHandle *DICT_CALL DictOpen(const char *folderPath, const void *params, int32_t unused) DICT_NOTHROW;
DICT_API int32_t DICT_CALL DictClose(DictHandle *handle) DICT_NOTHROW;
DICT_API int32_t DICT_CALL DictCheckWord(DictHandle *handle, const char *word) DICT_NOTHROW;
DICT_API int32_t DICT_CALL DictGetNextSug(DictHandle *handle, char *buffer) DICT_NOTHROW;
DICT_API int32_t DICT_CALL DictAddWord(DictHandle *handle, const char *word) DICT_NOTHROW;

/* Not exported: removes a word from the handle's user word list. */
int16_t DictDeleteWord(DictHandle *handle, const char *word) DICT_NOTHROW;

#ifdef __cplusplus
}
#endif

#endif /* TMSPL32_H */
