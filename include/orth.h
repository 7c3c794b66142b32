/* orth.h — the engine's function-level interface.
 *
 * Everything happens inside a numbered session (0 to 15). A session holds its
 * option mask, character set and language, up to 16 lexicons (ids 0 to 15,
 * consulted in id order), up to 4 text blocks and at most one compressor run.
 * Every function takes the session id first and validates it; failures are
 * negative result codes, and the reason goes to the diagnostic log.
 *
 * Text is 8-bit and zero-terminated; words are at most 63 characters.
 * The functions are not thread-safe: one thread at a time.
 */
#ifndef ORTH_H
#define ORTH_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Engine version reported by ORTH_Version. */
#define ORTH_VERSION_MAJOR 4
#define ORTH_VERSION_MINOR 21

/* Result codes: 0 success, negative failure. */
#define ORTH_OK                         0
#define ORTH_TOO_MANY_SESSIONS_ERR    (-1)
#define ORTH_BAD_SESSION_ID_ERR       (-2)
#define ORTH_WORD_NOT_FOUND_ERR       (-3)
#define ORTH_FILE_NOT_FOUND_ERR       (-4)
#define ORTH_TOO_MANY_LEXICONS_ERR    (-5)
#define ORTH_UNKNOWN_LEXICON_TYPE_ERR (-6)
#define ORTH_BAD_LEXICON_ID_ERR       (-7)
#define ORTH_BUFFER_TOO_SMALL_ERR     (-8)
#define ORTH_READ_ONLY_LEXICON_ERR    (-9)
#define ORTH_TWO_WORDS_REQUIRED_ERR   (-10)
#define ORTH_ONE_WORD_REQUIRED_ERR    (-11)
#define ORTH_OUT_OF_MEMORY_ERR        (-12)
#define ORTH_UNSUPPORTED_ACTION_ERR   (-13)
#define ORTH_LEXICON_EXISTS_ERR       (-14)
#define ORTH_TOO_MANY_BLOCKS_ERR      (-15)
#define ORTH_BAD_BLOCK_ID_ERR         (-16)
#define ORTH_CANCEL_ERR               (-17)
#define ORTH_INVALID_WORD_ERR         (-19)
#define ORTH_WORD_ORDER_ERR           (-20)
#define ORTH_TOO_MANY_SMALL_WORDS_ERR (-21)
#define ORTH_FILE_READ_ERR            (-22)
#define ORTH_FILE_WRITE_ERR           (-23)
#define ORTH_FILE_OPEN_ERR            (-24)
#define ORTH_BUSY_ERR                 (-25)

/* On/off options: one bit each of the session's option mask. */
#define ORTH_IGNORE_CAPPED_WORDS_OPT    0x1u
#define ORTH_IGNORE_MIXED_CASE_OPT      0x2u
#define ORTH_IGNORE_MIXED_DIGITS_OPT    0x4u
#define ORTH_IGNORE_ALL_CAPS_WORDS_OPT  0x8u
#define ORTH_REPORT_UNCAPPED_WORDS_OPT  0x10u
#define ORTH_REPORT_MIXED_CASE_OPT      0x20u
#define ORTH_REPORT_MIXED_DIGITS_OPT    0x40u
#define ORTH_REPORT_SPELLING_OPT        0x80u
#define ORTH_REPORT_DOUBLED_WORDS_OPT   0x100u
#define ORTH_CASE_SENSITIVE_OPT         0x200u
#define ORTH_SPLIT_HYPHENATED_WORDS_OPT 0x400u
#define ORTH_SPLIT_CONTRACTED_WORDS_OPT 0x800u
#define ORTH_SPLIT_WORDS_OPT            0x1000u
#define ORTH_SUGGEST_SPLIT_WORDS_OPT    0x2000u
#define ORTH_SUGGEST_PHONETIC_OPT       0x4000u
#define ORTH_SUGGEST_TYPOGRAPHICAL_OPT  0x8000u
#define ORTH_STRIP_POSSESSIVES_OPT      0x10000u
#define ORTH_MATCH_CASE_OPT             0x20000u

/* The two numeric options. */
#define ORTH_CHARSET_OPT                0x80000001u
#define ORTH_LANGUAGE_OPT               0x80000002u

