// engine/compress.cpp — the ORTH_ functions that drive the lexicon
// compressor within a session.
//
// (1) Session::compress is null or a state with an open temporary file:
//     ORTH_CompressLexInit discards the state when LexSqInit fails, and
//     ORTH_CompressLexEnd and ORTH_CompressLexAbort always free it.
#include <new>

#include "engine/log.h"
#include "engine/session.h"
#include "lex/lexsq.h"
#include "orth.h"

namespace {

void discardCompression(Session *s) {
    lexSqCleanup(s->compress);
    delete s->compress;
    s->compress = nullptr;
}

}  // namespace

// 0; ORTH_BAD_SESSION_ID_ERR; ORTH_OUT_OF_MEMORY_ERR; LexSqInit's codes, after
// which no compression is in progress.
extern "C" ORTH_API int16_t ORTH_CALL ORTH_CompressLexInit(int16_t sessionId, const char *outputPath,
                                        const char *suffixPath, uint16_t language,
                                        uint16_t charSet, uint32_t *lineNumber) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_CompressLexInit");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (s->compress == nullptr) {
        s->compress = new (std::nothrow) CompressState{};
        if (s->compress == nullptr) {
            engineLog("ORTH_CompressLexInit: out of memory");
            return ORTH_OUT_OF_MEMORY_ERR;
        }
    }
    int16_t rc = LexSqInit(s->compress, outputPath, suffixPath, language, charSet, lineNumber);
    if (rc < 0) discardCompression(s);
    return rc;
}

// 0; ORTH_BAD_SESSION_ID_ERR; ORTH_UNSUPPORTED_ACTION_ERR without a
// compression in progress; LexSqFile's codes, after which the compression
// stays in progress with what was accepted.
extern "C" ORTH_API int16_t ORTH_CALL ORTH_CompressLexFile(int16_t sessionId, const char *wordFile,
                                        uint32_t *lineNumber) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_CompressLexFile");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (s->compress == nullptr) {
        engineLog("ORTH_CompressLexFile: call ORTH_CompressLexInit first");
        return ORTH_UNSUPPORTED_ACTION_ERR;
    }
    return LexSqFile(s->compress, wordFile, lineNumber);
}

// 0 (also without a compression in progress); ORTH_BAD_SESSION_ID_ERR;
// LexSqEnd's codes. The compression ends either way.
extern "C" ORTH_API int16_t ORTH_CALL ORTH_CompressLexEnd(int16_t sessionId) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_CompressLexEnd");
    if (s == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (s->compress == nullptr) return 0;
    int16_t rc = LexSqEnd(s->compress);
    discardCompression(s);
    return rc;
}

extern "C" ORTH_API void ORTH_CALL ORTH_CompressLexAbort(int16_t sessionId) noexcept {
    Session *s = sessionFor(sessionId, "ORTH_CompressLexAbort");
    if (s == nullptr || s->compress == nullptr) return;
    discardCompression(s);
}
