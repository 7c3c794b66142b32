// engine/session.cpp — result-code names, the session table, and opening
// and closing sessions.
//
// (1) sessionTable starts empty; ORTH_OpenSession fills the lowest empty slot.
// (2) ORTH_CloseSession releases everything the session owns, in order:
//     lexicons 0 to 15, blocks 0 to 3, then a compressor run in progress.
#include "engine/session.h"

#include <new>

#include "engine/log.h"
#include "lex/lexsq.h"
#include "orth.h"

Session *sessionTable[kMaxSessions];

namespace {

BlockCloser blockCloser = nullptr;
SessionCloseHook sessionCloseHook = nullptr;

const char *const kResultCodeNames[17] = {
    "Ok.",
    "ORTH_TOO_MANY_SESSIONS_ERR",
    "ORTH_BAD_SESSION_ID_ERR",
    "ORTH_WORD_NOT_FOUND_ERR",
    "ORTH_FILE_NOT_FOUND_ERR",
    "ORTH_TOO_MANY_LEXICONS_ERR",
    "ORTH_UNKNOWN_LEXICON_TYPE_ERR",
    "ORTH_BAD_LEXICON_ID_ERR",
    "ORTH_BUFFER_TOO_SMALL_ERR",
    "ORTH_READ_ONLY_LEXICON_ERR",
    "ORTH_TWO_WORDS_REQUIRED_ERR",
    "ORTH_ONE_WORD_REQUIRED_ERR",
    "ORTH_OUT_OF_MEMORY_ERR",
    "ORTH_UNSUPPORTED_ACTION_ERR",
    "ORTH_LEXICON_EXISTS_ERR",
    "ORTH_TOO_MANY_BLOCKS_ERR",
    "ORTH_BAD_BLOCK_ID_ERR",
};

}  // namespace

extern "C" ORTH_API const char *ORTH_CALL resultCodeName(int16_t rc) noexcept {
    if (rc > 0 || rc < -16) return "Unknown result code";
    return kResultCodeNames[-rc];
}

Session *sessionFor(int16_t sessionId, const char *function) {
    if (sessionId < 0 || sessionId >= kMaxSessions || sessionTable[sessionId] == nullptr) {
        engineLog("%s: bad session id %hd", function, sessionId);
        return nullptr;
    }
    return sessionTable[sessionId];
}

LexEntry *lexFor(Session *session, int16_t lexId, const char *function) {
    if (lexId < 0 || lexId >= kMaxLexPerSession || session->lexicons[lexId] == nullptr) {
        engineLog("%s: bad lex id %hd", function, lexId);
        return nullptr;
    }
    return session->lexicons[lexId];
}

void setBlockCloser(BlockCloser closer) { blockCloser = closer; }
void setSessionCloseHook(SessionCloseHook hook) { sessionCloseHook = hook; }

extern "C" ORTH_API int16_t ORTH_CALL ORTH_OpenSession(void) noexcept {
    int16_t slot = 0;
    while (slot < kMaxSessions && sessionTable[slot] != nullptr) ++slot;
    if (slot == kMaxSessions) {
        engineLog("ORTH_OpenSession: too many sessions");
        return ORTH_TOO_MANY_SESSIONS_ERR;
    }
    Session *s = new (std::nothrow) Session{};
    if (s == nullptr) {
        engineLog("ORTH_OpenSession: out of memory");
        return ORTH_OUT_OF_MEMORY_ERR;
    }
    s->charSet = 0;
    s->language = 1033;
    s->compress = nullptr;
    s->options = ORTH_DEFAULT_OPTIONS;
    sessionTable[slot] = s;
    engineLog("ORTH_OpenSession: session opened");
    return slot;
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_CloseSession(int16_t sessionId) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_CloseSession");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (sessionCloseHook != nullptr) sessionCloseHook(sessionId);
    for (int16_t id = 0; id < kMaxLexPerSession; ++id) {
        if (s->lexicons[id] != nullptr) closeLexSlot(s, id);
    }
    for (int16_t id = 0; id < kMaxBlocksPerSession; ++id) {
        if (s->blocks[id] != nullptr && blockCloser != nullptr) blockCloser(s, id);
    }
    if (s->compress != nullptr) {
        lexSqCleanup(s->compress);
        delete s->compress;
        s->compress = nullptr;
    }
    delete s;
    sessionTable[sessionId] = nullptr;
    engineLog("ORTH_CloseSession: Session %hd closed", sessionId);
    return 0;
}

extern "C" ORTH_API void ORTH_CALL ORTH_Version(uint16_t *major, uint16_t *minor) noexcept {
    if (major != nullptr) *major = ORTH_VERSION_MAJOR;
    if (minor != nullptr) *minor = ORTH_VERSION_MINOR;
}