/* Option mask of a new session. */
#define ORTH_DEFAULT_OPTIONS            0x38680u

/* Lexicon formats. */
#define ORTH_COMPRESSED_LEX_FORMAT 0
#define ORTH_TEXT_LEX_FORMAT       1

/* Lexicon types: what a word found in the lexicon means. */
#define ORTH_AUTO_CHANGE_LEX_TYPE        0
#define ORTH_IGNORE_LEX_TYPE             1
#define ORTH_CONDITIONAL_CHANGE_LEX_TYPE 2
#define ORTH_EXCLUDE_LEX_TYPE            3

/* Check-result flags (a non-negative check result is a set of these). */
#define ORTH_CHK_MISSPELLED          0x1
#define ORTH_CHK_AUTO_CHANGE         0x2
#define ORTH_CHK_CONDITIONAL_CHANGE  0x4
#define ORTH_CHK_UNCAPITALIZED       0x8
#define ORTH_CHK_MIXED_CASE          0x10
#define ORTH_CHK_NON_LETTERS         0x20
#define ORTH_CHK_END_OF_BLOCK        0x40
#define ORTH_CHK_DOUBLED_WORD        0x80

/* The functions never throw; C++ callers see that in the type. */
#ifdef __cplusplus
#define ORTH_NOTHROW noexcept
#else
#define ORTH_NOTHROW
#endif

/* Linkage and calling convention of every function of the C interface.
 * ORTH_API marks a function the shared library exports (on Windows a .def
 * file names the exports, so it is empty there); ORTH_CALL is WINAPI
 * (__stdcall) on Windows, as 32-bit hosts expect, and empty elsewhere. */
#ifndef ORTH_API
#if defined(_WIN32)
#define ORTH_API
#elif defined(__GNUC__)
#define ORTH_API __attribute__((visibility("default")))
#else
#define ORTH_API
#endif
#endif
#ifndef ORTH_CALL
#ifdef _WIN32
#define ORTH_CALL __stdcall
#else
#define ORTH_CALL
#endif
#endif

/* Sessions and results. */
ORTH_API int16_t ORTH_CALL ORTH_OpenSession(void) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_CloseSession(int16_t sessionId) ORTH_NOTHROW;
ORTH_API void ORTH_CALL ORTH_Version(uint16_t *major, uint16_t *minor) ORTH_NOTHROW;
/* Name of a result code ("Ok.", "ORTH_TOO_MANY_SESSIONS_ERR", ...); codes
 * outside 0 to -16 give "Unknown result code". Never null. */
ORTH_API const char *ORTH_CALL resultCodeName(int16_t rc) ORTH_NOTHROW;

/* Options. */
ORTH_API int32_t ORTH_CALL ORTH_SetOption(int16_t sessionId, uint32_t optionId, uint32_t value) ORTH_NOTHROW;
ORTH_API int32_t ORTH_CALL ORTH_GetOption(int16_t sessionId, uint32_t optionId) ORTH_NOTHROW;

/* Diagnostic log: a file name turns it on, null or "" turns it off. */
ORTH_API void ORTH_CALL ORTH_SetDebugFile(const char *fileName) ORTH_NOTHROW;

/* Lexicon registry. */
ORTH_API int16_t ORTH_CALL ORTH_OpenLex(int16_t sessionId, const char *fileName, uint32_t memoryBudget) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_CreateLex(int16_t sessionId, const char *fileName, int16_t type, uint16_t language) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_CloseLex(int16_t sessionId, int16_t lexId) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_AddToLex(int16_t sessionId, int16_t lexId, const char *word, const char *replacement) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_DelFromLex(int16_t sessionId, int16_t lexId, const char *word) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_ClearLex(int16_t sessionId, int16_t lexId) ORTH_NOTHROW;
ORTH_API int32_t ORTH_CALL ORTH_GetLex(int16_t sessionId, int16_t lexId, char *buffer, uint32_t size) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_GetLexInfo(int16_t sessionId, int16_t lexId, uint32_t *size, uint16_t *format,
                        uint16_t *type, uint16_t *language) ORTH_NOTHROW;

