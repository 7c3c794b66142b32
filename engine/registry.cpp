// engine/registry.cpp — the per-session table of 16 lexicon slots and the
// ORTH_ functions that open, create, close, change and describe lexicons.
// The registry validates ids, enforces the read-only rule for compressed
// lexicons and hands the lexicon work to the format modules.
//
// Design notes
// (1) A slot is empty (null) or holds a fully open lexicon: ORTH_OpenLex and
//     ORTH_CreateLex store the entry only after the format module succeeded,
//     so a failed open or create leaves the slot empty and nothing allocated.
// (2) New lexicons take the lowest empty slot; the id is the slot index and
//     the order of precedence for checking.
// (3) Only text lexicons change: AddToLex, DelFromLex and ClearLex refuse a
//     compressed lexicon before touching it.
// (4) Words are added in the form the checker looks them up in
//     (normalizeWord with the session's character set and options); deletion
//     takes the word exactly as given.
#include <new>

#include "check/chartab.h"
#include "engine/log.h"
#include "engine/session.h"
#include "orth.h"

namespace {

// The lowest empty lexicon slot of the session, or -1 when all are taken.
int16_t findFreeSlot(const Session *session) {
    for (int16_t id = 0; id < kMaxLexPerSession; ++id) {
        if (session->lexicons[id] == nullptr) return id;
    }
    return -1;
}

// The open text lexicon for a change, or null after logging
// "<fn>: read only lex" for a compressed one.
LexEntry *changeableLex(Session *session, int16_t lexId, const char *function, int16_t *rc) {
    LexEntry *lex = lexFor(session, lexId, function);
    if (lex == nullptr) {
        *rc = ORTH_BAD_LEXICON_ID_ERR;
        return nullptr;
    }
    if (lex->format != ORTH_TEXT_LEX_FORMAT) {
        engineLog("%s: read only lex", function);
        *rc = ORTH_READ_ONLY_LEXICON_ERR;
        return nullptr;
    }
    return lex;
}

}  // namespace

void closeLexSlot(Session *session, int16_t lexId) {
    LexEntry *lex = session->lexicons[lexId];
    if (lex->format == ORTH_COMPRESSED_LEX_FORMAT) CLex_Close(&lex->clex);
    else if (lex->format == ORTH_TEXT_LEX_FORMAT) TLex_Close(&lex->tlex);
    freeRankIndex(lex->rank);
    engineLog("ORTH_CloseLex: %hd closed", lexId);
    delete lex;
    session->lexicons[lexId] = nullptr;
    session->openSlots = static_cast<uint16_t>(session->openSlots & ~(1u << lexId));
}

// New lexicon id; ORTH_BAD_SESSION_ID_ERR; ORTH_FILE_NOT_FOUND_ERR for a
// missing or null file name; ORTH_TOO_MANY_LEXICONS_ERR;
// ORTH_OUT_OF_MEMORY_ERR; ORTH_UNKNOWN_LEXICON_TYPE_ERR; or the failure of
// the format module's probe or open.
extern "C" ORTH_API int16_t ORTH_CALL ORTH_OpenLex(int16_t sessionId, const char *fileName, uint32_t memoryBudget) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_OpenLex");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (fileName == nullptr) {
        engineLog("ORTH_OpenLex: no file name");
        return ORTH_FILE_NOT_FOUND_ERR;
    }
    int16_t slot = findFreeSlot(s);
    if (slot < 0) {
        engineLog("ORTH_OpenLex: too many lexicons");
        return ORTH_TOO_MANY_LEXICONS_ERR;
    }
    LexEntry *lex = new (std::nothrow) LexEntry();
    if (lex == nullptr) {
        engineLog("ORTH_OpenLex: out of memory");
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    // A file that is not a compressed lexicon is taken as a text lexicon.
    int16_t type = 0;
    uint16_t language = 0;
    lex->format = ORTH_COMPRESSED_LEX_FORMAT;
    int16_t rc = CLex_GetInfo(fileName, &type, &language);
    if (rc == ORTH_UNKNOWN_LEXICON_TYPE_ERR) {
        lex->format = ORTH_TEXT_LEX_FORMAT;
        rc = TLex_GetInfo(fileName, &type, &language);
    }
    if (rc < 0) {
        delete lex;
        return rc;
    }
    lex->type = type;
    lex->language = language;
    switch (lex->format) {
    case ORTH_TEXT_LEX_FORMAT: rc = TLex_Open(fileName, &lex->tlex); break;
    case ORTH_COMPRESSED_LEX_FORMAT: rc = CLex_Open(fileName, memoryBudget, &lex->clex); break;
    default:
        engineLog("ORTH_OpenLex: bad lex format %hd", static_cast<int16_t>(lex->format));
        rc = ORTH_UNKNOWN_LEXICON_TYPE_ERR;
        break;
    }
    if (rc < 0) {
        delete lex;
        return rc;
    }
    s->lexicons[slot] = lex;
    s->openSlots = static_cast<uint16_t>(s->openSlots | (1u << slot));
    engineLog("ORTH_OpenLex: %s opened; id=%hd", fileName, slot);
    return slot;
}

