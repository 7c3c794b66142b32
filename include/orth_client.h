/* orth_client.h — the client-level interface: dialog-level spelling service
 * for a host program.
 *
 * A host never opens sessions or lexicons itself here. The first call that
 * needs them opens the client context from the settings store: one engine
 * session, three temporary lexicons (what Ignore All, Change and Change All
 * teach it), the user and main lexicons named by the settings, and the
 * session options stored there. The context stays open until ClientTerm, a
 * setter below, or the library's unload closes it; closing writes the
 * session's options back to the settings.
 *
 * Settings live in an INI file (sections "ORTH" for the machine, "ORTH User"
 * for the user) or in the registry under "Software\Tamarind\ORTH"; on Linux
 * the INI file is used unless ORTH_SETTINGS=registry, on Windows the registry
 * on every NT version (see the README).
 *
 * Results are the codes of orth.h; ORTH_BUSY_ERR (-25) while a dialog call is
 * running, ORTH_CANCEL_ERR (-17) when the user cancels a dialog. A null text
 * argument counts as an empty text. Not thread-safe: one thread at a time,
 * the one that runs the host's user interface.
 */
#ifndef ORTH_CLIENT_H
#define ORTH_CLIENT_H

#include <stdint.h>

#include "orth.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A window or edit control of the host: an HWND on Windows, and on Linux
 * whatever the installed front end understands. */
typedef void *OrthWindow;

/* The client context. */
ORTH_API int16_t ORTH_CALL OpenORTH(void) ORTH_NOTHROW;
/* Closes the context when the calling process is the one that opened it. */
ORTH_API void ORTH_CALL ClientTerm(void) ORTH_NOTHROW;
/* The client session's id, or the code that opening the context gave. */
ORTH_API int16_t ORTH_CALL ORTH_GetSid(void) ORTH_NOTHROW;
/* The lexicon id of a lexicon named in the settings (full name, or the file
 * name after its last separator); ORTH_FILE_NOT_FOUND_ERR when none. */
ORTH_API int16_t ORTH_CALL ORTH_GetLexId(const char *fileName) ORTH_NOTHROW;
/* Forgets every Ignore All, Change and Change All choice. */
ORTH_API int16_t ORTH_CALL ORTH_ClearTempLex(void) ORTH_NOTHROW;
/* Words checked, words changed and errors found by the last dialog check;
 * each pointer may be null. */
ORTH_API void ORTH_CALL ORTH_GetStatistics(uint32_t *wordsChecked, uint32_t *wordsChanged,
                                          uint32_t *errorsFound) ORTH_NOTHROW;
/* Where the Check Spelling dialog opens from now on (screen coordinates). */
ORTH_API void ORTH_CALL ORTH_SetDialogOrigin(int16_t x, int16_t y) ORTH_NOTHROW;

/* Dialogs. ORTH_CheckBlockDlg checks text[0..length) in place within a
 * buffer of size bytes and returns the new length or a negative code;
 * ORTH_CheckCtrlDlg checks an edit control (with selectionOnly and a
 * non-empty selection, only the selection; positions are 16-bit), and
 * refuses a null control with ORTH_UNSUPPORTED_ACTION_ERR. */
ORTH_API int32_t ORTH_CALL ORTH_CheckBlockDlg(OrthWindow owner, char *text, uint32_t length,
                                             uint32_t size) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_CheckCtrlDlg(OrthWindow owner, OrthWindow editCtrl,
                                            int16_t selectionOnly) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_EditLexDlg(OrthWindow owner) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_OptionsDlg(OrthWindow owner) ORTH_NOTHROW;

/* Where the settings live. Each closes the client context first, so that the
 * options it writes back land in the old store; at most 259 characters kept. */
ORTH_API int16_t ORTH_CALL ORTH_SetIniFile(const char *path) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_SetRegTreeName(const char *keyPath) ORTH_NOTHROW;
/* Copies at most size - 1 characters of the key path and a zero. */
ORTH_API int16_t ORTH_CALL ORTH_GetRegTreeName(char *buffer, uint16_t size) ORTH_NOTHROW;

/* Lexicon and help settings: each setter writes its key, then closes the
 * client context so that the next call reopens it from the new settings.
 * Lists are comma-separated, without blanks around the commas. */
ORTH_API int16_t ORTH_CALL ORTH_SetMainLexPath(const char *folder) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_SetMainLexFiles(const char *list) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_SetUserLexPath(const char *folder) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_SetUserLexFiles(const char *list) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_SetHelpFile(const char *path) ORTH_NOTHROW;
/* Getters fill the buffer (empty when unset); ORTH_BUFFER_TOO_SMALL_ERR
 * for a null buffer or a size of 0. */
ORTH_API int16_t ORTH_CALL ORTH_GetMainLexPath(char *buffer, uint16_t size) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_GetMainLexFiles(char *buffer, uint16_t size) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_GetUserLexPath(char *buffer, uint16_t size) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_GetUserLexFiles(char *buffer, uint16_t size) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_GetHelpFile(char *buffer, uint16_t size) ORTH_NOTHROW;

/* Whether the Check Spelling dialog shows suggestions at once. Not guarded
 * by the busy state; the getter returns the stored flag's low 16 bits. */
ORTH_API int16_t ORTH_CALL ORTH_SetAlwaysSuggest(int16_t flag) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_GetAlwaysSuggest(void) ORTH_NOTHROW;

#ifdef __cplusplus
}
#endif

#endif /* ORTH_CLIENT_H */