/* Compressor. Line numbers are 32-bit: word lists run to hundreds of
 * thousands of lines. */
ORTH_API int16_t ORTH_CALL ORTH_CompressLexInit(int16_t sessionId, const char *outputPath, const char *suffixPath,
                             uint16_t language, uint16_t charSet, uint32_t *lineNumber) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_CompressLexFile(int16_t sessionId, const char *wordFile, uint32_t *lineNumber) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_CompressLexEnd(int16_t sessionId) ORTH_NOTHROW;
ORTH_API void ORTH_CALL ORTH_CompressLexAbort(int16_t sessionId) ORTH_NOTHROW;

/* Checking and suggestions. */
ORTH_API int16_t ORTH_CALL ORTH_CheckWord(int16_t sessionId, uint32_t mask, const char *word, char *replacement,
                       uint16_t replacementSize) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_Suggest(int16_t sessionId, const char *word, int16_t depth, char *buffer,
                     int32_t size, int16_t *scores, uint16_t maxSuggestions) ORTH_NOTHROW;

/* Ranked suggestions, beside ORTH_Suggest: the words a few typing errors
 * away, best first by how people mistype and how common each word is, in
 * ORTH_Suggest's packed list shape with a score (0 to 100) per suggestion.
 * Change lexicons' replacements come first (99); excluded words are never
 * returned; at most 64 suggestions. A compressed lexicon is ranked with its
 * commonness file (MAIN.FRQ beside MAIN.CLX) when it has one; when that file
 * is damaged the call returns ORTH_Suggest's list instead. */
ORTH_API int16_t ORTH_CALL ORTH_SuggestRanked(int16_t sessionId, const char *word, char *buffer,
                     int32_t size, int16_t *scores, uint16_t maxSuggestions) ORTH_NOTHROW;
/* Builds the commonness file beside a compressed lexicon from a frequency
 * list: "word count" lines (blanks or a tab between; # comments). The line
 * of a bad entry is stored in lineNumber. */
ORTH_API int16_t ORTH_CALL ORTH_CompressLexFreq(int16_t sessionId, const char *lexPath, const char *listPath,
                     uint32_t *lineNumber) ORTH_NOTHROW;

/* An extension of ours: the session's own spelling of a word it
 * holds in another case (MySpace for MYSPACE). Every case form of every
 * lexicon is looked at, in slot order, and the first that ORTH_CheckWord
 * accepts as spelled is copied to form (with the word's possessive ending;
 * at most formSize - 1 bytes and a zero). ORTH_WORD_NOT_FOUND_ERR when none
 * is; unlike the case-insensitive lookup, no form is missed. */
ORTH_API int16_t ORTH_CALL ORTH_FindCaseForm(int16_t sessionId, const char *word, char *form,
                     uint16_t formSize) ORTH_NOTHROW;

/* Text blocks. */
ORTH_API int16_t ORTH_CALL ORTH_OpenBlock(int16_t sessionId, char *text, uint32_t length, uint32_t size,
                       uint16_t copy) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_CloseBlock(int16_t sessionId, int16_t blockId) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_CheckBlock(int16_t sessionId, int16_t blockId, uint32_t mask, char *word,
                        uint16_t wordSize, char *replacement, uint16_t replacementSize) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_NextBlockWord(int16_t sessionId, int16_t blockId) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_GetBlockWord(int16_t sessionId, int16_t blockId, char *buffer, uint16_t size) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_ReplaceBlockWord(int16_t sessionId, int16_t blockId, const char *newWord) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_DelBlockWord(int16_t sessionId, int16_t blockId) ORTH_NOTHROW;
ORTH_API int32_t ORTH_CALL ORTH_GetBlock(int16_t sessionId, int16_t blockId, char *buffer, uint32_t size) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_GetBlockInfo(int16_t sessionId, int16_t blockId, uint32_t *length, uint32_t *size,
                          uint32_t *cursor, uint32_t *wordCount) ORTH_NOTHROW;
ORTH_API int16_t ORTH_CALL ORTH_SetBlockCursor(int16_t sessionId, int16_t blockId, uint32_t cursor) ORTH_NOTHROW;

#ifdef __cplusplus
}
#endif

#endif /* ORTH_H */