// New lexicon id; ORTH_BAD_SESSION_ID_ERR; ORTH_UNKNOWN_LEXICON_TYPE_ERR for
// a type outside 0 to 3 (checked before the slots); ORTH_TOO_MANY_LEXICONS_ERR;
// ORTH_OUT_OF_MEMORY_ERR; or the text lexicon's ORTH_LEXICON_EXISTS_ERR,
// ORTH_FILE_NOT_FOUND_ERR or ORTH_FILE_WRITE_ERR. A null or empty file name
// makes a temporary lexicon that lives in memory only.
extern "C" ORTH_API int16_t ORTH_CALL ORTH_CreateLex(int16_t sessionId, const char *fileName, int16_t type,
                                  uint16_t language) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_CreateLex");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (type < ORTH_AUTO_CHANGE_LEX_TYPE || type > ORTH_EXCLUDE_LEX_TYPE) {
        engineLog("ORTH_CreateLex: bad lex type %hd", type);
        return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
    }
    int16_t slot = findFreeSlot(s);
    if (slot < 0) {
        engineLog("ORTH_CreateLex: too many lexicons");
        return ORTH_TOO_MANY_LEXICONS_ERR;
    }
    LexEntry *lex = new (std::nothrow) LexEntry();
    if (lex == nullptr) {
        engineLog("ORTH_CreateLex: out of memory");
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    lex->format = ORTH_TEXT_LEX_FORMAT;
    lex->type = type;
    lex->language = language;
    int16_t rc = TLex_Create(fileName, type, language, &lex->tlex);
    if (rc < 0) {
        delete lex;
        return rc;
    }
    s->lexicons[slot] = lex;
    s->openSlots = static_cast<uint16_t>(s->openSlots | (1u << slot));
    bool temporary = fileName == nullptr || fileName[0] == '\0';
    engineLog("ORTH_CreateLex: %s created; id=%hd", temporary ? "temp. lex" : fileName, slot);
    return slot;
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_CloseLex(int16_t sessionId, int16_t lexId) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_CloseLex");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (lexFor(s, lexId, "ORTH_CloseLex") == nullptr) return ORTH_BAD_LEXICON_ID_ERR;
    closeLexSlot(s, lexId);
    return 0;
}

// 0; ORTH_BAD_SESSION_ID_ERR; ORTH_BAD_LEXICON_ID_ERR;
// ORTH_READ_ONLY_LEXICON_ERR; ORTH_TWO_WORDS_REQUIRED_ERR for a change
// lexicon without a replacement; ORTH_INVALID_WORD_ERR for a null word; or
// the text lexicon's failure (the change may then be in memory only).
extern "C" ORTH_API int16_t ORTH_CALL ORTH_AddToLex(int16_t sessionId, int16_t lexId, const char *word,
                                 const char *replacement) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_AddToLex");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    int16_t rc = 0;
    LexEntry *lex = changeableLex(s, lexId, "ORTH_AddToLex", &rc);
    if (lex == nullptr) return rc;
    if ((lex->type == ORTH_AUTO_CHANGE_LEX_TYPE || lex->type == ORTH_CONDITIONAL_CHANGE_LEX_TYPE) &&
        replacement == nullptr) {
        engineLog("ORTH_AddToLex: need word and replacement");
        return ORTH_TWO_WORDS_REQUIRED_ERR;
    }
    if (word == nullptr) {
        engineLog("ORTH_AddToLex: no word");
        return ORTH_INVALID_WORD_ERR;
    }
    char normal[kWordBufSize];
    normalizeWord(word, s->charSet, s->options, normal);
    rc = TLex_Add(&lex->tlex, normal, replacement);
    return rc < 0 ? rc : 0;
}

