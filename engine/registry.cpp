// engine/registry.cpp — the per-session table of 16 lexicon slots and the
// ORTH_ functions that open, create, close, change and describe lexicons.
// The registry validates ids, enforces the read-only rule for compressed
// lexicons and hands the lexicon work to the format modules.
#include <new>

#include "engine/log.h"
#include "engine/session.h"
#include "orth.h"

void closeLexSlot(Session *session, int16_t lexId) {
    LexEntry *lex = session->lexicons[lexId];
    if (lex->format == ORTH_COMPRESSED_LEX_FORMAT) CLex_Close(&lex->clex);
    else if (lex->format == ORTH_TEXT_LEX_FORMAT) TLex_Close(&lex->tlex);
    engineLog("ORTH_CloseLex: %hd closed", lexId);
    delete lex;
    session->lexicons[lexId] = nullptr;
}

extern "C" int16_t ORTH_CloseLex(int16_t sessionId, int16_t lexId) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_CloseLex");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (lexFor(s, lexId, "ORTH_CloseLex") == nullptr) return ORTH_BAD_LEXICON_ID_ERR;
    closeLexSlot(s, lexId);
    return 0;
}