// 0; ORTH_BAD_SESSION_ID_ERR; ORTH_BAD_LEXICON_ID_ERR;
// ORTH_READ_ONLY_LEXICON_ERR; ORTH_INVALID_WORD_ERR for a null word; or the
// text lexicon's failure, ORTH_WORD_NOT_FOUND_ERR when the word is absent.
extern "C" ORTH_API int16_t ORTH_CALL ORTH_DelFromLex(int16_t sessionId, int16_t lexId, const char *word) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_DelFromLex");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    int16_t rc = 0;
    LexEntry *lex = changeableLex(s, lexId, "ORTH_DelFromLex", &rc);
    if (lex == nullptr) return rc;
    if (word == nullptr) {
        engineLog("ORTH_DelFromLex: no word");
        return ORTH_INVALID_WORD_ERR;
    }
    rc = TLex_Delete(&lex->tlex, word);
    return rc < 0 ? rc : 0;
}

// 0; ORTH_BAD_SESSION_ID_ERR; ORTH_BAD_LEXICON_ID_ERR;
// ORTH_READ_ONLY_LEXICON_ERR; or the text lexicon's save failure.
extern "C" ORTH_API int16_t ORTH_CALL ORTH_ClearLex(int16_t sessionId, int16_t lexId) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_ClearLex");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    int16_t rc = 0;
    LexEntry *lex = changeableLex(s, lexId, "ORTH_ClearLex", &rc);
    if (lex == nullptr) return rc;
    rc = TLex_Clear(&lex->tlex);
    return rc < 0 ? rc : 0;
}

// The number of entries copied; ORTH_BAD_SESSION_ID_ERR;
// ORTH_BAD_LEXICON_ID_ERR; ORTH_UNSUPPORTED_ACTION_ERR for a compressed
// lexicon; ORTH_BUFFER_TOO_SMALL_ERR (also for a null buffer).
extern "C" ORTH_API int32_t ORTH_CALL ORTH_GetLex(int16_t sessionId, int16_t lexId, char *buffer, uint32_t size) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_GetLex");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    LexEntry *lex = lexFor(s, lexId, "ORTH_GetLex");
    if (lex == nullptr) return ORTH_BAD_LEXICON_ID_ERR;
    if (lex->format != ORTH_TEXT_LEX_FORMAT) {
        engineLog("ORTH_GetLex: unsupported action");
        return ORTH_UNSUPPORTED_ACTION_ERR;
    }
    return TLex_GetImage(&lex->tlex, buffer, size);
}

// 0; ORTH_BAD_SESSION_ID_ERR; ORTH_BAD_LEXICON_ID_ERR; or the text lexicon's
// failure to size its image. Null out-pointers are skipped; the size is 0
// for a compressed lexicon.
extern "C" ORTH_API int16_t ORTH_CALL ORTH_GetLexInfo(int16_t sessionId, int16_t lexId, uint32_t *size, uint16_t *format,
                                   uint16_t *type, uint16_t *language) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_GetLexInfo");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    LexEntry *lex = lexFor(s, lexId, "ORTH_GetLexInfo");
    if (lex == nullptr) return ORTH_BAD_LEXICON_ID_ERR;
    if (format != nullptr) *format = lex->format;
    if (type != nullptr) *type = static_cast<uint16_t>(lex->type);
    if (language != nullptr) *language = lex->language;
    if (size == nullptr) return 0;
    if (lex->format != ORTH_TEXT_LEX_FORMAT) {
        *size = 0;
        return 0;
    }
    int16_t rc = TLex_GetImageSize(&lex->tlex, size);
    return rc < 0 ? rc : 0;
}
